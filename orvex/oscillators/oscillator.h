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

/// Oscillators: measures of momentum, range, trend and overbought prices. Each method returns a set of new columns of N
/// rows, N being the record count of `data`. An empty `Alias` becomes the method's default name, in the caller's
/// variable too. Rows that a method does not write are 0.
///
/// The methods yield to the host once a record and leave the cursor of `data` on record 1, unless they say that they
/// leave it alone. Nothing is validated unless a method says so: whatever fault a computation meets (a period that the
/// series cannot carry, a missing column, a value that is not finite, a division by zero) is error 1105
/// "Oscillator.(method).UnexpectedError", and the cursor stays where the fault left it.
class Oscillator {
 public:
  static constexpr std::string_view CMOName = "CMO";

  static constexpr Fault CMOFault = unexpectedError("Oscillator.CMO.UnexpectedError");

  /// The Chande momentum oscillator, -100 to 100 (Tushar Chande and Stanley Kroll, The New Technical Trader, 1994):
  /// row r = (up - down) x 100 / (up + down), where up and down are the sums of the rises and of the falls of `Source`,
  /// record by record, over the `Periods` records r - `Periods` + 1 to r; 0 where it did not move. Computed rows:
  /// `Periods` + 1 to N.
  std::shared_ptr<RecordSet> CMO(std::shared_ptr<Database> data, std::shared_ptr<Field> Source, Integer Periods,
                                 InOut<std::string> Alias = {});
};

}  // namespace orvex
