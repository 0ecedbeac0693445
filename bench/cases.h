#pragma once

#include <map>
#include <string>
#include <vector>

namespace orvex::bench {

/// The series that a case runs on.
enum class Prices {
  Ordinary,     // a random walk in cents
  NearTwo31,    // whole numbers near 2,000,000,000
  NearBillion,  // whole numbers near 1,000,000,000
};

/// One line of the table: a method with its arguments.
struct Case {
  std::string method;                            // "Class.Method"
  std::map<std::string, std::string> arguments;  // by name, as texts; the usual values for the rest
  Prices prices = Prices::Ordinary;

  std::string label() const;
};

/// The cases with arguments of their own, then every other method of the catalogue that makes columns.
std::vector<Case> cases();

}  // namespace orvex::bench
