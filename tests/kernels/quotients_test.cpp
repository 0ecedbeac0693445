// Quotients, by a number that is the same for many rows and by others: the bits of the processor's own division.
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
  DividePairs* dividePairs;
};

/// Those that this processor can run.
std::vector<Variant> variants() {
  std::vector<Variant> all{{"baseline", &baseline::divideAll, &baseline::dividePairs}};
#ifdef ORVEX_X86_VARIANTS
  if (kernels::widestLevel() >= Level::Avx2Fma) {
    all.push_back({"AVX2 with FMA", &avx2_fma::divideAll, &avx2_fma::dividePairs});
  }
  if (kernels::widestLevel() >= Level::Avx512) {
    all.push_back({"AVX-512", &avx512::divideAll, &avx512::dividePairs});
  }
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

void expectQuotientsOfPairs(const std::vector<double>& x, const std::vector<double>& y) {
  std::vector<double> out(x.size());
  for (const Variant& variant : variants()) {
    variant.dividePairs(x.data(), y.data(), x.size(), out.data());
    for (std::size_t i = 0; i < x.size(); ++i) {
      // What divides by zero is infinite, or not a number for 0 / 0: told without the division, which sanitizers stop.
      const double expected = y[i] == 0.0 ? x[i] * std::numeric_limits<double>::infinity() : x[i] / y[i];
      // Just below the greatest number a kernel may give the row up.
      if (!(std::abs(expected) < 0x1p1023)) {
        EXPECT_TRUE(!std::isfinite(out[i]) || out[i] == expected) << variant.name;
      } else if (std::bit_cast<std::uint64_t>(out[i]) != std::bit_cast<std::uint64_t>(expected)) {
        FAIL() << variant.name << std::hexfloat << ": " << x[i] << " / " << y[i] << " = " << expected << ", not "
               << out[i];
      }
    }
  }
}

/// Numerators of 53 bits whose quotients by an odd number of 53 bits lie as near as can be to the middle between two
/// doubles, or to a double: with a numerator from the divisor on, 2^53 times it is only `rest` away from a multiple of
/// the divisor, with a smaller one 2^54 times it.
void appendHardPairs(std::uint64_t divisor, std::vector<double>& x, std::vector<double>& y) {
  constexpr std::uint64_t least = std::uint64_t{1} << 52;
  for (const std::uint64_t rest : {1, 2, 3, 5}) {
    for (std::uint64_t residue : {rest, divisor - rest}) {
      const auto halve = [&] { residue = residue % 2 == 0 ? residue / 2 : (residue + divisor) / 2; };
      for (int i = 0; i < 53; ++i) halve();
      if (residue + divisor < 2 * least) x.push_back(static_cast<double>(residue + divisor));
      halve();
      if (residue >= least) x.push_back(static_cast<double>(residue));
    }
  }
  y.resize(x.size(), static_cast<double>(divisor));
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

TEST(Quotients, OfPairsAreRoundedCorrectlyNearEveryBoundary) {
  std::mt19937_64 next(2);
  constexpr std::uint64_t least = std::uint64_t{1} << 52;
  std::vector<double> x, y;
  for (std::uint64_t distance = 1; distance < 40000; distance += 2) {
    // From the ends inwards, about the root of 2, and on both sides of the divisors that are left to the processor.
    for (const std::uint64_t divisor :
         {least + distance, 2 * least - distance, std::uint64_t{0x16a09e667f3bcd} + distance,
          2 * least - (std::uint64_t{1} << 26) - distance, 2 * least - (std::uint64_t{1} << 26) + distance,
          least + (next() % least | 1)}) {
      appendHardPairs(divisor, x, y);
    }
  }
  ASSERT_GT(x.size(), 500000U);
  expectQuotientsOfPairs(x, y);
  // The same between others: one lane's fate is not the others'.
  for (std::size_t i = 0; i < x.size(); i += 3) x[i] = i % 2 == 0 ? -0.0 : 0x1p-1060;
  expectQuotientsOfPairs(x, y);
}

TEST(Quotients, OfAwkwardPairs) {
  const double infinity = std::numeric_limits<double>::infinity();
  std::vector<double> awkward{0.0, 1.0, 3.0, 0x1.8p-1074, 0x1.fffffffffffffp0, 0x1.ffffffcp0, 0x1.ffffff8p0, infinity};
  for (const double exponent :
       {-1022.0, -1000.0, -901.0, -900.0, -899.0, -100.0, 99.0, 100.0, 101.0, 900.0, 1021.0, 1023.0}) {
    for (const double mantissa : {1.0, 0x1.5555555555555p0, 0x1.fffffffffffffp0}) {
      awkward.push_back(std::ldexp(mantissa, static_cast<int>(exponent)));
    }
  }
  std::vector<double> x, y;
  for (const double a : awkward) {
    for (const double b : awkward) {
      for (const double sign : {1.0, -1.0}) {
        x.insert(x.end(), {sign * a, a});
        y.insert(y.end(), {b, sign * b});
      }
    }
  }
  expectQuotientsOfPairs(x, y);
  for (std::size_t i = 0; i < x.size(); ++i) {
    std::vector<double> a(8, 2.5), b(8, 7.0);
    a[i % 8] = x[i];
    b[i % 8] = y[i];
    expectQuotientsOfPairs(a, b);
  }
}

TEST(Quotients, OfRandomPairs) {
  std::mt19937_64 next(3);
  const auto number = [&] {
    return std::ldexp(static_cast<double>(next() >> 11), static_cast<int>(next() % 120) - 113);
  };
  std::vector<double> x(1 << 20), y(1 << 20);
  for (double& value : x) value = number();
  for (double& value : y) value = number();
  expectQuotientsOfPairs(x, y);
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
