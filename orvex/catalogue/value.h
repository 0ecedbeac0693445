#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "orvex/data/database.h"
#include "orvex/data/field.h"
#include "orvex/data/in_out.h"
#include "orvex/data/integer.h"
#include "orvex/data/note.h"
#include "orvex/data/record_set.h"
#include "orvex/data/variant.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

/// What an argument or a result is.
enum class Type {
  Nothing,  // no result
  Empty,    // a result that promises a value and has none
  Boolean,
  Integer,  // a count: 16 bits, or 32 (counts.h)
  Long,     // 32 bits
  Double,
  String,
  Field,
  Note,
  RecordSet,
  Database,
  Object,  // any object of the host's
  DoubleArray,
  StringArray,
  VariantArray,
};

/// The name of a type as its users know it: "Integer", "Field", ...
std::string_view typeName(Type type);

/// An argument that was left out.
struct Missing {
  friend bool operator==(Missing, Missing) = default;
};

/// An object of the host's, or no object of any kind.
using Object = std::shared_ptr<void>;

/// One argument or result of a call.
using Value = std::variant<Missing, Empty, Null, bool, Integer, std::int32_t, double, std::string,
                           std::shared_ptr<Field>, std::shared_ptr<Note>, std::shared_ptr<RecordSet>,
                           std::shared_ptr<Database>, Object, Array<double>, Array<std::string>, VariantArray>;

/// The value as one of `type`, as automation converts: numbers into each other, a fraction to the nearest whole number
/// with ties to the even one, numbers and texts that are wholly a number into each other, `Empty` into 0 or "", no
/// object into any kind of it. Errors: 6 for a number that does not fit, 13 for anything else, 94 for `Null`.
Value coerce(const Value& value, Type type);

/// The `Type` of a C++ type as the indicator methods use it, references and in/out arguments included.
template <class T>
struct TypeOf;
template <Type type>
struct TypeIs {
  static constexpr Type value = type;
};
template <>
struct TypeOf<void> : TypeIs<Type::Nothing> {};
template <>
struct TypeOf<Empty> : TypeIs<Type::Empty> {};
template <>
struct TypeOf<bool> : TypeIs<Type::Boolean> {};
template <>
struct TypeOf<Integer> : TypeIs<Type::Integer> {};
template <>
struct TypeOf<std::int32_t> : TypeIs<Type::Long> {};
template <>
struct TypeOf<double> : TypeIs<Type::Double> {};
template <>
struct TypeOf<std::string> : TypeIs<Type::String> {};
template <>
struct TypeOf<std::string_view> : TypeIs<Type::String> {};
template <>
struct TypeOf<std::shared_ptr<Field>> : TypeIs<Type::Field> {};
template <>
struct TypeOf<std::shared_ptr<Note>> : TypeIs<Type::Note> {};
template <>
struct TypeOf<std::shared_ptr<RecordSet>> : TypeIs<Type::RecordSet> {};
template <>
struct TypeOf<std::shared_ptr<Database>> : TypeIs<Type::Database> {};
template <>
struct TypeOf<Object> : TypeIs<Type::Object> {};
template <>
struct TypeOf<Array<double>> : TypeIs<Type::DoubleArray> {};
template <>
struct TypeOf<Array<std::string>> : TypeIs<Type::StringArray> {};
template <>
struct TypeOf<VariantArray> : TypeIs<Type::VariantArray> {};
template <class T>
struct TypeOf<InOut<T>> : TypeOf<T> {};

template <class T>
inline constexpr Type typeOf = TypeOf<std::remove_cvref_t<T>>::value;

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
