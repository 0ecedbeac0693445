#pragma once

#include <tuple>

#include "orvex/catalogue/classes/standard_rows.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

/// Fibonacci's levels are three.
inline constexpr std::string_view FourthLevelEnd = "choose(PivotKind < 1, N, choose(PivotKind < 2, 0, N))";

inline constexpr auto standardBands = std::tuple{
    entry<"BBANDS", &Standard::BBANDS>(
        {.help = "An average, and standard deviations above and below it.",
         .arguments = {Source, Periods.usually(20),
                       factor("UpperDeviations", "How many standard deviations the upper band is away.", 2),
                       factor("LowerDeviations", "How many standard deviations the lower band is away.", 2),
                       standardAverage()},
         .columns = {over(Standard::UpperSuffix, "max(Periods, lookback(MA_Type, Periods) + 1)", "The upper band.",
                          Style::BandEdge),
                     over(Standard::MiddleSuffix, "max(Periods, lookback(MA_Type, Periods) + 1)", "The average."),
                     over(Standard::LowerSuffix, "max(Periods, lookback(MA_Type, Periods) + 1)", "The lower band.",
                          Style::BandEdge)},
         .purpose = Purpose::Volatility,
         .elsewhere = {.house = "Bands.BollingerBands", .talib = "BBANDS", .tulip = "bbands"},
         .abbreviations = {"BB"},
         .guide = {.formula =
                       "Middle = the average; Upper and Lower = Middle + and - deviations x the root of the mean "
                       "square distance of the last Periods values, this record's too, from their mean",
                   .reading = "Narrow bands are often followed by a strong move. A touch is no signal by itself: in a "
                              "trend the price walks along a band.",
                   .origin = "John Bollinger, Bollinger on Bollinger Bands, 2001."}}),
    entry<"DONCHIAN", &Standard::DONCHIAN>(
        {.help = "The highest high and the lowest low of the last records, and their middle.",
         .arguments = {OHLCV, Periods.usually(20)},
         .columns = {over(Standard::UpperSuffix, "Periods", "The highest high.", Style::BandEdge),
                     over(Standard::MiddleSuffix, "Periods", "The mean of both."),
                     over(Standard::LowerSuffix, "Periods", "The lowest low.", Style::BandEdge)},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "DONCHIAN"},
         .guide = {.formula = "Upper = max High, Lower = min Low over Periods records; Middle = (Upper + Lower) / 2",
                   .reading = "A new high of 20 records is bought, a new low sold: trend following at its plainest.",
                   .origin = "Richard Donchian, 1960s."}}),
    entry<"Keltner", &Standard::Keltner>(
        {.help = "An exponential average of the typical price, and multiples of the average true range around it.",
         .arguments = {OHLCV, Periods.usually(20),
                       count("RangePeriods", "How many records the true range is averaged over.", 10),
                       factor("Factor", "How many average true ranges the bands are away.", 2)},
         .columns = {over(Standard::UpperSuffix, "max(Periods, RangePeriods + 1)", "The upper band.", Style::BandEdge),
                     over(Standard::MiddleSuffix, "max(Periods, RangePeriods + 1)", "The average."),
                     over(Standard::LowerSuffix, "max(Periods, RangePeriods + 1)", "The lower band.", Style::BandEdge)},
         .purpose = Purpose::Volatility,
         .elsewhere = {.house = "Bands.Keltner", .talib = "KC"},
         .abbreviations = {"KC"},
         .guide = {.formula =
                       "Middle = EMA of (High + Low + Close) / 3; Upper and Lower = Middle + and - Factor x ATR. "
                       "Both averages begin at the first row of the result",
                   .reading = "A close outside the channel is a strong move; inside it the price goes back to the "
                              "middle.",
                   .origin = "Chester Keltner, 1960, in the form that Linda Raschke gave it in the 1980s."}}),
    entry<"MIDPOINT", &Standard::MIDPOINT>({.help = "The middle between the highest and the lowest of the last values.",
                                            .arguments = {Source, Periods.usually(14)},
                                            .columns = {over("", "Periods", "The middle.")},
                                            .purpose = Purpose::Trend,
                                            .elsewhere = {.talib = "MIDPOINT"},
                                            .guide = {.formula = "(max Source + min Source) / 2 over Periods records",
                                                      .reading = "A level that moves only with new extremes.",
                                                      .origin = "Common to the field."}}),
    entry<"MIDPRICE", &Standard::MIDPRICE>(
        {.help = "The middle between the highest high and the lowest low of the last records.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {over("", "Periods", "The middle.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "MIDPRICE"},
         .guide = {.formula = "(max High + min Low) / 2 over Periods records",
                   .reading = "A level that moves only with new extremes.",
                   .origin = "Common to the field."}}),
    entry<"SAR", &Standard::SAR>(
        {.help = "A stop level that follows a trend ever faster and turns with it.",
         .arguments = {OHLCV,
                       factor("Acceleration", "How much each new extreme adds to the speed, and the first one.", 0.02),
                       factor("Maximum", "The greatest speed.", 0.2)},
         .columns = {over("", "2", "The level.", Style::Dots)},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "Oscillator.ParabolicSAR", .talib = "SAR", .tulip = "psar"},
         .guide = {.formula = "next = SAR + speed x (extreme of the trend - SAR), not beyond the lows (in a falling "
                              "trend the highs) of the last two records; reached by the price, the level becomes the "
                              "old trend's extreme and the trend turns",
                   .reading = "Dots below the price: long, with the dot as the stop; above it: short.",
                   .origin = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978."}}),
    entry<"SAREXT", &Standard::SAREXT>(
        {.help = "The parabolic stop with a speed for each side; levels above the price are negative.",
         .arguments = {OHLCV,
                       factor("StartValue",
                              "The first level: above 0 of a long trend, below 0 of a short one, 0 to "
                              "find it.",
                              0),
                       factor("OffsetOnReverse", "The share by which the level is moved away where it turns.", 0),
                       factor("LongStart", "The first speed of a long trend.", 0.02),
                       factor("LongStep", "What each new high adds to it.", 0.02),
                       factor("LongMaximum", "Its greatest speed.", 0.2),
                       factor("ShortStart", "The first speed of a short trend.", 0.02),
                       factor("ShortStep", "What each new low adds to it.", 0.02),
                       factor("ShortMaximum", "Its greatest speed.", 0.2)},
         .columns = {below("", "2", "The level, below 0 while the trend is short.", PriceUnit)},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "SAREXT"},
         .guide = {.formula = "as SAR, with the speeds of each side",
                   .reading = "As SAR; the sign tells the side.",
                   .origin = "After J. Welles Wilder, 1978."}}),
    entry<"SUPERTREND", &Standard::SUPERTREND>(
        {.help = "A stop level at a multiple of the average true range, which turns where a close crosses it.",
         .arguments = {OHLCV, Periods.usually(10),
                       factor("Factor", "How many average true ranges the level is away.", 3)},
         .columns = {over("", "Periods + 1", "The level."),
                     {.name = Standard::TrendSuffix,
                      .firstRow = "Periods + 1",
                      .aliased = true,
                      .help = "1 in a rising trend, -1 in a falling one.",
                      .bounds = {-1, 1}}},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "SUPERTREND"},
         .guide = {.formula =
                       "bands = (High + Low) / 2 + and - Factor x ATR, each moving toward the price only until a "
                       "close has crossed it; the level is the lower band in a rising trend, the upper one in a "
                       "falling one. The first trend is rising",
                   .reading = "Long while the level is below the price, short while it is above.",
                   .origin = "Olivier Seban, 2000s."}}),
    entry<"CHANDELIER", &Standard::CHANDELIER>(
        {.help = "Stops hung from the highest high and propped on the lowest low by average true ranges.",
         .arguments = {OHLCV, Periods.usually(22),
                       factor("Factor", "How many average true ranges the stop is away.", 3)},
         .columns = {over(Standard::LongSuffix, "Periods + 1", "The stop of a long trade."),
                     over(Standard::ShortSuffix, "Periods + 1", "The stop of a short trade.")},
         .purpose = Purpose::Trend,
         .guide = {.formula =
                       "Long = max High - Factor x ATR, Short = min Low + Factor x ATR, all over Periods records",
                   .reading = "A close below the long stop ends a long trade, one above the short stop a short one.",
                   .origin = "Chuck LeBeau; told by Alexander Elder, Come Into My Trading Room, 2002."}}),
    entry<"ICHIMOKU", &Standard::ICHIMOKU>(
        {.help = "Middles of three spans, two of them drawn ahead as a cloud, and the close drawn back.",
         .arguments = {OHLCV, count("ConversionPeriods", "How many records the conversion line covers.", 9),
                       count("BasePeriods", "How many records the base line covers.", 26),
                       count("SpanPeriods", "How many records the second edge of the cloud covers.", 52),
                       count("Displacement", "How many records the cloud is drawn ahead and the close back.", 26)},
         .columns = {over(Standard::ConversionSuffix, "ConversionPeriods", "The quick middle."),
                     over(Standard::BaseSuffix, "BasePeriods", "The slow middle."),
                     over(Standard::SpanASuffix, "max(ConversionPeriods, BasePeriods) + Displacement",
                          "The mean of both, as it was Displacement records before.", Style::BandEdge),
                     over(Standard::SpanBSuffix, "SpanPeriods + Displacement",
                          "The slowest middle, as it was Displacement records before.", Style::BandEdge),
                     {.name = Standard::LaggingSuffix,
                      .firstRow = "1",
                      .aliased = true,
                      .lastRow = "N - Displacement",
                      .help = "The close of Displacement records later: drawn back, known only then.",
                      .unit = PriceUnit,
                      .place = Place::Over}},
         .purpose = Purpose::Trend,
         .guide = {.formula =
                       "middle(P) = (max High + min Low) / 2 over P records; Conversion and Base = middle of theirs; "
                       "Span A = (Conversion + Base) / 2 and Span B = middle(SpanPeriods), both of record r - "
                       "Displacement; Lagging = Close(r + Displacement)",
                   .reading =
                       "Above the cloud the trend is up, below it down; a cross of Conversion and Base is a signal, "
                       "the stronger the further from the cloud.",
                   .origin = "Goichi Hosoda, 1969."},
         .recomputed = true}),
    entry<"PIVOTS", &Standard::PIVOTS>(
        {.help = "Levels for a session out of the high, low and close of the one before.",
         .arguments = {OHLCV,
                       Sessions,
                       {.name = "PivotKind", .help = "Whose levels.", .usual = 0.0, .choices = PivotKinds}},
         .columns = {pivotLevel(0, "The pivot."), pivotLevel(1, "The first resistance."),
                     pivotLevel(2, "The second resistance."), pivotLevel(3, "The third resistance."),
                     pivotLevel(4, "The fourth resistance, not of Fibonacci.", FourthLevelEnd),
                     pivotLevel(5, "The first support."), pivotLevel(6, "The second support."),
                     pivotLevel(7, "The third support."),
                     pivotLevel(8, "The fourth support, not of Fibonacci.", FourthLevelEnd)},
         .purpose = Purpose::Trend,
         .guide = {.formula =
                       "p = (High + Low + Close) / 3 and d = High - Low of the session before. Classic: R1, S1 = 2 p - "
                       "Low, 2 p - High; R2, S2 = p + and - d; R3, S3 = High + 2 (p - Low), Low - 2 (High - p); R4, S4 "
                       "= R3 + d, S3 - d. "
                       "Fibonacci: p + and - 0.382 d, 0.618 d, d. Camarilla: Close + and - 1.1 d / 12, / 6, / 4, / "
                       "2. 0 while the first session lasts",
                   .reading = "Prices where others have orders: resistance above, support below.",
                   .origin = "Traders of the Chicago pits; Camarilla: Nick Scott, 1989."},
         .example = "Session=Month"}),
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
