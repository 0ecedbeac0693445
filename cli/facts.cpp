#include "cli/facts.h"

#include <fmt/format.h>

#include "cli/values.h"

namespace orvex::cli {

using catalogue::Argument;
using catalogue::Column;
using catalogue::Kind;
using catalogue::Method;
using catalogue::Type;

std::string signatureOf(const Method& method) {
  std::string text = fmt::format("{}(", method.name);
  for (const Argument& argument : method.arguments) {
    if (&argument != method.arguments.begin()) text += ", ";
    text += fmt::format("{}: {}", argument.name, typeName(argument.type));
    if (argument.optional) text += fmt::format(" = {}", jsonValue(defaultOf(argument)));
  }
  text += ')';
  return method.result == Type::Nothing ? text : fmt::format("{} -> {}", text, typeName(method.result));
}

std::string meaningOf(const Argument& argument) {
  std::string text(argument.help);
  if (!argument.choices.empty()) text += fmt::format(" One of {}.", listChoices(argument));
  if (argument.optional) text += fmt::format(" Optional: {} when left out.", jsonValue(defaultOf(argument)));
  if (argument.written) text += " May be written back.";
  return text;
}

std::string titleOf(const Column& column) {
  if (!column.aliased) return std::string(column.name);
  return column.name.empty() ? "Alias" : fmt::format("Alias + \"{}\"", column.name);
}

std::string rowsOf(const Column& column) {
  return fmt::format("{} to {}", column.firstRow, column.lastRow);
}

std::string descriptionOf(const Fault& fault) {
  return fault.description.empty() ? "that of the fault that was met" : std::string(fault.description);
}

TableRows argumentRows(const Method& method) {
  TableRows rows;
  for (const Argument& argument : method.arguments) {
    rows.push_back({std::string(argument.name), std::string(typeName(argument.type)), meaningOf(argument)});
  }
  return rows;
}

TableRows columnRows(const Method& method) {
  TableRows rows;
  for (const Column& column : method.columns) rows.push_back({titleOf(column), rowsOf(column)});
  return rows;
}

TableRows faultRows(const Method& method) {
  TableRows rows;
  for (const Fault& fault : method.faults) {
    rows.push_back({fmt::to_string(fault.number), std::string(fault.source), descriptionOf(fault)});
  }
  return rows;
}

std::string_view kindOf(const Method& method) {
  switch (method.kind) {
    case Kind::Method:
      return "method";
    case Kind::PropertyGet:
      return "property, read";
    case Kind::PropertyPut:
      return "property, set";
    case Kind::PropertyPutReference:
      return "property, set to an object";
  }
  return "";
}

std::string helpOf(const Method& method) {
  return method.kind == Kind::Method ? std::string(method.help) : fmt::format("({}) {}", kindOf(method), method.help);
}

}  // namespace orvex::cli
