#pragma once

#include <algorithm>
#include <memory>

#include "orvex/data/field.h"
#include "orvex/data/integer.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/real.h"

/// What the oscillators share that place a value within the last records.
namespace orvex::inline ORVEX_COUNTS {

/// The extremes of the spans that end at the records, for those records from the first on that kernels can tell.
struct SpanExtremes {
  kernels::Records records;
  std::unique_ptr<double[]> rows;
  kernels::Source highest, lowest;

  /// Fills rows with (above - below) / (highest - lowest) x factor and tells how many.
  std::size_t place(kernels::Source above, kernels::Source below, double factor, Field& out) const {
    return kernels::run(&kernels::Table::place, above, below, highest, lowest, factor, records,
                        out.writableValues().data());
  }
};

inline SpanExtremes spanExtremes(kernels::Source high, kernels::Source low, Integer length, kernels::Records records) {
  if (records.first < 1 || records.first > records.last) return {{1, 0}, nullptr, {}, {}};
  const auto count = static_cast<std::size_t>(records.last);
  SpanExtremes spans{records, workingRows(records.last, 2), {}, {}};
  const auto fill = [&](auto kernel, kernels::Source source, double* out) {
    const std::size_t done = kernels::run(kernel, source, length.value(), kernels::Ties::Oldest, records, out);
    spans.records.last = std::min(spans.records.last, records.first - 1 + static_cast<int>(done));
    return kernels::Source{out, count};
  };
  spans.highest = fill(&kernels::Table::highest, high, spans.rows.get());
  spans.lowest = fill(&kernels::Table::lowest, low, spans.rows.get() + count);
  return spans;
}

/// The highest and the lowest of values that are taken one after the other.
class Extremes {
 public:
  void begin(Real high, Real low) {
    highest_ = high;
    lowest_ = low;
  }
  void take(Real high, Real low) {
    if (high > highest_) highest_ = high;
    if (low < lowest_) lowest_ = low;
  }
  Real highest() const { return highest_; }
  Real lowest() const { return lowest_; }

 private:
  Real highest_, lowest_;
};

}  // namespace orvex::inline ORVEX_COUNTS
