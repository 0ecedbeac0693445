#include "cli/complete.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>

#include "cli/input_file.h"
#include "cli/names.h"
#include "cli/platform.h"
#include "orvex/data/text.h"
#include "orvex/prices/layout.h"
#include "orvex/prices/text_encoding.h"

namespace orvex::cli {

namespace {

using catalogue::Argument;
using catalogue::Calculation;
using catalogue::Class;
using catalogue::Method;
using catalogue::Type;

bool begins(std::string_view name, std::string_view written) {
  return written.size() <= name.size() && equalNames(name.substr(0, written.size()), written);
}

bool isGiven(const Argument& argument) {
  return argument.type != Type::Database && argument.type != Type::RecordSet;
}

/// The names of the columns of a price file, from its beginning alone: a shell must not wait for a long one.
std::vector<std::string> columnsOf(const std::string& path) {
  std::vector<std::string> names;
  std::error_code none;
  if (!std::filesystem::is_regular_file(platform::pathOf(path), none)) return names;
  try {
    const InputFile file(path);
    std::string text(65536, '\0');
    const auto got = ::read(file.number(), text.data(), static_cast<unsigned>(text.size()));
    text.resize(static_cast<std::size_t>(std::max<decltype(got)>(0, got)));
    if (const auto end = text.rfind('\n'); end != std::string::npos) text.resize(end + 1);
    for (const auto& column : prices::findLayout(prices::textOf(text), {}).columns) {
      if (column.role != prices::Role::Date && column.role != prices::Role::Clock) names.push_back(column.name);
    }
  } catch (const std::exception&) {
    // A file that is none offers nothing.
  }
  return names;
}

/// The part of the line that the last word stands in, and what is found in it.
struct Line {
  std::optional<Calculation> called;  // of the last method
  std::optional<std::string> file;
  std::vector<std::string> given;  // the names of its arguments
  bool expectsMethod = true;
};

/// Reads the words behind a command, the last one apart. `fileFirst`: a file stands before the first method.
Line readLine(const CommandOptions& command, const std::vector<std::string>& words, bool fileFirst) {
  Line line;
  line.expectsMethod = !fileFirst;
  for (std::size_t i = 1; i + 1 < words.size(); ++i) {
    const std::string& word = words[i];
    const auto option =
        std::find_if(command.options.begin(), command.options.end(), [&](const auto& one) { return one.name == word; });
    if (option != command.options.end()) {
      if (!option->isFlag) ++i;
    } else if (word == "--") {
      line.expectsMethod = true;
    } else if (line.expectsMethod) {
      line.called = catalogue::findCalculation(word);
      line.given.clear();
      line.expectsMethod = false;
    } else if (const std::size_t equals = word.find('='); equals != std::string::npos) {
      line.given.push_back(word.substr(0, equals));
    } else if (!line.file) {
      line.file = word;
      if (fileFirst) line.expectsMethod = true;
    }
  }
  return line;
}

/// Methods by their name alone, and behind the name of their class where that is written.
std::vector<std::string> methodNames(std::string_view written, bool describes) {
  std::vector<std::string> names;
  for (const Class* owner : catalogue::classes()) {
    const bool isWritten = begins(written, fmt::format("{}.", owner->name));
    if (describes && !isWritten && begins(owner->name, written)) names.emplace_back(owner->name);
    for (const Method* method : owner->methods) {
      const bool runs = catalogue::isCalculation(*owner, *method);
      if (!runs && !describes) continue;
      const std::string whole = fullName(*owner, *method);
      if ((isWritten || owner->qualified) && begins(whole, written)) names.push_back(whole);
      if (!owner->qualified && runs && begins(method->name, written)) names.emplace_back(method->name);
    }
    if (!isWritten && !owner->qualified && !owner->holdsState && begins(owner->name, written)) {
      names.push_back(fmt::format("{}.", owner->name));
    }
  }
  return names;
}

std::vector<std::string> valuesOf(const Argument& argument, const std::optional<std::string>& file) {
  std::vector<std::string> values;
  for (const catalogue::Choice& choice : argument.choices) values.emplace_back(choice.name);
  if (argument.type == Type::Boolean) values = {"True", "False"};
  if (argument.type == Type::Field && file) values = columnsOf(*file);
  return values;
}

std::vector<std::string> argumentWords(const Line& line, std::string_view written) {
  std::vector<std::string> found;
  if (!line.called) return found;
  const std::size_t equals = written.find('=');
  for (const Argument& argument : line.called->method->arguments) {
    if (!isGiven(argument)) continue;
    const bool isGivenAlready = std::any_of(line.given.begin(), line.given.end(),
                                            [&](const auto& name) { return equalNames(name, argument.name); });
    if (equals == std::string_view::npos) {
      if (!isGivenAlready && begins(argument.name, written)) found.push_back(fmt::format("{}=", argument.name));
    } else if (equalNames(argument.name, written.substr(0, equals))) {
      for (const std::string& value : valuesOf(argument, line.file)) {
        if (begins(value, written.substr(equals + 1))) found.push_back(fmt::format("{}={}", argument.name, value));
      }
    }
  }
  return found;
}

}  // namespace

std::vector<std::string> complete(const std::vector<CommandOptions>& commands, const std::vector<std::string>& words) {
  std::vector<std::string> found;
  if (words.empty()) return found;
  const std::string& written = words.back();
  const auto offer = [&](std::string_view word) {
    if (word == AnyFile || begins(word, written)) found.emplace_back(word);
  };
  if (words.size() == 1) {
    for (const CommandOptions& command : commands) offer(command.name);
    return found;
  }
  const auto command =
      std::find_if(commands.begin(), commands.end(), [&](const auto& one) { return one.name == words.front(); });
  if (command == commands.end()) return found;
  const std::string& before = words[words.size() - 2];
  for (const auto& option : command->options) {
    if (option.name == before && !option.isFlag) {
      for (const std::string& value : option.values) offer(value);
      return found;
    }
  }
  if (written.starts_with('-')) {
    for (const auto& option : command->options) offer(option.name);
    return found;
  }
  const bool describes = command->name == "describe";
  const bool charts = command->name == "chart";
  if (command->name == "reference") return {std::string(AnyFile)};
  if (!describes && !charts && command->name != "run" && command->name != "follow") return found;

  const Line line = readLine(*command, words, charts);
  if (line.expectsMethod) return methodNames(written, describes);
  if (describes) return found;
  found = argumentWords(line, written);
  if (!line.file && written.find('=') == std::string::npos) found.emplace_back(AnyFile);
  return found;
}

}  // namespace orvex::cli
