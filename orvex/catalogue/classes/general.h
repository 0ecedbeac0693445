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

  static constexpr Argument StartPeriod = recordNumber("StartPeriod", "The first row of the range.").usually(1);
  static constexpr Argument EndPeriod = recordNumber("EndPeriod", "The last row of the range.").usually("N");

  static constexpr auto rows = std::tuple{
      row<&General::HHV>({.name = General::HHVName,
                          .help = "The highest value of a record and the Periods before it.",
                          .arguments = {Data,
                                        {.name = "High", .help = "The column to compute from.", .usual = "High"},
                                        Periods.usually(14),
                                        aliasOr(General::HHVName)},
                          .columns = {aliasedColumn("Periods + 1")},
                          .faults = {General::HHVFault}}),
      row<&General::LLV>({.name = General::LLVName,
                          .help = "The lowest value of a record and the Periods before it.",
                          .arguments = {Data,
                                        {.name = "Low", .help = "The column to compute from.", .usual = "Low"},
                                        Periods.usually(14),
                                        aliasOr(General::LLVName)},
                          .columns = {aliasedColumn("Periods + 1")},
                          .faults = {General::LLVFault}}),
      row<&General::HighMinusLow>({.name = General::HighMinusLowName,
                                   .help = "High - Low.",
                                   .arguments = {Data, OHLCV, aliasOr(General::HighMinusLowName)},
                                   .columns = {aliasedColumn("1")},
                                   .faults = {General::HighMinusLowFault}}),
      row<&General::MedianPrice>({.name = General::MedianPriceName,
                                  .help = "(High + Low) / 2.",
                                  .arguments = {Data, OHLCV, aliasOr(General::MedianPriceName)},
                                  .columns = {aliasedColumn("1")},
                                  .faults = {General::MedianPriceFault}}),
      row<&General::TypicalPrice>({.name = General::TypicalPriceName,
                                   .help = "(High + Low + Close) / 3.",
                                   .arguments = {Data, OHLCV, aliasOr(General::TypicalPriceName)},
                                   .columns = {aliasedColumn("1")},
                                   .faults = {General::TypicalPriceFault}}),
      row<&General::WeightedClose>({.name = General::WeightedCloseName,
                                    .help = "(High + Low + 2 x Close) / 4.",
                                    .arguments = {Data, OHLCV, aliasOr(General::WeightedCloseName)},
                                    .columns = {aliasedColumn("1")},
                                    .faults = {General::WeightedCloseFault}}),
      row<&General::VolumeROC>(
          {.name = General::VolumeROCName,
           .help = "The change over Periods records in percent; of no volume, the last such rate.",
           .arguments = {Data,
                         {.name = "Volume", .help = "The column to compute from.", .usual = "Volume"},
                         Periods.usually(14),
                         aliasOr(General::VolumeROCName)},
           .columns = {aliasedColumn("Periods + 1")},
           .faults = {General::VolumeROCFault}}),
      row<&General::PriceROC>({.name = General::PriceROCName,
                               .help = "The change over Periods records in percent.",
                               .arguments = {Data, Source, Periods.usually(12), aliasOr(General::PriceROCName)},
                               .columns = {aliasedColumn("Periods + 1")},
                               .faults = {General::PriceROCFault}}),
      row<&General::MaxValue>({.name = "MaxValue",
                               .help = "The largest value above 0 of a range of rows, and its first row.",
                               .arguments = {Source, StartPeriod, EndPeriod},
                               .faults = {General::MaxValueFault}}),
      row<&General::MinValue>({.name = "MinValue",
                               .help = "The smallest value of a range of rows, and its first row.",
                               .arguments = {Source, StartPeriod, EndPeriod},
                               .faults = {General::MinValueFault}}),
      row<&General::IsPrime>({.name = "IsPrime",
                              .help = "Tells whether a number is prime; 0 and 1 count as such.",
                              .arguments = {{.name = "Number", .help = "The number, not below 0.", .byValue = true}},
                              .faults = {faults::InvalidCall}}),
      row<&General::StandardDeviation>(
          {.name = General::StandardDeviationName,
           .help = "The spread of the last values around their moving average.",
           .arguments = {Data,
                         Source,
                         Periods.usually(20),
                         {.name = "StandardDeviations", .help = "How many of them.", .usual = 1},
                         averageType("MAType"),
                         aliasOr(General::StandardDeviationName)},
           .columns = {aliasedColumn("average(MAType, Periods)")},
           .faults = {General::StandardDeviationAverageFault, General::StandardDeviationFault}}),
      row<&General::CorrelationAnalysis>(
          {.name = "CorrelationAnalysis",
           .help = "How unlike the movements of two columns are.",
           .arguments = {{.name = "Source1", .help = "A column.", .usual = "Close"},
                         {.name = "Source2", .help = "The other, at least as long.", .usual = "Volume"}},
           .faults = {General::CorrelationAnalysisFault}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
