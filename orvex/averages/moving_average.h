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

/// Moving averages of one column over a price series. Each method returns a set of one new column of N rows, N being
/// the record count of `data`, in the unit of `Source`, named `Alias`; an empty `Alias` becomes the method's name, in
/// the caller's variable too. Rows before the first computed one are 0.
///
/// The methods that take `data` walk its cursor, yield to the host once a record, and leave the cursor on record 1.
/// Nothing is validated: whatever fault a computation meets (a period of 0, a period that the series cannot carry, a
/// source that is too short or holds a value that is not finite, an overflow) is error 1105
/// "MovingAverage.(method).UnexpectedError", and the cursor stays where the fault left it.
///
/// The simple, exponential and weighted averages wait one record longer than their window needs: with `Periods` P the
/// first value stands in row P + 1, although row P already has P values behind it. The others leave 2P or 3P rows at 0,
/// as each says. These offsets are how the averages have been published, and every indicator built on them counts on
/// them.
///
/// Who published a method, how it is read and how it departs from what was published:
/// orvex/catalogue/classes/moving_average.h.
class MovingAverage {
 public:
  static constexpr std::string_view SimpleMovingAverageName = "SimpleMovingAverage";
  static constexpr std::string_view ExponentialMovingAverageName = "ExponentialMovingAverage";
  static constexpr std::string_view WeightedMovingAverageName = "WeightedMovingAverage";
  static constexpr std::string_view TriangularMovingAverageName = "TriangularMovingAverage";
  static constexpr std::string_view WellesWilderSmoothingName = "WellesWilderSmoothing";
  static constexpr std::string_view TimeSeriesMovingAverageName = "TimeSeriesMovingAverage";
  static constexpr std::string_view VariableMovingAverageName = "VariableMovingAverage";
  static constexpr std::string_view VIDYAName = "VIDYA";

  static constexpr Fault SimpleMovingAverageFault =
      unexpectedError("MovingAverage.SimpleMovingAverage.UnexpectedError");
  static constexpr Fault ExponentialMovingAverageFault =
      unexpectedError("MovingAverage.ExponentialMovingAverage.UnexpectedError");
  static constexpr Fault WeightedMovingAverageFault =
      unexpectedError("MovingAverage.WeightedMovingAverage.UnexpectedError");
  static constexpr Fault TriangularMovingAverageFault =
      unexpectedError("MovingAverage.TriangularMovingAverage.UnexpectedError");
  static constexpr Fault WellesWilderSmoothingFault =
      unexpectedError("MovingAverage.WellesWilderSmoothing.UnexpectedError");
  static constexpr Fault TimeSeriesMovingAverageFault =
      unexpectedError("MovingAverage.TimeSeriesMovingAverage.UnexpectedError");
  static constexpr Fault VariableMovingAverageFault =
      unexpectedError("MovingAverage.VariableMovingAverage.UnexpectedError");
  static constexpr Fault VIDYAFault = unexpectedError("MovingAverage.VIDYA.UnexpectedError");

  /// The arithmetic mean of the last P values, row r = (Source(r) + Source(r - 1) + ... + Source(r - P + 1)) / P,
  /// summed in this order. Computed rows: P + 1 to N. P = N gives a column of 0; P > N fails.
  std::shared_ptr<RecordSet> SimpleMovingAverage(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                 Integer Periods, InOut<std::string> Alias = {});

  /// row r = (1 - k) x row (r - 1) + k x Source(r), k = 2 / (P + 1). The seed, in row P, weighs the next price with 1 -
  /// k and the mean of the first P values with k; it is 0 in the result. Computed rows: P + 1 to N. The seed reads row
  /// P + 1 of `Source`, so P = N fails unless that is longer than the series.
  std::shared_ptr<RecordSet> ExponentialMovingAverage(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                      Integer Periods, InOut<std::string> Alias = {});

  /// The last P values with linear weights, row r = (P x Source(r) + ... + 1 x Source(r - P + 1)) / (1 + 2 + ... + P),
  /// summed from the newest value to the oldest. Computed rows: P + 1 to N.
  std::shared_ptr<RecordSet> WeightedMovingAverage(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                   Integer Periods, InOut<std::string> Alias = {});

  /// A simple average of a simple average. For an odd P both cover P \ 2 + 1 records, for an even one the first P \ 2
  /// and the second P \ 2 + 1. Computed rows: 2P + 1 to N. P > N / 2 fails, since rows 1 to 2P of
  /// the result are set to 0.
  std::shared_ptr<RecordSet> TriangularMovingAverage(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                     Integer Periods, InOut<std::string> Alias = {});

  /// row r = row (r - 1) + (Source(r) - row (r - 1)) x (1 / P) from row 1 = 0. Rows 1 to 2P are set to 0 to hide the
  /// climb; N is the record count of `Source`. Computed rows: 2P + 1 to N. P > N / 2 fails. A negative P sets no row
  /// to 0, and the rows run away from the values by 1 / |P| of the distance. No cursor is moved.
  std::shared_ptr<RecordSet> WellesWilderSmoothing(std::shared_ptr<Field> Source, Integer Periods,
                                                   InOut<std::string> Alias = {});

  /// The moving end of a regression line: row r is the "Forecast" of `LinearRegression::Regression` over P records.
  /// Computed rows: 2P + 1 to N, P rows later than the regression's own. P > N / 2 fails, and so does P < 2; with
  /// counts of 16 bits P > 181 as well, where they leave no regression.
  std::shared_ptr<RecordSet> TimeSeriesMovingAverage(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                     Integer Periods, InOut<std::string> Alias = {});

  /// row r = (1 - k) x row (r - 1) + k x Source(r) from row 1 = 0, k = |CMO(r) / 100| of `Oscillator::CMO` over 9
  /// records. P sets no length here, only how many rows are set to 0: 1 to 3P. Computed rows: max(3P, 9) + 1 to N; up
  /// to row 9 there is no momentum, and the average stays 0. P > N / 3 fails; a P of 0 or below sets no row to 0.
  std::shared_ptr<RecordSet> VariableMovingAverage(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                   Integer Periods, InOut<std::string> Alias = {});

  /// row r = (1 - k) x Source(r - 1) + k x Source(r), k = RSquared(r) x `R2Scale`, RSquared of
  /// `LinearRegression::Regression` over P records; k is not held between 0 and 1. A scale of 0 gives the series one
  /// record late. Computed rows: 2P + 1 to N. P > N / 2 fails, and so does P < 2; with counts of 16 bits P > 181 as
  /// well, where they leave no regression.
  std::shared_ptr<RecordSet> VIDYA(std::shared_ptr<Database> data, std::shared_ptr<Field> Source, Integer Periods,
                                   double R2Scale, InOut<std::string> Alias = {});
};

}  // namespace orvex::inline ORVEX_COUNTS
