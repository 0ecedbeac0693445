#pragma once

#include <string_view>

#include "orvex/catalogue/description.h"

/// The arguments and columns that many methods share.
namespace orvex::catalogue {

inline constexpr Argument Data{"data", "The price series: it supplies the record count and the cursor."};
inline constexpr Argument Source{"Source", "The column to compute from."};
inline constexpr Argument Periods{"Periods", "How many records the computation looks back."};

/// The name of the result's column; empty or left out it becomes the default, in the caller's variable too.
constexpr Argument aliasOr(std::string_view name) {
  return {"Alias", "The name of the result's column.", true, {.text = name}};
}

/// A result column that bears the alias.
constexpr Column aliasedColumn(std::string_view firstRow, std::string_view lastRow = "N") {
  return {"", firstRow, true, lastRow};
}

}  // namespace orvex::catalogue
