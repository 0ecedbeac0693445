#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "orvex/data/database.h"
#include "orvex/data/error.h"
#include "orvex/data/field.h"
#include "orvex/data/in_out.h"
#include "orvex/data/integer.h"
#include "orvex/data/record_set.h"

namespace orvex::inline ORVEX_COUNTS {

/// Least-squares straight lines through the last `Periods` values of a column, one line a record. Both methods walk the
/// cursor of `data`, yield to the host once a record, and leave the cursor on record 1. N is the record count of
/// `data`.
///
/// Who published a method, how it is read and how it departs from what was published:
/// orvex/catalogue/classes/linear_regression.h.
class LinearRegression {
 public:
  static constexpr std::string_view SlopeName = "Slope";
  static constexpr std::string_view InterceptName = "Intercept";
  static constexpr std::string_view ForecastName = "Forecast";
  static constexpr std::string_view RSquaredName = "RSquared";
  static constexpr std::string_view TimeSeriesForecastName = "TimeSeriesForecast";

  /// Without the method's name, as published.
  static constexpr Fault RegressionFault = unexpectedError("LinearRegression.UnexpectedError");
  static constexpr Fault TimeSeriesForecastFault =
      unexpectedError("LinearRegression.TimeSeriesForecast.UnexpectedError");

  /// With n = `Periods` and the values y(1) (oldest) .. y(n) at x = 1 .. n, sums over x from 1 on:
  ///   Qxy = Sxy - Sx x Sy / n, Qxx = Sxx - Sx x Sx / n, Qyy = Syy - Sy x Sy / n
  ///   "Slope" = Qxy / Qxx, in units of `Source` a record
  ///   "Intercept" = (1 / n) x Sy - m x slope, m being n / 2 rounded to a whole number, ties to even: not the mean of x
  ///   "Forecast" = n x slope + intercept
  ///   "RSquared" = Qxy x Qxy / (Qyy x Qxx), or what the record before has where either product is 0
  /// Returns these four columns in this order; computed rows `Periods` + 1 to N, 0 before.
  /// Error 1105 "LinearRegression.UnexpectedError" for any fault: `Periods` below 2 (no slope) or above N;
  /// counts of 16 bits alone: above 181, since the squares of x are formed in them; values that are missing, not finite
  /// or too large.
  std::shared_ptr<RecordSet> Regression(std::shared_ptr<Database> data, std::shared_ptr<Field> Source, Integer Periods);

  /// The "Forecast" of `Regression` as a set of one column named `Alias`; an empty `Alias` becomes
  /// "TimeSeriesForecast", in the caller's variable too. Computed rows and limits are those of `Regression`. An alias
  /// "RSquared" names the r-squared instead, since the forecast is renamed first and the others are removed by name.
  /// Error 1105 "LinearRegression.TimeSeriesForecast.UnexpectedError" for any fault.
  std::shared_ptr<RecordSet> TimeSeriesForecast(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                Integer Periods, InOut<std::string> Alias = {});
};

}  // namespace orvex::inline ORVEX_COUNTS
