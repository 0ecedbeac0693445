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
      .classId = Guid("3144037b-7d7c-48d8-b8b4-3e13505b3a58"),
      .interfaceId = Guid("53aff887-9c6b-46de-b988-5089829b9d3f"),
  };

  static constexpr Argument ShortCycle{"ShortCycle", "How many records the shorter average covers."};
  static constexpr Argument LongCycle{"LongCycle", "How many records the longer average covers."};

  /// The first rows that both of two averages have.
  static constexpr std::string_view CyclesRow = "max(average(MA_Type, ShortCycle), average(MA_Type, LongCycle))";

  static constexpr auto rows = std::tuple{
      row<&Oscillator::TrueRange>("TrueRange", "The largest of high - low and of the distances to the close before.",
                                  {Data, OHLCV, aliasOr(Oscillator::TrueRangeName)}, {aliasedColumn("2")},
                                  {Oscillator::TrueRangeFault}),
      row<&Oscillator::AverageTrueRange>(
          "AverageTrueRange", "The simple average of the true range.",
          {Data,
           OHLCV,
           aliasOr(Oscillator::AverageTrueRangeName),
           {"Period", "How many records the average covers.", true, {.number = Oscillator::AverageTrueRangePeriod}}},
          {aliasedColumn("Period + 1")}, {Oscillator::AverageTrueRangeFault}),
      row<&Oscillator::DirectionalMovementSystem>(
          "DirectionalMovementSystem", "How strong a trend is and which way it goes.", {Data, OHLCV, Periods},
          {{Oscillator::AverageIndexName, "2 * Periods + 1"},
           {Oscillator::AverageIndexRatingName, "2 * Periods + 2"},
           {Oscillator::DirectionalIndexName, "2 * Periods + 1"},
           {Oscillator::RangeSumName, "2 * Periods + 1"},
           {Oscillator::DownIndexName, "2 * Periods + 1"},
           {Oscillator::UpIndexName, "2 * Periods + 1"}},
          {Oscillator::DirectionalMovementSystemFault}),
      row<&Oscillator::Aroon>("Aroon", "How long ago the highest high and the lowest low stand.",
                              {Data, OHLCV, Periods},
                              {{Oscillator::AroonUpName, "Periods + 1"},
                               {Oscillator::AroonDownName, "Periods + 1"},
                               {Oscillator::AroonOscillatorName, "Periods + 1"}},
                              {Oscillator::AroonFault}),
      row<&Oscillator::getDataSource>("DataSource", "The object that a host bound, or nothing.", {}, {}, {},
                                      Kind::PropertyGet),
      row<&Oscillator::setDataSource>("DataSource", "Binds an object; no computation looks at it.",
                                      {{"NewSource", "The object."}}, {}, {}, Kind::PropertyPutReference),
      row<&Oscillator::getDataMember>("DataMember", "The name of a member that a host bound.", {}, {}, {},
                                      Kind::PropertyGet),
      row<&Oscillator::setDataMember>("DataMember", "Binds the name of a member; no computation looks at it.",
                                      {{"NewMember", "The name."}}, {}, {}, Kind::PropertyPut),
      row<&Oscillator::StochasticOscillator>(
          "StochasticOscillator", "Where the close stands between lowest low and highest high, and its average.",
          {Data,
           OHLCV,
           {"KPeriods", "How many records highest and lowest are taken from."},
           {"KSlowingPeriods", "How many records %K is averaged over; below 2 it is not."},
           {"DPeriods", "How many records %D is averaged over."},
           MA_Type},
          {{Oscillator::PercentKName,
            "choose(KSlowingPeriods < 2, KPeriods + 1, average(MA_Type, KSlowingPeriods, KPeriods + 1))"},
           {Oscillator::PercentDName,
            "average(MA_Type, DPeriods,"
            " choose(KSlowingPeriods < 2, KPeriods + 1, average(MA_Type, KSlowingPeriods, KPeriods + 1)))"}},
          {Oscillator::StochasticOscillatorFault}),
      row<&Oscillator::WilliamsPctR>(Oscillator::WilliamsPctRName,
                                     "How far the close stands below the highest high, -100 to 0.",
                                     {Data, OHLCV, Periods, aliasOr(Oscillator::WilliamsPctRName)},
                                     {aliasedColumn("Periods + 1", "N - 1")}, {Oscillator::WilliamsPctRFault}),
      row<&Oscillator::StochRSI>(Oscillator::StochRSIName,
                                 "Where the relative strength index stands in its own range, 0 to 1.",
                                 {Data, Source, Periods, aliasOr(Oscillator::StochRSIName)},
                                 {aliasedColumn("2 * Periods")}, {Oscillator::StochRSIFault}),
      row<&Oscillator::UltimateOscillator>(
          Oscillator::UltimateOscillatorName, "Buying pressure over three cycles, weighted 4, 2 and 1.",
          {Data,
           OHLCV,
           {"Cycle1", "How many records the first cycle covers."},
           {"Cycle2", "How many records the second cycle covers."},
           {"Cycle3", "How many records the third cycle covers."},
           aliasOr(Oscillator::UltimateOscillatorName)},
          {aliasedColumn("max(Cycle1, Cycle2, Cycle3) + 1")}, {Oscillator::UltimateOscillatorFault}),
      row<&Oscillator::ParabolicSAR>(
          Oscillator::ParabolicSARName, "A stop level that follows a trend and turns with it.",
          {Data,
           {"HighPrice", "The high prices."},
           {"LowPrice", "The low prices."},
           {"MinAF", "The first acceleration factor, and its step.", true, {.number = Oscillator::ParabolicSARMinAF}},
           {"MaxAF", "The factor grows while it is below this.", true, {.number = Oscillator::ParabolicSARMaxAF}},
           aliasOr(Oscillator::ParabolicSARName)},
          {aliasedColumn("2")}, {Oscillator::ParabolicSARFault}),
      row<&Oscillator::CMO>(Oscillator::CMOName, "Rises less falls in percent of both, -100 to 100.",
                            {Data, Source, Periods, aliasOr(Oscillator::CMOName)}, {aliasedColumn("Periods + 1")},
                            {Oscillator::CMOFault}),
      row<&Oscillator::Momentum>(Oscillator::MomentumName, "The value in percent of the one Periods records back.",
                                 {Data, Source, Periods, aliasOr(Oscillator::MomentumName)},
                                 {aliasedColumn("Periods + 2")}, {Oscillator::MomentumFault}),
      row<&Oscillator::VerticalHorizontalFilter>(
          Oscillator::VerticalHorizontalFilterName, "How much of the way went in one direction, 0 to 1.",
          {Data, Source, Periods, aliasOr(Oscillator::VerticalHorizontalFilterName)}, {aliasedColumn("Periods + 1")},
          {Oscillator::VerticalHorizontalFilterFault}),
      row<&Oscillator::LinearMomentumOscillator>(
          "LinearMomentumOscillator", "How straight a line the Chande momentum oscillator follows, -100 to 100.",
          {Data, Source, Periods, aliasOr(Oscillator::LinearMomentumOscillatorName)}, {aliasedColumn("2 * Periods")},
          {Oscillator::LinearMomentumOscillatorFault}),
      row<&Oscillator::WilliamsAccumulationDistribution>(
          Oscillator::WilliamsAccumulationDistributionName, "The running sum of moves from true lows and true highs.",
          {Data, OHLCV, aliasOr(Oscillator::WilliamsAccumulationDistributionName)}, {aliasedColumn("2")},
          {Oscillator::WilliamsAccumulationDistributionFault}),
      row<&Oscillator::ChaikinVolatility>(
          Oscillator::ChaikinVolatilityName, "The change of the averaged range over ROC records, in percent.",
          {Data,
           OHLCV,
           Periods,
           {"ROC", "How many records the change goes back."},
           MA_Type,
           aliasOr(Oscillator::ChaikinVolatilityName)},
          {aliasedColumn("ROC + average(MA_Type, Periods)")}, {Oscillator::ChaikinVolatilityFault}),
      row<&Oscillator::EaseOfMovement>(
          Oscillator::EaseOfMovementName, "The average move of the bar's middle for the volume that it took.",
          {Data, OHLCV, Periods, MA_Type, aliasOr(Oscillator::EaseOfMovementName)},
          {aliasedColumn("average(MA_Type, Periods, 2)")}, {Oscillator::EaseOfMovementFault}),
      row<&Oscillator::ChaosFractalOscillator>(
          "ChaosFractalOscillator", "1 for a high above the four before, -1 for a low below the four before.",
          {Data, OHLCV, {"Periods", "Without effect; below 1 it becomes 100."}},
          {{Oscillator::ChaosFractalOscillatorName, "5"}}, {Oscillator::ChaosFractalOscillatorFault}),
      row<&Oscillator::PrimeNumberOscillator>("PrimeNumberOscillator", "The distance to the nearest prime number.",
                                              {Data, Source, aliasOr(Oscillator::PrimeNumberOscillatorName)},
                                              {aliasedColumn("1")}, {Oscillator::PrimeNumberOscillatorFault}),
      row<&Oscillator::PriceOscillator>(
          Oscillator::PriceOscillatorName, "The difference of two averages in percent of the longer.",
          {Data, Source, ShortCycle, LongCycle, MA_Type, aliasOr(Oscillator::PriceOscillatorName)},
          {aliasedColumn(CyclesRow)},
          {Oscillator::PriceOscillatorPeriodsFault, Oscillator::PriceOscillatorAverageFault,
           Oscillator::PriceOscillatorFault, faults::ObjectNotSet}),
      row<&Oscillator::MACD>(
          Oscillator::MACDName, "The difference of two exponential averages, its average, and their difference.",
          {Data,
           Source,
           ShortCycle,
           LongCycle,
           {"SignalPeriods", "How many records the signal covers."},
           aliasOr(Oscillator::MACDName)},
          {aliasedColumn("max(ShortCycle, LongCycle) + 1"),
           {Oscillator::MACDSignalSuffix, "max(ShortCycle, LongCycle) + 1 + SignalPeriods", true},
           {Oscillator::MACDHistogramSuffix, "max(ShortCycle, LongCycle) + 1 + SignalPeriods", true}},
          {Oscillator::MACDPeriodsFault, Oscillator::MACDFault, faults::ObjectNotSet}),
      row<&Oscillator::VolumeOscillator>(
          Oscillator::VolumeOscillatorName, "The difference of two averages of the volume in percent of the longer.",
          {Data, {"Volume", "The volumes."}, ShortCycle, LongCycle, MA_Type, aliasOr(Oscillator::VolumeOscillatorName)},
          {aliasedColumn(CyclesRow)},
          {Oscillator::VolumeOscillatorPeriodsFault, Oscillator::VolumeOscillatorAverageFault,
           Oscillator::VolumeOscillatorFault, faults::ObjectNotSet}),
      row<&Oscillator::DetrendedPriceOscillator>(
          Oscillator::DetrendedPriceOscillatorName, "An earlier value less the average around it.",
          {Data, Source, Periods, MA_Type, aliasOr(Oscillator::DetrendedPriceOscillatorName)},
          {aliasedColumn(AverageRow)},
          {Oscillator::DetrendedPriceOscillatorPeriodsFault, Oscillator::DetrendedPriceOscillatorAverageFault,
           Oscillator::DetrendedPriceOscillatorFault, faults::ObjectNotSet}),
      row<&Oscillator::TRIX>(Oscillator::TRIXName, "The change of a triple exponential average, in percent.",
                             {Data, Source, Periods, aliasOr(Oscillator::TRIXName)}, {aliasedColumn("3 * Periods + 2")},
                             {Oscillator::TRIXPeriodsFault, Oscillator::TRIXFault, faults::ObjectNotSet}),
      row<&Oscillator::GoldenDeathCross>(
          Oscillator::GoldenDeathCrossName, "1 where the short average crosses above the long one, -1 below it.",
          {Data,
           Source,
           {"ShortPeriods", "How many records the shorter average covers."},
           {"LongPeriods", "How many records the longer average covers."},
           MA_Type,
           aliasOr(Oscillator::GoldenDeathCrossName)},
          {aliasedColumn("max(average(MA_Type, ShortPeriods), average(MA_Type, LongPeriods)) + 1")},
          {Oscillator::GoldenDeathCrossPeriodsFault, Oscillator::GoldenDeathCrossAverageFault,
           Oscillator::GoldenDeathCrossFault, faults::ObjectNotSet}),
      row<&Oscillator::RainbowOscillator>(
          Oscillator::RainbowOscillatorName,
          "Where the value stands among averages of averages, and how wide they are.",
          {Data,
           Source,
           {"Levels", "How many averages there are."},
           MA_Type,
           aliasOr(Oscillator::RainbowOscillatorName)},
          {aliasedColumn("Levels * (average(MA_Type, 2) - 1) + 1"),
           {Oscillator::RainbowUpperName, "Levels * (average(MA_Type, 2) - 1) + 1"},
           {Oscillator::RainbowLowerName, "Levels * (average(MA_Type, 2) - 1) + 1"}},
          {Oscillator::RainbowOscillatorPeriodsFault, Oscillator::RainbowOscillatorAverageFault,
           Oscillator::RainbowOscillatorFault, faults::ObjectNotSet}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
