#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>
#include <utility>

#include "orvex/data/error.h"

namespace orvex {

template <class T>
concept WholeNumber = std::integral<T> && !std::same_as<T, bool>;

/// A 16-bit signed whole number whose arithmetic is checked: counts, record numbers, periods and loop counters.
/// Making one from a number outside -32,768..32,767, and any operation whose result lies there, raises error 6
/// "Overflow". Comparisons are made in wider arithmetic and never fail.
class Integer {
 public:
  static constexpr std::int16_t Least = std::numeric_limits<std::int16_t>::min();
  static constexpr std::int16_t Greatest = std::numeric_limits<std::int16_t>::max();

  constexpr Integer() noexcept = default;

  template <WholeNumber T>
  constexpr Integer(T number) : value_(static_cast<std::int16_t>(number)) {
    if (!std::in_range<std::int16_t>(number)) raise(faults::Overflow);
  }

  /// The nearest whole number to `number`, ties to the even one.
  static Integer rounded(double number);

  constexpr int value() const noexcept { return value_; }

  friend constexpr Integer operator+(Integer a, Integer b) { return a.value() + b.value(); }
  friend constexpr Integer operator-(Integer a, Integer b) { return a.value() - b.value(); }
  friend constexpr Integer operator*(Integer a, Integer b) { return a.value() * b.value(); }
  /// Whole division, truncated toward zero.
  friend constexpr Integer operator/(Integer a, Integer b) {
    if (b.value() == 0) raise(faults::DivisionByZero);
    return a.value() / b.value();
  }
  friend constexpr Integer operator%(Integer a, Integer b) {
    if (b.value() == 0) raise(faults::DivisionByZero);
    return a.value() % b.value();
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
  std::int16_t value_ = 0;
};

}  // namespace orvex
