#pragma once

#include <span>

#include "orvex/automation/server_object.h"

namespace orvex::inline ORVEX_COUNTS::automation {

/// All classes that the server creates objects of.
std::span<const ServerClass* const> serverClasses() noexcept;

}  // namespace orvex::inline ORVEX_COUNTS::automation
