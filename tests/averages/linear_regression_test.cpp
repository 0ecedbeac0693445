#include "orvex/averages/linear_regression.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(LinearRegression, StraightLinesAtEachKindOfCentre) {
  // Source(r) = r, so slope and quality are 1. With n values up to r, the mean of y is r - (n - 1) / 2; the intercept
  // is that less m, and the forecast the intercept plus n. The centres m are 2 / 2 = 1, 3 / 2 to even = 2, 4 / 2 = 2,
  // 5 / 2 to even = 2, 7 / 2 to even = 4.
  struct {
    int periods;
    double intercept, forecast;  // of record 8
  } const cases[] = {
      {2, 7.5 - 1, 7.5 + 1}, {3, 7 - 2, 7 + 1}, {4, 6.5 - 2, 6.5 + 2}, {5, 6 - 2, 6 + 3}, {7, 5 - 4, 5 + 3}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.periods);
    const auto result = LinearRegression().Regression(records(8), field({1, 2, 3, 4, 5, 6, 7, 8}), one.periods);
    EXPECT_NEAR(result->getValue("Slope", 8), 1, 1e-12);
    EXPECT_NEAR(result->getValue("Intercept", 8), one.intercept, 1e-12);
    EXPECT_NEAR(result->getValue("Forecast", 8), one.forecast, 1e-12);
    EXPECT_NEAR(result->getValue("RSquared", 8), 1, 1e-12);
    EXPECT_EQ(result->getValue("Slope", one.periods), 0) << "one record later than the window needs";
    EXPECT_NE(result->getValue("Slope", one.periods + 1), 0);
  }
}

TEST(LinearRegression, FlatWindowsKeepTheQualityOfTheRecordBefore) {
  // Windows of 3 from record 4 on: 2 4 3, 4 3 3, 3 3 3, 3 3 6. Sx = 6, Sxx = 14, Qxx = 2.
  //   2 4 3: Sy 9, Qyy 29 - 27 = 2, Qxy 19 - 18 = 1: slope 1/2, quality 1/4
  //   4 3 3: Sy 10, Qxy 19 - 20 = -1, Qyy = 34 - 100/3: slope -1/2
  //   3 3 6: Sy 12, Qyy 54 - 48 = 6, Qxy 27 - 24 = 3: slope 3/2, quality 9/12
  const double down = 1.0 / ((34 - 100.0 / 3) * 2);
  expectColumns(*LinearRegression().Regression(records(7), field({1, 2, 4, 3, 3, 3, 6}), 3),
                {{"Slope", {0, 0, 0, 0.5, -0.5, 0, 1.5}},
                 {"Intercept", {0, 0, 0, 1.0 / 3 * 9 - 1, 1.0 / 3 * 10 + 1, 1.0 / 3 * 9, 1.0 / 3 * 12 - 3}},
                 {"Forecast", {0, 0, 0, 3.5, -1.5 + (1.0 / 3 * 10 + 1), 3, 5.5}},
                 {"RSquared", {0, 0, 0, 0.25, down, down, 0.75}}});
}

TEST(LinearRegression, TakesWindowsOf2To181Records) {
  const std::vector<double> rising(200, 1.5);
  LinearRegression line;
  for (const int periods : {2, 181}) {
    EXPECT_EQ(line.Regression(records(200), field(rising), periods)->getFieldCount(), 4);
  }
  for (const int periods : {-3, 0, 1, 182, 200, 201}) {
    EXPECT_FAULT(LinearRegression::RegressionFault, line.Regression(records(200), field(rising), periods)) << periods;
    EXPECT_FAULT(LinearRegression::TimeSeriesForecastFault,
                 line.TimeSeriesForecast(records(200), field(rising), periods))
        << periods;
  }
  EXPECT_EQ(line.Regression(records(3), field({1, 2, 4}), 3)->getValue("Slope", 3), 0) << "no record has one to spare";
}

TEST(LinearRegression, ForecastUnderAnAliasThatIsAnotherColumnsName) {
  LinearRegression line;
  const auto source = field({1, 2, 3, 5});
  // The last window is 2 3 5: Sy 10, slope 3/2, forecast 3 x 3/2 + (1/3 x 10 - 2 x 3/2).
  const double forecast = 4.5 + (1.0 / 3 * 10 - 3);
  expectColumns(*line.TimeSeriesForecast(records(4), source, 3), {{"TimeSeriesForecast", {0, 0, 0, forecast}}});
  expectColumns(*line.TimeSeriesForecast(records(4), source, 3, "Slope"), {{"Slope", {0, 0, 0, forecast}}});
  // Qxy 3, Qyy 38 - 100/3.
  expectColumns(*line.TimeSeriesForecast(records(4), source, 3, "RSquared"),
                {{"RSquared", {0, 0, 0, 9 / ((38 - 100.0 / 3) * 2)}}});
}

}  // namespace
}  // namespace orvex::test
