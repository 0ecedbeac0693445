// Quotients by a number that is the same for many rows: the bits of the processor's own division.
#include "tests/kernels/quotients.h"

#include <gtest/gtest.h>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "orvex/kernels/kernels.h"

namespace orvex::test {

namespace {

using kernels::Level;

struct Variant {
  const char* name;
  DivideAll* divideAll;
};

/// Those that this processor can run.
std::vector<Variant> variants() {
  std::vector<Variant> all{{"baseline", &baseline::divideAll}};
#ifdef ORVEX_X86_VARIANTS
  if (kernels::widestLevel() >= Level::Avx2Fma) all.push_back({"AVX2 with FMA", &avx2_fma::divideAll});
  if (kernels::widestLevel() >= Level::Avx512) all.push_back({"AVX-512", &avx512::divideAll});
#endif
  return all;
}

/// Compares bit for bit, numbers that are none with each other; tells the first numerator that differs.
void expectQuotients(const std::vector<double>& x, double divisor) {
  std::vector<double> out(x.size());
  for (const Variant& variant : variants()) {
    variant.divideAll(x.data(), x.size(), divisor, out.data());
    for (std::size_t i = 0; i < x.size(); ++i) {
      const double expected = x[i] / divisor;
      // Kernels take no result that is not finite; which one it is is not promised.
      if (!std::isfinite(expected)) {
        EXPECT_FALSE(std::isfinite(out[i])) << variant.name;
      } else if (std::bit_cast<std::uint64_t>(out[i]) != std::bit_cast<std::uint64_t>(expected)) {
        FAIL() << variant.name << ": " << x[i] << " / " << divisor << " = " << expected << ", not " << out[i];
      }
    }
  }
}

std::uint64_t inverse(std::uint64_t number, std::uint64_t modulus) {
  std::int64_t a = static_cast<std::int64_t>(number % modulus), b = static_cast<std::int64_t>(modulus), x = 1, y = 0;
  while (b != 0) {
    const std::int64_t q = a / b, rest = a - q * b, next = x - q * y;
    a = b;
    b = rest;
    x = y;
    y = next;
  }
  return static_cast<std::uint64_t>(x < 0 ? x + static_cast<std::int64_t>(modulus) : x);
}

/// Numerators of 53 bits whose quotients by an odd number lie as near as can be to the middle between two doubles, and
/// to a double.
void appendHardNumerators(std::uint64_t divisor, std::vector<double>& x) {
  constexpr std::uint64_t least = std::uint64_t{1} << 52;
  for (int shift = 1; shift <= 17; ++shift) {
    const std::uint64_t scale = inverse((std::uint64_t{1} << shift) % divisor, divisor);
    for (const std::uint64_t rest : {std::uint64_t{1}, std::uint64_t{2}, divisor - 1, 2 * divisor - 2}) {
      const std::uint64_t residue = rest % divisor * scale % divisor;
      const std::uint64_t first = least - least % divisor + residue + divisor;
      x.push_back(static_cast<double>(first));
      x.push_back(static_cast<double>(2 * least - 1 - (2 * least - 1 - residue) % divisor));
    }
  }
}

TEST(Quotients, AreRoundedCorrectlyNearEveryBoundaryForEveryPeriod) {
  for (std::uint64_t divisor = 1; divisor <= 32767; divisor += 2) {
    std::vector<double> x;
    appendHardNumerators(divisor, x);
    // Even divisors differ from these by powers of two, which change no mantissa.
    for (std::uint64_t even = divisor; even <= 32767; even *= 2) expectQuotients(x, static_cast<double>(even));
    if (HasFatalFailure()) return;
  }
}

TEST(Quotients, OfAwkwardNumbers) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double greatest = std::numeric_limits<double>::max(), smallest = std::numeric_limits<double>::denorm_min();
  const std::vector<double> x = {0.0,
                                 -0.0,
                                 1.0,
                                 -1.0,
                                 smallest,
                                 -smallest,
                                 3 * smallest,
                                 std::numeric_limits<double>::min(),
                                 0x1p-1000,
                                 -0x1.fffffffffffffp-1000,
                                 0x1p-901,
                                 0x1.fffffffffffffp-901,
                                 0x1p-900,
                                 -0x1.fffffffffffffp-900,
                                 0x1p200,
                                 greatest,
                                 -greatest,
                                 0x1.fffffffffffffp52,
                                 infinity,
                                 -infinity,
                                 infinity - infinity};
  // Whole and half numbers that the proof covers, up to its limit, and others, which are divided as they are.
  for (const double divisor :
       {0.5, 1.5, 3.0, 7.0, 65535.0, 0x1p31 - 1, 0x1p48 - 1, 0x1p48, 0x1p60 + 4096, 0.015, 0.1, -3.0, 1e-300, 1e300}) {
    // Each number alone among ordinary ones too: one lane's fate is not the others'.
    expectQuotients(x, divisor);
    for (const double one : x) {
      std::vector<double> among(16, 2.5);
      among[5] = one;
      expectQuotients(among, divisor);
    }
  }
}

TEST(Quotients, OfRandomNumbers) {
  std::mt19937_64 next(1);
  for (int round = 0; round < 2000; ++round) {
    std::vector<double> x(256);
    for (double& value : x) value = std::ldexp(static_cast<double>(next() >> 11), static_cast<int>(next() % 400) - 253);
    expectQuotients(x, static_cast<double>(next() >> (16 + next() % 48)) / 2.0 + 0.5);
  }
}

}  // namespace

}  // namespace orvex::test
