#pragma once

#include <tuple>

#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"
#include "orvex/oscillators/oscillator.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<Oscillator> {
  static constexpr Identity identity{
      .name = "Oscillator",
      .help = "Measures of range, trend, momentum and overbought prices.",
      .header = "orvex/oscillators/oscillator.h",
      .classId = Guid("3144037b-7d7c-48d8-b8b4-3e13505b3a58"),
      .interfaceId = Guid("53aff887-9c6b-46de-b988-5089829b9d3f"),
  };

  static constexpr Argument ShortCycle{
      .name = "ShortCycle", .help = "How many records the shorter average covers.", .usual = 12};
  static constexpr Argument LongCycle{
      .name = "LongCycle", .help = "How many records the longer average covers.", .usual = 26};

  /// The first rows that both of two averages have.
  static constexpr std::string_view CyclesRow = "max(average(MA_Type, ShortCycle), average(MA_Type, LongCycle))";

  static constexpr auto rows = std::tuple{
      row<&Oscillator::TrueRange>(
          {.name = "TrueRange",
           .help = "The largest of high - low and of the distances to the close before.",
           .arguments = {Data, OHLCV, aliasOr(Oscillator::TrueRangeName)},
           .columns =
               {{.firstRow = "2", .aliased = true, .help = "The range.", .unit = PriceUnit, .bounds = {.low = 0}}},
           .faults = {Oscillator::TrueRangeFault},
           .purpose = Purpose::Volatility,
           .abbreviations = {"TR", "TRANGE"},
           .guide =
               {.formula =
                    "row r = the largest of High(r) - Low(r), |High(r) - Close(r - 1)| and |Close(r - 1) - Low(r)|",
                .reading = "The range of a record with the gap before it: what holding overnight risks.",
                .origin = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978.",
                .difference = "The values are Wilder's; the first record, which has no close before it, has none.",
                .fails = "where a price is missing or not finite"}}),
      row<&Oscillator::AverageTrueRange>(
          {.name = "AverageTrueRange",
           .help = "The simple average of the true range.",
           .arguments = {Data,
                         OHLCV,
                         aliasOr(Oscillator::AverageTrueRangeName),
                         {"Period",
                          "How many records the average covers.",
                          true,
                          {.number = Oscillator::AverageTrueRangePeriod}}},
           .columns = {{.firstRow = "Period + 1",
                        .aliased = true,
                        .help = "The average range.",
                        .unit = PriceUnit,
                        .bounds = {.low = 0}}},
           .faults = {Oscillator::AverageTrueRangeFault},
           .purpose = Purpose::Volatility,
           .abbreviations = {"ATR"},
           .guide =
               {.formula = "row r = the simple average of the true range over Period records",
                .reading = "The usual move of a market, in its own prices. Stops are set two or three of it away, and "
                           "positions sized by it.",
                .origin = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978.",
                .difference =
                    "Wilder smooths the range as his other averages: each new range counts 1 / Period, old ones fade "
                    "slowly. The simple average here forgets a range after Period records and moves in steps.",
                .fails = "where Period is below 1 or above N, and where a price is missing or not finite"}}),
      row<&Oscillator::DirectionalMovementSystem>(
          {.name = "DirectionalMovementSystem",
           .help = "How strong a trend is and which way it goes.",
           .arguments = {Data, OHLCV, Periods.usually(14)},
           .columns = {{.name = Oscillator::AverageIndexName,
                        .firstRow = "2 * Periods + 1",
                        .help = "How strong the trend is.",
                        .unit = PercentUnit,
                        .bounds = {0, 100}},
                       {.name = Oscillator::AverageIndexRatingName,
                        .firstRow = "2 * Periods + 2",
                        .help = "The mean of ADX and the one before.",
                        .unit = PercentUnit,
                        .bounds = {0, 100}},
                       {.name = Oscillator::DirectionalIndexName,
                        .firstRow = "2 * Periods + 1",
                        .help = "How far the directions are apart.",
                        .unit = PercentUnit,
                        .bounds = {0, 100}},
                       {.name = Oscillator::RangeSumName,
                        .firstRow = "2 * Periods + 1",
                        .help = "The average true range, smoothed once more.",
                        .unit = PriceUnit,
                        .bounds = {.low = 0},
                        .place = Place::Apart},
                       {.name = Oscillator::DownIndexName,
                        .firstRow = "2 * Periods + 1",
                        .help = "The falling direction.",
                        .unit = PercentUnit,
                        .bounds = {.low = 0}},
                       {.name = Oscillator::UpIndexName,
                        .firstRow = "2 * Periods + 1",
                        .help = "The rising direction.",
                        .unit = PercentUnit,
                        .bounds = {.low = 0}}},
           .faults = {Oscillator::DirectionalMovementSystemFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"DMS", "ADX", "DMI"},
           .guide = {.formula = "DI+ and DI- = the smoothed rises and falls x 100 / TRSum; DX = |DI- - DI+| / (DI- + "
                                "DI+) x 100; ADX = ((Periods - 1) x ADX(r - 1) + DX(r)) / Periods; ADXR = the mean of "
                                "ADX(r) and ADX(r - 1). The directions and DX are cut to whole numbers, ADX and ADXR "
                                "rounded; TRSum is the average true range, smoothed as the rises and falls are",
                     .reading = "ADX above 25 tells of a trend, below 20 of none; it does not tell which way. DI+ "
                                "above DI- is a rising market; their cross is Wilder's signal.",
                     .origin = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978.",
                     .difference = "All but TRSum are whole numbers. The range is averaged before it is smoothed. The "
                                   "smoothings climb from 0 at record 1 and ADX from 0 at record Periods, where Wilder "
                                   "begins with the first Periods values: of an ADX of 14 periods a third still lacks "
                                   "in its first row and a hundredth some 50 rows later. The rating looks one record "
                                   "back where his looks back Periods.",
                     .fails = "where Periods is below 1 or above N / 2, and where a price is missing or not finite"},
           .levels = {20, 25}}),
      row<&Oscillator::Aroon>(
          {.name = "Aroon",
           .help = "How long ago the highest high and the lowest low stand.",
           .arguments = {Data, OHLCV, Periods.usually(25)},
           .columns = {{.name = Oscillator::AroonUpName,
                        .firstRow = "Periods + 1",
                        .help = "100 of a highest high in the record itself, 0 of one Periods records ago.",
                        .unit = PercentUnit,
                        .bounds = {0, 100}},
                       {.name = Oscillator::AroonDownName,
                        .firstRow = "Periods + 1",
                        .help = "100 of a lowest low in the record itself, 0 of one Periods records ago.",
                        .unit = PercentUnit,
                        .bounds = {0, 100}},
                       {.name = Oscillator::AroonOscillatorName,
                        .firstRow = "Periods + 1",
                        .help = "Up less Down.",
                        .unit = PercentUnit,
                        .bounds = {-100, 100}}},
           .faults = {Oscillator::AroonFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"AROON", "AROONOSC"},
           .guide = {.formula = "Up = (Periods - records since the highest High of r - Periods .. r) / Periods x 100, "
                                "Down the same of the lowest Low, Oscillator = Up - Down",
                     .reading = "Up near 100 and Down near 0: a rising trend, which makes new highs. Both low: no "
                                "trend. Their cross comes early.",
                     .origin = "Tushar Chande, Technical Analysis of Stocks & Commodities, September 1995.",
                     .difference = "Of equal extremes that of the record itself counts, and otherwise the oldest; "
                                   "other programs take the newest.",
                     .fails = "where Periods is below 1, and where a price is missing or not finite"},
           .levels = {30, 70}}),
      row<&Oscillator::getDataSource>(
          {.name = "DataSource", .help = "The object that a host bound, or nothing.", .kind = Kind::PropertyGet}),
      row<&Oscillator::setDataSource>({.name = "DataSource",
                                       .help = "Binds an object; no computation looks at it.",
                                       .arguments = {{"NewSource", "The object."}},
                                       .kind = Kind::PropertyPutReference}),
      row<&Oscillator::getDataMember>(
          {.name = "DataMember", .help = "The name of a member that a host bound.", .kind = Kind::PropertyGet}),
      row<&Oscillator::setDataMember>({.name = "DataMember",
                                       .help = "Binds the name of a member; no computation looks at it.",
                                       .arguments = {{"NewMember", "The name."}},
                                       .kind = Kind::PropertyPut}),
      row<&Oscillator::StochasticOscillator>(
          {.name = "StochasticOscillator",
           .help = "Where the close stands between lowest low and highest high, and its average.",
           .arguments =
               {Data,
                OHLCV,
                {.name = "KPeriods", .help = "How many records highest and lowest are taken from.", .usual = 14},
                {.name = "KSlowingPeriods",
                 .help = "How many records %K is averaged over; below 2 it is not.",
                 .usual = 3},
                {.name = "DPeriods", .help = "How many records %D is averaged over.", .usual = 3},
                MA_Type},
           .columns =
               {{.name = Oscillator::PercentKName,
                 .firstRow =
                     "choose(KSlowingPeriods < 2, KPeriods + 1, average(MA_Type, KSlowingPeriods, KPeriods + 1))",
                 .help = "The place of the close, slowed.",
                 .unit = PercentUnit,
                 .bounds = {0, 100}},
                {.name = Oscillator::PercentDName,
                 .firstRow =
                     "average(MA_Type, DPeriods,"
                     " choose(KSlowingPeriods < 2, KPeriods + 1, average(MA_Type, KSlowingPeriods, KPeriods + 1)))",
                 .help = "The average of %K.",
                 .unit = PercentUnit,
                 .bounds = {0, 100}}},
           .faults = {Oscillator::StochasticOscillatorFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"STOCH", "KD"},
           .guide = {.formula = "%K = (Close - lowest Low) / (highest High - lowest Low) x 100 over KPeriods records, "
                                "averaged over KSlowingPeriods; %D = the average of %K over DPeriods",
                     .reading = "Above 80 the close is near the top of its range: overbought; below 20 oversold. %K "
                                "crossing %D gives the signal. It works best where there is no trend.",
                     .origin = "George Lane, Lane's Stochastics, Technical Analysis of Stocks & Commodities, 1984.",
                     .difference = "The averages take the zeros of the first records for values; computed rows lie "
                                   "behind them. The first %K is row KPeriods + 1, one later than it could be.",
                     .fails = "where the highest and the lowest price of a span are equal, and where a price is "
                              "missing or not finite"},
           .levels = {20, 80}}),
      row<&Oscillator::WilliamsPctR>(
          {.name = Oscillator::WilliamsPctRName,
           .help = "How far the close stands below the highest high, -100 to 0.",
           .arguments = {Data, OHLCV, Periods.usually(14), aliasOr(Oscillator::WilliamsPctRName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .lastRow = "N - 1",
                        .help = "The place of the close.",
                        .unit = PercentUnit,
                        .bounds = {-100, 0}}},
           .faults = {Oscillator::WilliamsPctRFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"%R", "WILLR", "WPR"},
           .guide = {.formula = "row r = (highest High - Close) / (highest High - lowest Low) x -100 over the Periods "
                                "records that end at r",
                     .reading = "Above -20 overbought, below -80 oversold: the unsmoothed %K of the stochastic, less "
                                "100.",
                     .origin = "Larry Williams, How I Made One Million Dollars, 1973.",
                     .difference = "The last record is never computed and holds 0, which is no reading: take the "
                                   "unsmoothed %K less 100 for it. The first row is Periods + 1, one later than it "
                                   "could be.",
                     .fails = "where the highest and the lowest price of a span are equal, and where a price is "
                              "missing or not finite"},
           .levels = {-80, -20}}),
      row<&Oscillator::StochRSI>(
          {.name = Oscillator::StochRSIName,
           .help = "Where the relative strength index stands in its own range, 0 to 1.",
           .arguments = {Data, Source, Periods.usually(14), aliasOr(Oscillator::StochRSIName)},
           .columns = {{.firstRow = "2 * Periods",
                        .aliased = true,
                        .help = "The place of the index in its range.",
                        .bounds = {0, 1}}},
           .faults = {Oscillator::StochRSIFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"STOCHRSI"},
           .guide =
               {.formula = "row r = (RSI - lowest RSI) / (highest RSI - lowest RSI) over Periods records, RSI = "
                           "Index.RelativeStrengthIndex over Periods",
                .reading =
                    "Above 0.8 overbought, below 0.2 oversold; it gets there far more often than the index itself.",
                .origin = "Tushar Chande and Stanley Kroll, The New Technical Trader, 1994.",
                .fails = "where the index is the same through a whole span, as in prices that only rise"},
           .levels = {0.2, 0.8}}),
      row<&Oscillator::UltimateOscillator>(
          {.name = Oscillator::UltimateOscillatorName,
           .help = "Buying pressure over three cycles, weighted 4, 2 and 1.",
           .arguments = {Data,
                         OHLCV,
                         {.name = "Cycle1", .help = "How many records the first cycle covers.", .usual = 7},
                         {.name = "Cycle2", .help = "How many records the second cycle covers.", .usual = 14},
                         {.name = "Cycle3", .help = "How many records the third cycle covers.", .usual = 28},
                         aliasOr(Oscillator::UltimateOscillatorName)},
           .columns = {{.firstRow = "max(Cycle1, Cycle2, Cycle3) + 1",
                        .aliased = true,
                        .help = "The weighted pressure.",
                        .unit = PercentUnit,
                        .bounds = {0, 100}}},
           .faults = {Oscillator::UltimateOscillatorFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"UO", "ULTOSC"},
           .guide =
               {.formula = "row r = (4 x p1 + 2 x p2 + p3) / 7 x 100, p = the sum of Close - min(Low, Close before) / "
                           "the sum of the true range, over Cycle1, Cycle2 and Cycle3 records",
                .reading = "Three lengths in one, so that it neither jumps nor lags. Williams buys when the price "
                           "makes a new low below 30 and the oscillator does not.",
                .origin = "Larry Williams, The Ultimate Oscillator, Technical Analysis of Stocks & Commodities, 1985, "
                          "with cycles of 7, 14 and 28.",
                .fails =
                    "where the price did not move through a whole cycle, and where a price is missing or not finite"},
           .levels = {30, 70}}),
      row<&Oscillator::ParabolicSAR>(
          {.name = Oscillator::ParabolicSARName,
           .help = "A stop level that follows a trend and turns with it.",
           .arguments =
               {Data,
                {.name = "HighPrice", .help = "The high prices.", .usual = "High"},
                {.name = "LowPrice", .help = "The low prices.", .usual = "Low"},
                {"MinAF",
                 "The first acceleration factor, and its step.",
                 true,
                 {.number = Oscillator::ParabolicSARMinAF}},
                {"MaxAF", "The factor grows while it is below this.", true, {.number = Oscillator::ParabolicSARMaxAF}},
                aliasOr(Oscillator::ParabolicSARName)},
           .columns = {{.firstRow = "2",
                        .aliased = true,
                        .help = "The stop level.",
                        .unit = PriceUnit,
                        .place = Place::Over,
                        .style = Style::Dots}},
           .faults = {Oscillator::ParabolicSARFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"SAR", "PSAR"},
           .guide =
               {.formula =
                    "SAR(r) = SAR(r - 1) + factor x (extreme - SAR(r - 1)); the factor begins at MinAF and grows by it "
                    "with each new extreme while it is below MaxAF; a price beyond the level turns the trend",
                .reading = "The level is the stop: below the price in a rise, above it in a fall. Where the price "
                           "touches it, the position is turned. In a sideways market it turns too often.",
                .origin = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978.",
                .difference = "Wilder holds the level outside the ranges of the last two records, stops the factor at "
                              "its limit, and reads the first trend from the record; here the level is not held back, "
                              "the factor may end one step above MaxAF, and the first trend is short where the low of "
                              "record 2 rose more than its high.",
                .fails = "where there are fewer than 2 records, and where a price is not finite"}}),
      row<&Oscillator::CMO>(
          {.name = Oscillator::CMOName,
           .help = "Rises less falls in percent of both, -100 to 100.",
           .arguments = {Data, Source, Periods.usually(14), aliasOr(Oscillator::CMOName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .help = "The net move.",
                        .unit = PercentUnit,
                        .bounds = {-100, 100}}},
           .faults = {Oscillator::CMOFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"CMO"},
           .guide =
               {.formula = "row r = 100 x (up - down) / (up + down), the sums of the rises and of the falls over "
                           "Periods records; 0 where nothing moved",
                .reading =
                    "Above 50 overbought, below -50 oversold; its distance from 0 tells how much of a trend there is.",
                .origin = "Tushar Chande and Stanley Kroll, The New Technical Trader, 1994.",
                .fails = "where a value is not finite"},
           .levels = {-50, 50}}),
      row<&Oscillator::Momentum>(
          {.name = Oscillator::MomentumName,
           .help = "The value in percent of the one Periods records back.",
           .arguments = {Data, Source, Periods.usually(10), aliasOr(Oscillator::MomentumName)},
           .columns = {{.firstRow = "Periods + 2",
                        .aliased = true,
                        .help = "The value against the earlier one.",
                        .unit = PercentUnit}},
           .faults = {Oscillator::MomentumFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"MOM"},
           .guide = {.formula = "row r = (Source(r) - Source(r - Periods)) / Source(r - Periods) x 100 + 100",
                     .reading = "Above 100 the price is higher than Periods records ago. A turn of the momentum often "
                                "comes before that of the price.",
                     .origin = "The field's common form; no single author.",
                     .difference = "Others call the plain difference momentum. The first row is Periods + 2, one later "
                                   "than the lag needs.",
                     .fails = "where the value Periods records back is 0, and where Periods is N or more"},
           .levels = {100}}),
      row<&Oscillator::VerticalHorizontalFilter>(
          {.name = Oscillator::VerticalHorizontalFilterName,
           .help = "How much of the way went in one direction, 0 to 1.",
           .arguments = {Data, Source, Periods.usually(28), aliasOr(Oscillator::VerticalHorizontalFilterName)},
           .columns = {{.firstRow = "Periods + 1", .aliased = true, .help = "The share.", .bounds = {0, 1}}},
           .faults = {Oscillator::VerticalHorizontalFilterFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"VHF"},
           .guide =
               {.formula =
                    "row r = |highest - lowest Source| / the sum of |Source(j) - Source(j - 1)| over Periods records",
                .reading =
                    "High or rising: a trend, for averages to follow. Low or falling: none, for oscillators to trade.",
                .origin = "Adam White, Futures, August 1991.",
                .fails = "where Source did not move through Periods records"}}),
      row<&Oscillator::LinearMomentumOscillator>(
          {.name = "LinearMomentumOscillator",
           .help = "How straight a line the Chande momentum oscillator follows, -100 to 100.",
           .arguments = {Data, Source, Periods.usually(14), aliasOr(Oscillator::LinearMomentumOscillatorName)},
           .columns = {{.firstRow = "2 * Periods",
                        .aliased = true,
                        .help = "How straight the line is.",
                        .unit = PercentUnit,
                        .bounds = {-100, 100}}},
           .faults = {Oscillator::LinearMomentumOscillatorFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"LMO"},
           .guide =
               {.formula = "row r = (q - 0.5) x 200, q = the r-squared of the line through the last Periods values of "
                           "the Chande momentum oscillator",
                .reading = "Near 100 momentum changes steadily, up or down; below 0 it has no direction.",
                .origin = "Orvex's own.",
                .fails =
                    "where Periods is below 2, above 181 where counts have 16 bits, and where a value is not finite"},
           .levels = {0}}),
      row<&Oscillator::WilliamsAccumulationDistribution>(
          {.name = Oscillator::WilliamsAccumulationDistributionName,
           .help = "The running sum of moves from true lows and true highs.",
           .arguments = {Data, OHLCV, aliasOr(Oscillator::WilliamsAccumulationDistributionName)},
           .columns = {{.firstRow = "2", .aliased = true, .help = "The total.", .unit = PriceUnit}},
           .faults = {Oscillator::WilliamsAccumulationDistributionFault},
           .purpose = Purpose::Volume,
           .abbreviations = {"WAD"},
           .guide = {.formula = "row r = row (r - 1) + Close(r) - min(Low(r), Close(r - 1)) where the close rose, + "
                                "Close(r) - max(High(r), Close(r - 1)) where it fell; row 1 = 0",
                     .reading =
                         "A new high of the price that the total does not confirm is read as distribution: sell; a new "
                         "low that it does not confirm as accumulation. In spite of its name it reads no volume.",
                     .origin = "Larry Williams, How I Made One Million Dollars, 1973.",
                     .fails = "where a price is missing or not finite"}}),
      row<&Oscillator::ChaikinVolatility>(
          {.name = Oscillator::ChaikinVolatilityName,
           .help = "The change of the averaged range over ROC records, in percent.",
           .arguments = {Data,
                         OHLCV,
                         Periods.usually(10),
                         {.name = "ROC", .help = "How many records the change goes back.", .usual = 10},
                         MA_Type.usually(2),
                         aliasOr(Oscillator::ChaikinVolatilityName)},
           .columns = {{.firstRow = "ROC + average(MA_Type, Periods)",
                        .aliased = true,
                        .help = "The change.",
                        .unit = PercentUnit}},
           .faults = {Oscillator::ChaikinVolatilityFault},
           .purpose = Purpose::Volatility,
           .abbreviations = {"CHV"},
           .guide = {.formula = "row r = (a(r) - a(r - ROC)) / a(r - ROC) x 100, a = the average of High - Low over "
                                "Periods records; 0 where a is 0 at either end",
                     .reading =
                         "A quick rise comes with panic near a low; a slow fall with a market that nears its top.",
                     .origin = "Marc Chaikin, 1980s.",
                     .difference =
                         "Chaikin takes the exponential average over 10 records; here any average may be chosen.",
                     .fails = "where the average fails: too few records for it, or a value that is not finite"},
           .levels = {0}}),
      row<&Oscillator::EaseOfMovement>(
          {.name = Oscillator::EaseOfMovementName,
           .help = "The average move of the bar's middle for the volume that it took.",
           .arguments = {Data, OHLCV, Periods.usually(14), MA_Type, aliasOr(Oscillator::EaseOfMovementName)},
           .columns = {{.firstRow = "average(MA_Type, Periods, 2)",
                        .aliased = true,
                        .help = "The ease; its size follows those of prices and volumes."}},
           .faults = {Oscillator::EaseOfMovementFault},
           .purpose = Purpose::Volume,
           .abbreviations = {"EMV", "EOM"},
           .guide =
               {.formula = "the average over Periods records of move / (Volume / (High - Low)) x 10000, move = the "
                           "change of (High + Low) / 2; 0 for a record without a range",
                .reading = "High above 0: the price rises on little volume, with ease. Near 0: much volume for little "
                           "movement.",
                .origin = "Richard W. Arms, Volume Cycles in the Stock Market, 1983.",
                .difference =
                    "The constant 10000 is the house's; each program has its own, so only signs and shapes compare.",
                .fails = "where the volume of a record with a range is 0 (a file without volumes)"},
           .levels = {0}}),
      row<&Oscillator::ChaosFractalOscillator>(
          {.name = "ChaosFractalOscillator",
           .help = "1 for a high above the four before, -1 for a low below the four before.",
           .arguments = {Data,
                         OHLCV,
                         {.name = "Periods", .help = "Without effect; below 1 it becomes 100.", .usual = 5}},
           .columns = {{.name = Oscillator::ChaosFractalOscillatorName,
                        .firstRow = "5",
                        .help = "The mark.",
                        .bounds = {-1, 1},
                        .place = Place::Over,
                        .style = Style::Marks}},
           .faults = {Oscillator::ChaosFractalOscillatorFault},
           .purpose = Purpose::Pattern,
           .guide = {.formula = "-1 where Low(r) is below the lows of the four records before, else 1 where High(r) is "
                                "above their highs, else 0",
                     .reading = "1 tells of a new high and -1 of a new low among five records.",
                     .origin = "After Bill Williams, Trading Chaos, 1995.",
                     .difference =
                         "A fractal of Williams has two records on either side and shows two records late. Here all "
                         "four lie before it, so it marks every small breakout. Periods has no effect.",
                     .fails = "where a price is missing or not finite"}}),
      row<&Oscillator::PrimeNumberOscillator>(
          {.name = "PrimeNumberOscillator",
           .help = "The distance to the nearest prime number.",
           .arguments = {Data, Source, aliasOr(Oscillator::PrimeNumberOscillatorName)},
           .columns = {{.firstRow = "1", .aliased = true, .help = "The distance."}},
           .faults = {Oscillator::PrimeNumberOscillatorFault},
           .purpose = Purpose::Statistics,
           .guide = {.formula = "row r = v - the prime number nearest to v, v = Source cut to a whole number, and 10 "
                                "times it below 10",
                     .reading = "For play: no study supports it.",
                     .origin = "Orvex's own.",
                     .fails = "where Source does not fit a whole number of 32 bits"},
           .levels = {0}}),
      row<&Oscillator::PriceOscillator>(
          {.name = Oscillator::PriceOscillatorName,
           .help = "The difference of two averages in percent of the longer.",
           .arguments = {Data, Source, ShortCycle, LongCycle, MA_Type.usually(2),
                         aliasOr(Oscillator::PriceOscillatorName)},
           .columns = {{.firstRow = CyclesRow, .aliased = true, .help = "The difference.", .unit = PercentUnit}},
           .faults = {Oscillator::PriceOscillatorPeriodsFault, Oscillator::PriceOscillatorAverageFault,
                      Oscillator::PriceOscillatorFault, faults::ObjectNotSet},
           .purpose = Purpose::Momentum,
           .abbreviations = {"PPO"},
           .guide = {.formula = "row r = (short - long) / long x 100, the averages over ShortCycle and LongCycle "
                                "records; 0 where long is 0",
                     .reading = "Above 0 the short average is above the long one: a rise. MACD in percent, so that "
                                "markets of different prices compare.",
                     .origin = "The field's common form; no single author.",
                     .difference = "That of the average which is chosen.",
                     .fails = "where an average fails: too few records for it, or a value that is not finite"},
           .levels = {0}}),
      row<&Oscillator::MACD>(
          {.name = Oscillator::MACDName,
           .help = "The difference of two exponential averages, its average, and their difference.",
           .arguments = {Data,
                         Source,
                         ShortCycle,
                         LongCycle,
                         {.name = "SignalPeriods", .help = "How many records the signal covers.", .usual = 9},
                         aliasOr(Oscillator::MACDName)},
           .columns = {{.firstRow = "max(ShortCycle, LongCycle) + 1",
                        .aliased = true,
                        .help = "The difference of the averages.",
                        .unit = SourceUnit},
                       {.name = Oscillator::MACDSignalSuffix,
                        .firstRow = "max(ShortCycle, LongCycle) + 1 + SignalPeriods",
                        .aliased = true,
                        .help = "The average of that difference.",
                        .unit = SourceUnit},
                       {.name = Oscillator::MACDHistogramSuffix,
                        .firstRow = "max(ShortCycle, LongCycle) + 1 + SignalPeriods",
                        .aliased = true,
                        .help = "The line less the signal.",
                        .unit = SourceUnit,
                        .style = Style::Bars}},
           .faults = {Oscillator::MACDPeriodsFault, Oscillator::MACDFault, faults::ObjectNotSet},
           .purpose = Purpose::Momentum,
           .abbreviations = {"MACD"},
           .guide = {.formula = "the exponential average over ShortCycle records less that over LongCycle; Signal = "
                                "its exponential average over SignalPeriods; Histogram = the line - Signal",
                     .reading =
                         "A rise of the line above its signal is taken for a buy, a fall below it for a sell; above 0 "
                         "the trend is up. A histogram that shrinks warns of the cross. 12, 26 and 9 are Appel's.",
                     .origin = "Gerald Appel, The Moving Average Convergence-Divergence Trading Method, 1979; the "
                               "histogram: Thomas Aspray, 1986.",
                     .difference = "As with MovingAverage.ExponentialMovingAverage the averages begin with another "
                                   "value, and first rows one record later. A seventh of that is left after LongCycle "
                                   "records more, less than a hundredth after three times as many.",
                     .fails = "where the series is too short for the averages, and where a value is not finite"},
           .levels = {0}}),
      row<&Oscillator::VolumeOscillator>(
          {.name = Oscillator::VolumeOscillatorName,
           .help = "The difference of two averages of the volume in percent of the longer.",
           .arguments = {Data,
                         {.name = "Volume", .help = "The volumes.", .usual = "Volume"},
                         ShortCycle,
                         LongCycle,
                         MA_Type.usually(2),
                         aliasOr(Oscillator::VolumeOscillatorName)},
           .columns = {{.firstRow = CyclesRow, .aliased = true, .help = "The difference.", .unit = PercentUnit}},
           .faults = {Oscillator::VolumeOscillatorPeriodsFault, Oscillator::VolumeOscillatorAverageFault,
                      Oscillator::VolumeOscillatorFault, faults::ObjectNotSet},
           .purpose = Purpose::Volume,
           .abbreviations = {"PVO", "VO"},
           .guide = {.formula = "row r = (short - long) / long x 100, the averages of Volume over ShortCycle and "
                                "LongCycle records; 0 where long is 0",
                     .reading = "Above 0 volume is growing. A move of the price with growing volume is trusted more.",
                     .origin = "The field's common form; no single author.",
                     .difference = "That of the average which is chosen.",
                     .fails = "where an average fails: too few records for it, or a value that is not finite"},
           .levels = {0}}),
      row<&Oscillator::DetrendedPriceOscillator>(
          {.name = Oscillator::DetrendedPriceOscillatorName,
           .help = "An earlier value less the average around it.",
           .arguments = {Data, Source, Periods.usually(20), MA_Type, aliasOr(Oscillator::DetrendedPriceOscillatorName)},
           .columns =
               {{.firstRow = AverageRow, .aliased = true, .help = "The price without its trend.", .unit = SourceUnit}},
           .faults = {Oscillator::DetrendedPriceOscillatorPeriodsFault,
                      Oscillator::DetrendedPriceOscillatorAverageFault, Oscillator::DetrendedPriceOscillatorFault,
                      faults::ObjectNotSet},
           .purpose = Purpose::Momentum,
           .abbreviations = {"DPO"},
           .guide = {.formula = "row r = Source(r - (Periods \\ 2 + 1)) - the average over Periods records",
                     .reading = "The swings of the price without its trend: how long and how high they are. It looks "
                                "back on purpose, and gives no signal for today.",
                     .origin = "The field's common form; no single author.",
                     .difference = "None but the average's first row, one record later than it could be.",
                     .fails = "where the average fails: too few records for it, or a value that is not finite"},
           .levels = {0}}),
      row<&Oscillator::TRIX>(
          {.name = Oscillator::TRIXName,
           .help = "The change of a triple exponential average, in percent.",
           .arguments = {Data, Source, Periods.usually(15), aliasOr(Oscillator::TRIXName)},
           .columns = {{.firstRow = "3 * Periods + 2", .aliased = true, .help = "The change.", .unit = PercentUnit}},
           .faults = {Oscillator::TRIXPeriodsFault, Oscillator::TRIXFault, faults::ObjectNotSet},
           .purpose = Purpose::Momentum,
           .abbreviations = {"TRIX"},
           .guide = {.formula = "row r = (e(r) - e(r - 1)) / e(r - 1) x 100, e = the exponential average over Periods "
                                "records, taken three times; 0 where e is 0",
                     .reading = "Above 0 the smoothed price rises. Short swings are gone from it, so its few turns are "
                                "taken seriously.",
                     .origin = "Jack Hutson, Technical Analysis of Stocks & Commodities, 1983.",
                     .difference = "Hutson averages the logarithm of the price, and multiplies its change by 10,000. "
                                   "Each of the three averages has the house's seed.",
                     .fails = "where the series is too short for the averages, and where a value is not finite"},
           .levels = {0}}),
      row<&Oscillator::GoldenDeathCross>(
          {.name = Oscillator::GoldenDeathCrossName,
           .help = "1 where the short average crosses above the long one, -1 below it.",
           .arguments = {Data,
                         Source,
                         {.name = "ShortPeriods", .help = "How many records the shorter average covers.", .usual = 50},
                         {.name = "LongPeriods", .help = "How many records the longer average covers.", .usual = 200},
                         MA_Type,
                         aliasOr(Oscillator::GoldenDeathCrossName)},
           .columns = {{.firstRow = "max(average(MA_Type, ShortPeriods), average(MA_Type, LongPeriods)) + 1",
                        .aliased = true,
                        .help = "The cross.",
                        .bounds = {-1, 1},
                        .place = Place::Over,
                        .style = Style::Marks}},
           .faults = {Oscillator::GoldenDeathCrossPeriodsFault, Oscillator::GoldenDeathCrossAverageFault,
                      Oscillator::GoldenDeathCrossFault, faults::ObjectNotSet},
           .purpose = Purpose::Trend,
           .guide = {.formula = "1 where the average over ShortPeriods crosses above that over LongPeriods, -1 where "
                                "it crosses below, else 0",
                     .reading = "The cross of the 50 and the 200 day averages: golden upwards, the death cross "
                                "downwards. It comes weeks after the turn.",
                     .origin = "The field's common signal; no single author.",
                     .difference = "That of the average which is chosen.",
                     .fails = "where an average fails: too few records for it, or a value that is not finite"}}),
      row<&Oscillator::RainbowOscillator>(
          {.name = Oscillator::RainbowOscillatorName,
           .help = "Where the value stands among averages of averages, and how wide they are.",
           .arguments = {Data,
                         Source,
                         {.name = "Levels", .help = "How many averages there are.", .usual = 10},
                         MA_Type,
                         aliasOr(Oscillator::RainbowOscillatorName)},
           .columns = {{.firstRow = "Levels * (average(MA_Type, 2) - 1) + 1",
                        .aliased = true,
                        .help = "The place of the value.",
                        .unit = PercentUnit},
                       {.name = Oscillator::RainbowUpperName,
                        .firstRow = "Levels * (average(MA_Type, 2) - 1) + 1",
                        .help = "The width of the averages.",
                        .unit = PercentUnit,
                        .bounds = {.low = 0},
                        .style = Style::BandEdge},
                       {.name = Oscillator::RainbowLowerName,
                        .firstRow = "Levels * (average(MA_Type, 2) - 1) + 1",
                        .help = "The same, below 0.",
                        .unit = PercentUnit,
                        .bounds = {.high = 0},
                        .style = Style::BandEdge}},
           .faults = {Oscillator::RainbowOscillatorPeriodsFault, Oscillator::RainbowOscillatorAverageFault,
                      Oscillator::RainbowOscillatorFault, faults::ObjectNotSet},
           .purpose = Purpose::Trend,
           .abbreviations = {"RAINBOW"},
           .guide = {.formula = "row r = 100 x (Source - the mean of Levels averages) / range, the first of Source "
                                "over 2 records, each further one of the one before; Upper = 100 x (largest - smallest "
                                "average) / range, Lower = -Upper; range = highest - lowest Source of Levels records",
                     .reading = "Far from 0 the price has left its averages; a wide rainbow tells of a trend, a narrow "
                                "one of a turn.",
                     .origin = "Mel Widner, Rainbow Charts, Technical Analysis of Stocks & Commodities, July 1997.",
                     .difference = "Widner takes simple averages (code 1).",
                     .fails = "where an average fails: too few records for it, or a value that is not finite"},
           .levels = {0}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
