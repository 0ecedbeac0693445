#include "cli/catalogue_pages.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "cli/binding.h"
#include "cli/facts.h"
#include "cli/values.h"
#include "orvex/catalogue/names.h"

namespace orvex::cli {

namespace {

using catalogue::Argument;
using catalogue::Class;
using catalogue::Column;
using catalogue::Method;
using Json = nlohmann::ordered_json;

/// What is not plain in an expression of computed rows.
constexpr std::array<std::string_view, 6> RowWords = {"average(", "lookback(", "candle(", "root(", "choose(", "\\"};

constexpr std::string_view stateNote = "Its objects hold data between calls, so its methods are not run from here.";

/// Rows of cells with every column but the last as wide as its widest cell.
std::string aligned(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  std::string text;
  for (const auto& row : rows) {
    text += ' ';
    for (std::size_t i = 0; i < row.size(); ++i) {
      text += fmt::format(" {:<{}}", row[i], i + 1 < row.size() ? widths[i] + 1 : 0);
    }
    text += '\n';
  }
  return text;
}

/// A text in lines that a terminal holds, each indented.
std::string wrapped(std::string_view text) {
  constexpr std::size_t width = 96;
  std::string lines, line;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!line.empty() && line.size() + 1 + word.size() > width) {
      lines += fmt::format("  {}\n", line);
      line.clear();
    }
    if (!line.empty()) line += ' ';
    line += word;
  }
  return lines + fmt::format("  {}\n", line);
}

std::string methodLines(const Class& owner) {
  std::vector<std::vector<std::string>> rows;
  for (const Method* method : owner.methods) {
    const std::string known =
        method->abbreviations.empty() ? "" : fmt::format(" [{}]", fmt::join(method->abbreviations, ", "));
    rows.push_back({std::string(method->name), helpOf(*method) + known});
  }
  return aligned(rows);
}

Json methodsJson(const Class& owner) {
  Json methods = Json::array();
  for (const Method* method : owner.methods) {
    methods.push_back({{"name", method->name}, {"kind", kindOf(*method)}, {"help", method->help}});
  }
  return methods;
}

Json classJson(const Class& owner) {
  return {{"name", owner.name}, {"help", owner.help}, {"runnable", !owner.holdsState}, {"methods", methodsJson(owner)}};
}

std::string describeClass(const Class& owner) {
  std::string text = fmt::format("{}: {}\n", owner.name, owner.help);
  if (owner.holdsState) text += fmt::format("{}\n", stateNote);
  return text + fmt::format("\nMethods\n{}", methodLines(owner));
}

std::string describeMethod(const Class& owner, const Method& method) {
  std::string text = fmt::format("{}.{}\n\n{}\n", owner.name, signatureOf(method), helpOf(method));
  const auto section = [&](std::string_view title, const TableRows& rows) {
    if (!rows.empty()) text += fmt::format("\n{}\n{}", title, aligned(rows));
  };
  if (!method.abbreviations.empty()) text += fmt::format("Also called {}.\n", abbreviationsOf(method));
  for (const auto& [title, words] : guideOf(owner, method)) text += fmt::format("\n{}\n{}", title, wrapped(words));
  TableRows arguments = argumentRows(method);
  for (auto& argument : arguments) {
    if (!argument[2].empty()) argument[2].insert(0, "usually ");
  }
  section("Arguments", arguments);
  TableRows columns;
  for (const auto& column : columnRows(method)) {
    const std::string range = column[3].empty() ? column[2] : fmt::format("{} {}", column[2], column[3]);
    columns.push_back(
        {column[0], range, column[4], fmt::format("computed rows {}; usually {}", column[5], column[6]), column[1]});
  }
  section("Result columns (N: the record count)", columns);
  if (!method.levels.empty()) text += fmt::format("\nLines that guide the eye: {}\n", fmt::join(method.levels, ", "));
  const auto hasFunction = [](const Column& column) {
    const std::string computed = rowsOf(column);
    return std::any_of(RowWords.begin(), RowWords.end(),
                       [&](std::string_view word) { return computed.find(word) != std::string::npos; });
  };
  if (std::any_of(method.columns.begin(), method.columns.end(), hasFunction)) text += fmt::format("\n{}", RowFunctions);
  if (!liveOf(method).empty()) text += fmt::format("\nIn a live series (orvex follow)\n  {}\n", liveOf(method));
  section("Errors", faultRows(method));
  if (catalogue::isCalculation(owner, method)) section("Run", {{exampleCall(owner, method)}});
  if (owner.holdsState) text += fmt::format("\n{}\n", stateNote);
  return text;
}

