#pragma once

#include <memory>
#include <vector>

#include "bench/cases.h"
#include "orvex/catalogue/description.h"
#include "orvex/data/database.h"

namespace orvex::bench {

/// A case on a series, ready to be called any number of times.
class PreparedCall {
 public:
  PreparedCall(const Case& one, const std::shared_ptr<Database>& data);

  catalogue::Value run() const;

  const catalogue::Method& method() const { return *method_; }
  const std::vector<catalogue::Value>& arguments() const { return arguments_; }

 private:
  const catalogue::Method* method_;
  std::shared_ptr<void> object_;
  std::vector<catalogue::Value> arguments_;
};

}  // namespace orvex::bench
