#include "bench/cases.h"

#include <fmt/format.h>
#include <algorithm>

#include "orvex/catalogue/description.h"

namespace orvex::bench {

namespace {

/// Those with arguments of their own, by which the methods of this and other libraries are commonly compared.
std::vector<Case> chosen() {
  return {
      {"MovingAverage.SimpleMovingAverage", {{"Periods", "20"}}},
      {"MovingAverage.SimpleMovingAverage", {{"Periods", "200"}}},
      {"MovingAverage.ExponentialMovingAverage", {{"Periods", "20"}}},
      {"MovingAverage.WeightedMovingAverage", {{"Periods", "20"}}},
      {"MovingAverage.WeightedMovingAverage", {{"Periods", "200"}}},
      {"MovingAverage.TriangularMovingAverage", {{"Periods", "20"}}},
      {"LinearRegression.Regression", {{"Periods", "14"}}},
      {"LinearRegression.TimeSeriesForecast", {{"Periods", "14"}}},
      {"General.StandardDeviation", {{"Periods", "20"}}},
      {"General.HHV", {{"Periods", "20"}}},
      {"General.HHV", {{"Periods", "200"}}},
      {"General.LLV", {{"Periods", "20"}}},
      {"General.LLV", {{"Periods", "200"}}},
      {"General.TypicalPrice", {}},
      {"General.MedianPrice", {}},
      {"General.PriceROC", {{"Periods", "10"}}},
      {"General.CorrelationAnalysis", {}},
      {"Bands.BollingerBands", {{"Periods", "20"}}},
      {"Bands.PrimeNumberBands", {}, Prices::NearBillion},
      {"Oscillator.TrueRange", {}},
      {"Oscillator.AverageTrueRange", {{"Period", "14"}}},
      {"Oscillator.DirectionalMovementSystem", {{"Periods", "14"}}},
      {"Oscillator.Aroon", {{"Periods", "14"}}},
      {"Oscillator.StochasticOscillator", {}},
      {"Oscillator.WilliamsPctR", {{"Periods", "14"}}},
      {"Oscillator.StochRSI", {{"Periods", "14"}}},
      {"Oscillator.UltimateOscillator", {}},
      {"Oscillator.ParabolicSAR", {}},
      {"Oscillator.CMO", {{"Periods", "14"}}},
      {"Oscillator.VerticalHorizontalFilter", {{"Periods", "28"}}},
      {"Oscillator.EaseOfMovement", {}},
      {"Oscillator.PrimeNumberOscillator", {}, Prices::NearTwo31},
      {"Oscillator.MACD", {}},
      {"Oscillator.TRIX", {{"Periods", "18"}}},
      {"Index.OnBalanceVolume", {}},
      {"Index.PositiveVolumeIndex", {}},
      {"Index.NegativeVolumeIndex", {}},
      {"Index.MassIndex", {{"Periods", "25"}}},
      {"Index.RelativeStrengthIndex", {{"Periods", "14"}}},
      {"Index.MoneyFlowIndex", {{"Periods", "14"}}},
      {"Index.CommodityChannelIndex", {{"Periods", "20"}}},
  };
}

}  // namespace

std::string Case::label() const {
  std::string text = method;
  for (const auto& [name, value] : arguments) text += fmt::format(" {}={}", name, value);
  return text;
}

std::vector<Case> cases() {
  std::vector<Case> all = chosen();
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
