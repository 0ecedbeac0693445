#include "orvex/studies/chart_pattern.h"

#include "orvex/general/general.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(ChartPattern, PercentRetracement) {
  const struct {
    std::vector<double> source;
    int start, end;
    std::string text;
    double percent;
    int period;
  } cases[] = {
      {{1, 2, 3, 4}, 1, 4, "ADVANCING", 0, 0},
      {{10, 20, 15, 0}, 1, 3, "ADVANCING", 50, 0},
      {{10, 20, 10}, 2, 3, "DECLINING", 0, 0},
      {{20, 10, 12.5}, 1, 3, "DECLINING", 25, 0},
      // The low comes first, the last value is the low again.
      {{10, 20, 10}, 1, 3, "ADVANCING", 100, 0},
      // Both extremes on one record: the minimum's own note.
      {{5, 5, 5}, 2, 3, "", 5, 2},
      {{1, 2, 3}, 3, 3, "", 3, 3},
      // No value above 0: the maximum is 0 before the first record.
      {{-5, -3, -4}, 1, 3, "DECLINING", 20, 0},
  };
  for (const auto& c : cases) {
    const auto note = ChartPattern().PercentRetracement(records(c.source.size()), field(c.source), c.start, c.end);
    EXPECT_EQ(note->getNote(), c.text);
    EXPECT_EQ(note->getValue(), c.percent);
    EXPECT_EQ(note->getPeriod(), c.period);
  }
}

TEST(ChartPattern, OnlyLateFaultsAreItsOwn) {
  const auto source = field({1, 3, 2});
  const struct {
    std::shared_ptr<Field> source;
    int start, end;
    Fault fault;
  } cases[] = {
      {source, 0, 4, ChartPattern::PercentRetracementEndFault},
      {source, 0, 3, ChartPattern::PercentRetracementStartFault},
      {source, 3, 2, General::MaxValueFault},
      {nullptr, 1, 3, General::MaxValueFault},
      {field({1, 2}), 1, 3, General::MaxValueFault},
      {field({0, 0, 0}), 1, 3, ChartPattern::PercentRetracementFault},
  };
  for (const auto& c : cases) {
    EXPECT_FAULT(c.fault, ChartPattern().PercentRetracement(records(3), c.source, c.start, c.end));
  }
}

}  // namespace
}  // namespace orvex::test
