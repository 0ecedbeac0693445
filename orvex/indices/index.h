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

/// Indices: running totals of price and volume, and indices of strength and of money flow. Each method returns a set of
/// new columns of N rows, N being the record count of `data`; an empty `Alias` becomes the method's default name, in
/// the caller's variable too. Rows before the first computed one are 0 where nothing else is said.
///
/// The methods yield to the host once a record and leave the cursor of `data` on record 1. Whatever fault a computation
/// meets (a missing column, a row outside a column, a value that is not finite, a division by zero, an overflow) is the
/// method's error 1105; the cursor then stays where the fault left it.
///
/// Who published a method, how it is read and how it departs from what was published: orvex/catalogue/classes/index.h.
class Index {
 public:
  static constexpr std::string_view OnBalanceVolumeName = "OnBalanceVolume";
  static constexpr std::string_view PriceVolumeTrendName = "PriceVolumeTrend";
  static constexpr std::string_view PositiveVolumeIndexName = "PositiveVolumeIndex";
  static constexpr std::string_view NegativeVolumeIndexName = "NegativeVolumeIndex";
  static constexpr std::string_view TradeVolumeIndexName = "TradeVolumeIndex";
  static constexpr std::string_view PerformanceName = "Performance";
  static constexpr std::string_view ComparativeRelativeStrengthName = "ComparativeRelativeStrength";
  static constexpr std::string_view SwingIndexName = "SwingIndex";
  static constexpr std::string_view AccumulativeSwingIndexName = "AccumulativeSwingIndex";
  static constexpr std::string_view MassIndexName = "MassIndex";
  static constexpr std::string_view ChaikinMoneyFlowName = "ChaikinMoneyFlow";
  static constexpr std::string_view RelativeStrengthIndexName = "RelativeStrengthIndex";
  static constexpr std::string_view MoneyFlowIndexName = "MoneyFlowIndex";
  static constexpr std::string_view CommodityChannelIndexName = "CommodityChannelIndex";
  static constexpr std::string_view PercentKName = "%K";
  static constexpr std::string_view PercentDName = "%D";

  /// What `ComparativeRelativeStrength` stores where the two columns are equal.
  static constexpr double EqualStrength = -987654321;

  static constexpr Fault OnBalanceVolumeFault = unexpectedError("Index.OnBalanceVolume.UnexpectedError");
  static constexpr Fault PriceVolumeTrendFault = unexpectedError("Index.PriceVolumeTrend.UnexpectedError");
  static constexpr Fault PositiveVolumeIndexFault = unexpectedError("Index.PositiveVolumeIndex.UnexpectedError");
  static constexpr Fault NegativeVolumeIndexFault = unexpectedError("Index.NegativeVolumeIndex.UnexpectedError");
  static constexpr Fault TradeVolumeIndexFault = unexpectedError("Index.TradeVolumeIndex.UnexpectedError");
  static constexpr Fault PerformanceFault = unexpectedError("Index.Performance.UnexpectedError");
  static constexpr Fault ComparativeRelativeStrengthFault =
      unexpectedError("Index.ComparativeRelativeStrength.UnexpectedError");
  static constexpr Fault SwingIndexFault = unexpectedError("Index.SwingIndex.UnexpectedError");
  static constexpr Fault AccumulativeSwingIndexFault = unexpectedError("Index.AccumulativeSwingIndex.UnexpectedError");
  static constexpr Fault MassIndexFault = unexpectedError("Index.MassIndex.UnexpectedError");
  static constexpr Fault ChaikinMoneyFlowFault = unexpectedError("Index.ChaikinMoneyFlow.UnexpectedError");
  /// The spelling is the published one.
  static constexpr Fault RelativeStrengthIndexFault = unexpectedError("Index.RelativeStrenghIndex.UnexpectedError");
  static constexpr Fault MoneyFlowIndexFault = unexpectedError("Index.MoneyFlowIndex.UnexpectedError");
  static constexpr Fault CommodityChannelIndexFault = unexpectedError("Index.CommodityChannelIndex.UnexpectedError");
  static constexpr Fault StochasticMomentumIndexFault =
      unexpectedError("Index.StochasticMomentumIndex.UnexpectedError");

