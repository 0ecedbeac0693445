// Shares of the upward in all movement, of prices and of money.
#pragma once

#include <cstddef>

#include "orvex/kernels/pack.h"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/recursions.inl"

namespace {

/// 100 x part / (part + rest): 50 where both are 0, 0 where only their total is.
template <class P>
P percentage(P part, P rest) {
  const P zero = P::all(0.0);
  const P whole = part + rest;
  return whereEqual(whole, zero, whereEqual(part, zero, P::all(50.0), zero), P::all(100.0) * part / whole);
}

std::size_t strength(Source source, int window, Records records, double (&means)[2], double* scratch, double* out) {
  if (window < 1 || !isHandled(means[0]) || !isHandled(means[1])) return 0;
  const std::ptrdiff_t count = provable(source, records, 0);
  if (count == 0) return 0;
  const std::ptrdiff_t from = records.first - 1;
  double* const rows[] = {out + from + 1, scratch + from + 1};
  rows[0][-1] = means[0];
  rows[1][-1] = means[1];
  const double kept = window - 1;
  const double all = window;
  recur(source.rows + from + 1, rows, count - 1, all, [=](auto& mean, auto now, auto then) {
    const auto zero = spread(0.0, now);
    mean[0] = (mean[0] * spread(kept, now) + larger(now - then, zero)) / spread(all, now);
    mean[1] = (mean[1] * spread(kept, now) + larger(then - now, zero)) / spread(all, now);
  });
  means[0] = out[from + count - 1];
  means[1] = scratch[from + count - 1];
  eachBlock<4>(from, count, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
      double* const at = out + row + i * Lanes;
      percentage(P::load(at), P::load(scratch + row + i * Lanes)).store(at);
    }
  });
  return static_cast<std::size_t>(count);
}

}  // namespace
