// Sums over a window of records of something that is computed once a record.
#pragma once

#include <cstddef>

#include "orvex/kernels/pack.inl"
#include "orvex/kernels/pointwise.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/quotients.inl"
#include "orvex/kernels/sliding.inl"

namespace {

using orvex::kernels::Bars;

/// `term` (as of `rowsOf`) into rows `from` .. `end` - 1 of `terms`.
template <class Term>
void fillTerms(std::ptrdiff_t from, std::ptrdiff_t end, double* terms, Term term) {
  eachBlock<4>(from, end - from, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
      rowsOf<Pack<Lanes>>(term, row + i * Lanes, i).store(terms + row + i * Lanes);
    }
  });
}

std::size_t ratioSum(Source above, Source below, int window, Records records, double* terms, double* out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count = least(present(above, records, window - 1), present(below, records, window - 1));
  if (count == 0) return 0;
  const std::ptrdiff_t from = records.first - 1;
  const double* const a = above.rows;
  const double* const b = below.rows;
  fillTerms(from - (window - 1), from + count, terms,
            [=]<class P>(std::ptrdiff_t row, int turn) { return quotient(P::load(a + row), P::load(b + row), turn); });
  const std::ptrdiff_t done =
      slideShort<12, Order::oldestFirst>({terms, nullptr, out}, window, from, count, PlainSum());
  eachBlock<8>(from + done, count - done, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    P sum[Count] = {};
    for (std::ptrdiff_t j = 1 - window; j <= 0; ++j) {
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) sum[i] = sum[i] + P::load(terms + row + i * Lanes + j);
    }
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) sum[i].store(out + row + i * Lanes);
  });
  const std::ptrdiff_t finite = finitePrefix(out + from, count);
  for (std::ptrdiff_t row = from + finite; row < from + count; ++row) out[row] = 0.0;
  return static_cast<std::size_t>(finite);
}

std::size_t moneyFlow(Bars bars, Source volume, int window, Records records, double* terms, double* out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count =
      least(least(provable(bars.high, records, window - 1), provable(bars.low, records, window - 1)),
            least(provable(bars.close, records, window - 1), provable(volume, records, window - 1)));
  if (count == 0) return 0;
  const std::ptrdiff_t from = records.first - 1;
  const double* const v = volume.rows;
  fillTerms(from - (window - 1), from + count, terms, [=]<class P>(std::ptrdiff_t row) {
    const P high = P::load(bars.high.rows + row), low = P::load(bars.low.rows + row);
    const P close = P::load(bars.close.rows + row), zero = P::all(0.0);
    const P place = (close - low) - (high - close);
    const P weight = (high - low) * P::load(v + row);
    return whereEqual(place, zero, zero, whereEqual(weight, zero, zero, place / weight));
  });
  eachBlock<4>(from, count, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    P flow[Count] = {};
    P total[Count] = {};
    for (std::ptrdiff_t j = 0; j < window; ++j) {
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        flow[i] = flow[i] + P::load(terms + row + i * Lanes - j);
        total[i] = total[i] + P::load(v + row + i * Lanes - j);
      }
    }
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
      (total[i] * total[i] * (flow[i] / total[i])).store(out + row + i * Lanes);
    }
  });
  return static_cast<std::size_t>(finitePrefix(out + from, count));
}

std::size_t channel(Source prices, Source averages, int window, Records records, double* out) {
  // One price alone is always as flat as can be.
  if (window < 2) return 0;
  const std::ptrdiff_t count = least(provable(prices, records, window - 1), provable(averages, records, 0));
  const double* const x = prices.rows;
  const double* const average = averages.rows;
  const Divisor length(window);
  eachBlock<4>(records.first - 1, count, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    P center[Count];
    P sum[Count] = {};
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) center[i] = P::load(average + row + i * Lanes);
    for (std::ptrdiff_t j = 1 - window; j <= 0; ++j) {
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        const P value = P::load(x + row + i * Lanes + j);
        sum[i] = sum[i] + larger(value - center[i], center[i] - value);
      }
    }
    const P zero = P::all(0.0);
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
      const std::ptrdiff_t at = row + i * Lanes;
      const P divisor = P::all(0.015) * (sum[i] / length);
      const P price = P::load(x + at);
      whereGreater(divisor, zero, (price - center[i]) / divisor, zero).store(out + at);
      const P move = price - P::load(x + at - 1);
      if (!hasZero(move)) continue;
      for (int lane = 0; lane < Lanes; ++lane) {
        if (move.v[lane] != 0.0) continue;
        std::ptrdiff_t equal = 1;
        while (equal < window && x[at + lane - equal] == x[at + lane]) ++equal;
        if (equal == window) out[at + lane] = 0.0;
      }
    }
  });
  return static_cast<std::size_t>(count);
}

}  // namespace
