#pragma once

#include <string_view>

#include "orvex/catalogue/description.h"

/// The arguments and columns that many methods share.
namespace orvex::catalogue {

inline constexpr Argument Data{"data", "The price series: it supplies the record count and the cursor."};
inline constexpr Argument Source{"Source", "The column to compute from."};
inline constexpr Argument Periods{"Periods", "How many records the computation looks back."};
inline constexpr Argument Ohlcv{"OHLCV", "The set of the price columns."};
inline constexpr Argument AverageType{"MA_Type", "The code of the moving average, 1 to 7."};
inline constexpr Argument StartPeriod{"StartPeriod", "The first record of the span."};
inline constexpr Argument EndPeriod{"EndPeriod", "The last record of the span."};

/// The name of the result's column; empty or left out it becomes the default, in the caller's variable too.
constexpr Argument aliasOr(std::string_view name) {
  return {"Alias", "The name of the result's column.", true, {.text = name}};
}

/// A result column that bears the alias.
constexpr Column aliasedColumn(std::string_view firstRow, std::string_view lastRow = "N") {
  return {"", firstRow, true, lastRow};
}

/// A result column that is drawn over the span of records only.
constexpr Column drawnColumn(std::string_view name) {
  return {name, "StartPeriod", false, "EndPeriod"};
}

}  // namespace orvex::catalogue
