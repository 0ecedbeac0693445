#include "orvex/c/orvex.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvex/catalogue/call_on_values.h"
#include "orvex/catalogue/usual.h"
#include "orvex/data/object.h"
#include "orvex/data/text.h"

using orvex::Database;
using orvex::Error;
using orvex::Fault;
using orvex::Field;
using orvex::Integer;
using orvex::Note;
using orvex::RecordSet;
using orvex::catalogue::Argument;
using orvex::catalogue::Calculation;
using orvex::catalogue::Missing;
using orvex::catalogue::Type;
using orvex::catalogue::Value;

namespace faults = orvex::faults;

struct orvex_series {
  Integer count;
  std::shared_ptr<RecordSet> columns = std::make_shared<RecordSet>();
};

struct orvex_result {
  struct Column {
    std::string name;
    orvex::OwnRows rows;
    orvex::catalogue::RowRange computed;
  };
  std::vector<Column> columns;
  double number = 0.0;
  std::string text;
  int record = 0;
};

namespace {

/// An error with a sentence of this interface's own, about a name say.
struct Refusal {
  Refusal(const Error& reported, std::string told) : error(reported), message(std::move(told)) {}
  Refusal(const Fault& fault, std::string told) : Refusal(Error(fault), std::move(told)) {}

  Error error;
  std::string message;
};

template <std::size_t Size>
void put(char (&place)[Size], std::string_view text) noexcept {
  std::size_t size = std::min(text.size(), Size - 1);
  // Not in the middle of a character.
  while (size < text.size() && size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U) --size;
  std::memcpy(place, text.data(), size);
  std::memset(place + size, 0, Size - size);
}

std::int32_t tell(orvex_error* place, const Error& error, std::string_view message) noexcept {
  if (place != nullptr) {
    place->number = error.number();
    place->record = error.record();
    place->cause_number = error.cause().number;
    put(place->source, error.source());
    put(place->description, error.description());
    put(place->cause_source, error.cause().source);
    put(place->cause_description, error.cause().description);
    put(place->message, message);
  }
  return error.number();
}

/// Runs what a function does: the one place where exceptions end. An error that was told before is wiped out.
template <class Body>
std::int32_t guard(orvex_error* error, Body&& body) noexcept {
  if (error != nullptr) *error = {};
  try {
    body();
    return 0;
  } catch (const Refusal& refusal) {
    return tell(error, refusal.error, refusal.message);
  } catch (const Error& failure) {
    return tell(error, failure, failure.what());
  } catch (...) {
    const Error failure(orvex::currentFault());
    return tell(error, failure, failure.what());
  }
}

void demand(bool given, const char* what) {
  if (!given) throw Refusal{faults::InvalidCall, std::string(what) + " is NULL or none"};
}

std::shared_ptr<Field> viewOf(std::string_view name, const double* values, Integer count) {
  auto field = std::make_shared<Field>();
  const std::span<const double> rows(values, static_cast<std::size_t>(count.value()));
  // The caller keeps them, so nothing is to be freed.
  field->view({rows, std::shared_ptr<const void>(std::shared_ptr<void>(), values)}, name);
  return field;
}

std::shared_ptr<Field> columnNamed(const orvex_series& series, const Argument& argument, std::string_view name) {
  for (const auto& field : series.columns->fields()) {
    if (orvex::equalNames(field->name(), name)) return field;
  }
  std::string message = std::string(argument.name) + ": the series has no column \"" + std::string(name) + "\"; it has";
  for (const auto& field : series.columns->fields()) message += ' ' + field->getName();
  throw Refusal{RecordSet::getIndexFault, std::move(message)};
}

Calculation findMethod(std::string_view name) {
  const auto found = orvex::catalogue::findCalculation(name);
  if (!found) throw Refusal{faults::InvalidCall, "there is no method \"" + std::string(name) + '"'};
  return *found;
}

std::size_t findArgument(const Calculation& called, std::string_view name) {
  const auto& all = called.method->arguments;
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Argument& one) { return orvex::equalNames(one.name, name); });
  if (found != all.end() && found->type != Type::Database && found->type != Type::RecordSet) {
    return static_cast<std::size_t>(found - all.begin());
  }
  std::string message = std::string(called.method->name) + " has no argument \"" + std::string(name) + "\"; it has";
  for (const Argument& one : all) {
    if (one.type != Type::Database && one.type != Type::RecordSet) message += ' ' + std::string(one.name);
  }
  throw Refusal{faults::InvalidCall, std::move(message)};
}

