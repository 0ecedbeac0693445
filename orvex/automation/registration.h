#pragma once

#include "orvex/automation/platform.h"
#include "orvex/data/counts.h"

/// What the registry says about the server: for each class its identifier and the names Orvex.Class and Orvex.Class.1,
/// and the type library with its interfaces. It is written as the platform would write it, but key by key, so that a
/// failure can be taken back and the two widths of the server leave each other what both need.
namespace orvex::inline ORVEX_COUNTS::automation {

enum class RegisteredFor { Machine, User };

/// Registers all or nothing: a failure leaves what was registered before as it was.
HRESULT registerServer(RegisteredFor whom) noexcept;

/// Removes every key that registering made, those apart that the other width's registration still needs. What is not
/// there is no error.
HRESULT unregisterServer(RegisteredFor whom) noexcept;

}  // namespace orvex::inline ORVEX_COUNTS::automation
