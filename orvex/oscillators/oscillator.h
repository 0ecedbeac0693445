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

/// Oscillators: measures of momentum, range, trend and overbought prices. Each method returns a set of new columns of N
/// rows, N being the record count of `data`. An empty `Alias` becomes the method's default name, in the caller's
/// variable too. Rows that a method does not write are 0.
///
/// The methods yield to the host once a record and leave the cursor of `data` on record 1, unless they say that they
/// leave it alone. Nothing is validated unless a method says so: whatever fault a computation meets (a period that the
/// series cannot carry, a missing column, a value that is not finite, a division by zero) is error 1105
/// "Oscillator.(method).UnexpectedError", and the cursor stays where the fault left it.
///
/// Who published a method, how it is read and how it departs from what was published:
/// orvex/catalogue/classes/oscillator.h.
class Oscillator {
 public:
  static constexpr std::string_view TrueRangeName = "TR";
  static constexpr std::string_view AverageTrueRangeName = "ATR";
  static constexpr int AverageTrueRangePeriod = 14;
  static constexpr std::string_view AverageIndexName = "ADX";
  static constexpr std::string_view AverageIndexRatingName = "ADXR";
  static constexpr std::string_view DirectionalIndexName = "DX";
  static constexpr std::string_view RangeSumName = "TRSum";
  static constexpr std::string_view DownIndexName = "DI-";
  static constexpr std::string_view UpIndexName = "DI+";
  static constexpr std::string_view AroonUpName = "Aroon Up";
  static constexpr std::string_view AroonDownName = "Aroon Down";
  static constexpr std::string_view AroonOscillatorName = "Aroon Oscillator";
  static constexpr std::string_view PercentKName = "%K";
  static constexpr std::string_view PercentDName = "%D";
  static constexpr std::string_view WilliamsPctRName = "WilliamsPctR";
  static constexpr std::string_view StochRSIName = "StochRSI";
  static constexpr std::string_view UltimateOscillatorName = "UltimateOscillator";
  static constexpr std::string_view ParabolicSARName = "ParabolicSAR";
  static constexpr double ParabolicSARMinAF = 0.02;
  static constexpr double ParabolicSARMaxAF = 0.2;
  static constexpr std::string_view CMOName = "CMO";
  static constexpr std::string_view MomentumName = "Momentum";
  static constexpr std::string_view VerticalHorizontalFilterName = "VerticalHorizontalFilter";
  static constexpr std::string_view LinearMomentumOscillatorName = "Linear Momentum Oscillator";
  static constexpr std::string_view WilliamsAccumulationDistributionName = "WilliamsAccumulationDistribution";
  static constexpr std::string_view ChaikinVolatilityName = "ChaikinVolatility";
  static constexpr std::string_view EaseOfMovementName = "EaseOfMovement";
  static constexpr std::string_view ChaosFractalOscillatorName = "Chaos Fractal Oscillator";
  static constexpr int ChaosFractalOscillatorPeriods = 100;
  static constexpr std::string_view PrimeNumberOscillatorName = "Prime Number Oscillator";
  static constexpr std::string_view PriceOscillatorName = "PriceOscillator";
  static constexpr std::string_view MACDName = "MACD";
  static constexpr std::string_view MACDSignalSuffix = "Signal";
  static constexpr std::string_view MACDHistogramSuffix = "Histogram";
  static constexpr std::string_view VolumeOscillatorName = "VolumeOscillator";
  static constexpr std::string_view DetrendedPriceOscillatorName = "DetrendedPriceOscillator";
  static constexpr std::string_view TRIXName = "TRIX";
  static constexpr std::string_view GoldenDeathCrossName = "GoldenDeathCross";
  static constexpr std::string_view RainbowOscillatorName = "RainbowOscillator";
  static constexpr std::string_view RainbowUpperName = "Rainbow Upper";
  static constexpr std::string_view RainbowLowerName = "Rainbow Lower";

