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
      .header = "orvex/general/general.h",
      .classId = Guid("fabc57d4-aa38-41ba-9d12-d1af2c6926ce"),
      .interfaceId = Guid("d4bb2331-a819-43a5-85eb-d36306c4f671"),
  };

  static constexpr Argument StartPeriod = recordNumber("StartPeriod", "The first row of the range.").usually(1);
  static constexpr Argument EndPeriod = recordNumber("EndPeriod", "The last row of the range.").usually("N");

  static constexpr auto rows = std::tuple{
      row<&General::HHV>(
          {.name = General::HHVName,
           .help = "The highest value of a record and the Periods before it.",
           .arguments = {Data,
                         {.name = "High", .help = "The column to compute from.", .usual = "High"},
                         Periods.usually(14),
                         aliasOr(General::HHVName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .help = "The highest value.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {General::HHVFault},
           .purpose = Purpose::Price,
           .abbreviations = {"HHV", "MAX"},
           .guide = {.formula = "row r = the largest of High(r - Periods) .. High(r)",
                     .reading = "The ceiling of the last records. A close above yesterday's is a breakout.",
                     .origin = "The field's common form. Richard Donchian's four-week rule made a system of it.",
                     .difference = "It covers Periods + 1 records, the record itself and Periods before it; other "
                                   "programs cover Periods.",
                     .fails = "where Periods is below 0, and where a value is not finite"}}),
      row<&General::LLV>(
          {.name = General::LLVName,
           .help = "The lowest value of a record and the Periods before it.",
           .arguments = {Data,
                         {.name = "Low", .help = "The column to compute from.", .usual = "Low"},
                         Periods.usually(14),
                         aliasOr(General::LLVName)},
           .columns = {{.firstRow = "Periods + 1",
                        .aliased = true,
                        .help = "The lowest value.",
                        .unit = SourceUnit,
                        .place = Place::Over}},
           .faults = {General::LLVFault},
           .purpose = Purpose::Price,
           .abbreviations = {"LLV", "MIN"},
           .guide = {.formula = "row r = the smallest of Low(r - Periods) .. Low(r)",
                     .reading = "The floor of the last records. A close below yesterday's is a breakdown.",
                     .origin = "The field's common form. Richard Donchian's four-week rule made a system of it.",
                     .difference = "It covers Periods + 1 records, the record itself and Periods before it; other "
                                   "programs cover Periods.",
                     .fails = "where Periods is below 0, and where a value is not finite"}}),
      row<&General::HighMinusLow>(
          {.name = General::HighMinusLowName,
           .help = "High - Low.",
           .arguments = {Data, OHLCV, aliasOr(General::HighMinusLowName)},
           .columns = {{.firstRow = "1", .aliased = true, .help = "The range.", .unit = PriceUnit}},
           .faults = {General::HighMinusLowFault},
           .purpose = Purpose::Volatility,
           .guide = {.formula = "row r = High(r) - Low(r)",
                     .reading = "How far the price went within a record. Wide ranges come with turns and with news.",
                     .origin = "The field's common form; no single author.",
                     .fails = "where High or Low is missing or not finite"}}),
      row<&General::MedianPrice>(
          {.name = General::MedianPriceName,
           .help = "(High + Low) / 2.",
           .arguments = {Data, OHLCV, aliasOr(General::MedianPriceName)},
           .columns =
               {{.firstRow = "1", .aliased = true, .help = "The middle.", .unit = PriceUnit, .place = Place::Over}},
           .faults = {General::MedianPriceFault},
           .purpose = Purpose::Price,
           .abbreviations = {"MEDPRICE", "HL2"},
           .guide = {.formula = "row r = (High(r) + Low(r)) / 2",
                     .reading = "One price for a record that does not hang on its close.",
                     .origin = "The field's common form; no single author.",
                     .fails = "where High or Low is missing or not finite"}}),
      row<&General::TypicalPrice>(
          {.name = General::TypicalPriceName,
           .help = "(High + Low + Close) / 3.",
           .arguments = {Data, OHLCV, aliasOr(General::TypicalPriceName)},
           .columns = {{.firstRow = "1",
                        .aliased = true,
                        .help = "The mean of the three.",
                        .unit = PriceUnit,
                        .place = Place::Over}},
           .faults = {General::TypicalPriceFault},
           .purpose = Purpose::Price,
           .abbreviations = {"TYPPRICE", "HLC3"},
           .guide = {.formula = "row r = (High(r) + Low(r) + Close(r)) / 3",
                     .reading = "One price for a record, for averages and for volume: commodity channel and money flow "
                                "index are made of it.",
                     .origin = "The field's common form. Chester Keltner took it for his channel in 1960.",
                     .fails = "where High, Low or Close is missing or not finite"}}),
      row<&General::WeightedClose>(
          {.name = General::WeightedCloseName,
           .help = "(High + Low + 2 x Close) / 4.",
           .arguments = {Data, OHLCV, aliasOr(General::WeightedCloseName)},
           .columns = {{.firstRow = "1",
                        .aliased = true,
                        .help = "The weighted mean.",
                        .unit = PriceUnit,
                        .place = Place::Over}},
           .faults = {General::WeightedCloseFault},
           .purpose = Purpose::Price,
           .abbreviations = {"WCLPRICE", "HLCC4"},
           .guide = {.formula = "row r = (High(r) + Low(r) + 2 x Close(r)) / 4",
                     .reading = "As the typical price, with more weight on where trading ended.",
                     .origin = "The field's common form; no single author.",
                     .fails = "where High, Low or Close is missing or not finite"}}),
      row<&General::VolumeROC>(
          {.name = General::VolumeROCName,
           .help = "The change over Periods records in percent; of no volume, the last such rate.",
           .arguments = {Data,
                         {.name = "Volume", .help = "The column to compute from.", .usual = "Volume"},
                         Periods.usually(14),
                         aliasOr(General::VolumeROCName)},
           .columns = {{.firstRow = "Periods + 1", .aliased = true, .help = "The change.", .unit = PercentUnit}},
           .faults = {General::VolumeROCFault},
           .purpose = Purpose::Volume,
           .abbreviations = {"VROC"},
           .guide = {.formula = "row r = (Volume(r) - Volume(r - Periods)) / Volume(r - Periods) x 100; where that "
                                "volume is 0, the row before",
                     .reading = "Breakouts and turns with rising volume are trusted more than those without.",
                     .origin = "The field's common form; no single author.",
                     .difference = "A volume of 0 to compare with repeats the last rate instead of having none.",
                     .fails = "where Periods is below 0 or above N, and where a volume is not finite"},
           .levels = {0}}),
      row<&General::PriceROC>(
          {.name = General::PriceROCName,
           .help = "The change over Periods records in percent.",
           .arguments = {Data, Source, Periods.usually(12), aliasOr(General::PriceROCName)},
           .columns = {{.firstRow = "Periods + 1", .aliased = true, .help = "The change.", .unit = PercentUnit}},
           .faults = {General::PriceROCFault},
           .purpose = Purpose::Momentum,
           .abbreviations = {"ROC"},
           .guide = {.formula = "row r = (Source(r) - Source(r - Periods)) / Source(r - Periods) x 100",
                     .reading = "Above 0 the price is higher than Periods records ago. Extremes tell of a move that "
                                "has gone fast, a falling rate in a rise of one that tires.",
                     .origin = "The field's common form; no single author.",
                     .fails = "where the value Periods records back is 0, and where Periods is below 0 or above N"},
           .levels = {0}}),
      row<&General::MaxValue>(
          {.name = "MaxValue",
           .help = "The largest value above 0 of a range of rows, and its first row.",
           .arguments = {Source, StartPeriod, EndPeriod},
           .faults = {General::MaxValueFault},
           .purpose = Purpose::Statistics,
           .guide = {.formula = "the note's value = the largest value above 0 of the rows StartPeriod to EndPeriod, "
                                "its period = the first row that has it",
                     .reading = "The high of a span and when it stood.",
                     .origin = "Orvex's own form.",
                     .difference = "The search begins from 0 and not from a row: where no value is above 0 the answer "
                                   "is value 0, period 0.",
                     .fails = "where EndPeriod is before StartPeriod, and where the rows leave the column"}}),
      row<&General::MinValue>(
          {.name = "MinValue",
           .help = "The smallest value of a range of rows, and its first row.",
           .arguments = {Source, StartPeriod, EndPeriod},
           .faults = {General::MinValueFault},
           .purpose = Purpose::Statistics,
           .guide = {.formula = "the note's value = the smallest value of the rows StartPeriod to EndPeriod, its "
                                "period = the first row that has it",
                     .reading = "The low of a span and when it stood.",
                     .origin = "Orvex's own form.",
                     .fails = "where EndPeriod is before StartPeriod, and where the rows leave the column"}}),
      row<&General::IsPrime>(
          {.name = "IsPrime",
           .help = "Tells whether a number is prime; 0 and 1 count as such.",
           .arguments = {{.name = "Number", .help = "The number, not below 0.", .byValue = true}},
           .faults = {faults::InvalidCall},
           .purpose = Purpose::Statistics,
           .guide =
               {.formula = "whether no whole number from 2 to Number - 1 divides Number",
                .reading = "What the prime-number studies count with.",
                .origin = "Euclid's definition.",
                .difference =
                    "0 and 1 count as primes here, as the prime-number studies need it; in arithmetic they are none.",
                .fails = "where Number is below 0"},
           .example = "Number=97"}),
      row<&General::StandardDeviation>(
          {.name = General::StandardDeviationName,
           .help = "The spread of the last values around their moving average.",
           .arguments = {Data,
                         Source,
                         Periods.usually(20),
                         {.name = "StandardDeviations", .help = "How many of them.", .usual = 1},
                         averageType("MAType"),
                         aliasOr(General::StandardDeviationName)},
           .columns = {{.firstRow = "average(MAType, Periods)",
                        .aliased = true,
                        .help = "The spread.",
                        .unit = SourceUnit,
                        .bounds = {.low = 0}}},
           .faults = {General::StandardDeviationAverageFault, General::StandardDeviationFault},
           .purpose = Purpose::Volatility,
           .abbreviations = {"STDDEV", "SD"},
           .guide = {.formula = "row r = StandardDeviations x the root of ((Source(r) - m)^2 + ... + (Source(r - "
                                "Periods + 1) - m)^2) / Periods, m = row r of the average",
                     .reading = "How far prices stray from their average. Low values are quiet times, which do not "
                                "last; tops come with high and wild ones.",
                     .origin = "Karl Pearson, 1894. Its use on prices has no single author.",
                     .difference = "The divisor is Periods, that of a whole population; a sample's is Periods - 1. The "
                                   "first row is Periods + 1, one later than it could be. Around another than the "
                                   "simple average it is no standard deviation of the textbook.",
                     .fails = "where Periods is below 1 or above N, and where a value is not finite"}}),
      row<&General::CorrelationAnalysis>(
          {.name = "CorrelationAnalysis",
           .help = "How unlike the movements of two columns are.",
           .arguments = {{.name = "Source1", .help = "A column.", .usual = "Close"},
                         {.name = "Source2", .help = "The other, at least as long.", .usual = asExample("Volume")}},
           .faults = {General::CorrelationAnalysisFault},
           .purpose = Purpose::Statistics,
           .guide =
               {.formula = "1 - total / (n - 2), total = the sum over rows 2 to n of |Source1(i) - Source1(i - 1)| x "
                           "|Source2(i) - Source2(i - 1)|",
                .reading = "1 where one column rests whenever the other moves; the more both move at once, the lower. "
                           "It depends on the units of the columns, so only results of the same two markets compare.",
                .origin = "Orvex's own.",
                .difference =
                    "It is no coefficient of correlation, which lies between -1 and 1: the movements are taken without "
                    "their signs, nothing is scaled by the columns' spreads, and n - 1 products are divided by n - 2.",
                .fails = "where Source1 has two rows, and where Source2 is shorter than Source1"}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
