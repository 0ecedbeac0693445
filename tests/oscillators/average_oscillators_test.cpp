#include <cmath>

#include "orvex/oscillators/oscillator.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(PriceOscillator, IsInPercentOfTheLongAverage) {
  const auto data = records(4);
  expectColumns(*Oscillator().PriceOscillator(data, field({1, 2, 3, 4}), 1, 2, 1),
                {{"PriceOscillator", {0, 0, 0.5 / 2.5 * 100, 0.5 / 3.5 * 100}}});
  // The short average may be the longer one; of a long average of 0 there is no share.
  expectColumns(*Oscillator().PriceOscillator(data, field({1, 2, 3, 4}), 2, 1, 1, "p"),
                {{"p", {0, 0, -0.5 / 3 * 100, -0.5 / 4 * 100}}});
  expectColumns(*Oscillator().VolumeOscillator(data, field({1, -1, 1, -1}), 1, 2, 1),
                {{"VolumeOscillator", {0, 0, 0, 0}}});
}

TEST(MACD, TheSignalAveragesTheLineAloneAndNotTheZerosBeforeIt) {
  // The exponential average of one record is the series, that of three runs 3.5, 4.25, 5.125, 6.0625, 7.03125.
  const double seed = 0.5 * 0.9375 + 0.5 * ((0.5 + 0.75 + 0.875) / 3);
  const double first = 0.5 * seed + 0.5 * 0.9375;
  const double second = 0.5 * first + 0.5 * 0.96875;
  expectColumns(*Oscillator().MACD(records(8), field({1, 2, 3, 4, 5, 6, 7, 8}), 1, 3, 3, "x"),
                {{"x", {0, 0, 0, 0.5, 0.75, 0.875, 0.9375, 0.96875}},
                 {"xSignal", {0, 0, 0, 0, 0, 0, first, second}},
                 {"xHistogram", {0, 0, 0, 0, 0, 0, 0.9375 - first, 0.96875 - second}}});
}

TEST(DetrendedPriceOscillator, LooksHalfTheAverageBack) {
  expectColumns(*Oscillator().DetrendedPriceOscillator(records(5), field({1, 2, 4, 8, 16}), 2, 1),
                {{"DetrendedPriceOscillator", {0, 0, -2, -4, -8}}});
  expectColumns(*Oscillator().DetrendedPriceOscillator(records(5), field({3, 6, 9, 12, 18}), 3, 1),
                {{"DetrendedPriceOscillator", {0, 0, 0, -3, -4}}});
}

TEST(TRIX, IsTheChangeOfTheThirdAverage) {
  // The exponential average of one record is the series, and each begins one record later.
  expectColumns(*Oscillator().TRIX(records(6), field({1, 2, 4, 8, 16, 8}), 1), {{"TRIX", {0, 0, 0, 0, 100, -50}}});
  expectColumns(*Oscillator().TRIX(records(6), field({1, 2, 4, 0, 5, 10}), 1), {{"TRIX", {0, 0, 0, 0, 0, 100}}});
}

TEST(GoldenDeathCross, ComparesExactly) {
  const auto data = records(9);
  const auto source = field({5, 5, 5, 5, 7, 7, 3, 3, 9});
  // The averages of two records: 5, 5, 6, 7, 5, 3, 6 from record 3 on.
  expectColumns(*Oscillator().GoldenDeathCross(data, source, 1, 2, 1),
                {{"GoldenDeathCross", {0, 0, 0, 0, 1, 0, -1, 0, 1}}});
  expectColumns(*Oscillator().GoldenDeathCross(data, source, 2, 1, 1),
                {{"GoldenDeathCross", {0, 0, 0, 0, -1, 0, 1, 0, -1}}});
  // The period is none of the variable average's factor: both are one column.
  expectColumns(*Oscillator().GoldenDeathCross(data, source, 1, 2, 4), {{"GoldenDeathCross", std::vector<double>(9)}});
  // No record has both averages, and nothing overflows over that.
  EXPECT_FAULT(std::nullopt, Oscillator().GoldenDeathCross(data, source, 1, 9, 1));
}

