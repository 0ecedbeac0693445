#include <cstdint>

#include "orvex/general/general.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

using Wide = std::uint64_t;

/// base^exponent mod n, for n below 2^32.
Wide power(Wide base, Wide exponent, Wide n) {
  Wide result = 1;
  for (base %= n; exponent != 0; exponent >>= 1) {
    if (exponent & 1) result = result * base % n;
    base = base * base % n;
  }
  return result;
}

/// Whether an odd n passes the Miller-Rabin test to this base.
bool isProbablePrime(Wide n, Wide base) {
  Wide odd = n - 1;
  int halvings = 0;
  for (; odd % 2 == 0; odd /= 2) ++halvings;
  Wide x = power(base, odd, n);
  if (x == 1 || x == n - 1) return true;
  while (--halvings > 0) {
    x = x * x % n;
    if (x == n - 1) return true;
  }
  return false;
}

}  // namespace

bool General::IsPrime(std::int32_t Number) {
  if (Number < 0) raise(faults::InvalidCall);
  if (Number <= 3) return true;
  const auto n = static_cast<std::uint32_t>(Number);
  // Most numbers have a small divisor.
  for (const std::uint32_t prime :
       {2u, 3u, 5u, 7u, 11u, 13u, 17u, 19u, 23u, 29u, 31u, 37u, 41u, 43u, 47u, 53u, 59u, 61u}) {
    if (n % prime == 0) return n == prime;
  }
  // Below 4,759,123,141 no composite number passes the test to these three bases (Gerhard Jaeschke, On Strong
  // Pseudoprimes to Several Bases, 1993).
  return isProbablePrime(n, 2) && isProbablePrime(n, 7) && isProbablePrime(n, 61);
}

}  // namespace orvex::inline ORVEX_COUNTS
