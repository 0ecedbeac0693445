// The library's own elementary functions against values computed with 300 bits.
#include "orvex/standard/elementary.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <map>
#include <string>

#include "tests/support/series.h"

namespace orvex::test {
namespace {

/// How many doubles lie between two of one sign.
std::int64_t apart(double a, double b) {
  return std::abs(std::bit_cast<std::int64_t>(a) - std::bit_cast<std::int64_t>(b));
}

TEST(Elementary, IsWithinTwoUnitsOfTheLastPlace) {
  const std::map<std::string, double (*)(double)> functions = {
      {"log", standard::logarithm}, {"atan", standard::arcTangent}, {"sin", standard::sine}, {"cos", standard::cosine}};
  // Lines of a function, its argument and its value, both as hexadecimal doubles.
  std::ifstream table(ORVEX_SOURCE_DIR "/tests/standard/elementary.txt");
  std::string name, argument, value;
  int lines = 0;
  while (table >> name >> argument >> value) {
    const double x = std::strtod(argument.c_str(), nullptr), expected = std::strtod(value.c_str(), nullptr);
    EXPECT_LE(apart(functions.at(name)(x), expected), 2) << name << ' ' << argument << ", line " << lines + 1;
    ++lines;
  }
  EXPECT_GT(lines, 300);
}

TEST(Elementary, HasNoValueWhereThereIsNone) {
  EXPECT_EQ(standard::logarithm(0.0), -infinity);
  EXPECT_TRUE(std::isnan(standard::logarithm(-1.0)));
  EXPECT_EQ(standard::arcTangent(infinity), standard::Pi / 2);
  EXPECT_TRUE(std::isnan(standard::arcTangent(notANumber)));
  EXPECT_FAULT(faults::InvalidCall, standard::logarithm(Real(0)));
}

}  // namespace
}  // namespace orvex::test
