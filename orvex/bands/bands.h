#pragma once

#include <memory>
#include <string_view>

#include "orvex/data/database.h"
#include "orvex/data/error.h"
#include "orvex/data/field.h"
#include "orvex/data/in_out.h"
#include "orvex/data/integer.h"
#include "orvex/data/record_set.h"

namespace orvex::inline ORVEX_COUNTS {

/// Bands above and below a price. Each method returns a set of new columns of fixed names in price units, of N rows
/// where nothing else is said, N being the record count of `data`; rows that are not computed are 0. The methods yield
/// to the host once a record and leave the cursor of `data` on record 1, unless they say otherwise.
///
/// Checks of arguments come first and reach the caller with the class's and the method's name as their source. Of what
/// happens later, a fault of the moving average is 1104 "Bands.(method).MAError" where a method says so, and any other
/// 1105 "Bands.(method).UnexpectedError".
///
/// Who published a method, how it is read and how it departs from what was published: orvex/catalogue/classes/bands.h.
class Bands {
 public:
  static constexpr std::string_view BollingerMedianName = "BollingerBandsMedian";
  static constexpr std::string_view BollingerTopName = "BollingerBandsTop";
  static constexpr std::string_view BollingerBottomName = "BollingerBandsBottom";
  static constexpr std::string_view EnvelopeTopName = "EnvelopeTop";
  static constexpr std::string_view EnvelopeBottomName = "EnvelopeBottom";
  static constexpr std::string_view HighLowTopName = "HighLowBandsTop";
  static constexpr std::string_view HighLowMedianName = "HighLowBandsMedian";
  static constexpr std::string_view HighLowBottomName = "HighLowBandsBottom";
  static constexpr std::string_view KeltnerMedianName = "Keltner Median";
  static constexpr std::string_view KeltnerTopName = "Keltner Top";
  static constexpr std::string_view KeltnerBottomName = "Keltner Bottom";
  static constexpr std::string_view PrimeTopName = "Prime Bands Top";
  static constexpr std::string_view PrimeBottomName = "Prime Bands Bottom";
  static constexpr std::string_view FractalHighName = "Fractal High";
  static constexpr std::string_view FractalLowName = "Fractal Low";

  static constexpr Fault BollingerBandsTypeFault = invalidAverageType("Bands.BollingerBands");
  static constexpr Fault BollingerBandsPeriodsFault = invalidPeriods("Bands.BollingerBands");
  static constexpr Fault BollingerBandsDeviationsFault{1102, "Bands.BollingerBands", "Invalid Standard Deviations"};
  static constexpr Fault BollingerBandsAverageFault = averageError("Bands.BollingerBands.MAError");
  static constexpr Fault BollingerBandsFault = unexpectedError("Bands.BollingerBands.UnexpectedError");
  static constexpr Fault MovingAverageEnvelopeTypeFault = invalidAverageType("Bands.MovingAverageEnvelope");
  static constexpr Fault MovingAverageEnvelopePeriodsFault = invalidPeriods("Bands.MovingAverageEnvelope");
  static constexpr Fault MovingAverageEnvelopeShiftFault{1102, "Bands.MovingAverageEnvelope", "Invalid Shift"};
  static constexpr Fault MovingAverageEnvelopeAverageFault = averageError("Bands.MovingAverageEnvelope.MAError");
  static constexpr Fault MovingAverageEnvelopeFault = unexpectedError("Bands.MovingAverageEnvelope.UnexpectedError");
  /// Not 1101: the number is the published one.
  static constexpr Fault HighLowBandsPeriodsFault{1102, "Bands.HighLowBands", "Invalid Periods"};
  static constexpr Fault HighLowBandsAverageFault = averageError("Bands.HighLowBands.MAError");
  static constexpr Fault HighLowBandsFault = unexpectedError("Bands.HighLowBands.UnexpectedError");
  static constexpr Fault KeltnerFault = unexpectedError("Bands.Keltner.UnexpectedError");
  static constexpr Fault PrimeNumberBandsFault = unexpectedError("Bands.PrimeNumberBands.UnexpectedError");
  static constexpr Fault FractalChaosBandsPeriodsFault = invalidPeriods("Bands.FractalChaosBands");
  static constexpr Fault FractalChaosBandsFault = unexpectedError("Bands.FractalChaosBands.UnexpectedError");

