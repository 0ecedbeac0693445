#pragma once

#include <cstddef>

#include "orvex/standard/numbers.h"

/// The arc tangent, written once for doubles and for the packs of kernels.
namespace orvex::inline ORVEX_COUNTS::standard {

inline constexpr double Pi = 3.141592653589793238;
inline constexpr double HalfPiRest = 6.123233995736766e-17;  // Pi / 2 less its nearest double
inline constexpr double DegreesPerRadian = 180.0 / Pi;

/// coefficients[0] + x (coefficients[1] + x (...)).
template <class T, std::size_t Size>
T polynomial(T x, const double (&coefficients)[Size]) {
  T sum = spread(coefficients[Size - 1], x);
  for (std::size_t i = Size - 1; i > 0; --i) sum = spread(coefficients[i - 1], x) + x * sum;
  return sum;
}

/// Taylor's series of (arctan t - t) / t^3 in the square of t.
inline constexpr double Arctan[] = {-1.0 / 3, 1.0 / 5, -1.0 / 7, 1.0 / 9, -1.0 / 11, 1.0 / 13};

/// The arc tangents of 0, 1/8, ..., 1.
inline constexpr double ArctanOfEighths[] = {0.0,
                                             0.12435499454676144,
                                             0.24497866312686414,
                                             0.35877067027057225,
                                             0.4636476090008061,
                                             0.5585993153435624,
                                             0.6435011087932844,
                                             0.7188299996216245,
                                             0.7853981633974483};

/// Of a number or an infinity. No branch, but for what a table is looked up for: packs have lanes of both kinds.
template <class T>
T arcTangentOf(T x) {
  const auto number = [&](double value) { return spread(value, x); };
  const T one = number(1), size = magnitude(x);
  const auto ifSteep = [&](const T& steep, const T& other) { return whereGreater(size, one, steep, other); };
  // 1 / size where that is below 1; by 1 nothing is divided.
  const T t = smaller(size, one) / larger(size, one);
  const T eighths = wholePart(t * number(8) + number(0.5)), closest = eighths * number(0.125);
  // arctan t = arctan c + arctan((t - c) / (1 + t c)), here without the rounding of 1 / size
  const T d = ifSteep(one - closest * size, t - closest) / ifSteep(size + closest, one + t * closest);
  const T square = d * d;
  const T angle = chosen(ArctanOfEighths, eighths) + (d + d * square * polynomial(square, Arctan));
  const T upright = number(Pi / 2), positive = ifSteep(upright - (angle - number(HalfPiRest)), angle);
  const T found = whereGreater(size, number(0x1p60), upright, positive);
  const T result = whereGreater(number(0), x, number(0) - found, found);
  // Of so small a number it is as good as the number itself.
  return whereGreater(number(0x1p-27), size, x, result);
}

}  // namespace orvex::inline ORVEX_COUNTS::standard
