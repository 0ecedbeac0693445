// Which records the methods yield at and which rows of theirs are computed, counted by hand from the definitions.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "orvex/catalogue/computed_rows.h"
#include "orvex/catalogue/description.h"
#include "orvex/data/host_events.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

using catalogue::Type;
using catalogue::Value;
using Numbers = std::map<std::string, double>;

constexpr int count = 40;

const catalogue::Method& method(const std::string& name) {
  const std::size_t dot = name.find('.');
  return *catalogue::findMethod(*catalogue::findClass(name.substr(0, dot)), name.substr(dot + 1));
}

/// The arguments of a call on a series that rises and falls.
std::vector<Value> argumentsOf(const catalogue::Method& called, const Numbers& numbers) {
  std::vector<Bar> series;
  for (int i = 0; i < count; ++i) {
    const double close = 100 + i % 7 + i % 3;
    series.push_back({close - 1, close + 2, close - 3, close, 1000.0 + i % 5});
  }
  const auto data = bars(series);
  std::vector<Value> arguments;
  for (const catalogue::Argument& argument : called.arguments) {
    const auto number = numbers.find(std::string(argument.name));
    Value value = catalogue::Missing{};
    if (argument.type == Type::Database) value = data;
    if (argument.type == Type::RecordSet) value = data->getRecordset();
    if (argument.type == Type::Field) value = data->getRecordset()->getField("Close");
    if (number != numbers.end()) value = catalogue::coerce(number->second, argument.type);
    arguments.push_back(value);
  }
  return arguments;
}

TEST(Yields, OncePerPassOfEachRecordLoop) {
  const struct {
    std::string name;
    Numbers numbers;
    int yields;
  } cases[] = {
      {"MovingAverage.SimpleMovingAverage", {{"Periods", 5}}, 35},
      {"MovingAverage.ExponentialMovingAverage", {{"Periods", 5}}, 35},
      {"MovingAverage.WeightedMovingAverage", {{"Periods", 5}}, 35},
      {"MovingAverage.TriangularMovingAverage", {{"Periods", 5}}, 2 * 35},
      {"MovingAverage.WellesWilderSmoothing", {{"Periods", 5}}, 39},
      {"MovingAverage.VariableMovingAverage", {{"Periods", 5}}, 31 + 39},
      {"MovingAverage.VIDYA", {{"Periods", 5}, {"R2Scale", 0.5}}, 36 + 39},
      {"LinearRegression.Regression", {{"Periods", 5}}, 36},
      {"General.HHV", {{"Periods", 5}}, 35},
      {"General.TypicalPrice", {}, 40},
      // Its own loop is silent; the average inside is not.
      {"General.StandardDeviation", {{"Periods", 5}, {"StandardDeviations", 2}, {"MAType", 1}}, 35},
      {"General.CorrelationAnalysis", {}, 39},
      {"Oscillator.TrueRange", {}, 39},
      {"Oscillator.AverageTrueRange", {}, 39 + 26},
      // Range and its average; three smoothings; moves, indicators and their difference; two averages of it.
      {"Oscillator.DirectionalMovementSystem", {{"Periods", 5}}, 39 + 35 + 3 * 39 + 3 * 39 + 2 * 35},
      {"Oscillator.Aroon", {{"Periods", 5}}, 35},
      {"Oscillator.StochasticOscillator",
       {{"KPeriods", 5}, {"KSlowingPeriods", 1}, {"DPeriods", 3}, {"MA_Type", 1}},
       35 + 37},
      {"Oscillator.WilliamsPctR", {{"Periods", 5}}, 34},
      {"Oscillator.ParabolicSAR", {}, 39},
      {"Oscillator.CMO", {{"Periods", 5}}, 35},
      {"Oscillator.Momentum", {{"Periods", 5}}, 34},
      {"Oscillator.LinearMomentumOscillator", {{"Periods", 5}}, 35 + 36 + 40},
      {"Index.OnBalanceVolume", {}, 39},
      {"Index.ComparativeRelativeStrength", {}, 40},
      {"Index.AccumulativeSwingIndex", {{"LimitMoveValue", 3}}, 39 + 39},
      {"Index.MassIndex", {{"Periods", 10}}, 40 + 2 * 31 + 21},
      {"Bands.BollingerBands", {{"Periods", 5}, {"StandardDeviations", 2}, {"MA_Type", 1}}, 35 + 35},
      {"Bands.MovingAverageEnvelope", {{"Periods", 5}, {"MA_Type", 1}, {"Shift", 5}}, 35 + 40},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.name);
    const catalogue::Method& called = method(one.name);
    std::vector<Value> arguments = argumentsOf(called, one.numbers);
    const auto object = catalogue::findClass(one.name.substr(0, one.name.find('.')))->create();
    int yields = 0;
    setYieldHook({[](void* context) { ++*static_cast<int*>(context); }, &yields});
    EXPECT_FAULT(std::nullopt, catalogue::call(called, object.get(), arguments));
    setYieldHook({});
    EXPECT_EQ(yields, one.yields);
  }
}