  /// Bands around any average:
  ///   "BollingerBandsMedian" m(r) = the average of the code `MA_Type` over `Periods`
  ///   "BollingerBandsTop" = m + w, "BollingerBandsBottom" = m - w
  ///   w = `StandardDeviations` x sqrt(sum / `Periods`), sum of (Source(j) - m(r)) squared for j = r - 1 down to
  ///   r - `Periods`
  /// The top and the bottom are written from `Periods` + 1 on, whatever the average.
  ///
  /// Errors: 1100 for a code outside 1..7, 1101 for `Periods` outside 1..N, 1102 for `StandardDeviations` outside
  /// 0..100; 1104 for a fault of the average; 1105.
  std::shared_ptr<RecordSet> BollingerBands(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                            Integer Periods, Integer StandardDeviations, Integer MA_Type);

  /// An average m of the code `MA_Type`, shifted up and down by `Shift` percent: "EnvelopeTop" = m x shift + m,
  /// "EnvelopeBottom" = m - m x shift with shift = `Shift` / 100, which is also what the caller's `Shift` holds after
  /// the call (after one that fails later too). Rows 1 to 2 x `Periods` are 0.
  ///
  /// Errors: 1100 for a code outside 1..7, 1101 for `Periods` outside 1..N, 1102 for a `Shift` outside 0..100; 1104 for
  /// a fault of the average; 1105, for `Periods` above N / 2 too.
  std::shared_ptr<RecordSet> MovingAverageEnvelope(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                   Integer Periods, Integer MA_Type, InOut<double> Shift);

  /// Three `VIDYA` curves of an `R2Scale` of 0.8: "HighLowBandsTop" of `HighPrice`, "HighLowBandsMedian" of
  /// `ClosePrice` over half of `Periods` (rounded, ties to the even number), "HighLowBandsBottom" of `LowPrice`. Rows 1
  /// to `Periods` are 0 in each.
  ///
  /// Errors: 1102 for `Periods` outside 6..N; 1104 for a fault of an average, `Periods` above N / 2 included; 1105.
  std::shared_ptr<RecordSet> HighLowBands(std::shared_ptr<Database> data, std::shared_ptr<Field> HighPrice,
                                          std::shared_ptr<Field> LowPrice, std::shared_ptr<Field> ClosePrice,
                                          Integer Periods);

  /// A channel of the average true range: "Keltner Median" = `VIDYA` of "Close" (`R2Scale` 0.65), "Keltner Top" =
  /// median + `AverageTrueRange` x `Factor`, "Keltner Bottom" = median - the same. The range is averaged over 14
  /// records whatever `Periods` is. Top and bottom have as many rows as "Close" and are written from row `Periods` on,
  /// from warm-up zeros at first. Error 1105 for any fault. Leaves the cursor where the inner indicators leave it, on
  /// record 1.
  std::shared_ptr<RecordSet> Keltner(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV, Integer Periods,
                                     double Factor);

  /// The prime numbers next to each bar: "Prime Bands Top" = the first prime at or above "High", "Prime Bands Bottom" =
  /// the first at or below "Low", of the prices cut to whole numbers and, when then below 10, multiplied by 10 once. 0
  /// where there is none: for prices below 1. Error 1105 for any fault, prices above 1,073,741,823 included, where
  /// twice the high leaves 32 bits. Leaves the cursor alone.
  std::shared_ptr<RecordSet> PrimeNumberBands(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV);

  /// The last fractals: "Fractal High" = the "High" of the latest record c with c + `Periods` <= r that lies strictly
  /// above the highs of each of the `Periods` records on both sides of it, "Fractal Low" = the "Low" of the latest one
  /// that lies strictly below the lows; 0 before the first. A fractal shows when its last neighbour has come: nothing
  /// looks ahead. Computed rows: 2 x `Periods` + 1 to N. Errors: 1101 for `Periods` outside 1..N; 1105.
  std::shared_ptr<RecordSet> FractalChaosBands(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                               Integer Periods);
};

}  // namespace orvex::inline ORVEX_COUNTS
