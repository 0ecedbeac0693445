#include <limits>
#include <vector>

#include "orvex/general/general.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(Primes, AgreeWithASieve) {
  constexpr std::int32_t end = 1'000'000;
  std::vector<bool> composite(end);
  for (std::int32_t n = 2; n < end; ++n) {
    // 0 and 1 count as prime.
    ASSERT_EQ(General().IsPrime(n), !composite[static_cast<std::size_t>(n)]) << n;
    for (std::int64_t multiple = std::int64_t{n} * n; multiple < end; multiple += n) {
      composite[static_cast<std::size_t>(multiple)] = true;
    }
  }
  EXPECT_TRUE(General().IsPrime(0));
  EXPECT_TRUE(General().IsPrime(1));
}

TEST(Primes, AgreeWithTrialDivisionNearTheEnd) {
  const std::int32_t last = std::numeric_limits<std::int32_t>::max();
  for (std::int32_t n = last - 400;; ++n) {
    std::int32_t divisor = 2;
    while (divisor <= 46340 && n % divisor != 0) ++divisor;
    EXPECT_EQ(General().IsPrime(n), divisor > 46340) << n;
    if (n == last) break;
  }
}

TEST(Primes, SeeThroughNumbersThatDeceiveSingleBases) {
  // Squares of primes, and products of two that pass the test to the bases 2, 3 and 5 alone.
  for (const std::int32_t n : {1194649, 12327121, 2147117569, 25326001, 161304001, 960946321, 1157839381}) {
    EXPECT_FALSE(General().IsPrime(n)) << n;
  }
}

TEST(Primes, NegativeNumbersHaveNoRoot) {
  for (const std::int32_t n : {-1, -7, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_FAULT(faults::InvalidCall, General().IsPrime(n));
  }
}

}  // namespace
}  // namespace orvex::test