  static constexpr Fault TradeVolumeIndexTickFault{1107, "Index.TradeVolumeIndex", "Invalid MinTickValue"};
  static constexpr Fault SwingIndexLimitFault{1108, "Index.SwingIndex", "Invalid LimitMoveValue"};
  static constexpr Fault AccumulativeSwingIndexLimitFault{1108, "Index.AccumulativeSwingIndex",
                                                          "Invalid LimitMoveValue"};
  static constexpr Fault RelativeStrengthIndexPeriodsFault = invalidPeriods("Index.RelativeStrengthIndex");
  /// Raised inside the trap, which makes 1105 of it.
  static constexpr Fault MassIndexPeriodsFault = invalidPeriods("Index.MassIndex");
  static constexpr Fault MoneyFlowIndexPeriodsFault = invalidPeriods("Index.MoneyFlowIndex");
  static constexpr Fault CommodityChannelIndexPeriodsFault = invalidPeriods("Index.CommodityChannelIndex");
  static constexpr Fault StochasticMomentumIndexPeriodsFault = invalidPeriods("Index.StochasticMomentumIndex");
  static constexpr Fault CommodityChannelIndexAverageFault = invalidAverageType("Index.CommodityChannelIndex");
  static constexpr Fault StochasticMomentumIndexAverageFault = invalidAverageType("Index.StochasticMomentumIndex");

  /// A running total of volume: row r = row (r - 1) + Volume(r) where Source(r) > Source(r - 1), row (r - 1) -
  /// Volume(r) where it is below, row (r - 1) where both are equal; row 1 is 0. In units of volume. Computed rows: 2 to
  /// N. Error 1105 for any fault.
  std::shared_ptr<RecordSet> OnBalanceVolume(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                             std::shared_ptr<Field> Volume, InOut<std::string> Alias = {});

  /// A running total of volume in proportion to the move: row r = (Source(r) - Source(r - 1)) / Source(r - 1) x
  /// Volume(r) + row (r - 1); row 1 is 0. In units of volume. Computed rows: 2 to N. Error 1105 for any fault, a price
  /// of 0 to move from among them.
  std::shared_ptr<RecordSet> PriceVolumeTrend(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                              std::shared_ptr<Field> Volume, InOut<std::string> Alias = {});

  /// A price index that moves on the records of rising volume only: row r = (Source(r) - Source(r - 1)) / Source(r - 1)
  /// x row (r - 1) + row (r - 1) where Volume(r) > Volume(r - 1), else row (r - 1). Row 1 is 1. Computed rows: 1 to N.
  /// Error 1105 for any fault, a price of 0 that it would move from among them.
  std::shared_ptr<RecordSet> PositiveVolumeIndex(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                 std::shared_ptr<Field> Volume, InOut<std::string> Alias = {});

  /// The same for the records of falling volume: it moves where Volume(r) < Volume(r - 1).
  std::shared_ptr<RecordSet> NegativeVolumeIndex(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                 std::shared_ptr<Field> Volume, InOut<std::string> Alias = {});

  /// A running total of volume by the direction of trade: with the move m = Source(r) - Source(r - 1) the direction
  /// becomes up where m > `MinTickValue`, down where m < -`MinTickValue`, and otherwise stays what it was; Volume(r) is
  /// added while it is up and subtracted while it is down. Before the first move beyond the tick there is no direction,
  /// and the total stays 0. In units of volume. Computed rows: 2 to N. Errors: 1107 "Invalid MinTickValue" for one
  /// below 0, which reaches the caller directly; 1105 for any other fault.
  std::shared_ptr<RecordSet> TradeVolumeIndex(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                              std::shared_ptr<Field> Volume, double MinTickValue,
                                              InOut<std::string> Alias = {});