/// The name of a result column where the caller asks for no other.
std::string plainTitle(const Method& method, const Column& column) {
  const auto alias = std::find_if(method.arguments.begin(), method.arguments.end(),
                                  [](const Argument& argument) { return argument.type == catalogue::Type::String; });
  return catalogue::columnName(column, alias == method.arguments.end() ? "" : alias->otherwise.text);
}

Json methodJson(const Class& owner, const Method& method) {
  Json arguments = Json::array();
  for (const Argument& argument : method.arguments) {
    Json one = {{"name", argument.name},           {"key", catalogue::snakeCase(argument.name)},
                {"type", typeName(argument.type)}, {"help", argument.help},
                {"optional", argument.optional},   {"written", argument.written},
                {"record", argument.record},       {"session", argument.session}};
    if (argument.optional) one["default"] = Json::parse(jsonValue(defaultOf(argument)));
    if (argument.usual.given && !argument.usual.text.empty()) one["usual"] = argument.usual.text;
    if (argument.usual.given && argument.usual.text.empty()) one["usual"] = argument.usual.number;
    for (const catalogue::Choice& choice : argument.choices) {
      one["choices"].push_back({{"code", choice.code}, {"name", choice.name}});
    }
    arguments.push_back(one);
  }
  Json columns = Json::array();
  for (const Column& column : method.columns) {
    // Bounds that there are not are null in JSON, which has no infinity.
    columns.push_back({{"name", column.name},
                       {"aliased", column.aliased},
                       {"title", plainTitle(method, column)},
                       {"key", catalogue::snakeCase(plainTitle(method, column))},
                       {"firstRow", column.firstRow},
                       {"lastRow", column.lastRow},
                       {"help", column.help},
                       {"unit", column.unit},
                       {"low", column.bounds.low},
                       {"high", column.bounds.high},
                       {"place", nameOf(column.place)},
                       {"style", nameOf(column.style)}});
  }
  Json faults = Json::array();
  for (const Fault& fault : method.faults) {
    faults.push_back({{"number", fault.number}, {"source", fault.source}, {"description", fault.description}});
  }
  return {{"class", owner.name},
          {"header", owner.header},
          {"name", method.name},
          {"key", catalogue::snakeCase(method.name)},
          {"module", owner.qualified ? catalogue::snakeCase(owner.name) : ""},
          {"kind", kindOf(method)},
          {"help", method.help},
          {"runnable", catalogue::isCalculation(owner, method)},
          {"signature", signatureOf(method)},
          {"purpose", nameOf(method.purpose)},
          {"abbreviations", std::vector(method.abbreviations.begin(), method.abbreviations.end())},
          {"guide",
           {{"formula", method.guide.formula},
            {"reading", method.guide.reading},
            {"origin", method.guide.origin},
            {"difference", method.guide.difference},
            {"fails", method.guide.fails}}},
          {"levels", std::vector(method.levels.begin(), method.levels.end())},
          {"arguments", arguments},
          {"result", typeName(method.result)},
          {"columns", columns},
          {"recomputed", method.recomputed},
          {"errors", faults}};
}

}  // namespace

std::string calculationsJson() {
  Json methods = Json::array();
  for (const Class* owner : catalogue::classes()) {
    for (const Method* method : owner->methods) {
      if (catalogue::isCalculation(*owner, *method)) methods.push_back(methodJson(*owner, *method));
    }
  }
  return methods.dump();
}

std::string listPage(PageFormat format) {
  if (format == PageFormat::Json) {
    Json classes = Json::array();
    for (const Class* owner : catalogue::classes()) classes.push_back(classJson(*owner));
    return Json{{"classes", classes}}.dump(2) + '\n';
  }
  std::string text;
  for (const Class* owner : catalogue::classes()) {
    text += fmt::format("{}{}: {}{}\n{}", text.empty() ? "" : "\n", owner->name, owner->help,
                        owner->holdsState ? " (holds data: described, not run)" : "", methodLines(*owner));
  }
  return text;
}

std::string describePage(const Target& target, PageFormat format) {
  const Class& owner = *target.owner;
  if (format == PageFormat::Json) {
    if (target.methods.empty()) return classJson(owner).dump(2) + '\n';
    Json methods = Json::array();
    for (const Method* method : target.methods) methods.push_back(methodJson(owner, *method));
    return (methods.size() == 1 ? methods.front() : methods).dump(2) + '\n';
  }
  if (target.methods.empty()) return describeClass(owner);
  std::string text;
  for (const Method* method : target.methods) {
    if (!text.empty()) text += '\n';
    text += describeMethod(owner, *method);
  }
  return text;
}

}  // namespace orvex::cli