  static constexpr Fault TrueRangeFault = unexpectedError("Oscillator.TrueRange.UnexpectedError");
  static constexpr Fault AverageTrueRangeFault = unexpectedError("Oscillator.AverageTrueRange.UnexpectedError");
  static constexpr Fault DirectionalMovementSystemFault =
      unexpectedError("Oscillator.DirectionalMovementSystem.UnexpectedError");
  static constexpr Fault AroonFault = unexpectedError("Oscillator.Aroon.UnexpectedError");
  static constexpr Fault StochasticOscillatorFault = unexpectedError("Oscillator.StochasticOscillator.UnexpectedError");
  static constexpr Fault WilliamsPctRFault = unexpectedError("Oscillator.WilliamsPctR.UnexpectedError");
  static constexpr Fault StochRSIFault = unexpectedError("Oscillator.StochRSI.UnexpectedError");
  static constexpr Fault UltimateOscillatorFault = unexpectedError("Oscillator.UltimateOscillator.UnexpectedError");
  static constexpr Fault ParabolicSARFault = unexpectedError("Oscillator.ParabolicSAR.UnexpectedError");
  static constexpr Fault CMOFault = unexpectedError("Oscillator.CMO.UnexpectedError");
  static constexpr Fault MomentumFault = unexpectedError("Oscillator.Momentum.UnexpectedError");
  static constexpr Fault VerticalHorizontalFilterFault =
      unexpectedError("Oscillator.VerticalHorizontalFilter.UnexpectedError");
  static constexpr Fault LinearMomentumOscillatorFault =
      unexpectedError("Oscillator.LinearMomentumOscillator.UnexpectedError");
  /// This source and the next are misspelt as published.
  static constexpr Fault WilliamsAccumulationDistributionFault =
      unexpectedError("Oscillator.WilliamsAccumultaionDistribution.UnexpectedError");
  static constexpr Fault ChaikinVolatilityFault = unexpectedError("Oscillator.ChaikinVolitlity.UnexpectedError");
  static constexpr Fault EaseOfMovementFault = unexpectedError("Oscillator.EaseOfMovement.UnexpectedError");
  static constexpr Fault ChaosFractalOscillatorFault =
      unexpectedError("Oscillator.ChaosFractalOscillator.UnexpectedError");
  static constexpr Fault PrimeNumberOscillatorFault =
      unexpectedError("Oscillator.PrimeNumberOscillator.UnexpectedError");
  static constexpr Fault PriceOscillatorFault = unexpectedError("Oscillator.PriceOscillator.UnexpectedError");
  static constexpr Fault MACDFault = unexpectedError("Oscillator.MACD.UnexpectedError");
  static constexpr Fault VolumeOscillatorFault = unexpectedError("Oscillator.VolumeOscillator.UnexpectedError");
  static constexpr Fault DetrendedPriceOscillatorFault =
      unexpectedError("Oscillator.DetrendedPriceOscillator.UnexpectedError");
  static constexpr Fault TRIXFault = unexpectedError("Oscillator.TRIX.UnexpectedError");
  static constexpr Fault GoldenDeathCrossFault = unexpectedError("Oscillator.GoldenDeathCross.UnexpectedError");
  static constexpr Fault RainbowOscillatorFault = unexpectedError("Oscillator.RainbowOscillator.UnexpectedError");

