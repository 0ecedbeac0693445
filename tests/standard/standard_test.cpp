// The book's definitions against vectors that others have printed, tables worked out by hand, and the one rule of
// arguments and errors that holds for all of them. Where TA-Lib has an indicator, the Python tests compare with it.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/catalogue/description.h"
#include "orvex/standard/standard.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

using catalogue::Value;
using Result = std::shared_ptr<RecordSet>;

/// A call by name: columns by what people take for them, numbers in the order of the arguments.
Result call(std::string_view name, const std::shared_ptr<Database>& data, const std::vector<double>& numbers) {
  const catalogue::Class* const owner = catalogue::findClass("Standard");
  const catalogue::Method* const method = catalogue::findMethod(*owner, name);
  std::vector<Value> values;
  auto number = numbers.begin();
  for (const catalogue::Argument& argument : method->arguments) {
    if (argument.type == catalogue::Type::Database) {
      values.emplace_back(data);
    } else if (argument.type == catalogue::Type::RecordSet) {
      values.emplace_back(data->getRecordset());
    } else if (argument.type == catalogue::Type::Field) {
      values.emplace_back(data->getRecordset()->getField(argument.usual.text));
    } else if (argument.type == catalogue::Type::String) {
      values.emplace_back(catalogue::Missing());
    } else {
      values.emplace_back(*number++);
    }
  }
  EXPECT_TRUE(number == numbers.end()) << name;
  return std::get<Result>(catalogue::call(*method, owner->create().get(), values));
}

struct Vector {
  std::string_view method;
  std::vector<double> numbers;
  int column;  // from 0
  int first;   // the record of the first value
  std::vector<double> values;
};

/// Expects the column to hold 0 before the values and these, as far as they were printed, from there on.
void expectVector(const std::shared_ptr<Database>& data, const Vector& expected, double distance) {
  SCOPED_TRACE(expected.method);
  const Result result = call(expected.method, data, expected.numbers);
  const auto column = result->getField(result->getName(expected.column + 1));
  ASSERT_EQ(column->getRecordCount(), expected.first - 1 + static_cast<int>(expected.values.size()));
  for (int r = 1; r < expected.first; ++r) EXPECT_EQ(column->getValue(r), 0.0) << "record " << r;
  for (std::size_t i = 0; i < expected.values.size(); ++i) {
    EXPECT_NEAR(column->getValue(expected.first + static_cast<int>(i)), expected.values[i], distance)
        << "record " << expected.first + static_cast<int>(i);
  }
}

/// The fifteen records that Tulip Indicators prints its results for.
std::shared_ptr<Database> fifteen() {
  return bars({{81.85, 82.15, 81.29, 81.59, 5653100},
               {81.20, 81.89, 80.64, 81.06, 6447400},
               {81.55, 83.03, 81.31, 82.87, 7690900},
               {82.91, 83.30, 82.65, 83.00, 3831400},
               {83.10, 83.85, 83.07, 83.61, 4455100},
               {83.41, 83.90, 83.11, 83.15, 3798000},
               {82.71, 83.33, 82.49, 82.84, 3936200},
               {82.70, 84.30, 82.30, 83.99, 4732000},
               {84.20, 84.84, 84.15, 84.55, 4841300},
               {84.25, 85.00, 84.11, 84.36, 3915300},
               {84.03, 85.90, 84.03, 85.53, 6830800},
               {85.45, 86.58, 85.39, 86.54, 6694100},
               {86.18, 86.98, 85.76, 86.89, 5293600},
               {88.00, 88.00, 87.17, 87.77, 7985800},
               {87.60, 87.87, 87.01, 87.29, 4807900}});
}

