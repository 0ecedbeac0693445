#pragma once

#include <string>
#include <string_view>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

/// A name of the catalogue as languages write it that do not use capitals: simple_moving_average of
/// SimpleMovingAverage, stoch_rsi of StochRSI, williams_pct_r of WilliamsPctR, macd of MACD, ma_type of MA_Type and of
/// MAType.
std::string snakeCase(std::string_view name);

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
