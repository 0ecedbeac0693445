#include "orvex/indices/index.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

/// Bars of these heights above a low of 0.
std::shared_ptr<Database> tall(const std::vector<double>& heights) {
  return ranges(heights, std::vector<double>(heights.size()));
}

TEST(MassIndex, HandComputedSeries) {
  // Ranges of 10: the average is 10 from record 10 on. The second one begins with the nine zeros before it, so its seed
  // is 0.8 x 10 + 0.2 x 0 = 8.
  const double at10 = 0.8 * 8 + 2, at11 = 0.8 * at10 + 2, at12 = 0.8 * at11 + 2;
  const auto data = tall(std::vector<double>(12, 10.0));
  expectColumns(*Index().MassIndex(data, data->getRecordset(), 2),
                {{"MassIndex", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 10 / at10 + 10 / at11, 10 / at11 + 10 / at12}}});
  expectColumns(*Index().MassIndex(data, data->getRecordset(), 1, "m"),
                {{"m", {0, 0, 0, 0, 0, 0, 0, 0, 0, 10 / at10, 10 / at11, 10 / at12}}});
}

TEST(MassIndex, StandsStillOnADoubleSmoothingOfZero) {
  // -208 takes the average to -33.6 and its average, 8.4 before, to exactly 0. The sum of records 10 and 11 ends after
  // record 10 and goes there.
  std::vector<double> heights(11, 10.0);
  heights.back() = -208;
  const auto data = tall(heights);
  expectColumns(*Index().MassIndex(data, data->getRecordset(), 2, "m"),
                {{"m", {0, 0, 0, 0, 0, 0, 0, 0, 0, 10 / (0.8 * 8 + 2), 0}}});
  // One record more, and its window begins on the zero: it writes its empty sum over the same row.
  heights.push_back(10);
  const auto longer = tall(heights);
  const auto result = Index().MassIndex(longer, longer->getRecordset(), 2, "m");
  EXPECT_EQ(result->getValue("m", 10), 0);
}

TEST(MassIndex, ItsCheckStandsInsideTheTrap) {
  const auto data = tall(std::vector<double>(12, 10.0));
  for (const int periods : {0, 13, 7, -1}) {
    EXPECT_FAULT(Index::MassIndexFault, Index().MassIndex(data, data->getRecordset(), periods)) << periods;
  }
  const auto few = tall(std::vector<double>(9, 10.0));
  EXPECT_FAULT(Index::MassIndexFault, Index().MassIndex(few, few->getRecordset(), 2));
}

}  // namespace
}  // namespace orvex::test
