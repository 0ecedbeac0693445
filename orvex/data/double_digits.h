#pragma once

#include <string>
#include <string_view>

#include "orvex/data/counts.h"

/// Floating-point numbers and decimal digits, each way exact, whatever the locale: the standard library's own
/// conversions where it has them for doubles (emscripten's has not), otherwise the same by way of C's.
namespace orvex::inline ORVEX_COUNTS {

/// The double nearest to a well-formed number without a sign, into `value`; false, and `value` as it was, where it is
/// out of range on either side.
bool nearestDouble(std::string_view number, double& value);

/// The shortest digits that read back to the same double or Single, with an exponent where that is shorter.
std::string shortestText(double value);
std::string shortestText(float value);

}  // namespace orvex::inline ORVEX_COUNTS
