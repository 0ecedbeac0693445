#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "orvex/catalogue/description.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

/// The computed rows of a column: those whose every input is itself computed. Rows outside it hold 0 or what the
/// definition makes of inputs that are not computed. None when `first` > `last`.
struct RowRange {
  int first;
  int last;

  bool contains(int row) const { return first <= row && row <= last; }
};

/// The rows first..last of a column, cut to 1..`count`, for a call with these arguments (each of its argument's type).
RowRange computedRows(const Method& method, const Column& column, int count, std::span<const Value> arguments);

/// The value of an expression of whole numbers: names of arguments that are whole numbers, N, numbers, + - * (and \ for
/// whole division), parentheses, and the functions
///   max(a, b, ...), min(a, b, ...)
///   average(code, periods)   the first computed row of the moving average of that code
///   average(code, periods, first)   the same of a column that is itself computed from row `first` on
///   lookback(kind, periods)   how many records after its column's first an average of `Standard` begins
///   candle(pattern)   how many records a candlestick pattern of `Standard` needs before it ends
///   root(a)   the whole part of the square root
///   choose(a < b, x, y)      x where the comparison holds, otherwise y
/// Error 5 for one that is not well-formed or names something else.
std::int64_t evaluateRow(std::string_view expression, const Method& method, int count,
                         std::span<const Value> arguments);

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
