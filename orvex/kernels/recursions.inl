// Kernels in which each row needs the row before: the gain is in checking nothing on the way.
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

}  // namespace
