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

namespace orvex {

/// Indices: running totals of price and volume, and indices of strength and of money flow. Each method returns a set of
/// new columns of N rows, N being the record count of `data`; an empty `Alias` becomes the method's default name, in
/// the caller's variable too. Rows before the first computed one are 0 where nothing else is said.
///
/// The methods leave the cursor of `data` on record 1. Whatever fault a computation meets (a missing column, a row
/// outside a column, a value that is not finite, a division by zero, an overflow) is the method's error 1105; the
/// cursor then stays where the fault left it.
class Index {
 public:
  static constexpr std::string_view RelativeStrengthIndexName = "RelativeStrengthIndex";

  static constexpr Fault RelativeStrengthIndexPeriodsFault{1101, "Index.RelativeStrengthIndex", "Invalid Periods"};

  /// The spelling is the published one.
  static constexpr Fault RelativeStrengthIndexFault = unexpectedError("Index.RelativeStrenghIndex.UnexpectedError");

  /// How much of the movement of a column is upward, in percent: J. Welles Wilder (New Concepts in Technical Trading
  /// Systems, 1978). With P = `Periods`, the rise of a record being max(Source(r) - Source(r - 1), 0) and its fall
  /// max(Source(r - 1) - Source(r), 0), the mean rise and the mean fall begin as the sums over the first P moves,
  /// oldest first, / P and go on as (mean x (P - 1) + the record's) / P;
  ///   row r = (100 x mean rise) / (mean rise + mean fall), 50 where both are 0.
  /// Wilder writes the same as 100 - 100 / (1 + rise / fall), which has no value without a fall.
  /// Computed rows: P + 1 to N, none for P >= N, which gives a column of 0.
  /// Errors: 1101 "Invalid Periods" for P below 1, which reaches the caller directly; 1105 for any other fault.
  std::shared_ptr<RecordSet> RelativeStrengthIndex(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                   Integer Periods, InOut<std::string> Alias = {});
};

}  // namespace orvex
