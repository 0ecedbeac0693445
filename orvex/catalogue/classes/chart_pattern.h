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
      .header = "orvex/studies/chart_pattern.h",
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
                      ChartPattern::PercentRetracementFault},
           .purpose = Purpose::Pattern,
           .guide = {.formula = "with max and min of the span and last = Source(EndPeriod): 100 - (last - min) / (max "
                                "- min) x 100 where max came later (ADVANCING), 100 - (max - last) / (max - min) x 100 "
                                "where min did (DECLINING)",
                     .reading = "How much of the last move was given back: 33, 50 and 67 percent are where corrections "
                                "are said to end.",
                     .origin = "Charles Dow's halves and thirds; the form is Orvex's own.",
                     .difference = "The maximum is sought from 0: where no value of the span is above 0, it is 0.",
                     .fails = "where the span is empty, and where Source is too short"}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
