#include "orvex/averages/moving_average.h"

#include "tests/support/series.h"

namespace orvex {
namespace {

using test::expectColumns;
using test::field;
using test::records;

TEST(MovingAverage, HandComputedSeries) {
  MovingAverage average;
  const auto data = records(5);
  const auto source = field({1, 2, 3, 4, 5});
  expectColumns(*average.SimpleMovingAverage(data, source, 3), {{"SimpleMovingAverage", {0, 0, 0, 3, 4}}});
  // k = 1/2; the seed is 4/2 + 2/2 = 3.
  expectColumns(*average.ExponentialMovingAverage(data, source, 3),
                {{"ExponentialMovingAverage", {0, 0, 0, 3.5, 4.25}}});
  expectColumns(*average.WeightedMovingAverage(data, source, 3, "w"), {{"w", {0, 0, 0, 20.0 / 6, 26.0 / 6}}});
  EXPECT_EQ(data->getPosition(), 1);
}

TEST(MovingAverage, WilderSmoothingClimbsFromZero) {
  expectColumns(*MovingAverage().WellesWilderSmoothing(field({10, 10, 10, 10, 10, 10}), 2),
                {{"WellesWilderSmoothing", {0, 0, 0, 0, 9.375, 9.6875}}});
}

}  // namespace
}  // namespace orvex