TEST(Standard, HasTheValuesThatTulipIndicatorsPrints) {
  const std::vector<Vector> printed = {
      {"AD",
       {},
       0,
       1,
       {-1709076.744, -3823823.944, 2436210.940, 2730934.016, 4444434.016, 1031041.611, 375008.278, 3640088.278,
        4411889.727, 2696196.469, 6823899.143, 13067975.613, 17580552.662, 21140487.602, 19463313.184}},
      {"Aroon", {5}, 0, 6, {20.000, 0.000, 0.000, 80.000, 60.000, 40.000, 20.000, 0.000, 40.000, 20.000}},
      {"Aroon", {5}, 1, 6, {100.000, 80.000, 100.000, 100.000, 100.000, 100.000, 100.000, 100.000, 100.000, 80.000}},
      {"AROONOSC", {5}, 0, 6, {80.000, 80.000, 100.000, 20.000, 40.000, 60.000, 80.000, 100.000, 60.000, 60.000}},
      {"AVGPRICE",
       {},
       0,
       1,
       {81.720, 81.198, 82.190, 82.965, 83.407, 83.392, 82.843, 83.322, 84.435, 84.430, 84.873, 85.990, 86.453, 87.735,
        87.442}},
      {"BBANDS",
       {5, 2, 2, 0},
       2,
       5,
       {80.530, 80.987, 82.533, 82.472, 82.418, 82.435, 82.511, 83.143, 83.536, 83.870, 85.289}},
      {"BBANDS",
       {5, 2, 2, 0},
       0,
       5,
       {84.322, 84.489, 83.655, 84.164, 84.838, 85.121, 85.997, 86.845, 87.612, 88.566, 88.319}},
      {"BOP",
       {},
       0,
       1,
       {-0.302, -0.112, 0.767, 0.138, 0.654, -0.329, 0.155, 0.645, 0.507, 0.124, 0.802, 0.916, 0.582, -0.277, -0.360}},
      {"EMV",
       {},
       0,
       2,
       {-0.001, 0.002, 0.001, 0.001, 0.000, -0.001, 0.002, 0.002, 0.000, 0.001, 0.002, 0.001, 0.001, -0.000}},
      {"FISHER", {5}, 0, 5, {0.343, 0.791, 0.825, 0.806, 1.066, 1.439, 1.851, 2.275, 2.698, 3.117, 3.185}},
      {"FISHER", {5}, 1, 5, {0.000, 0.343, 0.791, 0.825, 0.806, 1.066, 1.439, 1.851, 2.275, 2.698, 3.117}},
      {"HMA", {5}, 0, 6, {83.690, 83.038, 83.472, 84.550, 84.835, 85.360, 86.552, 87.346, 87.965, 87.916}},
      {"KVO",
       {2, 5},
       0,
       2,
       {0.000, 80292599.241, 121572746.633, 117732669.219, -5942017.641, -71041561.798, 34448275.848, 84097903.128,
        -38366427.074, 40313036.023, 56681039.569, 52208374.664, 138983547.947, -68009735.443}},
      {"LINEARREG",
       {5},
       0,
       5,
       {83.622, 83.722, 83.112, 83.560, 84.172, 84.604, 85.404, 86.210, 86.946, 87.854, 87.754}},
      {"LINEARREG_INTERCEPT",
       {5},
       0,
       5,
       {81.230, 81.754, 83.076, 83.076, 83.084, 82.952, 83.104, 83.778, 84.202, 84.582, 85.854}},
      {"LINEARREG_SLOPE", {5}, 0, 5, {0.598, 0.492, 0.009, 0.121, 0.272, 0.413, 0.575, 0.608, 0.686, 0.818, 0.475}},
      {"MAX", {5}, 0, 5, {83.610, 83.610, 83.610, 83.990, 84.550, 84.550, 85.530, 86.540, 86.890, 87.770, 87.770}},
      {"MEDPRICE",
       {},
       0,
       1,
       {81.720, 81.265, 82.170, 82.975, 83.460, 83.505, 82.910, 83.300, 84.495, 84.555, 84.965, 85.985, 86.370, 87.585,
        87.440}},
      {"MFI", {5}, 0, 6, {61.172, 67.308, 62.796, 64.661, 45.238, 67.841, 85.578, 85.963, 87.504, 84.647}},
      {"MIN", {5}, 0, 5, {81.060, 81.060, 82.840, 82.840, 82.840, 82.840, 82.840, 83.990, 84.360, 84.360, 85.530}},
      {"MOM", {5}, 0, 6, {1.560, 1.780, 1.120, 1.550, 0.750, 2.380, 3.700, 2.900, 3.220, 2.930}},
      {"NVI",
       {},
       0,
       1,
       {1000.000, 1000.000, 1000.000, 1001.569, 1001.569, 996.058, 996.058, 996.058, 996.058, 993.820, 993.820,
        1005.556, 1009.623, 1009.623, 1004.101}},
      {"PVI",
       {},
       0,
       1,
       {1000.000, 993.504, 1015.688, 1015.688, 1023.153, 1023.153, 1019.338, 1033.489, 1040.380, 1040.380, 1054.809,
        1054.809, 1054.809, 1065.492, 1065.492}},
      {"QSTICK", {5}, 0, 5, {0.304, 0.304, 0.358, 0.352, 0.404, 0.324, 0.676, 0.868, 0.752, 0.636, 0.552}},
      {"RMA", {5}, 0, 5, {82.426, 82.571, 82.625, 82.898, 83.228, 83.455, 83.870, 84.404, 84.901, 85.475, 85.838}},
      {"ROCP", {5}, 0, 6, {0.019, 0.022, 0.014, 0.019, 0.009, 0.029, 0.045, 0.035, 0.038, 0.035}},
      {"ROCR", {5}, 0, 6, {1.019, 1.022, 1.014, 1.019, 1.009, 1.029, 1.045, 1.035, 1.038, 1.035}},
      {"RSI", {5}, 0, 6, {72.034, 64.927, 75.936, 79.796, 74.713, 83.033, 87.478, 88.755, 91.483, 78.498}},
      {"SMA", {5}, 0, 5, {82.426, 82.738, 83.094, 83.318, 83.628, 83.778, 84.254, 84.994, 85.574, 86.218, 86.804}},
      {"STDDEV", {5, 1}, 0, 5, {0.948, 0.875, 0.280, 0.423, 0.605, 0.671, 0.871, 0.926, 1.019, 1.174, 0.758}},
      {"STOCH", {5, 3, 0, 3, 0}, 0, 9, {77.385, 83.126, 84.867, 88.361, 95.246, 96.740, 91.091}},
      {"STOCH", {5, 3, 0, 3, 0}, 1, 9, {75.702, 78.011, 81.793, 85.452, 89.491, 93.449, 94.359}},
      {"SUM",
       {5},
       0,
       5,
       {412.130, 413.690, 415.470, 416.590, 418.140, 418.890, 421.270, 424.970, 427.870, 431.090, 434.020}},
      {"TRANGE",
       {},
       0,
       2,
       {1.250, 1.970, 0.650, 0.850, 0.790, 0.840, 2.000, 0.850, 0.890, 1.870, 1.190, 1.220, 1.110, 0.860}},
      {"TRIMA", {5}, 0, 5, {82.437, 82.908, 83.204, 83.260, 83.440, 83.807, 84.302, 84.863, 85.537, 86.288, 86.901}},
      {"TSF", {5}, 0, 5, {84.220, 84.214, 83.121, 83.681, 84.444, 85.017, 85.979, 86.818, 87.632, 88.672, 88.229}},
      {"TYPPRICE",
       {},
       0,
       1,
       {81.677, 81.197, 82.403, 82.983, 83.510, 83.387, 82.887, 83.530, 84.513, 84.490, 85.153, 86.170, 86.543, 87.647,
        87.390}},
      {"ULTOSC", {2, 3, 5}, 0, 6, {43.499, 34.044, 65.883, 73.955, 53.388, 64.149, 81.282, 90.186, 86.114, 65.450}},
      {"VAR", {5}, 0, 5, {0.899, 0.766, 0.079, 0.179, 0.366, 0.451, 0.759, 0.857, 1.038, 1.378, 0.574}},
      {"VOSC", {2, 5}, 0, 5, {-26.219, -21.318, -18.456, 4.423, 9.974, 3.151, 10.759, 25.168, 8.682, 8.069, 1.177}},
      {"VWMA", {5}, 0, 5, {82.332, 82.610, 83.070, 83.354, 83.682, 83.822, 84.409, 85.165, 85.698, 86.418, 86.805}},
      {"WCLPRICE",
       {},
       0,
       1,
       {81.655, 81.162, 82.520, 82.987, 83.535, 83.328, 82.875, 83.645, 84.523, 84.457, 85.248, 86.263, 86.630, 87.677,
        87.365}},
      {"WILLR",
       {5},
       0,
       5,
       {-7.477, -23.006, -40.927, -15.500, -11.417, -23.704, -10.278, -0.935, -3.051, -5.793, -17.884}},
      {"WMA", {5}, 0, 5, {82.825, 83.066, 83.100, 83.399, 83.809, 84.053, 84.637, 85.399, 86.031, 86.763, 87.121}},
  };
  for (const Vector& vector : printed) expectVector(fifteen(), vector, 0.00051);
}