  static constexpr Fault PriceOscillatorPeriodsFault = invalidPeriods("Oscillator.PriceOscillator");
  static constexpr Fault PriceOscillatorAverageFault = invalidAverageType("Oscillator.PriceOscillator");
  static constexpr Fault MACDPeriodsFault = invalidPeriods("Oscillator.MACD");
  static constexpr Fault VolumeOscillatorPeriodsFault = invalidPeriods("Oscillator.VolumeOscillator");
  static constexpr Fault VolumeOscillatorAverageFault = invalidAverageType("Oscillator.VolumeOscillator");
  static constexpr Fault DetrendedPriceOscillatorPeriodsFault = invalidPeriods("Oscillator.DetrendedPriceOscillator");
  static constexpr Fault DetrendedPriceOscillatorAverageFault =
      invalidAverageType("Oscillator.DetrendedPriceOscillator");
  static constexpr Fault TRIXPeriodsFault = invalidPeriods("Oscillator.TRIX");
  static constexpr Fault GoldenDeathCrossPeriodsFault = invalidPeriods("Oscillator.GoldenDeathCross");
  static constexpr Fault GoldenDeathCrossAverageFault = invalidAverageType("Oscillator.GoldenDeathCross");
  static constexpr Fault RainbowOscillatorPeriodsFault = invalidPeriods("Oscillator.RainbowOscillator");
  static constexpr Fault RainbowOscillatorAverageFault = invalidAverageType("Oscillator.RainbowOscillator");

  /// @name Range and direction
  /// @{

  /// The largest of High(r) - Low(r), |High(r) - Close(r - 1)| and |Close(r - 1) - Low(r)|, in the unit of the prices;
  /// never below 0, also where a bar's high is below its low. Default name "TR". Computed rows: 2 to N.
  std::shared_ptr<RecordSet> TrueRange(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                       InOut<std::string> Alias = {});

  /// The simple average of the true range over `Period` records; the 0 of record 1 is in none of the averages. Default
  /// name "ATR". Computed rows: `Period` + 1 to N.
  std::shared_ptr<RecordSet> AverageTrueRange(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                              InOut<std::string> Alias = {}, Integer Period = AverageTrueRangePeriod);

  /// Wilder's directional movement of n = `Periods` records, as the columns "ADX", "ADXR", "DX", "TRSum", "DI-" and
  /// "DI+". With rise = High(r) - High(r - 1) and fall = Low(r - 1) - Low(r), the larger one counts where they differ
  /// and one of them at least is not negative; sums are `WellesWilderSmoothing` over n records, from 0.
  ///   "TRSum"  the sum of the average true range of n records, in the unit of the prices
  ///   "DI+", "DI-"  the sum of the rises (of the falls) x 100 / TRSum, truncated; 0 where TRSum is 0
  ///   "DX"  |DI- - DI+| / (DI- + DI+) x 100, truncated; 0 where they are equal
  ///   "ADX"  ((n - 1) x ADX(r - 1) + DX(r)) / n rounded half up, from record n + 1 on and from 0
  ///   "ADXR"  the mean of ADX(r) and ADX(r - 1), rounded half up
  /// All but TRSum are whole numbers. Computed rows: TRSum, DI-, DI+ and DX from 2n + 1 on, ADX and ADXR from 2n + 1
  /// and 2n + 2. Fails for n < 1 and n > N / 2.
  std::shared_ptr<RecordSet> DirectionalMovementSystem(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                       Integer Periods);

  /// How long ago the highest high and the lowest low of n = `Periods` records stand, 100 for this record and 0 for n
  /// records back, as "Aroon Up", "Aroon Down" and their difference "Aroon Oscillator":
  ///   (n - (r - record of the extreme)) / n x 100
  /// The span is the n + 1 records r - n to r. Of equal extremes the one of record r counts, otherwise the oldest.
  /// Computed rows: n + 1 to N.
  std::shared_ptr<RecordSet> Aroon(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV, Integer Periods);

  /// @}
  /// @name Places within the last records
  /// The span of `length` records ends at record r. The first that is computed is `length` + 1, although record
  /// `length` has a full span too. A span without a range fails: it divides by 0.
  /// @{

  /// "%K" = (Close - lowest Low) / (highest High - lowest Low) x 100 over `KPeriods` records, replaced by its average
  /// of the code `MA_Type` over `KSlowingPeriods` records where these are 2 or more, and "%D", the average of "%K" over
  /// `DPeriods`. The averages take the 0s of the first records for values.
  /// Computed rows, with F(P, f) the first one of an average over P records of a column that is computed from f on (see
  /// `firstAverageRow`): "%K" from k = F(`KSlowingPeriods`, `KPeriods` + 1), `KPeriods` + 1 where it is not averaged,
  /// and "%D" from F(`DPeriods`, k). For 14, 3, 3 and the simple average that is 17 and 19.
  std::shared_ptr<RecordSet> StochasticOscillator(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                  Integer KPeriods, Integer KSlowingPeriods, Integer DPeriods,
                                                  Integer MA_Type);

