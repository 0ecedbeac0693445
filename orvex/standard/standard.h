#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "orvex/data/database.h"
#include "orvex/data/field.h"
#include "orvex/data/in_out.h"
#include "orvex/data/integer.h"
#include "orvex/data/note.h"
#include "orvex/data/record_set.h"

namespace orvex::inline ORVEX_COUNTS {

/// The definitions that charts and textbooks use, under the field's short names, beside the house's own.
///
/// Each method returns a set of new columns of N rows, N being the record count of `data`, named `Alias` or `Alias`
/// and what tells them apart; an empty `Alias` becomes the method's name, in the caller's variable too. What a method
/// computes, its usual arguments and the first row of each column stand in the catalogue, and so in the reference.
///
/// One rule holds for all. `Alias` is written back first; no `data` is error 91. Then the arguments are checked in
/// their order, source "Standard.(method)": 1100 for a kind of average outside 0 to 8, 1101 for a number of records
/// that is below what the definition needs or above 100,000, 1102 for any other number out of its range, 1103 for a
/// record below 1, 1106 for an unknown choice. Then columns must be as long as the series and hold finite values only;
/// that, and whatever fault the computation meets, is 1105 "Standard.(method).UnexpectedError". A period that the
/// series does not fill is no error: no row is computed. Rows that are not computed are 0. The cursor of `data` stays,
/// and no method yields to the host.
class Standard {
 public:
  using Result = std::shared_ptr<RecordSet>;
  using DataRef = std::shared_ptr<Database>;
  using FieldRef = std::shared_ptr<Field>;
  using SetRef = std::shared_ptr<RecordSet>;
  using Name = InOut<std::string>;

  static constexpr std::string_view UpperSuffix = " Upper";
  static constexpr std::string_view MiddleSuffix = " Middle";
  static constexpr std::string_view LowerSuffix = " Lower";
  static constexpr std::string_view SignalSuffix = " Signal";
  static constexpr std::string_view HistogramSuffix = " Histogram";
  static constexpr std::string_view UpSuffix = " Up";
  static constexpr std::string_view DownSuffix = " Down";
  static constexpr std::string_view KSuffix = " %K";
  static constexpr std::string_view DSuffix = " %D";
  static constexpr std::string_view FollowingSuffix = " Following";
  static constexpr std::string_view TrendSuffix = " Trend";
  static constexpr std::string_view PlusSuffix = " Plus";
  static constexpr std::string_view MinusSuffix = " Minus";
  static constexpr std::string_view InPhaseSuffix = " InPhase";
  static constexpr std::string_view QuadratureSuffix = " Quadrature";
  static constexpr std::string_view LeadSuffix = " Lead";
  static constexpr std::string_view LongSuffix = " Long";
  static constexpr std::string_view ShortSuffix = " Short";
  static constexpr std::string_view OpenSuffix = " Open";
  static constexpr std::string_view HighSuffix = " High";
  static constexpr std::string_view LowSuffix = " Low";
  static constexpr std::string_view CloseSuffix = " Close";
  static constexpr std::string_view BullSuffix = " Bull";
  static constexpr std::string_view BearSuffix = " Bear";

  static constexpr std::string_view ConversionSuffix = " Conversion";
  static constexpr std::string_view BaseSuffix = " Base";
  static constexpr std::string_view SpanASuffix = " Span A";
  static constexpr std::string_view SpanBSuffix = " Span B";
  static constexpr std::string_view LaggingSuffix = " Lagging";
  /// The pivot, resistances 1 to 4 and supports 1 to 4.
  static constexpr std::array<std::string_view, 9> PivotSuffixes = {"",    " R1", " R2", " R3", " R4",
                                                                    " S1", " S2", " S3", " S4"};

