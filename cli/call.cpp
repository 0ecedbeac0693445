#include "cli/call.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "cli/facts.h"
#include "cli/failure.h"
#include "cli/names.h"
#include "orvex/data/text.h"

namespace orvex::cli {

namespace {

using catalogue::Column;
using catalogue::Method;
using catalogue::RowRange;
using catalogue::Type;
using catalogue::Value;

/// What went wrong inside a method, in which record, and when it does.
std::string explainCause(const std::string& name, const Method& method, const Error& error, const PriceFile* file) {
  std::string text = fmt::format("{} could not be computed", name);
  if (error.cause() == error.fault()) return text + '.';
  text += fmt::format(": {}", withinSentence(error.cause().description));
  if (error.record() != 0) {
    text += fmt::format(" in record {}", error.record());
    const bool dated =
        file != nullptr && file->dates != nullptr && error.record() <= file->dates->getRecordCount().value();
    if (dated) text += fmt::format(" ({})", file->dates->getStrValue(error.record()));
  }
  text += '.';
  if (!method.guide.fails.empty()) text += fmt::format(" Fails {}.", method.guide.fails);
  return text;
}

/// What may lie behind an error that a method reports in its general words only.
std::string explain(const std::string& name, const Method& method, std::span<const Value> arguments,
                    const PriceFile* file, const Error& error) {
  std::string text = explainCause(name, method, error, file);
  if (const auto gap = catalogue::findGap(arguments)) {
    text += fmt::format(" {} has no value in record {}, and values before and behind it.", gap->column, gap->row);
  }
  bool codesKnown = true;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const catalogue::Argument& argument = method.arguments[i];
    const auto* code = std::get_if<Integer>(&arguments[i]);
    if (argument.choices.empty() || code == nullptr) continue;
    const bool known = std::any_of(argument.choices.begin(), argument.choices.end(),
                                   [&](const auto& choice) { return choice.code == code->value(); });
    if (!known) text += fmt::format(" {} is one of {}.", argument.name, listChoices(argument));
    codesKnown = codesKnown && known;
  }
  if (file != nullptr) {
    std::vector<std::string> lacking;
    for (const std::string_view price : Database::PriceNames) {
      if (!file->prices->isValidField(std::string(price))) lacking.emplace_back(price);
    }
    const bool takesPrices = std::any_of(method.arguments.begin(), method.arguments.end(),
                                         [](const auto& argument) { return argument.type == Type::RecordSet; });
    if (takesPrices && !lacking.empty()) {
      text += fmt::format(" It takes prices by name, and \"{}\" has no numbers for {}.", file->name,
                          enumerate(lacking, "or"));
    }
  }
  // A code that there is not may leave open where a column begins.
  if (file != nullptr && codesKnown) {
    const int count = file->data->getRecordCount().value();
    for (const Column& column : method.columns) {
      const RowRange rows = catalogue::computedRows(method, column, count, arguments);
      if (rows.first <= rows.last) continue;
      text += fmt::format(" With these arguments its first value would stand in record {}, and \"{}\" has {}.",
                          catalogue::evaluateRow(column.firstRow, method, count, arguments), file->name,
                          counted(count, "record"));
      break;
    }
  }
  return text + fmt::format(" \"orvex describe {}\" tells what it takes and when it fails.", name);
}

}  // namespace

catalogue::ValuedCall Call::operator()(std::span<Value> arguments) const {
  try {
    return catalogue::callOnValues(method, owner.create().get(), arguments);
  } catch (const Error& error) {
    throw Failure(error, explain(name, method, arguments, file, error));
  }
}

const catalogue::Argument* askedRecord(const Method& method) {
  const catalogue::Argument* asked = nullptr;
  for (const catalogue::Argument& argument : method.arguments) {
    if (!argument.record) continue;
    if (asked != nullptr) return nullptr;
    asked = &argument;
  }
  return method.result == Type::Note ? asked : nullptr;
}

}  // namespace orvex::cli
