#pragma once

#include <tuple>

#include "orvex/catalogue/classes/standard_rows.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

inline constexpr auto standardAverages = std::tuple{
    entry<"SMA", &Standard::SMA>(
        {.help = "The mean of the last values.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {over("", "Periods", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "MovingAverage.SimpleMovingAverage", .talib = "SMA", .tulip = "sma"},
         .guide = {.formula = "row r = (Source(r - Periods + 1) + ... + Source(r)) / Periods",
                   .reading = "Above its average a price is taken to rise, below it to fall; a cross is a change of "
                              "trend that is seen late.",
                   .origin = "Older than technical analysis; no single author."}}),
    entry<"EMA", &Standard::EMA>(
        {.help = "An average that weighs each value with 2 / (Periods + 1) and the past with the rest.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {over("", "Periods", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "MovingAverage.ExponentialMovingAverage", .talib = "EMA", .tulip = "ema"},
         .guide = {.formula =
                       "row Periods = the mean of the first Periods values; then row r = row (r - 1) + (Source(r) "
                       "- row (r - 1)) x 2 / (Periods + 1)",
                   .reading = "As the simple average, but quicker: no value drops out of it at once.",
                   .origin = "P. N. Haurlan, Measuring Trend Values, 1968, for prices."}}),
    entry<"WMA", &Standard::WMA>(
        {.help = "The mean of the last values with linear weights, the newest heaviest.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {over("", "Periods", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "MovingAverage.WeightedMovingAverage", .talib = "WMA", .tulip = "wma"},
         .guide = {.formula = "row r = (Periods x Source(r) + ... + 1 x Source(r - Periods + 1)) / (1 + ... + Periods)",
                   .reading = "As the simple average, with less delay.",
                   .origin = "Common to the field."}}),
    entry<"DEMA", &Standard::DEMA>(
        {.help = "Twice an exponential average less its own average.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {over("", "2 * Periods - 1", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "DEMA", .tulip = "dema"},
         .guide = {.formula = "2 x EMA - EMA of EMA",
                   .reading = "Follows a steady trend almost without delay, and overshoots where it turns.",
                   .origin = "Patrick Mulloy, Stocks & Commodities, February 1994."}}),
    entry<"TEMA", &Standard::TEMA>(
        {.help = "Three exponential averages combined so that a steady trend is followed without delay.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {over("", "3 * Periods - 2", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "TEMA", .tulip = "tema"},
         .guide = {.formula = "3 x EMA - 3 x EMA of EMA + EMA of EMA of EMA",
                   .reading = "As DEMA, quicker still.",
                   .origin = "Patrick Mulloy, Stocks & Commodities, February 1994."}}),
    entry<"T3", &Standard::T3>(
        {.help = "Six exponential averages in a row, combined to be smooth and quick.",
         .arguments = {Source, Periods.usually(5),
                       factor("VolumeFactor", "How much of the delay is made up for, 0 to 1.", 0.7)},
         .columns = {over("", "6 * Periods - 5", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "T3"},
         .guide = {.formula = "-v^3 x e6 + 3 (v^2 + v^3) x e5 - (6 v^2 + 3 (v + v^3)) x e4 + (1 + 3 v + v^3 + 3 v^2) x "
                              "e3, with v = VolumeFactor and e1 to e6 the EMA of Source, of e1, ...",
                   .reading = "A line to see the trend by: smoother than other averages of the same delay.",
                   .origin = "Tim Tillson, Stocks & Commodities, January 1998."}}),
    entry<"TRIMA", &Standard::TRIMA>(
        {.help = "A simple average of a simple average, whose weights rise to the middle and fall again.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {over("", "Periods", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "MovingAverage.TriangularMovingAverage", .talib = "TRIMA", .tulip = "trima"},
         .guide = {.formula = "SMA over Periods \\ 2 + 1 records of SMA over (Periods + 1) \\ 2 records",
                   .reading = "The smoothest of the plain averages, and the latest.",
                   .origin = "Common to the field."}}),
    entry<"KAMA", &Standard::KAMA>(
        {.help = "An exponential average that is quick where the price goes one way and slow where it wavers.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {over("", "lookback(6, Periods) + 1", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "KAMA", .tulip = "kama"},
         .guide = {.formula = "row r = row (r - 1) + (Source(r) - row (r - 1)) x (e x (2/3 - 2/31) + 2/31)^2, e = the "
                              "move over Periods records / the sum of the moves from record to record; it starts from "
                              "Source(Periods). With 1 for Periods it is Source",
                   .reading = "Nearly level while nothing happens; where it rises or falls, there is a trend.",
                   .origin = "Perry Kaufman, Smarter Trading, 1995."}}),
    entry<"MAMA", &Standard::MAMA>(
        {.help = "An average whose speed follows the phase of the price's cycle, and a slower one behind it.",
         .arguments = {Source, factor("FastLimit", "The largest share of a new value, 0.01 to 0.99.", 0.5),
                       factor("SlowLimit", "The smallest share of a new value, 0.01 to 0.99.", 0.05)},
         .columns = {over("", "33", "The adaptive average."),
                     over(Standard::FollowingSuffix, "33", "The following one, half as quick.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "MAMA"},
         .abbreviations = {"FAMA"},
         .guide = {.formula =
                       "share = FastLimit / the degrees by which the phase moved on, not below SlowLimit; MAMA = "
                       "share x Source + (1 - share) x MAMA before; FAMA likewise of MAMA with half the share",
                   .reading = "MAMA above FAMA is a rising trend, below it a falling one; they cross seldom.",
                   .origin = "John Ehlers, Stocks & Commodities, September 2001.",
                   .difference = "In a stretch of equal prices the phase is 0, where running sums leave one of "
                                 "their own rounding."}}),
    entry<"HMA", &Standard::HMA>(
        {.help = "A weighted average made quick by a shorter one, and smooth by another.",
         .arguments = {Source, Periods.usually(20)},
         .columns = {over("", "Periods + root(Periods) - 1", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "HMA", .tulip = "hma"},
         .guide = {.formula = "WMA over root(Periods) records of 2 x WMA(Periods \\ 2) - WMA(Periods)",
                   .reading = "Turns soon after the price; the slope is read, not crosses of it.",
                   .origin = "Alan Hull, 2005."}}),
    entry<"ZLEMA", &Standard::ZLEMA>(
        {.help = "An exponential average of the value plus its own latest move.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {over("", "Periods + (Periods - 1) \\ 2", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "ZLEMA", .tulip = "zlema"},
         .guide = {.formula = "EMA of Source(r) + (Source(r) - Source(r - (Periods - 1) \\ 2))",
                   .reading = "As the exponential average, with its delay taken out of a steady trend.",
                   .origin = "John Ehlers and Ric Way, Stocks & Commodities, November 2010."}}),
    entry<"RMA", &Standard::RMA>(
        {.help = "Wilder's average: moves by a share of 1 / Periods towards each value.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {over("", "Periods", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "MovingAverage.WellesWilderSmoothing", .talib = "RMA", .tulip = "wilders"},
         .guide = {.formula =
                       "row Periods = the mean of the first Periods values; then row r = row (r - 1) + (Source(r) "
                       "- row (r - 1)) / Periods",
                   .reading = "An exponential average of 2 x Periods - 1 records; what Wilder's indicators average by.",
                   .origin = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978."}}),
    entry<"VWMA", &Standard::VWMA>(
        {.help = "The mean of the last values, each weighed with its volume.",
         .arguments = {Source, Volumes, Periods.usually(30)},
         .columns = {over("", "Periods", "The average.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "VWMA", .tulip = "vwma"},
         .guide = {.formula = "the sum of Source x Volume / the sum of Volume, over Periods records",
                   .reading = "Apart from the simple average where much was traded away from the mean.",
                   .origin = "Common to the field.",
                   .fails = "where the volumes of a window add up to 0"}}),
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
