#include "orvex/standard/elementary.h"

#include <cmath>

namespace orvex::inline ORVEX_COUNTS::standard {

namespace {

// Constants in two or three parts: the first ones have so few digits that their products with small whole numbers are
// exact.
constexpr double Log2High = 0.6931471806019545;
constexpr double Log2Low = -4.2009150726810846e-11;
constexpr double HalfPiHigh = 1.5707963267341256;
constexpr double HalfPiMiddle = 6.077100506303966e-11;
constexpr double HalfPiLow = 2.0222662487959506e-21;

// Taylor's series: of (artanh s - s) / s^3, (sin t - t) / t^3 and (cos t - 1 + t^2 / 2) / t^4, in the square of the
// argument.
constexpr double Artanh[] = {1.0 / 3,  1.0 / 5,  1.0 / 7,  1.0 / 9,  1.0 / 11,
                             1.0 / 13, 1.0 / 15, 1.0 / 17, 1.0 / 19, 1.0 / 21};
constexpr double Sin[] = {-1.0 / 6,
                          1.0 / 120,
                          -1.0 / 5040,
                          1.0 / 362880,
                          -1.0 / 39916800.0,
                          1.0 / 6227020800.0,
                          -1.0 / 1307674368000.0,
                          1.0 / 355687428096000.0};
constexpr double Cos[] = {1.0 / 24,
                          -1.0 / 720,
                          1.0 / 40320,
                          -1.0 / 3628800,
                          1.0 / 479001600.0,
                          -1.0 / 87178291200.0,
                          1.0 / 20922789888000.0,
                          -1.0 / 6402373705728000.0};

/// An angle from -Pi / 4 to Pi / 4, in two parts, and how many right angles it was turned by.
struct Reduced {
  double angle, rest;
  int quarter;
};

Reduced reduce(double x) {
  const double turns = std::floor(x * (2.0 / Pi) + 0.5);
  const double near = (x - turns * HalfPiHigh) - turns * HalfPiMiddle;
  const double lost = ((x - turns * HalfPiHigh) - near) - turns * HalfPiMiddle;
  const double rest = lost - turns * HalfPiLow;
  const double angle = near + rest;
  return {angle, (near - angle) + rest, static_cast<int>(turns - 4.0 * std::floor(turns / 4.0))};
}

double sineOf(const Reduced& r) {
  const double square = r.angle * r.angle;
  return r.angle + (r.rest * (1.0 - 0.5 * square) + r.angle * square * polynomial(square, Sin));
}

double cosineOf(const Reduced& r) {
  const double square = r.angle * r.angle, half = 0.5 * square, main = 1.0 - half;
  return main + (((1.0 - main) - half) + (square * square * polynomial(square, Cos) - r.angle * r.rest));
}

}  // namespace

double logarithm(double x) {
  if (!(x > 0.0) || x - x != 0.0) return std::log(x);  // 0, infinities and what has no logarithm
  int exponent = 0;
  double part = std::frexp(x, &exponent);
  if (part < 0.70710678118654752) {
    part *= 2.0;
    --exponent;
  }
  // log(1 + f) = 2 artanh(f / (2 + f)) = f - s (f - 2 s^2 (1/3 + s^2/5 + ...))
  const double f = part - 1.0, s = f / (2.0 + f), square = s * s;
  const double half = 0.5 * f * f;
  const double tail = s * (half + 2.0 * square * polynomial(square, Artanh));
  return exponent * Log2High - ((half - (tail + exponent * Log2Low)) - f);
}

double arcTangent(double x) {
  return std::isnan(x) ? x : arcTangentOf(x);
}

double sine(double x) {
  const Reduced r = reduce(x);
  const double value = r.quarter % 2 == 0 ? sineOf(r) : cosineOf(r);
  return r.quarter < 2 ? value : -value;
}

double cosine(double x) {
  const Reduced r = reduce(x);
  const double value = r.quarter % 2 == 0 ? cosineOf(r) : sineOf(r);
  return r.quarter == 1 || r.quarter == 2 ? -value : value;
}

}  // namespace orvex::inline ORVEX_COUNTS::standard
