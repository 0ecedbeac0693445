#pragma once

#include <tuple>

#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"
#include "orvex/general/general.h"
#include "orvex/studies/chart_pattern.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<ChartPattern> {
  static constexpr Identity identity{
      .name = "ChartPattern",
      .help = "Questions about the shape of a span of prices.",
      .classId = Guid("ac2651c0-2d6d-40f8-b5fd-70f6cf10e316"),
      .interfaceId = Guid("670ea47f-7e13-460d-8f16-1c53927d7961"),
  };

  static constexpr auto rows = std::tuple{
      row<&ChartPattern::PercentRetracement>(
          {.name = "PercentRetracement",
           .help = "How much of a span's move the last value has given back, in percent.",
           .arguments = {Data, Source, StartPeriod, EndPeriod},
           .faults = {faults::ObjectNotSet, ChartPattern::PercentRetracementEndFault,
                      ChartPattern::PercentRetracementStartFault, General::MaxValueFault,
                      ChartPattern::PercentRetracementFault}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
