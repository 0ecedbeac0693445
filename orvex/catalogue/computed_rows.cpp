#include "orvex/catalogue/computed_rows.h"

#include <algorithm>
#include <array>
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

[[noreturn]] void fail() {
  raise(faults::InvalidCall);
}

}  // namespace

/// Reads an expression in one pass; what is read leaves its value on the stack.
class RowExpression::Reader {
 public:
  Reader(std::string_view expression, const Method& method, std::vector<Step>& steps)
      : rest_(expression), method_(method), steps_(steps) {}

  void whole() {
    sum();
    skipBlanks();
    if (!rest_.empty()) fail();
  }

 private:
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

  void push(Operation operation, std::int64_t operand = 0) {
    if (++waiting_ > Depth) fail();
    steps_.push_back({operation, operand});
  }
  /// What takes `taken` values from the stack and leaves one.
  void apply(Operation operation, std::size_t taken = 2) {
    waiting_ -= taken - 1;
    steps_.push_back({operation});
  }

  void sum() {
    product();
    for (;;) {
      if (take('+')) {
        product();
        apply(Operation::Add);
      } else if (take('-')) {
        product();
        apply(Operation::Subtract);
      } else {
        return;
      }
    }
  }

  void product() {
    operand();
    for (;;) {
      if (take('*')) {
        operand();
        apply(Operation::Multiply);
      } else if (take('\\')) {
        operand();
        apply(Operation::Divide);
      } else {
        return;
      }
    }
  }

  void operand() {
    skipBlanks();
    if (take('(')) {
      sum();
      expect(')');
      return;
    }
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (error == std::errc()) {
      rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
      push(Operation::Number, number);
      return;
    }
    const std::size_t length = std::min(rest_.find_first_of(" ()+-*\\,<"), rest_.size());
    const std::string_view name = rest_.substr(0, length);
    rest_.remove_prefix(length);
    if (take('(')) {
      function(name);
    } else {
      variable(name);
    }
  }

  void function(std::string_view name) {
    if (name == "choose") {
      sum();
      for (const char mark : {'<', ',', ','}) {
        expect(mark);
        sum();
      }
      apply(Operation::Choose, 4);
    } else if (name == "average") {
      sum();
      expect(',');
      sum();
      if (take(',')) {
        sum();
      } else {
        push(Operation::Number, 1);
      }
      apply(Operation::Average, 3);
    } else if (name == "lookback") {
      sum();
      expect(',');
      sum();
      apply(Operation::Lookback);
    } else if (name == "candle" || name == "root") {
      sum();
      apply(name == "candle" ? Operation::Candle : Operation::Root, 1);
    } else if (name == "max" || name == "min") {
      sum();
      while (take(',')) {
        sum();
        apply(name == "max" ? Operation::Greater : Operation::Less);
      }
    } else {
      fail();
    }
    expect(')');
  }

  void variable(std::string_view name) {
    if (name == "N") return push(Operation::Count);
    for (std::size_t i = 0; i < method_.arguments.size(); ++i) {
      if (method_.arguments[i].name == name) return push(Operation::Argument, static_cast<std::int64_t>(i));
    }
    fail();
  }

  std::string_view rest_;
  const Method& method_;
  std::vector<Step>& steps_;
  std::size_t waiting_ = 0;
};

RowExpression::RowExpression(std::string_view expression, const Method& method) {
  Reader(expression, method, steps_).whole();
}

std::int64_t RowExpression::operator()(int count, std::span<const Value> arguments) const {
  std::array<std::int64_t, Depth> stack{};
  std::int64_t* end = stack.data();
  const auto argument = [&](std::int64_t place) -> std::int64_t {
    const auto* number = std::get_if<Integer>(&arguments[static_cast<std::size_t>(place)]);
    if (number == nullptr) fail();
    return number->value();
  };
  for (const Step& step : steps_) {
    switch (step.operation) {
      case Operation::Number:
        *end++ = step.operand;
        break;
      case Operation::Count:
        *end++ = count;
        break;
      case Operation::Argument:
        *end++ = argument(step.operand);
        break;
      case Operation::Add:
        --end;
        end[-1] += *end;
        break;
      case Operation::Subtract:
        --end;
        end[-1] -= *end;
        break;
      case Operation::Multiply:
        --end;
        end[-1] *= *end;
        break;
      case Operation::Divide:
        --end;
        if (*end == 0) fail();
        end[-1] /= *end;
        break;
      case Operation::Greater:
        --end;
        end[-1] = std::max(end[-1], *end);
        break;
      case Operation::Less:
        --end;
        end[-1] = std::min(end[-1], *end);
        break;
      case Operation::Average:
        end -= 2;
        end[-1] = firstAverageRow(static_cast<int>(end[-1]), end[0], end[1]);
        break;
      case Operation::Lookback:
        --end;
        end[-1] = standard::lookback(end[-1], *end);
        break;
      case Operation::Candle:
        if (end[-1] < 1 || end[-1] > static_cast<std::int64_t>(standard::CandlePatterns.size())) fail();
        end[-1] = standard::CandlePatterns[static_cast<std::size_t>(end[-1]) - 1].lookback;
        break;
      case Operation::Root:
        end[-1] = static_cast<std::int64_t>(std::sqrt(static_cast<double>(std::max<std::int64_t>(end[-1], 0))));
        break;
      case Operation::Choose:
        end -= 3;
        end[-1] = end[-1] < end[0] ? end[1] : end[2];
        break;
    }
  }
  return stack[0];
}

RowRange ColumnRows::operator()(int count, std::span<const Value> arguments) const {
  const std::int64_t end = std::int64_t{count} + 1;
  const std::int64_t first = first_(count, arguments);
  const std::int64_t last = last_(count, arguments);
  return {static_cast<int>(std::clamp(first, std::int64_t{1}, end)),
          static_cast<int>(std::clamp(last, std::int64_t{0}, end - 1))};
}

RowRange computedRows(const Method& method, const Column& column, int count, std::span<const Value> arguments) {
  return ColumnRows(method, column)(count, arguments);
}

std::int64_t evaluateRow(std::string_view expression, const Method& method, int count,
                         std::span<const Value> arguments) {
  return RowExpression(expression, method)(count, arguments);
}

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
