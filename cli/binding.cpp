#include "cli/binding.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "cli/failure.h"
#include "cli/names.h"
#include "orvex/catalogue/usual.h"
#include "orvex/data/text.h"
#include "orvex/prices/sessions.h"

namespace orvex::cli {

namespace {

using catalogue::Argument;
using catalogue::Type;
using catalogue::Value;

bool comesFromFile(const Argument& argument) {
  return argument.type == Type::Database || argument.type == Type::RecordSet;
}

bool isName(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  });
}

const NamedText* find(const std::vector<NamedText>& given, std::string_view name) {
  const auto found =
      std::find_if(given.begin(), given.end(), [&](const NamedText& one) { return equalNames(one.name, name); });
  return found == given.end() ? nullptr : &*found;
}

std::vector<std::string> givableNames(const catalogue::Method& method) {
  std::vector<std::string> names;
  for (const Argument& argument : method.arguments) {
    if (!comesFromFile(argument)) names.emplace_back(argument.name);
  }
  return names;
}

std::string_view placeholder(const Argument& argument) {
  switch (argument.type) {
    case Type::Field:
      return "COLUMN";
    case Type::String:
      return "TEXT";
    case Type::Boolean:
      return "True|False";
    default:
      return "NUMBER";
  }
}

const FileColumn* findColumn(const PriceFile& file, std::string_view name) {
  const auto found = std::find_if(file.columns.begin(), file.columns.end(), [&](const FileColumn& one) {
    return equalNames(one.field->name(), name) || equalNames(one.heading, name);
  });
  return found == file.columns.end() ? nullptr : &*found;
}

/// Sessions out of the file's dates; nothing where neither they nor a length of session is named.
std::shared_ptr<Field> bindSessions(const PriceFile& file, const Argument& argument, const std::string& name) {
  const FileColumn* column = findColumn(file, name);
  const bool byDates = column != nullptr && column->field == file.dates;
  const auto length = byDates ? prices::SessionLength::Day : prices::sessionNamed(name);
  if (!length || (column != nullptr && !byDates)) return nullptr;
  std::vector<double> rows = prices::sessionsOf(file.times, *length);
  // Dates that are texts tell days apart also where nobody knows which number is the month.
  for (int row = 1; file.times.empty() && file.dates != nullptr && row <= file.dates->getRecordCount(); ++row) {
    rows.push_back(prices::sessionOf(file.dates->getStrValue(row), *length));
  }
  if (rows.empty() || std::any_of(rows.begin(), rows.end(), [](double row) { return std::isnan(row); })) {
    throw Failure(faults::TypeMismatch,
                  fmt::format("{}={}: \"{}\" has no dates that could be read, so a column of numbers must tell where "
                              "sessions begin: {}=COLUMN.",
                              argument.name, name, file.name, argument.name));
  }
  auto sessions = std::make_shared<Field>();
  sessions->view({rows, nullptr}, argument.name);
  return sessions;
}

Value bindColumn(const PriceFile& file, const Argument& argument, const std::string& name) {
  if (argument.session) {
    if (const auto sessions = bindSessions(file, argument, name)) return sessions;
  }
  const FileColumn* column = findColumn(file, name);
  if (column == nullptr) {
    const std::vector<std::string> names = file.columnNames();
    throw Failure(RecordSet::getIndexFault, fmt::format("{}={}: \"{}\" has no such column; it has {}.{}", argument.name,
                                                        name, file.name, enumerate(names), didYouMean(name, names)));
  }
  if (column->textLine) {
    throw Failure(
        faults::TypeMismatch,
        fmt::format(
            "{}={}: that column of \"{}\" holds what is no number, or none that fits a double, in line {} for one.",
            argument.name, name, file.name, *column->textLine));
  }
  return column->field;
}

/// What a text must be to become a value of a type.
std::string demand(Type type) {
  switch (type) {
    case Type::Integer:
      return fmt::format("a whole number from {} to {}", Integer::Least, Integer::Greatest);
    case Type::Long:
      return fmt::format("a whole number from {} to {}", std::numeric_limits<std::int32_t>::min(),
                         std::numeric_limits<std::int32_t>::max());
    case Type::Boolean:
      return "True or False";
    default:
      return "a number";
  }
}

bool isWhole(Type type) {
  return type == Type::Integer || type == Type::Long;
}

/// The words of a usual value: a column's name, or a number as the caller would write it.
std::string usualText(const Argument& argument, int count) {
  return std::get<std::string>(catalogue::coerce(catalogue::usualOf(argument, count), Type::String));
}

/// An argument that the caller did not give: a value, or nothing that could stand for it. A usual value is noted down.
std::optional<Value> bindUnnamed(const Argument& argument, const PriceFile* file, std::string& usual) {
  if (argument.type == Type::Database && file != nullptr) return file->data;
  if (argument.type == Type::RecordSet && file != nullptr) return file->prices;
  if (argument.optional) return catalogue::Missing{};
  const auto take = [&](const std::string& text) {
    usual += fmt::format(" {}={}{}", argument.name, text, argument.usual.example ? " (an example)" : "");
  };
  if (argument.type == Type::Field) {
    if (file == nullptr) return std::nullopt;
    for (const std::string_view name : {argument.name, argument.usual.text}) {
      if (findColumn(*file, name) == nullptr) continue;
      take(std::string(name));
      return bindColumn(*file, argument, std::string(name));
    }
    return std::nullopt;
  }
  if (!argument.usual.given) return std::nullopt;
  const int count = file == nullptr ? 0 : file->data->getRecordCount().value();
  take(usualText(argument, count));
  return catalogue::usualOf(argument, count);
}

}  // namespace

