#include "orvex/patterns/neural_network.h"

#include <cmath>
#include <numbers>
#include <random>

#include "orvex/patterns/network.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(Network, HyperbolicTangent) {
  for (double x = 1e-300; x < 25; x *= 1.001) {
    const double tangent = hyperbolicTangent(x);
    EXPECT_LE(std::fabs(tangent - std::tanh(x)), 9e-16 * tangent) << x;
    EXPECT_EQ(hyperbolicTangent(-x), -tangent);
  }
  EXPECT_EQ(hyperbolicTangent(0), 0);
  EXPECT_EQ(hyperbolicTangent(infinity), 1);
  EXPECT_EQ(hyperbolicTangent(-1e308), -1);
  EXPECT_TRUE(std::isnan(hyperbolicTangent(notANumber)));
}

/// A wave around 100 with a little noise.
std::vector<double> wave(std::size_t count) {
  std::mt19937 random(25);
  std::vector<double> series;
  for (std::size_t r = 1; r <= count; ++r) {
    // The sum of twelve even numbers from 0 to 1 is nearly normal, of deviation 1.
    double noise = -6;
    for (int i = 0; i < 12; ++i) noise += static_cast<double>(random()) * 0x1p-32;
    series.push_back(100 + 10 * std::sin(2 * std::numbers::pi * static_cast<double>(r) / 25) + 0.2 * noise);
  }
  return series;
}

TEST(NeuralNetwork, SameBitsEverywhere) {
  // Worked out by an evaluation of the definition in another language, operation by operation.
  expectColumns(*NeuralNetwork().NeuralIndicator(
                    records(12), field({100, 102, 101, 104, 103, 0, 99, 105, 104, 107, 106, 108}), 2, 0.125, 3, 0.75),
                {{"NeuralIndicator",
                  {0, 0, 0, 0x1.56697601fcf4ap+6, 0x1.658bc3c17e141p+6, 0x1.5c6500bb0bd18p+6, 0, 0x1.942107f640cc3p+6,
                   0x1.6a043ee3ad2a9p+6, 0x1.5d41305cbcdf4p+6, 0x1.6fc782369ba79p+6, 0x1.66a166fac045dp+6}}});
  expectColumns(*NeuralNetwork().NeuralIndicator(records(5), field({100, 104, 101, 103, 102}), 1, 1, 1, 1, "x"),
                {{"x", {0, 0, 0x1.a40b817093210p+6, 0x1.a67bec57c7251p+6, 0x1.a88afe576875cp+6}}});
}

TEST(NeuralNetwork, FlatAndUnlearnedSeries) {
  // Nothing moved: the forecast is the value before.
  expectColumns(*NeuralNetwork().NeuralIndicator(records(6), field({7, 7, 7, 7, 7, 9}), 1, 0.5, 2, 0.8),
                {{"NeuralIndicator", {0, 0, 7, 7, 7, 7}}});
  // With 3 of 4 records to learn from and 2 inputs there is no example, and the source is not looked at.
  expectColumns(*NeuralNetwork().NeuralIndicator(records(4), nullptr, 2, 0.5, 2, 0.99),
                {{"NeuralIndicator", {0, 0, 0, 0}}});
}

TEST(NeuralNetwork, NothingLaterHasAPartInAForecast) {
  constexpr std::size_t count = 80, trained = 40;
  const auto forecast = [](const std::vector<double>& series) {
    const auto result = NeuralNetwork().NeuralIndicator(records(count), field(series), 3, 0.05, 4, 0.5);
    return result->getField("NeuralIndicator")->getDoubleArray();
  };
  const auto series = wave(count);
  const auto expected = forecast(series);
  for (std::size_t r = trained + 1; r <= count; ++r) {
    auto changed = series;
    for (std::size_t later = r; later <= count; ++later) changed[later - 1] *= 1.5;
    const auto got = forecast(changed);
    for (int row = 1; row <= static_cast<int>(r); ++row) ASSERT_EQ(got.at(row), expected.at(row)) << r << ", " << row;
    if (r < count) {
      EXPECT_NE(got.at(static_cast<int>(r) + 1), expected.at(static_cast<int>(r) + 1));
    }
  }
}

TEST(NeuralNetwork, LearnsAWave) {
  constexpr std::size_t count = 500, trained = 300;
  const auto series = wave(count);
  const auto result = NeuralNetwork().NeuralIndicator(records(count), field(series), 10, 0.01, 50, 0.6);
  double learned = 0, repeated = 0;
  for (std::size_t row = trained; row < count; ++row) {
    const double miss = result->getValue("NeuralIndicator", static_cast<int>(row) + 1) - series[row];
    learned += miss * miss;
    repeated += (series[row - 1] - series[row]) * (series[row - 1] - series[row]);
  }
  EXPECT_LE(std::sqrt(learned), 0.5 * std::sqrt(repeated));
}

TEST(NeuralNetwork, ChecksInTheOrderOfTheArguments) {
  const auto data = records(20);
  const auto source = field(wave(20));
  const struct {
    int periods;
    double rate;
    int epochs;
    double share;
    Fault fault;
  } cases[] = {
      {0, 0, 0, 0, NeuralNetwork::NeuralIndicatorPeriodsFault},
      {21, 0, 0, 0, NeuralNetwork::NeuralIndicatorPeriodsFault},
      {20, 0, 0, 0, NeuralNetwork::NeuralIndicatorRateFault},
      {1, notANumber, 0, 0, NeuralNetwork::NeuralIndicatorRateFault},
      {1, 1, 0, 0, NeuralNetwork::NeuralIndicatorEpochsFault},
      {1, 1, 1, 0, NeuralNetwork::NeuralIndicatorShareFault},
      {1, 1, 1, 1.01, NeuralNetwork::NeuralIndicatorShareFault},
      {1, 1, 1, notANumber, NeuralNetwork::NeuralIndicatorShareFault},
      // The weights grow beyond all numbers.
      {2, 1e100, 5, 1, NeuralNetwork::NeuralIndicatorFault},
      {2, infinity, 1, 1, NeuralNetwork::NeuralIndicatorFault},
  };
  for (const auto& c : cases) {
    EXPECT_FAULT(c.fault, NeuralNetwork().NeuralIndicator(data, source, c.periods, c.rate, c.epochs, c.share));
  }
  EXPECT_FAULT(NeuralNetwork::NeuralIndicatorFault, NeuralNetwork().NeuralIndicator(data, nullptr, 1, 1, 1, 1));
}

}  // namespace
}  // namespace orvex::test
