#pragma once

namespace orvex::automation {

/// Makes the library run the host's pending events, as DoEvents does, at every yield of the calling thread.
void pumpEventsOfThisThread() noexcept;

}  // namespace orvex::automation
