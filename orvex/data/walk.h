#pragma once

#include <cstddef>
#include <cstdint>

#include "orvex/data/database.h"
#include "orvex/data/host_events.h"
#include "orvex/data/integer.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

/// What a walk is given where there is no kernel: every record is stepped.
inline constexpr auto noKernel = [](auto&&...) { return std::size_t{0}; };

/// What a walk is given that does not yield to the host.
inline constexpr YieldHook noYield{};

/// The loop over the records first..last that every indicator shares: `pass` for the kernel's records and after each
/// step, a yield to the host after every record, and a 16-bit counter that is stepped after the last record too, so
/// that a loop which reaches record 32,767 ends in error 6.
///
/// `kernel` fills the rows of the longest beginning of the records that it can prove faultless and returns their
/// number; what remains is computed by `step(record)`. Kernel and steps give the same bits, so where one ends and the
/// other begins shows in nothing but time. No pointer into rows outlives the kernel's call: a yield may free them.
template <class Kernel, class Step, class Pass>
void eachRecord(Integer first, Integer last, Kernel&& kernel, Step&& step, Pass&& pass, YieldHook hook = yieldHook()) {
  if (first > last) return;
  const auto done = static_cast<int>(kernel());
  Integer record = first;
  if (done > 0 && !hook) {
    record += done - 1;
    pass(record);
    ++record;
  } else {
    while (record < first.value() + done) {
      pass(record);
      hook();
      ++record;
    }
  }
  for (; record <= last; ++record) {
    step(record);
    if (hook) hook();
  }
}

/// The same for definitions that do not go by the cursor.
template <class Kernel, class Step>
void eachRecord(Integer first, Integer last, Kernel&& kernel, Step&& step) {
  eachRecord(first, last, kernel, step, [](Integer) {});
}

/// The same from the first computed record on, which need not be a count where it lies beyond the last; `kernel` is
/// handed the records.
template <class Kernel, class Step>
void eachComputed(std::int64_t first, Integer count, Kernel&& kernel, Step&& step, YieldHook hook = yieldHook()) {
  if (first > count) return;
  const kernels::Records records{static_cast<int>(first), count.value()};
  eachRecord(
      first, count, [&] { return kernel(records); }, step, [](Integer) {}, hook);
}

/// The walk of the database's cursor: it stands on the record that is stepped, moves to the next one, and yields.
/// REQUIRES: the step leaves the cursor on its record.
template <class Kernel, class Step>
void walk(Database& data, Integer first, Integer last, Kernel&& kernel, Step&& step, YieldHook hook = yieldHook()) {
  eachRecord(
      first, last, kernel,
      [&](Integer record) {
        step(record);
        data.MoveNext();
      },
      [&](Integer record) {
        data.setPosition(record);
        data.MoveNext();
      },
      hook);
}

}  // namespace orvex::inline ORVEX_COUNTS
