#include "orvex/general/general.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(PriceTransforms, HandComputedBars) {
  const auto data = bars({{9, 12, 8, 11, 0}, {5, 5, 5, 5, 0}, {0, -1, -3, -2, 0}});
  const auto prices = data->getRecordset();
  expectColumns(*General().HighMinusLow(data, prices), {{"HighMinusLow", {4, 0, 2}}});
  expectColumns(*General().MedianPrice(data, prices), {{"MedianPrice", {10, 5, -2}}});
  expectColumns(*General().TypicalPrice(data, prices), {{"TypicalPrice", {31.0 / 3, 5, -2}}});
  expectColumns(*General().WeightedClose(data, prices, "w"), {{"w", {10.5, 5, -2}}});
}

TEST(PriceTransforms, ReadOnlyTheirOwnColumns) {
  const auto data = records(2);
  const auto prices = makeRecordSet({field({3, 5}, "HIGH"), field({1, 2}, "low")});
  expectColumns(*General().MedianPrice(data, prices), {{"MedianPrice", {2, 3.5}}});
  EXPECT_FAULT(General::TypicalPriceFault, General().TypicalPrice(data, prices));
  EXPECT_FAULT(General::WeightedCloseFault, General().WeightedClose(data, prices));
  EXPECT_FAULT(General::HighMinusLowFault, General().HighMinusLow(data, nullptr));
}

TEST(PriceTransforms, OverflowStopsAtItsRecord) {
  const auto data = bars({{0, 2, 1, 0, 0}, {0, 1e308, -1e308, 0, 0}});
  expectFaults(*data, {{[&] { General().HighMinusLow(data, data->getRecordset()); }, General::HighMinusLowFault, 2}});
}

TEST(RatesOfChange, HandComputedSeries) {
  const struct {
    std::vector<double> series;
    int periods;
    std::vector<double> rates;
  } cases[] = {
      {{8, 10, 5, 10}, 1, {0, 25, -50, 100}},
      {{8, 10, 4, 5}, 2, {0, 0, -50, -50}},
      {{8, 10}, 0, {0, 0}},
      {{8, 0}, 2, {0, 0}},
  };
  for (const auto& [series, periods, rates] : cases) {
    const auto data = records(series.size());
    expectColumns(*General().PriceROC(data, field(series), periods), {{"PriceROC", rates}});
    expectColumns(*General().VolumeROC(data, field(series), periods), {{"VolumeROC", rates}});
  }
}

TEST(RatesOfChange, OfNoVolumeTheLastRateStandsOn) {
  const struct {
    std::vector<double> volumes;
    int periods;
    std::vector<double> rates;
  } cases[] = {
      {{0, 8, 0, 10, 5}, 1, {0, 0, -100, -100, -50}},
      {{-0.0, 0, 0}, 1, {0, 0, 0}},
      {{0, 4, notANumber, 8}, 2, {0, 0, 0, 100}},  // a volume beside no earlier one is not even read
  };
  for (const auto& [volumes, periods, rates] : cases) {
    expectColumns(*General().VolumeROC(records(volumes.size()), field(volumes), periods), {{"VolumeROC", rates}});
  }
  // Not even where there is none.
  expectColumns(*General().VolumeROC(records(3), field({5, 0}), 1), {{"VolumeROC", {0, -100, -100}}});
}

TEST(RatesOfChange, Faults) {
  const auto data = records(6);
  const auto price = [&](const std::vector<double>& series, int periods, int position) {
    return FaultCase{[=] { General().PriceROC(data, field(series), periods); }, General::PriceROCFault, position};
  };
  const auto volume = [&](const std::vector<double>& series, int periods, int position) {
    return FaultCase{[=] { General().VolumeROC(data, field(series), periods); }, General::VolumeROCFault, position};
  };
  const std::vector<double> whole{1, 2, 0, 4, 5, 6};
  expectFaults(
      *data, {price(whole, 1, 4), price(whole, -1, 1), price(whole, 7, 1), price(whole, 32767, 1), volume(whole, -1, 1),
              volume(whole, 7, 1), volume(whole, 32767, 1),
              // A volume is looked up with the cursor moved back to it, a price with the cursor where it is.
              volume({5, 0}, 1, 3), volume({5, 5}, 1, 3), volume({notANumber, 5}, 1, 2), price({notANumber, 5}, 1, 2)});
}

}  // namespace
}  // namespace orvex::test
