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
      .classId = Guid("42130d56-65f5-4e82-89c0-bb2f55337adb"),
      .interfaceId = Guid("965b6369-a659-47b4-a2ab-1b562132a927"),
  };

  static constexpr auto rows = std::tuple{
      row<&CandleStick::IdentifyPattern>(
          {.name = "IdentifyPattern",
           .help = "The candlestick pattern that ends at a record.",
           .arguments = {Data, OHLCV, recordNumber("Period", "The record.").usually("N")},
           .faults = {faults::ObjectNotSet, CandleStick::IdentifyPatternPeriodFault,
                      CandleStick::IdentifyPatternFault}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
