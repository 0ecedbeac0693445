// Counts of both widths in one program: where 16 bits suffice, both give the same.
#include <gtest/gtest.h>

#include <random>

#include "tests/support/times.h"
#include "tests/widths/outcome.h"

namespace widths {
namespace {

int callsOfEach() {
  return orvex::test::timesOfEach("ORVEX_WIDTHS_CALLS", 300);
}

class BothWidths : public testing::TestWithParam<std::string> {};

TEST_P(BothWidths, GiveTheSameWhere16BitsSuffice) {
  std::mt19937 generator(16);
  int compared = 0;
  for (int i = 0; i < callsOfEach() && !HasFailure(); ++i) {
    std::vector<std::uint8_t> bytes(160);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(generator());
    // Mostly as long as the bytes choose, up to 600 records, and now and then nearly as long as 16 bits can tell.
    const int count = i % 100 == 99 ? 32000 - static_cast<int>(generator() % 2000) : 0;
    if (count > 0 && GetParam() == "NeuralNetwork.NeuralIndicator") continue;
    const Call narrow = counts16::call(GetParam(), bytes, count), wide = counts32::call(GetParam(), bytes, count);
    ASSERT_EQ(narrow.description, wide.description);
    // A value out of range overflows at both, but then perhaps a count of 16 bits has before it.
    if (narrow.overflows > 0) continue;
    ++compared;
    EXPECT_EQ(narrow.outcome.fault, wide.outcome.fault) << narrow.description;
    EXPECT_EQ(narrow.outcome.position, wide.outcome.position) << narrow.description;
    EXPECT_TRUE(narrow.outcome == wide.outcome) << narrow.description;
  }
  EXPECT_GT(compared, callsOfEach() / 3) << "too few calls to tell anything";
}

std::string nameOf(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  name[name.find('.')] = '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Catalogue, BothWidths, testing::ValuesIn(calculations()), nameOf);

}  // namespace
}  // namespace widths
