// Shares of the upward in all movement, of prices and of money.
#pragma once

#include <cstddef>

#include "orvex/kernels/extremes.inl"
#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/quotients.inl"
#include "orvex/kernels/recursions.inl"

namespace {

using orvex::kernels::Bars;

/// 100 x part / (part + rest): 50 where both are 0, 0 where only their total is.
template <class P>
P percentage(P part, P rest, int turn) {
  const P zero = P::all(0.0);
  const P whole = part + rest;
  return whereEqual(whole, zero, whereEqual(part, zero, P::all(50.0), zero),
                    quotient(P::all(100.0) * part, whole, turn));
}

std::size_t strength(Source source, int window, Records records, int known, double* means, double* scratch,
                     double* out) {
  if (window < 1 || known < 1 || !isHandled(means[0]) || !isHandled(means[1])) return 0;
  const std::ptrdiff_t count = provable(source, records, records.first - known);
  if (count == 0) return 0;
  const std::ptrdiff_t from = records.first - 1;
  // The means go where the percentages will stand; the row before the first is only lent for it.
  double* const rows[] = {out + known, scratch + known};
  const double lent = rows[0][-1];
  rows[0][-1] = means[0];
  rows[1][-1] = means[1];
  const double kept = window - 1;
  const double all = window;
  const Divisor periods(all);
  recur(source.rows + known, rows, from + count - known, all, [=](auto& mean, auto now, auto then) {
    const auto zero = spread(0.0, now);
    mean[0] = (mean[0] * spread(kept, now) + larger(now - then, zero)) / periods;
    mean[1] = (mean[1] * spread(kept, now) + larger(then - now, zero)) / periods;
  });
  means[0] = out[from + count - 1];
  means[1] = scratch[from + count - 1];
  if (known < records.first) rows[0][-1] = lent;
  eachBlock<4>(from, count, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
      double* const at = out + row + i * Lanes;
      percentage(P::load(at), P::load(scratch + row + i * Lanes), i).store(at);
    }
  });
  return static_cast<std::size_t>(count);
}

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
  for (std::ptrdiff_t start = records.first - window; start < end; start += piece) {
    const std::ptrdiff_t rows = least(piece, end - start);
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
        const P before = P::load(prices + at), price = P::load(prices + at + 1);
        const P flow = price * P::load(volume.rows + start + at);
        whereGreater(price, before, flow, zero).store(rising + start + at);
        whereGreater(before, price, flow, zero).store(falling + start + at);
      }
    });
    if (start + rows <= done) continue;
    eachBlock<4>(done, start + rows - done, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
      using P = Pack<Lanes>;
      P up[Count] = {};
      P down[Count] = {};
      for (std::ptrdiff_t j = 1 - window; j <= 0; ++j) {
        ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
          up[i] = up[i] + P::load(rising + row + i * Lanes + j);
          down[i] = down[i] + P::load(falling + row + i * Lanes + j);
        }
      }
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) percentage(up[i], down[i], 0).store(out + row + i * Lanes);
    });
    done = start + rows;
  }
  return static_cast<std::size_t>(finitePrefix(out + records.first - 1, count));
}

}  // namespace
