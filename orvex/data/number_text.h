#pragma once

#include <cstddef>
#include <string_view>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS {

constexpr bool isDigit(char c) noexcept {
  return c >= '0' && c <= '9';
}

/// A number at the beginning of a text, and how much of the text it takes.
struct NumberText {
  double value = 0.0;
  std::size_t length = 0;
};

/// Reads the number that a text begins with: blanks and tabs, a sign, digits with at most one ".", an exponent with e
/// or E, whatever the locale. It ends at the first character that does not fit. A text that begins with no number
/// gives 0 and takes no part of the text. A number that is too small for a double is 0 or subnormal; error 6 for one
/// beyond the range.
NumberText readNumber(std::string_view text);

/// The number that a Single was made of: the value of the shortest text that reads back as that Single, so that 10.1 is
/// still 10.1 when it has been one. Infinities and not-a-number stay what they are.
double numberFromSingle(float single);

/// The value of `readNumber`.
inline double numberFromText(std::string_view text) {
  return readNumber(text).value;
}

}  // namespace orvex::inline ORVEX_COUNTS
