#include "cli/reference.h"

#include <fmt/format.h>

#include <string_view>
#include <vector>

#include "cli/facts.h"
#include "cli/names.h"
#include "orvex/catalogue/description.h"

namespace orvex::cli {

namespace {

using catalogue::Class;
using catalogue::Method;

constexpr std::string_view introduction = R"(# Reference

Every class of the library with its methods. `orvex reference` prints this page; `scripts/update-generated` writes it.

- Records run from 1, the oldest, to N, the record count. An Integer has 16 bits in the automation server and in
  the C++ target `Orvex::orvex`, 32 bits in the command line and in `Orvex::orvex32`; a period that does not fit is error
  6 "Overflow", a text that is no number error 13 "Type mismatch", both from "Orvex". What fails in 16 bits alone, because
  a count overflows in them, works in 32: 32,767 records, a regression over more than 181, twice a period past 16,383.
- The time of a call grows in proportion to N; `Cycle.Analyze` takes N log N. The prime methods look at as many whole
  numbers a record as lie between its price and the next prime, some 20 for prices near 2,000,000,000.
- A class that holds data keeps it between calls. The others are calculators: one object serves any number of calls.
- The computed rows of a result column are the records whose every input is itself computed. Rows outside them hold 0,
  or what the formula makes of values that are not computed yet.
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

std::string methodSection(const Class& owner, const Method& method) {
  std::string text =
      fmt::format("\n### {}\n\n{}\n\n    {}\n", fullName(owner, method), helpOf(method), signatureOf(method));
  return text + table({"Argument", "Type", "Meaning"}, argumentRows(method)) +
         table({"Result column", "Computed rows"}, columnRows(method)) +
         table({"Error", "Source", "Description"}, faultRows(method));
}

}  // namespace

std::string referencePage() {
  std::string text = fmt::format("{}- In them, {}", introduction, RowFunctions);
  for (const Class* owner : catalogue::classes()) {
    text += fmt::format("\n## {}\n\n{}{}\n", owner->name, owner->help,
                        owner->holdsState ? " Its objects hold data between calls." : "");
    for (const Method* method : owner->methods) text += methodSection(*owner, *method);
  }
  return text;
}

}  // namespace orvex::cli
