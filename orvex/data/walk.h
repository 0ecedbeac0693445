#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "orvex/data/continuation.h"
#include "orvex/data/database.h"
#include "orvex/data/host_events.h"
#include "orvex/data/integer.h"
#include "orvex/kernels/kernels.h"

/// The loops over records that indicators are made of. Which one is used when:
///
///   eachRecord   the definition goes by record numbers, and the cursor stays where it is
///   walk         it goes by the cursor, which stands on the record, or a fixed number of records behind it
///   walkSpans    its counter runs one ahead of the record, and the step takes the cursor over a span that ends there
///   visitSpan    is what such a step does with its span: the cursor goes over it, and there is no kernel and no yield
///
/// The first three hand the records to `kernel`, which fills the rows of the longest beginning of them that it can
/// prove faultless and returns their number; what remains is computed by `step(record)`. Kernel and steps give the same
/// bits, so where one ends and the other begins shows in nothing but time. No pointer into rows outlives the kernel's
/// call: after every record they yield to the host, which may free them. An error that leaves a step tells its record.
///
/// A call that goes on with an earlier one (continuation.h) walks the records that are new, and the last one before
/// them where that may be another now. What its steps hand on beside their rows is therefore named to the walk
/// (`Carried`); what stands before a walk is done again, so what costs time there, and what a seed writes, asks
/// `nextWalkBeginsAnew` first.
///
/// Their counter is stepped after the last pass too, at the width of the counts: a loop that reaches the greatest count
/// (32,767 of 16 bits) ends in error 6 after its last record.
namespace orvex::inline ORVEX_COUNTS {

/// What a loop is given where there is no kernel: every record is stepped.
inline constexpr auto noKernel = [](kernels::Records) { return std::size_t{0}; };

/// A kernel looks at more than it fills: in a call that goes on with an earlier one, fewer records than these are
/// stepped.
inline constexpr int fewRecords = 16;

/// A kernel that costs less than one step: it is handed few records too.
template <class Kernel>
struct ForFewToo : Kernel {};
template <class Kernel>
ForFewToo(Kernel) -> ForFewToo<Kernel>;

template <class Kernel>
inline constexpr int leastRecords = fewRecords;
template <class Kernel>
inline constexpr int leastRecords<ForFewToo<Kernel>> = 1;

/// What a loop is given that does not yield to the host.
inline constexpr YieldHook noYield{};

/// The record that a loop begins with. It need not fit the counts where it lies beyond the last.
class FirstRecord {
 public:
  FirstRecord(Integer record) : value_(record.value()) {}
  template <WholeNumber T>
  FirstRecord(T record) : value_(record) {}

  std::int64_t value() const { return value_; }

 private:
  std::int64_t value_;
};

/// The loop that the others are made of: a counter from `first` to `last`, `ahead` records ahead of the record. `pass`
/// does to the cursor what the step of that record would.
template <class Kernel, class Step, class Pass>
void countRecords(Integer first, Integer last, int ahead, Kernel&& kernel, Step&& step, Pass&& pass, YieldHook hook,
                  const Carried& carried) {
  Continuation* const continuation = Continuation::current();
  if (first > last) {
    if (continuation != nullptr) continuation->pass();
    return;
  }
  Integer counter = first;
  // Where there is something to continue, the records up to the last closed one come first, and then the others.
  Integer end = last;
  if (continuation != nullptr) [[unlikely]] {
    const auto entered = continuation->enter(first.value() - ahead, last.value() - ahead, carried);
    counter = entered.first + ahead;
    end = entered.closed + ahead;
    if (counter > first) pass(counter - 1 - ahead);
  }
  for (;;) {
    try {
      const std::int64_t records = std::int64_t{end.value()} - counter.value() + 1;
      if (continuation == nullptr || records >= leastRecords<std::remove_cvref_t<Kernel>>) {
        const auto done = static_cast<int>(kernel(kernels::Records{counter.value() - ahead, end.value() - ahead}));
        if (done > 0 && !hook) {
          counter += done - 1;
          pass(counter - ahead);
          ++counter;
        } else {
          for (int i = 0; i < done; ++i) {
            pass(counter - ahead);
            hook();
            ++counter;
          }
        }
      }
      for (; counter <= end; ++counter) {
        step(counter - ahead);
        if (hook) hook();
      }
    } catch (Error& error) {
      error.setRecord(counter.value() - ahead);
      throw;
    }
    if (continuation == nullptr) return;
    if (end.value() - ahead == continuation->closed()) continuation->keep(carried);
    if (end == last) return continuation->keepLast(carried);
    end = last;
  }
}

/// The records first..last of a definition that does not go by the cursor.
template <class Kernel, class Step>
void eachRecord(FirstRecord first, Integer last, Kernel&& kernel, Step&& step, YieldHook hook = yieldHook(),
                const Carried& carried = Carried()) {
  if (first.value() > last.value()) {
    if (Continuation* const continuation = Continuation::current()) continuation->pass();
    return;
  }
  countRecords(
      first.value(), last, 0, kernel, step, [](Integer) {}, hook, carried);
}
template <class Kernel, class Step>
void eachRecord(FirstRecord first, Integer last, Kernel&& kernel, Step&& step, const Carried& carried) {
  eachRecord(first, last, kernel, step, yieldHook(), carried);
}

struct WalkOptions {
  /// How many records behind its own a step finds the cursor.
  Integer behind = 0;
  YieldHook hook = yieldHook();
  Carried carried{};
};

/// The records first..last of a definition that goes by the cursor, which moves to the next record after each step.
/// REQUIRES: the cursor stands `behind` records before `first`, and each step leaves it where it was.
template <class Kernel, class Step>
void walk(Database& data, Integer first, Integer last, Kernel&& kernel, Step&& step,
          const WalkOptions& options = WalkOptions()) {
  countRecords(
      first, last, 0, kernel,
      [&](Integer record) {
        step(record);
        data.MoveNext();
      },
      [&](Integer record) {
        data.setPosition(record - options.behind);
        data.MoveNext();
      },
      options.hook, options.carried);
}

/// Where a step that places the cursor itself leaves it: on its record or on the next.
enum class CursorAfter { Record, NextRecord };

/// The records of a definition whose counter, from `first` to `last`, runs one ahead of the record that is computed, as
/// it does where a span is walked over and the row behind the cursor is written. Many of them count to one more than
/// the series has, and so bound it one record earlier than the other loops do.
/// REQUIRES: each step leaves the cursor at `after`.
template <class Kernel, class Step>
void walkSpans(Database& data, Integer first, Integer last, CursorAfter after, Kernel&& kernel, Step&& step) {
  countRecords(
      first, last, 1, kernel, step,
      [&](Integer record) { data.setPosition(after == CursorAfter::Record ? record : record + 1); }, yieldHook(),
      Carried());
}

/// Moves the cursor over the `length` records that end at `record`: `begin` with the first of them under it, then
/// `visit` at each. It ends on the record after the last.
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

}  // namespace orvex::inline ORVEX_COUNTS
