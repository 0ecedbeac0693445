// Kernels in which each row, or the sum so far, needs the row before: the gain is in checking nothing on the way.
#pragma once

#include <cstddef>

#include "orvex/kernels/provable.inl"

namespace {

/// row(r) = next(row(r - 1), source(r)), where `next` never leaves the range of its two arguments.
template <class Next>
std::size_t recursion(Source source, Records records, double* out, Next next) {
  const std::ptrdiff_t count = provable(source, records, 0);
  if (count == 0 || records.first < 2 || !isHandled(out[records.first - 2])) return 0;
  const double* const x = source.rows + (records.first - 1);
  double* const row = out + (records.first - 1);
  double previous = row[-1];
  for (std::ptrdiff_t i = 0; i < count; ++i) row[i] = previous = next(previous, x[i]);
  return static_cast<std::size_t>(count);
}

std::size_t exponential(Source source, double factor, Records records, double* out) {
  if (!(factor > 0.0 && factor <= 1.0)) return 0;
  const double keep = 1.0 - factor;
  return recursion(source, records, out, [=](double previous, double x) { return keep * previous + factor * x; });
}

std::size_t approach(Source source, double factor, Records records, double* out) {
  if (!(factor > 0.0 && factor <= 1.0)) return 0;
  return recursion(source, records, out, [=](double previous, double x) { return previous + (x - previous) * factor; });
}

std::size_t variable(Source source, Source momentum, Records records, double* out) {
  std::ptrdiff_t count = least(provable(source, records, 0), present(momentum, records, 0));
  if (count == 0 || records.first < 2 || !isHandled(out[records.first - 2])) return 0;
  const double* const x = source.rows + (records.first - 1);
  const double* const percent = momentum.rows + (records.first - 1);
  double* const row = out + (records.first - 1);
  double previous = row[-1];
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    // Up to a share of 2 a row is no larger than the row before and the source's twice: 32,767 of them stay in range.
    if (!(percent[i] <= 200.0 && percent[i] >= -200.0)) return static_cast<std::size_t>(i);
    const double share = percent[i] / 100.0;
    const double k = share > 0.0 ? share : 0.0 - share;
    row[i] = previous = (1.0 - k) * previous + k * x[i];
  }
  return static_cast<std::size_t>(count);
}

std::size_t movementProducts(Source a, Source b, Records records, double* total) {
  const std::ptrdiff_t count = least(provable(a, records, 1), provable(b, records, 1));
  constexpr std::ptrdiff_t piece = 256;
  double products[piece];
  double sum = 0.0;
  for (std::ptrdiff_t done = 0; done < count; done += piece) {
    const std::ptrdiff_t rows = least(piece, count - done);
    const double* const x = a.rows + (records.first - 1 + done);
    const double* const y = b.rows + (records.first - 1 + done);
    eachBlock<4>(0, rows, [=, &products]<int Lanes, int Count>(std::ptrdiff_t row) {
      using P = Pack<Lanes>;
      const P zero = P::all(0.0);
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        const std::ptrdiff_t at = row + i * Lanes;
        const P moveX = P::load(x + at) - P::load(x + at - 1);
        const P moveY = P::load(y + at) - P::load(y + at - 1);
        (larger(moveX, zero - moveX) * larger(moveY, zero - moveY)).store(products + at);
      }
    });
    for (std::ptrdiff_t i = 0; i < rows; ++i) sum += products[i];
  }
  *total = sum;
  return static_cast<std::size_t>(count);
}

}  // namespace
