#pragma once

#include "orvex/data/database.h"
#include "orvex/data/integer.h"
#include "orvex/data/walk.h"

/// The trailing-span walk: what the oscillators share that place a value within the last records.
namespace orvex {

/// Walks the records that have a span of `length` records behind them, one record late: the first that is stepped is
/// `length` + 1, and the last the one before `end`. The counter of the walk runs one ahead of the record, in 16 bits,
/// which bounds both the length and the series. The step leaves the cursor `ahead` records past its own.
template <class Kernel, class Step>
void walkSpans(Database& data, Integer length, Integer end, Integer ahead, Kernel&& kernel, Step&& step) {
  const Integer counter = length + 2;
  eachRecord(counter - 1, end - 1, kernel, step, [&](Integer record) { data.setPosition(record + ahead); });
}

/// Moves the cursor over the `length` records that end at `record`: `begin` with the first of them under it, then
/// `visit` at each. It ends one past the last.
template <class Begin, class Visit>
void visitSpan(Database& data, Integer length, Integer record, Begin&& begin, Visit&& visit) {
  data.setPosition(record - length + 1);
  begin(data.getPosition());
  for (int i = 1; i <= length; ++i) {
    visit(data.getPosition());
    data.MoveNext();
  }
}

/// The same with nothing to begin with.
template <class Visit>
void visitSpan(Database& data, Integer length, Integer record, Visit&& visit) {
  visitSpan(
      data, length, record, [](Integer) {}, visit);
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

}  // namespace orvex
