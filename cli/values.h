#pragma once

#include <string>

#include "orvex/catalogue/value.h"

/// How values are written where a program reads them.
namespace orvex::cli {

/// The shortest digits that read back to the same double, the sign of a zero included.
void appendNumber(std::string& out, double number);
std::string numberText(double number);

/// A text as JSON. Bytes that are not UTF-8 become the replacement character.
std::string jsonText(const std::string& text);

/// A number as JSON; null where it is not finite.
std::string jsonNumber(double number);

/// A number, text or truth as JSON; null for anything else.
std::string jsonValue(const catalogue::Value& value);

}  // namespace orvex::cli
