#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "orvex/catalogue/description.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

/// The computed rows of a column: those whose every input is itself computed. Rows outside it hold 0 or what the
/// definition makes of inputs that are not computed. None when `first` > `last`.
struct RowRange {
  int first;
  int last;

  bool contains(int row) const { return first <= row && row <= last; }
};

/// An expression of whole numbers, read once for any number of calls of its method: names of arguments that are whole
/// numbers, N, numbers, + - * (and \ for whole division), parentheses, and the functions
///   max(a, b, ...), min(a, b, ...)
///   average(code, periods)   the first computed row of the moving average of that code
///   average(code, periods, first)   the same of a column that is itself computed from row `first` on
///   lookback(kind, periods)   how many records after its column's first an average of `Standard` begins
///   candle(pattern)   how many records a candlestick pattern of `Standard` needs before it ends
///   root(a)   the whole part of the square root
///   choose(a < b, x, y)      x where the comparison holds, otherwise y
class RowExpression {
 public:
  /// Error 5 for one that is not well-formed or names something else.
  RowExpression(std::string_view expression, const Method& method);

  /// Its value for a call with these arguments, N being `count`. Error 5 for an argument that is no whole number.
  std::int64_t operator()(int count, std::span<const Value> arguments) const;

 private:
  class Reader;

  enum class Operation {
    Number,
    Count,
    Argument,
    Add,
    Subtract,
    Multiply,
    Divide,
    Greater,
    Less,
    Average,
    Lookback,
    Candle,
    Root,
    Choose
  };
  /// What is done with the values that stand on a stack, as they are found in the expression.
  struct Step {
    Operation operation;
    std::int64_t operand = 0;  // the number, or the place of the argument
  };
  /// More values than any expression leaves waiting.
  static constexpr std::size_t Depth = 16;

  std::vector<Step> steps_;
};

/// The computed rows of a column, read once for any number of calls of its method.
class ColumnRows {
 public:
  ColumnRows(const Method& method, const Column& column)
      : first_(column.firstRow, method), last_(column.lastRow, method) {}

  /// The rows first..last, cut to 1..`count`, of a call with these arguments (each of its argument's type).
  RowRange operator()(int count, std::span<const Value> arguments) const;

 private:
  RowExpression first_;
  RowExpression last_;
};

/// The same for a single call.
RowRange computedRows(const Method& method, const Column& column, int count, std::span<const Value> arguments);

/// The value of an expression for a single call.
std::int64_t evaluateRow(std::string_view expression, const Method& method, int count,
                         std::span<const Value> arguments);

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
