// A few doubles side by side, one record a lane. Included by the kernel variants only: everything here has internal
// linkage, so that no function compiled for a wider processor can be linked into code for a narrower one.
//
// `larger` and `smaller` give their second operand where neither is larger, zeros of either sign being equal.
#pragma once

#include <cstddef>
#if defined(__SSE2__)
#include <immintrin.h>
#elif !defined(__GNUC__)
#include <math.h>
#endif

namespace {

#if defined(__AVX512F__)
constexpr int widestLanes = 8;
#elif defined(__AVX2__)
constexpr int widestLanes = 4;
#else
constexpr int widestLanes = 2;
#endif

/// How many packs the processor's registers hold: programs of 32 bits see 8 of them.
#if defined(__i386__)
constexpr int registers = 8;
#else
constexpr int registers = widestLanes == 8 ? 32 : 16;
#endif

#if defined(__GNUC__)
#define ORVEX_UNROLL _Pragma("GCC unroll 8")
#define ORVEX_SQRT __builtin_sqrt

template <int Lanes>
struct Pack {
  typedef double Vector __attribute__((vector_size(Lanes * sizeof(double))));
  static constexpr int lanes = Lanes;

  Vector v;

  static Pack all(double x) { return {x - Vector{}}; }
  static Pack load(const double* from) {
    Pack pack;
    __builtin_memcpy(&pack.v, from, sizeof pack.v);
    return pack;
  }
  void store(double* to) const { __builtin_memcpy(to, &v, sizeof v); }

  friend Pack operator+(Pack a, Pack b) { return {a.v + b.v}; }
  friend Pack operator-(Pack a, Pack b) { return {a.v - b.v}; }
  friend Pack operator*(Pack a, Pack b) { return {a.v * b.v}; }
  friend Pack operator/(Pack a, Pack b) { return {a.v / b.v}; }
  friend Pack larger(Pack a, Pack b) { return {a.v > b.v ? a.v : b.v}; }
  friend Pack smaller(Pack a, Pack b) { return {a.v < b.v ? a.v : b.v}; }
  /// Lane by lane: `yes` where a > b, `no` elsewhere.
  friend Pack whereGreater(Pack a, Pack b, Pack yes, Pack no) { return {a.v > b.v ? yes.v : no.v}; }
  friend Pack whereEqual(Pack a, Pack b, Pack yes, Pack no) { return {a.v == b.v ? yes.v : no.v}; }
};
#else
#define ORVEX_UNROLL
#define ORVEX_SQRT sqrt

template <int Lanes>
struct Pack {
  static constexpr int lanes = Lanes;

  double v[Lanes];

  template <class Operation>
  static Pack each(Operation operation) {
    Pack pack;
    for (int i = 0; i < Lanes; ++i) pack.v[i] = operation(i);
    return pack;
  }
  static Pack all(double x) {
    return each([&](int) { return x; });
  }
  static Pack load(const double* from) {
    return each([&](int i) { return from[i]; });
  }
  void store(double* to) const {
    for (int i = 0; i < Lanes; ++i) to[i] = v[i];
  }

