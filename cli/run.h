#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/output.h"
#include "orvex/prices/options.h"

namespace orvex::cli {

struct RunOptions {
  std::string target;              // CLASS.METHOD
  std::vector<std::string> words;  // the file and the arguments
  Format format = Format::Csv;
  prices::Options reading;
  bool append = false;  // show the file's columns too
  /// Leave rows empty that are not computed; not told, everywhere but in JSON, which says which rows they are.
  std::optional<bool> blankWarmup;
  std::optional<int> last;  // how many records to show
  bool timings = false;     // tell on the standard error what took how long
  bool quiet = false;       // tell nothing on the standard error
};

/// Calls a method and prints its result. UsageError or Failure where that is not possible; then nothing is printed.
void run(const RunOptions& options, Sink& sink);

}  // namespace orvex::cli
