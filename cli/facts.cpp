#include "cli/facts.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <cmath>

#include "cli/names.h"
#include "cli/values.h"
#include "orvex/catalogue/computed_rows.h"
#include "orvex/catalogue/usual.h"

namespace orvex::cli {

using catalogue::Argument;
using catalogue::Column;
using catalogue::Kind;
using catalogue::Method;
using catalogue::Type;

namespace {

std::string usualTextOf(const Argument& argument) {
  if (!argument.usual.given) return {};
  const std::string value =
      argument.usual.text.empty() ? fmt::to_string(argument.usual.number) : std::string(argument.usual.text);
  return argument.usual.example ? fmt::format("{} (an example)", value) : value;
}

}  // namespace

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
  if (argument.session) text += " The dates of a price file make one: Day, Week, Month or Year.";
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

std::string usualRowsOf(const Method& method, const Column& column) {
  // Longer than any usual argument asks for.
  constexpr int count = 10000;
  std::vector<catalogue::Value> arguments;
  for (const Argument& argument : method.arguments) arguments.push_back(catalogue::usualOf(argument, count));
  const catalogue::RowRange rows = catalogue::computedRows(method, column, count, arguments);
  const std::string first = rows.first == 1 ? "all rows" : fmt::format("from row {} on", rows.first);
  if (rows.last == count) return first;
  const int behind = count - rows.last;
  return behind == 1 ? fmt::format("{} but the last", first) : fmt::format("{} but the last {}", first, behind);
}

std::string boundsOf(const Column& column) {
  const auto& [low, high] = column.bounds;
  if (std::isinf(low) && std::isinf(high)) return {};
  if (std::isinf(high)) return fmt::format("{} and more", low);
  if (std::isinf(low)) return fmt::format("{} and less", high);
  return fmt::format("{} to {}", low, high);
}

std::string drawnOf(const Column& column) {
  constexpr std::array styles = {"line", "bars", "dots", "marks", "edge of a band"};
  constexpr std::array places = {"below the price", "over it", "by itself"};
  return fmt::format("{} {}", styles[static_cast<std::size_t>(column.style)],
                     places[static_cast<std::size_t>(column.place)]);
}

namespace {

/// Where else there is such an indicator: of a method that has another definition beside it, that one; the names that
/// others have for it.
std::string elsewhereOf(const catalogue::Class& owner, const Method& method) {
  std::vector<std::string> others;
  const std::string name = fullName(owner, method);
  for (const catalogue::Class* other : catalogue::classes()) {
    for (const Method* one : other->methods) {
      if (one->elsewhere.house == name) others.push_back(fullName(*other, *one));
    }
  }
  const auto& [house, talib, tulip] = method.elsewhere;
  std::vector<std::string> parts;
  if (!others.empty()) parts.push_back(fmt::format("{} as charts and books define it.", enumerate(others)));
  if (!house.empty()) parts.push_back(fmt::format("{} as the house has it.", house));
  if (!talib.empty()) parts.push_back(fmt::format("TA-Lib calls it {}.", talib));
  if (!tulip.empty()) parts.push_back(fmt::format("Tulip Indicators calls it {}.", tulip));
  return fmt::format("{}", fmt::join(parts, " "));
}

}  // namespace

TableRows nameRows(const catalogue::Class& owner) {
  TableRows rows;
  bool told = false;
  for (const Method* method : owner.methods) {
    const auto& [house, talib, tulip] = method->elsewhere;
    told = told || !house.empty() || !talib.empty() || !tulip.empty();
    rows.push_back({std::string(method->name), std::string(house), std::string(talib), std::string(tulip),
                    method->columns.empty() ? "" : std::string(method->columns[0].firstRow)});
  }
  if (!told) rows.clear();
  return rows;
}

std::vector<std::pair<std::string_view, std::string>> guideOf(const catalogue::Class& owner, const Method& method) {
  const catalogue::Guide& guide = method.guide;
  std::vector<std::pair<std::string_view, std::string>> parts;
  const auto add = [&](std::string_view title, std::string_view text, std::string_view before = "",
                       std::string_view after = "") {
    if (!text.empty()) parts.emplace_back(title, fmt::format("{}{}{}", before, text, after));
  };
  add("Formula", guide.formula, "", ".");
  add("How it is read", guide.reading);
  add("Published by", guide.origin);
  add("How ours differs", guide.difference);
  add("When it fails", guide.fails, "It fails ", ".");
  add("Elsewhere", elsewhereOf(owner, method));
  return parts;
}

std::string abbreviationsOf(const Method& method) {
  return fmt::format("{}", fmt::join(method.abbreviations, " or "));
}

std::string_view liveOf(const Method& method) {
  if (method.kind != Kind::Method || method.result != Type::RecordSet || method.columns.empty()) return {};
  return method.recomputed ? "A record that is added or revised has all records computed anew."
                           : "A record that is added or revised is computed, and none of those before.";
}

std::string descriptionOf(const Fault& fault) {
  return fault.description.empty() ? "that of the fault that was met" : std::string(fault.description);
}

TableRows argumentRows(const Method& method) {
  TableRows rows;
  for (const Argument& argument : method.arguments) {
    rows.push_back(
        {std::string(argument.name), std::string(typeName(argument.type)), usualTextOf(argument), meaningOf(argument)});
  }
  return rows;
}

TableRows columnRows(const Method& method) {
  TableRows rows;
  for (const Column& column : method.columns) {
    rows.push_back({titleOf(column), std::string(column.help), std::string(column.unit), boundsOf(column),
                    drawnOf(column), rowsOf(column), usualRowsOf(method, column)});
  }
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
