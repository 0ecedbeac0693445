#include "bench/cases.h"

#include <fmt/format.h>
#include <algorithm>

#include "orvex/catalogue/catalogue.h"

namespace orvex::bench {

namespace {

// The peers are TA-Lib's older batch functions and Tulip Indicators 0.9.2, the faster of both, built with GCC 12 at -O2
// and at -O3 -march=native, on a random walk of 32,766 records, divided by the yardstick's 1.04 ns a record there.
std::vector<Case> comparable() {
  return {
      {"MovingAverage.SimpleMovingAverage", {{"Periods", "20"}}, 1.0},
      {"MovingAverage.SimpleMovingAverage", {{"Periods", "200"}}, 1.0},
      {"MovingAverage.ExponentialMovingAverage", {{"Periods", "20"}}, 1.75},
      {"MovingAverage.WeightedMovingAverage", {{"Periods", "20"}}, 1.0},
      {"MovingAverage.WeightedMovingAverage", {{"Periods", "200"}}},
      {"MovingAverage.TriangularMovingAverage", {{"Periods", "20"}}, 1.5},
      {"LinearRegression.Regression", {{"Periods", "14"}}, 1.25 + 1.55 + 1.65},
      {"LinearRegression.TimeSeriesForecast", {{"Periods", "14"}}, 1.65},
      {"General.StandardDeviation", {{"Periods", "20"}}, 1.5},
      {"General.HHV", {{"Periods", "20"}}, 4.2},
      {"General.HHV", {{"Periods", "200"}}, 4.5},
      {"General.LLV", {{"Periods", "20"}}, 4.3},
      {"General.LLV", {{"Periods", "200"}}},
      {"General.TypicalPrice", {}, 0.31},
      {"General.MedianPrice", {}, 0.21},
      {"General.PriceROC", {{"Periods", "10"}}, 0.5},
      {"General.CorrelationAnalysis", {}, 5.9},
      {"Bands.BollingerBands", {{"Periods", "20"}}, 1.65},
      {"Bands.PrimeNumberBands", {}, 0.0, Prices::NearBillion},
      {"Oscillator.TrueRange", {}, 0.34},
      {"Oscillator.AverageTrueRange", {{"Period", "14"}}, 1.8},
      {"Oscillator.DirectionalMovementSystem", {{"Periods", "14"}}, 6.2 + 12.1},
      {"Oscillator.Aroon", {{"Periods", "14"}}, 8.8},
      {"Oscillator.StochasticOscillator", {}, 10.7},
      {"Oscillator.WilliamsPctR", {{"Periods", "14"}}, 8.2},
      {"Oscillator.StochRSI", {{"Periods", "14"}}, 12.5},
      {"Oscillator.UltimateOscillator", {}, 4.1},
      {"Oscillator.ParabolicSAR", {}, 4.8},
      {"Oscillator.CMO", {{"Periods", "14"}}, 5.5},
      {"Oscillator.VerticalHorizontalFilter", {{"Periods", "28"}}, 9.5},
      {"Oscillator.EaseOfMovement", {}, 3.0},
      {"Oscillator.PrimeNumberOscillator", {}, 0.0, Prices::NearTwo31},
      {"Oscillator.MACD", {}, 2.0},
      {"Oscillator.TRIX", {{"Periods", "18"}}, 2.1},
      {"Index.OnBalanceVolume", {}, 3.9},
      {"Index.PositiveVolumeIndex", {}, 2.8},
      {"Index.NegativeVolumeIndex", {}, 2.8},
      {"Index.MassIndex", {{"Periods", "25"}}, 2.5},
      {"Index.RelativeStrengthIndex", {{"Periods", "14"}}, 4.4},
      {"Index.MoneyFlowIndex", {{"Periods", "14"}}, 6.3},
      {"Index.CommodityChannelIndex", {{"Periods", "20"}}, 10.9},
  };
}

}  // namespace

std::string Case::label() const {
  std::string text = method;
  for (const auto& [name, value] : arguments) text += fmt::format(" {}={}", name, value);
  return text;
}

std::vector<Case> cases() {
  std::vector<Case> all = comparable();
  for (const catalogue::Class* owner : catalogue::classes()) {
    for (const catalogue::Method* method : owner->methods) {
      const std::string name = fmt::format("{}.{}", owner->name, method->name);
      const bool known = std::any_of(all.begin(), all.end(), [&](const Case& one) { return one.method == name; });
      if (!owner->holdsState && !method->columns.empty() && !known) all.push_back({name, {}});
    }
  }
  return all;
}

}  // namespace orvex::bench
