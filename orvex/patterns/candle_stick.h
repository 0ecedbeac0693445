#pragma once

#include <memory>
#include <string_view>

#include "orvex/data/database.h"
#include "orvex/data/error.h"
#include "orvex/data/integer.h"
#include "orvex/data/note.h"
#include "orvex/data/record_set.h"

namespace orvex::inline ORVEX_COUNTS {

/// Japanese candlestick patterns.
///
/// Who published a method, how it is read and how it departs from what was published:
/// orvex/catalogue/classes/candle_stick.h.
class CandleStick {
 public:
  static constexpr std::string_view NoPattern = "NO PATTERN";

  static constexpr Fault IdentifyPatternPeriodFault{1010, "CandleStick.IdentifyPattern", "Invalid period"};
  static constexpr Fault IdentifyPatternFault = unexpectedError("CandleStick.IdentifyPattern.UnexpectedError");

  /// The candlestick pattern that ends at record `Period`: a note of that period, the pattern's name, and 1 where the
  /// pattern is bullish, -1 where it is bearish and 0 where it is neither or there is none ("NO PATTERN"). Patterns of
  /// three records go before those of two, and those before single ones; the first that holds is the answer.
  ///
  /// Sizes and trends are relative to the records before the pattern's first one, f: bodies and shadows to the mean
  /// body of records f - 10 to f - 1, and the trend is up (down) where Close(f - 1) is above (below) the mean of
  /// Close(f - 11.. f - 2). A pattern whose f is below 12, or before which that mean body is 0, is not considered.
  /// docs/candlestick-patterns.md lists the conditions.
  ///
  /// Errors: 1010 "Invalid period" for a `Period` outside 1..N, N being the record count of `data`; 1105
  /// "CandleStick.IdentifyPattern.UnexpectedError" for any other fault. The cursor is not moved.
  std::shared_ptr<Note> IdentifyPattern(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                        Integer Period);
};

}  // namespace orvex::inline ORVEX_COUNTS
