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
      .header = "orvex/averages/linear_regression.h",
      .classId = Guid("6265a472-073b-4272-87a4-3f12cb057fcf"),
      .interfaceId = Guid("d35866e7-21d1-4b75-90dc-b9d08ac1a5b9"),
  };

  static constexpr auto rows = std::tuple{
      row<&LinearRegression::Regression>(
          {.name = "Regression",
           .help = "Slope, intercept, forecast and r-squared of the line.",
           .arguments = {Data, Source, Periods.usually(14)},
           .columns = {{.name = LinearRegression::SlopeName,
                        .firstRow = "Periods + 1",
                        .help = "The rise of the line, per record.",
                        .unit = SourceUnit,
                        .place = Place::Apart},
                       {.name = LinearRegression::InterceptName,
                        .firstRow = "Periods + 1",
                        .help = "The height of the line before its first value, in the form of the formula.",
                        .unit = SourceUnit,
                        .place = Place::Over},
                       {.name = LinearRegression::ForecastName,
                        .firstRow = "Periods + 1",
                        .help = "The height at the last value.",
                        .unit = SourceUnit,
                        .place = Place::Over},
                       {.name = LinearRegression::RSquaredName,
                        .firstRow = "Periods + 1",
                        .help = "How much of the movement the line explains, 0 to 1.",
                        .bounds = {0, 1},
                        .place = Place::Apart}},
           .faults = {LinearRegression::RegressionFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"LINREG"},
           .guide = {.formula = "of the last Periods values at x = 1 .. Periods: Slope = Qxy / Qxx, Intercept = mean "
                                "of the values - m x Slope with m = Periods / 2 rounded to a whole number, ties to "
                                "even, Forecast = Periods x Slope + Intercept, RSquared = Qxy x Qxy / (Qyy x Qxx)",
                     .reading = "The slope tells direction and speed of a trend, the r-squared how much of a trend it "
                                "is: near 1 the values lie on a line, near 0 they have none.",
                     .origin = "Least squares: Adrien-Marie Legendre, 1805. Its use on prices has no single author.",
                     .difference = "A line of least squares passes through the mean of x, (Periods + 1) / 2. Here m "
                                   "stands for it: half a record less where Periods is even, so Intercept and Forecast "
                                   "lie half a slope higher; a whole one for 5, 9, 13, ..., none for 3, 7, 11, ... The "
                                   "first row is Periods + 1, one later than it could be.",
                     .fails = "where Periods is below 2 or above N, above 181 where counts have 16 bits, and where a "
                              "value is not finite"}}),
      row<&LinearRegression::TimeSeriesForecast>(
          {.name = LinearRegression::TimeSeriesForecastName,
           .help = "The forecast of the line alone.",
           .arguments = {Data, Source, Periods.usually(14), aliasOr(LinearRegression::TimeSeriesForecastName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .help = "The height of the line at the last value.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {LinearRegression::TimeSeriesForecastFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"TSF"},
           .guide = {.formula = "the Forecast of LinearRegression.Regression over Periods records",
                     .reading = "A fast average: where the line through the last records stands now. Prices far from "
                                "it are taken to be due for a return.",
                     .origin = "The field's common form; no single author.",
                     .difference =
                         "That of the regression's Forecast. Others show the line one record further on; here it is "
                         "the line at the record itself, half a slope higher where Periods is even.",
                     .fails = "where Periods is below 2 or above N, above 181 where counts have 16 bits, and where a "
                              "value is not finite"}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
