// How far a kernel can go without looking at every intermediate value.
#pragma once

#include <cstddef>
#include <limits>

#include "orvex/kernels/kernels.h"
#include "orvex/kernels/pack.inl"

namespace {

using orvex::kernels::Records;
using orvex::kernels::Source;

// No intermediate value of any kernel can overflow with inputs below 2^200, whatever the width of counts: the largest
// are products of four inputs, or of two with the sums of a regression's positions and their squares (below 2^93),
// summed over a window or a column of at most 2^31 rows: below 2^840.
constexpr double largestInput = 0x1p200;

// Scaled so, an input that is too large makes a sum that is not finite, and any sum after it: where all sums are
// finite, no addend has twice the size of the largest double, be it rounded by itself or with the sum.
constexpr double inputScale = 0x1p825;

// Marks a row that is left to the steps. A constant: 0 / 0 would be divided anew for every pack.
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

bool isHandled(double x) {
  return x < largestInput && x > -largestInput;
}

/// Whether each lane is 0, of lanes that are 0 or no number.
bool isZero(Pack<widestLanes> pack) {
  double all = 0.0;
  for (int lane = 0; lane < widestLanes; ++lane) all += pack.v[lane];
  return all == 0.0;
}

/// Whether `count` values, a multiple of eight packs, are finite once multiplied by `scale` and added up. A sum may be
/// too large where no value is.
bool areFinite(const double* x, std::ptrdiff_t count, double scale) {
  using P = Pack<widestLanes>;
  constexpr std::ptrdiff_t packs = 8;
  P sum[packs] = {};
  for (std::ptrdiff_t done = 0; done < count; done += packs * widestLanes) {
    ORVEX_UNROLL for (int i = 0; i < packs; ++i) {
      sum[i] = plusProduct(sum[i], P::load(x + done + i * widestLanes), P::all(scale));
    }
  }
  // 0 times an infinity, like 0 times not-a-number, is no number.
  P all = {};
  ORVEX_UNROLL for (int i = 0; i < packs; ++i) all = all + sum[i] * P::all(0.0);
  return isZero(all);
}

/// How many values from the first on are finite once multiplied by `scale`.
std::ptrdiff_t finitePrefix(const double* x, std::ptrdiff_t count, double scale = 1.0) {
  std::ptrdiff_t done = 0;
  for (std::ptrdiff_t chunk = 64 * widestLanes; chunk >= 8 * widestLanes; chunk /= 8) {
    while (done + chunk <= count && areFinite(x + done, chunk, scale)) done += chunk;
  }
  while (done < count && x[done] * scale * 0.0 == 0.0) ++done;
  return done;
}

/// How many values from the first on a kernel can take.
std::ptrdiff_t handledPrefix(const double* x, std::ptrdiff_t count) {
  return finitePrefix(x, count, inputScale);
}

/// How many of the records, from the first on, have the rows record - before .. record in the source.
std::ptrdiff_t present(Source source, Records records, std::ptrdiff_t before) {
  const auto rows = static_cast<std::ptrdiff_t>(source.count);
  const std::ptrdiff_t last = records.last < rows ? records.last : rows;
  if (before < 0 || records.first - before < 1 || last < records.first) return 0;
  return last - records.first + 1;
}

/// How many of the records, from the first on, can be computed from the source's rows record - before .. record.
std::ptrdiff_t provable(Source source, Records records, std::ptrdiff_t before) {
  const std::ptrdiff_t count = present(source, records, before);
  if (count == 0) return 0;
  const std::ptrdiff_t handled = handledPrefix(source.rows + (records.first - before - 1), count + before);
  return handled > before ? handled - before : 0;
}

std::size_t handled(Source source, Records records) {
  return static_cast<std::size_t>(provable(source, records, 0));
}

std::ptrdiff_t least(std::ptrdiff_t a, std::ptrdiff_t b) {
  return a < b ? a : b;
}

}  // namespace
