#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvex/prices/options.h"

namespace orvex::cli {

struct ChartOptions {
  /// FILE METHOD NAME=VALUE ..., and after `NextCall` the next METHOD ...
  std::vector<std::string> words;
  /// Where the page goes; not told, FILE with the ending .html in this folder; "-" is the standard output.
  std::optional<std::string> output;
  /// Show the page in the browser.
  bool open = false;
  prices::Options reading;
};

/// Writes a page with a price file and studies in it, and returns what is to be told: where it is, or the page itself.
/// A study is computed before it is written, so that one which fails is told here. UsageError or Failure where that is
/// not possible.
std::string chart(const ChartOptions& options);

}  // namespace orvex::cli
