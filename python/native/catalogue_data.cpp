#include "native/catalogue_data.h"

#include <cmath>
#include <string>

#include "orvex/catalogue/names.h"

namespace nb = nanobind;

namespace orvex::python {

namespace {

nb::object text(std::string_view view) {
  return nb::str(view.data(), view.size());
}

nb::object textOrNone(std::string_view view) {
  return view.empty() ? nb::none() : text(view);
}

/// What stands for an argument that is left out: a value, an expression of N as a text, or nothing.
nb::object usualOf(const catalogue::Argument& argument) {
  using catalogue::Type;
  if (argument.type == Type::String) return textOrNone(argument.otherwise.text);
  if (!argument.usual.given && !argument.optional) return nb::none();
  if (argument.usual.given && !argument.usual.text.empty()) return text(argument.usual.text);
  const double number = argument.usual.given ? argument.usual.number : argument.otherwise.number;
  if (argument.type == Type::Double) return nb::float_(number);
  return nb::int_(static_cast<long>(number));
}

std::string_view kindOf(Parameter::Kind kind) {
  switch (kind) {
    case Parameter::Kind::Prices:
      return "prices";
    case Parameter::Kind::Column:
      return "column";
    case Parameter::Kind::Price:
      return "price";
    case Parameter::Kind::Whole:
      return "whole";
    case Parameter::Kind::Real:
      return "real";
    case Parameter::Kind::Alias:
      return "alias";
    case Parameter::Kind::By:
      return "by";
    case Parameter::Kind::WarmUp:
      return "warmup";
    case Parameter::Kind::Errors:
      return "errors";
  }
  return "";
}

nb::dict describe(const Parameter& parameter, const catalogue::Method& method) {
  nb::dict data;
  data["name"] = text(parameter.name);
  data["kind"] = text(kindOf(parameter.kind));
  data["keyword_only"] = parameter.keywordOnly;
  switch (parameter.kind) {
    case Parameter::Kind::Price:
    case Parameter::Kind::By:
    case Parameter::Kind::WarmUp:
    case Parameter::Kind::Errors:
      return data;
    default:
      break;
  }
  const catalogue::Argument& argument = method.arguments[parameter.argument];
  data["argument"] = text(argument.name);
  data["help"] = text(argument.help);
  data["usual"] = usualOf(argument);
  nb::dict choices;
  for (const catalogue::Choice& choice : argument.choices)
    choices[text(catalogue::snakeCase(choice.name))] = choice.code;
  data["choices"] = choices;
  data["session"] = argument.session;
  return data;
}

nb::object numberOrNone(double number) {
  return std::isfinite(number) ? nb::object(nb::float_(number)) : nb::none();
}

nb::dict describe(const Function& function, const catalogue::Column& column) {
  nb::dict data;
  const std::string title = columnTitle(function, column);
  data["name"] = text(title);
  data["attribute"] = text(attributeName(title));
  data["help"] = text(column.help);
  data["unit"] = text(column.unit);
  data["low"] = numberOrNone(column.bounds.low);
  data["high"] = numberOrNone(column.bounds.high);
  data["place"] = text(catalogue::nameOf(column.place));
  data["style"] = text(catalogue::nameOf(column.style));
  data["record"] = column.record;
  data["first_row"] = text(column.firstRow);
  data["last_row"] = text(column.lastRow);
  return data;
}

}  // namespace

nb::dict describe(const Function& function) {
  const catalogue::Method& method = *function.method;
  nb::dict data;
  data["name"] = text(function.name);
  data["module"] = text(function.module);
  data["class"] = text(function.owner->name);
  data["method"] = text(method.name);
  data["help"] = text(method.help);
  data["purpose"] = text(catalogue::nameOf(method.purpose));
  data["formula"] = text(method.guide.formula);
  data["reading"] = text(method.guide.reading);
  data["origin"] = text(method.guide.origin);
  data["difference"] = text(method.guide.difference);
  data["fails"] = text(method.guide.fails);
  data["house"] = text(method.elsewhere.house);
  data["talib"] = text(method.elsewhere.talib);
  data["tulip"] = text(method.elsewhere.tulip);
  data["returns"] = text(catalogue::typeName(method.result));
  nb::list abbreviations;
  for (const std::string_view abbreviation : method.abbreviations) abbreviations.append(text(abbreviation));
  data["abbreviations"] = abbreviations;
  nb::list levels;
  for (const double level : method.levels) levels.append(level);
  data["levels"] = levels;
  nb::list parameters;
  for (const Parameter& parameter : function.parameters) parameters.append(describe(parameter, method));
  data["parameters"] = parameters;
  nb::list columns;
  for (const catalogue::Column& column : method.columns) columns.append(describe(function, column));
  data["columns"] = columns;
  nb::list errors;
  for (const Fault& fault : method.faults) {
    nb::dict error;
    error["number"] = fault.number;
    error["source"] = text(fault.source);
    error["description"] = text(fault.description);
    errors.append(error);
  }
  data["errors"] = errors;
  return data;
}

}  // namespace orvex::python
