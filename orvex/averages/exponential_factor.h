#pragma once

#include "orvex/data/integer.h"
#include "orvex/data/real.h"

namespace orvex::inline ORVEX_COUNTS {

/// The share of the newest value in an exponential average over so many records.
inline Real exponentialFactor(Integer periods) {
  return Real(2) / (periods + 1);
}

}  // namespace orvex::inline ORVEX_COUNTS