  /// (highest High - Close) / (highest High - lowest Low) x -100 over `Periods` records, -100 to 0. Computed rows:
  /// `Periods` + 1 to N - 1; the last record stays 0.
  std::shared_ptr<RecordSet> WilliamsPctR(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                          Integer Periods, InOut<std::string> Alias = {});

  /// (RSI - lowest RSI) / (highest RSI - lowest RSI) over `Periods` records, 0 to 1, of the relative strength index of
  /// `Source` over `Periods`. The 0s before the first RSI are values like the others. Computed rows: 2 x `Periods` to
  /// N.
  std::shared_ptr<RecordSet> StochRSI(std::shared_ptr<Database> data, std::shared_ptr<Field> Source, Integer Periods,
                                      InOut<std::string> Alias = {});

  /// ((BP1 / TR1) x 4 + (BP2 / TR2) x 2 + BP3 / TR3) / 7 x 100, 0 to 100, where BP and TR are summed over the last
  /// `Cycle1`, `Cycle2` and `Cycle3` records, oldest first: BP = Close(j) - min(Low(j), Close(j - 1)), TR = max(High(j)
  /// - Low(j), High(j) - Close(j - 1), Close(j - 1) - Low(j)). Computed rows: the largest cycle + 1 to N.
  std::shared_ptr<RecordSet> UltimateOscillator(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                Integer Cycle1, Integer Cycle2, Integer Cycle3,
                                                InOut<std::string> Alias = {});

  /// @}

  /// The stop-and-reverse level, in the unit of the prices: SAR(r) = SAR(r - 1) + factor x (extreme - SAR(r - 1)), with
  /// the trend's extreme price and the acceleration factor as record r - 1 left them. The factor begins at `MinAF` and
  /// grows by it with each new extreme while it is below `MaxAF`. A low below (a high above) the level turns the trend:
  /// the level becomes the extreme of the old trend. The first trend is short where the low of record 2 rose more than
  /// its high. The cursor stands on the record before the one that is computed. Computed rows: 2 to N. Fails for fewer
  /// than 2 records.
  std::shared_ptr<RecordSet> ParabolicSAR(std::shared_ptr<Database> data, std::shared_ptr<Field> HighPrice,
                                          std::shared_ptr<Field> LowPrice, double MinAF = ParabolicSARMinAF,
                                          double MaxAF = ParabolicSARMaxAF, InOut<std::string> Alias = {});

  /// @name Momentum and volatility
  /// @{

  /// The Chande momentum oscillator, -100 to 100: row r = (up - down) x 100 / (up + down), where up and down are the
  /// sums of the rises and of the falls of `Source`, record by record, over the `Periods` records r - `Periods` + 1 to
  /// r; 0 where it did not move. Computed rows: `Periods` + 1 to N.
  std::shared_ptr<RecordSet> CMO(std::shared_ptr<Database> data, std::shared_ptr<Field> Source, Integer Periods,
                                 InOut<std::string> Alias = {});

  /// (Source(r) - Source(r - `Periods`)) / Source(r - `Periods`) x 100 + 100: 100 where nothing changed. Computed rows:
  /// `Periods` + 2 to N, one later than the lag needs. Fails where a value of 0 serves as the earlier one, and for
  /// `Periods` of N or more.
  std::shared_ptr<RecordSet> Momentum(std::shared_ptr<Database> data, std::shared_ptr<Field> Source, Integer Periods,
                                      InOut<std::string> Alias = {});

