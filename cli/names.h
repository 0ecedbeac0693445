#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "orvex/catalogue/description.h"

/// How names on the command line are understood, and what is said of those that are not.
namespace orvex::cli {

/// " Did you mean A, B or C?" with the names nearest to `text`; nothing where none is near.
std::string didYouMean(std::string_view text, const std::vector<std::string>& names);

/// "A, B and C".
std::string enumerate(const std::vector<std::string>& names, std::string_view lastWord = "and");

/// "1 record", "2 records".
std::string counted(long long count, std::string_view noun);

/// A class, or the parts of one of its methods (a property may have several).
struct Target {
  const catalogue::Class* owner;
  std::vector<const catalogue::Method*> methods;
};

/// What CLASS, CLASS.METHOD or the METHOD of a calculator names. UsageError with the nearest names for one that is
/// unknown.
Target findTarget(std::string_view text);

/// "CLASS.METHOD".
std::string fullName(const catalogue::Class& owner, const catalogue::Method& method);

}  // namespace orvex::cli
