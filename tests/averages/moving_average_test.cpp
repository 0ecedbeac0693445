#include "orvex/averages/moving_average.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(MovingAverage, HandComputedSeries) {
  MovingAverage average;
  const auto data = records(5);
  const auto source = field({1, 2, 3, 4, 5});
  expectColumns(*average.SimpleMovingAverage(data, source, 3), {{"SimpleMovingAverage", {0, 0, 0, 3, 4}}});
  // k = 1/2; the seed is 4/2 + 2/2 = 3.
  expectColumns(*average.ExponentialMovingAverage(data, source, 3),
                {{"ExponentialMovingAverage", {0, 0, 0, 3.5, 4.25}}});
  expectColumns(*average.WeightedMovingAverage(data, source, 3, "w"), {{"w", {0, 0, 0, 20.0 / 6, 26.0 / 6}}});
}

TEST(MovingAverage, TriangularWindows) {
  MovingAverage average;
  const auto source = field({1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048});
  const auto rows = [&](int periods) {
    return average.TriangularMovingAverage(records(12), source, periods)->getField("TriangularMovingAverage");
  };
  EXPECT_EQ(rows(1)->getValue(2), 0);
  EXPECT_EQ(rows(1)->getValue(3), 4);
  // Lengths 2 and 3: ((256 + 128) + (128 + 64) + (64 + 32)) / 2 / 3 in row 9.
  EXPECT_EQ(rows(4)->getValue(8), 0);
  EXPECT_EQ(rows(4)->getValue(9), (192.0 + 96 + 48) / 3);
  // Lengths 3 and 3: thirds of 1024 + 512 + 256, 512 + 256 + 128, 256 + 128 + 64 in row 11.
  EXPECT_EQ(rows(5)->getValue(10), 0);
  EXPECT_EQ(rows(5)->getValue(11), (1792.0 / 3 + 896.0 / 3 + 448.0 / 3) / 3);
}

TEST(MovingAverage, WilderSmoothingClimbsFromZero) {
  expectColumns(*MovingAverage().WellesWilderSmoothing(field({10, 10, 10, 10, 10, 10}), 2),
                {{"WellesWilderSmoothing", {0, 0, 0, 0, 9.375, 9.6875}}});
}

TEST(MovingAverage, LongestPeriods) {
  MovingAverage average;
  const auto source = field({1, 2, 3, 4});
  const std::vector<double> zeros(4);
  expectColumns(*average.SimpleMovingAverage(records(4), source, 4, "a"), {{"a", zeros}});
  expectColumns(*average.WeightedMovingAverage(records(4), source, 4, "a"), {{"a", zeros}});
  expectColumns(*average.TriangularMovingAverage(records(4), source, 2, "a"), {{"a", zeros}});
  expectColumns(*average.WellesWilderSmoothing(source, 2, "a"), {{"a", zeros}});
  // The seed reads the record behind its window.
  EXPECT_FAULT(MovingAverage::ExponentialMovingAverageFault, average.ExponentialMovingAverage(records(4), source, 4));
  EXPECT_FAULT(MovingAverage::SimpleMovingAverageFault, average.SimpleMovingAverage(records(4), source, 5));
  EXPECT_FAULT(MovingAverage::WeightedMovingAverageFault, average.WeightedMovingAverage(records(4), source, 5));
  EXPECT_FAULT(MovingAverage::TriangularMovingAverageFault, average.TriangularMovingAverage(records(4), source, 3));
  EXPECT_FAULT(MovingAverage::WellesWilderSmoothingFault, average.WellesWilderSmoothing(source, 3));
  EXPECT_FAULT(MovingAverage::WellesWilderSmoothingFault, average.WellesWilderSmoothing(source, 16384));
}

TEST(MovingAverage, TakesANameThatIsAConstant) {
  const std::string constant = "mine";
  EXPECT_TRUE(MovingAverage().SimpleMovingAverage(records(2), field({1, 2}), 1, constant)->isValidField("mine"));
}

TEST(MovingAverage, LeavesTheCursorWhereAFaultMetIt) {
  const auto data = records(6);
  const auto mean = [&](const std::vector<double>& source, int periods) {
    return [=] { MovingAverage().SimpleMovingAverage(data, field(source), periods); };
  };
  // The window of record 5 reaches back over the rows that the source has; row 6 is missing.
  expectFaults(*data, {{mean({1, 2, 3, 4, 5}, 2), MovingAverage::SimpleMovingAverageFault, 6},
                       {mean({1, 2, 3, 4, 5, 6}, 7), MovingAverage::SimpleMovingAverageFault, 1}});
}

}  // namespace
}  // namespace orvex::test
