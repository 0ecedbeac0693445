#pragma once

#include <string>

#include "orvex/catalogue/description.h"

/// The facts of a description in the words of every page that shows them.
namespace orvex::cli {

/// "Name(data: Database, Periods: Integer = 14) -> RecordSet".
std::string signatureOf(const catalogue::Method& method);

/// What an argument means, what it is when left out, and whether the method changes it.
std::string meaningOf(const catalogue::Argument& argument);

/// The name of a result column; of one that is named after the alias, how.
std::string titleOf(const catalogue::Column& column);

/// "Periods + 1 to N".
std::string rowsOf(const catalogue::Column& column);

/// What a fault says; some say what went wrong inside.
std::string descriptionOf(const Fault& fault);

/// Tells whether a method computes something by itself. Those of classes that hold data, and properties, do not.
bool isCalculation(const catalogue::Class& owner, const catalogue::Method& method);

/// "method", "property, read", ...
std::string_view kindOf(const catalogue::Method& method);

/// What a method is for; of a part of a property, which part it is.
std::string helpOf(const catalogue::Method& method);

}  // namespace orvex::cli
