#pragma once

#include <tuple>

#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"
#include "orvex/patterns/candle_stick.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<CandleStick> {
  static constexpr Identity identity{
      .name = "CandleStick",
      .help = "Japanese candlestick patterns.",
      .header = "orvex/patterns/candle_stick.h",
      .classId = Guid("42130d56-65f5-4e82-89c0-bb2f55337adb"),
      .interfaceId = Guid("965b6369-a659-47b4-a2ab-1b562132a927"),
  };

  static constexpr auto rows = std::tuple{
      row<&CandleStick::IdentifyPattern>(
          {.name = "IdentifyPattern",
           .help = "The candlestick pattern that ends at a record.",
           .arguments = {Data, OHLCV, recordNumber("Period", "The record.").usually("N")},
           .faults = {faults::ObjectNotSet, CandleStick::IdentifyPatternPeriodFault, CandleStick::IdentifyPatternFault},
           .purpose = Purpose::Pattern,
           .guide = {.formula = "the first that holds of the patterns of three records, of two and of one, measured "
                                "against the ten records before; docs/candlestick-patterns.md lists the conditions",
                     .reading =
                         "The note names the pattern that ends at the record; its value is 1 for a bullish one, -1 for "
                         "a bearish one and 0 for neither. A pattern says most at the end of a clear move.",
                     .origin = "Steve Nison, Japanese Candlestick Charting Techniques, 1991.",
                     .difference = "Nison speaks of long and small bodies without numbers; here they are measured "
                                   "against the mean body of the ten records before.",
                     .fails = "where a price is missing or not finite"},
           .example = "Period=497"}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
