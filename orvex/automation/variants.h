#pragma once

#include "orvex/automation/platform.h"
#include "orvex/catalogue/value.h"

/// The values of automation (VARIANT, SAFEARRAY, interface pointers) and of the library.
namespace orvex::inline ORVEX_COUNTS::automation {

/// What a host's VARIANT holds, by value or by reference, as an argument of the type `wanted` may take it: an argument
/// that is left out gives `Missing`, and where a number or a text is wanted an object gives its default value.
/// Everything else is for `coerce` to convert or refuse. Error 13 for what the library has no value for; arrays raise
/// that only when they are used.
catalogue::Value valueOf(const VARIANT& variant, catalogue::Type wanted);

/// A new VARIANT of a result, the caller's to clear.
VARIANT variantOf(const catalogue::Value& value);

/// Puts a number or a text into what a VARIANT refers to, as one of that type, numbers in texts as the library writes
/// them; leaves alone what holds a copy.
void writeBack(const VARIANT& reference, const catalogue::Value& value);

/// The host's object as the library keeps it: with a reference, which it releases with the last holder.
catalogue::Object keep(IUnknown* any);

/// The object of the library behind an interface pointer; null for null, error 13 for one of another class or server.
catalogue::Value objectValue(IUnknown* any);

}  // namespace orvex::inline ORVEX_COUNTS::automation
