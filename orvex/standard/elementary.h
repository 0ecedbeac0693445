#pragma once

#include "orvex/data/real.h"
#include "orvex/standard/arc_tangent.h"

/// Logarithm, arc tangent, sine and cosine, of this library's own: the same bits on every system, where the standard
/// library's differ from one to the next. Within two units in the last place.
namespace orvex::inline ORVEX_COUNTS::standard {

/// The natural logarithm. Minus infinity of 0, not-a-number below 0.
double logarithm(double x);
/// From -Pi / 2 to Pi / 2.
double arcTangent(double x);
/// Of angles in radians, |x| below 10^5.
double sine(double x);
double cosine(double x);

/// The same in checked arithmetic: error 5 for the logarithm of a number that is not above 0.
inline Real logarithm(Real x) {
  if (x.value() <= 0.0) raise(faults::InvalidCall);
  return logarithm(x.value());
}
inline Real sine(Real x) {
  return sine(x.value());
}

}  // namespace orvex::inline ORVEX_COUNTS::standard
