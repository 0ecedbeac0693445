#pragma once

#include <tuple>

#include "orvex/catalogue/classes/standard_rows.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

inline constexpr auto standardStatistics = std::tuple{
    entry<"BETA", &Standard::BETA>(
        {.help = "How much one column's rate of change moves with another's.",
         .arguments = {sourceOf("Source1", "High"), sourceOf("Source2", "Low"), Periods.usually(5)},
         .columns = {below("", "Periods + 1", "The slope.")},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "BETA"},
         .guide = {.formula =
                       "the slope of the line through (x, y), x and y the rates of change of Source1 and Source2 over "
                       "one record, of Periods records; 0 where x does not vary",
                   .reading = "2: Source2 moves twice as much as Source1.",
                   .origin = "Common in finance."}}),
    entry<"CORREL", &Standard::CORREL>(
        {.help = "The correlation of two columns.",
         .arguments = {sourceOf("Source1", "High"), sourceOf("Source2", "Low"), Periods.usually(30)},
         .columns = {below("", "Periods", "The coefficient.", {}, {-1, 1})},
         .purpose = Purpose::Statistics,
         .elsewhere = {.house = "General.CorrelationAnalysis", .talib = "CORREL"},
         .guide = {.formula =
                       "the sum of (x - mean) (y - mean) / the root of the product of both sums of squares, over "
                       "Periods records; 0 where one of them does not vary",
                   .reading = "1: they move together; -1: against each other; 0: neither.",
                   .origin = "Karl Pearson, 1895."}}),
    entry<"LINEARREG", &Standard::LINEARREG>(
        {.help = "The end of the straight line through the last values.",
         .arguments = {Source, Periods.usually(14)},
         .columns = {over("", "Periods", "The line's end.")},
         .purpose = Purpose::Statistics,
         .elsewhere = {.house = "LinearRegression.Regression", .talib = "LINEARREG", .tulip = "linreg"},
         .guide = {.formula = "intercept + slope x (Periods - 1) of the least-squares line, the oldest value at 0",
                   .reading = "Where the trend has the price to be now.",
                   .origin = "Common statistics."}}),
    entry<"LINEARREG_SLOPE", &Standard::LINEARREG_SLOPE>(
        {.help = "The slope of the straight line through the last values.",
         .arguments = {Source, Periods.usually(14)},
         .columns = {below("", "Periods", "The slope, for a record.", SourceUnit)},
         .purpose = Purpose::Statistics,
         .elsewhere = {.house = "LinearRegression.Regression", .talib = "LINEARREG_SLOPE", .tulip = "linregslope"},
         .guide = {.formula = "the slope of the least-squares line through the last Periods values",
                   .reading = "Above 0 the trend is up; its size is its speed.",
                   .origin = "Common statistics."},
         .levels = {0}}),
    entry<"LINEARREG_INTERCEPT", &Standard::LINEARREG_INTERCEPT>(
        {.help = "The beginning of the straight line through the last values.",
         .arguments = {Source, Periods.usually(14)},
         .columns = {over("", "Periods", "The line's beginning.")},
         .purpose = Purpose::Statistics,
         .elsewhere = {.house = "LinearRegression.Regression",
                       .talib = "LINEARREG_INTERCEPT",
                       .tulip = "linregintercept"},
         .guide = {.formula = "the height of the least-squares line at the oldest of the last Periods values",
                   .reading = "Where the trend came from.",
                   .origin = "Common statistics."}}),
    entry<"LINEARREG_ANGLE", &Standard::LINEARREG_ANGLE>(
        {.help = "The angle of the straight line through the last values.",
         .arguments = {Source, Periods.usually(14)},
         .columns = {below("", "Periods", "The angle in degrees.", {}, {-90, 90})},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "LINEARREG_ANGLE"},
         .guide = {.formula = "arctan(slope) x 180 / pi of the least-squares line",
                   .reading = "The slope on a bounded scale.",
                   .origin = "Common statistics."},
         .levels = {0}}),
    entry<"TSF", &Standard::TSF>(
        {.help = "The straight line through the last values, one record on.",
         .arguments = {Source, Periods.usually(14)},
         .columns = {over("", "Periods", "The forecast.")},
         .purpose = Purpose::Statistics,
         .elsewhere = {.house = "LinearRegression.TimeSeriesForecast", .talib = "TSF", .tulip = "tsf"},
         .guide = {.formula = "intercept + slope x Periods of the least-squares line, the oldest value at 0",
                   .reading = "Where the trend has the next price to be.",
                   .origin = "Common statistics."}}),
    entry<"ZSCORE", &Standard::ZSCORE>(
        {.help = "How many standard deviations the value is away from the mean.",
         .arguments = {Source, Periods.usually(20)},
         .columns = {below("", "Periods", "The score.")},
         .purpose = Purpose::Statistics,
         .guide = {.formula = "(Source - mean) / STDDEV over Periods records; 0 where all values are equal",
                   .reading = "Beyond 2 or -2 the value is unusual for its time.",
                   .origin = "Common statistics; of the whole population."},
         .levels = {-2, 2}}),
    entry<"PERCENTRANK", &Standard::PERCENTRANK>(
        {.help = "How many of the values before are below the value.",
         .arguments = {Source, Periods.usually(100)},
         .columns = {below("", "Periods + 1", "The rank.", PercentUnit, Percents)},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "PERCENTRANK"},
         .guide = {.formula = "100 x the number of the Periods values before that are below Source(r) / Periods",
                   .reading = "100: higher than all of them.",
                   .origin = "Common statistics."}}),
    entry<"MIN", &Standard::MIN>({.help = "The smallest of the last values.",
                                  .arguments = {Source, Periods.usually(30)},
                                  .columns = {over("", "Periods", "The smallest value.")},
                                  .purpose = Purpose::Statistics,
                                  .elsewhere = {.house = "General.LLV", .talib = "MIN", .tulip = "min"},
                                  .guide = {.formula = "min Source over Periods records",
                                            .reading = "A level of support.",
                                            .origin = "Common."}}),
    entry<"MAX", &Standard::MAX>({.help = "The largest of the last values.",
                                  .arguments = {Source, Periods.usually(30)},
                                  .columns = {over("", "Periods", "The largest value.")},
                                  .purpose = Purpose::Statistics,
                                  .elsewhere = {.house = "General.HHV", .talib = "MAX", .tulip = "max"},
                                  .guide = {.formula = "max Source over Periods records",
                                            .reading = "A level of resistance.",
                                            .origin = "Common."}}),
    entry<"MININDEX", &Standard::MININDEX>(
        {.help = "The record at which the smallest of the last values stands.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {recordColumn("Periods", "The record, from 1.")},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "MININDEX"},
         .guide = {.formula =
                       "the record of min Source over Periods records. Of equal ones a newer replaces an older; when "
                       "the one that was told leaves the span, the oldest of the rest is told",
                   .reading = "How old a low is.",
                   .origin = "Common."}}),
    entry<"MAXINDEX", &Standard::MAXINDEX>(
        {.help = "The record at which the largest of the last values stands.",
         .arguments = {Source, Periods.usually(30)},
         .columns = {recordColumn("Periods", "The record, from 1.")},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "MAXINDEX"},
         .guide = {.formula =
                       "the record of max Source over Periods records. Of equal ones a newer replaces an older; when "
                       "the one that was told leaves the span, the oldest of the rest is told",
                   .reading = "How old a high is.",
                   .origin = "Common."}}),
    entry<"SUM", &Standard::SUM>({.help = "The sum of the last values.",
                                  .arguments = {Source, Periods.usually(30)},
                                  .columns = {below("", "Periods", "The sum.", SourceUnit)},
                                  .purpose = Purpose::Statistics,
                                  .elsewhere = {.talib = "SUM", .tulip = "sum"},
                                  .guide = {.formula = "Source(r - Periods + 1) + ... + Source(r), oldest first",
                                            .reading = "A part of other indicators.",
                                            .origin = "Common."}}),
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
