#include "native/computation.h"

#include <algorithm>
#include <cstddef>
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

/// A reference to what lives on the stack for longer than whoever is handed it.
template <class T>
std::shared_ptr<T> borrowed(T& object) {
  return {std::shared_ptr<void>(), &object};
}

/// Room for so many fields where it stands. An array of optional ones would be filled with zeros first, which takes
/// as long as a whole column of a short series.
template <std::size_t Capacity>
class Fields {
 public:
  Fields() = default;
  Fields(const Fields&) = delete;
  Fields& operator=(const Fields&) = delete;
  ~Fields() { std::destroy_n(at(0), count_); }

  Field& add() {
    Field* const made = std::construct_at(at(count_));
    ++count_;
    return *made;
  }

 private:
  Field* at(std::size_t place) { return reinterpret_cast<Field*>(room_) + place; }

  alignas(Field) std::byte room_[Capacity * sizeof(Field)];
  std::size_t count_ = 0;
};

/// The objects that a method takes in place of columns in memory. They live as long as its call.
class Objects {
 public:
  explicit Objects(const Request& request) : request_(request) {}

  std::shared_ptr<Database> series() {
    data_.emplace(static_cast<std::int64_t>(request_.count));
    data_->MoveFirst();
    return borrowed(*data_);
  }

  std::shared_ptr<Field> column(std::size_t argument) {
    return view(request_.columns[argument], request_.function->method->arguments[argument].name);
  }

  std::shared_ptr<RecordSet> prices() {
    std::vector<std::shared_ptr<Field>> fields;
    fields.reserve(PriceCount);
    for (std::size_t i = 0; i < PriceCount; ++i) {
      if (request_.prices[i]) fields.push_back(view(*request_.prices[i], Database::PriceNames[i]));
    }
    return borrowed(set_.emplace(std::move(fields)));
  }

 private:
  std::shared_ptr<Field> view(Span rows, std::string_view name) {
    Field& field = fields_.add();
    field.view({rows, std::shared_ptr<const void>(std::shared_ptr<void>(), rows.data())}, name);
    return borrowed(field);
  }

  const Request& request_;
  std::optional<Database> data_;
  Fields<MostArguments + PriceCount> fields_;
  std::optional<RecordSet> set_;
};

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
  for (std::size_t i = 0; i < request.function->method->columns.size(); ++i) {
    result.columns[i].rows = newRows(request.count);
    result.columns[i].keptWarmUp = request.keepWarmUp;
    std::ranges::fill(result.columns[i].rows.values, request.keepWarmUp ? 0.0 : NotComputed);
  }
  return result;
}

ResultColumn takeColumn(Field& column, RowRange computed, bool keepWarmUp) {
  ResultColumn taken{column.releaseRows(), computed, keepWarmUp};
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

bool computes(Request request) {
  try {
    compute(std::move(request));
    return true;
  } catch (const Refusal&) {
    return false;
  }
}

}  // namespace

std::array<bool, PriceCount> findPricesRead(const Function& function) {
  static const auto prices = trialPrices();
  Request request(function);
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

Result compute(Request&& request) {
  const Function& function = *request.function;
  const catalogue::Method& method = *function.method;
  const RowRange part = rowsWithValues(request);
  if (function.takesColumns && part.first > part.last && function.makesColumns()) return withoutValues(request);

  Objects objects(request);
  const std::span<Value> arguments = std::span(request.values).first(method.arguments.size());
  try {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      const Argument& argument = method.arguments[i];
      if (argument.type == Type::Database) {
        arguments[i] = objects.series();
      } else if (argument.type == Type::RecordSet) {
        arguments[i] = objects.prices();
      } else if (argument.type == Type::Field) {
        arguments[i] = objects.column(i);
      } else if (std::holds_alternative<Missing>(arguments[i])) {
        arguments[i] = usualValue(argument, part);
      }
    }
    Value returned;
    std::array<RowRange, MostColumns> computed{};
    if (part.first == 1 && part.last == static_cast<int>(request.count)) {
      // The usual case, whose arguments are of their types already.
      returned = method.invoke(function.object.get(), arguments);
      for (std::size_t i = 0; i < method.columns.size(); ++i) {
        computed[i] = function.computedRows[i](part.last, arguments);
      }
    } else {
      catalogue::ValuedCall outcome = catalogue::callOnValues(method, function.object.get(), arguments);
      returned = std::move(outcome.result);
      std::ranges::copy(outcome.computed, computed.begin());
    }
    Result result;
    if (!function.makesColumns()) {
      result.value = std::move(returned);
      return result;
    }
    const auto fields = std::get<std::shared_ptr<RecordSet>>(returned)->fields();
    for (std::size_t i = 0; i < method.columns.size(); ++i) {
      result.columns[i] = takeColumn(*fields[i], computed[i], request.keepWarmUp);
    }
    return result;
  } catch (const Error& error) {
    throw Refusal{error, catalogue::findGap(arguments)};
  }
}

}  // namespace orvex::python
