#include "cli/reference.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <sstream>
#include <string_view>
#include <vector>

#include "cli/binding.h"
#include "cli/facts.h"
#include "cli/names.h"
#include "cli/run.h"
#include "orvex/catalogue/description.h"

namespace orvex::cli {

namespace {

using catalogue::Class;
using catalogue::Method;

constexpr std::string_view introduction = R"(# Reference

Every indicator by what it is used for, then every class with its methods. `orvex describe NAME` shows the same of one;
`scripts/update-generated` writes this page.

- Records run from 1, the oldest, to N, the record count. An Integer has 16 bits in the automation server and in
  the C++ target `Orvex::orvex`, 32 bits in the command line and in `Orvex::orvex32`; a period that does not fit is error
  6 "Overflow", a text that is no number error 13 "Type mismatch", both from "Orvex". What fails in 16 bits alone, because
  a count overflows in them, works in 32: 32,767 records, a regression over more than 181, twice a period past 16,383.
- The time of a call grows in proportion to N; `Cycle.Analyze` takes N log N. The prime methods look at as many whole
  numbers a record as lie between its price and the next prime, some 20 for prices near 2,000,000,000.
- The usual value of an argument is what people take unless they know better. Command line, Python and browser take it
  for an argument that is left out; C++ and automation have to be given it. Those marked as an
  example are no custom of the field and let a call be tried: a limit move, a tick, the column to compare with.
- A class that holds data keeps it between calls. The others are calculators: one object serves any number of calls.
- The computed rows of a result column are the records whose every input is itself computed. Rows outside them hold 0,
  or what the formula makes of values that are not computed yet. "Usually" tells the rows for the usual arguments.
- Where a page says that a method fails, the whole call ends in an error and there is no result. What it tells first are
  errors of its own; whatever else goes wrong is 1105 "An unexpected error has occured", a text that hosts know and that
  stays as it is. The command line says what lay behind it, and in which record.
- "Over it" in "drawn" means over the price, or over the column that the method was given.
- What differs from the book is told with numbers in [differences.md](differences.md); words are explained in
  [glossary.md](glossary.md).
)";

/// A cell of a table, where "|" would end it.
std::string cell(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '|') result += '\\';
    result += c;
  }
  return result;
}

std::string table(const std::vector<std::string>& titles, const TableRows& rows) {
  if (rows.empty()) return {};
  std::string text = fmt::format("\n| {} |\n|", fmt::join(titles, " | "));
  for (std::size_t i = 0; i < titles.size(); ++i) text += "---|";
  text += '\n';
  for (const auto& row : rows) {
    text += '|';
    for (const std::string& one : row) text += fmt::format(" {} |", cell(one));
    text += '\n';
  }
  return text;
}

/// What GitHub and others make of a heading to link to it.
std::string anchorOf(std::string_view heading) {
  std::string anchor;
  for (const char c : heading) {
    if (c >= 'A' && c <= 'Z') anchor += static_cast<char>(c - 'A' + 'a');
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '-') anchor += c;
  }
  return anchor;
}

/// The calculations for one purpose, a line each.
std::string purposeSection(catalogue::Purpose purpose) {
  std::string lines;
  for (const Class* owner : catalogue::classes()) {
    for (const Method* method : owner->methods) {
      if (method->purpose != purpose) continue;
      const std::string name = fullName(*owner, *method);
      const std::string known = method->abbreviations.empty() ? "" : fmt::format(" ({})", abbreviationsOf(*method));
      lines += fmt::format("- [{}](#{}){}: {}\n", name, anchorOf(name), known, method->help);
    }
  }
  return fmt::format("\n### {}\n\n{}", nameOf(purpose), lines);
}

/// A call on the price file and the end of what it prints.
std::string exampleSection(const Class& owner, const Method& method, const std::string& priceFile) {
  RunOptions options;
  options.target = fullName(owner, method);
  options.format = Format::Table;
  options.quiet = true;
  std::string command = fmt::format("orvex run {}", options.target);
  const auto add = [&](const std::string& word) {
    options.words.push_back(word);
    command += ' ' + word;
  };
  if (needsFile(method)) add(priceFile);
  std::istringstream example{std::string(method.example)};
  for (std::string word; example >> word;) add(word);
  if (method.result == catalogue::Type::RecordSet) {
    options.last = 3;
    command += " --last 3";
  }
  Sink printed;
  run(options, printed);
  return fmt::format("\n```\n$ {}\n{}```\n", command, printed.text());
}

std::string methodSection(const Class& owner, const Method& method, const std::string& priceFile) {
  std::string text =
      fmt::format("\n### {}\n\n{}{}\n\n    {}\n", fullName(owner, method), helpOf(method),
                  method.abbreviations.empty() ? "" : fmt::format(" Also called {}.", abbreviationsOf(method)),
                  signatureOf(method));
  for (const auto& [title, words] : guideOf(owner, method)) text += fmt::format("\n**{}.** {}\n", title, words);
  if (!method.levels.empty()) {
    text += fmt::format("\n**Lines that guide the eye.** {}\n", fmt::join(method.levels, ", "));
  }
  text +=
      table({"Argument", "Type", "Usually", "Meaning"}, argumentRows(method)) +
      table({"Result column", "Meaning", "Unit", "Range", "Drawn", "Computed rows", "Usually"}, columnRows(method)) +
      table({"Error", "Source", "Description"}, faultRows(method));
  return catalogue::isCalculation(owner, method) ? text + exampleSection(owner, method, priceFile) : text;
}

}  // namespace

std::string referencePage(const std::string& priceFile) {
  std::string text = fmt::format("{}- In computed rows, {}\n## Indicators by purpose\n", introduction, RowFunctions);
  for (const auto purpose : {catalogue::Purpose::Trend, catalogue::Purpose::Momentum, catalogue::Purpose::Volatility,
                             catalogue::Purpose::Volume, catalogue::Purpose::Price, catalogue::Purpose::Pattern,
                             catalogue::Purpose::Statistics}) {
    text += purposeSection(purpose);
  }
  for (const Class* owner : catalogue::classes()) {
    text += fmt::format("\n## {}\n\n{}{} In C++ `#include \"{}\"`.\n", owner->name, owner->help,
                        owner->holdsState ? " Its objects hold data between calls." : "", owner->header);
    const TableRows names = nameRows(*owner);
    if (!names.empty()) {
      text += "\n### Which name for which indicator\n" +
              table({std::string(owner->name), "The house's own", "TA-Lib", "Tulip Indicators", "First row"}, names);
    }
    for (const Method* method : owner->methods) text += methodSection(*owner, *method, priceFile);
  }
  return text;
}

}  // namespace orvex::cli
