#pragma once

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS {

/// The place in a shared object where a binding keeps the wrapper that it made for it, so that an object which goes
/// out to a host twice is the same object there. The library itself never looks at it.
struct BindingSlot {
  void* wrapper = nullptr;
};

}  // namespace orvex::inline ORVEX_COUNTS
