#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "orvex/data/number_text.h"

namespace orvex::inline ORVEX_COUNTS::prices {

/// The number of at most eight digits, the first in the lowest byte and bytes of 0 behind the last.
inline std::uint64_t joinDigits(std::uint64_t word, std::size_t count) noexcept {
  // To the end, behind bytes of 0, and joined to pairs, fours and eights.
  word = (word & 0x0F0F0F0F0F0F0F0F) << (64 - 8 * count);
  word = (word & 0x00FF00FF00FF00FF) * 10 + ((word >> 8) & 0x00FF00FF00FF00FF);
  word = (word & 0x0000FFFF0000FFFF) * 100 + ((word >> 16) & 0x0000FFFF0000FFFF);
  return (word & 0x00000000FFFFFFFF) * 10'000 + (word >> 32);
}

/// What a number of digits with at most one decimal sign is before that is taken into account.
struct PlainNumber {
  std::uint64_t digits = 0;
  std::size_t count = 0;     // of digits
  std::size_t fraction = 0;  // of those behind the sign
  std::size_t length = 0;    // of its text
};

/// Reads a number of at most seven characters without a branch for each; one of none where it is longer, and where it
/// does not begin with a digit. REQUIRES: 8 characters.
inline PlainNumber shortNumber(const char* at, char decimal) noexcept {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  // The high half of a digit is 3, and still is with 6 added; a bit marks each byte of which that does not hold.
  constexpr std::uint64_t highHalves = 0xF0F0F0F0F0F0F0F0;
  constexpr std::uint64_t threes = 0x3030303030303030;
  const std::uint64_t raised = (word & 0x7F7F7F7F7F7F7F7F) + 0x0606060606060606;
  const std::uint64_t differing = ((word & highHalves) ^ threes) | ((raised & highHalves) ^ threes);
  const std::uint64_t marks = ((differing >> 4) + 0x0F0F0F0F0F0F0F0F) & 0x1010101010101010;
  const auto byteOf = [](std::uint64_t mark) { return static_cast<std::size_t>(std::countr_zero(mark)) / 8; };
  const auto below = [](std::size_t bytes) { return (std::uint64_t{1} << 8 * bytes) - 1; };
  if (marks == 0) return {};
  const std::size_t whole = byteOf(marks);
  if (whole == 0) return {};
  if (static_cast<char>(word >> 8 * whole & 0xFF) != decimal) {
    return {joinDigits(word & below(whole), whole), whole, 0, whole};
  }
  const std::uint64_t later = marks & (marks - 1);
  if (later == 0) return {};
  const std::size_t length = byteOf(later);
  const std::uint64_t digits = (word & below(whole)) | ((word & below(length)) >> 8 & ~below(whole));
  return {joinDigits(digits, length - 1), length - 1, length - 1 - whole, length};
}

/// More digits than these a double may not hold exactly.
inline constexpr std::size_t exactDigits = 15;

/// The same digit by digit; one of none where there are more than `exactDigits`.
inline PlainNumber longNumber(const char* at, const char* end, char decimal) noexcept {
  PlainNumber number;
  const char* const first = at;
  const auto takeDigits = [&] {
    const std::size_t before = number.count;
    for (; at != end && isDigit(*at) && number.count <= exactDigits; ++at, ++number.count) {
      number.digits = number.digits * 10 + static_cast<std::uint64_t>(*at - '0');
    }
    return number.count - before;
  };
  if (takeDigits() == 0) return {};
  if (at != end && *at == decimal) {
    ++at;
    number.fraction = takeDigits();
  }
  if (number.count > exactDigits) return {};
  number.length = static_cast<std::size_t>(at - first);
  return number;
}

/// Reads a number of digits with at most one decimal sign that a double holds exactly but for one division. False, and
/// nothing taken, for any other. `end` is that of the text, which may go on behind the number.
inline bool takePlainNumber(const char*& from, const char* end, char decimal, double& value) noexcept {
  static constexpr std::array powers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const char* at = from;
  const bool negative = at != end && *at == '-';
  if (negative) ++at;
  PlainNumber number;
  // The first character is in the lowest byte.
  if constexpr (std::endian::native == std::endian::little) {
    if (end - at >= 8) number = shortNumber(at, decimal);
  }
  if (number.count == 0) number = longNumber(at, end, decimal);
  if (number.count == 0) return false;
  // Both are exact, so the one division rounds once, to the nearest double.
  value = static_cast<double>(static_cast<std::int64_t>(number.digits)) / powers[number.fraction];
  if (negative) value = -value;
  from = at + number.length;
  return true;
}

}  // namespace orvex::inline ORVEX_COUNTS::prices