TEST(Standard, HasTheValuesOfTheDefinitions) {
  const auto rising = levels({1, 2, 3, 8, 8, 8, 2});
  const auto waves = levels({1, 2, 1, 2});
  const auto even = bars({{11, 12, 10, 11, 1}, {11, 12, 10, 11, 3}, {11, 12, 10, 11, 0}, {11, 12, 10, 11, 2}});
  const std::vector<std::pair<std::shared_ptr<Database>, Vector>> cases = {
      // A mean of 3, then half the way to each value.
      {rising, {"EMA", {3}, 0, 3, {2, 5, 6.5, 7.25, 4.625}}},
      // 3 stands a root of 3 / 2 deviations above the mean of 1, 2, 3; equal values stand at theirs.
      {rising, {"ZSCORE", {3}, 0, 3, {std::sqrt(1.5), 11.0 / std::sqrt(62.0), 1 / std::sqrt(2.0), 0, -std::sqrt(2.0)}}},
      // No value below 1, 2 of 2, 2 of 2, none of 3 and 8, none of equals, none of larger ones.
      {rising, {"PERCENTRANK", {2}, 0, 3, {100, 100, 50, 0, 0}}},
      {rising, {"MAXINDEX", {3}, 0, 3, {3, 4, 5, 6, 6}}},
      {rising, {"MININDEX", {3}, 0, 3, {1, 2, 3, 4, 7}}},
      // Moves of log 2 either way: their mean is 0, their squares add up to 2 log 2 squared.
      {waves, {"HV", {2, 8}, 0, 3, {400 * std::log(2.0), 400 * std::log(2.0)}}},
      // Half of the largest of two: 50 percent down, squared, in every second record; of two always one.
      {waves, {"ULCER", {2}, 0, 3, {std::sqrt(1250.0), std::sqrt(1250.0)}}},
      // Two ranges of 2 in a range of 2: a logarithm of 2 over itself.
      {even, {"CHOP", {2}, 0, 3, {100, 100}}},
      {even, {"CHANDELIER", {2, 1.5}, 0, 3, {9, 9}}},
      {even, {"CHANDELIER", {2, 1.5}, 1, 3, {13, 13}}},
      {levels({1, 4, 7, 7}, {0, 3, 1, 4}), {"AVWAP", {1}, 0, 1, {0, 4, 4.75, 5.875}}},
      {levels({1, 4, 7, 7}, {2, 3, 1, 4}), {"AVWAP", {3}, 0, 3, {7, 7}}},
      // Rises of 1, 1 and 5 without a fall; then nothing moves, and a mean rise of 3 / 8 meets a mean fall of 3.
      {rising, {"RSI", {2}, 0, 3, {100, 100, 100, 100, 100.0 / 9}}},
  };
  for (const auto& [data, vector] : cases) expectVector(data, vector, 1e-9);
}

