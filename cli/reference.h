#pragma once

#include <string>

namespace orvex::cli {

/// Every class and method in Markdown, made from the catalogue.
std::string referencePage();

}  // namespace orvex::cli
