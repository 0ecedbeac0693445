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
  const struct {
    std::function<void(Oscillator&, std::shared_ptr<Database>, std::shared_ptr<Field>)> call;
    std::vector<double> source;
    std::string_view where;
    int position;
  } cases[] = {
      {[](auto& o, auto data, auto source) { o.CMO(data, source, 2); }, {1, 2, 3, notANumber, 5}, "CMO", 4},
      {[](auto& o, auto data, auto source) { o.CMO(data, source, -1); }, {1, 2, 3, 4, 5}, "CMO", 6},
      {[](auto& o, auto data, auto source) { o.CMO(data, source, 32766); }, {1, 2, 3, 4, 5}, "CMO", 1},
      {[](auto& o, auto data, auto source) { o.Momentum(data, source, 1); }, {1, 2, 0, 3, 4}, "Momentum", 4},
      {[](auto& o, auto data, auto source) { o.Momentum(data, source, 5); }, {1, 2, 3, 4, 5}, "Momentum", 1},
      {[](auto& o, auto data, auto source) { o.Momentum(data, source, -1); }, {1, 2, 3, 4, 5}, "Momentum", 6},
      {[](auto& o, auto data, auto source) { o.VerticalHorizontalFilter(data, source, 2); },
       {1, 2, 2, 2, 3},
       "VerticalHorizontalFilter",
       5},
      {[](auto& o, auto data, auto source) { o.LinearMomentumOscillator(data, source, 1); },
       {1, 2, 3, 4, 5},
       "LinearMomentumOscillator",
       1},
      {[](auto& o, auto data, auto) { o.WilliamsAccumulationDistribution(data, nullptr); },
       {},
       "WilliamsAccumultaionDistribution",
       1},
      {[](auto& o, auto data, auto) { o.ChaikinVolatility(data, data->getRecordset(), 2, 1, 8); },
       {},
       "ChaikinVolitlity",
       1},
      {[](auto& o, auto data, auto) {
         data->getRecordset()->setValue("High", 3, 1);
         o.EaseOfMovement(data, data->getRecordset(), 2, 1);
       },
       {},
       "EaseOfMovement",
       1},
  };
  Oscillator oscillator;
  for (const auto& one : cases) {
    SCOPED_TRACE(one.where);
    const auto data = records(5);
    const auto source = one.source.empty() ? nullptr : field(one.source);
    const auto fault = faultOf([&] { one.call(oscillator, data, source); });
    const std::string where = "Oscillator." + std::string(one.where) + ".UnexpectedError";
    EXPECT_EQ(fault, unexpectedError(where));
    EXPECT_EQ(data->getPosition(), one.position);
  }
}

}  // namespace
}  // namespace orvex::test