TEST(Standard, BeginsAnAveragePriceWithEachSession) {
  const auto data = levels({1, 4, 7, 7, 10}, {1, 3, 1, 4, 0});
  const auto result = Standard().VWAP(data, data->getRecordset(), field({5, 5, 6, 6, 7}));
  expectColumns(*result, {{"VWAP", {1, 3.25, 7, 7, 0}}});
}

TEST(Standard, SumsRatesOfChangeOfFourLengths) {
  // A price that doubles every ten records: the rates are 100, 2^1.5 - 1, 300 and 700 percent throughout.
  std::vector<double> prices;
  for (int i = 0; i < 50; ++i) prices.push_back(std::pow(2.0, i / 10.0));
  const double sum = 100 + 2 * 100 * (std::pow(2.0, 1.5) - 1) + 3 * 300 + 4 * 700;
  expectVector(levels(prices), {"KST", {3}, 0, 45, std::vector<double>(6, sum)}, 1e-9);
  expectVector(levels(prices), {"KST", {3}, 1, 47, std::vector<double>(4, sum)}, 1e-9);
}

TEST(Standard, TakesThePlaceOfRunsAndMovesTogether) {
  // Rises, each larger than the one before: strength and rank are full, and so is the strength of the growing run.
  expectVector(levels({1, 2, 4, 8, 16, 32}), {"CRSI", {2, 2, 2}, 0, 4, {200.0 / 3, 200.0 / 3, 200.0 / 3}}, 1e-9);
  expectVector(levels({10, 11, 13, 19, 30, 60}), {"CRSI", {2, 2, 2}, 0, 4, {100, 100, 100}}, 1e-9);
}

