#pragma once

#include <string>
#include <string_view>

#include "orvex/automation/platform.h"
#include "orvex/data/counts.h"

/// The texts of automation (BSTR, in UTF-16) and of the library (in UTF-8). Embedded zeros and halves of surrogate
/// pairs are kept both ways.
namespace orvex::inline ORVEX_COUNTS::automation {

/// A null BSTR is the empty text.
std::string textOf(BSTR text);

/// A new BSTR, the caller's to free. Throws `std::bad_alloc`.
BSTR newText(std::string_view text);

}  // namespace orvex::inline ORVEX_COUNTS::automation
