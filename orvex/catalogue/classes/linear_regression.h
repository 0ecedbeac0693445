#pragma once

#include <tuple>

#include "orvex/averages/linear_regression.h"
#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<LinearRegression> {
  static constexpr Identity identity{
      .name = "LinearRegression",
      .help = "Least-squares straight lines through the last values of a column.",
      .classId = Guid("6265a472-073b-4272-87a4-3f12cb057fcf"),
      .interfaceId = Guid("d35866e7-21d1-4b75-90dc-b9d08ac1a5b9"),
  };

  static constexpr auto rows = std::tuple{
      row<&LinearRegression::Regression>("Regression", "Slope, intercept, forecast and r-squared of the line.",
                                         {Data, Source, Periods},
                                         {{LinearRegression::SlopeName, "Periods + 1"},
                                          {LinearRegression::InterceptName, "Periods + 1"},
                                          {LinearRegression::ForecastName, "Periods + 1"},
                                          {LinearRegression::RSquaredName, "Periods + 1"}},
                                         {LinearRegression::RegressionFault}),
      row<&LinearRegression::TimeSeriesForecast>(
          LinearRegression::TimeSeriesForecastName, "The forecast of the line alone.",
          {Data, Source, Periods, aliasOr(LinearRegression::TimeSeriesForecastName)}, {aliasedColumn("Periods + 1")},
          {LinearRegression::TimeSeriesForecastFault}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
