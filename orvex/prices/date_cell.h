#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS::prices {

/// A point in time: microseconds since 1970-01-01, in the file's own clock where it tells no zone.
using Time = std::int64_t;

constexpr Time secondLength = 1'000'000;
constexpr Time dayLength = 86'400 * secondLength;

/// How a date is written.
enum class DateShape {
  YearFirst,     // 2020-01-31, 2020/1/31, 2020.01.31
  DayFirst,      // 31.1.2020
  DayOrMonth,    // 1/2/2020, 1-2-20: which of the two comes first only other dates can tell
  Compact,       // 20200131, 202001310930, 20200131093000
  MonthName,     // 31 Jan 2020, Jan 31, 2020, 31-Jan-20
  EpochSeconds,  // 1580428800
  EpochMillis,
  EpochMicros,
};

/// A cell read as a date, with or without a time behind it: "T" or a blank, 9:30, 09:30:00.000, 9:30 PM, a zone as Z,
/// UTC or +01:00.
struct DateCell {
  DateShape shape;
  Time time;
  /// Of `DayOrMonth`: `time` takes the day for the first, this the month; nothing where there is no such date.
  std::optional<Time> monthFirst;
  bool dayFirstHolds = true;
};

/// Nothing for what is no date. Numbers of days as spreadsheets count them are none.
std::optional<DateCell> readDateCell(std::string_view cell);

/// Reads the usual dates of one shape faster than `readDateCell`, and gives what that gives: 2020-01-31, 31.1.2020,
/// 1/31/2020 and 20200131, with 09:30 or 09:30:00 behind them.
class PlainDates {
 public:
  explicit PlainDates(DateShape shape) : shape_(shape) {}

  /// False, and `date` of no use, for any other date, which `readDateCell` may know.
  bool read(std::string_view text, DateCell& date);

  /// Of `DayOrMonth`, once other dates have told it: dates are read that way alone and have one time.
  void settle(bool monthFirst) { monthFirst_ = monthFirst; }

 private:
  bool readYearFirst(std::string_view text, DateCell& date);
  bool readYearLast(std::string_view text, DateCell& date);
  bool readCompact(std::string_view text, DateCell& date);
  /// The beginning of a day; nothing where there is no such date.
  std::optional<Time> dayOf(int year, int month, int day);
  void turnTo(int year);

  DateShape shape_;
  std::optional<bool> monthFirst_;
  // The year that was asked for last.
  int year_ = 0;
  std::array<Time, 13> months_{};  // when each month begins, and the next year
};

/// The time of the day of a cell beside the date's: 9:30, 09:30:00, 93000, 9:30 PM.
std::optional<Time> readTimeCell(std::string_view cell);

/// What --from and --to take: a whole date or the beginning of one (2020-01, 2020-01-31, 2020-01-31 09:30), as the
/// first and the last microsecond that it names.
struct TimeSpan {
  Time first;
  Time last;
};
std::optional<TimeSpan> readTimeSpan(std::string_view text);

/// The day that a time falls on.
struct CalendarDay {
  std::int64_t number;  // from 1970-01-01, which is 0
  std::int64_t year;
  std::int64_t month;
  std::int64_t day;
};
CalendarDay calendarDay(Time time);

/// "2020-01-31" or "2020-01-31 09:30:00".
std::string dateText(Time time);

}  // namespace orvex::inline ORVEX_COUNTS::prices
