#pragma once

#include <cstdint>

#include "orvex/data/real.h"

/// The primes around a price.
namespace orvex::inline ORVEX_COUNTS {

/// The whole number that stands for a price among the primes. Multiplied by 10 once only, so a price below 1 stays 0.
inline Real primePrice(Real price) {
  const Real whole = fix(price);
  return whole < 10 ? whole * 10 : whole;
}

/// The first prime from `number` downward that is at least 2, or 0.
std::int32_t primeAtOrBelow(std::int32_t number);

/// The first prime from `number` up to `bound`, or 0.
std::int32_t primeAtOrAbove(std::int32_t number, std::int64_t bound);

}  // namespace orvex::inline ORVEX_COUNTS
