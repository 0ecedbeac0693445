#include "orvex/catalogue/value.h"

#include <array>

#include "orvex/data/double_digits.h"
#include "orvex/data/error.h"
#include "orvex/data/number_text.h"
#include "orvex/data/real.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

namespace {

double numberOf(const std::string& text) {
  const NumberText number = readNumber(text);
  if (number.length == 0 || text.find_first_not_of(" \t", number.length) != std::string::npos) {
    raise(faults::TypeMismatch);
  }
  return number.value;
}

struct ToDouble {
  double operator()(Empty) const { return 0.0; }
  double operator()(Null) const { raise(faults::InvalidUseOfNull); }
  double operator()(bool value) const { return value ? -1.0 : 0.0; }
  double operator()(Integer value) const { return value.value(); }
  double operator()(std::int32_t value) const { return value; }
  double operator()(double value) const { return value; }
  double operator()(const std::string& text) const { return numberOf(text); }
  template <class Other>
  double operator()(const Other&) const {
    raise(faults::TypeMismatch);
  }
};

struct ToText {
  std::string operator()(Empty) const { return {}; }
  std::string operator()(Null) const { raise(faults::InvalidUseOfNull); }
  std::string operator()(bool value) const { return value ? "True" : "False"; }
  std::string operator()(Integer value) const { return std::to_string(value.value()); }
  std::string operator()(std::int32_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return shortestText(value); }
  std::string operator()(const std::string& text) const { return text; }
  template <class Other>
  std::string operator()(const Other&) const {
    raise(faults::TypeMismatch);
  }
};

template <class T>
Value same(const Value& value) {
  if (std::holds_alternative<T>(value)) return value;
  raise(faults::TypeMismatch);
}

template <class T>
Value objectOf(const Value& value) {
  const auto* any = std::get_if<Object>(&value);
  if (any != nullptr && *any == nullptr) return std::shared_ptr<T>();
  return same<std::shared_ptr<T>>(value);
}

/// Numbers may stand where an array of anything is wanted; what is no array fails when it is used as one.
Value arrayOf(const Value& value) {
  if (const auto* numbers = std::get_if<Array<double>>(&value)) return VariantArray(*numbers);
  if (const auto* array = std::get_if<VariantArray>(&value)) return *array;
  return VariantArray();
}

}  // namespace

std::string_view typeName(Type type) {
  constexpr std::array names = {"none", "Variant",   "Boolean",  "Integer", "Long",     "Double",   "String",   "Field",
                                "Note", "RecordSet", "Database", "Object",  "Double()", "String()", "Variant()"};
  return names[static_cast<std::size_t>(type)];
}

Value coerce(const Value& value, Type type) {
  switch (type) {
    case Type::Integer:
      return std::holds_alternative<Integer>(value) ? value : Integer::rounded(std::visit(ToDouble{}, value));
    case Type::Long:
      return toLong(roundHalfEven(std::visit(ToDouble{}, value)));
    case Type::Double:
      return std::visit(ToDouble{}, value);
    case Type::String:
      return std::visit(ToText{}, value);
    case Type::Field:
      return objectOf<Field>(value);
    case Type::Note:
      return objectOf<Note>(value);
    case Type::RecordSet:
      return objectOf<RecordSet>(value);
    case Type::Database:
      return objectOf<Database>(value);
    case Type::Object:
      return same<Object>(value);
    case Type::VariantArray:
      return arrayOf(value);
    default:
      // No argument is of another type.
      raise(faults::TypeMismatch);
  }
}

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