TEST(RainbowOscillator, HandComputedLevels) {
  // Averages 4, 7, 11, 13 from record 3 on, of them 9 and 12 from record 5 on; in record 6 the price has no range.
  const auto bands = Oscillator().RainbowOscillator(records(6), field({1, 3, 5, 9, 13, 13}), 2, 1);
  expectColumns(*bands, {{"RainbowOscillator", {0, 0, 0, 0, 75, 0}},
                         {"Rainbow Upper", {0, 0, 0, 0, 50, 0}},
                         {"Rainbow Lower", {0, 0, 0, 0, -50, 0}}});
  EXPECT_FALSE(std::signbit(bands->getValue("Rainbow Lower", 6))) << "a 0, and not one of the other sign";
}

TEST(AverageOscillators, CheckTheirArgumentsInOrderBeforeAnythingElse) {
  Oscillator oscillator;
  const auto data = records(20);
  const auto source = field(std::vector<double>(20, 1.0));
  const struct {
    std::string_view method;
    int number;  // 0 where there is no fault
    std::function<void()> call;
  } cases[] = {
      {"PriceOscillator", 1101, [&] { oscillator.PriceOscillator(data, source, 0, 2, 9); }},
      {"PriceOscillator", 1101, [&] { oscillator.PriceOscillator(data, source, 2, 21, 9); }},
      {"PriceOscillator", 1100, [&] { oscillator.PriceOscillator(data, source, 1, 20, 8); }},
      {"PriceOscillator", 1105, [&] { oscillator.PriceOscillator(data, nullptr, 1, 2, 1); }},
      {"VolumeOscillator", 1101, [&] { oscillator.VolumeOscillator(data, source, 1, -1, 1); }},
      {"VolumeOscillator", 1100, [&] { oscillator.VolumeOscillator(data, source, 1, 2, 0); }},
      {"MACD", 1101, [&] { oscillator.MACD(data, source, 1, 2, 21); }},
      {"MACD", 1105, [&] { oscillator.MACD(data, source, 20, 1, 1); }},  // the average's seed reads record 21
      {"MACD", 1105, [&] { oscillator.MACD(data, source, 15, 1, 5); }},  // five values are one too few
      {"MACD", 0, [&] { oscillator.MACD(data, source, 14, 1, 5); }},
      {"DetrendedPriceOscillator", 1101, [&] { oscillator.DetrendedPriceOscillator(data, source, 0, 0); }},
      {"DetrendedPriceOscillator", 1100, [&] { oscillator.DetrendedPriceOscillator(data, source, 1, 0); }},
      {"TRIX", 1101, [&] { oscillator.TRIX(data, source, 21); }},
      {"TRIX", 1105, [&] { oscillator.TRIX(data, source, 7); }},
      {"GoldenDeathCross", 1101, [&] { oscillator.GoldenDeathCross(data, source, 1, 0, 0); }},
      {"GoldenDeathCross", 1100, [&] { oscillator.GoldenDeathCross(data, source, 1, 1, 0); }},
      {"RainbowOscillator", 1101, [&] { oscillator.RainbowOscillator(data, source, 1, 0); }},
      {"RainbowOscillator", 1100, [&] { oscillator.RainbowOscillator(data, source, 2, 8); }},
      {"RainbowOscillator", 1105, [&] { oscillator.RainbowOscillator(data, source, 20, 1); }},
  };
  for (const auto& [method, number, call] : cases) {
    SCOPED_TRACE(method);
    const auto fault = faultOf(call);
    EXPECT_EQ(fault ? fault->number : 0, number);
    if (!fault) continue;
    EXPECT_EQ(fault->source, "Oscillator." + std::string(method) + (number == 1105 ? ".UnexpectedError" : ""));
  }
}

}  // namespace
}  // namespace orvex::test
