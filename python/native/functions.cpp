#include "native/functions.h"

#include <algorithm>

#include "native/computation.h"
#include "orvex/catalogue/description.h"
#include "orvex/catalogue/names.h"

namespace orvex::python {

namespace {

using catalogue::Argument;
using catalogue::Type;
using Kind = Parameter::Kind;

/// Appends the parameters that an argument of the method becomes.
void addParameters(std::vector<Parameter>& parameters, const Argument& argument, std::size_t place) {
  switch (argument.type) {
    case Type::Database:
      return;  // made from the columns
    case Type::RecordSet:
      parameters.push_back({Kind::Prices, "prices", place});
      for (std::size_t i = 0; i < Database::PriceNames.size(); ++i) {
        parameters.push_back({Kind::Price, catalogue::snakeCase(Database::PriceNames[i]), i, true});
      }
      return;
    case Type::Field:
      parameters.push_back({Kind::Column, catalogue::snakeCase(argument.name), place});
      return;
    case Type::String:
      parameters.push_back({Kind::Alias, catalogue::snakeCase(argument.name), place, true});
      return;
    case Type::Double:
      parameters.push_back({Kind::Real, catalogue::snakeCase(argument.name), place});
      return;
    default:
      parameters.push_back({Kind::Whole, catalogue::snakeCase(argument.name), place});
  }
}

Function describe(const catalogue::Class& owner, const catalogue::Method& method, const std::shared_ptr<void>& object) {
  Function function{&owner, &method, catalogue::snakeCase(method.name), {}, {}, {}, object};
  for (std::size_t i = 0; i < method.arguments.size(); ++i) {
    addParameters(function.parameters, method.arguments[i], i);
  }
  function.takesColumns = std::ranges::any_of(
      function.parameters, [](const Parameter& one) { return one.kind == Kind::Column || one.kind == Kind::Prices; });
  for (const catalogue::Column& column : method.columns) function.computedRows.emplace_back(method, column);
  if (function.makesColumns()) {
    function.parameters.push_back({Kind::By, "by", 0, true});
    function.parameters.push_back({Kind::WarmUp, "warmup", 0, true});
    function.parameters.push_back({Kind::Errors, "errors", 0, true});
  }
  if (std::ranges::any_of(function.parameters, [](const Parameter& one) { return one.kind == Kind::Prices; })) {
    const auto read = findPricesRead(function);
    std::erase_if(function.parameters,
                  [&](const Parameter& one) { return one.kind == Kind::Price && !read[one.argument]; });
  }
  // Columns come before numbers, as callers write them, and what is given by keyword comes last.
  const auto rank = [](const Parameter& one) {
    return one.keywordOnly ? 2 : one.kind == Kind::Prices || one.kind == Kind::Column ? 0 : 1;
  };
  std::ranges::stable_sort(function.parameters, {}, rank);
  return function;
}

std::vector<Function> describeAll() {
  std::vector<Function> all;
  for (const catalogue::Class* owner : catalogue::classes()) {
    const std::shared_ptr<void> object = owner->create();
    for (const catalogue::Method* method : owner->methods) {
      if (!catalogue::isCalculation(*owner, *method)) continue;
      all.push_back(describe(*owner, *method, object));
      if (owner->qualified) all.back().module = catalogue::snakeCase(owner->name);
    }
  }
  return all;
}

}  // namespace

std::string attributeName(std::string_view name) {
  std::string text;
  for (const char c : catalogue::snakeCase(name)) {
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
      text += c;
    } else {
      if (!text.empty() && text.back() != '_') text += '_';
      if (c == '+' || c == '-') text += c == '+' ? "plus" : "minus";
    }
  }
  return text;
}

std::string columnTitle(const Function& function, const catalogue::Column& column, std::string_view alias) {
  for (const Argument& argument : function.method->arguments) {
    if (argument.type == Type::String) {
      return catalogue::columnName(column, alias.empty() ? argument.otherwise.text : alias);
    }
  }
  return std::string(column.name);
}

const std::vector<Function>& functions() {
  static const std::vector<Function> all = describeAll();
  return all;
}

}  // namespace orvex::python
