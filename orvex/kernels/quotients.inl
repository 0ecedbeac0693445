// Quotients by a number that is the same for many rows, faster than the processor divides and with the same bits.
//
// A fused multiply-add serves here as an exact tool and never as a contraction of a definition's own operations. For a
// whole number D, r = 1 / D rounded, and u = 2^-53:
//
//   q0 = x r        = (x / D)(1 + e),  |e| <= 2u + u^2
//   s  = x - q0 D   rounded once, relative error at most u
//   q  = q0 + s r   before its one rounding (x / D)(1 + f),  |f| <= (2u + u^2)(2u + u^2) < 4.1 u^2
//
// Let x / D lie in [2^k, 2^(k+1)). A midpoint m of two doubles there is an odd multiple of 2^(k-53), and x a multiple
// of 2^(k-52), so x - m D is a multiple of 2^(k-53). It is not 0: the odd part of m D has more than 53 bits, that of x
// has not. So x / D is at least 2^(k-53) / D away from every midpoint, while q before its rounding is at most 4.1 u^2
// 2^(k+1) away from x / D. For D below 2^49 the second is smaller than the first: both round to the same double. (The
// sequence is Peter Markstein's, Computation of Elementary Functions on the IBM RISC System/6000 Processor, 1990;
// Nicolas Brisebarre, Jean-Michel Muller and Saurabh Kumar Raina, Accelerating Correctly Rounded Floating-Point
// Division when the Divisor Is Known in Advance, 2004, treat divisors that are not whole.)
//
// It takes that nothing underflows on the way: of |x| >= 2^-900, s is a multiple of 2^-1056 x 2^52 at least. Smaller
// numerators, 0 with its sign among them, are divided. What overflows, or is no finite number to begin with, comes out
// as one that is not finite either, which no kernel takes for a result.
#pragma once

#include "orvex/kernels/pack.inl"

namespace {

/// A number to divide many others by.
struct Divisor {
  double number, reciprocal;
  /// The proof covers it: half of a whole number below 2^49 or less, since a power of two changes nothing in it.
  bool proven;

  explicit Divisor(double x)
      : number(x),
        reciprocal(1.0 / x),
        proven(x >= 0.5 && x < 0x1p48 && static_cast<double>(static_cast<long long>(2.0 * x)) == 2.0 * x) {}
};

constexpr double leastNumerator = 0x1p-900;

template <int Lanes>
Pack<Lanes> operator/(Pack<Lanes> x, const Divisor& divisor) {
  return x / Pack<Lanes>::all(divisor.number);
}
inline double operator/(double x, const Divisor& divisor) {
  return x / divisor.number;
}

#if defined(__AVX512F__)
Pack<8> operator/(Pack<8> x, const Divisor& divisor) {
  const __m512d d = _mm512_set1_pd(divisor.number), r = _mm512_set1_pd(divisor.reciprocal);
  if (!divisor.proven || _mm512_cmp_pd_mask(_mm512_abs_pd(x.v), _mm512_set1_pd(leastNumerator), _CMP_LT_OQ) != 0) {
    return {x.v / d};
  }
  const __m512d q = _mm512_mul_pd(x.v, r);
  return {_mm512_fmadd_pd(_mm512_fnmadd_pd(q, d, x.v), r, q)};
}
#elif defined(__AVX2__) && defined(__FMA__)
Pack<4> operator/(Pack<4> x, const Divisor& divisor) {
  const __m256d d = _mm256_set1_pd(divisor.number), r = _mm256_set1_pd(divisor.reciprocal);
  const __m256d magnitude = _mm256_andnot_pd(_mm256_set1_pd(-0.0), x.v);
  if (!divisor.proven ||
      _mm256_movemask_pd(_mm256_cmp_pd(magnitude, _mm256_set1_pd(leastNumerator), _CMP_LT_OQ)) != 0) {
    return {x.v / d};
  }
  const __m256d q = _mm256_mul_pd(x.v, r);
  return {_mm256_fmadd_pd(_mm256_fnmadd_pd(q, d, x.v), r, q)};
}
#endif

}  // namespace