Value valueOf(const orvex_series& series, const Argument& argument, const orvex_argument& given) {
  const auto refuse = [&](const Fault& fault) {
    std::string message = std::string(argument.name) + ": ";
    if (!argument.choices.empty()) {
      message += "it is one of " + orvex::catalogue::listChoices(argument);
    } else if (argument.type == Type::Field) {
      message += "it is the name of a column";
    } else {
      message += "it must be a value of the type " + std::string(orvex::catalogue::typeName(argument.type));
    }
    throw Refusal{fault, std::move(message)};
  };
  if (argument.type == Type::Field) {
    if (given.text == nullptr) refuse(faults::TypeMismatch);
    return columnNamed(series, argument, given.text);
  }
  if (given.text != nullptr) {
    if (const auto code = orvex::catalogue::readChoice(argument, given.text)) return Integer(*code);
  }
  const Value value = given.text != nullptr ? Value(std::string(given.text)) : Value(given.number);
  try {
    // Automation rounds a fraction. Here it is more likely a slip than a wish.
    if (argument.type == Type::Integer || argument.type == Type::Long) {
      const double number = std::get<double>(orvex::catalogue::coerce(value, Type::Double));
      if (std::isfinite(number) && number != std::floor(number)) refuse(faults::TypeMismatch);
    }
    return orvex::catalogue::coerce(value, argument.type);
  } catch (const Error& error) {
    refuse(error.fault());
    throw;
  }
}

/// What an argument is that was not named; `Missing` where its usual value or its default will do.
Value ownValueOf(const orvex_series& series, const Calculation& called, const Argument& argument) {
  if (argument.type == Type::RecordSet) return series.columns;
  if (argument.optional || argument.type == Type::Database) return Missing{};
  if (argument.type == Type::Field) {
    for (const auto& field : series.columns->fields()) {
      if (orvex::equalNames(field->name(), argument.name)) return field;
    }
    if (argument.usual.given) return columnNamed(series, argument, argument.usual.text);
  }
  if (argument.usual.given) return Missing{};
  throw Refusal{orvex::catalogue::ArgumentNotOptional,
                std::string(called.method->name) + " needs the argument " + std::string(argument.name)};
}

void take(orvex_result& result, const orvex::catalogue::ValuedCall& made) {
  if (const auto* columns = std::get_if<std::shared_ptr<RecordSet>>(&made.result)) {
    const auto fields = orvex::object(*columns).fields();
    for (std::size_t i = 0; i < fields.size(); ++i) {
      const auto& computed = made.computed[i];
      std::string name = fields[i]->getName();
      result.columns.push_back({std::move(name), fields[i]->releaseRows(), computed});
      const std::span<double> rows = result.columns.back().rows.values;
      for (std::size_t row = 0; row < rows.size(); ++row) {
        if (!computed.contains(static_cast<int>(row) + 1)) rows[row] = std::numeric_limits<double>::quiet_NaN();
      }
    }
  } else if (const auto* note = std::get_if<std::shared_ptr<Note>>(&made.result)) {
    result.number = orvex::object(*note).getValue();
    result.text = orvex::object(*note).getNote();
    result.record = orvex::object(*note).getPeriod().value();
  } else if (const auto* text = std::get_if<std::string>(&made.result)) {
    result.text = *text;
  } else if (const auto* truth = std::get_if<bool>(&made.result)) {
    result.number = *truth ? 1.0 : 0.0;
  } else {
    result.number = std::get<double>(orvex::catalogue::coerce(made.result, Type::Double));
  }
}

}  // namespace

const char* orvex_version(void) {
  return ORVEX_VERSION;
}

