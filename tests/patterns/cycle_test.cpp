#include "orvex/patterns/cycle.h"

#include <cmath>
#include <random>

#include "orvex/data/host_events.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(Cycle, HandComputedSeries) {
  const struct {
    std::vector<double> source;
    int length;
  } cases[] = {
      {{1, 2, 3, 4, 5}, 0},
      // Record 2 waits from record 4 to 6: 3 records, and 3/4 is nearest to 1. The 6s lie on the range's edge.
      {{10, 8, 6, 6, 6, 9}, 1},
      {{10, 8, 6, 6, 6, 10}, 0},
      // Nothing ever lies between, but each 0 counts as met: 1/1, 3/2, 6/3, 10/4, 15/5, 21/6.
      {{0, 0, 0}, 1},
      {{0, 0, 0, 0}, 2},
      {{0, 0, 0, 0, 0}, 2},
      {{0, 0, 0, 0, 0, 0}, 2},
      {{0, 0, 0, 0, 0, 0, 0}, 3},
      {{0, 0, 0, 0, 0, 0, 0, 0}, 4},
      {std::vector<double>(257), 128},
      {{7}, 0},
  };
  for (const auto& [source, length] : cases) {
    EXPECT_EQ(Cycle().Analyze(field(source)), length) << source.size() << " records";
  }
  EXPECT_EQ(Cycle().Analyze(std::make_shared<Field>()), 0);
}

TEST(Cycle, EveryFaultIsUnexpected) {
  const auto destroyed = field({1, 2, 3, 4});
  destroyed->destroy();
  const std::shared_ptr<Field> sources[] = {nullptr, destroyed, field({1, 2}),
                                            // 1 + 2 + ... + 256 distances do not fit 16 bits.
                                            field(std::vector<double>(258)), field({1, 2, 3, notANumber}),
                                            field({notANumber, 2, 3, 4})};
  for (const auto& source : sources) {
    EXPECT_FAULT(Cycle::AnalyzeFault, Cycle().Analyze(source));
  }
  // The value between the neighbours is not looked at, the one behind only by a search.
  EXPECT_EQ(Cycle().Analyze(field({3, notANumber, 1})), 0);
  EXPECT_EQ(Cycle().Analyze(field({3, 1, notANumber})), 0);
  // The search from record 2 ends before the last value, the one from record 3 comes upon it.
  int done = 0;
  setYieldHook({[](void* count) { ++*static_cast<int*>(count); }, &done});
  EXPECT_FAULT(Cycle::AnalyzeFault, Cycle().Analyze(field({10, 8, 6, 9, notANumber})));
  setYieldHook({});
  EXPECT_EQ(done, 1);
}

/// The definition, search by search.
int literalLength(const std::vector<double>& v) {
  const std::size_t n = v.size();
  double total = 0;
  for (std::size_t i = 1; i + 1 < n; ++i) {
    std::size_t j = i + 2;
    while (j < n && !(v[j] > v[i + 1] && v[j] < v[i - 1])) ++j;
    if (j < n || v[i - 1] == 0) total += static_cast<double>(j - i - 1);
  }
  return static_cast<int>(std::nearbyint(total / (static_cast<double>(n) - 2)));
}

TEST(Cycle, SkippedSearchesChangeNothing) {
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    std::vector<double> source(3 + random() % 40);
    const auto values = 2 + random() % 12;
    for (double& value : source) value = static_cast<double>(random() % values);
    ASSERT_EQ(Cycle().Analyze(field(source)), literalLength(source)) << "round " << round;
  }
}

TEST(Cycle, NeverReadsTheValueOfTheRecordItself) {
  const auto yieldsOf = [](const std::vector<double>& source) {
    int yields = 0;
    setYieldHook({[](void* count) { ++*static_cast<int*>(count); }, &yields});
    EXPECT_FAULT(Cycle::AnalyzeFault, Cycle().Analyze(field(source)));
    setYieldHook({});
    return yields;
  };
  EXPECT_EQ(yieldsOf({10, notANumber, 6, 9, 7}), 1) << "record 3 is the first that needs it";
  EXPECT_EQ(yieldsOf({10, notANumber, 6, 11, notANumber}), 0);
  EXPECT_EQ(Cycle().Analyze(field({10, notANumber, 6})), 0);
}

}  // namespace
}  // namespace orvex::test
