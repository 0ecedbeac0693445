#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "orvex/data/number_text.h"

namespace orvex::inline ORVEX_COUNTS::prices {

/// The number of at most eight digits, each the value of a byte, the first in the lowest; bytes of 0 are behind the
/// last.
inline std::uint64_t joinDigits(std::uint64_t digits, std::size_t count) noexcept {
  // To the end, behind bytes of 0, and joined to pairs, fours and eights.
  digits <<= 64 - 8 * count;
  const std::uint64_t pairs = (digits * 10 + (digits >> 8)) & 0x00FF00FF00FF00FF;
  const std::uint64_t fours = pairs * 100 + (pairs >> 16);
  return (fours & 0xFFFF) * 10'000 + (fours >> 32 & 0xFFFF);
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
  // A digit without its high half of 3 is below 10, and with 0x76 added below 0x80; what is not marks its byte.
  const std::uint64_t values = word ^ 0x3030303030303030;
  const std::uint64_t marks = (((values & 0x7F7F7F7F7F7F7F7F) + 0x7676767676767676) | values) & 0x8080808080808080;
  const auto byteOf = [](std::uint64_t mark) { return static_cast<std::size_t>(std::countr_zero(mark)) / 8; };
  // The bytes before the first that is marked.
  const auto before = [](std::uint64_t mark) { return (mark ^ (mark - 1)) >> 8; };
  if (marks == 0) return {};
  const std::size_t whole = byteOf(marks);
  if (whole == 0) return {};
  const std::uint64_t wholeBytes = before(marks);
  if (static_cast<char>(word >> 8 * whole & 0xFF) != decimal) {
    return {joinDigits(values & wholeBytes, whole), whole, 0, whole};
  }
  const std::uint64_t later = marks & (marks - 1);
  if (later == 0) return {};
  const std::size_t length = byteOf(later);
  // The digits before the sign take its place, and a 0 the first one's.
  const std::uint64_t digits = (values & wholeBytes) << 8 | (values & before(later) & ~(wholeBytes << 8 | 0xFF));
  return {joinDigits(digits, length), length - 1, length - 1 - whole, length};
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
