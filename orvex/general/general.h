#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "orvex/data/database.h"
#include "orvex/data/error.h"
#include "orvex/data/field.h"
#include "orvex/data/in_out.h"
#include "orvex/data/integer.h"
#include "orvex/data/note.h"
#include "orvex/data/record_set.h"

namespace orvex::inline ORVEX_COUNTS {

/// Price transforms, extremes, rates of change and statistics.
///
/// The methods that return a set make one new column of N rows, N being the record count of `data`, named `Alias`; an
/// empty `Alias` becomes the method's name, in the caller's variable too. Rows that a method does not write are 0. They
/// walk the cursor of `data`, yield to the host once a record, and leave the cursor on record 1. Nothing is validated:
/// whatever fault a computation meets (a missing column, a row outside one, a value that is not finite, a division by
/// zero, an overflow) is error 1105 "General.(method).UnexpectedError", and the cursor stays where the fault left it.
///
/// Who published a method, how it is read and how it departs from what was published:
/// orvex/catalogue/classes/general.h.
class General {
 public:
  static constexpr std::string_view HHVName = "HHV";
  static constexpr std::string_view LLVName = "LLV";
  static constexpr std::string_view HighMinusLowName = "HighMinusLow";
  static constexpr std::string_view MedianPriceName = "MedianPrice";
  static constexpr std::string_view TypicalPriceName = "TypicalPrice";
  static constexpr std::string_view WeightedCloseName = "WeightedClose";
  static constexpr std::string_view VolumeROCName = "VolumeROC";
  static constexpr std::string_view PriceROCName = "PriceROC";
  static constexpr std::string_view StandardDeviationName = "StandardDeviation";

  static constexpr Fault HHVFault = unexpectedError("General.HHV.UnexpectedError");
  static constexpr Fault LLVFault = unexpectedError("General.LLV.UnexpectedError");
  static constexpr Fault HighMinusLowFault = unexpectedError("General.HighMinusLow.UnexpectedError");
  static constexpr Fault MedianPriceFault = unexpectedError("General.MedianPrice.UnexpectedError");
  static constexpr Fault TypicalPriceFault = unexpectedError("General.TypicalPrice.UnexpectedError");
  static constexpr Fault WeightedCloseFault = unexpectedError("General.WeightedClose.UnexpectedError");
  static constexpr Fault VolumeROCFault = unexpectedError("General.VolumeROC.UnexpectedError");
  static constexpr Fault PriceROCFault = unexpectedError("General.PriceROC.UnexpectedError");
  /// Raised inside the traps of `MaxValue` and `MinValue`, which make 1105 of it.
  static constexpr Fault MaxValuePeriodFault = invalidPeriod("MaxValue");
  static constexpr Fault MinValuePeriodFault = invalidPeriod("MinValue");
  static constexpr Fault MaxValueFault = unexpectedError("General.MaxValue.UnexpectedError");
  static constexpr Fault MinValueFault = unexpectedError("General.MinValue.UnexpectedError");
  static constexpr Fault StandardDeviationFault = unexpectedError("General.StandardDeviation.UnexpectedError");
  static constexpr Fault StandardDeviationAverageFault{1102, "General.StandardDeviation.MAError",
                                                       "Error calculating moving average"};
  static constexpr Fault CorrelationAnalysisFault = unexpectedError("General.CorrelationAnalysis.UnexpectedError");

  /// The highest value of `Periods` + 1 records, row r = max(High(r - P) .. High(r)). Computed rows: P + 1 to N; all 0
  /// when P >= N. A negative P fails, and so does one of 32,767, where counts have 16 bits: P + 1 does not fit.
  std::shared_ptr<RecordSet> HHV(std::shared_ptr<Database> data, std::shared_ptr<Field> High, Integer Periods,
                                 InOut<std::string> Alias = {});

  /// The lowest value of the same `Periods` + 1 records.
  std::shared_ptr<RecordSet> LLV(std::shared_ptr<Database> data, std::shared_ptr<Field> Low, Integer Periods,
                                 InOut<std::string> Alias = {});

