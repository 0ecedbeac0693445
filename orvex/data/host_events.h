#pragma once

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS {

/// What a long computation runs once a record, so that a host can process its pending events: a function and what it
/// is handed. None by default. Whatever leaves the function as an exception is a fault of the computation.
struct YieldHook {
  void (*run)(void* context) = nullptr;
  void* context = nullptr;

  explicit operator bool() const noexcept { return run != nullptr; }
  void operator()() const { run(context); }
};

/// The hook of the calling thread.
YieldHook yieldHook() noexcept;

/// Sets the hook of the calling thread; a computation that is under way keeps the one that it began with.
void setYieldHook(YieldHook hook) noexcept;

}  // namespace orvex::inline ORVEX_COUNTS
