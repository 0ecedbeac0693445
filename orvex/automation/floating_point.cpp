#include "orvex/automation/floating_point.h"

namespace orvex::inline ORVEX_COUNTS::automation {

namespace {
/// What the host of the innermost call computes with; nothing where that is as the library does.
thread_local const FloatingPoint* hostState = nullptr;
}  // namespace

void FloatingPointScope::enter() noexcept {
  entered_ = true;
  outer_ = hostState;
  hostState = &host_;
  FloatingPoint::ours().apply();
}

void FloatingPointScope::leave() noexcept {
  hostState = outer_;
  host_.apply();
}

HostFloatingPointScope::HostFloatingPointScope() noexcept {
  if (hostState != nullptr) hostState->apply();
}

}  // namespace orvex::inline ORVEX_COUNTS::automation