  /// |highest - lowest| / the sum of |Source(j) - Source(j - 1)| over the last `Periods` records, 0 to 1: how much of
  /// the way went in one direction. Computed rows: `Periods` + 1 to N. Fails where `Source` did not move.
  std::shared_ptr<RecordSet> VerticalHorizontalFilter(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                      Integer Periods, InOut<std::string> Alias = {});

  /// (q - 0.5) x 2 x 100, -100 to 100, where q is the r-squared of the line through the last `Periods` values of the
  /// Chande momentum oscillator over `Periods`; -100 before the first line. Default name "Linear Momentum Oscillator".
  /// Computed rows: 2 x `Periods` to N.
  std::shared_ptr<RecordSet> LinearMomentumOscillator(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                      Integer Periods, InOut<std::string> Alias = {});

  /// The running sum, in the unit of the prices, of Close(r) - min(Low(r), Close(r - 1)) where the close rose and of
  /// Close(r) - max(High(r), Close(r - 1)) where it fell. Leaves the cursor alone. Computed rows: 2 to N.
  std::shared_ptr<RecordSet> WilliamsAccumulationDistribution(std::shared_ptr<Database> data,
                                                              std::shared_ptr<RecordSet> OHLCV,
                                                              InOut<std::string> Alias = {});

  /// The change in percent, over `ROC` records, of the average of the code `MA_Type` of High - Low over `Periods`
  /// records; 0 where the average is 0 at either end. Computed rows: `ROC` + the average's first to N.
  std::shared_ptr<RecordSet> ChaikinVolatility(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                               Integer Periods, Integer ROC, Integer MA_Type,
                                               InOut<std::string> Alias = {});

  /// The average of the code `MA_Type` over `Periods` records of move / (Volume / (High - Low)) x 10000, where move is
  /// the change of the bar's middle (High + Low) / 2; a bar without a range counts 0.
  /// Computed rows: from the first that the average has of a column that is computed from 2 on (see `firstAverageRow`),
  /// which is `Periods` + 1 for the simple one. Fails where the volume of a bar with a range is 0.
  std::shared_ptr<RecordSet> EaseOfMovement(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                            Integer Periods, Integer MA_Type, InOut<std::string> Alias = {});

  /// @}
  /// @name Fractals and primes
  /// Both leave the cursor alone.
  /// @{

  /// 1 where the high is above the highs of the four records before, -1 where the low is below their lows, which goes
  /// before the other; otherwise 0. In records 2 to 4, which do not have four records before them, 0s stand for prices,
  /// so that ordinary prices give 1. A `Periods` below 1 becomes 100 in the caller's variable too; nothing else depends
  /// on it. Column "Chaos Fractal Oscillator". Computed rows: 5 to N.
  std::shared_ptr<RecordSet> ChaosFractalOscillator(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                    InOut<Integer> Periods);

  /// The distance of v to the nearest prime number, negative below it: v = `Source` truncated, times 10 where it is
  /// below 10. Of two primes that are equally near the lower one counts. 0 takes the place of a prime where there is
  /// none: below 2, and of values that are not positive. Default name "Prime Number Oscillator". Computed rows: 1 to N.
  /// Fails for values that do not fit 32 bits.
  std::shared_ptr<RecordSet> PrimeNumberOscillator(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                   InOut<std::string> Alias = {});

  /// @}
  /// @name Differences of moving averages
  /// These check their arguments first, in their order, and tell the caller directly: error 1101 "Invalid Periods" for
  /// a number of periods or levels, 1100 "Invalid Moving Average Type" for a code. "Average" is the moving average of
  /// the code `MA_Type`, A(P) the first computed row of one over P records (see `firstAverageRow`). An average of an
  /// average begins where the inner one does, as a series of its own. Short and long periods bind nothing: the short
  /// one may be the longer. With code 4 they make no difference, since its factor has a period of its own, and methods
  /// that compare two averages give 0. A quotient whose divisor is 0 is 0.
  /// @{

