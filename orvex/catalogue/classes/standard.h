#pragma once

#include <tuple>

#include "orvex/catalogue/classes/standard_averages.h"
#include "orvex/catalogue/classes/standard_bands.h"
#include "orvex/catalogue/classes/standard_cycles.h"
#include "orvex/catalogue/classes/standard_directional.h"
#include "orvex/catalogue/classes/standard_momentum.h"
#include "orvex/catalogue/classes/standard_patterns.h"
#include "orvex/catalogue/classes/standard_prices.h"
#include "orvex/catalogue/classes/standard_statistics.h"
#include "orvex/catalogue/classes/standard_volatility.h"
#include "orvex/catalogue/classes/standard_volume.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<Standard> {
  static constexpr Identity identity{
      .name = "Standard",
      .help = "The definitions that charts and textbooks use.",
      .header = "orvex/standard/standard.h",
      .classId = Guid("543c3f25-d05d-4b10-a887-eacf9f9fd348"),
      .interfaceId = Guid("22d62633-a1f3-4403-b617-697a5efc1197"),
      .qualified = true,
  };

  // New families are appended: the order is that of the interface.
  static constexpr auto rows =
      std::tuple_cat(standardAverages, standardBands, standardDirection, standardMomentum, standardVolume,
                     standardVolatility, standardStatistics, standardCycles, standardPrices, standardPatterns);
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
