// What 16 bits would limit and 32 do not.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "orvex/averages/linear_regression.h"
#include "orvex/averages/moving_average.h"
#include "orvex/bands/bands.h"
#include "orvex/catalogue/description.h"
#include "orvex/data/real.h"
#include "orvex/kernels/kernels.h"
#include "orvex/patterns/cycle.h"
#include "orvex/patterns/neural_network.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

using kernels::Level;

std::vector<double> wholeNumbers(int count) {
  std::vector<double> values(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) values[static_cast<std::size_t>(i)] = i + 1;
  return values;
}

class Counts32 : public testing::Test {
 protected:
  void TearDown() override { kernels::setLevel(kernels::widestLevel()); }
};

TEST_F(Counts32, RegressionOverMoreThan181Records) {
  const std::vector<double> values = wholeNumbers(70000);
  const auto data = std::make_shared<Database>(70000);
  const auto source = field(values);
  for (const Level level : {Level::Off, kernels::widestLevel()}) {
    kernels::setLevel(level);
    // Whole numbers on a line: every sum is exact.
    const auto line = LinearRegression().Regression(data, source, 500);
    EXPECT_EQ(line->getValue("Slope", 70000), 1);
    EXPECT_EQ(line->getValue("RSquared", 501), 1);
    // n x slope + (mean of y - m x slope), with m = 250 where the mean of x is 250.5.
    EXPECT_DOUBLE_EQ(line->getValue("Forecast", 70000), 500 + (69750.5 - 250));
  }
  // A position whose square no 32 bits hold.
  const auto longest = LinearRegression().Regression(data, source, 69999);
  EXPECT_NEAR(longest->getValue("Slope", 70000), 1, 1e-6);
}

TEST_F(Counts32, TwiceAPeriodPast16383) {
  const auto data = std::make_shared<Database>(50000);
  const auto source = field(std::vector<double>(50000, 10));
  const auto bands = Bands().MovingAverageEnvelope(data, source, 20000, 1, 50);
  EXPECT_EQ(bands->getValue(Bands::EnvelopeTopName, 40000), 0);
  EXPECT_EQ(bands->getValue(Bands::EnvelopeTopName, 40001), 15);
}

TEST_F(Counts32, CycleAddsUpWhatNoCountHolds) {
  // Of zeros every record i from 2 to N - 1 adds N - i: (N - 2)(N - 1) / 2 in all, about 5,000,000,000.
  EXPECT_EQ(Cycle().Analyze(field(std::vector<double>(100000, 0))), 50000) << "99,999 / 2, the tie to the even number";
}

/// The measure as its definition reads.
Integer plainCycle(const std::vector<double>& v) {
  const std::size_t n = v.size();
  double total = 0;
  for (std::size_t i = 2; i + 1 <= n; ++i) {
    double a = v[i - 2];
    std::size_t j = i + 2;
    for (; j <= n; ++j) {
      if (v[j - 1] > v[i] && v[j - 1] < a) {
        a = 0;
        break;
      }
    }
    if (a == 0) total += static_cast<double>(j - i - 1);
  }
  return Integer::rounded(total / (static_cast<double>(n) - 2));
}

TEST_F(Counts32, CycleIsWhatItsDefinitionSays) {
  std::mt19937 random(9);
  for (int i = 0; i < 300; ++i) {
    std::vector<double> values(3 + random() % 60);
    for (double& value : values) value = static_cast<double>(random() % (2 + random() % 40));
    EXPECT_EQ(Cycle().Analyze(field(values)), plainCycle(values)) << "series " << i;
  }
  // In time that does not grow with the square of the series: prices that fall all along look for what never comes.
  std::vector<double> falling = wholeNumbers(1000000);
  std::reverse(falling.begin(), falling.end());
  EXPECT_EQ(Cycle().Analyze(field(falling)), 0);
}

TEST_F(Counts32, NetworksBeyondMemoryAreRefused) {
  const auto data = std::make_shared<Database>(100000);
  EXPECT_FAULT(NeuralNetwork::NeuralIndicatorFault,
               NeuralNetwork().NeuralIndicator(data, field(wholeNumbers(100000)), 40000, 0.01, 1, 0.9));
}

TEST_F(Counts32, ACursorStandsBehindTheLongestSeries) {
  Database data(Integer::Greatest);
  data.setPosition(Integer::Greatest);
  EXPECT_FAULT(faults::Overflow, data.MoveNext());
  EXPECT_FAULT(Database::BeginOfFile, data.setPosition(Integer::Least));
}

}  // namespace
}  // namespace orvex::test
