// Shares of the upward in all movement, of prices and of money.
#pragma once

#include <cstddef>

#include "orvex/kernels/chains.inl"
#include "orvex/kernels/extremes.inl"
#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/quotients.inl"
#include "orvex/standard/formulas.h"

namespace {

using orvex::kernels::Bars;
using StandardParameters = orvex::standard::Parameters;

/// 100 x part / (part + rest): 50 where both are 0, 0 where only their total is.
struct Percentage {
  template <class P>
  static P of(const P (&x)[2], const StandardParameters&, int turn) {
    const P zero = P::all(0.0);
    const P whole = x[0] + x[1];
    return whereEqual(whole, zero, whereEqual(x[0], zero, P::all(50.0), zero),
                      quotient(P::all(100.0) * x[0], whole, turn));
  }
};

/// The means of rises and of falls, which forget; the third value is the row before.
struct MeanMovesChain : Chain<1, 2, 3> {
  double kept;
  Divisor periods;

  template <class T>
  void next(T (&state)[3], const T (&in)[1], T (&out)[2], int) const {
    const T now = in[0], then = state[2], zero = T::all(0.0);
    out[0] = state[0] = (state[0] * T::all(kept) + larger(now - then, zero)) / periods;
    out[1] = state[1] = (state[1] * T::all(kept) + larger(then - now, zero)) / periods;
    state[2] = now;
  }
};

/// What the rises are of both, in percent.
struct StrengthChain : Chain<1, 1, 3> {
  MeanMovesChain means;

  template <class T>
  void next(T (&state)[3], const T (&in)[1], T (&out)[1], int turn) const {
    T both[2];
    means.next(state, in, both, turn);
    out[0] = Percentage::of(both, {}, turn);
  }
};

std::size_t strength(Source source, int window, Records records, int known, double* means, double* out) {
  if (window < 1 || known < 1 || !isHandled(means[0]) || !isHandled(means[1])) return 0;
  const std::ptrdiff_t count = provable(source, records, records.first - known);
  if (count == 0) return 0;
  const double* const x = source.rows + known;
  double state[] = {means[0], means[1], x[-1]};
  const StrengthChain chain{{}, {{}, static_cast<double>(window - 1), Divisor(window)}};
  if (!runChain(chain, {x}, {out + known}, state, records.first - 1 + count - known, window)) return 0;
  if (known == records.first) {
    const Pack<1> both[] = {Pack<1>::all(means[0]), Pack<1>::all(means[1])};
    Percentage::of(both, {}, 0).store(out + known - 1);
  }
  means[0] = state[0];
  means[1] = state[1];
  return static_cast<std::size_t>(count);
}

/// The formula of the sums of rising and of falling flows.
template <class Formula, bool isNewestFirst>
std::size_t moneyFlowIndex(Bars bars, Source volume, int window, Records records, double* rising, double* falling,
                           double* out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count = least(least(provable(bars.high, records, window), provable(bars.low, records, window)),
                                     least(provable(bars.close, records, window), provable(volume, records, window)));
  if (count == 0) return 0;
  const Divisor three(3.0);
  constexpr std::ptrdiff_t piece = 512;
  double prices[piece + 1];
  const std::ptrdiff_t end = records.first - 1 + count;
  std::ptrdiff_t done = records.first - 1;
  // Of short windows each piece stands in the same place, so that it stays in the first-level cache, behind the rows
  // that windows have of the one before.
  const std::ptrdiff_t before = window - 1;
  const bool inPlace = window <= piece && records.last >= 2 * piece;
  for (std::ptrdiff_t start = records.first - window; start < end; start += piece) {
    const std::ptrdiff_t rows = least(piece, end - start);
    double* const rises = rising + (inPlace ? before : start);
    double* const falls = falling + (inPlace ? before : start);
    eachBlock<4>(0, rows + 1, [=, &prices]<int Lanes, int Count>(std::ptrdiff_t i) {
      using P = Pack<Lanes>;
      ORVEX_UNROLL for (int k = 0; k < Count; ++k) {
        const std::ptrdiff_t row = start - 1 + i + k * Lanes;
        const P sum = P::load(bars.high.rows + row) + P::load(bars.low.rows + row) + P::load(bars.close.rows + row);
        (sum / three).store(prices + i + k * Lanes);
      }
    });
    eachBlock<4>(0, rows, [=, &prices]<int Lanes, int Count>(std::ptrdiff_t i) {
      using P = Pack<Lanes>;
      const P zero = P::all(0.0);
      ORVEX_UNROLL for (int k = 0; k < Count; ++k) {
        const std::ptrdiff_t at = i + k * Lanes;
        const P last = P::load(prices + at), price = P::load(prices + at + 1);
        const P flow = price * P::load(volume.rows + start + at);
        whereGreater(price, last, flow, zero).store(rises + at);
        whereGreater(last, price, flow, zero).store(falls + at);
      }
    });
    if (start + rows <= done) continue;
    eachBlock<4>(done - start, start + rows - done, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
      using P = Pack<Lanes>;
      P up[Count] = {};
      P down[Count] = {};
      for (std::ptrdiff_t k = 0; k < window; ++k) {
        const std::ptrdiff_t j = isNewestFirst ? -k : k - before;
        ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
          up[i] = up[i] + P::load(rises + row + i * Lanes + j);
          down[i] = down[i] + P::load(falls + row + i * Lanes + j);
        }
      }
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        const P both[] = {up[i], down[i]};
        Formula::of(both, {}, 0).store(out + start + row + i * Lanes);
      }
    });
    done = start + rows;
    for (std::ptrdiff_t i = rows - before; inPlace && i < rows; ++i) {
      rises[i - rows] = rises[i];
      falls[i - rows] = falls[i];
    }
  }
  return static_cast<std::size_t>(finitePrefix(out + records.first - 1, count));
}

}  // namespace
