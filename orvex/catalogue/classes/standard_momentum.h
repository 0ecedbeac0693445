#pragma once

#include <tuple>

#include "orvex/catalogue/classes/standard_directional.h"
#include "orvex/catalogue/classes/standard_rows.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

inline constexpr std::string_view AveragesRow =
    "max(lookback(MA_Type, FastPeriods), lookback(MA_Type, SlowPeriods)) + 1";
inline constexpr std::string_view ConvergenceRow = "max(FastPeriods, SlowPeriods) + SignalPeriods - 1";
inline constexpr std::string_view ExtendedRow =
    "max(lookback(FastMA_Type, FastPeriods), lookback(SlowMA_Type, SlowPeriods)) + lookback(SignalMA_Type, "
    "SignalPeriods) + 1";
inline constexpr std::string_view SlowStochasticRow =
    "KPeriods + lookback(KMA_Type, KSlowingPeriods) + lookback(DMA_Type, DPeriods)";
inline constexpr std::string_view FastStochasticRow = "KPeriods + lookback(DMA_Type, DPeriods)";
inline constexpr std::string_view StrengthStochasticRow = "Periods + KPeriods + lookback(DMA_Type, DPeriods)";

inline constexpr auto standardMomentum = std::tuple{
    entry<"APO", &Standard::APO>(
        {.help = "The difference of a faster and a slower average.",
         .arguments = {Source, fastPeriods(12), slowPeriods(26), standardAverage("MA_Type", 1)},
         .columns = {below("", AveragesRow, "The difference.", SourceUnit)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.talib = "APO", .tulip = "apo"},
         .guide = {.formula =
                       "fast average - slow average; the one of more records is the slow one, however they are given",
                   .reading = "Above 0 the short trend is up; it turns before the averages cross.",
                   .origin = "Common to the field."},
         .levels = {0}}),
    entry<"PPO", &Standard::PPO>(
        {.help = "The difference of a faster and a slower average in percent of the slower.",
         .arguments = {Source, fastPeriods(12), slowPeriods(26), standardAverage("MA_Type", 1)},
         .columns = {below("", AveragesRow, "The difference.", PercentUnit)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Oscillator.PriceOscillator", .talib = "PPO", .tulip = "ppo"},
         .guide = {.formula = "100 x (fast - slow) / slow, 0 where slow is 0; the one of more records is the slow one",
                   .reading = "As APO, comparable between markets.",
                   .origin = "Common to the field."},
         .levels = {0}}),
    entry<"BOP", &Standard::BOP>({.help = "How much of a bar's range lies between its open and its close.",
                                  .arguments = {OHLCV},
                                  .columns = {below("", "1", "The balance.", {}, {-1, 1})},
                                  .purpose = Purpose::Momentum,
                                  .elsewhere = {.talib = "BOP", .tulip = "bop"},
                                  .guide = {.formula = "(Close - Open) / (High - Low), 0 without a range",
                                            .reading = "Above 0 buyers had the better of the bar.",
                                            .origin = "Igor Livshin, Stocks & Commodities, August 2001."},
                                  .levels = {0}}),
    entry<"CCI", &Standard::CCI>(
        {.help = "How many mean deviations the typical price is away from its mean.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "Periods", "The index.")},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Index.CommodityChannelIndex", .talib = "CCI", .tulip = "cci"},
         .guide = {.formula =
                       "(p - mean of p) / (0.015 x mean distance of p from that mean), p = (High + Low + Close) / "
                       "3, over Periods records; 0 where all p are equal",
                   .reading = "Beyond 100 or -100 the price is unusually far from its mean: a trend, or too far gone.",
                   .origin = "Donald Lambert, Commodities, October 1980.",
                   .difference = "Equal prices give 0, where a running mean leaves its rounding to be divided."},
         .levels = {-100, 100}}),
    entry<"CMO", &Standard::CMO>(
        {.help = "The rises less the falls as a share of both, averaged after Wilder.",
         .arguments = {Source, Periods.usually(14)},
         .columns = {below("", "Periods + 1", "The oscillator.", PercentUnit, {-100, 100})},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Oscillator.CMO", .talib = "CMO", .tulip = "cmo"},
         .guide =
             {.formula =
                  "100 x (rises - falls) / (rises + falls), each Wilder's average of Periods; 0 without a move, and a "
                  "record that does not move keeps the row before",
              .reading = "Beyond 50 or -50 a move is far gone.",
              .origin = "Tushar Chande and Stanley Kroll, The New Technical Trader, 1994, who sum the moves "
                        "without smoothing; the field's libraries smooth them."},
         .levels = {-50, 50}}),
    entry<"RSI", &Standard::RSI>(
        {.help = "The rises as a share of all moves, averaged after Wilder.",
         .arguments = {Source, Periods.usually(14)},
         .columns = {below("", "Periods + 1", "The index.", PercentUnit, Percents)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Index.RelativeStrengthIndex", .talib = "RSI", .tulip = "rsi"},
         .guide =
             {.formula =
                  "100 x rises / (rises + falls), each at first the mean of Periods moves, then ((Periods - 1) "
                  "x the mean before + the move) / Periods; 0 without a move, and a record that does not move keeps "
                  "the row before",
              .reading = "Above 70 the price has risen fast and may rest, below 30 it has fallen fast; in a strong "
                         "trend it stays there.",
              .origin = NewConcepts},
         .levels = {30, 70}}),
    entry<"MACD", &Standard::MACD>(
        {.help = "The difference of two exponential averages, its average, and their difference.",
         .arguments = {Source, fastPeriods(12), slowPeriods(26), signalPeriods(9)},
         .columns = {below("", ConvergenceRow, "The difference of the averages.", SourceUnit),
                     below(Standard::SignalSuffix, ConvergenceRow, "Its exponential average.", SourceUnit),
                     below(Standard::HistogramSuffix, ConvergenceRow, "The line less the signal.", SourceUnit, {},
                           Style::Bars)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Oscillator.MACD", .talib = "MACD", .tulip = "macd"},
         .guide = {.formula =
                       "MACD = EMA(FastPeriods) - EMA(SlowPeriods), both begun at row SlowPeriods from the means of "
                       "the records that they cover there; Signal = EMA(SignalPeriods) of MACD",
                   .reading = "A cross above the signal is bought, one below it sold; the bars show the cross coming.",
                   .origin = "Gerald Appel, 1970s; the bars Thomas Aspray, 1986."},
         .levels = {0}}),
    entry<"MACDEXT", &Standard::MACDEXT>(
        {.help = "The same with averages of any kind.",
         .arguments = {Source, fastPeriods(12), standardAverage("FastMA_Type"), slowPeriods(26),
                       standardAverage("SlowMA_Type"), signalPeriods(9), standardAverage("SignalMA_Type")},
         .columns = {below("", ExtendedRow, "The difference of the averages.", SourceUnit),
                     below(Standard::SignalSuffix, ExtendedRow, "Its average.", SourceUnit),
                     below(Standard::HistogramSuffix, ExtendedRow, "The line less the signal.", SourceUnit, {},
                           Style::Bars)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.talib = "MACDEXT"},
         .guide = {.formula =
                       "MACD = fast average - slow average, both begun at the later one's first row; Signal = the "
                       "average of MACD",
                   .reading = "As MACD.",
                   .origin = "After Gerald Appel."},
         .levels = {0}}),
    entry<"MOM", &Standard::MOM>({.help = "The move over the last records.",
                                  .arguments = {Source, Periods.usually(10)},
                                  .columns = {below("", "Periods + 1", "The move.", SourceUnit)},
                                  .purpose = Purpose::Momentum,
                                  .elsewhere = {.house = "Oscillator.Momentum", .talib = "MOM", .tulip = "mom"},
                                  .guide = {.formula = "Source(r) - Source(r - Periods)",
                                            .reading = "Above 0 and rising, a trend gains speed.",
                                            .origin = "Common to the field."},
                                  .levels = {0}}),
    entry<"ROC", &Standard::ROC>(
        {.help = "The move over the last records in percent.",
         .arguments = {Source, Periods.usually(10)},
         .columns = {below("", "Periods + 1", "The rate.", PercentUnit)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "General.PriceROC", .talib = "ROC"},
         .guide = {.formula = "100 x (Source(r) - Source(r - Periods)) / Source(r - Periods), 0 where that is 0",
                   .reading = "As MOM, comparable between markets.",
                   .origin = "Common to the field."},
         .levels = {0}}),
    entry<"ROCP", &Standard::ROCP>(
        {.help = "The move over the last records as a share.",
         .arguments = {Source, Periods.usually(10)},
         .columns = {below("", "Periods + 1", "The rate.")},
         .purpose = Purpose::Momentum,
         .elsewhere = {.talib = "ROCP", .tulip = "roc"},
         .guide = {.formula = "(Source(r) - Source(r - Periods)) / Source(r - Periods), 0 where that is 0",
                   .reading = "As ROC.",
                   .origin = "Common to the field."},
         .levels = {0}}),
    entry<"ROCR", &Standard::ROCR>({.help = "The value as a multiple of an older one.",
                                    .arguments = {Source, Periods.usually(10)},
                                    .columns = {below("", "Periods + 1", "The ratio.")},
                                    .purpose = Purpose::Momentum,
                                    .elsewhere = {.talib = "ROCR", .tulip = "rocr"},
                                    .guide = {.formula = "Source(r) / Source(r - Periods), 0 where that is 0",
                                              .reading = "As ROC, with 1 for no move.",
                                              .origin = "Common to the field."},
                                    .levels = {1}}),
    entry<"STOCH", &Standard::STOCH>(
        {.help = "Where the close stands between lowest low and highest high, smoothed, and its average.",
         .arguments = {OHLCV, count("KPeriods", "How many records highest and lowest are taken from.", 5),
                       count("KSlowingPeriods", "How many records %K is averaged over.", 3),
                       standardAverage("KMA_Type"), count("DPeriods", "How many records %D is averaged over.", 3),
                       standardAverage("DMA_Type")},
         .columns = {below(Standard::KSuffix, SlowStochasticRow, "The smoothed place.", PercentUnit, Percents),
                     below(Standard::DSuffix, SlowStochasticRow, "Its average.", PercentUnit, Percents)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Oscillator.StochasticOscillator", .talib = "STOCH", .tulip = "stoch"},
         .guide = {.formula =
                       "%K = the average of 100 x ((Close - min Low) / (max High - min Low)), 0 without a range; %D = "
                       "the average of %K. Both are shown from the first %D on",
                   .reading =
                       "Above 80 the close is near the highs, below 20 near the lows; a cross of %K and %D there "
                       "is a signal.",
                   .origin = "George Lane, 1950s."},
         .levels = {20, 80}}),
    entry<"STOCHF", &Standard::STOCHF>(
        {.help = "Where the close stands between lowest low and highest high, and its average.",
         .arguments = {OHLCV, count("KPeriods", "How many records highest and lowest are taken from.", 5),
                       count("DPeriods", "How many records %D is averaged over.", 3), standardAverage("DMA_Type")},
         .columns = {below(Standard::KSuffix, FastStochasticRow, "The place.", PercentUnit, Percents),
                     below(Standard::DSuffix, FastStochasticRow, "Its average.", PercentUnit, Percents)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.talib = "STOCHF"},
         .guide = {.formula =
                       "%K = 100 x ((Close - min Low) / (max High - min Low)), 0 without a range; %D = the average of "
                       "%K. Both are shown from the first %D on",
                   .reading = "As STOCH, with more turns.",
                   .origin = "George Lane, 1950s."},
         .levels = {20, 80}}),
    entry<"StochRSI", &Standard::StochRSI>(
        {.help = "Where the RSI stands in its own range, and its average.",
         .arguments = {Source, Periods.usually(14),
                       count("KPeriods", "How many records highest and lowest are taken from.", 5),
                       count("DPeriods", "How many records %D is averaged over.", 3), standardAverage("DMA_Type")},
         .columns = {below(Standard::KSuffix, StrengthStochasticRow, "The place.", PercentUnit, Percents),
                     below(Standard::DSuffix, StrengthStochasticRow, "Its average.", PercentUnit, Percents)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Oscillator.StochRSI", .talib = "STOCHRSI", .tulip = "stochrsi"},
         .guide = {.formula =
                       "%K = 100 x ((RSI - min RSI) / (max RSI - min RSI)) over KPeriods records, 0 without a range; "
                       "%D = the average of %K",
                   .reading = "As STOCH, of the RSI: it turns often and goes to the ends.",
                   .origin = "Tushar Chande and Stanley Kroll, The New Technical Trader, 1994."},
         .levels = {20, 80}}),
    entry<"TRIX", &Standard::TRIX>(
        {.help = "The change of a triple exponential average, in percent.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {below("", "3 * Periods - 1", "The change.", PercentUnit)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Oscillator.TRIX", .talib = "TRIX", .tulip = "trix"},
         .guide = {.formula = "ROC over 1 record of EMA of EMA of EMA",
                   .reading = "A cross of 0 is a change of trend, with small moves filtered out.",
                   .origin = "Jack Hutson, Stocks & Commodities, 1983."},
         .levels = {0}}),
    entry<"ULTOSC", &Standard::ULTOSC>(
        {.help = "Buying pressure over three cycles, the shortest weighted 4, the next 2, the longest 1.",
         .arguments = {OHLCV, count("Cycle1", "How many records a cycle covers.", 7),
                       count("Cycle2", "How many records a cycle covers.", 14),
                       count("Cycle3", "How many records a cycle covers.", 28)},
         .columns = {below("", "max(Cycle1, Cycle2, Cycle3) + 1", "The oscillator.", PercentUnit, Percents)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Oscillator.UltimateOscillator", .talib = "ULTOSC", .tulip = "ultosc"},
         .guide = {.formula =
                       "100 x (4 s1 + 2 s2 + s3) / 7, s = the sum of Close - min(Low, Close before) / the sum of the "
                       "true range over a cycle, 0 without a range; the shortest cycle is the first",
                   .reading = "Above 70 or below 30 a move is far gone; a divergence from the price there is a signal.",
                   .origin = "Larry Williams, Stocks & Commodities, August 1985."},
         .levels = {30, 70}}),
    entry<"WILLR", &Standard::WILLR>(
        {.help = "How far the close stands below the highest high, -100 to 0.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "Periods", "The place.", PercentUnit, {-100, 0})},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Oscillator.WilliamsPctR", .talib = "WILLR", .tulip = "willr"},
         .guide = {.formula =
                       "-100 x ((max High - Close) / (max High - min Low)) over Periods records, 0 without a range",
                   .reading = "Above -20 the close is near the highs, below -80 near the lows.",
                   .origin = "Larry Williams, How I Made One Million Dollars, 1973."},
         .levels = {-80, -20}}),
    entry<"TSI", &Standard::TSI>(
        {.help = "The twice smoothed moves as a share of the twice smoothed sizes of the moves.",
         .arguments = {Source, count("FirstPeriods", "How many records the first smoothing covers.", 25),
                       count("SecondPeriods", "How many records the second smoothing covers.", 13)},
         .columns = {below("", "FirstPeriods + SecondPeriods", "The index.", PercentUnit, {-100, 100})},
         .purpose = Purpose::Momentum,
         .elsewhere = {.talib = "TSI"},
         .guide = {.formula = "100 x EMA(EMA(m)) / EMA(EMA(|m|)), m = Source(r) - Source(r - 1); 0 without a move",
                   .reading = "Above 0 the trend is up; turns and crosses of 0 are signals.",
                   .origin = "William Blau, Stocks & Commodities, November 1991."},
         .levels = {0}}),
    entry<"KST", &Standard::KST>(
        {.help = "Four smoothed rates of change in one, and its average.",
         .arguments = {Source, signalPeriods(9)},
         .columns = {below("", "45", "The sum.", PercentUnit),
                     below(Standard::SignalSuffix, "44 + SignalPeriods", "Its simple average.", PercentUnit)},
         .purpose = Purpose::Momentum,
         .guide = {.formula = "SMA(10) of ROC(10) + 2 x SMA(10) of ROC(15) + 3 x SMA(10) of ROC(20) + 4 x SMA(15) of "
                              "ROC(30)",
                   .reading = "Moves of several lengths together; a cross of its average is a signal.",
                   .origin = "Martin Pring, Stocks & Commodities, September 1992."},
         .levels = {0}}),
    entry<"COPPOCK", &Standard::COPPOCK>(
        {.help = "A weighted average of two rates of change added.",
         .arguments = {Source, Periods.usually(10), fastPeriods(11), slowPeriods(14)},
         .columns = {below("", "max(FastPeriods, SlowPeriods) + Periods", "The curve.", PercentUnit)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.talib = "COPPOCK"},
         .guide = {.formula = "WMA(Periods) of ROC(FastPeriods) + ROC(SlowPeriods)",
                   .reading = "On months: bought when it turns up below 0.",
                   .origin = "Edwin Coppock, Barron's, October 1962."},
         .levels = {0}}),
    entry<"FISHER", &Standard::FISHER>(
        {.help = "The place of the bar's middle in its range, bent so that its turns stand out.",
         .arguments = {OHLCV, Periods.usually(9)},
         .columns = {below("", "Periods", "The transform."),
                     below(Standard::SignalSuffix, "Periods", "The transform of the record before.")},
         .purpose = Purpose::Momentum,
         .elsewhere = {.tulip = "fisher"},
         .guide = {.formula =
                       "v = 0.66 x ((p - min p) / (max p - min p) - 0.5) + 0.67 x v before, held within 0.999 where "
                       "beyond 0.99; row r = 0.5 x log((1 + v) / (1 - v)) + 0.5 x the row before; p = (High + "
                       "Low) / 2, both from 0; without a range 0.001 stands for it",
                   .reading = "A cross of the transform and its signal beyond 1.5 is a turn.",
                   .origin = "John Ehlers, Stocks & Commodities, November 2002."},
         .levels = {-1.5, 1.5}}),
    entry<"AO", &Standard::AO>(
        {.help = "The difference of two simple averages of the bars' middles.",
         .arguments = {OHLCV, fastPeriods(5), slowPeriods(34)},
         .columns = {below("", "max(FastPeriods, SlowPeriods)", "The difference.", PriceUnit, {}, Style::Bars)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.talib = "AO", .tulip = "ao"},
         .guide = {.formula = "SMA(FastPeriods) - SMA(SlowPeriods) of (High + Low) / 2",
                   .reading = "A cross of 0, and a turn that does not reach it, are signals.",
                   .origin = "Bill Williams, New Trading Dimensions, 1998."},
         .levels = {0}}),
    entry<"QSTICK", &Standard::QSTICK>(
        {.help = "The mean of the bodies of the last bars.",
         .arguments = {OHLCV, Periods.usually(10)},
         .columns = {below("", "Periods", "The mean.", PriceUnit)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.talib = "QSTICK", .tulip = "qstick"},
         .guide = {.formula = "SMA of Close - Open",
                   .reading = "Above 0 buyers have prevailed.",
                   .origin = "Tushar Chande and Stanley Kroll, The New Technical Trader, 1994."},
         .levels = {0}}),
    entry<"ELDER_RAY", &Standard::ELDER_RAY>(
        {.help = "How far the high and the low stand from an exponential average of the close.",
         .arguments = {OHLCV, Periods.usually(13)},
         .columns = {below(Standard::BullSuffix, "Periods", "High less average.", PriceUnit, {}, Style::Bars),
                     below(Standard::BearSuffix, "Periods", "Low less average.", PriceUnit, {}, Style::Bars)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.talib = "ERI"},
         .abbreviations = {"ERI"},
         .guide = {.formula = "Bull = High - EMA of Close, Bear = Low - EMA of Close",
                   .reading = "With a rising average, a Bear below 0 that rises is bought.",
                   .origin = "Alexander Elder, Trading for a Living, 1993."},
         .levels = {0}}),
    entry<"DPO", &Standard::DPO>(
        {.help = "An earlier value less the average that has it in its middle.",
         .arguments = {Source, Periods.usually(20)},
         .columns = {below("", "max(Periods, Periods \\ 2 + 2)", "The difference.", SourceUnit)},
         .purpose = Purpose::Momentum,
         .elsewhere = {.house = "Oscillator.DetrendedPriceOscillator", .talib = "DPO", .tulip = "dpo"},
         .guide = {.formula = "Source(r - (Periods \\ 2 + 1)) - SMA(r)",
                   .reading = "Shows the cycles that are shorter than Periods; it tells of the past, not of now.",
                   .origin = "Common to the field."},
         .levels = {0}}),
    entry<"MASS", &Standard::MASS>(
        {.help = "How much the bars' ranges widen, summed.",
         .arguments = {OHLCV, count("FastPeriods", "How many records the averages cover.", 9),
                       count("SlowPeriods", "How many ratios are summed.", 25)},
         .columns = {below("", "2 * FastPeriods + SlowPeriods - 2", "The index.")},
         .purpose = Purpose::Volatility,
         .elsewhere = {.house = "Index.MassIndex", .talib = "MASSI", .tulip = "mass"},
         .guide = {.formula =
                       "the sum over SlowPeriods records of EMA(FastPeriods) of High - Low / the EMA of that EMA, 1 "
                       "where that is 0",
                   .reading = "Above 27 and back below 26.5: a turn of the trend is near, whichever it is.",
                   .origin = "Donald Dorsey, Stocks & Commodities, June 1992."},
         .levels = {26.5, 27}}),
    entry<"CRSI", &Standard::CRSI>(
        {.help = "The mean of a short RSI, the RSI of the run of rises or falls, and the rank of the latest move.",
         .arguments = {Source, Periods.usually(3), count("StreakPeriods", "The periods of the RSI of the runs.", 2),
                       count("RankPeriods", "How many moves the latest is compared with.", 100)},
         .columns = {below("", "max(Periods + 1, StreakPeriods + 1, RankPeriods + 2)", "The mean.", PercentUnit,
                           Percents)},
         .purpose = Purpose::Momentum,
         .guide = {.formula = "(RSI(Periods) of Source + RSI(StreakPeriods) of the run's length, below 0 for falls, 0 "
                              "without a move + PERCENTRANK(RankPeriods) of ROC(1)) / 3",
                   .reading = "Below 10 a fall is overdone, above 90 a rise.",
                   .origin = "Larry Connors and Cesar Alvarez, An Introduction to ConnorsRSI, 2012."},
         .levels = {10, 90}}),
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
