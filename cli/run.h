#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/output.h"

namespace orvex::cli {

struct RunOptions {
  std::string target;              // CLASS.METHOD
  std::vector<std::string> words;  // the file and the arguments
  Format format = Format::Csv;
  std::optional<std::string> delimiter;
  bool append = false;       // show the file's columns too
  bool blankWarmup = false;  // leave rows empty that are not computed
  std::optional<int> last;   // how many records to show
};

/// Calls a method and returns its result as text. UsageError or Failure where that is not possible.
std::string run(const RunOptions& options);

}  // namespace orvex::cli
