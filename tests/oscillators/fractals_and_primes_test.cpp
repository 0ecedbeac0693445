#include "orvex/oscillators/oscillator.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(ChaosFractalOscillator, ComparesWithFourRecordsOrWithZeros) {
  const struct {
    std::vector<double> high, low, expected;
  } cases[] = {
      // Ordinary prices give 1 in records 2 to 4; a new low goes before a new high; equal is not above.
      {{5, 5, 5, 5, 6, 6, 7}, {1, 1, 1, 1, 1, 0, -1}, {0, 1, 1, 1, 1, -1, -1}},
      {{9, 5, 5, 5, 6, 10, 10}, {1, 1, 1, 1, 1, 1, 1}, {0, 1, 1, 1, 0, 1, 0}},
      {{0, 0, -1, -1, -2}, {0, -1, 0, -2, -3}, {0, -1, 0, -1, -1}},
      {{5}, {1}, {0}},
  };
  for (const auto& [high, low, expected] : cases) {
    const auto data = ranges(high, low);
    Integer periods = 0;
    expectColumns(*Oscillator().ChaosFractalOscillator(data, data->getRecordset(), periods),
                  {{"Chaos Fractal Oscillator", expected}});
    EXPECT_EQ(periods, 100);
  }
  Integer periods = 7;
  EXPECT_FAULT(Oscillator::ChaosFractalOscillatorFault,
               Oscillator().ChaosFractalOscillator(records(1), makeRecordSet({}), periods));
  EXPECT_EQ(periods, 7);
}

TEST(PrimeNumberOscillator, IsTheDistanceToTheNearestPrime) {
  const struct {
    double value, distance;
  } cases[] = {
      {7.9, -1},  // 70, between 67 and 71
      {12, 1},    // between 11 and 13: the lower one
      {13, 0},   {25.9, 2}, {0.5, 0},        {3, 1},           {9, 1},           {9.99, 1},
      {10, -1},  {-5, -50}, {2147483647, 0}, {2147483646, -1}, {2147483628, -1}, {-214748364, -2147483640.0},
  };
  for (const auto& [value, distance] : cases) {
    expectColumns(*Oscillator().PrimeNumberOscillator(records(1), field({value}), "p"), {{"p", {distance}}});
  }
  for (const double value : {2147483648.0, -214748365.0, 1e300}) {
    EXPECT_FAULT(Oscillator::PrimeNumberOscillatorFault,
                 Oscillator().PrimeNumberOscillator(records(1), field({value})));
  }
}

}  // namespace
}  // namespace orvex::test
