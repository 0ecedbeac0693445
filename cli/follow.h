#pragma once

#include <string>
#include <vector>

#include "cli/output.h"
#include "cli/sink.h"
#include "orvex/prices/options.h"

namespace orvex::cli {

struct FollowOptions {
  std::vector<std::string> words;  // METHOD [FILE] [NAME=VALUE ...], and after `NextCall` the next one
  Format format = Format::Csv;     // CSV or JSON
  prices::Options reading;         // delimiter, decimal sign and columns
};

/// Reads records as they come, from the standard input or from a file that grows, keeps the calls on them and prints a
/// row for each: its date and what each call has for it, nothing where that is not computed. A record that has the date
/// of the last one is that one revised. Ends at the end of the standard input, on an interrupt, and when nobody reads
/// what is printed. UsageError for what is no such call; Failure for a line that is no record, and at the end for a
/// call that the last record has failed.
void follow(const FollowOptions& options, Sink& sink);

}  // namespace orvex::cli
