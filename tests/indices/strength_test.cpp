#include <cmath>

#include "orvex/indices/index.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(RelativeStrengthIndex, HandComputedSeries) {
  // Moves +2 -1 +2 0 -3 over 2 records: mean rises 1, 1.5, 0.75, 0.375, mean falls 0.5, 0.25, 0.125, 1.5625.
  expectColumns(*Index().RelativeStrengthIndex(records(6), field({10, 12, 11, 13, 13, 10}), 2),
                {{"RelativeStrengthIndex", {0, 0, 100 / 1.5, 150 / 1.75, 75 / 0.875, 37.5 / 1.9375}}});
  expectColumns(*Index().RelativeStrengthIndex(records(3), field({7, 7, 7}), 1, "r"), {{"r", {0, 50, 50}}});
  expectColumns(*Index().RelativeStrengthIndex(records(3), field({7, 8, 7}), 1, "r"), {{"r", {0, 100, 0}}});
}

TEST(RelativeStrengthIndex, PublishedTable) {
  // The worked example of StockCharts' ChartSchool, "Relative Strength Index", over 14 days.
  const std::vector<double> closes = {44.3389, 44.0902, 44.1497, 43.6124, 44.3278, 44.8264, 45.0955, 45.4245, 45.8433,
                                      46.0826, 45.8931, 46.0328, 45.6140, 46.2820, 46.2820, 46.0028, 46.0328, 46.4116,
                                      46.2222, 45.6439, 46.2122, 46.2521, 45.7137, 46.4515, 45.7835, 45.3548, 44.0288,
                                      44.1783, 44.2181, 44.5672, 43.4205, 42.6628, 43.1314};
  const double published[] = {70.53, 66.32, 66.55, 69.41, 66.36, 57.97, 62.93, 63.26, 56.06, 62.38,
                              54.71, 50.42, 39.99, 41.46, 41.87, 45.46, 37.30, 33.08, 37.77};
  const auto result = Index().RelativeStrengthIndex(records(closes.size()), field(closes), 14, "rsi");
  for (int i = 0; i < 19; ++i) {
    EXPECT_EQ(std::round(result->getValue("rsi", 15 + i) * 100) / 100, published[i]) << "record " << 15 + i;
  }
}

TEST(RelativeStrengthIndex, ChecksItsPeriodAlone) {
  const auto source = field({1, 2, 3});
  EXPECT_FAULT(Index::RelativeStrengthIndexPeriodsFault, Index().RelativeStrengthIndex(nullptr, source, 0));
  EXPECT_FAULT((Fault{1105, "Index.RelativeStrenghIndex.UnexpectedError", "An unexpected error has occured"}),
               Index().RelativeStrengthIndex(nullptr, source, 1));
  for (const int periods : {3, 4, 32767}) {
    expectColumns(*Index().RelativeStrengthIndex(records(3), source, periods, "r"), {{"r", {0, 0, 0}}});
  }
}

TEST(CommodityChannelIndex, HandComputedSeries) {
  // Averages 9 and 9 with distances 3, 0, 3 and 0, 3, 3: a mean deviation of 2.
  const auto data = levels({3, 6, 9, 12, 6});
  expectColumns(*Index().CommodityChannelIndex(data, data->getRecordset(), 3, 1),
                {{"CommodityChannelIndex", {0, 0, 0, 3 / (0.015 * 2), -3 / (0.015 * 2)}}});
  // The average of ten typical prices of 0.1 is another number than theirs.
  const auto flat = levels(std::vector<double>(12, 0.1));
  expectColumns(*Index().CommodityChannelIndex(flat, flat->getRecordset(), 10, 1, "c"),
                {{"c", std::vector<double>(12)}});
  const auto single = Index().CommodityChannelIndex(data, data->getRecordset(), 1, 1, "c");
  expectColumns(*single, {{"c", {0, 0, 0, 0, 0}}});
  // The variable average over 1 record begins at 10, past the end.
  expectColumns(*Index().CommodityChannelIndex(data, data->getRecordset(), 1, 4, "c"), {{"c", {0, 0, 0, 0, 0}}});
}

TEST(CommodityChannelIndex, ChecksInTheOrderOfTheArguments) {
  const auto data = levels({3, 6, 9, 12, 6});
  const auto fault = [&](int periods, int type) {
    return faultOf([&] { Index().CommodityChannelIndex(data, data->getRecordset(), periods, type); });
  };
  EXPECT_EQ(fault(0, 8), Index::CommodityChannelIndexPeriodsFault);
  EXPECT_EQ(fault(6, 1), Index::CommodityChannelIndexPeriodsFault);
  EXPECT_EQ(fault(2, 0), Index::CommodityChannelIndexAverageFault);
  EXPECT_EQ(fault(5, 2), Index::CommodityChannelIndexFault) << "the average fails";
}

const std::vector<Bar> swinging = {{0, 4, 2, 3, 0}, {0, 6, 3, 5, 0}, {0, 7, 5, 5, 0}, {0, 5, 1, 2, 0}, {0, 6, 4, 6, 0}};

TEST(StochasticMomentumIndex, HandComputedSeries) {
  // Over 2 records from record 2 on: momentum 1, 0, -2, 2.5 of ranges 4, 4, 6, 5.
  const auto data = bars(swinging);
  const auto set = data->getRecordset();
  expectColumns(*Index().StochasticMomentumIndex(data, set, 2, 0, 1, 1, 1),
                {{"%K", {0, 50, 0, -200.0 / 3, 250 / 2.5}}, {"%D", {0, 0, 0, -200.0 / 3, 250 / 2.5}}});
  // Averaged over 2, begun anew at record 2: momentum -1 and 0.25 of ranges 5 and 5.5, from record 4 on.
  expectColumns(*Index().StochasticMomentumIndex(data, set, 2, 2, 0, 1, 1),
                {{"%K", {0, 0, 0, -40, 25 / 2.75}}, {"%D", {0, 0, 0, 0, 25 / 2.75}}});
  const auto flat = levels({3, 3, 3});
  expectColumns(*Index().StochasticMomentumIndex(flat, flat->getRecordset(), 2, 0, 0, 1, 1),
                {{"%K", {0, 0, 0}}, {"%D", {0, 0, 0}}});
}

TEST(StochasticMomentumIndex, ChecksInTheOrderOfTheArguments) {
  const auto data = bars(swinging);
  const auto fault = [&](int k, int smoothing, int d, int type) {
    return faultOf(
        [&] { Index().StochasticMomentumIndex(data, data->getRecordset(), k, smoothing, smoothing, d, type); });
  };
  EXPECT_EQ(fault(6, 1, 1, 8), Index::StochasticMomentumIndexPeriodsFault);
  EXPECT_EQ(fault(1, 1, 0, 8), Index::StochasticMomentumIndexPeriodsFault);
  EXPECT_EQ(fault(1, 1, 5, 8), Index::StochasticMomentumIndexAverageFault);
  EXPECT_EQ(fault(3, 3, 2, 1), Index::StochasticMomentumIndexFault) << "nothing is left to average";
}

}  // namespace
}  // namespace orvex::test
