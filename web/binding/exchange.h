#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvex/catalogue/description.h"

/// What the parts of the binding share.
namespace orvex::web {

/// Hands a text to JavaScript. It stays until the next is given.
const char* give(std::string text);
std::size_t givenSize();

/// In the order in which `orvex_catalogue` lists them.
const std::vector<catalogue::Calculation>& calculations();

}  // namespace orvex::web
