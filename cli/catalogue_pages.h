#pragma once

#include <string>

#include "cli/names.h"

/// What the library has, as pages to read: all of it made from the catalogue.
namespace orvex::cli {

enum class PageFormat { Text, Json };

/// All classes with their methods, a line each.
std::string listPage(PageFormat format);

/// A class with its methods, or a method with its arguments, result columns and errors.
std::string describePage(const Target& target, PageFormat format);

/// What `describePage` tells in JSON of every method that computes something by itself, in a list.
std::string calculationsJson();

}  // namespace orvex::cli