TEST(Standard, MakesLevelsOfTheSessionBefore) {
  // A session of two records, high 12, low 8, close 10: the pivot is 10, the range 4.
  const auto data = bars({{9, 12, 9, 11, 0}, {11, 11, 8, 10, 0}, {10, 10, 10, 10, 0}, {10, 11, 10, 11, 0}});
  const auto session = field({1, 1, 2, 2});
  const std::vector<std::vector<double>> levels = {
      {10, 12, 14, 16, 20, 8, 6, 4, 0},
      {10, 10 + 0.382 * 4, 10 + 0.618 * 4, 14, 0, 10 - 0.382 * 4, 10 - 0.618 * 4, 6, 0},
      {10, 10 + 4.4 / 12, 10 + 4.4 / 6, 10 + 1.1, 10 + 2.2, 10 - 4.4 / 12, 10 - 4.4 / 6, 10 - 1.1, 10 - 2.2},
  };
  for (int kind = 0; kind < 3; ++kind) {
    const auto result = Standard().PIVOTS(data, data->getRecordset(), session, kind);
    for (int i = 0; i < 9; ++i) {
      const auto column = result->getField(result->getName(i + 1));
      EXPECT_EQ(column->getValue(2), 0.0) << "before the first session has ended";
      EXPECT_NEAR(column->getValue(3), levels[kind][i], 1e-12) << kind << ' ' << column->getName();
      EXPECT_EQ(column->getValue(4), column->getValue(3));
    }
  }
}

TEST(Standard, DrawsTheCloudAheadAndTheCloseBack) {
  const auto data = levels({2, 4, 8, 6, 10});
  expectColumns(*Standard().ICHIMOKU(data, data->getRecordset(), 1, 2, 3, 1),
                {{"ICHIMOKU Conversion", {2, 4, 8, 6, 10}},
                 {"ICHIMOKU Base", {0, 3, 6, 7, 8}},
                 {"ICHIMOKU Span A", {0, 0, 3.5, 7, 6.5}},
                 {"ICHIMOKU Span B", {0, 0, 0, 5, 6}},
                 {"ICHIMOKU Lagging", {4, 8, 6, 10, 0}}});
}

TEST(Standard, FindsCandlesAndTellsAllAtARecord) {
  // Ten bodies of 2 in ranges of 4, then what each case adds.
  const auto with = [](std::vector<Bar> candles) {
    std::vector<Bar> series(10, {10, 13, 9, 12, 0});
    series.insert(series.end(), candles.begin(), candles.end());
    return bars(series);
  };
  struct Case {
    int pattern;
    std::vector<Bar> candles;
    double signal;
  };
  const std::vector<Case> cases = {
      {16, {{10, 12, 8, 10.25, 0}}, 100},  // a doji's body is at most a tenth of the mean range
      {16, {{10, 12, 8, 10.5, 0}}, 0},
      {19, {{12, 12, 10, 10, 0}, {9, 13, 9, 13, 0}}, 100},   // a white body around a black one
      {19, {{12, 12, 10, 10, 0}, {10, 13, 10, 13, 0}}, 80},  // with an end in common
      {19, {{10, 12, 10, 12, 0}, {13, 13, 9, 9, 0}}, -100},
      {40, {{10, 15, 10, 15, 0}}, 100},                      // all body
      {57, {{15, 15, 10, 10, 0}, {9, 12, 9, 12, 0}}, -100},  // into the body, not to its middle
      {57, {{15, 15, 10, 10, 0}, {9, 13, 9, 13, 0}}, 0},
      {42,
       {{10, 15, 10, 15, 0},
        {17, 17, 16, 16, 0},
        {15.5, 15.5, 14.5, 14.5, 0},
        {15, 15, 14, 14, 0},
        {15, 19, 15, 19, 0}},
       100},  // a rise held above its middle, and resumed
  };
  for (const auto& [pattern, candles, signal] : cases) {
    const auto data = with(candles);
    const auto result = Standard().CANDLE(data, data->getRecordset(), pattern);
    EXPECT_EQ(result->getField("CANDLE")->getValue(data->getRecordCount()), signal) << "pattern " << pattern;
  }
  const auto data = with({{10, 12, 8, 10.25, 0}});
  const auto note = Standard().CANDLES(data, data->getRecordset(), 11);
  EXPECT_EQ(note->getPeriod(), 11);
  EXPECT_EQ(note->getNote(), "Doji 100, HighWave 100, LongLeggedDoji 100, RickshawMan 100, SpinningTop 100");
  EXPECT_EQ(note->getValue(), 5);
  EXPECT_FAULT(unexpectedError("Standard.CANDLES.UnexpectedError"), Standard().CANDLES(data, data->getRecordset(), 12));
}

