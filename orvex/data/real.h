#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>

#include "orvex/data/error.h"
#include "orvex/data/integer.h"

namespace orvex::inline ORVEX_COUNTS {

/// A double of a computation in which every operation is checked: the steps of the indicators are written with it. A
/// division by zero raises error 11, a result that is infinite or undefined error 6, and so does taking in a value
/// that is not finite, so a fault surfaces at the operation that meets it.
class Real {
 public:
  constexpr Real() noexcept = default;
  constexpr Real(double value) : value_(finite(value)) {}
  constexpr Real(Integer value) noexcept : value_(value.value()) {}
  constexpr Real(int value) noexcept : value_(value) {}

  constexpr double value() const noexcept { return value_; }
  constexpr operator double() const noexcept { return value_; }

  constexpr Real& operator+=(Real other) { return *this = value_ + other.value_; }
  constexpr Real operator-() const { return -value_; }

 private:
  static constexpr double finite(double value) {
    // The difference of a finite number with itself is 0; of an infinity or of not-a-number it is not.
    if (!(value - value == 0.0)) raise(faults::Overflow);
    return value;
  }

  double value_ = 0.0;
};

template <class T>
concept RealOperand =
    std::same_as<T, Real> || std::same_as<T, double> || std::same_as<T, Integer> || std::same_as<T, int>;

/// At least one side is a `Real`; were both plain, the operation would go unchecked.
template <class A, class B>
concept RealOperands = RealOperand<A> && RealOperand<B> &&(std::same_as<A, Real> || std::same_as<B, Real>);

template <class A, class B>
requires RealOperands<A, B>
constexpr Real operator+(A a, B b) {
  return Real(a).value() + Real(b).value();
}

template <class A, class B>
requires RealOperands<A, B>
constexpr Real operator-(A a, B b) {
  return Real(a).value() - Real(b).value();
}

template <class A, class B>
requires RealOperands<A, B>
constexpr Real operator*(A a, B b) {
  return Real(a).value() * Real(b).value();
}

template <class A, class B>
requires RealOperands<A, B>
constexpr Real operator/(A a, B b) {
  const double divisor = Real(b).value();
  if (divisor == 0.0) raise(faults::DivisionByZero);
  return Real(a).value() / divisor;
}

inline Real abs(Real x) {
  return std::fabs(x.value());
}

/// Truncated toward zero.
inline Real fix(Real x) {
  return std::trunc(x.value());
}

/// The square root; error 5 of a negative number.
inline Real sqrt(Real x) {
  if (x.value() < 0.0) raise(faults::InvalidCall);
  return std::sqrt(x.value());
}

/// How a value has crossed a line since the record before: 1 upward, -1 downward, 0 not at all.
inline int crossing(Real before, Real lineBefore, Real now, Real line) {
  if (before <= lineBefore && now > line) return 1;
  return before >= lineBefore && now < line ? -1 : 0;
}

/// A whole number in 32 bits; error 6 for one that does not fit.
inline std::int32_t toLong(double whole) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (!(whole >= Limits::min() && whole <= Limits::max())) raise(faults::Overflow);
  return static_cast<std::int32_t>(whole);
}

/// The nearest whole number, ties to the even one, whatever rounding mode the host has set.
inline double roundHalfEven(double x) {
  const double below = std::floor(x);
  const double part = x - below;
  if (part < 0.5) return below;
  if (part > 0.5) return below + 1.0;
  return std::fmod(below, 2.0) == 0.0 ? below : below + 1.0;
}

}  // namespace orvex::inline ORVEX_COUNTS
