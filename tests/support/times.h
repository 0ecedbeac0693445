#pragma once

#include <cstdlib>

namespace orvex::test {

/// How often something random is tried of each method: usually, or as the environment says for steps that are run by
/// name and for slow builds.
inline int timesOfEach(const char* variable, int usual) {
  const char* const wanted = std::getenv(variable);
  return wanted != nullptr ? std::atoi(wanted) : usual;
}

}  // namespace orvex::test
