#pragma once

#include "orvex/data/database.h"
#include "orvex/data/integer.h"
#include "orvex/data/walk.h"

/// The trailing-span walk: what the oscillators share that place a value within the last records.
namespace orvex {

/// Walks the records whose span of `length` records is complete, one record late: the first to be stepped is
/// `length` + 1, and the last is the one before `end`. The counter runs one ahead of the record, in 16 bits, and so
/// bounds both the length and the series.
template <class Kernel, class Step>
void walkSpans(Database& data, Integer length, Integer end, Kernel&& kernel, Step&& step) {
  const Integer counter = length + 2;
  walk(data, counter - 1, end - 1, kernel, step);
}

/// Moves the cursor over the `length` records that end at `record`: `begin` with the first of them under it, then
/// `visit` at each. It ends on the last of them.
template <class Begin, class Visit>
void visitSpan(Database& data, Integer length, Integer record, Begin&& begin, Visit&& visit) {
  data.setPosition(record - length + 1);
  begin(data.getPosition());
  for (int i = 1; i <= length; ++i) {
    visit(data.getPosition());
    data.MoveNext();
  }
  data.MovePrevious();
}

}  // namespace orvex