  /// @name Averages (averages.cpp)
  /// @{
  Result SMA(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result EMA(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result WMA(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result DEMA(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result TEMA(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result T3(DataRef data, FieldRef Source, Integer Periods, double VolumeFactor, Name Alias = {});
  Result TRIMA(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result KAMA(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result MAMA(DataRef data, FieldRef Source, double FastLimit, double SlowLimit, Name Alias = {});
  Result HMA(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result ZLEMA(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result RMA(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result VWMA(DataRef data, FieldRef Source, FieldRef Volume, Integer Periods, Name Alias = {});
  /// @}

  /// @name Bands and levels (bands.cpp)
  /// @{
  Result BBANDS(DataRef data, FieldRef Source, Integer Periods, double UpperDeviations, double LowerDeviations,
                Integer MA_Type, Name Alias = {});
  Result DONCHIAN(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result Keltner(DataRef data, SetRef OHLCV, Integer Periods, Integer RangePeriods, double Factor, Name Alias = {});
  Result MIDPOINT(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result MIDPRICE(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result SAR(DataRef data, SetRef OHLCV, double Acceleration, double Maximum, Name Alias = {});
  Result SAREXT(DataRef data, SetRef OHLCV, double StartValue, double OffsetOnReverse, double LongStart,
                double LongStep, double LongMaximum, double ShortStart, double ShortStep, double ShortMaximum,
                Name Alias = {});
  Result SUPERTREND(DataRef data, SetRef OHLCV, Integer Periods, double Factor, Name Alias = {});
  Result CHANDELIER(DataRef data, SetRef OHLCV, Integer Periods, double Factor, Name Alias = {});
  Result ICHIMOKU(DataRef data, SetRef OHLCV, Integer ConversionPeriods, Integer BasePeriods, Integer SpanPeriods,
                  Integer Displacement, Name Alias = {});
  Result PIVOTS(DataRef data, SetRef OHLCV, FieldRef Session, Integer PivotKind, Name Alias = {});
  /// @}

  /// @name Direction (directional.cpp)
  /// @{
  Result ADX(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result ADXR(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result DX(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result PLUS_DI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result MINUS_DI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result PLUS_DM(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result MINUS_DM(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result Aroon(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result AROONOSC(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result VORTEX(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  /// @}

  /// @name Momentum (momentum.cpp)
  /// @{
  Result APO(DataRef data, FieldRef Source, Integer FastPeriods, Integer SlowPeriods, Integer MA_Type, Name Alias = {});
  Result PPO(DataRef data, FieldRef Source, Integer FastPeriods, Integer SlowPeriods, Integer MA_Type, Name Alias = {});
  Result BOP(DataRef data, SetRef OHLCV, Name Alias = {});
  Result CCI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result CMO(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result MACD(DataRef data, FieldRef Source, Integer FastPeriods, Integer SlowPeriods, Integer SignalPeriods,
              Name Alias = {});
  Result MACDEXT(DataRef data, FieldRef Source, Integer FastPeriods, Integer FastMA_Type, Integer SlowPeriods,
                 Integer SlowMA_Type, Integer SignalPeriods, Integer SignalMA_Type, Name Alias = {});
  Result MOM(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result ROC(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result ROCP(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result ROCR(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result RSI(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result STOCH(DataRef data, SetRef OHLCV, Integer KPeriods, Integer KSlowingPeriods, Integer KMA_Type,
               Integer DPeriods, Integer DMA_Type, Name Alias = {});
  Result STOCHF(DataRef data, SetRef OHLCV, Integer KPeriods, Integer DPeriods, Integer DMA_Type, Name Alias = {});
  Result StochRSI(DataRef data, FieldRef Source, Integer Periods, Integer KPeriods, Integer DPeriods, Integer DMA_Type,
                  Name Alias = {});
  Result TRIX(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result ULTOSC(DataRef data, SetRef OHLCV, Integer Cycle1, Integer Cycle2, Integer Cycle3, Name Alias = {});
  Result WILLR(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result TSI(DataRef data, FieldRef Source, Integer FirstPeriods, Integer SecondPeriods, Name Alias = {});
  Result KST(DataRef data, FieldRef Source, Integer SignalPeriods, Name Alias = {});
  Result COPPOCK(DataRef data, FieldRef Source, Integer Periods, Integer FastPeriods, Integer SlowPeriods,
                 Name Alias = {});
  Result FISHER(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result AO(DataRef data, SetRef OHLCV, Integer FastPeriods, Integer SlowPeriods, Name Alias = {});
  Result QSTICK(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result ELDER_RAY(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result DPO(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result MASS(DataRef data, SetRef OHLCV, Integer FastPeriods, Integer SlowPeriods, Name Alias = {});
  Result CRSI(DataRef data, FieldRef Source, Integer Periods, Integer StreakPeriods, Integer RankPeriods,
              Name Alias = {});
  /// @}

  /// @name Volume (volume.cpp)
  /// @{
  Result MFI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result FORCE(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result AD(DataRef data, SetRef OHLCV, Name Alias = {});
  Result ADOSC(DataRef data, SetRef OHLCV, Integer FastPeriods, Integer SlowPeriods, Name Alias = {});
  Result OBV(DataRef data, FieldRef Source, FieldRef Volume, Name Alias = {});
  Result CMF(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result EMV(DataRef data, SetRef OHLCV, Name Alias = {});
  Result KVO(DataRef data, SetRef OHLCV, Integer FastPeriods, Integer SlowPeriods, Name Alias = {});
  Result NVI(DataRef data, FieldRef Source, FieldRef Volume, Name Alias = {});
  Result PVI(DataRef data, FieldRef Source, FieldRef Volume, Name Alias = {});
  Result VOSC(DataRef data, FieldRef Volume, Integer FastPeriods, Integer SlowPeriods, Name Alias = {});
  Result PVT(DataRef data, FieldRef Source, FieldRef Volume, Name Alias = {});
  Result VWAP(DataRef data, SetRef OHLCV, FieldRef Session, Name Alias = {});
  Result AVWAP(DataRef data, SetRef OHLCV, Integer Anchor, Name Alias = {});
  /// @}

  /// @name Volatility (volatility.cpp)
  /// @{
  Result TRANGE(DataRef data, SetRef OHLCV, Name Alias = {});
  Result ATR(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result NATR(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result STDDEV(DataRef data, FieldRef Source, Integer Periods, double Factor, Name Alias = {});
  Result VAR(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result HV(DataRef data, FieldRef Source, Integer Periods, Integer PeriodsPerYear, Name Alias = {});
  Result CHOP(DataRef data, SetRef OHLCV, Integer Periods, Name Alias = {});
  Result ULCER(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  /// @}

  /// @name Statistics (statistics.cpp)
  /// @{
  Result BETA(DataRef data, FieldRef Source1, FieldRef Source2, Integer Periods, Name Alias = {});
  Result CORREL(DataRef data, FieldRef Source1, FieldRef Source2, Integer Periods, Name Alias = {});
  Result LINEARREG(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result LINEARREG_SLOPE(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result LINEARREG_INTERCEPT(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result LINEARREG_ANGLE(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result TSF(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result ZSCORE(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result PERCENTRANK(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result MIN(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result MAX(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result MININDEX(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result MAXINDEX(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  Result SUM(DataRef data, FieldRef Source, Integer Periods, Name Alias = {});
  /// @}

  /// @name Cycles (cycles.cpp)
  /// @{
  Result HT_DCPERIOD(DataRef data, FieldRef Source, Name Alias = {});
  Result HT_DCPHASE(DataRef data, FieldRef Source, Name Alias = {});
  Result HT_PHASOR(DataRef data, FieldRef Source, Name Alias = {});
  Result HT_SINE(DataRef data, FieldRef Source, Name Alias = {});
  Result HT_TRENDMODE(DataRef data, FieldRef Source, Name Alias = {});
  Result HT_TRENDLINE(DataRef data, FieldRef Source, Name Alias = {});
  /// @}

  /// @name Patterns (patterns.cpp)
  /// @{
  Result CANDLE(DataRef data, SetRef OHLCV, Integer Pattern, Name Alias = {});
  /// A note of the record, of how many patterns end there and of their names, each with its signal. The note alone is
  /// given: there is no `Alias`.
  std::shared_ptr<Note> CANDLES(DataRef data, SetRef OHLCV, Integer Period);
  /// @}

  /// @name Prices (prices.cpp)
  /// @{
  Result AVGPRICE(DataRef data, SetRef OHLCV, Name Alias = {});
  Result MEDPRICE(DataRef data, SetRef OHLCV, Name Alias = {});
  Result TYPPRICE(DataRef data, SetRef OHLCV, Name Alias = {});
  Result WCLPRICE(DataRef data, SetRef OHLCV, Name Alias = {});
  Result HEIKIN_ASHI(DataRef data, SetRef OHLCV, Name Alias = {});
  /// @}
};

}  // namespace orvex::inline ORVEX_COUNTS
