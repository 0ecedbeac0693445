// Quotients, faster than the processor divides and with the same bits.
//
// A fused multiply-add serves here as an exact tool and never as a contraction of a definition's own operations.
//
// Of a number that is the same for many rows, a whole number D, let r = 1 / D rounded, and u = 2^-53:
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
//
// A divisor b that differs from row to row has no reciprocal yet, and is not whole. The processor's estimate of 1 / b
// is within 2^-14 of it; one step that leaves the third power of that and one that leaves the square make r. For a and
// b from 1 to below 2 (powers of two change nothing) and y = a / b, let w be the distance of two doubles about y:
//
//   r = 1 / b   before its one rounding within 2^-83 / b, so |b r - 1| <= b 2^-54 + 2^-83
//   q0 = a r    before its rounding within (1 - 2^-28) w of y: for a >= b, w is 2^-52, and a |b r - 1| / b little more
//               than half of it; else w is 2^-53, and a / 2 of it is left, where a < b <= 2 - 2^-26
//   s  = a - q0 b
//   q  = q0 + s r
//
// Let m be the midpoint of two doubles nearest to y, and d its distance. As above a - m b is a multiple of 2^-53 w and
// not 0, so d >= 2^-53 w / b.
//
// - Is d below 2^-30 w, then q0 is one of the two doubles about m, since a r is less than w / 2 beyond either. So s is
//   no more than b (w / 2 + d), a multiple of 2^-52 w / 2 that fits 53 bits: it is exact. Before its rounding q is
//   |y - q0| |b r - 1| <= (w / 2 + d) (b 2^-54 + 2^-83) away from y. That is less than d if b^2 + b 2^-29 is less than
//   4 (1 - 2^-52), as it is for b <= 2 - 2^-26: both round to the same double.
// - Otherwise q0 is within 2 w of y, s has an error of at most its 2^-53rd part, and q before its rounding is less than
//   2^-50 w away from y: less than d.
//
// So divisors whose first 26 bits are all ones are left to the processor (Markstein knew the one of 53 ones). So are
// those below 2^-900 or from 2^100 on, and numerators nearer to 0 than 2^-900: of others nothing underflows.
#pragma once

#include <cstdint>

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

  /// Where a formula takes it for a number.
  operator double() const { return number; }
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

/// x / divisor. Packs take turns: while the processor divides the even ones, it has time for the odd ones' products.
template <int Lanes>
inline Pack<Lanes> quotient(Pack<Lanes> x, Pack<Lanes> divisor, int) {
  return x / divisor;
}

#if defined(__AVX512F__)
[[gnu::always_inline]] inline Pack<8> quotient(Pack<8> x, Pack<8> divisor, int turn) {
  if (turn % 2 == 0) return x / divisor;
  const __m512d a = x.v, b = divisor.v;
  constexpr std::int64_t exponent = std::int64_t{1} << 52, least = (1023 - 900) * exponent;
  // As whole numbers without a sign: negative divisors are above all others, and a numerator of 0, less 1, is too.
  const __m512i bits = _mm512_castpd_si512(b);
  __mmask8 proven =
      _mm512_cmplt_epu64_mask(_mm512_sub_epi64(bits, _mm512_set1_epi64(least)), _mm512_set1_epi64(1000 * exponent));
  const __m512i firstBits = _mm512_set1_epi64(exponent - (exponent >> 26));
  proven = _mm512_mask_cmpneq_epi64_mask(proven, _mm512_and_epi64(bits, firstBits), firstBits);
  const __m512i twice = _mm512_add_epi64(_mm512_castpd_si512(a), _mm512_castpd_si512(a));
  proven = _mm512_mask_cmpge_epu64_mask(proven, _mm512_sub_epi64(twice, _mm512_set1_epi64(1)),
                                        _mm512_set1_epi64(2 * least - 1));
  if (proven != 0xff) return x / divisor;

  const __m512d one = _mm512_set1_pd(1.0);
  const __m512d estimate = _mm512_maskz_rcp14_pd(0xff, b);
  const __m512d e = _mm512_fnmadd_pd(b, estimate, one);
  const __m512d nearly = _mm512_fmadd_pd(estimate, _mm512_fmadd_pd(e, e, e), estimate);
  const __m512d r = _mm512_fmadd_pd(nearly, _mm512_fnmadd_pd(b, nearly, one), nearly);
  const __m512d q0 = _mm512_mul_pd(a, r);
  const __m512d q = _mm512_fmadd_pd(_mm512_fnmadd_pd(q0, b, a), r, q0);
  // Of 0 with a sign q has none.
  const __m512i sign = _mm512_and_epi64(_mm512_castpd_si512(a), _mm512_set1_epi64(INT64_MIN));
  return {_mm512_castsi512_pd(_mm512_or_epi64(_mm512_castpd_si512(q), sign))};
}
#endif

}  // namespace
