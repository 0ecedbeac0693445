#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/data/database.h"

namespace orvex::inline ORVEX_COUNTS::prices {

/// What a column of a price file is to the methods.
enum class Role { Date, Open, High, Low, Close, Volume, Clock, Other };

/// Those that are prices, in the order of `Database::PriceNames`.
inline constexpr std::array PriceRoles = {Role::Open, Role::High, Role::Low, Role::Close, Role::Volume};

/// "Date", "Open", ...; "Time" for the time of the day beside a date, "" for a column of no role.
std::string_view roleName(Role role);
std::optional<Role> roleNamed(std::string_view name);

/// What the name of a column in a header line tells, in English, German, French or Spanish, without regard to case,
/// signs ("<OPEN>", "1. open", "Vol.") and the difference of blank, "_" and "-".
struct Meaning {
  Role role = Role::Other;
  /// 0: the role's own name; 1: a word that means it; 2: one that may mean it, where nothing better is there ("Last",
  /// "Adj Close", "Price").
  int distance = 0;
};
Meaning meaningOf(std::string_view name);

/// The role of each column of a header line, each role once: the nearest word takes it, of equal ones the first.
struct Meanings {
  std::vector<Role> roles;
  std::vector<std::string> remarks;
};
Meanings meaningsOf(const std::vector<std::string>& names);

}  // namespace orvex::inline ORVEX_COUNTS::prices
