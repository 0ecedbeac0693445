#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// What the same call gives at either width of counts, in terms of neither.
namespace widths {

struct Outcome {
  std::string fault;  // number, source and text; empty where there is none
  std::vector<std::pair<std::string, std::vector<std::uint64_t>>> columns;
  std::string other;
  std::string written;
  int position = 0;

  bool operator==(const Outcome&) const = default;
};

struct Call {
  Outcome outcome;
  std::string description;
  /// How often something overflowed on the way, whether it was reported or not.
  int overflows = 0;
};

/// The calculations of the catalogue, "Class.Method".
std::vector<std::string> calculations();

namespace counts16 {
Call call(const std::string& method, const std::vector<std::uint8_t>& bytes, int count);
}
namespace counts32 {
Call call(const std::string& method, const std::vector<std::uint8_t>& bytes, int count);
}

}  // namespace widths
