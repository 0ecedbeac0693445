#include "orvex/catalogue/computed_rows.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "orvex/averages/average_type.h"
#include "orvex/data/error.h"
#include "orvex/data/integer.h"
#include "orvex/standard/candles.h"
#include "orvex/standard/parts.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

namespace {

/// Reads and evaluates an expression in one pass.
class Evaluation {
 public:
  Evaluation(std::string_view expression, const Method& method, int count, std::span<const Value> arguments)
      : rest_(expression), method_(method), count_(count), arguments_(arguments) {}

  std::int64_t whole() {
    const std::int64_t value = sum();
    skipBlanks();
    if (!rest_.empty()) fail();
    return value;
  }

 private:
  [[noreturn]] static void fail() { raise(faults::InvalidCall); }

  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }

  bool take(char c) {
    skipBlanks();
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void expect(char c) {
    if (!take(c)) fail();
  }

  std::int64_t sum() {
    std::int64_t value = product();
    for (;;) {
      if (take('+')) {
        value += product();
      } else if (take('-')) {
        value -= product();
      } else {
        return value;
      }
    }
  }

  std::int64_t product() {
    std::int64_t value = operand();
    for (;;) {
      if (take('*')) {
        value *= operand();
      } else if (take('\\')) {
        const std::int64_t divisor = operand();
        if (divisor == 0) fail();
        value /= divisor;
      } else {
        return value;
      }
    }
  }

  std::int64_t operand() {
    skipBlanks();
    if (take('(')) {
      const std::int64_t value = sum();
      expect(')');
      return value;
    }
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (error == std::errc()) {
      rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
      return number;
    }
    const std::size_t length = std::min(rest_.find_first_of(" ()+-*\\,<"), rest_.size());
    const std::string_view name = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return take('(') ? function(name) : variable(name);
  }

  std::int64_t function(std::string_view name) {
    std::int64_t value = 0;
    if (name == "choose") {
      const std::int64_t a = sum();
      expect('<');
      const std::int64_t b = sum();
      expect(',');
      const std::int64_t x = sum();
      expect(',');
      const std::int64_t y = sum();
      value = a < b ? x : y;
    } else if (name == "average") {
      const std::int64_t code = sum();
      expect(',');
      const std::int64_t periods = sum();
      value = firstAverageRow(static_cast<int>(code), periods, take(',') ? sum() : 1);
    } else if (name == "lookback") {
      const std::int64_t kind = sum();
      expect(',');
      value = standard::lookback(kind, sum());
    } else if (name == "candle") {
      const std::int64_t pattern = sum();
      if (pattern < 1 || pattern > static_cast<std::int64_t>(standard::CandlePatterns.size())) fail();
      value = standard::CandlePatterns[static_cast<std::size_t>(pattern) - 1].lookback;
    } else if (name == "root") {
      value = static_cast<std::int64_t>(std::sqrt(static_cast<double>(std::max<std::int64_t>(sum(), 0))));
    } else if (name == "max" || name == "min") {
      value = sum();
      while (take(',')) value = name == "max" ? std::max(value, sum()) : std::min(value, sum());
    } else {
      fail();
    }
    expect(')');
    return value;
  }

  std::int64_t variable(std::string_view name) const {
    if (name == "N") return count_;
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
      const auto* number = std::get_if<Integer>(&arguments_[i]);
      if (number != nullptr && method_.arguments[i].name == name) return number->value();
    }
    fail();
  }

  std::string_view rest_;
  const Method& method_;
  int count_;
  std::span<const Value> arguments_;
};

}  // namespace

std::int64_t evaluateRow(std::string_view expression, const Method& method, int count,
                         std::span<const Value> arguments) {
  return Evaluation(expression, method, count, arguments).whole();
}

RowRange computedRows(const Method& method, const Column& column, int count, std::span<const Value> arguments) {
  const std::int64_t end = std::int64_t{count} + 1;
  const std::int64_t first = evaluateRow(column.firstRow, method, count, arguments);
  const std::int64_t last = evaluateRow(column.lastRow, method, count, arguments);
  return {static_cast<int>(std::clamp(first, std::int64_t{1}, end)),
          static_cast<int>(std::clamp(last, std::int64_t{0}, end - 1))};
}

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
