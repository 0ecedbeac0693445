#include "orvex/oscillators/oscillator.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(ParabolicSAR, HandComputedTrends) {
  const struct {
    std::vector<double> high, low, expected;
  } cases[] = {
      // Equal moves begin a long trend at the low of record 1. It turns in record 4, where the level becomes the
      // extreme 13, back in record 5, and again in record 6: there the extreme is 12 as before, and not the new high.
      {{10, 11, 13, 12, 12, 14}, {8, 9, 10, 10.5, 9, 11}, {0, 9, 10, 13, 10.5, 12}},
      // The low rose more than the high: a short trend, from the high of record 1, which record 2 turns at once.
      {{10, 10.5}, {8, 9}, {0, 8}},
      // Both fell, the low by less: short. The first stop goes by the low of record 1 and not by that of record 2.
      {{10, 8, 7}, {8, 7, 4}, {0, 9, 8}},
  };
  for (const auto& [high, low, expected] : cases) {
    expectColumns(*Oscillator().ParabolicSAR(records(high.size()), field(high), field(low), 0.5, 0.5),
                  {{"ParabolicSAR", expected}});
  }
}

TEST(ParabolicSAR, TheFactorEndsAboveItsBound) {
  std::vector<double> high, low;
  for (int record = 1; record <= 30; ++record) {
    high.push_back(100 + record);
    low.push_back(99 + record);
  }
  const auto stop = Oscillator().ParabolicSAR(records(30), field(high), field(low))->getField("ParabolicSAR");
  const auto factor = [&](int record) {
    return (stop->getValue(record) - stop->getValue(record - 1)) /
           (high[static_cast<std::size_t>(record) - 2] - stop->getValue(record - 1));
  };
  EXPECT_NEAR(factor(3), 0.04, 1e-12);
  EXPECT_NEAR(factor(11), 0.2, 1e-12);
  EXPECT_NEAR(factor(12), 0.22, 1e-12);
  EXPECT_NEAR(factor(30), 0.22, 1e-12);
}

TEST(ParabolicSAR, NeedsTwoRecordsAndLeavesTheCursorBeforeTheOneThatFaults) {
  const auto one = records(1), six = records(6);
  const auto stop = [](const auto& data, const std::vector<double>& high, const std::vector<double>& low) {
    return [=] { Oscillator().ParabolicSAR(data, field(high), field(low)); };
  };
  expectFaults(*one, {{stop(one, {1}, {1}), Oscillator::ParabolicSARFault, 1}});
  expectFaults(*six, {{stop(six, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4}), Oscillator::ParabolicSARFault, 4}});
}

}  // namespace
}  // namespace orvex::test
