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
    const auto data = records(high.size());
    data->setPosition(2);
    Integer periods = 0;
    expectColumns(
        *Oscillator().ChaosFractalOscillator(data, makeRecordSet({field(high, "High"), field(low, "Low")}), periods),
        {{"Chaos Fractal Oscillator", expected}});
    EXPECT_EQ(periods, 100);
    EXPECT_EQ(data->getPosition(), 2);
  }
  Integer periods = 7;
  EXPECT_EQ(faultOf([&] { Oscillator().ChaosFractalOscillator(records(1), makeRecordSet({}), periods); }),
            Oscillator::ChaosFractalOscillatorFault);
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
    const auto data = records(1);
    data->setPosition(2);
    expectColumns(*Oscillator().PrimeNumberOscillator(data, field({value}), "p"), {{"p", {distance}}});
    EXPECT_EQ(data->getPosition(), 2);
  }
  for (const double value : {2147483648.0, -214748365.0, 1e300}) {
    EXPECT_EQ(faultOf([&] { Oscillator().PrimeNumberOscillator(records(1), field({value})); }),
              Oscillator::PrimeNumberOscillatorFault);
  }
}

}  // namespace
}  // namespace orvex::test
