#include "orvex/indices/index.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

// With A = |H - Cy|, B = |L - Cy|, D = |H - L| of each record:
const std::vector<Bar> series = {
    {10, 12, 9, 11, 0},  {12, 14, 12, 13, 0},  // A 3, B 1, D 2: R = 3 - 0.5 + 0.25 = 2.75, move 2 + 0.5 + 0.25 = 2.75
    {13, 14, 13, 14, 0},                       // A 1, B 0, D 1, a tie: R stays 2.75, move 1 + 0.5 + 0.25 = 1.75
    {12, 13, 10, 11, 0},                       // A 1, B 4, D 3: R = 4 - 0.5 + 0.25 = 3.75, move -3 - 0.5 + 0.25 = -3.25
    {10, 14, 9, 12, 0},                        // A 3, B 2, D 5: R = 5 + 0.25 = 5.25, move 1 + 1 - 0.25 = 1.75
    {12, 12, 12, 12, 0},                       // A, B and D 0: R stays 5.25, move 0 + 0 + 0.5 = 0.5, but K is 0
};
const double second = 50 * 2.75 / 2.75 * 3 / 3, third = 50 * 1.75 / 2.75 * 1 / 3;
const double fourth = 50 * -3.25 / 3.75 * 4 / 3, fifth = 50 * 1.75 / 5.25 * 3 / 3;

TEST(SwingIndex, HandComputedSeries) {
  const auto data = bars(series);
  const auto prices = data->getRecordset();
  expectColumns(*Index().SwingIndex(data, prices, 3), {{"SwingIndex", {0, second, third, fourth, fifth, 0}}});
  const double to3 = second + third, to4 = to3 + fourth, to5 = to4 + fifth;
  expectColumns(*Index().AccumulativeSwingIndex(data, prices, 3, "total"),
                {{"total", {0, second, to3, to4, to5, to5}}});
}

TEST(SwingIndex, WithoutARangeBeforeATieIsZero) {
  // Record 2: A = D = 3 above B, and no record before it has set R.
  const auto tied = bars({{10, 12, 9, 11, 0}, {11, 14, 11, 13, 0}});
  expectColumns(*Index().SwingIndex(tied, tied->getRecordset(), 3, "s"), {{"s", {0, 0}}});
  // A tie of both distances from the close before, above the span: A = B = 2, D = 0.
  const auto level = bars({{10, 12, 9, 11, 0}, {13, 13, 13, 13, 0}});
  expectColumns(*Index().SwingIndex(level, level->getRecordset(), 3, "s"), {{"s", {0, 0}}});
  const auto single = bars({{10, 12, 9, 11, 0}});
  expectColumns(*Index().AccumulativeSwingIndex(single, single->getRecordset(), 3, "s"), {{"s", {0}}});
}

TEST(SwingIndex, ErrorsOnEitherSideOfTheTrap) {
  const auto data = bars(series);
  const auto prices = data->getRecordset();
  EXPECT_FAULT(Index::SwingIndexLimitFault, Index().SwingIndex(data, prices, 0));
  EXPECT_FAULT(Index::AccumulativeSwingIndexLimitFault, Index().AccumulativeSwingIndex(data, prices, -1));
  // The inner call stands before the trap of the total.
  prices->removeField("Open");
  expectFaults(*data, {{[&] { Index().SwingIndex(data, prices, 3); }, Index::SwingIndexFault, 2},
                       {[&] { Index().AccumulativeSwingIndex(data, prices, 3); }, Index::SwingIndexFault, 2}});
}

}  // namespace
}  // namespace orvex::test
