#pragma once

#include <cstdlib>
#include <string>

namespace command_line {

/// The command line that is tested: the built one, or the one that the environment names, such as that of another
/// system in an emulator.
inline std::string program() {
  const char* const other = std::getenv("ORVEX_PROGRAM");
  return other == nullptr ? ORVEX_PROGRAM : other;
}

}  // namespace command_line