  /// High - Low: the range of each record. Of `OHLCV` the columns "High" and "Low" are read. Computed rows: 1 to N,
  /// here and in the three transforms that follow.
  std::shared_ptr<RecordSet> HighMinusLow(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                          InOut<std::string> Alias = {});

  /// (High + Low) / 2.
  std::shared_ptr<RecordSet> MedianPrice(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                         InOut<std::string> Alias = {});

  /// (High + Low + Close) / 3, from the columns "High", "Low" and "Close".
  std::shared_ptr<RecordSet> TypicalPrice(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                          InOut<std::string> Alias = {});

  /// (High + Low + 2 x Close) / 4, from the same columns.
  std::shared_ptr<RecordSet> WeightedClose(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                           InOut<std::string> Alias = {});

  /// The change over P records in percent, row r = (Volume(r) - Volume(r - P)) / Volume(r - P) x 100. Where the earlier
  /// volume is 0 the row repeats the rate of the row before, 0 where there is none yet. Computed rows: P + 1 to N. P <
  /// 0 and P > N fail.
  std::shared_ptr<RecordSet> VolumeROC(std::shared_ptr<Database> data, std::shared_ptr<Field> Volume, Integer Periods,
                                       InOut<std::string> Alias = {});

  /// The same of any column, but for an earlier value of 0, which fails.
  std::shared_ptr<RecordSet> PriceROC(std::shared_ptr<Database> data, std::shared_ptr<Field> Source, Integer Periods,
                                      InOut<std::string> Alias = {});

  /// The largest value of rows `StartPeriod` to `EndPeriod` that is above 0, and the row where it stands first: a note
  /// of period 0 and value 0 where there is none, since the search begins from 0 and not from a row. `MinValue` does
  /// otherwise. Error 1105 for an end before the start and for rows outside the column. No cursor, no yield.
  std::shared_ptr<Note> MaxValue(std::shared_ptr<Field> Source, Integer StartPeriod, Integer EndPeriod);

  /// The smallest value of the rows, whatever its sign, and the row where it stands first; otherwise like `MaxValue`.
  std::shared_ptr<Note> MinValue(std::shared_ptr<Field> Source, Integer StartPeriod, Integer EndPeriod);

  /// Tells whether a number is prime, taking 0 and 1 for primes as the prime-number studies do. Error 5 "Invalid
  /// procedure call or argument" for a negative number, with no trap around it.
  bool IsPrime(std::int32_t Number);

  /// The spread of the last P values around their moving average, in `StandardDeviations` (k) of them and in the unit
  /// of `Source`: row r = k x sqrt(((Source(r) - m)^2 +... + (Source(r - P + 1) - m)^2) / P), summed in this order, m
  /// being row r of the average of the code `MAType` over P records (see average_type.h). Computed rows: the average's
  /// own, P + 1 to N for codes 1, 2 and 6; rows from P + 1 on that the average leaves at 0 are measured against 0.
  /// Error 1102 "General.StandardDeviation.MAError" where the average fails; 1105 for any other fault, a code outside 1
  /// to 7 included. Yields inside the average only.
  std::shared_ptr<RecordSet> StandardDeviation(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                               Integer Periods, Integer StandardDeviations, Integer MAType,
                                               InOut<std::string> Alias = {});

  /// How unlike the record-to-record movements of two columns are: 1 - total / (n - 2), total being the sum over rows 2
  /// to n of |Source1(i) - Source1(i - 1)| x |Source2(i) - Source2(i - 1)|, n the record count of `Source1`. 1 for n
  /// below 2; error 1105 for n = 2, where it divides by 0, and for a `Source2` that is shorter. Yields once a row; no
  /// cursor.
  double CorrelationAnalysis(std::shared_ptr<Field> Source1, std::shared_ptr<Field> Source2);
};

}  // namespace orvex::inline ORVEX_COUNTS
