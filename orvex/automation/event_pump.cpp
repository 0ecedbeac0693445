#include "orvex/automation/event_pump.h"

#include "orvex/automation/floating_point.h"
#include "orvex/automation/platform.h"
#include "orvex/data/host_events.h"

namespace orvex::automation {

namespace {

void runPendingEvents(void*) {
  if (HIWORD(GetQueueStatus(QS_ALLINPUT)) == 0) return;
  const HostFloatingPointScope scope;
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
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
  setYieldHook({&runPendingEvents, nullptr});
}

}  // namespace orvex::automation