std::int32_t orvex_open(const orvex_prices* prices, std::int32_t count, orvex_series** series, orvex_error* error) {
  return guard(error, [&] {
    demand(series != nullptr, "series");
    *series = nullptr;
    demand(prices != nullptr, "prices");
    if (count < 1) throw Refusal{faults::SubscriptOutOfRange, "a series has at least one record"};
    auto opened = std::make_unique<orvex_series>();
    opened->count = count;
    const double* const columns[] = {prices->open, prices->high, prices->low, prices->close, prices->volume};
    for (std::size_t i = 0; i < std::size(columns); ++i) {
      if (columns[i] != nullptr) {
        opened->columns->addField(viewOf(Database::PriceNames[i], columns[i], opened->count));
      }
    }
    *series = opened.release();
  });
}

std::int32_t orvex_add_column(orvex_series* series, const char* name, const double* values, orvex_error* error) {
  return guard(error, [&] {
    demand(series != nullptr, "series");
    demand(name != nullptr && *name != '\0', "name");
    demand(values != nullptr, "values");
    for (const auto& field : series->columns->fields()) {
      if (orvex::equalNames(field->name(), name)) {
        throw Refusal{faults::InvalidCall, "the series has a column \"" + std::string(name) + "\" already"};
      }
    }
    series->columns->addField(viewOf(name, values, series->count));
  });
}

void orvex_close(orvex_series* series) {
  const std::unique_ptr<orvex_series> closed(series);
}

std::int32_t orvex_call(const orvex_series* series, const char* method, const orvex_argument* arguments,
                        std::int32_t argument_count, orvex_result** result, orvex_error* error) {
  return guard(error, [&] {
    demand(result != nullptr, "result");
    *result = nullptr;
    demand(series != nullptr, "series");
    demand(method != nullptr, "method");
    demand(argument_count == 0 || (argument_count > 0 && arguments != nullptr), "arguments");
    const Calculation called = findMethod(method);
    const auto& described = called.method->arguments;
    // Methods move the cursor of a database, so each call has its own.
    const auto data = std::make_shared<Database>(series->count);
    data->MoveFirst();
    std::vector<Value> values(described.size());
    for (std::int32_t i = 0; i < argument_count; ++i) {
      demand(arguments[i].name != nullptr, "the name of an argument");
      const std::size_t place = findArgument(called, arguments[i].name);
      if (!std::holds_alternative<Missing>(values[place])) {
        throw Refusal{faults::InvalidCall, std::string(described[place].name) + " is given twice"};
      }
      values[place] = valueOf(*series, described[place], arguments[i]);
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (std::holds_alternative<Missing>(values[i])) values[i] = ownValueOf(*series, called, described[i]);
    }
    orvex::catalogue::takeUsual(*called.method, values, data);
    auto made = std::make_unique<orvex_result>();
    try {
      take(*made, orvex::catalogue::callOnValues(*called.method, called.owner->create().get(), values));
    } catch (const Error& failure) {
      const auto gap = orvex::catalogue::findGap(values);
      if (!gap) throw;
      throw Refusal{failure, gap->column + " has no value in record " + std::to_string(gap->row) +
                                 ", and values before and behind it"};
    }
    *result = made.release();
  });
}

std::int32_t orvex_column_count(const orvex_result* result) {
  return result == nullptr ? 0 : static_cast<std::int32_t>(result->columns.size());
}

std::int32_t orvex_get_column(const orvex_result* result, std::int32_t place, orvex_column* column) {
  if (column == nullptr || place < 0 || place >= orvex_column_count(result)) return faults::SubscriptOutOfRange.number;
  const orvex_result::Column& found = result->columns[static_cast<std::size_t>(place)];
  *column = {found.name.c_str(), found.rows.values.data(), static_cast<std::int32_t>(found.rows.values.size()),
             found.computed.first, found.computed.last};
  return 0;
}

std::int32_t orvex_get_value(const orvex_result* result, orvex_value* value) {
  if (result == nullptr || value == nullptr || !result->columns.empty()) return faults::TypeMismatch.number;
  *value = {result->number, result->text.c_str(), result->record};
  return 0;
}

void orvex_release(orvex_result* result) {
  const std::unique_ptr<orvex_result> released(result);
}
