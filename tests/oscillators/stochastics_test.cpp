#include "orvex/oscillators/oscillator.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

// The extremes of record 1 are in no span.
std::shared_ptr<Database> fiveBars() {
  return bars({{0, 100, 0, 50, 0}, {0, 10, 6, 8, 0}, {0, 12, 8, 12, 0}, {0, 11, 7, 8, 0}, {0, 11, 7, 7, 0}});
}

TEST(StochasticOscillator, HandComputedBars) {
  const auto data = fiveBars();
  const struct {
    int slowing, dPeriods;
    std::vector<double> k, d;
  } cases[] = {
      {0, 1, {0, 0, 100, 20, 0}, {0, 0, 100, 20, 0}},
      {1, 2, {0, 0, 100, 20, 0}, {0, 0, 50, 60, 10}},
      {2, 2, {0, 0, 50, 60, 10}, {0, 0, 25, 55, 35}},
  };
  for (const auto& [slowing, dPeriods, k, d] : cases) {
    expectColumns(*Oscillator().StochasticOscillator(data, data->getRecordset(), 2, slowing, dPeriods, 1),
                  {{"%K", k}, {"%D", d}});
  }
}

TEST(WilliamsPctR, LeavesTheLastRecordAtZero) {
  const auto data = fiveBars();
  expectColumns(*Oscillator().WilliamsPctR(data, data->getRecordset(), 2), {{"WilliamsPctR", {0, 0, 0, -80, 0}}});
  // Over no records the span is the record after the close.
  expectColumns(*Oscillator().WilliamsPctR(data, data->getRecordset(), 0, "r"), {{"r", {1000, -100, 25, -75, 0}}});
}

TEST(StochRSI, IsAShareAndTakesTheZerosBeforeTheFirstStrength) {
  // The strength over 2 records runs 0, 0, 100, 50, 83.3.
  expectColumns(*Oscillator().StochRSI(records(5), field({1, 2, 3, 2, 4}), 2), {{"StochRSI", {0, 0, 1, 0, 1}}});
}

TEST(UltimateOscillator, WeighsTheCyclesInTheOrderOfTheArguments) {
  // Buying pressures 2 and 0 of ranges 4 and 1 in records 2 and 3.
  const auto data = bars({{0, 11, 9, 10, 0}, {0, 13, 9, 11, 0}, {0, 12, 11, 11, 0}});
  const struct {
    int cycles[3];
    std::vector<double> expected;
  } cases[] = {
      {{1, 1, 1}, {0, 50, 0}},
      {{2, 1, 1}, {0, 0, 0.4 * 4 / 7 * 100}},
      {{1, 2, 1}, {0, 0, 0.4 * 2 / 7 * 100}},
      {{1, 1, 2}, {0, 0, 0.4 / 7 * 100}},
      {{1, 2, 3}, {0, 0, 0}},
  };
  for (const auto& [cycles, expected] : cases) {
    expectColumns(*Oscillator().UltimateOscillator(data, data->getRecordset(), cycles[0], cycles[1], cycles[2]),
                  {{"UltimateOscillator", expected}});
  }
}

TEST(Stochastics, FlatPricesFault) {
  const auto data = bars(std::vector<Bar>(5, {9, 9, 9, 9, 9}));
  const auto prices = data->getRecordset();
  Oscillator oscillator;
  expectFaults(
      *data,
      {{[&] { oscillator.StochasticOscillator(data, prices, 2, 0, 2, 1); }, Oscillator::StochasticOscillatorFault, 3},
       {[&] { oscillator.WilliamsPctR(data, prices, 2); }, Oscillator::WilliamsPctRFault, 3},
       {[&] { oscillator.StochRSI(data, prices->getField("Close"), 2); }, Oscillator::StochRSIFault, 4},
       {[&] { oscillator.UltimateOscillator(data, prices, 1, 2, 1); }, Oscillator::UltimateOscillatorFault, 4}});
}

TEST(Stochastics, PeriodsAreNotChecked) {
  const auto data = fiveBars();
  const auto prices = data->getRecordset();
  Oscillator oscillator;
  const auto stochastic = [&](int k, int d, int type) {
    return faultOf([&] { oscillator.StochasticOscillator(data, prices, k, 0, d, type); });
  };
  EXPECT_EQ(stochastic(0, 1, 1), Oscillator::StochasticOscillatorFault);
  EXPECT_EQ(stochastic(2, 1, 8), Oscillator::StochasticOscillatorFault);
  EXPECT_EQ(stochastic(9, 1, 1), std::nullopt);
  // A length below 0 goes by the cursor, which leaves the series in the end.
  expectFaults(*data, {{[&] { oscillator.StochasticOscillator(data, prices, -1, 0, 1, 1); },
                        Oscillator::StochasticOscillatorFault, 6},
                       {[&] { oscillator.WilliamsPctR(data, prices, -1); }, Oscillator::WilliamsPctRFault, 6}});
  EXPECT_FAULT(Oscillator::UltimateOscillatorFault, oscillator.UltimateOscillator(data, prices, 2, 0, 2));
}

}  // namespace
}  // namespace orvex::test
