#pragma once

#include <memory>

#include "orvex/data/error.h"

namespace orvex::inline ORVEX_COUNTS {

/// The object that a holder refers to; error 91 where it refers to none. Every use of an object that a host handed in
/// goes through here, so that a null object fails where it is used and not before.
template <class T>
T& object(const std::shared_ptr<T>& holder) {
  if (holder == nullptr) raise(faults::ObjectNotSet);
  return *holder;
}

}  // namespace orvex::inline ORVEX_COUNTS