catalogue::Value bindText(const Argument& argument, const std::string& text) {
  if (const std::optional<int> code = readChoice(argument, text)) return catalogue::coerce(*code, argument.type);
  try {
    // Automation rounds a fraction. Here it is more likely a slip than a wish.
    if (isWhole(argument.type)) {
      const double number = std::get<double>(catalogue::coerce(text, Type::Double));
      if (number != std::floor(number)) raise(faults::TypeMismatch);
    }
    return catalogue::coerce(text, argument.type);
  } catch (const Error& error) {
    const std::string wanted =
        argument.choices.empty() ? demand(argument.type) : fmt::format("one of {}", listChoices(argument));
    throw Failure(error, fmt::format("{}={}: it must be {}.", argument.name, text, wanted));
  }
}

const catalogue::Method& findRunnable(const Target& target) {
  const catalogue::Class& owner = *target.owner;
  if (owner.holdsState) {
    throw UsageError(
        fmt::format("{0} is a class whose objects hold data between calls; a single call of one shows nothing, so it "
                    "is not run. \"orvex describe {0}\" tells what it does.",
                    owner.name));
  }
  if (target.methods.empty()) {
    std::vector<std::string> names;
    for (const catalogue::Method* method : owner.methods) names.emplace_back(method->name);
    throw UsageError(fmt::format("{0} is a class; name one of its methods as {0}.METHOD. It has {1}.", owner.name,
                                 enumerate(names)));
  }
  for (const catalogue::Method* method : target.methods) {
    if (catalogue::isCalculation(owner, *method)) return *method;
  }
  throw UsageError(
      fmt::format("{} is a property, which computes nothing by itself.", fullName(owner, *target.methods.front())));
}

std::vector<std::vector<std::string>> splitCalls(const std::vector<std::string>& words) {
  std::vector<std::vector<std::string>> calls(1);
  for (const std::string& word : words) {
    if (word == NextCall) {
      calls.emplace_back();
    } else {
      calls.back().push_back(word);
    }
  }
  return calls;
}

CallWords readWords(const std::vector<std::string>& words) {
  CallWords result;
  for (const std::string& word : words) {
    const std::size_t equals = word.find('=');
    if (equals != std::string::npos && isName(std::string_view(word).substr(0, equals))) {
      result.arguments.push_back({word.substr(0, equals), word.substr(equals + 1)});
    } else if (!result.file) {
      result.file = word;
    } else {
      throw UsageError(fmt::format("\"{}\" would be a second file after \"{}\"; arguments are written NAME=VALUE.",
                                   word, *result.file));
    }
  }
  return result;
}

bool needsFile(const catalogue::Method& method) {
  return std::any_of(method.arguments.begin(), method.arguments.end(),
                     [](const Argument& argument) { return comesFromFile(argument) || argument.type == Type::Field; });
}

void checkNames(const catalogue::Class& owner, const catalogue::Method& method, const std::vector<NamedText>& given) {
  for (const NamedText& one : given) {
    const auto argument = std::find_if(method.arguments.begin(), method.arguments.end(),
                                       [&](const Argument& each) { return equalNames(each.name, one.name); });
    if (argument == method.arguments.end()) {
      const std::vector<std::string> names = givableNames(method);
      const std::string has =
          names.empty() ? "it takes no arguments by name" : fmt::format("it has {}", enumerate(names));
      throw UsageError(fmt::format("{} has no argument \"{}\"; {}.{}", fullName(owner, method), one.name, has,
                                   didYouMean(one.name, names)));
    }
    if (comesFromFile(*argument)) {
      throw UsageError(
          fmt::format("{} is taken from the price file: leave \"{}={}\" out.", argument->name, one.name, one.value));
    }
    if (find(given, one.name) != &one) throw UsageError(fmt::format("{} is given twice.", argument->name));
  }
}

BoundCall bindArguments(const catalogue::Class& owner, const catalogue::Method& method,
                        const std::vector<NamedText>& given, const PriceFile* file) {
  BoundCall call;
  std::vector<Value>& values = call.values;
  std::string missing;
  for (const Argument& argument : method.arguments) {
    const NamedText* text = find(given, argument.name);
    if (text == nullptr) {
      const std::optional<Value> value = bindUnnamed(argument, file, call.usual);
      if (value) {
        values.push_back(*value);
      } else if (!comesFromFile(argument)) {
        missing += fmt::format("\n  {}={}: {}", argument.name, placeholder(argument), argument.help);
      }
    } else if (argument.type != Type::Field) {
      values.push_back(bindText(argument, text->value));
    } else if (file != nullptr) {
      values.push_back(bindColumn(*file, argument, text->value));
    }
  }
  const bool noFile = file == nullptr && needsFile(method);
  if (noFile || !missing.empty()) {
    throw UsageError(fmt::format("{} still needs{}{}\nA whole call: {}", fullName(owner, method),
                                 noFile ? "\n  FILE: a price file" : "", missing, exampleCall(owner, method)));
  }
  return call;
}

std::string exampleCall(const catalogue::Class& owner, const catalogue::Method& method) {
  std::string call = fmt::format("orvex run {}{}", fullName(owner, method), needsFile(method) ? " FILE" : "");
  for (const Argument& argument : method.arguments) {
    if (!argument.optional && !comesFromFile(argument)) {
      // A usual value that follows the length of the series has no words before the series is known.
      const bool known = argument.usual.given && (argument.usual.text.empty() || !isWhole(argument.type));
      call += fmt::format(" {}={}", argument.name, known ? usualText(argument, 0) : std::string(placeholder(argument)));
    }
  }
  return call;
}

}  // namespace orvex::cli
