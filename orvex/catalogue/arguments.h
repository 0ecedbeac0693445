#pragma once

#include <string_view>

#include "orvex/catalogue/description.h"

/// The arguments and columns that many methods share.
namespace orvex::inline ORVEX_COUNTS::catalogue {

inline constexpr Argument Data{"data", "The price series: it supplies the record count and the cursor."};
inline constexpr Argument Source{"Source", "The column to compute from."};
inline constexpr Argument Periods{"Periods", "How many records the computation looks back."};
/// An argument that is the number of a record.
constexpr Argument recordNumber(std::string_view name, std::string_view help) {
  return {.name = name, .help = help, .record = true};
}
inline constexpr Argument StartPeriod = recordNumber("StartPeriod", "The first record of the span.");
inline constexpr Argument EndPeriod = recordNumber("EndPeriod", "The last record of the span.");

inline constexpr Argument OHLCV{"OHLCV",
                                "The price columns Open, High, Low, Close and Volume, as far as they are read."};

/// The code of a moving average, under the name that a method gives it.
constexpr Argument averageType(std::string_view name) {
  return {name,
          "The moving average: 1 simple, 2 exponential, 3 time-series, 4 variable, 5 triangular, 6 weighted, 7 VIDYA."};
}
inline constexpr Argument MA_Type = averageType("MA_Type");

/// The first computed row of a column that follows the average that `MA_Type` selects.
inline constexpr std::string_view AverageRow = "average(MA_Type, Periods)";

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

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