  /// How far a column has come since record 1, in percent: row r = (Source(r) - Source(1)) / Source(1) x 100. Computed
  /// rows: 2 to N. Error 1105 for any fault, a first price of 0 among them (unless there is no other record).
  std::shared_ptr<RecordSet> Performance(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                         InOut<std::string> Alias = {});

  /// One column as a multiple of another: row r = Source1(r) / Source2(r). A ratio of exactly 1 is stored as
  /// `EqualStrength`, -987,654,321: a marker of equal columns that callers look for. Computed rows: 1 to N. Error 1105
  /// for any fault, a 0 in `Source2` among them.
  std::shared_ptr<RecordSet> ComparativeRelativeStrength(std::shared_ptr<Database> data, std::shared_ptr<Field> Source1,
                                                         std::shared_ptr<Field> Source2, InOut<std::string> Alias = {});

  /// How strong a record's move is against the record before. With O, H, L, C of record r, Oy and Cy of the one before,
  /// A = |H - Cy|, B = |L - Cy|, D = |H - L|, K = the larger of A and B, and M = `LimitMoveValue`, the most that a
  /// price can move in a period:
  ///   R = A - 0.5 x B + 0.25 x |Cy - Oy| where A is above both others, B - 0.5 x A + 0.25 x |Cy - Oy| where B is,
  ///       D + 0.25 x |Cy - Oy| where D is
  ///   row r = 50 x ((C - Cy) + 0.5 x (C - O) + 0.25 x (Cy - Oy)) / R x K / M, 0 where R <= 0
  /// Where the largest of A, B and D is tied, R stays what it was on the record before (0 at first). The result is not
  /// limited to -100..100. Computed rows: 2 to N. Errors: 1108 "Invalid LimitMoveValue" for one of 0 or below and 91
  /// for no `data` reach the caller directly; 1105 for any other fault.
  std::shared_ptr<RecordSet> SwingIndex(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                        double LimitMoveValue, InOut<std::string> Alias = {});

  /// The running total of the swing index from record 2 on; row 1 is 0. Computed rows: 2 to N. Errors: as `SwingIndex`,
  /// and its 1105 for the fault of a swing index reaches the caller as it is.
  std::shared_ptr<RecordSet> AccumulativeSwingIndex(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                    double LimitMoveValue, InOut<std::string> Alias = {});

  /// How much wider the ranges have become: the sum over `Periods` records of the exponential average of High - Low
  /// over 9 records, divided by the exponential average of that average over 9 records. With P = `Periods` and e1, e2
  /// the averages,
  ///   row r = e1(r - P + 1) / e2(r - P + 1) + ... + e1(r) / e2(r), oldest first, from r = 2P on.
  /// The second average begins with the first one's warm-up zeros. Where e2 is 0, and so in its first nine records, the
  /// sum ends, and it goes into the row before that record instead of row r. A pure number, near P.
  /// Computed rows: from 2P, or P + 18 where that is later, to N. Error 1105 for any fault: `Periods` below 1, above N
  /// or above N / 2, or fewer than 10 records among them.
  std::shared_ptr<RecordSet> MassIndex(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                       Integer Periods, InOut<std::string> Alias = {});

  /// Where prices close within their ranges, over `Periods` records, with volume. With the sums over the records
  /// r, r - 1, ..., r - `Periods` + 1 in this order,
  ///   flow = sum of ((Close - Low) - (High - Close)) / ((High - Low) x Volume), of the records where neither is 0
  ///   row r = (sum of Volume) x (sum of Volume) x (flow / (sum of Volume))
  /// A pure number. Computed rows: `Periods` + 1 to N. The cursor is left alone. Error 1105 for any fault, a total
  /// volume of 0 among them.
  std::shared_ptr<RecordSet> ChaikinMoneyFlow(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                              Integer Periods, InOut<std::string> Alias = {});