TEST(ComputedRows, BeginWhereEveryInputIsComputed) {
  const struct {
    std::string name;
    Numbers numbers;
    std::vector<int> first;
    int last;
  } cases[] = {
      {"MovingAverage.SimpleMovingAverage", {{"Periods", 5}}, {6}, 40},
      {"MovingAverage.TriangularMovingAverage", {{"Periods", 5}}, {11}, 40},
      {"MovingAverage.WellesWilderSmoothing", {{"Periods", 5}}, {11}, 40},
      // The factor of the variable average takes 9 moves, whatever the period.
      {"MovingAverage.VariableMovingAverage", {{"Periods", 2}}, {10}, 40},
      {"MovingAverage.VariableMovingAverage", {{"Periods", 5}}, {16}, 40},
      {"LinearRegression.Regression", {{"Periods", 5}}, {6, 6, 6, 6}, 40},
      {"LinearRegression.TimeSeriesForecast", {{"Periods", 5}}, {6}, 40},
      {"General.StandardDeviation", {{"Periods", 5}, {"StandardDeviations", 2}, {"MAType", 5}}, {11}, 40},
      // The range begins at record 2, so the first five of them end at 6, where the average begins anyway.
      {"Oscillator.AverageTrueRange", {{"Period", 5}}, {6}, 40},
      {"Oscillator.WilliamsPctR", {{"Periods", 5}}, {6}, 39},
      {"Oscillator.Momentum", {{"Periods", 5}}, {7}, 40},
      {"Oscillator.StochasticOscillator",
       {{"KPeriods", 5}, {"KSlowingPeriods", 1}, {"DPeriods", 3}, {"MA_Type", 1}},
       {6, 8},
       40},
      {"Oscillator.StochasticOscillator",
       {{"KPeriods", 5}, {"KSlowingPeriods", 3}, {"DPeriods", 2}, {"MA_Type", 1}},
       {8, 9},
       40},
      {"Oscillator.MACD", {{"ShortCycle", 3}, {"LongCycle", 5}, {"SignalPeriods", 4}}, {6, 10, 10}, 40},
      {"Oscillator.TRIX", {{"Periods", 3}}, {11}, 40},
      {"Index.RelativeStrengthIndex", {{"Periods", 5}}, {6}, 40},
      {"Bands.BollingerBands", {{"Periods", 5}, {"StandardDeviations", 2}, {"MA_Type", 1}}, {6, 6, 6}, 40},
      {"Bands.BollingerBands", {{"Periods", 5}, {"StandardDeviations", 2}, {"MA_Type", 3}}, {11, 11, 11}, 40},
      {"LineStudy.TironeLevel", {{"StartPeriod", 3}, {"EndPeriod", 9}}, {3, 3, 3}, 9},
      {"MovingAverage.SimpleMovingAverage", {{"Periods", 32767}}, {41}, 40},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.name);
    const catalogue::Method& called = method(one.name);
    const std::vector<Value> arguments = argumentsOf(called, one.numbers);
    ASSERT_EQ(called.columns.size(), one.first.size());
    for (std::size_t i = 0; i < one.first.size(); ++i) {
      const auto rows = catalogue::computedRows(called, called.columns[i], count, arguments);
      EXPECT_EQ(rows.first, one.first[i]) << called.columns[i].firstRow;
      EXPECT_EQ(rows.last, one.last) << called.columns[i].lastRow;
    }
  }
}

TEST(RowExpressions, AreWorkedOutAsTheyRead) {
  const catalogue::Method& called = method("Bands.BollingerBands");
  const std::vector<Value> arguments = argumentsOf(called, {{"Periods", 5}, {"StandardDeviations", 2}, {"MA_Type", 3}});
  const struct {
    std::string_view text;
    std::int64_t value;
  } cases[] = {
      {"N", count},
      {" Periods +1 ", 6},
      {"2 + 3 * Periods - 4", 13},
      {"(2 + 3) * Periods", 25},
      {"20 - 3 - 2", 15},
      {"N \\ Periods \\ 3", 2},
      {"max(Periods, 7, 3) - min(9, Periods)", 2},
      {"choose(Periods < 5, 1, 2) + 10 * choose(MA_Type < 4, 1, 2)", 12},
      {"average(1, Periods) + 100 * average(1, Periods, 11)", 6 + 100 * 15},
  };
  for (const auto& [text, value] : cases)
    EXPECT_EQ(catalogue::evaluateRow(text, called, count, arguments), value) << text;

  for (const std::string_view text : {"", "N N", "Periods +", "(N", "max(1, 2", "mean(1)", "Period", "average(1)",
                                      "choose(1, 2, 3)", "1 \\ 0", "Source"}) {
    EXPECT_FAULT(faults::InvalidCall, catalogue::evaluateRow(text, called, count, arguments)) << text;
  }
}

}  // namespace
}  // namespace orvex::test
