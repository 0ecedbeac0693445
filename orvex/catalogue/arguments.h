#pragma once

#include <array>
#include <string_view>

#include "orvex/catalogue/description.h"

/// The arguments and columns that many methods share.
namespace orvex::inline ORVEX_COUNTS::catalogue {

inline constexpr Argument Data{"data", "The price series: it supplies the record count and the cursor."};
inline constexpr Argument Source{.name = "Source", .help = "The column to compute from.", .usual = "Close"};
inline constexpr Argument Periods{"Periods", "How many records the computation looks back."};
/// An argument that is the number of a record.
constexpr Argument recordNumber(std::string_view name, std::string_view help) {
  return {.name = name, .help = help, .record = true};
}
inline constexpr Argument StartPeriod = recordNumber("StartPeriod", "The first record of the span.").usually(2);
inline constexpr Argument EndPeriod = recordNumber("EndPeriod", "The last record of the span.").usually("N");

inline constexpr Argument OHLCV{"OHLCV",
                                "The price columns Open, High, Low, Close and Volume, as far as they are read."};

inline constexpr std::array AverageTypes = {Choice{1, "Simple"},   Choice{2, "Exponential"}, Choice{3, "TimeSeries"},
                                            Choice{4, "Variable"}, Choice{5, "Triangular"},  Choice{6, "Weighted"},
                                            Choice{7, "VIDYA"}};

/// The code of a moving average, under the name that a method gives it.
constexpr Argument averageType(std::string_view name) {
  return {.name = name, .help = "The kind of moving average.", .usual = 1, .choices = AverageTypes};
}
inline constexpr Argument MA_Type = averageType("MA_Type");

/// The first computed row of a column that follows the average that `MA_Type` selects.
inline constexpr std::string_view AverageRow = "average(MA_Type, Periods)";

/// The name of the result's column; empty or left out it becomes the default, in the caller's variable too.
constexpr Argument aliasOr(std::string_view name) {
  return {"Alias", "The name of the result's column.", true, {.text = name}};
}

/// The units of result columns.
inline constexpr std::string_view SourceUnit = "the source's";
inline constexpr std::string_view PriceUnit = "price";
inline constexpr std::string_view VolumeUnit = "volume";
inline constexpr std::string_view PercentUnit = "percent";
inline constexpr std::string_view RecordsUnit = "records";

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
