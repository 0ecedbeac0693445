#pragma once

#include <cmath>

#include "orvex/data/real.h"

/// What formulas do with numbers beside arithmetic, for doubles and for checked ones. The kernels have the same for
/// several doubles side by side.
namespace orvex::inline ORVEX_COUNTS::standard {

inline double magnitude(double x) {
  return std::fabs(x);
}
inline Real magnitude(Real x) {
  return abs(x);
}
inline double root(double x) {
  return std::sqrt(x);
}
inline Real root(Real x) {
  return sqrt(x);
}
template <class T>
T larger(T a, T b) {
  return a > b ? a : b;
}
template <class T>
T smaller(T a, T b) {
  return a < b ? a : b;
}
template <class T>
T whereGreater(T a, T b, T yes, T no) {
  return a > b ? yes : no;
}
template <class T>
T whereEqual(T a, T b, T yes, T no) {
  return a == b ? yes : no;
}
/// The whole part of values from 0 to below 2^31, and what a table has at such a place.
inline double wholePart(double x) {
  return static_cast<double>(static_cast<int>(x));
}
inline double chosen(const double* table, double place) {
  return table[static_cast<int>(place)];
}
/// The quotient; `otherwise` where the divisor is 0.
template <class T>
T quotient(T a, T b, T otherwise = 0) {
  return b == T(0) ? otherwise : a / b;
}

/// A number of the type of `like`.
template <class T>
T spread(double x, T) {
  return x;
}
/// a / b and, as above, with `otherwise`. The kernels divide in two ways by turns.
template <class T>
T over(T a, T b, int) {
  return a / b;
}
template <class T>
T overOr(T a, T b, double otherwise, int) {
  return quotient(a, b, T(otherwise));
}
/// x / n of a whole number.
template <class T>
T part(T x, double n) {
  return x / n;
}

}  // namespace orvex::inline ORVEX_COUNTS::standard
