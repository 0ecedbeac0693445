#pragma once

#include <utility>

#include "orvex/automation/event_pump.h"
#include "orvex/automation/floating_point.h"
#include "orvex/automation/platform.h"
#include "orvex/data/error.h"

/// The library's faults as automation tells them.
namespace orvex::inline ORVEX_COUNTS::automation {

/// The HRESULT in which Visual Basic and the script engines find the number again.
constexpr HRESULT resultOf(const Fault& fault) {
  return static_cast<HRESULT>(0x800A0000u | (static_cast<unsigned>(fault.number) & 0xFFFFu));
}

/// Leaves number, source and description where a caller of `reporter` looks for them, and returns the HRESULT.
HRESULT report(const Fault& fault, const IID& reporter) noexcept;

/// The same for a caller of `Invoke`, which hands in where they go, or nothing.
HRESULT report(const Fault& fault, EXCEPINFO* where) noexcept;

/// The guard around every function that a host calls: computes as the library does, and turns whatever leaves `body`
/// into an error that is reported to `where`.
template <class Body, class Where>
HRESULT guarded(Where&& where, Body&& body) noexcept {
  const FloatingPointScope scope;
  noteCall();
  try {
    body();
    return S_OK;
  } catch (...) {
    return report(currentFault(), std::forward<Where>(where));
  }
}

}  // namespace orvex::inline ORVEX_COUNTS::automation
