#include "orvex/catalogue/computed_rows.h"

#include <algorithm>
#include <charconv>

#include "orvex/averages/average_type.h"
#include "orvex/data/error.h"
#include "orvex/data/integer.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

namespace {

/// Reads and evaluates an expression in one pass.
class Evaluation {
 public:
  Evaluation(std::string_view expression, const Method& method, int count, std::span<const Value> arguments)
      : rest_(expression), method_(method), count_(count), arguments_(arguments) {}

  long whole() {
    const long value = sum();
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

  long sum() {
    long value = product();
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

  long product() {
    long value = operand();
    for (;;) {
      if (take('*')) {
        value *= operand();
      } else if (take('\\')) {
        const long divisor = operand();
        if (divisor == 0) fail();
        value /= divisor;
      } else {
        return value;
      }
    }
  }

  long operand() {
    skipBlanks();
    if (take('(')) {
      const long value = sum();
      expect(')');
      return value;
    }
    long number = 0;
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

  long function(std::string_view name) {
    long value = 0;
    if (name == "choose") {
      const long a = sum();
      expect('<');
      const long b = sum();
      expect(',');
      const long x = sum();
      expect(',');
      const long y = sum();
      value = a < b ? x : y;
    } else if (name == "average") {
      const int code = static_cast<int>(sum());
      expect(',');
      const int periods = static_cast<int>(sum());
      value = static_cast<long>(firstAverageRow(code, periods, take(',') ? static_cast<int>(sum()) : 1));
    } else if (name == "max" || name == "min") {
      value = sum();
      while (take(',')) value = name == "max" ? std::max(value, sum()) : std::min(value, sum());
    } else {
      fail();
    }
    expect(')');
    return value;
  }

  long variable(std::string_view name) const {
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

long evaluateRow(std::string_view expression, const Method& method, int count, std::span<const Value> arguments) {
  return Evaluation(expression, method, count, arguments).whole();
}

RowRange computedRows(const Method& method, const Column& column, int count, std::span<const Value> arguments) {
  const long end = static_cast<long>(count) + 1;
  const long first = evaluateRow(column.firstRow, method, count, arguments);
  const long last = evaluateRow(column.lastRow, method, count, arguments);
  return {static_cast<int>(std::clamp(first, 1L, end)), static_cast<int>(std::clamp(last, 0L, end - 1))};
}

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
