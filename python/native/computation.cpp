#include "native/computation.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "orvex/catalogue/usual.h"

namespace orvex::python {

namespace {

using catalogue::Argument;
using catalogue::Missing;
using catalogue::RowRange;
using catalogue::Type;
using catalogue::Value;

constexpr double NotComputed = std::numeric_limits<double>::quiet_NaN();

std::shared_ptr<Field> viewColumn(Span rows, std::string_view name) {
  auto column = std::make_shared<Field>();
  // The caller keeps the rows, and the column does not outlive the call.
  column->view({rows, std::shared_ptr<const void>(std::shared_ptr<void>(), rows.data())}, name);
  return column;
}

std::shared_ptr<RecordSet> viewPrices(const Request& request) {
  auto set = std::make_shared<RecordSet>();
  for (std::size_t i = 0; i < PriceCount; ++i) {
    if (request.prices[i]) set->addField(viewColumn(*request.prices[i], Database::PriceNames[i]));
  }
  return set;
}

/// The rows in which every column of the request has begun and none has ended.
RowRange rowsWithValues(const Request& request) {
  RowRange part{1, static_cast<int>(request.count)};
  const auto narrow = [&](Span rows) {
    const RowRange valued = catalogue::valuedRows(rows);
    part.first = std::max(part.first, valued.first);
    part.last = std::min(part.last, valued.last);
  };
  const auto& arguments = request.function->method->arguments;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i].type == Type::Field) narrow(request.columns[i]);
    if (arguments[i].type != Type::RecordSet) continue;
    for (const auto& price : request.prices) {
      if (price) narrow(*price);
    }
  }
  return part;
}

/// The value that stands for one that the caller left out. Numbers of records count from the first one with values.
Value usualValue(const Argument& argument, RowRange part) {
  Value usual = catalogue::usualOf(argument, part.last - part.first + 1);
  if (const auto* record = std::get_if<Integer>(&usual); record != nullptr && argument.record) {
    usual = *record + (part.first - 1);
  }
  return usual;
}

Result withoutValues(const Request& request) {
  Result result;
  for (const catalogue::Column& column : request.function->method->columns) {
    OwnRows rows = newRows(request.count);
    std::ranges::fill(rows.values, request.keepWarmUp ? 0.0 : NotComputed);
    result.columns.push_back({columnTitle(*request.function, column), std::move(rows), {1, 0}});
  }
  return result;
}

ResultColumn takeColumn(Field& column, RowRange computed, bool keepWarmUp) {
  ResultColumn taken{column.getName(), column.releaseRows(), computed};
  if (!keepWarmUp) {
    const std::span<double> rows = taken.rows.values;
    const auto first = std::min(rows.size(), static_cast<std::size_t>(std::max(0, computed.first - 1)));
    const auto last = std::clamp(static_cast<std::size_t>(std::max(0, computed.last)), first, rows.size());
    std::ranges::fill(rows.first(first), NotComputed);
    std::ranges::fill(rows.subspan(last), NotComputed);
  }
  return taken;
}

/// A short series to try methods on, without two equal neighbours: that would be a division by zero to some.
std::array<std::vector<double>, PriceCount> trialPrices() {
  constexpr std::size_t Count = 200;
  std::array<std::vector<double>, PriceCount> prices;
  for (std::size_t row = 0; row < Count; ++row) {
    const double close = 100.0 + static_cast<double>(row * 7 % 11) - static_cast<double>(row * 5 % 13);
    prices[0].push_back(close - 0.5);
    prices[1].push_back(close + 1.0 + 0.125 * static_cast<double>(row % 3));
    prices[2].push_back(close - 1.0 - 0.125 * static_cast<double>(row % 5));
    prices[3].push_back(close);
    prices[4].push_back(1000.0 + static_cast<double>(row * 37 % 101));
  }
  return prices;
}

bool computes(const Request& request) {
  try {
    compute(request);
    return true;
  } catch (const Refusal&) {
    return false;
  }
}

}  // namespace

std::array<bool, PriceCount> findPricesRead(const Function& function) {
  static const auto prices = trialPrices();
  Request request;
  request.function = &function;
  request.count = prices[0].size();
  std::array<bool, PriceCount> read{};
  for (std::size_t i = 0; i < PriceCount; ++i) request.prices[i] = prices[i];
  for (std::size_t i = 0; i < MostArguments; ++i) request.columns[i] = prices[3];
  const catalogue::Method& method = *function.method;
  for (std::size_t i = 0; i < method.arguments.size(); ++i) {
    const bool given = method.arguments[i].usual.given || method.arguments[i].optional;
    if (!given && method.arguments[i].type == Type::Integer) request.values[i] = Integer(14);
  }
  const bool tellsSomething = computes(request);
  for (std::size_t i = 0; i < PriceCount; ++i) {
    request.prices[i].reset();
    read[i] = !tellsSomething || !computes(request);
    request.prices[i] = prices[i];
  }
  return read;
}

Result compute(const Request& request) {
  const Function& function = *request.function;
  const catalogue::Method& method = *function.method;
  const bool onRows = std::ranges::any_of(function.parameters, [](const Parameter& one) {
    return one.kind == Parameter::Kind::Column || one.kind == Parameter::Kind::Prices;
  });
  const RowRange part = rowsWithValues(request);
  if (onRows && part.first > part.last && function.makesColumns()) return withoutValues(request);

  std::array<Value, MostArguments> values;
  const std::span<Value> arguments = std::span(values).first(method.arguments.size());
  std::copy_n(request.values.begin(), arguments.size(), arguments.begin());
  try {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      const Argument& argument = method.arguments[i];
      if (argument.type == Type::Database) {
        auto data = std::make_shared<Database>(static_cast<std::int64_t>(request.count));
        data->MoveFirst();
        arguments[i] = std::move(data);
      } else if (argument.type == Type::RecordSet) {
        arguments[i] = viewPrices(request);
      } else if (argument.type == Type::Field) {
        arguments[i] = viewColumn(request.columns[i], argument.name);
      } else if (std::holds_alternative<Missing>(arguments[i])) {
        arguments[i] = usualValue(argument, part);
      }
    }
    catalogue::ValuedCall outcome;
    if (part.first == 1 && part.last == static_cast<int>(request.count)) {
      // The usual case, whose arguments are of their types already.
      outcome.result = method.invoke(function.object.get(), arguments);
      for (const catalogue::Column& column : method.columns) {
        outcome.computed.push_back(catalogue::computedRows(method, column, part.last, arguments));
      }
    } else {
      outcome = catalogue::callOnValues(method, function.object.get(), arguments);
    }
    Result result;
    const auto* set = std::get_if<std::shared_ptr<RecordSet>>(&outcome.result);
    if (set == nullptr) {
      result.value = std::move(outcome.result);
      return result;
    }
    const auto fields = (*set)->fields();
    result.columns.reserve(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
      result.columns.push_back(takeColumn(*fields[i], outcome.computed[i], request.keepWarmUp));
    }
    return result;
  } catch (const Error& error) {
    throw Refusal{error, catalogue::findGap(arguments)};
  }
}

}  // namespace orvex::python
