#pragma once

#include <memory>
#include <string_view>

#include "orvex/data/database.h"
#include "orvex/data/error.h"
#include "orvex/data/field.h"
#include "orvex/data/integer.h"
#include "orvex/data/note.h"

namespace orvex::inline ORVEX_COUNTS {

/// Questions about the shape of a span of prices, answered with a `Note`.
///
/// Who published a method, how it is read and how it departs from what was published:
/// orvex/catalogue/classes/chart_pattern.h.
class ChartPattern {
 public:
  static constexpr std::string_view Advancing = "ADVANCING";
  static constexpr std::string_view Declining = "DECLINING";

  /// Without the class's name, as published.
  static constexpr Fault PercentRetracementEndFault = invalidEndPeriod("PercentRetracement");
  static constexpr Fault PercentRetracementStartFault = invalidStartPeriod("PercentRetracement");
  static constexpr Fault PercentRetracementFault = unexpectedError("ChartPattern.PercentRetracement.UnexpectedError");

  /// How much of the span's move the last value has given back. With max and min the `General::MaxValue` and `MinValue`
  /// of the span (so max is 0, at period 0, where no value is above 0) and last the value at `EndPeriod`:
  ///   the maximum after the minimum: "ADVANCING", 100 - (last - min) / (max - min) x 100
  ///   the minimum after the maximum: "DECLINING", 100 - (max - last) / (max - min) x 100
  /// in percent: 0 at the extreme that the move reached, 100 where it began. The text of the note is the direction, its
  /// period 0. Where both stand on one record (equal values, a single one) it is the unchanged note of the minimum: its
  /// period, its value and no text.
  ///
  /// Errors: 1010 "Invalid end period" for an end above the record count of `data`, then "Invalid start period" for a
  /// start below 1; what `General::MaxValue` and `MinValue` report of the span (an empty one, a source that is too
  /// short); 1105 "ChartPattern.PercentRetracement.UnexpectedError" for any later fault. The cursor is not moved.
  std::shared_ptr<Note> PercentRetracement(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                           Integer StartPeriod, Integer EndPeriod);
};

}  // namespace orvex::inline ORVEX_COUNTS
