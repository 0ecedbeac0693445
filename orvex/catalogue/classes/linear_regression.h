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
      row<&LinearRegression::Regression>({.name = "Regression",
                                          .help = "Slope, intercept, forecast and r-squared of the line.",
                                          .arguments = {Data, Source, Periods.usually(14)},
                                          .columns = {{LinearRegression::SlopeName, "Periods + 1"},
                                                      {LinearRegression::InterceptName, "Periods + 1"},
                                                      {LinearRegression::ForecastName, "Periods + 1"},
                                                      {LinearRegression::RSquaredName, "Periods + 1"}},
                                          .faults = {LinearRegression::RegressionFault}}),
      row<&LinearRegression::TimeSeriesForecast>(
          {.name = LinearRegression::TimeSeriesForecastName,
           .help = "The forecast of the line alone.",
           .arguments = {Data, Source, Periods.usually(14), aliasOr(LinearRegression::TimeSeriesForecastName)},
           .columns = {aliasedColumn("Periods + 1")},
           .faults = {LinearRegression::TimeSeriesForecastFault}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
