// The numbers of docs/differences.md: ours by the catalogue's usual arguments, the book's by its own definition.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "orvex/catalogue/usual.h"
#include "orvex/data/database.h"

namespace orvex::test {
namespace {

/// The prices, rows from 1 on.
struct Prices {
  std::shared_ptr<Database> data = std::make_shared<Database>();
  std::vector<double> open, high, low, close, volume;

  Prices() {
    data->OpenDataBase(ORVEX_SOURCE "/examples/prices.csv", ",");
    const auto column = [&](std::string_view name) {
      const auto field = data->getRecordset()->getField(name);
      std::vector<double> rows(field->values().begin(), field->values().end());
      rows.insert(rows.begin(), 0.0);
      return rows;
    };
    open = column("Open");
    high = column("High");
    low = column("Low");
    close = column("Close");
    volume = column("Volume");
  }
  int count() const { return data->getRecordCount().value(); }
};

const Prices& prices() {
  static const Prices loaded;
  return loaded;
}

/// A number of ours: row `record` of a method's column with the usual arguments; of one without columns, its result.
double ours(const std::string& name, int column, int record) {
  const std::string method = name.substr(name.find('.') + 1);
  const auto found = catalogue::findCalculation(method);
  std::vector<catalogue::Value> arguments(found->method->arguments.size());
  catalogue::takeUsual(*found->method, arguments, prices().data);
  const auto result = catalogue::call(*found->method, found->owner->create().get(), arguments);
  if (const auto* number = std::get_if<double>(&result)) return *number;
  return std::get<std::shared_ptr<RecordSet>>(result)->fields()[static_cast<std::size_t>(column)]->getValue(record);
}

double mean(const std::vector<double>& rows, int first, int last) {
  double sum = 0;
  for (int i = first; i <= last; ++i) sum += rows[i];
  return sum / (last - first + 1);
}

/// Bollinger's upper band of 20 records and two of their own deviations.
double upperBand(int record) {
  const auto& close = prices().close;
  const double middle = mean(close, record - 19, record);
  double squares = 0;
  for (int i = record - 19; i <= record; ++i) squares += (close[i] - middle) * (close[i] - middle);
  return middle + 2 * std::sqrt(squares / 20);
}

/// Chaikin's money flow of 21 records.
double moneyFlow(int record) {
  const auto& [data, open, high, low, close, volume] = prices();
  double flow = 0, total = 0;
  for (int i = record - 20; i <= record; ++i) {
    flow += ((close[i] - low[i]) - (high[i] - close[i])) / (high[i] - low[i]) * volume[i];
    total += volume[i];
  }
  return flow / total;
}

double trueRange(int record) {
  const auto& [data, open, high, low, close, volume] = prices();
  return std::max({high[record] - low[record], std::abs(high[record] - close[record - 1]),
                   std::abs(low[record] - close[record - 1])});
}

/// Wilder's smoothing of `value` over n records, from the mean of the first n values on, which begin at `first`.
std::vector<double> smoothed(const std::function<double(int)>& value, int first, int n) {
  std::vector<double> rows(static_cast<std::size_t>(prices().count()) + 1);
  double average = 0;
  for (int i = first; i <= prices().count(); ++i) {
    average += i < first + n ? value(i) / n : (value(i) - average) / n;
    rows[i] = average;
  }
  return rows;
}

double averageTrueRange(int record) {
  return smoothed(trueRange, 2, 14)[record];
}

/// Wilder's ADX of 14 records.
double directionalIndex(int record) {
  const auto& high = prices().high;
  const auto& low = prices().low;
  const auto up = [&](int i) {
    const double rise = high[i] - high[i - 1], fall = low[i - 1] - low[i];
    return rise > fall && rise > 0 ? rise : 0;
  };
  const auto down = [&](int i) {
    const double rise = high[i] - high[i - 1], fall = low[i - 1] - low[i];
    return fall > rise && fall > 0 ? fall : 0;
  };
  // The ranges divide out of the quotient of the differences of the directions.
  const auto ups = smoothed(up, 2, 14), downs = smoothed(down, 2, 14);
  return smoothed([&](int i) { return 100 * std::abs(ups[i] - downs[i]) / (ups[i] + downs[i]); }, 15, 14)[record];
}

double exponentialAverage(int record) {
  const auto& close = prices().close;
  double average = mean(close, 1, 20);
  for (int i = 21; i <= record; ++i) average += 2.0 / 21 * (close[i] - average);
  return average;
}

/// Where the line of least squares through the last 14 closes ends.
double lineEnd(int record) {
  const auto& close = prices().close;
  double products = 0, squares = 0;
  for (int x = 1; x <= 14; ++x) {
    products += (x - 7.5) * close[record - 14 + x];
    squares += (x - 7.5) * (x - 7.5);
  }
  return mean(close, record - 13, record) + 6.5 * products / squares;
}

/// The variable index dynamic average of 20 records: each close blended with the row before.
double dynamicAverage(int record) {
  const auto& close = prices().close;
  double average = close[20];
  for (int i = 21; i <= record; ++i) {
    double xy = 0, xx = 0, yy = 0;
    const double middle = mean(close, i - 19, i);
    for (int x = 1; x <= 20; ++x) {
      const double dx = x - 10.5, dy = close[i - 20 + x] - middle;
      xy += dx * dy;
      xx += dx * dx;
      yy += dy * dy;
    }
    average += 0.65 * xy * xy / (xx * yy) * (close[i] - average);
  }
  return average;
}

double highest(int record, int span) {
  return *std::max_element(prices().high.begin() + record - span + 1, prices().high.begin() + record + 1);
}

double percentR(int record) {
  const auto& [data, open, high, low, close, volume] = prices();
  const double top = highest(record, 14);
  const double bottom = *std::min_element(low.begin() + record - 13, low.begin() + record + 1);
  return (top - close[record]) / (top - bottom) * -100;
}

/// Pearson's coefficient of close and volume.
double correlation() {
  const auto& [data, open, high, low, close, volume] = prices();
  const int n = prices().count();
  const double x = mean(close, 1, n), y = mean(volume, 1, n);
  double xy = 0, xx = 0, yy = 0;
  for (int i = 1; i <= n; ++i) {
    xy += (close[i] - x) * (volume[i] - y);
    xx += (close[i] - x) * (close[i] - x);
    yy += (volume[i] - y) * (volume[i] - y);
  }
  return xy / std::sqrt(xx * yy);
}

/// Keltner's upper line: the means of ten typical prices and of ten ranges.
double channelTop(int record) {
  const auto& [data, open, high, low, close, volume] = prices();
  double middle = 0, range = 0;
  for (int i = record - 9; i <= record; ++i) {
    middle += (high[i] + low[i] + close[i]) / 3 / 10;
    range += (high[i] - low[i]) / 10;
  }
  return middle + range;
}

/// The first record whose open and close are equal.
int unchanged() {
  int record = 1;
  while (prices().open[record] != prices().close[record]) ++record;
  return record;
}

TEST(Differences, AreThoseOfThePage) {
  const int last = prices().count();
  const struct {
    std::string name;
    int column;
    int record;
    double book;
  } cases[] = {
      {"Bands.BollingerBands", 1, last, upperBand(last)},
      {"Index.ChaikinMoneyFlow", 0, last, moneyFlow(last)},
      {"Oscillator.DirectionalMovementSystem", 0, last, directionalIndex(last)},
      {"Oscillator.AverageTrueRange", 0, last, averageTrueRange(last)},
      {"General.HHV", 0, 18, highest(18, 14)},
      {"General.CorrelationAnalysis", 0, 0, correlation()},
      {"Index.ComparativeRelativeStrength", 0, unchanged(), 1.0},
      {"MovingAverage.ExponentialMovingAverage", 0, 21, exponentialAverage(21)},
      {"MovingAverage.WellesWilderSmoothing", 0, 29, smoothed([](int i) { return prices().close[i]; }, 1, 14)[29]},
      {"MovingAverage.VIDYA", 0, last, dynamicAverage(last)},
      {"LinearRegression.TimeSeriesForecast", 0, last, lineEnd(last)},
      {"Oscillator.WilliamsPctR", 0, last, percentR(last)},
      {"Bands.Keltner", 1, last, channelTop(last)},
  };
  std::ifstream file(ORVEX_SOURCE "/docs/differences.md", std::ios::binary);
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  for (const auto& [name, column, record, book] : cases) {
    const double value = ours(name, column, record);
    EXPECT_GT(std::abs(value - book), 5e-5) << name << " does not differ";
    char row[160];
    const std::string where = record == 0 ? "all" : std::to_string(record);
    std::snprintf(row, sizeof row, "| %s | %s | %.4f | %.4f |", name.c_str(), where.c_str(), value, book);
    EXPECT_NE(page.find(row), std::string::npos) << "docs/differences.md lacks " << row;
  }
}

}  // namespace
}  // namespace orvex::test
