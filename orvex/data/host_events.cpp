#include "orvex/data/host_events.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {
thread_local YieldHook currentHook;
}  // namespace

YieldHook yieldHook() noexcept {
  return currentHook;
}

void setYieldHook(YieldHook hook) noexcept {
  currentHook = hook;
}

}  // namespace orvex::inline ORVEX_COUNTS
