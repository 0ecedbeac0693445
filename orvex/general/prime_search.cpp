#include "orvex/general/prime_search.h"

#include "orvex/general/general.h"

namespace orvex::inline ORVEX_COUNTS {

std::int32_t primeAtOrBelow(std::int32_t number) {
  General general;
  for (; number >= 2; --number) {
    if (general.IsPrime(number)) return number;
  }
  return 0;
}

std::int32_t primeAtOrAbove(std::int32_t number, std::int64_t bound) {
  General general;
  for (std::int64_t candidate = number; candidate <= bound; ++candidate) {
    if (general.IsPrime(static_cast<std::int32_t>(candidate))) return static_cast<std::int32_t>(candidate);
  }
  return 0;
}

}  // namespace orvex::inline ORVEX_COUNTS
