// How far a kernel can go without looking at every intermediate value.
#pragma once

#include <cstddef>

#include "orvex/kernels/kernels.h"
#include "orvex/kernels/pack.h"

namespace {

using orvex::kernels::Records;
using orvex::kernels::Source;

// No intermediate value of any kernel can overflow with inputs below 2^200: the largest are products of four inputs
// summed over a window.
constexpr double largestInput = 0x1p200;

bool isHandled(double x) {
  return x < largestInput && x > -largestInput;
}

/// How many values from the first on a kernel can take.
std::ptrdiff_t handledPrefix(const double* x, std::ptrdiff_t count) {
  using P = Pack<widestLanes>;
  constexpr std::ptrdiff_t packs = 8;
  constexpr std::ptrdiff_t chunk = packs * widestLanes;
  // Scaled so, a number that is too large becomes an infinity, and 0 times it, like 0 times not-a-number, is none.
  const P scale = P::all(0x1p824);
  const P zero = P::all(0.0);
  std::ptrdiff_t done = 0;
  while (done + chunk <= count) {
    P sum[packs];
    ORVEX_UNROLL for (int i = 0; i < packs; ++i) sum[i] = P::load(x + done + i * widestLanes) * scale * zero;
    const P total = ((sum[0] + sum[1]) + (sum[2] + sum[3])) + ((sum[4] + sum[5]) + (sum[6] + sum[7]));
    double all = 0.0;
    for (int lane = 0; lane < widestLanes; ++lane) all += total.v[lane];
    if (!(all == 0.0)) break;
    done += chunk;
  }
  while (done < count && isHandled(x[done])) ++done;
  return done;
}

/// How many of the records, from the first on, can be computed from the source's rows record - before .. record.
std::ptrdiff_t provable(Source source, Records records, std::ptrdiff_t before) {
  const auto rows = static_cast<std::ptrdiff_t>(source.count);
  const std::ptrdiff_t last = records.last < rows ? records.last : rows;
  const std::ptrdiff_t from = records.first - before;
  if (before < 0 || from < 1 || last < records.first) return 0;
  const std::ptrdiff_t handled = handledPrefix(source.rows + (from - 1), last - from + 1);
  return handled > before ? handled - before : 0;
}

}  // namespace
