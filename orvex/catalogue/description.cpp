#include "orvex/catalogue/description.h"

#include <algorithm>
#include <array>

#include "orvex/catalogue/usual.h"
#include "orvex/data/text.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

const Class* findClass(std::string_view name) {
  const auto all = classes();
  const auto found =
      std::find_if(all.begin(), all.end(), [&](const Class* one) { return equalNames(one->name, name); });
  return found == all.end() ? nullptr : *found;
}

const Method* findMethod(const Class& owner, std::string_view name, Kind kind) {
  for (const Method* method : owner.methods) {
    if (method->kind == kind && equalNames(method->name, name)) return method;
  }
  return nullptr;
}

bool isCalculation(const Class& owner, const Method& method) {
  return !owner.holdsState && method.kind == Kind::Method;
}

std::optional<Calculation> findCalculation(std::string_view name) {
  if (const std::size_t point = name.find('.'); point != std::string_view::npos) {
    const Class* owner = findClass(name.substr(0, point));
    const Method* method = owner == nullptr ? nullptr : findMethod(*owner, name.substr(point + 1));
    if (method == nullptr || !isCalculation(*owner, *method)) return std::nullopt;
    return Calculation{owner, method};
  }
  for (const Class* owner : classes()) {
    const Method* method = owner->qualified ? nullptr : findMethod(*owner, name);
    if (method != nullptr && isCalculation(*owner, *method)) return Calculation{owner, method};
  }
  return std::nullopt;
}

int dispatchId(const Class& owner, const Method& method) {
  const auto first = std::find_if(owner.methods.begin(), owner.methods.end(),
                                  [&](const Method* other) { return other->name == method.name; });
  return static_cast<int>(first - owner.methods.begin()) + 1;
}

Value defaultOf(const Argument& argument) {
  if (argument.type == Type::String) return std::string(argument.otherwise.text);
  return coerce(argument.otherwise.number, argument.type);
}

std::optional<int> readChoice(const Argument& argument, std::string_view text) {
  for (const Choice& choice : argument.choices) {
    if (equalNames(choice.name, text)) return choice.code;
  }
  return std::nullopt;
}

std::string listChoices(const Argument& argument) {
  std::string text;
  for (const Choice& choice : argument.choices) {
    if (!text.empty()) text += ", ";
    text += std::to_string(choice.code);
    text += ' ';
    text += choice.name;
  }
  return text;
}

std::string_view nameOf(Purpose purpose) {
  constexpr std::array names = {"None", "Price", "Trend", "Momentum", "Volatility", "Volume", "Pattern", "Statistics"};
  return names[static_cast<std::size_t>(purpose)];
}

std::string_view nameOf(Place place) {
  constexpr std::array names = {"Pane", "Over", "Apart"};
  return names[static_cast<std::size_t>(place)];
}

std::string_view nameOf(Style style) {
  constexpr std::array names = {"Line", "Bars", "Dots", "Marks", "BandEdge"};
  return names[static_cast<std::size_t>(style)];
}

void convertArguments(const Method& method, std::span<Value> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Argument& argument = method.arguments[i];
    if (!std::holds_alternative<Missing>(values[i])) {
      values[i] = coerce(values[i], argument.type);
    } else if (argument.optional) {
      values[i] = defaultOf(argument);
    } else {
      raise(ArgumentNotOptional);
    }
  }
}

Value call(const Method& method, void* object, std::span<Value> arguments) {
  convertArguments(method, arguments);
  return method.invoke(object, arguments);
}

std::string columnName(const Column& column, std::string_view alias) {
  return column.aliased ? std::string(alias).append(column.name) : std::string(column.name);
}

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
