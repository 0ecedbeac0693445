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
           .columns = {aliasedColumn("Periods + 1")},
           .faults = {MovingAverage::ExponentialMovingAverageFault}}),
      row<&MovingAverage::WeightedMovingAverage>(
          {.name = MovingAverage::WeightedMovingAverageName,
           .help = "The mean of the last values with linear weights, the newest heaviest.",
           .arguments = {Data, Source, Periods.usually(20), aliasOr(MovingAverage::WeightedMovingAverageName)},
           .columns = {aliasedColumn("Periods + 1")},
           .faults = {MovingAverage::WeightedMovingAverageFault}}),
      row<&MovingAverage::TriangularMovingAverage>(
          {.name = MovingAverage::TriangularMovingAverageName,
           .help = "A simple average of a simple average.",
           .arguments = {Data, Source, Periods.usually(20), aliasOr(MovingAverage::TriangularMovingAverageName)},
           .columns = {aliasedColumn("2 * Periods + 1")},
           .faults = {MovingAverage::TriangularMovingAverageFault}}),
      row<&MovingAverage::WellesWilderSmoothing>(
          {.name = MovingAverage::WellesWilderSmoothingName,
           .help = "Moves by a share of 1 / Periods towards each value, from 0.",
           .arguments = {Source, Periods.usually(14), aliasOr(MovingAverage::WellesWilderSmoothingName)},
           .columns = {aliasedColumn("2 * Periods + 1")},
           .faults = {MovingAverage::WellesWilderSmoothingFault}}),
      row<&MovingAverage::TimeSeriesMovingAverage>(
          {.name = MovingAverage::TimeSeriesMovingAverageName,
           .help = "The moving end of a regression line.",
           .arguments = {Data, Source, Periods.usually(20), aliasOr(MovingAverage::TimeSeriesMovingAverageName)},
           .columns = {aliasedColumn("average(3, Periods)")},
           .faults = {MovingAverage::TimeSeriesMovingAverageFault}}),
      row<&MovingAverage::VariableMovingAverage>(
          {.name = MovingAverage::VariableMovingAverageName,
           .help = "An exponential average that moves the faster the more the series trends.",
           .arguments =
               {Data,
                Source,
                {.name = "Periods", .help = "A third of the rows that are left 0; it sets no length.", .usual = 3},
                aliasOr(MovingAverage::VariableMovingAverageName)},
           .columns = {aliasedColumn("average(4, Periods)")},
           .faults = {MovingAverage::VariableMovingAverageFault}}),
      row<&MovingAverage::VIDYA>(
          {.name = MovingAverage::VIDYAName,
           .help = "Each value blended with the one before, by the r-squared of a regression.",
           .arguments = {Data,
                         Source,
                         Periods.usually(20),
                         {.name = "R2Scale", .help = "What the r-squared is multiplied with.", .usual = 0.65},
                         aliasOr(MovingAverage::VIDYAName)},
           .columns = {aliasedColumn("average(7, Periods)")},
           .faults = {MovingAverage::VIDYAFault}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
