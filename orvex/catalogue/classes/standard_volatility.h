#pragma once

#include <tuple>

#include "orvex/catalogue/classes/standard_directional.h"
#include "orvex/catalogue/classes/standard_rows.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

inline constexpr auto standardVolatility = std::tuple{
    entry<"TRANGE", &Standard::TRANGE>(
        {.help = "The largest of high - low and of the distances of both to the close before.",
         .arguments = {OHLCV},
         .columns = {below("", "2", "The range.", PriceUnit)},
         .purpose = Purpose::Volatility,
         .elsewhere = {.house = "Oscillator.TrueRange", .talib = "TRANGE", .tulip = "tr"},
         .guide = {.formula = "max(High - Low, |High - Close before|, |Low - Close before|)",
                   .reading = "The range of a day with its opening gap.",
                   .origin = NewConcepts}}),
    entry<"ATR", &Standard::ATR>(
        {.help = "Wilder's average of the true range.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "Periods + 1", "The average.", PriceUnit)},
         .purpose = Purpose::Volatility,
         .elsewhere = {.house = "Oscillator.AverageTrueRange", .talib = "ATR", .tulip = "atr"},
         .guide = {.formula = "RMA of TRANGE, which begins at record 2",
                   .reading = "How far the price goes in a record: a measure for stops and the size of a trade.",
                   .origin = NewConcepts}}),
    entry<"NATR", &Standard::NATR>(
        {.help = "The average true range in percent of the close.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "Periods + 1", "The average.", PercentUnit)},
         .purpose = Purpose::Volatility,
         .elsewhere = {.talib = "NATR", .tulip = "natr"},
         .guide = {.formula = "100 x ATR / Close, 0 where that is 0",
                   .reading = "As ATR, comparable between markets.",
                   .origin = "John Forman, Stocks & Commodities, May 2006.",
                   .difference = "Of 1 record too it is in percent, where TA-Lib gives the true range itself."}}),
    entry<"STDDEV", &Standard::STDDEV>(
        {.help = "The standard deviation of the last values.",
         .arguments = {Source, Periods.usually(5), factor("Factor", "What it is multiplied with.", 1)},
         .columns = {below("", "Periods", "The deviation.", SourceUnit)},
         .purpose = Purpose::Statistics,
         .elsewhere = {.house = "General.StandardDeviation", .talib = "STDDEV", .tulip = "stddev"},
         .guide = {.formula =
                       "Factor x the root of the mean square distance of the last Periods values from their mean",
                   .reading = "How far values stray from their mean.",
                   .origin = "Common statistics; of the whole population."}}),
    entry<"VAR", &Standard::VAR>(
        {.help = "The variance of the last values.",
         .arguments = {Source, Periods.usually(5)},
         .columns = {below("", "Periods", "The variance.")},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "VAR", .tulip = "var"},
         .guide = {.formula = "the mean square distance of the last Periods values from their mean",
                   .reading = "The square of STDDEV.",
                   .origin = "Common statistics; of the whole population."}}),
    entry<"HV", &Standard::HV>(
        {.help = "The standard deviation of logarithmic returns, for a year.",
         .arguments = {Source, Periods.usually(20), count("PeriodsPerYear", "How many records make a year.", 252)},
         .columns = {below("", "Periods + 1", "The volatility.", PercentUnit)},
         .purpose = Purpose::Volatility,
         .elsewhere = {.tulip = "volatility"},
         .guide = {.formula = "100 x root(PeriodsPerYear) x the root of (the sum of (x - mean)^2 / (Periods - 1)), x = "
                              "log(Source(r) / Source(r - 1)) over Periods records",
                   .reading = "What an option's price is compared with.",
                   .origin = "Common in finance.",
                   .fails = "where a value is not above 0"}}),
    entry<"CHOP", &Standard::CHOP>(
        {.help = "How crooked the price's way through its range is.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "Periods + 1", "The index.", PercentUnit)},
         .purpose = Purpose::Volatility,
         .guide = {.formula =
                       "100 x log(the sum of TRANGE / (max High - min Low)) / log(Periods), over Periods records",
                   .reading = "Above 61.8 the market goes sideways, below 38.2 it has a trend.",
                   .origin = "E. W. Dreiss, 1990s.",
                   .fails = "where a span has no range"},
         .levels = {38.2, 61.8}}),
    entry<"ULCER", &Standard::ULCER>(
        {.help = "How deep and how long the price is below its high.",
         .arguments = {Source, Periods.usually(14)},
         .columns = {below("", "2 * Periods - 1", "The index.", PercentUnit)},
         .purpose = Purpose::Volatility,
         .guide = {.formula = "the root of the mean over Periods records of d^2, d = 100 x (Source - max Source) / max "
                              "Source, the largest of the last Periods values",
                   .reading = "The pain of holding: a volatility of falls only.",
                   .origin = "Peter Martin and Byron McCann, The Investor's Guide to Fidelity Funds, 1989.",
                   .fails = "where the largest value is 0"}}),
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
