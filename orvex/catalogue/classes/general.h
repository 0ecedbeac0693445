#pragma once

#include <tuple>

#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"
#include "orvex/general/general.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<General> {
  static constexpr Identity identity{
      .name = "General",
      .help = "Price transforms, extremes, rates of change and statistics.",
      .classId = Guid("fabc57d4-aa38-41ba-9d12-d1af2c6926ce"),
      .interfaceId = Guid("d4bb2331-a819-43a5-85eb-d36306c4f671"),
  };

  static constexpr Argument StartPeriod = recordNumber("StartPeriod", "The first row of the range.");
  static constexpr Argument EndPeriod = recordNumber("EndPeriod", "The last row of the range.");

  static constexpr auto rows = std::tuple{
      row<&General::HHV>(General::HHVName, "The highest value of a record and the Periods before it.",
                         {Data, {"High", "The column to compute from."}, Periods, aliasOr(General::HHVName)},
                         {aliasedColumn("Periods + 1")}, {General::HHVFault}),
      row<&General::LLV>(General::LLVName, "The lowest value of a record and the Periods before it.",
                         {Data, {"Low", "The column to compute from."}, Periods, aliasOr(General::LLVName)},
                         {aliasedColumn("Periods + 1")}, {General::LLVFault}),
      row<&General::HighMinusLow>(General::HighMinusLowName, "High - Low.",
                                  {Data, OHLCV, aliasOr(General::HighMinusLowName)}, {aliasedColumn("1")},
                                  {General::HighMinusLowFault}),
      row<&General::MedianPrice>(General::MedianPriceName, "(High + Low) / 2.",
                                 {Data, OHLCV, aliasOr(General::MedianPriceName)}, {aliasedColumn("1")},
                                 {General::MedianPriceFault}),
      row<&General::TypicalPrice>(General::TypicalPriceName, "(High + Low + Close) / 3.",
                                  {Data, OHLCV, aliasOr(General::TypicalPriceName)}, {aliasedColumn("1")},
                                  {General::TypicalPriceFault}),
      row<&General::WeightedClose>(General::WeightedCloseName, "(High + Low + 2 x Close) / 4.",
                                   {Data, OHLCV, aliasOr(General::WeightedCloseName)}, {aliasedColumn("1")},
                                   {General::WeightedCloseFault}),
      row<&General::VolumeROC>(
          General::VolumeROCName, "The change over Periods records in percent; of no volume, the last such rate.",
          {Data, {"Volume", "The column to compute from."}, Periods, aliasOr(General::VolumeROCName)},
          {aliasedColumn("Periods + 1")}, {General::VolumeROCFault}),
      row<&General::PriceROC>(General::PriceROCName, "The change over Periods records in percent.",
                              {Data, Source, Periods, aliasOr(General::PriceROCName)}, {aliasedColumn("Periods + 1")},
                              {General::PriceROCFault}),
      row<&General::MaxValue>("MaxValue", "The largest value above 0 of a range of rows, and its first row.",
                              {Source, StartPeriod, EndPeriod}, {}, {General::MaxValueFault}),
      row<&General::MinValue>("MinValue", "The smallest value of a range of rows, and its first row.",
                              {Source, StartPeriod, EndPeriod}, {}, {General::MinValueFault}),
      row<&General::IsPrime>("IsPrime", "Tells whether a number is prime; 0 and 1 count as such.",
                             {{.name = "Number", .help = "The number, not below 0.", .byValue = true}}, {},
                             {faults::InvalidCall}),
      row<&General::StandardDeviation>(General::StandardDeviationName,
                                       "The spread of the last values around their moving average.",
                                       {Data,
                                        Source,
                                        Periods,
                                        {"StandardDeviations", "How many of them."},
                                        averageType("MAType"),
                                        aliasOr(General::StandardDeviationName)},
                                       {aliasedColumn("average(MAType, Periods)")},
                                       {General::StandardDeviationAverageFault, General::StandardDeviationFault}),
      row<&General::CorrelationAnalysis>("CorrelationAnalysis", "How unlike the movements of two columns are.",
                                         {{"Source1", "A column."}, {"Source2", "The other, at least as long."}}, {},
                                         {General::CorrelationAnalysisFault}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
