#pragma once

#include <tuple>

#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"
#include "orvex/indices/index.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<Index> {
  static constexpr Identity identity{
      .name = "Index",
      .help = "Running totals of price and volume, and indices of strength and of money flow.",
      .classId = Guid("881ac9d5-2cf1-4cac-8ea9-285e465e4a5d"),
      .interfaceId = Guid("eca7f72c-d721-4df8-b548-293ac184aa31"),
  };

  static constexpr Argument Volume{.name = "Volume", .help = "The column of volumes.", .usual = "Volume"};
  static constexpr Argument LimitMoveValue{
      .name = "LimitMoveValue", .help = "The most that the price can move in a period, above 0.", .usual = 3};

  static constexpr auto rows = std::tuple{
      row<&Index::OnBalanceVolume>(
          {.name = Index::OnBalanceVolumeName,
           .help = "The total of volume, added where the price rises and subtracted where it falls.",
           .arguments = {Data, Source, Volume, aliasOr(Index::OnBalanceVolumeName)},
           .columns = {aliasedColumn("2")},
           .faults = {Index::OnBalanceVolumeFault}}),
      row<&Index::PriceVolumeTrend>({.name = Index::PriceVolumeTrendName,
                                     .help = "The total of volume in proportion to the price's move.",
                                     .arguments = {Data, Source, Volume, aliasOr(Index::PriceVolumeTrendName)},
                                     .columns = {aliasedColumn("2")},
                                     .faults = {Index::PriceVolumeTrendFault}}),
      row<&Index::PositiveVolumeIndex>({.name = Index::PositiveVolumeIndexName,
                                        .help = "From 1 on, follows the price on the records of rising volume.",
                                        .arguments = {Data, Source, Volume, aliasOr(Index::PositiveVolumeIndexName)},
                                        .columns = {aliasedColumn("1")},
                                        .faults = {Index::PositiveVolumeIndexFault}}),
      row<&Index::NegativeVolumeIndex>({.name = Index::NegativeVolumeIndexName,
                                        .help = "From 1 on, follows the price on the records of falling volume.",
                                        .arguments = {Data, Source, Volume, aliasOr(Index::NegativeVolumeIndexName)},
                                        .columns = {aliasedColumn("1")},
                                        .faults = {Index::NegativeVolumeIndexFault}}),
      row<&Index::TradeVolumeIndex>({.name = Index::TradeVolumeIndexName,
                                     .help = "The total of volume, added or subtracted by the direction of trade.",
                                     .arguments = {Data,
                                                   Source,
                                                   Volume,
                                                   {.name = "MinTickValue",
                                                    .help = "A move up to this size keeps the direction; 0 or more.",
                                                    .usual = 0.05},
                                                   aliasOr(Index::TradeVolumeIndexName)},
                                     .columns = {aliasedColumn("2")},
                                     .faults = {Index::TradeVolumeIndexTickFault, Index::TradeVolumeIndexFault}}),
      row<&Index::Performance>({.name = Index::PerformanceName,
                                .help = "The change since record 1, in percent.",
                                .arguments = {Data, Source, aliasOr(Index::PerformanceName)},
                                .columns = {aliasedColumn("2")},
                                .faults = {Index::PerformanceFault}}),
      row<&Index::ComparativeRelativeStrength>(
          {.name = Index::ComparativeRelativeStrengthName,
           .help = "One column divided by another; -987654321 where both are equal.",
           .arguments = {Data,
                         {.name = "Source1", .help = "The column to measure.", .usual = "Close"},
                         {.name = "Source2", .help = "The column to measure it by.", .usual = "Open"},
                         aliasOr(Index::ComparativeRelativeStrengthName)},
           .columns = {aliasedColumn("1")},
           .faults = {Index::ComparativeRelativeStrengthFault}}),
      row<&Index::SwingIndex>({.name = Index::SwingIndexName,
                               .help = "Wilder's rating of a record's move against the record before.",
                               .arguments = {Data, OHLCV, LimitMoveValue, aliasOr(Index::SwingIndexName)},
                               .columns = {aliasedColumn("2")},
                               .faults = {faults::ObjectNotSet, Index::SwingIndexLimitFault, Index::SwingIndexFault}}),
      row<&Index::AccumulativeSwingIndex>(
          {.name = Index::AccumulativeSwingIndexName,
           .help = "The running total of the swing index.",
           .arguments = {Data, OHLCV, LimitMoveValue, aliasOr(Index::AccumulativeSwingIndexName)},
           .columns = {aliasedColumn("2")},
           .faults = {faults::ObjectNotSet, Index::AccumulativeSwingIndexLimitFault, Index::SwingIndexFault,
                      Index::AccumulativeSwingIndexFault}}),
      row<&Index::MassIndex>({.name = Index::MassIndexName,
                              .help = "The sum of the averaged range over its own average: a widening range raises it.",
                              .arguments = {Data, OHLCV, Periods.usually(25), aliasOr(Index::MassIndexName)},
                              .columns = {aliasedColumn("max(2 * Periods, Periods + 18)")},
                              .faults = {Index::MassIndexFault}}),
      row<&Index::ChaikinMoneyFlow>(
          {.name = Index::ChaikinMoneyFlowName,
           .help = "Where prices close within their ranges, with volume.",
           .arguments = {Data, OHLCV, Periods.usually(21), aliasOr(Index::ChaikinMoneyFlowName)},
           .columns = {aliasedColumn("Periods + 1")},
           .faults = {Index::ChaikinMoneyFlowFault}}),
      row<&Index::RelativeStrengthIndex>(
          {.name = Index::RelativeStrengthIndexName,
           .help = "Wilder's share of the rises in all movement, in percent.",
           .arguments = {Data, Source, Periods.usually(14), aliasOr(Index::RelativeStrengthIndexName)},
           .columns = {aliasedColumn("Periods + 1")},
           .faults = {Index::RelativeStrengthIndexPeriodsFault, Index::RelativeStrengthIndexFault}}),
      row<&Index::MoneyFlowIndex>(
          {.name = Index::MoneyFlowIndexName,
           .help = "The share of the money that flowed at rising prices, in percent.",
           .arguments = {Data, OHLCV, Periods.usually(14), aliasOr(Index::MoneyFlowIndexName)},
           .columns = {aliasedColumn("Periods + 1")},
           .faults = {faults::ObjectNotSet, Index::MoneyFlowIndexPeriodsFault, Index::MoneyFlowIndexFault}}),
      row<&Index::CommodityChannelIndex>(
          {.name = Index::CommodityChannelIndexName,
           .help = "How far the typical price is from its average, in mean deviations.",
           .arguments = {Data, OHLCV, Periods.usually(20), MA_Type, aliasOr(Index::CommodityChannelIndexName)},
           .columns = {aliasedColumn(AverageRow)},
           .faults = {faults::ObjectNotSet, Index::CommodityChannelIndexPeriodsFault,
                      Index::CommodityChannelIndexAverageFault, Index::CommodityChannelIndexFault}}),
      row<&Index::StochasticMomentumIndex>(
          {.name = "StochasticMomentumIndex",
           .help = "Where the close is within the range of the last records, smoothed twice.",
           .arguments =
               {Data,
                OHLCV,
                {.name = "KPeriods", .help = "How many records the range covers.", .usual = 13},
                {.name = "KSmoothing", .help = "The records of the first smoothing; none below 2.", .usual = 25},
                {.name = "KDoubleSmoothing", .help = "The records of the second smoothing; none below 2.", .usual = 2},
                {.name = "DPeriods", .help = "The records of the average of %K.", .usual = 9},
                MA_Type.usually(2)},
           .columns = {{Index::PercentKName,
                        "KPeriods + choose(KSmoothing < 2, 0, average(MA_Type, KSmoothing) - 1) + "
                        "choose(KDoubleSmoothing < 2, 0, "
                        "average(MA_Type, KDoubleSmoothing) - 1)"},
                       {Index::PercentDName,
                        "KPeriods + choose(KSmoothing < 2, 0, average(MA_Type, KSmoothing) - 1) + "
                        "choose(KDoubleSmoothing < 2, 0, "
                        "average(MA_Type, KDoubleSmoothing) - 1) + average(MA_Type, DPeriods) - 1"}},
           .faults = {faults::ObjectNotSet, Index::StochasticMomentumIndexPeriodsFault,
                      Index::StochasticMomentumIndexAverageFault, Index::StochasticMomentumIndexFault}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
