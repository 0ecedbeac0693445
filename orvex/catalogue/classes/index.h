#pragma once

#include <tuple>

#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"
#include "orvex/indices/index.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<Index> {
  static constexpr Identity identity{
      .name = "Index",
      .help = "Running totals of price and volume, and indices of strength and of money flow.",
      .header = "orvex/indices/index.h",
      .classId = Guid("881ac9d5-2cf1-4cac-8ea9-285e465e4a5d"),
      .interfaceId = Guid("eca7f72c-d721-4df8-b548-293ac184aa31"),
  };

  static constexpr Argument Volume{.name = "Volume", .help = "The column of volumes.", .usual = "Volume"};
  static constexpr Argument LimitMoveValue{.name = "LimitMoveValue",
                                           .help = "The most that the price can move in a period, above 0.",
                                           .usual = asExample(3)};

  static constexpr auto rows = std::tuple{
      row<&Index::OnBalanceVolume>(
          {.name = Index::OnBalanceVolumeName,
           .help = "The total of volume, added where the price rises and subtracted where it falls.",
           .arguments = {Data, Source, Volume, aliasOr(Index::OnBalanceVolumeName)},
           .columns = {{.firstRow = "2", .aliased = true, .help = "The total.", .unit = VolumeUnit}},
           .faults = {Index::OnBalanceVolumeFault},
           .purpose = Purpose::Volume,
           .abbreviations = {"OBV"},
           .guide = {.formula =
                         "row r = row (r - 1) + Volume(r) where Source rose, - Volume(r) where it fell; row 1 = 0",
                     .reading =
                         "A total that rises while the price does not is read as buying before a rise; one that falls "
                         "short of a new high of the price as a warning. Its direction counts, not its height.",
                     .origin = "Joseph Granville, Granville's New Key to Stock Market Profits, 1963.",
                     .difference = "It starts from 0; some programs start from the first volume. The heights differ by "
                                   "that, the shape does not.",
                     .fails = "where a value is not finite, and where the total leaves the range of a double"}}),
      row<&Index::PriceVolumeTrend>(
          {.name = Index::PriceVolumeTrendName,
           .help = "The total of volume in proportion to the price's move.",
           .arguments = {Data, Source, Volume, aliasOr(Index::PriceVolumeTrendName)},
           .columns = {{.firstRow = "2", .aliased = true, .help = "The total.", .unit = VolumeUnit}},
           .faults = {Index::PriceVolumeTrendFault},
           .purpose = Purpose::Volume,
           .abbreviations = {"PVT", "VPT"},
           .guide = {.formula =
                         "row r = row (r - 1) + (Source(r) - Source(r - 1)) / Source(r - 1) x Volume(r); row 1 = 0",
                     .reading = "As on balance volume, with large moves counting more than small ones.",
                     .origin = "The field's common form; no single author is known.",
                     .fails = "where Source has a value of 0 before another record, and where a value is not finite"}}),
      row<&Index::PositiveVolumeIndex>(
          {.name = Index::PositiveVolumeIndexName,
           .help = "From 1 on, follows the price on the records of rising volume.",
           .arguments = {Data, Source, Volume, aliasOr(Index::PositiveVolumeIndexName)},
           .columns = {{.firstRow = "1", .aliased = true, .help = "The index."}},
           .faults = {Index::PositiveVolumeIndexFault},
           .purpose = Purpose::Volume,
           .abbreviations = {"PVI"},
           .guide = {.formula = "row r = row (r - 1) x (1 + (Source(r) - Source(r - 1)) / Source(r - 1)) where "
                                "Volume(r) > Volume(r - 1), else row (r - 1); row 1 = 1",
                     .reading = "What the price does on busy days, when the crowd trades. Above its average of a year "
                                "it is read as a sign of a rising market.",
                     .origin = "Paul Dysart, 1930s; in this form Norman Fosback, Stock Market Logic, 1976.",
                     .difference = "It starts from 1, where others take 100 or 1,000.",
                     .fails = "where Source is 0 before a record of rising volume, and where a value is not finite"}}),
      row<&Index::NegativeVolumeIndex>(
          {.name = Index::NegativeVolumeIndexName,
           .help = "From 1 on, follows the price on the records of falling volume.",
           .arguments = {Data, Source, Volume, aliasOr(Index::NegativeVolumeIndexName)},
           .columns = {{.firstRow = "1", .aliased = true, .help = "The index."}},
           .faults = {Index::NegativeVolumeIndexFault},
           .purpose = Purpose::Volume,
           .abbreviations = {"NVI"},
           .guide = {.formula = "row r = row (r - 1) x (1 + (Source(r) - Source(r - 1)) / Source(r - 1)) where "
                                "Volume(r) < Volume(r - 1), else row (r - 1); row 1 = 1",
                     .reading = "What the price does on quiet days, when those trade who know. Fosback takes an index "
                                "above its average of a year for a rising market.",
                     .origin = "Paul Dysart, 1930s; in this form Norman Fosback, Stock Market Logic, 1976.",
                     .difference = "It starts from 1, where others take 100 or 1,000.",
                     .fails = "where Source is 0 before a record of falling volume, and where a value is not finite"}}),
      row<&Index::TradeVolumeIndex>(
          {.name = Index::TradeVolumeIndexName,
           .help = "The total of volume, added or subtracted by the direction of trade.",
           .arguments = {Data,
                         Source,
                         Volume,
                         {.name = "MinTickValue",
                          .help = "A move up to this size keeps the direction; 0 or more.",
                          .usual = asExample(0.05)},
                         aliasOr(Index::TradeVolumeIndexName)},
           .columns = {{.firstRow = "2", .aliased = true, .help = "The total.", .unit = VolumeUnit}},
           .faults = {Index::TradeVolumeIndexTickFault, Index::TradeVolumeIndexFault},
           .purpose = Purpose::Volume,
           .abbreviations = {"TVI"},
           .guide = {.formula = "row r = row (r - 1) + Volume(r) while the direction is up, - Volume(r) while it is "
                                "down; a move of more than MinTickValue sets the direction; row 1 = 0",
                     .reading = "Made for ticks: whether trades happen at the ask or at the bid. A rising index under "
                                "a flat price is read as buying.",
                     .origin = "The field's common form; no single author is known.",
                     .fails = "where a value is not finite, and where the total leaves the range of a double"}}),
      row<&Index::Performance>(
          {.name = Index::PerformanceName,
           .help = "The change since record 1, in percent.",
           .arguments = {Data, Source, aliasOr(Index::PerformanceName)},
           .columns = {{.firstRow = "2", .aliased = true, .help = "The change.", .unit = PercentUnit}},
           .faults = {Index::PerformanceFault},
           .purpose = Purpose::Price,
           .guide = {.formula = "row r = (Source(r) - Source(1)) / Source(1) x 100",
                     .reading =
                         "What a holder since the first record has gained. Two markets in one picture compare by it.",
                     .origin = "The field's common form; no single author.",
                     .fails = "where the first value is 0"},
           .levels = {0}}),
      row<&Index::ComparativeRelativeStrength>(
          {.name = Index::ComparativeRelativeStrengthName,
           .help = "One column divided by another; -987654321 where both are equal.",
           .arguments = {Data,
                         {.name = "Source1", .help = "The column to measure.", .usual = "Close"},
                         {.name = "Source2", .help = "The column to measure it by.", .usual = asExample("Open")},
                         aliasOr(Index::ComparativeRelativeStrengthName)},
           .columns = {{.firstRow = "1", .aliased = true, .help = "The ratio; -987654321 where both are equal."}},
           .faults = {Index::ComparativeRelativeStrengthFault},
           .purpose = Purpose::Trend,
           .guide = {.formula = "row r = Source1(r) / Source2(r), -987654321 where they are equal",
                     .reading = "A rising line: the first market does better than the second. Its direction counts, "
                                "not its height.",
                     .origin = "The field's common form; no single author.",
                     .difference = "Where both columns are equal it is not 1 but the mark -987654321. Take those rows "
                                   "out before averaging or drawing it.",
                     .fails = "where Source2 is 0"}}),
      row<&Index::SwingIndex>(
          {.name = Index::SwingIndexName,
           .help = "Wilder's rating of a record's move against the record before.",
           .arguments = {Data, OHLCV, LimitMoveValue, aliasOr(Index::SwingIndexName)},
           .columns = {{.firstRow = "2", .aliased = true, .help = "The rating."}},
           .faults = {faults::ObjectNotSet, Index::SwingIndexLimitFault, Index::SwingIndexFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"SI"},
           .guide = {.formula = "with O, H, L, C of record r, Oy and Cy of the one before and K = the larger of |H - "
                                "Cy| and |L - Cy|: row r = 50 x ((C - Cy) + (C - O) / 2 + (Cy - Oy) / 4) / R x K / "
                                "LimitMoveValue, R being Wilder's measure of the range",
                     .reading = "What a record's open, high, low and close say together: above 0 strength, below 0 "
                                "weakness. It is drawn as its running total.",
                     .origin = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978.",
                     .difference = "Where the two distances and the range tie for the largest, R stays that of the "
                                   "record before. The rating is not held within -100 and 100: it leaves them where "
                                   "the price moves by more than LimitMoveValue.",
                     .fails = "where a price is missing or not finite"},
           .levels = {0}}),
      row<&Index::AccumulativeSwingIndex>(
          {.name = Index::AccumulativeSwingIndexName,
           .help = "The running total of the swing index.",
           .arguments = {Data, OHLCV, LimitMoveValue, aliasOr(Index::AccumulativeSwingIndexName)},
           .columns = {{.firstRow = "2", .aliased = true, .help = "The total."}},
           .faults = {faults::ObjectNotSet, Index::AccumulativeSwingIndexLimitFault, Index::SwingIndexFault,
                      Index::AccumulativeSwingIndexFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"ASI"},
           .guide = {.formula = "row r = row (r - 1) + the swing index of record r; row 1 = 0",
                     .reading =
                         "A price line without noise: a trendline broken in it confirms one broken in the price.",
                     .origin = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978.",
                     .difference = "That of the swing index.",
                     .fails = "where a price is missing or not finite"}}),
      row<&Index::MassIndex>(
          {.name = Index::MassIndexName,
           .help = "The sum of the averaged range over its own average: a widening range raises it.",
           .arguments = {Data, OHLCV, Periods.usually(25), aliasOr(Index::MassIndexName)},
           .columns = {{.firstRow = "max(2 * Periods, Periods + 18)",
                        .aliased = true,
                        .help = "The sum, near Periods.",
                        .bounds = {.low = 0}}},
           .faults = {Index::MassIndexFault},
           .purpose = Purpose::Volatility,
           .abbreviations = {"MASS"},
           .guide = {.formula = "row r = e1(r - Periods + 1) / e2(r - Periods + 1) + ... + e1(r) / e2(r); e1 the "
                                "exponential average of High - Low over 9 records, e2 that of e1",
                     .reading = "Dorsey's reversal bulge: over 25 records, a rise above 27 and then a fall below 26.5 "
                                "announces a turn, whatever its direction.",
                     .origin = "Donald Dorsey, The Mass Index, Technical Analysis of Stocks & Commodities, June 1992.",
                     .difference = "The second average takes the zeros before the first one for values, so both settle "
                                   "later than the book's; where it is 0 the sum ends, and what it reached goes into "
                                   "the row before. The seed of the averages is the house's.",
                     .fails = "where Periods is below 1 or above N / 2, and where there are fewer than 10 records"},
           .levels = {26.5, 27},
           .recomputed = true}),
      row<&Index::ChaikinMoneyFlow>(
          {.name = Index::ChaikinMoneyFlowName,
           .help = "Where prices close within their ranges, with volume.",
           .arguments = {Data, OHLCV, Periods.usually(21), aliasOr(Index::ChaikinMoneyFlowName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .help = "The flow; of equal volumes -Periods^2 to Periods^2, of unequal ones beyond."}},
           .faults = {Index::ChaikinMoneyFlowFault},
           .purpose = Purpose::Volume,
           .abbreviations = {"CMF"},
           .guide =
               {.formula = "flow x (total of Volume), with flow = the sum of ((Close - Low) - (High - Close)) / "
                           "((High - Low) x Volume) over the Periods records that end at r; a record without a "
                           "range or a volume adds nothing",
                .reading = "Above 0 mostly the quiet records close in the upper half of their ranges. Sign and "
                           "direction can be read; volumes that are all doubled change nothing.",
                .origin = "Orvex's own, under the name of Marc Chaikin's indicator of the 1980s.",
                .difference =
                    "Chaikin multiplies each record's place in its range by its volume and divides the sum by the "
                    "total volume: -1 to 1. Here each place is divided by its volume and the total multiplies, so "
                    "that quiet records count most: another indicator. The first row is Periods + 1, one later than it "
                    "could be.",
                .fails = "where the total volume of Periods records is 0 (a file without volumes), and where "
                         "Periods is below 1 or above N"},
           .levels = {0}}),
      row<&Index::RelativeStrengthIndex>(
          {.name = Index::RelativeStrengthIndexName,
           .help = "Wilder's share of the rises in all movement, in percent.",
           .arguments = {Data, Source, Periods.usually(14), aliasOr(Index::RelativeStrengthIndexName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .help = "The index.",
                        .unit = PercentUnit,
                        .bounds = {0, 100}}},
           .faults = {Index::RelativeStrengthIndexPeriodsFault, Index::RelativeStrengthIndexFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"RSI"},
           .guide =
               {.formula =
                    "row r = 100 x mean rise / (mean rise + mean fall), 50 where both are 0; the means begin as those "
                    "of the first Periods moves and go on as (mean x (Periods - 1) + the record's rise or fall) / "
                    "Periods",
                .reading = "Above 70 a market is called overbought, below 30 oversold; in a strong trend it stays "
                           "there for long. A new high of the price without one of the index is Wilder's warning of a "
                           "turn. The fewer Periods, the wider it swings; Wilder took 14.",
                .origin = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978.",
                .difference =
                    "The values are Wilder's. Without a fall his formula divides by 0; here that is 100, and 50 "
                    "where nothing moved.",
                .fails = "where a value is not finite"},
           .levels = {30, 70}}),
      row<&Index::MoneyFlowIndex>(
          {.name = Index::MoneyFlowIndexName,
           .help = "The share of the money that flowed at rising prices, in percent.",
           .arguments = {Data, OHLCV, Periods.usually(14), aliasOr(Index::MoneyFlowIndexName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .help = "The index.",
                        .unit = PercentUnit,
                        .bounds = {0, 100}}},
           .faults = {faults::ObjectNotSet, Index::MoneyFlowIndexPeriodsFault, Index::MoneyFlowIndexFault},
           .purpose = Purpose::Volume,
           .abbreviations = {"MFI"},
           .guide = {.formula = "row r = 100 x rising / (rising + falling), the sums of typical price x Volume over "
                                "the Periods records whose typical price rose, fell; 50 where both are 0",
                     .reading = "A strength index that counts money instead of moves: above 80 overbought, below 20 "
                                "oversold, and doubtful where it does not confirm the price.",
                     .origin = "Gene Quong and Avrum Soudack, Technical Analysis of Stocks & Commodities, 1989.",
                     .difference = "The values are the authors'; 50 where no money flowed.",
                     .fails = "where a price or a volume is missing or not finite"},
           .levels = {20, 80}}),
      row<&Index::CommodityChannelIndex>(
          {.name = Index::CommodityChannelIndexName,
           .help = "How far the typical price is from its average, in mean deviations.",
           .arguments = {Data, OHLCV, Periods.usually(20), MA_Type, aliasOr(Index::CommodityChannelIndexName)},
           .columns = {{.firstRow = AverageRow, .aliased = true, .help = "The distance."}},
           .faults = {faults::ObjectNotSet, Index::CommodityChannelIndexPeriodsFault,
                      Index::CommodityChannelIndexAverageFault, Index::CommodityChannelIndexFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"CCI"},
           .guide = {.formula = "row r = (t(r) - m(r)) / (0.015 x d), t = (High + Low + Close) / 3, m its average, d "
                                "the mean of |t(r - Periods + 1) - m(r)| .. |t(r) - m(r)|; 0 where d is 0",
                     .reading = "Most values lie within -100 and 100. Lambert bought above 100 and sold when it came "
                                "back; others take the same values for overbought and oversold.",
                     .origin = "Donald Lambert, Commodities, October 1980.",
                     .difference = "With the simple average the values are Lambert's; the first row is Periods + 1, "
                                   "one later than it could be. Flat prices give 0.",
                     .fails = "where the average fails: too few records for it, or a value that is not finite"},
           .levels = {-100, 100}}),
      row<&Index::StochasticMomentumIndex>(
          {.name = "StochasticMomentumIndex",
           .help = "Where the close is within the range of the last records, smoothed twice.",
           .arguments =
               {Data,
                OHLCV,
                {.name = "KPeriods", .help = "How many records the range covers.", .usual = 13},
                {.name = "KSmoothing", .help = "The records of the first smoothing; none below 2.", .usual = 25},
                {.name = "KDoubleSmoothing", .help = "The records of the second smoothing; none below 2.", .usual = 2},
                {.name = "DPeriods", .help = "The records of the average of %K.", .usual = 9},
                MA_Type.usually(2)},
           .columns = {{.name = Index::PercentKName,
                        .firstRow = "KPeriods + choose(KSmoothing < 2, 0, average(MA_Type, KSmoothing) - 1) + "
                                    "choose(KDoubleSmoothing < 2, 0, "
                                    "average(MA_Type, KDoubleSmoothing) - 1)",
                        .help = "The place of the close.",
                        .unit = PercentUnit,
                        .bounds = {-100, 100}},
                       {.name = Index::PercentDName,
                        .firstRow = "KPeriods + choose(KSmoothing < 2, 0, average(MA_Type, KSmoothing) - 1) + "
                                    "choose(KDoubleSmoothing < 2, 0, "
                                    "average(MA_Type, KDoubleSmoothing) - 1) + average(MA_Type, DPeriods) - 1",
                        .help = "The average of %K.",
                        .unit = PercentUnit,
                        .bounds = {-100, 100}}},
           .faults = {faults::ObjectNotSet, Index::StochasticMomentumIndexPeriodsFault,
                      Index::StochasticMomentumIndexAverageFault, Index::StochasticMomentumIndexFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"SMI"},
           .guide =
               {.formula = "%K = 100 x momentum / (range / 2), momentum = Close - the middle of the KPeriods records, "
                           "range = their highest High - lowest Low, each averaged over KSmoothing and again over "
                           "KDoubleSmoothing records; %D = the average of %K over DPeriods",
                .reading = "A smoother stochastic with 0 in its middle: above 40 strong, below -40 weak, and %K "
                           "crossing %D as the signal.",
                .origin =
                    "William Blau, Stochastic Momentum, Technical Analysis of Stocks & Commodities, January 1993.",
                .difference = "With exponential averages the definition is Blau's; the seeds and first rows of the "
                              "averages are the house's.",
                .fails = "where the series is too short for its averages, and where a value is not finite"},
           .levels = {-40, 40}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
