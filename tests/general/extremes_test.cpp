#include <cmath>

#include "orvex/general/general.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(Extremes, CoverOneRecordMoreThanPeriods) {
  const std::vector<double> series{3, 1, 4, 1, 5, 9, 2, 6};
  const struct {
    int periods;
    std::vector<double> highest, lowest;
  } cases[] = {
      {2, {0, 0, 4, 4, 5, 9, 9, 9}, {0, 0, 1, 1, 1, 1, 2, 2}}, {0, series, series},
      {7, {0, 0, 0, 0, 0, 0, 0, 9}, {0, 0, 0, 0, 0, 0, 0, 1}}, {8, std::vector<double>(8), std::vector<double>(8)},
      {20, std::vector<double>(8), std::vector<double>(8)},
  };
  const auto data = records(8);
  for (const auto& [periods, highest, lowest] : cases) {
    SCOPED_TRACE(periods);
    expectColumns(*General().HHV(data, field(series), periods), {{"HHV", highest}});
    expectColumns(*General().LLV(data, field(series), periods, "low"), {{"low", lowest}});
  }
}

TEST(Extremes, OfZerosOfBothSignsTheNewestStands) {
  const auto data = records(2);
  const auto last = [](const std::shared_ptr<RecordSet>& set) { return set->getField(set->getName(1))->values()[1]; };
  EXPECT_TRUE(std::signbit(last(General().HHV(data, field({0.0, -0.0}), 1))));
  EXPECT_FALSE(std::signbit(last(General().LLV(data, field({-0.0, 0.0}), 1))));
}

TEST(Extremes, FaultsLeaveTheCursorThatRunsPeriodsBehind) {
  const struct {
    std::vector<double> series;
    int periods, position;
  } cases[] = {
      {{1, 2, 3, notANumber, 5}, 1, 3}, {{1, 2, 3}, 1, 3}, {{1, notANumber, 3, 4, 5}, 3, 1},
      {{1, 2, 3, 4, 5}, -1, 1},         {{1, 2}, 3, 1},    {{1, 2, 3, 4, 5}, 32767, 1},
  };
  for (const auto& one : cases) {
    const auto data = records(5);
    EXPECT_FAULT(General::HHVFault, General().HHV(data, field(one.series), one.periods));
    EXPECT_EQ(data->getPosition(), one.position);
    EXPECT_FAULT(General::LLVFault, General().LLV(data, field(one.series), one.periods));
    EXPECT_EQ(data->getPosition(), one.position);
  }
}

TEST(Extremes, OfARange) {
  const struct {
    std::vector<double> series;
    int first, last, maxPeriod;
    double max;
    int minPeriod;
    double min;
  } cases[] = {
      {{-5, -3, -4}, 1, 3, 0, 0, 1, -5},  // the maximum begins from 0, the minimum from the first row
      {{2, 1, 1}, 1, 3, 1, 2, 2, 1},     {{2, 3, 3}, 1, 3, 2, 3, 1, 2}, {{9, 4, 6, 0}, 2, 3, 3, 6, 2, 4},
      {{0, 0}, 1, 2, 0, 0, 1, 0},        {{7}, 1, 1, 1, 7, 1, 7},
  };
  for (const auto& one : cases) {
    const auto max = General().MaxValue(field(one.series), one.first, one.last);
    EXPECT_EQ(max->getPeriod(), one.maxPeriod);
    EXPECT_EQ(max->getValue(), one.max);
    EXPECT_EQ(max->getNote(), "");
    const auto min = General().MinValue(field(one.series), one.first, one.last);
    EXPECT_EQ(min->getPeriod(), one.minPeriod);
    EXPECT_EQ(min->getValue(), one.min);
  }
}

TEST(Extremes, OfARangeThatCannotBe) {
  const auto longest = field(std::vector<double>(32767));
  EXPECT_EQ(General().MinValue(longest, 1, 32766)->getPeriod(), 1);
  const struct {
    std::shared_ptr<Field> source;
    int first, last;
  } cases[] = {
      {field({1, 2, 3}), 3, 2}, {field({1, 2, 3}), 0, 2},          {field({1, 2, 3}), 2, 4},
      {nullptr, 1, 1},          {field({1, notANumber, 3}), 1, 3}, {longest, 32767, 32767},
  };
  for (const auto& [source, first, last] : cases) {
    EXPECT_EQ(faultOf([&, s = source, f = first, l = last] { General().MaxValue(s, f, l); }), General::MaxValueFault);
    EXPECT_EQ(faultOf([&, s = source, f = first, l = last] { General().MinValue(s, f, l); }), General::MinValueFault);
  }
}

}  // namespace
}  // namespace orvex::test
