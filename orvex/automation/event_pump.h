#pragma once

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS::automation {

/// Makes the library run the host's pending events, as DoEvents does, at the yields of the calling thread. Asking the
/// system for events costs more than an average over a record does, up to microseconds, so it is asked at the first
/// yield of a call, and then whenever the system's clock has gone on or events have just been run: a window is as
/// responsive as if it were asked at every yield. One yield runs 64 events or 10 milliseconds of them, and leaves the
/// rest to the next.
void pumpEventsOfThisThread() noexcept;

/// Tells the pump that a host calls. Any thread's call makes every thread's next yield ask the system.
void noteCall() noexcept;

}  // namespace orvex::inline ORVEX_COUNTS::automation
