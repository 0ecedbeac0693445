#include "orvex/indices/index.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(ChaikinMoneyFlow, HandComputedSeries) {
  const Bar before{0, 5, 1, 2, 70}, high{0, 12, 8, 11, 100};  // (3 - 1) / (4 x 100) = 0.005
  struct Case {
    const char* what;
    Bar last;
    double expected;
  };
  const Case cases[] = {
      {"closes at the low", {0, 10, 8, 8, 50}, 150.0 * 150 * ((-2.0 / 100 + 0.005) / 150)},
      {"no range, but its volume counts", {0, 9, 9, 9, 50}, 150.0 * 150 * (0.005 / 150)},
      {"closes in the middle", {0, 10, 8, 9, 50}, 150.0 * 150 * (0.005 / 150)},
      {"no volume", {0, 10, 8, 8, 0}, 100.0 * 100 * (0.005 / 100)},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.what);
    const auto data = bars({before, high, one.last});
    expectColumns(*Index().ChaikinMoneyFlow(data, data->getRecordset(), 2),
                  {{"ChaikinMoneyFlow", {0, 0, one.expected}}});
  }
}

TEST(ChaikinMoneyFlow, FaultsWithoutVolumeOrRecords) {
  const auto data = bars({{0, 5, 1, 2, 70}, {0, 5, 1, 2, 0}, {0, 5, 1, 2, 0}});
  const auto fault = [&](int periods) {
    return faultOf([&] { Index().ChaikinMoneyFlow(data, data->getRecordset(), periods); });
  };
  EXPECT_EQ(fault(2), Index::ChaikinMoneyFlowFault);
  EXPECT_EQ(fault(3), std::nullopt);
  EXPECT_EQ(fault(0), Index::ChaikinMoneyFlowFault);
  EXPECT_EQ(fault(32767), Index::ChaikinMoneyFlowFault);
}

TEST(MoneyFlowIndex, HandComputedSeries) {
  // Flows: up 60, unmoved, down 60, up 90.
  const auto data = levels({3, 6, 6, 3, 9}, {10, 10, 10, 20, 10});
  expectColumns(*Index().MoneyFlowIndex(data, data->getRecordset(), 2), {{"MoneyFlowIndex", {0, 0, 100, 0, 60}}});
  const auto unmoved = levels({3, 3, 3}, {10, 10, 10});
  expectColumns(*Index().MoneyFlowIndex(unmoved, unmoved->getRecordset(), 1, "m"), {{"m", {0, 50, 50}}});
  // Up 60 and, with a negative volume, down -60: sums that are not 0 and whose total is.
  const auto cancelling = levels({3, 6, 3}, {10, 10, -20});
  expectColumns(*Index().MoneyFlowIndex(cancelling, cancelling->getRecordset(), 2, "m"), {{"m", {0, 0, 0}}});
  expectColumns(*Index().MoneyFlowIndex(unmoved, unmoved->getRecordset(), 3, "m"), {{"m", {0, 0, 0}}});
}

TEST(MoneyFlowIndex, ChecksBeforeTheTrap) {
  const auto data = levels({3, 6, 6}, {10, 10, 10});
  EXPECT_FAULT(Index::MoneyFlowIndexPeriodsFault, Index().MoneyFlowIndex(data, nullptr, 0));
  EXPECT_FAULT(Index::MoneyFlowIndexPeriodsFault, Index().MoneyFlowIndex(data, nullptr, 4));
  EXPECT_FAULT(Index::MoneyFlowIndexFault, Index().MoneyFlowIndex(data, nullptr, 2));
}

}  // namespace
}  // namespace orvex::test
