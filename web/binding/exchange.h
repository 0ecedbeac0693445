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

/// What `make` makes, and nothing where it fails: where memory has run out, or its caller has named a place beyond the
/// last. JavaScript could not read an exception.
template <class Make>
auto orNothing(Make make) -> decltype(make()) {
  try {
    return make();
  } catch (...) {
    return {};
  }
}

/// In the order in which `orvex_catalogue` lists them.
const std::vector<catalogue::Calculation>& calculations();

}  // namespace orvex::web
