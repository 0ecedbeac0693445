#pragma once

#include <span>
#include <string>

#include "cli/price_file.h"
#include "orvex/catalogue/call_on_values.h"
#include "orvex/catalogue/description.h"

namespace orvex::cli {

/// A call that is ready to be made, with what its errors are explained by.
struct Call {
  const catalogue::Class& owner;
  const catalogue::Method& method;
  std::string name;
  const PriceFile* file;  // where it is computed from one

  /// Makes it. Failure, in a reader's words, for an error of the library.
  catalogue::ValuedCall operator()(std::span<catalogue::Value> arguments) const;
};

/// The one argument that is a record, where the method answers with a note about it: it may be "all".
const catalogue::Argument* askedRecord(const catalogue::Method& method);

}  // namespace orvex::cli
