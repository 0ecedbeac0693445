#include "orvex/oscillators/oscillator.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(TrueRange, IsTheLargestOfThreeDistances) {
  // A gap upward, a gap downward, a bar around the close before, and one whose high is below its low.
  const auto data =
      bars({{0, 10, 8, 9, 0}, {0, 12, 11, 11.5, 0}, {0, 10, 9, 9.5, 0}, {0, 10, 9, 9.5, 0}, {0, 9.25, 10, 9, 0}});
  expectColumns(*Oscillator().TrueRange(data, data->getRecordset()), {{"TR", {0, 3, 2.5, 1, 0.5}}});
  expectColumns(*Oscillator().AverageTrueRange(data, data->getRecordset(), "a", 2), {{"a", {0, 0, 2.75, 1.75, 0.75}}});
}

TEST(TrueRange, OfEqualPricesIsNone) {
  const auto data = bars({{0, 9, 9, 9, 0}, {0, 9, 9, 9, 0}});
  expectColumns(*Oscillator().TrueRange(data, data->getRecordset()), {{"TR", {0, 0}}});
}

TEST(AverageTrueRange, CoversFourteenRecordsByDefault) {
  const auto data = bars(std::vector<Bar>(16, {0, 12, 10, 11, 0}));
  const auto average = Oscillator().AverageTrueRange(data, data->getRecordset())->getField("ATR");
  EXPECT_EQ(average->getValue(14), 0);
  EXPECT_EQ(average->getValue(15), 2);
}

TEST(DirectionalMovement, HandComputedBars) {
  // Bars of range 4 whose middle moves by 1, -2, 1, 1, -2.
  const auto data = bars(
      {{0, 12, 8, 10, 0}, {0, 13, 9, 11, 0}, {0, 11, 7, 9, 0}, {0, 12, 8, 10, 0}, {0, 13, 9, 11, 0}, {0, 11, 7, 9, 0}});
  // The average range is 4 from record 3 on, and its sum climbs 2, 3, 3.5, 3.75; rises climb 0.5, 0.25, 0.625, 0.8125,
  // 0.40625 and falls 0, 1, 0.5, 0.25, 1.125. Averages of 26.5 and 38.5 are rounded up.
  expectColumns(*Oscillator().DirectionalMovementSystem(data, data->getRecordset(), 2),
                {{"ADX", {0, 0, 0, 0, 27, 39}},
                 {"ADXR", {0, 0, 0, 0, 14, 33}},
                 {"DX", {0, 0, 0, 0, 53, 50}},
                 {"TRSum", {0, 0, 0, 0, 3.5, 3.75}},
                 {"DI-", {0, 0, 0, 0, 7, 30}},
                 {"DI+", {0, 0, 0, 0, 23, 10}}});
}

TEST(DirectionalMovement, EqualMovesCancelAndTheRatingLooksOneRecordBack) {
  const auto data =
      bars({{0, 10, 8, 9, 0}, {0, 11, 9, 10, 0}, {0, 13, 10, 12, 0}, {0, 13.5, 9.5, 10, 0}, {0, 12, 7, 8, 0}});
  expectColumns(*Oscillator().DirectionalMovementSystem(data, data->getRecordset(), 1), {{"ADX", {0, 0, 100, 0, 100}},
                                                                                         {"ADXR", {0, 0, 50, 50, 50}},
                                                                                         {"DX", {0, 0, 100, 0, 100}},
                                                                                         {"TRSum", {0, 0, 3, 4, 5}},
                                                                                         {"DI-", {0, 0, 0, 0, 50}},
                                                                                         {"DI+", {0, 0, 66, 0, 0}}});
}

TEST(DirectionalMovement, WithoutARangeHasNoDirection) {
  const auto data = bars(std::vector<Bar>(4, {0, 9, 9, 9, 0}));
  const std::vector<double> none(4);
  expectColumns(*Oscillator().DirectionalMovementSystem(data, data->getRecordset(), 1),
                {{"ADX", none}, {"ADXR", none}, {"DX", none}, {"TRSum", none}, {"DI-", none}, {"DI+", none}});
}

TEST(Aroon, OfEqualExtremesTheNewestOrElseTheOldestCounts) {
  const auto data = ranges({5, 5, 4, 5, 6, 1}, {1, 3, 3, 2, 2, 2});
  expectColumns(*Oscillator().Aroon(data, data->getRecordset(), 2), {{"Aroon Up", {0, 0, 0, 100, 100, 50}},
                                                                     {"Aroon Down", {0, 0, 0, 100, 100, 100}},
                                                                     {"Aroon Oscillator", {0, 0, 0, 0, 0, -50}}});
}

TEST(DirectionalMovement, Faults) {
  const auto data = bars(std::vector<Bar>(5, {0, 12, 10, 11, 0}));
  const auto prices = data->getRecordset();
  const auto noClose = makeRecordSet({prices->getField("High"), prices->getField("Low")});
  Oscillator oscillator;
  EXPECT_FAULT(Oscillator::TrueRangeFault, oscillator.TrueRange(data, noClose));
  EXPECT_FAULT(Oscillator::AverageTrueRangeFault, oscillator.AverageTrueRange(data, prices, "", 6));
  for (const int periods : {-1, 0, 3, 32767}) {
    EXPECT_FAULT(Oscillator::DirectionalMovementSystemFault,
                 oscillator.DirectionalMovementSystem(data, prices, periods));
  }
  for (const int periods : {-1, 0, 32767}) {
    EXPECT_FAULT(Oscillator::AroonFault, oscillator.Aroon(data, prices, periods));
  }
  EXPECT_FAULT(std::nullopt, oscillator.Aroon(data, noClose, 2));
}

}  // namespace
}  // namespace orvex::test
