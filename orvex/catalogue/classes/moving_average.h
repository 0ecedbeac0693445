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
      row<&MovingAverage::SimpleMovingAverage>(MovingAverage::SimpleMovingAverageName, "The mean of the last values.",
                                               {Data, Source, Periods, aliasOr(MovingAverage::SimpleMovingAverageName)},
                                               {aliasedColumn("Periods + 1")},
                                               {MovingAverage::SimpleMovingAverageFault}),
      row<&MovingAverage::ExponentialMovingAverage>(
          MovingAverage::ExponentialMovingAverageName,
          "Weighs each value with 2 / (Periods + 1), the past with the rest.",
          {Data, Source, Periods, aliasOr(MovingAverage::ExponentialMovingAverageName)}, {aliasedColumn("Periods + 1")},
          {MovingAverage::ExponentialMovingAverageFault}),
      row<&MovingAverage::WeightedMovingAverage>(
          MovingAverage::WeightedMovingAverageName,
          "The mean of the last values with linear weights, the newest heaviest.",
          {Data, Source, Periods, aliasOr(MovingAverage::WeightedMovingAverageName)}, {aliasedColumn("Periods + 1")},
          {MovingAverage::WeightedMovingAverageFault}),
      row<&MovingAverage::TriangularMovingAverage>(
          MovingAverage::TriangularMovingAverageName, "A simple average of a simple average.",
          {Data, Source, Periods, aliasOr(MovingAverage::TriangularMovingAverageName)},
          {aliasedColumn("2 * Periods + 1")}, {MovingAverage::TriangularMovingAverageFault}),
      row<&MovingAverage::WellesWilderSmoothing>(
          MovingAverage::WellesWilderSmoothingName, "Moves by a share of 1 / Periods towards each value, from 0.",
          {Source, Periods, aliasOr(MovingAverage::WellesWilderSmoothingName)}, {aliasedColumn("2 * Periods + 1")},
          {MovingAverage::WellesWilderSmoothingFault}),
      row<&MovingAverage::TimeSeriesMovingAverage>(
          MovingAverage::TimeSeriesMovingAverageName, "The moving end of a regression line.",
          {Data, Source, Periods, aliasOr(MovingAverage::TimeSeriesMovingAverageName)},
          {aliasedColumn("average(3, Periods)")}, {MovingAverage::TimeSeriesMovingAverageFault}),
      row<&MovingAverage::VariableMovingAverage>(
          MovingAverage::VariableMovingAverageName,
          "An exponential average that moves the faster the more the series trends.",
          {Data,
           Source,
           {"Periods", "A third of the rows that are left 0; it sets no length."},
           aliasOr(MovingAverage::VariableMovingAverageName)},
          {aliasedColumn("average(4, Periods)")}, {MovingAverage::VariableMovingAverageFault}),
      row<&MovingAverage::VIDYA>(MovingAverage::VIDYAName,
                                 "Each value blended with the one before, by the r-squared of a regression.",
                                 {Data,
                                  Source,
                                  Periods,
                                  {"R2Scale", "What the r-squared is multiplied with."},
                                  aliasOr(MovingAverage::VIDYAName)},
                                 {aliasedColumn("average(7, Periods)")}, {MovingAverage::VIDYAFault}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
