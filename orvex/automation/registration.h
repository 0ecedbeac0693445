#pragma once

#include "orvex/automation/platform.h"

/// What the registry says about the server: for each class its identifier and the names Orvex.Class and Orvex.Class.1,
/// and the type library with its interfaces.
namespace orvex::inline ORVEX_COUNTS::automation {

enum class RegisteredFor { Machine, User };

/// Registers all or nothing.
HRESULT registerServer(RegisteredFor whom) noexcept;

/// Removes every key that registering made. What is not there is no error.
HRESULT unregisterServer(RegisteredFor whom) noexcept;

}  // namespace orvex::inline ORVEX_COUNTS::automation
