#include "orvex/data/error.h"

#include <new>
#include <stdexcept>

namespace orvex::inline ORVEX_COUNTS {

void raise(const Fault& fault) {
  throw Error(fault);
}

Fault currentFault() noexcept {
  try {
    throw;
  } catch (const Error& error) {
    return error.fault();
  } catch (const std::bad_alloc&) {
    return faults::OutOfMemory;
  } catch (const std::length_error&) {
    return faults::OutOfMemory;
  } catch (...) {
    return faults::Internal;
  }
}

}  // namespace orvex::inline ORVEX_COUNTS