  /// How much of the movement of a column is upward, in percent. With P = `Periods`, the rise of a record being
  /// max(Source(r) - Source(r - 1), 0) and its fall max(Source(r - 1) - Source(r), 0), the mean rise and the mean fall
  /// begin as the sums over the first P moves, oldest first, / P and go on as (mean x (P - 1) + the record's) / P;
  ///   row r = (100 x mean rise) / (mean rise + mean fall), 50 where both are 0.
  /// Computed rows: P + 1 to N, none for P >= N, which gives a column of 0. Errors: 1101 "Invalid Periods" for P below
  /// 1, which reaches the caller directly; 1105 for any other fault.
  std::shared_ptr<RecordSet> RelativeStrengthIndex(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                   Integer Periods, InOut<std::string> Alias = {});

  /// A strength index of the money that changed hands. With the typical price (High + Low + Close) / 3 and the flow of
  /// a record, typical price x Volume, row r = (100 x rising) / (rising + falling), the sums of the flows of the
  /// records r - `Periods` + 1.. r whose typical price is above, below that of the record before; flows of an unchanged
  /// price count in neither. 50 where both sums are 0, 0 where only their total is. Computed rows: `Periods` + 1 to N.
  /// Errors: 1101 "Invalid Periods" outside 1..N and 91 for no `data` reach the caller directly; 1105 for any other
  /// fault.
  std::shared_ptr<RecordSet> MoneyFlowIndex(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                            Integer Periods, InOut<std::string> Alias = {});

  /// How far the typical price t = (High + Low + Close) / 3 is from its average m of the code `MA_Type`, in units of
  /// its mean deviation d = (|t(r - P + 1) - m(r)| + ... + |t(r) - m(r)|) / P, with P = `Periods`:
  ///   row r = (t(r) - m(r)) / (0.015 x d), 0 where d is 0 or those P typical prices are all equal.
  /// Computed rows: those of the average, from P + 1 on for code 1, to N. Errors: 1101 "Invalid Periods" outside 1..N,
  /// 1100 "Invalid Moving Average Type" outside 1..7 and 91 for no `data` reach the caller directly; 1105 for any other
  /// fault, that of the average included.
  std::shared_ptr<RecordSet> CommodityChannelIndex(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                   Integer Periods, Integer MA_Type, InOut<std::string> Alias = {});

  /// Where the close is within the range of `KPeriods` records, -100 to 100, both smoothed twice. Over these records,
  /// with momentum = Close - (highest High + lowest Low) / 2 and range = highest High - lowest Low, each averaged by
  /// the code `MA_Type` over `KSmoothing` records and the result over `KDoubleSmoothing` (a smoothing below 2 is none),
  ///   "%K" = (100 x momentum) / (range / 2), 0 where the divisor is 0
  ///   "%D" = the average of "%K" over `DPeriods` records
  /// An average here begins with the first computed value of what it averages. Computed rows, with A(P) the first row
  /// of an average over P records (P + 1 for codes 1, 2 and 6) and A = 1 for a smoothing that is none: "%K" from
  /// `KPeriods` + A(`KSmoothing`) + A(`KDoubleSmoothing`) - 2, "%D" A(`DPeriods`) - 1 records later, to N. Errors: 1101
  /// "Invalid Periods" for `KPeriods` or `DPeriods` outside 1..N, 1100 "Invalid Moving Average Type" outside 1..7 and
  /// 91 for no `data` reach the caller directly; 1105 for any other fault, that of an average included, which a series
  /// too short for its averages meets.
  std::shared_ptr<RecordSet> StochasticMomentumIndex(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                     Integer KPeriods, Integer KSmoothing, Integer KDoubleSmoothing,
                                                     Integer DPeriods, Integer MA_Type);
};

}  // namespace orvex::inline ORVEX_COUNTS
