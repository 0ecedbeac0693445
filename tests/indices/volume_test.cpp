#include <functional>

#include "orvex/indices/index.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

using Series = std::shared_ptr<Field>;

TEST(VolumeIndices, HandComputedSeries) {
  const auto balance = [](auto... inputs) { return Index().OnBalanceVolume(inputs..., "x"); };
  const auto trend = [](auto... inputs) { return Index().PriceVolumeTrend(inputs..., "x"); };
  const auto positive = [](auto... inputs) { return Index().PositiveVolumeIndex(inputs..., "x"); };
  const auto negative = [](auto... inputs) { return Index().NegativeVolumeIndex(inputs..., "x"); };
  const auto trade = [](double tick) {
    return [tick](auto... inputs) { return Index().TradeVolumeIndex(inputs..., tick, "x"); };
  };
  const struct {
    const char* what;
    std::function<std::shared_ptr<RecordSet>(std::shared_ptr<Database>, Series prices, Series volumes)> run;
    std::vector<double> prices, volumes, expected;
  } cases[] = {
      {"balance", balance, {10, 11, 11, 9}, {100, 200, 300, 400}, {0, 200, 200, -200}},
      {"balance has no use for the volume of an unmoved price", balance, {5, 5, 6}, {infinity, infinity, 3}, {0, 0, 3}},
      {"trend", trend, {8, 10, 5}, {100, 40, 30}, {0, 10, -5}},
      // Equal volumes carry the index on, in both; the seed is 1.
      {"positive", positive, {8, 10, 5, 6}, {1, 2, 2, 3}, {1, 1.25, 1.25, 1.5}},
      {"positive, falling volume", positive, {10, 11}, {200, 100}, {1, 1}},
      {"positive, one record", positive, {10}, {200}, {1}},
      {"positive has no use for a price that it does not follow", positive, {0, infinity, 5}, {2, 1, 1}, {1, 1, 1}},
      {"negative", negative, {8, 10, 5, 6}, {3, 2, 2, 1}, {1, 1.25, 1.25, 1.5}},
      {"negative, one record", negative, {10}, {200}, {1}},
      // Inside the band there is no direction at first, and later the last one holds.
      {"trade", trade(0.5), {10, 10.25, 11, 10.75, 10}, {1, 2, 3, 4, 5}, {0, 0, 3, 7, 2}},
      {"trade, moves of exactly a tick",
       trade(0.5),
       {10, 10.5, 11.5, 11, 10, 10.5},
       {1, 2, 3, 4, 5, 6},
       {0, 0, 3, 7, 2, -4}},
      {"trade without a band", trade(0), {10, 10, 11, 11, 10}, {1, 2, 3, 4, 5}, {0, 0, 3, 7, 2}},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.what);
    expectColumns(*one.run(records(one.prices.size()), field(one.prices), field(one.volumes)), {{"x", one.expected}});
  }
}

TEST(VolumeIndices, RelativeSeries) {
  const auto data = records(3);
  expectColumns(*Index().Performance(data, field({50, 55, 45})), {{"Performance", {0, 10, -10}}});
  expectColumns(*Index().Performance(records(1), field({0})), {{"Performance", {0}}});
  // Record 1 is computed wherever the cursor stands; equal columns are marked.
  data->setPosition(3);
  expectColumns(*Index().ComparativeRelativeStrength(data, field({2, 3, 9}), field({4, 3, 2})),
                {{"ComparativeRelativeStrength", {0.5, -987654321, 4.5}}});
}

TEST(VolumeIndices, FaultsAndWhereTheyLeaveTheCursor) {
  const auto data = records(4);
  const auto prices = field({4, 0, 2, 3}), volumes = field({4, 3, 4, 4});
  const auto fromZero = field({0, 1, 2, 3}), shorter = field({1, 2, 3});
  expectFaults(*data,
               {// A price of 0 to move from.
                {[&] { Index().PriceVolumeTrend(data, prices, volumes); }, Index::PriceVolumeTrendFault, 3},
                {[&] { Index().PositiveVolumeIndex(data, prices, volumes); }, Index::PositiveVolumeIndexFault, 3},
                {[&] { Index().NegativeVolumeIndex(data, prices, volumes); }, std::nullopt, 1},
                {[&] { Index().Performance(data, fromZero); }, Index::PerformanceFault, 2},
                {[&] { Index().ComparativeRelativeStrength(data, volumes, prices); },
                 Index::ComparativeRelativeStrengthFault, 2},
                {[&] { Index().OnBalanceVolume(data, shorter, volumes); }, Index::OnBalanceVolumeFault, 4}});
  // The tick is checked before the trap.
  EXPECT_FAULT(Index::TradeVolumeIndexTickFault, Index().TradeVolumeIndex(nullptr, prices, volumes, -0.01));
  EXPECT_FAULT(Index::TradeVolumeIndexFault, Index().TradeVolumeIndex(nullptr, prices, volumes, 0));
}

}  // namespace
}  // namespace orvex::test
