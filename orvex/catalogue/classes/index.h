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

  static constexpr Argument Volume{"Volume", "The column of volumes."};
  static constexpr Argument LimitMoveValue{"LimitMoveValue", "The most that the price can move in a period, above 0."};

  static constexpr auto rows = std::tuple{
      row<&Index::OnBalanceVolume>(Index::OnBalanceVolumeName,
                                   "The total of volume, added where the price rises and subtracted where it falls.",
                                   {Data, Source, Volume, aliasOr(Index::OnBalanceVolumeName)}, {aliasedColumn("2")},
                                   {Index::OnBalanceVolumeFault}),
      row<&Index::PriceVolumeTrend>(Index::PriceVolumeTrendName,
                                    "The total of volume in proportion to the price's move.",
                                    {Data, Source, Volume, aliasOr(Index::PriceVolumeTrendName)}, {aliasedColumn("2")},
                                    {Index::PriceVolumeTrendFault}),
      row<&Index::PositiveVolumeIndex>(Index::PositiveVolumeIndexName,
                                       "From 1 on, follows the price on the records of rising volume.",
                                       {Data, Source, Volume, aliasOr(Index::PositiveVolumeIndexName)},
                                       {aliasedColumn("1")}, {Index::PositiveVolumeIndexFault}),
      row<&Index::NegativeVolumeIndex>(Index::NegativeVolumeIndexName,
                                       "From 1 on, follows the price on the records of falling volume.",
                                       {Data, Source, Volume, aliasOr(Index::NegativeVolumeIndexName)},
                                       {aliasedColumn("1")}, {Index::NegativeVolumeIndexFault}),
      row<&Index::TradeVolumeIndex>(
          Index::TradeVolumeIndexName, "The total of volume, added or subtracted by the direction of trade.",
          {Data,
           Source,
           Volume,
           {"MinTickValue", "A move up to this size keeps the direction; 0 or more."},
           aliasOr(Index::TradeVolumeIndexName)},
          {aliasedColumn("2")}, {Index::TradeVolumeIndexTickFault, Index::TradeVolumeIndexFault}),
      row<&Index::Performance>(Index::PerformanceName, "The change since record 1, in percent.",
                               {Data, Source, aliasOr(Index::PerformanceName)}, {aliasedColumn("2")},
                               {Index::PerformanceFault}),
      row<&Index::ComparativeRelativeStrength>(Index::ComparativeRelativeStrengthName,
                                               "One column divided by another; -987654321 where both are equal.",
                                               {Data,
                                                {"Source1", "The column to measure."},
                                                {"Source2", "The column to measure it by."},
                                                aliasOr(Index::ComparativeRelativeStrengthName)},
                                               {aliasedColumn("1")}, {Index::ComparativeRelativeStrengthFault}),
      row<&Index::SwingIndex>(Index::SwingIndexName, "Wilder's rating of a record's move against the record before.",
                              {Data, OHLCV, LimitMoveValue, aliasOr(Index::SwingIndexName)}, {aliasedColumn("2")},
                              {faults::ObjectNotSet, Index::SwingIndexLimitFault, Index::SwingIndexFault}),
      row<&Index::AccumulativeSwingIndex>(Index::AccumulativeSwingIndexName, "The running total of the swing index.",
                                          {Data, OHLCV, LimitMoveValue, aliasOr(Index::AccumulativeSwingIndexName)},
                                          {aliasedColumn("2")},
                                          {faults::ObjectNotSet, Index::AccumulativeSwingIndexLimitFault,
                                           Index::SwingIndexFault, Index::AccumulativeSwingIndexFault}),
      row<&Index::MassIndex>(Index::MassIndexName,
                             "The sum of the averaged range over its own average: a widening range raises it.",
                             {Data, OHLCV, Periods, aliasOr(Index::MassIndexName)},
                             {aliasedColumn("max(2 * Periods, Periods + 18)")}, {Index::MassIndexFault}),
      row<&Index::ChaikinMoneyFlow>(Index::ChaikinMoneyFlowName, "Where prices close within their ranges, with volume.",
                                    {Data, OHLCV, Periods, aliasOr(Index::ChaikinMoneyFlowName)},
                                    {aliasedColumn("Periods + 1")}, {Index::ChaikinMoneyFlowFault}),
      row<&Index::RelativeStrengthIndex>(
          Index::RelativeStrengthIndexName, "Wilder's share of the rises in all movement, in percent.",
          {Data, Source, Periods, aliasOr(Index::RelativeStrengthIndexName)}, {aliasedColumn("Periods + 1")},
          {Index::RelativeStrengthIndexPeriodsFault, Index::RelativeStrengthIndexFault}),
      row<&Index::MoneyFlowIndex>(
          Index::MoneyFlowIndexName, "The share of the money that flowed at rising prices, in percent.",
          {Data, OHLCV, Periods, aliasOr(Index::MoneyFlowIndexName)}, {aliasedColumn("Periods + 1")},
          {faults::ObjectNotSet, Index::MoneyFlowIndexPeriodsFault, Index::MoneyFlowIndexFault}),
      row<&Index::CommodityChannelIndex>(
          Index::CommodityChannelIndexName, "How far the typical price is from its average, in mean deviations.",
          {Data, OHLCV, Periods, MA_Type, aliasOr(Index::CommodityChannelIndexName)}, {aliasedColumn(AverageRow)},
          {faults::ObjectNotSet, Index::CommodityChannelIndexPeriodsFault, Index::CommodityChannelIndexAverageFault,
           Index::CommodityChannelIndexFault}),
      row<&Index::StochasticMomentumIndex>(
          "StochasticMomentumIndex", "Where the close is within the range of the last records, smoothed twice.",
          {Data,
           OHLCV,
           {"KPeriods", "How many records the range covers."},
           {"KSmoothing", "The records of the first smoothing; none below 2."},
           {"KDoubleSmoothing", "The records of the second smoothing; none below 2."},
           {"DPeriods", "The records of the average of %K."},
           MA_Type},
          {{Index::PercentKName,
            "KPeriods + choose(KSmoothing < 2, 0, average(MA_Type, KSmoothing) - 1) + choose(KDoubleSmoothing < 2, 0, "
            "average(MA_Type, KDoubleSmoothing) - 1)"},
           {Index::PercentDName,
            "KPeriods + choose(KSmoothing < 2, 0, average(MA_Type, KSmoothing) - 1) + choose(KDoubleSmoothing < 2, 0, "
            "average(MA_Type, KDoubleSmoothing) - 1) + average(MA_Type, DPeriods) - 1"}},
          {faults::ObjectNotSet, Index::StochasticMomentumIndexPeriodsFault, Index::StochasticMomentumIndexAverageFault,
           Index::StochasticMomentumIndexFault}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