  friend Pack operator+(Pack a, Pack b) {
    return each([&](int i) { return a.v[i] + b.v[i]; });
  }
  friend Pack operator-(Pack a, Pack b) {
    return each([&](int i) { return a.v[i] - b.v[i]; });
  }
  friend Pack operator*(Pack a, Pack b) {
    return each([&](int i) { return a.v[i] * b.v[i]; });
  }
  friend Pack operator/(Pack a, Pack b) {
    return each([&](int i) { return a.v[i] / b.v[i]; });
  }
  friend Pack larger(Pack a, Pack b) {
    return each([&](int i) { return a.v[i] > b.v[i] ? a.v[i] : b.v[i]; });
  }
  friend Pack smaller(Pack a, Pack b) {
    return each([&](int i) { return a.v[i] < b.v[i] ? a.v[i] : b.v[i]; });
  }
  friend Pack whereGreater(Pack a, Pack b, Pack yes, Pack no) {
    return each([&](int i) { return a.v[i] > b.v[i] ? yes.v[i] : no.v[i]; });
  }
  friend Pack whereEqual(Pack a, Pack b, Pack yes, Pack no) {
    return each([&](int i) { return a.v[i] == b.v[i] ? yes.v[i] : no.v[i]; });
  }
};
#endif

/// sum + a b, for a check that asks only whether numbers are finite: with one rounding where the processor has that.
template <int Lanes>
Pack<Lanes> plusProduct(Pack<Lanes> sum, Pack<Lanes> a, Pack<Lanes> b) {
  return sum + a * b;
}
#if defined(__AVX512F__)
Pack<8> plusProduct(Pack<8> sum, Pack<8> a, Pack<8> b) {
  return {_mm512_fmadd_pd(a.v, b.v, sum.v)};
}
#elif defined(__AVX2__) && defined(__FMA__)
Pack<4> plusProduct(Pack<4> sum, Pack<4> a, Pack<4> b) {
  return {_mm256_fmadd_pd(a.v, b.v, sum.v)};
}
#endif

using WidestPack = Pack<widestLanes>;

/// Of lanes in blocks of `Step` those of every other block: the first, third, ... or with `areSecond` the others. Those
/// of `b` take the places behind those of `a`.
template <int Step, bool areSecond>
WidestPack everyOther(WidestPack a, WidestPack b) {
  // Those of b are numbered on from those of a.
  constexpr auto lane = [](int i) { return ((i & Step) == 0 ? i : widestLanes + i - Step) + (areSecond ? Step : 0); };
#if defined(__AVX512F__)
  return {__builtin_shufflevector(a.v, b.v, lane(0), lane(1), lane(2), lane(3), lane(4), lane(5), lane(6), lane(7))};
#elif defined(__AVX2__)
  return {__builtin_shufflevector(a.v, b.v, lane(0), lane(1), lane(2), lane(3))};
#else
  WidestPack result;
  ORVEX_UNROLL for (int i = 0; i < widestLanes; ++i) {
    result.v[i] = lane(i) < widestLanes ? a.v[lane(i)] : b.v[lane(i) - widestLanes];
  }
  return result;
#endif
}

/// Lane j of pack i becomes lane i of pack j: the blocks off the diagonal change places, of one lane, of two, and so
/// on. Within a quarter or a half of a register that is one operation each.
template <int Step = 1>
void transpose(WidestPack (&square)[widestLanes]) {
  ORVEX_UNROLL for (int i = 0; i < widestLanes; ++i) {
    if ((i & Step) != 0) continue;
    const WidestPack first = square[i], second = square[i + Step];
    square[i] = everyOther<Step, false>(first, second);
    square[i + Step] = everyOther<Step, true>(first, second);
  }
  if constexpr (2 * Step < widestLanes) transpose<2 * Step>(square);
}

/// Rows that lie `stride` apart, one a lane.
template <class P>
P gather(const double* from, std::ptrdiff_t stride) {
  P pack;
  ORVEX_UNROLL for (int i = 0; i < P::lanes; ++i) pack.v[i] = from[i * stride];
  return pack;
}

/// Rows that several operations take: of memory the compiler would have each of them load it anew.
inline WidestPack loadOnce(const double* from) {
  WidestPack pack = WidestPack::load(from);
#if defined(__AVX512F__)
  asm("" : "+v"(pack.v));
#endif
  return pack;
}

/// A number, as often as `like` holds one: for what is written once for doubles and packs.
template <int Lanes>
Pack<Lanes> spread(double x, const Pack<Lanes>&) {
  return Pack<Lanes>::all(x);
}

// The square roots of numbers that are not below 0.
#if defined(__AVX512F__)
Pack<8> root(Pack<8> a) {
  // With all lanes selected: GCC 12 takes the plain form's unused operand for an uninitialised value.
  return {_mm512_maskz_sqrt_pd(0xff, a.v)};
}
#elif defined(__AVX2__)
Pack<4> root(Pack<4> a) {
  return {_mm256_sqrt_pd(a.v)};
}
#elif defined(__SSE2__)
Pack<2> root(Pack<2> a) {
  return {_mm_sqrt_pd(a.v)};
}
#endif
template <int Lanes>
Pack<Lanes> root(Pack<Lanes> a) {
  for (int i = 0; i < Lanes; ++i) a.v[i] = ORVEX_SQRT(a.v[i]);
  return a;
}

/// Whether a lane is 0.
#if defined(__AVX512F__)
inline bool hasZero(Pack<8> a) {
  return _mm512_cmp_pd_mask(a.v, _mm512_setzero_pd(), _CMP_EQ_OQ) != 0;
}
#elif defined(__AVX2__)
inline bool hasZero(Pack<4> a) {
  return _mm256_movemask_pd(_mm256_cmp_pd(a.v, _mm256_setzero_pd(), _CMP_EQ_OQ)) != 0;
}
#endif
template <int Lanes>
bool hasZero(Pack<Lanes> a) {
  for (int lane = 0; lane < Lanes; ++lane) {
    if (a.v[lane] == 0.0) return true;
  }
  return false;
}

/// Whether no lane of a is less than b's, nor no number.
#if defined(__AVX512F__)
inline bool areAtLeast(Pack<8> a, Pack<8> b) {
  return _mm512_cmp_pd_mask(a.v, b.v, _CMP_GE_OQ) == 0xff;
}
#elif defined(__AVX2__)
inline bool areAtLeast(Pack<4> a, Pack<4> b) {
  return _mm256_movemask_pd(_mm256_cmp_pd(a.v, b.v, _CMP_GE_OQ)) == 0xf;
}
#endif
template <int Lanes>
bool areAtLeast(Pack<Lanes> a, Pack<Lanes> b) {
  for (int lane = 0; lane < Lanes; ++lane) {
    if (!(a.v[lane] >= b.v[lane])) return false;
  }
  return true;
}

/// The whole part of values from 0 to below 2^31.
template <int Lanes>
Pack<Lanes> wholePart(Pack<Lanes> a) {
  for (int lane = 0; lane < Lanes; ++lane) a.v[lane] = static_cast<double>(static_cast<int>(a.v[lane]));
  return a;
}

/// What a table has at each lane's place, a whole number.
template <int Lanes>
Pack<Lanes> chosen(const double* table, Pack<Lanes> places) {
  for (int lane = 0; lane < Lanes; ++lane) places.v[lane] = table[static_cast<int>(places.v[lane])];
  return places;
}

/// The value without its sign; 0 without one too.
template <int Lanes>
Pack<Lanes> magnitude(Pack<Lanes> a) {
#if defined(__GNUC__)
  typedef long long Bits __attribute__((vector_size(Lanes * sizeof(double))));
  return {(typename Pack<Lanes>::Vector)((Bits)a.v & 0x7fffffffffffffff)};
#else
  return larger(a, Pack<Lanes>::all(0.0) - a);
#endif
}

/// A number that is part of a type, so that what is chosen by it is chosen when it is compiled.
template <int number>
struct Constant {
  static constexpr int value = number;
};

/// `body(Constant<i>())` for i from `From` to below `To`, each written out by itself.
template <int From, int To, class Body>
inline void unroll(const Body& body) {
  if constexpr (From < To) {
    body(Constant<From>());
    unroll<From + 1, To>(body);
  }
}

/// Runs `body.template operator()<Lanes, Count>(i)` for blocks of Lanes x Count rows from row `from` (counted from 0)
/// on, until `count` rows are done: wide blocks with `Count` packs in registers while they fit, then single packs, then
/// single rows.
template <int Count, int Widest = widestLanes, class Body>
void eachBlock(std::ptrdiff_t from, std::ptrdiff_t count, Body body) {
  const std::ptrdiff_t end = from + count;
  constexpr int block = Widest * Count;
  for (; from + block <= end; from += block) body.template operator()<Widest, Count>(from);
  for (; from + Widest <= end; from += Widest) body.template operator()<Widest, 1>(from);
  for (; from < end; ++from) body.template operator()<1, 1>(from);
}

}  // namespace
