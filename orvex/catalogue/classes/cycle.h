#pragma once

#include <tuple>

#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"
#include "orvex/patterns/cycle.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<Cycle> {
  static constexpr Identity identity{
      .name = "Cycle",
      .help = "The length of the cycle in a column.",
      .header = "orvex/patterns/cycle.h",
      .classId = Guid("22a37c99-9001-486b-a383-2e289e386909"),
      .interfaceId = Guid("2e539042-9bc8-496a-860f-8535ac0cfb3c"),
  };

  static constexpr auto rows = std::tuple{
      row<&Cycle::Analyze>(
          {.name = "Analyze",
           .help = "How many records a price that has fallen takes to climb back, on average.",
           .arguments = {Source},
           .faults = {Cycle::AnalyzeFault},
           .purpose = Purpose::Statistics,
           .guide = {.formula = "the mean over records of how many records pass until a value comes back between its "
                                "neighbours, after a fall",
                     .reading = "The typical length of a swing in records: half or all of it is taken for the period "
                                "of an oscillator.",
                     .origin = "Orvex's own.",
                     .difference =
                         "It is no spectral analysis: it counts how long falls last, not how periodic they are.",
                     .fails = "where Source has two rows, and where the distances add up to more than a count holds"}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