  /// (short - long) / long x 100, of averages of `Source` over `ShortCycle` and `LongCycle` records, in percent.
  /// Computed rows: max(A(`ShortCycle`), A(`LongCycle`)) to N. Errors: 1101 for a cycle outside 1..N.
  std::shared_ptr<RecordSet> PriceOscillator(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                             Integer ShortCycle, Integer LongCycle, Integer MA_Type,
                                             InOut<std::string> Alias = {});

  /// Moving average convergence/divergence, in the unit of `Source`, as the columns `Alias`, `Alias` + "Signal" and
  /// `Alias` + "Histogram": the exponential average over `ShortCycle` records less that over `LongCycle`, the
  /// exponential average of that line over `SignalPeriods`, and line - signal. Computed rows: from f =
  /// max(`ShortCycle`, `LongCycle`) + 1, the other two from f + `SignalPeriods`. Errors: 1101 for any of the three
  /// outside 1..N.
  std::shared_ptr<RecordSet> MACD(std::shared_ptr<Database> data, std::shared_ptr<Field> Source, Integer ShortCycle,
                                  Integer LongCycle, Integer SignalPeriods, InOut<std::string> Alias = {});

  /// `PriceOscillator` of a column of volumes.
  std::shared_ptr<RecordSet> VolumeOscillator(std::shared_ptr<Database> data, std::shared_ptr<Field> Volume,
                                              Integer ShortCycle, Integer LongCycle, Integer MA_Type,
                                              InOut<std::string> Alias = {});

  /// Source(r - (`Periods` \ 2 + 1)) - average(r), in the unit of `Source`, \ being whole division: the price in the
  /// middle of the average's records without their trend. Computed rows: A(`Periods`) to N. Errors: 1101 for `Periods`
  /// outside 1..N.
  std::shared_ptr<RecordSet> DetrendedPriceOscillator(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                      Integer Periods, Integer MA_Type, InOut<std::string> Alias = {});

  /// The change (e(r) - e(r - 1)) / e(r - 1) x 100, in percent, of the exponential average over `Periods` records taken
  /// three times. Computed rows: 3 x `Periods` + 2 to N. Errors: 1101 for `Periods` outside 1..N.
  std::shared_ptr<RecordSet> TRIX(std::shared_ptr<Database> data, std::shared_ptr<Field> Source, Integer Periods,
                                  InOut<std::string> Alias = {});

  /// 1 where the average over `ShortPeriods` records crosses above that over `LongPeriods` (at or below it at r - 1,
  /// above it at r), -1 where it crosses below, else 0. Computed rows: max(A(`ShortPeriods`), A(`LongPeriods`)) + 1 to
  /// N. Errors: 1101 for periods outside 1..N.
  std::shared_ptr<RecordSet> GoldenDeathCross(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                              Integer ShortPeriods, Integer LongPeriods, Integer MA_Type,
                                              InOut<std::string> Alias = {});

  /// Where `Source` stands among `Levels` averages over 2 records, the first of `Source` and each further one of the
  /// one before. With range = highest - lowest Source of the last `Levels` records: `Alias` = 100 x (Source - (sum of
  /// the averages, first level first) / `Levels`) / range, "Rainbow Upper" = 100 x (largest - smallest average) /
  /// range, and "Rainbow Lower" = its negative. Computed rows: `Levels` x (A(2) - 1) + 1 to N. Errors: 1101 for
  /// `Levels` outside 2..N.
  std::shared_ptr<RecordSet> RainbowOscillator(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                               Integer Levels, Integer MA_Type, InOut<std::string> Alias = {});

  /// @}

  /// What a host binds the object to: an object and the name of one of its members. They are kept and handed back, and
  /// no computation looks at them.
  std::shared_ptr<void> getDataSource() const { return dataSource_; }
  void setDataSource(std::shared_ptr<void> NewSource) { dataSource_ = std::move(NewSource); }
  std::string getDataMember() const { return dataMember_; }
  void setDataMember(const std::string& NewMember) { dataMember_ = NewMember; }

 private:
  std::shared_ptr<void> dataSource_;
  std::string dataMember_;
};

}  // namespace orvex::inline ORVEX_COUNTS
