#pragma once

#include <string>

namespace orvex::cli {

/// Every class and method in Markdown, made from the catalogue, with an example of each calculation on a price file.
/// Failure for an example that cannot be run.
std::string referencePage(const std::string& priceFile);

}  // namespace orvex::cli
