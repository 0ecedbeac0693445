#include "orvex/automation/event_pump.h"

#include <atomic>

#include "orvex/automation/floating_point.h"
#include "orvex/automation/platform.h"
#include "orvex/data/host_events.h"

namespace orvex::inline ORVEX_COUNTS::automation {

namespace {

std::atomic<unsigned> calls = 0;

/// What one yield handles at most. A host whose handlers post again, or take longer than its timer takes to come round,
/// always has another event.
constexpr int mostEvents = 64;
constexpr DWORD mostMilliseconds = 10;

/// When a thread asked for events last.
struct Asked {
  DWORD tick = 0;
  unsigned call = 0;
};
thread_local Asked asked;

void runPendingEvents(void* context) {
  auto& last = *static_cast<Asked*>(context);
  const DWORD tick = GetTickCount();
  const unsigned call = calls.load(std::memory_order_relaxed);
  if (tick == last.tick && call == last.call) return;
  last = {tick, call};
  if (HIWORD(GetQueueStatus(QS_ALLINPUT)) == 0) return;
  // What is left, and what a handler posts, is for the next yield.
  last.call = call - 1;
  const HostFloatingPointScope scope;
  MSG message;
  for (int handled = 0; handled < mostEvents && GetTickCount() - tick < mostMilliseconds; ++handled) {
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) == FALSE) return;
    if (message.message == WM_QUIT) {
      // It is for the host's own loop, which waits further down the stack.
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace

void pumpEventsOfThisThread() noexcept {
  setYieldHook({&runPendingEvents, &asked});
}

void noteCall() noexcept {
  // Losing a count to another thread's is harmless: the number still changes.
  calls.store(calls.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

}  // namespace orvex::inline ORVEX_COUNTS::automation
