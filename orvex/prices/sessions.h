#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "orvex/prices/date_cell.h"

/// Sessions out of dates, for the methods that begin anew with each.
namespace orvex::inline ORVEX_COUNTS::prices {

enum class SessionLength { Day, Week, Month, Year };

/// By name without regard to case; nothing for an unknown one.
std::optional<SessionLength> sessionNamed(std::string_view name);

/// What an argument that tells sessions asks of the dates by a name: days by "Date", and others as `sessionNamed`.
std::optional<SessionLength> sessionOfDates(std::string_view name);

/// A number a record, another one in each session. Weeks begin on Mondays.
std::vector<double> sessionsOf(std::span<const Time> times, SessionLength length);

/// The same out of one date alone. NaN for what is no date; also where only other dates could tell which of its numbers
/// is the month, unless sessions are days: those it tells apart whichever is.
double sessionOf(std::string_view date, SessionLength length);

}  // namespace orvex::inline ORVEX_COUNTS::prices
