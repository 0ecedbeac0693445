#include "orvex/data/number_text.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "orvex/data/double_digits.h"
#include "orvex/data/error.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

constexpr double powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::int64_t greatestExactPower = 22;
constexpr std::uint64_t greatestExactWhole = std::uint64_t{1} << 53;
// Past this many digits a 64-bit total could have wrapped.
constexpr std::ptrdiff_t digitsThatFit = 19;

/// The nearest double to the well-formed number from..to without its sign, whose digits end at `digitsEnd` and whose
/// last digit weighs 10^exponent.
double nearest(const char* from, const char* digitsEnd, const char* to, std::int64_t exponent) {
  double value = 0.0;
  if (nearestDouble({from, static_cast<std::size_t>(to - from)}, value)) return value;
  // Out of range: below it where the first digit that is not 0 weighs less than 1.
  const char* const lead = std::find_if(from, digitsEnd, [](char c) { return c != '0' && c != '.'; });
  if (exponent + std::count_if(lead, digitsEnd, isDigit) <= 0) return 0.0;
  raise(faults::Overflow);
}

}  // namespace

NumberText readNumber(std::string_view text) {
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  const char* at = begin;
  while (at != end && (*at == ' ' || *at == '\t')) ++at;
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;

  const char* const first = at;
  std::uint64_t whole = 0;
  while (at != end && isDigit(*at)) whole = whole * 10 + static_cast<std::uint64_t>(*at++ - '0');
  std::ptrdiff_t digits = at - first;
  std::int64_t exponent = 0;
  if (at != end && *at == '.') {
    const char* const point = at++;
    while (at != end && isDigit(*at)) whole = whole * 10 + static_cast<std::uint64_t>(*at++ - '0');
    exponent = point + 1 - at;
    digits += at - (point + 1);
  }
  if (digits == 0) return {};
  const char* const digitsEnd = at;

  if (at != end && (*at == 'e' || *at == 'E')) {
    const char* mark = at + 1;
    const bool down = mark != end && *mark == '-';
    if (mark != end && (*mark == '-' || *mark == '+')) ++mark;
    if (mark != end && isDigit(*mark)) {
      // An exponent of more digits than a text can balance is as good as this one.
      constexpr std::int64_t enough = std::int64_t{1} << 40;
      std::int64_t power = 0;
      for (; mark != end && isDigit(*mark); ++mark) power = std::min(enough, power * 10 + (*mark - '0'));
      exponent += down ? -power : power;
      at = mark;
    }
  }

  double value = 0.0;
  if (digits <= digitsThatFit && whole <= greatestExactWhole && exponent >= -greatestExactPower &&
      exponent <= greatestExactPower) {
    // Both numbers are exact, so the one operation rounds once, as the nearest double demands.
    value = static_cast<double>(whole);
    value = exponent < 0 ? value / powersOfTen[-exponent] : value * powersOfTen[exponent];
  } else {
    value = nearest(first, digitsEnd, at, exponent);
  }
  return {negative ? -value : value, static_cast<std::size_t>(at - begin)};
}

double numberFromSingle(float single) {
  if (!std::isfinite(single)) return double{single};
  return numberFromText(shortestText(single));
}

}  // namespace orvex::inline ORVEX_COUNTS
