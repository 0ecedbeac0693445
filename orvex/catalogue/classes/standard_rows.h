#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"
#include "orvex/standard/method.h"
#include "orvex/standard/standard.h"

/// What the rows of `Standard` share.
namespace orvex::inline ORVEX_COUNTS::catalogue {

inline constexpr std::array StandardAverages = {Choice{0, "SMA"},  Choice{1, "EMA"},  Choice{2, "WMA"},
                                                Choice{3, "DEMA"}, Choice{4, "TEMA"}, Choice{5, "TRIMA"},
                                                Choice{6, "KAMA"}, Choice{7, "MAMA"}, Choice{8, "T3"}};

constexpr Argument standardAverage(std::string_view name = "MA_Type", int usual = 0) {
  return {.name = name, .help = "The kind of average.", .usual = usual, .choices = StandardAverages};
}

constexpr Argument count(std::string_view name, std::string_view help, int usual) {
  return {.name = name, .help = help, .usual = usual};
}
constexpr Argument fastPeriods(int usual) {
  return count("FastPeriods", "How many records the faster average covers.", usual);
}
constexpr Argument slowPeriods(int usual) {
  return count("SlowPeriods", "How many records the slower average covers.", usual);
}
constexpr Argument signalPeriods(int usual) {
  return count("SignalPeriods", "How many records the signal covers.", usual);
}
constexpr Argument factor(std::string_view name, std::string_view help, double usual) {
  return {.name = name, .help = help, .usual = usual};
}
inline constexpr Argument Volumes{.name = "Volume", .help = "The volumes.", .usual = "Volume"};
inline constexpr Argument Sessions{
    .name = "Session", .help = "A column whose change of value begins a session.", .session = true, .usual = "Date"};
inline constexpr std::array PivotKinds = {Choice{0, "Classic"}, Choice{1, "Fibonacci"}, Choice{2, "Camarilla"}};
constexpr Argument sourceOf(std::string_view name, std::string_view usual) {
  return {.name = name, .help = "A column to compute from.", .usual = usual};
}

/// A column that is drawn over what it is computed from.
constexpr Column over(std::string_view suffix, std::string_view firstRow, std::string_view help,
                      Style style = Style::Line) {
  return {.name = suffix,
          .firstRow = firstRow,
          .aliased = true,
          .help = help,
          .unit = SourceUnit,
          .place = Place::Over,
          .style = style};
}
/// A column that is drawn in a pane of its own.
constexpr Column below(std::string_view suffix, std::string_view firstRow, std::string_view help,
                       std::string_view unit = {}, Bounds bounds = {}, Style style = Style::Line) {
  return {.name = suffix,
          .firstRow = firstRow,
          .aliased = true,
          .help = help,
          .unit = unit,
          .bounds = bounds,
          .style = style};
}
/// A column of numbers of records.
constexpr Column recordColumn(std::string_view firstRow, std::string_view help) {
  return {.name = "", .firstRow = firstRow, .aliased = true, .help = help, .unit = RecordsUnit, .record = true};
}
/// One of the levels of `PIVOTS`.
constexpr Column pivotLevel(std::size_t index, std::string_view help, std::string_view lastRow = "N") {
  Column level = over(Standard::PivotSuffixes[index], "1", help);
  level.lastRow = lastRow;
  return level;
}
/// What every call fails at.
inline constexpr std::string_view EveryFailure =
    "where a column is not as long as the series or holds a value that is not finite";

inline constexpr Bounds Percents{0, 100};

/// The row of a method of `Standard`: what it says of itself, and what all of them have: the series first, the alias
/// last, and the errors that go with the types of its arguments.
template <standard::Text name, auto F>
consteval Row<F> entry(Method described) {
  using Raises = standard::Reports<name>;
  described.name = std::string_view(name.characters, sizeof name.characters - 1);
  List<Argument, MostArguments> arguments{Data};
  for (const Argument& argument : described.arguments) arguments[arguments.count++] = argument;
  arguments[arguments.count++] = aliasOr(described.name);
  described.arguments = arguments;
  if (described.guide.fails.empty()) described.guide.fails = EveryFailure;
  bool hasSource = false;
  for (const Argument& argument : arguments) hasSource = hasSource || argument.name == Source.name;
  for (std::size_t i = 0; i < described.columns.size(); ++i) {
    if (!hasSource && described.columns[i].unit == SourceUnit) described.columns[i].unit = PriceUnit;
  }
  Row<F> result = row<F>(described);
  const auto named = [](const Choice& a, const Choice& b) { return a.name == b.name; };
  bool hasKind = false, hasPeriods = false, hasFactor = false, hasRecord = false, hasChoice = false;
  for (const Argument& argument : result.arguments) {
    hasFactor = hasFactor || argument.type == Type::Double;
    if (argument.type != Type::Integer) continue;
    const bool isKind = std::equal(argument.choices.begin(), argument.choices.end(), StandardAverages.begin(),
                                   StandardAverages.end(), named);
    hasKind = hasKind || isKind;
    hasChoice = hasChoice || (!isKind && !argument.choices.empty());
    hasRecord = hasRecord || argument.record;
    hasPeriods = hasPeriods || (argument.choices.empty() && !argument.record);
  }
  const auto add = [&](bool raised, const Fault& fault) {
    if (raised) result.faults[result.faults.count++] = fault;
  };
  add(true, faults::ObjectNotSet);
  add(hasKind, Raises::kind);
  add(hasPeriods, Raises::periods);
  add(hasFactor, Raises::factor);
  add(hasRecord, Raises::record);
  add(hasChoice, Raises::choice);
  add(true, Raises::unexpected);
  return result;
}

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
