#pragma once

#include <memory>

#include "orvex/data/error.h"
#include "orvex/data/field.h"
#include "orvex/data/integer.h"

namespace orvex::inline ORVEX_COUNTS {

/// The length of the cycle in a column.
///
/// Who published a method, how it is read and how it departs from what was published: orvex/catalogue/classes/cycle.h.
class Cycle {
 public:
  static constexpr Fault AnalyzeFault = unexpectedError("Cycle.Analyze.UnexpectedError");

  /// The typical length of a swing, in records: how long a price that has fallen takes to climb back. For every record
  /// i = 2 .. N - 1 (N the record count of `Source`) the distance to the first record j >= i + 2 whose value lies
  /// strictly between those of the records i + 1 (below) and i - 1 (above) is j - i - 1; where the price did not fall
  /// from i - 1 to i + 1, or never came back, it is 0. Their sum divided by N - 2, rounded to a whole number, ties to
  /// the even one. A value of 0 at i - 1 counts as met even when no later value lies between: the distance to the end
  /// of the column is added.
  ///
  /// Takes time in proportion to N log N. Yields to the host once a record. Error 1105 "Cycle.Analyze.UnexpectedError"
  /// for any fault: N = 2 (a division by zero; fewer records give 0), a value that is not finite; counts of 16 bits
  /// alone: distances that add up to more than 32,767.
  Integer Analyze(std::shared_ptr<Field> Source);
};

}  // namespace orvex::inline ORVEX_COUNTS