TEST(Standard, ChecksArgumentsInTheirOrderAndComputesNoRowOfALongPeriod) {
  const auto data = levels({1, 2, 3});
  const auto close = data->getRecordset()->getField("Close");
  const auto infinite = field({1, infinity, 3});
  const auto longer = field({1, 2, 3, 4});
  Standard standard;
  const auto unexpected = [](std::string_view source) { return std::optional(unexpectedError(source)); };
  const std::vector<FaultCase> cases = {
      {[&] { standard.SMA(nullptr, close, 0); }, faults::ObjectNotSet, 1},
      {[&] { standard.SMA(data, nullptr, 0); }, Fault{1101, "Standard.SMA", "Invalid Periods"}, 1},
      {[&] { standard.SMA(data, nullptr, 2); }, unexpected("Standard.SMA.UnexpectedError"), 1},
      {[&] { standard.RSI(data, close, 1); }, Fault{1101, "Standard.RSI", "Invalid Periods"}, 1},
      {[&] { standard.BBANDS(data, close, 1, 2, 2, 9); }, Fault{1101, "Standard.BBANDS", "Invalid Periods"}, 1},
      {[&] { standard.BBANDS(data, close, 2, 4e37, 2, 9); }, Fault{1102, "Standard.BBANDS", "Invalid Factor"}, 1},
      {[&] { standard.BBANDS(data, close, 2, 2, notANumber, 9); }, Fault{1102, "Standard.BBANDS", "Invalid Factor"}, 1},
      {[&] { standard.BBANDS(data, close, 2, 2, 2, 9); }, Fault{1100, "Standard.BBANDS", "Invalid Moving Average Type"},
       1},
      {[&] { standard.T3(data, close, 5, 1.01); }, Fault{1102, "Standard.T3", "Invalid Factor"}, 1},
      {[&] { standard.AVWAP(data, data->getRecordset(), 0); }, Fault{1103, "Standard.AVWAP", "Invalid Record"}, 1},
      {[&] { standard.SMA(data, longer, 2); }, unexpected("Standard.SMA.UnexpectedError"), 1},
      // A value that no row reads is looked at too.
      {[&] { standard.SMA(data, infinite, 4); }, unexpected("Standard.SMA.UnexpectedError"), 1},
      {[&] {
         standard.HV(data, field({1, 0, 2}), 2, 252);
       },
       unexpected("Standard.HV.UnexpectedError"), 1},
      {[&] { standard.SMA(data, close, 30000); }, std::nullopt, 1},
      {[&] { standard.Aroon(data, data->getRecordset(), 30000); }, std::nullopt, 1},
  };
  expectFaults(*data, cases);
  expectColumns(*standard.MACD(data, close, 12, 26, 9, "m"),
                {{"m", {0, 0, 0}}, {"m Signal", {0, 0, 0}}, {"m Histogram", {0, 0, 0}}});
}

TEST(Standard, GivesACopyWhereTheDefinitionIsTheColumnItself) {
  const auto data = levels({1, 2, 3});
  const auto close = data->getRecordset()->getField("Close");
  const auto result = Standard().KAMA(data, close, 1);
  expectColumns(*result, {{"KAMA", {1, 2, 3}}});
  EXPECT_NE(result->getField("KAMA"), close);
  EXPECT_EQ(close->getName(), "Close");
  // Both lines of an average over one record are the same numbers in columns of their own.
  const auto lines = Standard().STOCHF(data, data->getRecordset(), 2, 1, 0);
  EXPECT_EQ(lines->getName(1), "STOCHF %K");
  EXPECT_EQ(lines->getName(2), "STOCHF %D");
}

}  // namespace
}  // namespace orvex::test
