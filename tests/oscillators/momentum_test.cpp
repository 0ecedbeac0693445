#include "orvex/oscillators/oscillator.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(CMO, HandComputedSeries) {
  const struct {
    std::vector<double> source;
    int periods;
    std::vector<double> expected;
  } cases[] = {
      {{1, 2, 4, 3, 3, 5}, 2, {0, 0, 100, 100.0 / 3, -100, 100}},
      {{1, 2, 3, 4}, 1, {0, 100, 100, 100}},
      {{5, 5, 5, 5}, 2, {0, 0, 0, 0}},  // nothing moved: no division
      {{1, 2, 3, 4}, 0, {0, 0, 0, 0}},
      {{1, 2, 3, 4}, 4, {0, 0, 0, 0}},
      {{1, 2, 3, 4}, 9, {0, 0, 0, 0}},
  };
  for (const auto& [source, periods, expected] : cases) {
    expectColumns(*Oscillator().CMO(records(source.size()), field(source), periods), {{"CMO", expected}});
  }
}

TEST(Momentum, BeginsOneRecordLaterThanItsLag) {
  const auto data = records(5);
  expectColumns(*Oscillator().Momentum(data, field({2, 4, 5, 8, 10}), 1), {{"Momentum", {0, 0, 125, 160, 125}}});
  expectColumns(*Oscillator().Momentum(data, field({3, 3, 3, 3, 3}), 2, "m"), {{"m", {0, 0, 0, 100, 100}}});
  expectColumns(*Oscillator().Momentum(data, field({2, 4, 5, 8, 10}), 4), {{"Momentum", {0, 0, 0, 0, 0}}});
}

TEST(VerticalHorizontalFilter, IsTheShareOfTheWayThatLedSomewhere) {
  expectColumns(*Oscillator().VerticalHorizontalFilter(records(4), field({1, 3, 2, 5}), 2),
                {{"VerticalHorizontalFilter", {0, 0, 1.0 / 3, 0.75}}});
}

TEST(LinearMomentumOscillator, HoldsMinusHundredBeforeTheFirstLine) {
  // The momentum of 2 records runs 0, 0, 100, 0, -100; through two points that differ every line is perfect.
  expectColumns(*Oscillator().LinearMomentumOscillator(records(5), field({1, 2, 3, 2, 1}), 2),
                {{"Linear Momentum Oscillator", {-100, -100, 100, 100, 100}}});
}

TEST(WilliamsAccumulationDistribution, CountsFromTrueLowsAndTrueHighs) {
  const auto data =
      bars({{0, 11, 9, 10, 0}, {0, 12, 9.5, 11, 0}, {0, 14, 12, 13, 0}, {0, 12.5, 11, 12, 0}, {0, 13, 8, 12, 0}});
  expectColumns(*Oscillator().WilliamsAccumulationDistribution(data, data->getRecordset()),
                {{"WilliamsAccumulationDistribution", {0, 1.5, 3.5, 2.5, 2.5}}});
}

TEST(ChaikinVolatility, IsTheChangeOfTheAveragedRange) {
  const auto data = bars({{0, 2, 0, 0, 0}, {0, 4, 2, 0, 0}, {0, 4, 0, 0, 0}, {0, 9, 5, 0, 0}, {0, 9, 7, 0, 0}});
  // The average of one record begins in row 2, and from a 0 no change is counted.
  expectColumns(*Oscillator().ChaikinVolatility(data, data->getRecordset(), 1, 1, 1),
                {{"ChaikinVolatility", {0, 0, 100, 0, -50}}});
}

TEST(EaseOfMovement, OfABarWithoutARangeIsNone) {
  const auto data = bars({{0, 10, 8, 0, 0}, {0, 12, 8, 0, 4096}, {0, 9, 9, 0, 0}, {0, 9, 7, 0, 1024}});
  expectColumns(*Oscillator().EaseOfMovement(data, data->getRecordset(), 1, 1, "ease"),
                {{"ease", {0, 9.765625, 0, -19.53125}}});
  expectColumns(*Oscillator().EaseOfMovement(data, data->getRecordset(), 2, 1),
                {{"EaseOfMovement", {0, 0, 4.8828125, -9.765625}}});
}

TEST(MomentumOscillators, FaultWhereTheDefinitionDoes) {
  const auto data = records(5);
  const auto prices = data->getRecordset();
  const auto line = field({1, 2, 3, 4, 5}), zero = field({1, 2, 0, 3, 4}), flat = field({1, 2, 2, 2, 3});
  const auto hole = field({1, 2, 3, notANumber, 5});
  Oscillator oscillator;
  expectFaults(
      *data,
      {{[&] { oscillator.CMO(data, hole, 2); }, Oscillator::CMOFault, 4},
       {[&] { oscillator.CMO(data, line, -1); }, Oscillator::CMOFault, 6},
       {[&] { oscillator.CMO(data, line, 32766); }, Oscillator::CMOFault, 1},
       {[&] { oscillator.Momentum(data, zero, 1); }, Oscillator::MomentumFault, 4},
       {[&] { oscillator.Momentum(data, line, 5); }, Oscillator::MomentumFault, 1},
       {[&] { oscillator.Momentum(data, line, -1); }, Oscillator::MomentumFault, 6},
       {[&] { oscillator.VerticalHorizontalFilter(data, flat, 2); }, Oscillator::VerticalHorizontalFilterFault, 5},
       {[&] { oscillator.LinearMomentumOscillator(data, line, 1); }, Oscillator::LinearMomentumOscillatorFault, 1},
       {[&] { oscillator.WilliamsAccumulationDistribution(data, nullptr); },
        unexpectedError("Oscillator.WilliamsAccumultaionDistribution.UnexpectedError"), 1},
       {[&] { oscillator.ChaikinVolatility(data, prices, 2, 1, 8); },
        unexpectedError("Oscillator.ChaikinVolitlity.UnexpectedError"), 1}});
  prices->setValue("High", 3, 1);
  expectFaults(*data, {{[&] { oscillator.EaseOfMovement(data, prices, 2, 1); }, Oscillator::EaseOfMovementFault, 1}});
}

}  // namespace
}  // namespace orvex::test
