#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

#include "orvex/data/error.h"

namespace orvex::inline ORVEX_COUNTS {

template <class T>
concept WholeNumber = std::integral<T> && !std::same_as<T, bool>;

/// A signed whole number whose arithmetic is checked: counts, record numbers, periods and loop counters, in 16 bits or
/// in 32 (counts.h). Making one from a number that does not fit, and any operation whose result does not, raises error
/// 6 "Overflow". Operations and comparisons are made in wider arithmetic.
class Integer {
  using Narrow = std::conditional_t<ORVEX_COUNT_BITS == 16, std::int16_t, std::int32_t>;
  using Wide = std::conditional_t<ORVEX_COUNT_BITS == 16, int, std::int64_t>;

 public:
  /// -32,768 and 32,767, or -2,147,483,648 and 2,147,483,647.
  static constexpr int Least = std::numeric_limits<Narrow>::min();
  static constexpr int Greatest = std::numeric_limits<Narrow>::max();

  constexpr Integer() noexcept = default;

  template <WholeNumber T>
  constexpr Integer(T number) : value_(static_cast<Narrow>(number)) {
    if (!std::in_range<Narrow>(number)) raise(faults::Overflow);
  }

  /// The nearest whole number to `number`, ties to the even one.
  static Integer rounded(double number);

  constexpr int value() const noexcept { return value_; }

  friend constexpr Integer operator+(Integer a, Integer b) { return Wide{a.value_} + b.value_; }
  friend constexpr Integer operator-(Integer a, Integer b) { return Wide{a.value_} - b.value_; }
  friend constexpr Integer operator*(Integer a, Integer b) { return Wide{a.value_} * b.value_; }
  /// Whole division, truncated toward zero.
  friend constexpr Integer operator/(Integer a, Integer b) {
    if (b.value() == 0) raise(faults::DivisionByZero);
    return Wide{a.value_} / b.value_;
  }
  friend constexpr Integer operator%(Integer a, Integer b) {
    if (b.value() == 0) raise(faults::DivisionByZero);
    return Wide{a.value_} % b.value_;
  }

  constexpr Integer& operator+=(Integer other) { return *this = *this + other; }
  constexpr Integer& operator-=(Integer other) { return *this = *this - other; }
  constexpr Integer& operator++() { return *this += 1; }
  constexpr Integer& operator--() { return *this -= 1; }

  friend constexpr bool operator==(Integer, Integer) noexcept = default;
  friend constexpr auto operator<=>(Integer, Integer) noexcept = default;
  template <WholeNumber T>
  friend constexpr bool operator==(Integer a, T b) noexcept {
    return std::cmp_equal(a.value(), b);
  }
  template <WholeNumber T>
  friend constexpr std::strong_ordering operator<=>(Integer a, T b) noexcept {
    return std::cmp_less(a.value(), b)    ? std::strong_ordering::less
           : std::cmp_equal(a.value(), b) ? std::strong_ordering::equal
                                          : std::strong_ordering::greater;
  }

 private:
  Narrow value_ = 0;
};

}  // namespace orvex::inline ORVEX_COUNTS
