#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "orvex/catalogue/computed_rows.h"
#include "orvex/catalogue/description.h"

/// Calls over columns that begin or end without values.
///
/// The first rows of an indicator's result are not computed. Where such a column is the source of the next method, what
/// stands in those rows must not be taken for values: the next method begins behind them, and its own computed rows
/// count from there. So every way into the library that shows such rows as empty (the command line, the bindings) hands
/// them in again as NaN, which no value of a series is, and calls through here.
namespace orvex::inline ORVEX_COUNTS::catalogue {

/// The rows of a column between its leading and its trailing run of NaN: `first` > `last` where all rows are.
RowRange valuedRows(std::span<const double> rows);

/// What such a call gave.
struct ValuedCall {
  /// The columns of a set have as many rows as the series, 0 outside `part`; the period of a note is a record of it.
  Value result;
  /// The records that it was computed from: `partWithValues`.
  RowRange part;
  /// For each column of a set its computed rows: the method's own, counted from the beginning of `part`.
  std::vector<RowRange> computed;
};

/// The records in which every column handed in has begun and none has ended, of a set its price columns: all of them
/// where no column begins or ends with NaN, `first` > `last` where there are none. A column that is merely too short is
/// left for the method to refuse.
RowRange partWithValues(std::span<const Value> arguments);

/// Calls as `call` does, over the part of the series in which all columns have values as if it were the whole.
/// Arguments and results that are record numbers are the caller's own, and the cursor of a database is left on the
/// record where the method leaves it. Arguments are converted and written back in place, but columns, sets and
/// databases stay the caller's. Errors: those of `call`; a part without records fails as the method does.
ValuedCall callOnValues(const Method& method, void* object, std::span<Value> arguments);

/// A row without a value between rows with one.
struct Gap {
  std::string column;
  int row;
};

/// The first gap in a column that a call of `callOnValues` with these arguments reads, to be told when it has failed:
/// there it is a value that is not finite. Nothing where there is none.
std::optional<Gap> findGap(std::span<const Value> arguments);

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
