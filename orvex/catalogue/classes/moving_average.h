#pragma once

#include <tuple>

#include "orvex/averages/moving_average.h"
#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<MovingAverage> {
  static constexpr Identity identity{
      .name = "MovingAverage",
      .help = "Moving averages of a column.",
      .header = "orvex/averages/moving_average.h",
      .classId = Guid("04e1ace3-c77b-4f30-8219-a35a97c9f437"),
      .interfaceId = Guid("478d6132-a3b3-410f-a879-2a9c2d0dd7ab"),
  };

  static constexpr auto rows = std::tuple{
      row<&MovingAverage::SimpleMovingAverage>(
          {.name = MovingAverage::SimpleMovingAverageName,
           .help = "The mean of the last values.",
           .arguments = {Data, Source, Periods.usually(20), aliasOr(MovingAverage::SimpleMovingAverageName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .help = "The average.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {MovingAverage::SimpleMovingAverageFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"SMA", "MA"},
           .guide = {.formula = "row r = (Source(r - Periods + 1) + ... + Source(r)) / Periods",
                     .reading = "A price above its average is taken for a rising trend, a price below for a falling "
                                "one, and a cross for a change. The longer the average, the fewer and the later its "
                                "signals. 20, 50 and 200 records are the lengths that most people watch.",
                     .origin = "Older than technical analysis; no single author.",
                     .difference = "The first average stands in row Periods + 1, though Periods values are there one "
                                   "record earlier.",
                     .fails = "where Periods is below 1 or above N, and where a value is not finite"}}),
      row<&MovingAverage::ExponentialMovingAverage>(
          {.name = MovingAverage::ExponentialMovingAverageName,
           .help = "Weighs each value with 2 / (Periods + 1), the past with the rest.",
           .arguments = {Data, Source, Periods.usually(20), aliasOr(MovingAverage::ExponentialMovingAverageName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .help = "The average.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {MovingAverage::ExponentialMovingAverageFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"EMA", "XMA"},
           .guide = {.formula = "row r = (1 - k) x row (r - 1) + k x Source(r), k = 2 / (Periods + 1); before the "
                                "first, k x the mean of the first Periods values + (1 - k) x Source(Periods + 1)",
                     .reading =
                         "As the simple average, but it turns sooner: the newest value weighs most, and old ones fade "
                         "instead of dropping out all at once. MACD, TRIX and many others are made of it.",
                     .origin = "Robert G. Brown, Statistical Forecasting for Inventory Control, 1959; for markets P. "
                               "N. Haurlan, Measuring Trend Values, 1968.",
                     .difference = "Books start from the mean of the first Periods values, in row Periods. Here the "
                                   "first row is Periods + 1, and in the value that it starts from the next price has "
                                   "the weight of the past and the mean that of the newest value. What remains of that "
                                   "fades by the factor 1 - k with every record.",
                     .fails = "where Periods is below 1, where Source has no value after the first Periods, and where "
                              "a value is not finite"}}),
      row<&MovingAverage::WeightedMovingAverage>(
          {.name = MovingAverage::WeightedMovingAverageName,
           .help = "The mean of the last values with linear weights, the newest heaviest.",
           .arguments = {Data, Source, Periods.usually(20), aliasOr(MovingAverage::WeightedMovingAverageName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .help = "The average.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {MovingAverage::WeightedMovingAverageFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"WMA", "LWMA"},
           .guide = {.formula = "row r = (Periods x Source(r) + ... + 2 x Source(r - Periods + 2) + Source(r - Periods "
                                "+ 1)) / (1 + 2 + ... + Periods)",
                     .reading = "As the simple average, with about two thirds of its delay.",
                     .origin = "The field's common form; no single author.",
                     .difference = "The first average stands in row Periods + 1, one record later than it could.",
                     .fails = "where Periods is below 1 or above N, and where a value is not finite"}}),
      row<&MovingAverage::TriangularMovingAverage>(
          {.name = MovingAverage::TriangularMovingAverageName,
           .help = "A simple average of a simple average.",
           .arguments = {Data, Source, Periods.usually(20), aliasOr(MovingAverage::TriangularMovingAverageName)},
           .columns = {{.firstRow = "2 * Periods + 1",
                        .aliased = true,
                        .help = "The average.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {MovingAverage::TriangularMovingAverageFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"TMA", "TRIMA"},
           .guide = {.formula = "the simple average of the simple average, both over Periods \\ 2 + 1 records; the "
                                "inner one over Periods \\ 2 where Periods is even",
                     .reading = "The middle of its records weighs most, so it is smooth and late: for the course of a "
                                "trend rather than for its turns.",
                     .origin = "The field's common form; no single author.",
                     .difference = "It could be computed from row Periods on; here rows 1 to 2 x Periods are left 0.",
                     .fails = "where Periods is below 1 or above N / 2, and where a value is not finite"}}),
      row<&MovingAverage::WellesWilderSmoothing>(
          {.name = MovingAverage::WellesWilderSmoothingName,
           .help = "Moves by a share of 1 / Periods towards each value, from 0.",
           .arguments = {Source, Periods.usually(14), aliasOr(MovingAverage::WellesWilderSmoothingName)},
           .columns = {{.firstRow = "2 * Periods + 1",
                        .aliased = true,
                        .help = "The average.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {MovingAverage::WellesWilderSmoothingFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"RMA", "SMMA"},
           .guide = {.formula = "row r = row (r - 1) + (Source(r) - row (r - 1)) / Periods, from row 1 = 0",
                     .reading = "A slow average, as smooth as an exponential one over 2 x Periods - 1 records. "
                                "Wilder's own indicators rest on it.",
                     .origin = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978.",
                     .difference = "Wilder begins with the mean of the first Periods values. Here the average climbs "
                                   "from 0, and rows 1 to 2 x Periods are blanked: with Periods of 14 the first row "
                                   "shown still lacks an eighth of the price.",
                     .fails = "where Periods is below 1 or above N / 2, and where a value is not finite"}}),
      row<&MovingAverage::TimeSeriesMovingAverage>(
          {.name = MovingAverage::TimeSeriesMovingAverageName,
           .help = "The moving end of a regression line.",
           .arguments = {Data, Source, Periods.usually(20), aliasOr(MovingAverage::TimeSeriesMovingAverageName)},
           .columns = {{.firstRow = "average(3, Periods)",
                        .aliased = true,
                        .help = "The end of the line.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {MovingAverage::TimeSeriesMovingAverageFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"TSMA"},
           .guide = {.formula = "the Forecast of LinearRegression.Regression over Periods records",
                     .reading = "Where a straight line through the last records ends: it follows a steady move without "
                                "delay, and overshoots at a turn.",
                     .origin = "The field's common form; no single author.",
                     .difference = "That of the regression's forecast, which lies above a least-squares line's end in "
                                   "a rise: by half the slope where Periods is even. Rows 1 to 2 x Periods are left 0, "
                                   "Periods more than the line needs.",
                     .fails = "where Periods is below 2 or above N / 2, above 181 where counts have 16 bits, and where "
                              "a value is not finite"}}),
      row<&MovingAverage::VariableMovingAverage>(
          {.name = MovingAverage::VariableMovingAverageName,
           .help = "An exponential average that moves the faster the more the series trends.",
           .arguments =
               {Data,
                Source,
                {.name = "Periods", .help = "A third of the rows that are left 0; it sets no length.", .usual = 3},
                aliasOr(MovingAverage::VariableMovingAverageName)},
           .columns = {{.firstRow = "average(4, Periods)",
                        .aliased = true,
                        .help = "The average.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {MovingAverage::VariableMovingAverageFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"VMA"},
           .guide = {.formula = "row r = (1 - k) x row (r - 1) + k x Source(r) from row 1 = 0, k = |Oscillator.CMO "
                                "over 9 records| / 100",
                     .reading =
                         "It keeps close to the price in a trend and hardly moves while the price goes sideways.",
                     .origin = "Tushar Chande, Adapting Moving Averages to Market Volatility, Technical Analysis of "
                               "Stocks & Commodities, March 1992.",
                     .difference = "Chande multiplies the measure of the trend with the constant 2 / (Periods + 1) of "
                                   "a chosen length. Here the measure alone is the weight and always covers 9 records; "
                                   "Periods sets no length, only that 3 x Periods rows are blanked.",
                     .fails = "where Periods is above N / 3, and where a value is not finite"}}),
      row<&MovingAverage::VIDYA>(
          {.name = MovingAverage::VIDYAName,
           .help = "Each value blended with the one before, by the r-squared of a regression.",
           .arguments = {Data,
                         Source,
                         Periods.usually(20),
                         {.name = "R2Scale", .help = "What the r-squared is multiplied with.", .usual = 0.65},
                         aliasOr(MovingAverage::VIDYAName)},
           .columns = {{.firstRow = "average(7, Periods)",
                        .aliased = true,
                        .help = "The blend.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {MovingAverage::VIDYAFault},
           .purpose = Purpose::Trend,
           .abbreviations = {"VIDYA"},
           .guide = {.formula = "row r = (1 - k) x Source(r - 1) + k x Source(r), k = R2Scale x the r-squared of "
                                "LinearRegression.Regression over Periods records",
                     .reading = "Close to the price where the last records lie on a line, nearer to the value before "
                                "where they do not.",
                     .origin = "After the variable index dynamic average of Tushar Chande and Stanley Kroll, The New "
                               "Technical Trader, 1994.",
                     .difference = "Chande and Kroll blend each value with their own row before, which makes an "
                                   "average with a long memory. This one blends it with the value before, so it "
                                   "remembers one record only and smooths little. Rows 1 to 2 x Periods are left 0.",
                     .fails = "where Periods is below 2 or above N / 2, above 181 where counts have 16 bits, and where "
                              "a value is not finite"}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
