#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "orvex/catalogue/value.h"
#include "orvex/data/error.h"

/// What every way into the library knows of its classes, without their types.
namespace orvex::inline ORVEX_COUNTS::catalogue {

/// A short list that can be part of a constant.
template <class T, std::size_t Capacity>
struct List {
  static constexpr std::size_t capacity = Capacity;

  std::array<T, Capacity> items{};
  std::size_t count = 0;

  constexpr List() = default;
  constexpr List(std::initializer_list<T> entries) {
    for (const T& entry : entries) items[count++] = entry;
  }
  constexpr std::size_t size() const { return count; }
  constexpr bool empty() const { return count == 0; }
  constexpr const T* begin() const { return items.data(); }
  constexpr const T* end() const { return items.data() + count; }
  constexpr const T& operator[](std::size_t index) const { return items[index]; }
  constexpr T& operator[](std::size_t index) { return items[index]; }
};

/// What an argument becomes that is left out: a number or a text.
struct Default {
  double number = 0.0;
  std::string_view text{};
};

/// The value that people take for an argument unless they know better; nothing where there is none. A text is that of
/// an argument of texts, the column's name of a field (such as Close, in the price file), and of a whole number an
/// expression of N, the record count, as in computed_rows.h.
struct Usual {
  double number = 0.0;
  std::string_view text{};
  bool given = false;
  /// No custom of the field: it lets a call be tried, and depends on the market or the question.
  bool example = false;

  constexpr Usual() = default;
  constexpr Usual(double value) : number(value), given(true) {}
  constexpr Usual(std::string_view value) : text(value), given(true) {}
  constexpr Usual(const char* value) : text(value), given(true) {}
};

constexpr Usual asExample(Usual value) {
  value.example = true;
  return value;
}

/// One of the codes that an argument may be.
struct Choice {
  int code;
  std::string_view name;
};

/// As many as a method may have.
inline constexpr std::size_t MostArguments = 12;
inline constexpr std::size_t MostColumns = 9;

struct Argument {
  std::string_view name;
  std::string_view help;
  bool optional = false;
  Default otherwise{};   // of an optional argument
  bool record = false;   // it is the number of a record, not a count
  bool session = false;  // a column whose changes of value begin sessions: dates tell them too
  /// For the ways in that serve people; automation knows `otherwise` only.
  Usual usual{};
  /// What its codes mean; empty where it is no code.
  std::span<const Choice> choices{};

  // Taken from the member function.
  Type type = Type::Nothing;
  bool written = false;  // the method may write it back
  bool byValue = false;  // automation passes all others by reference

  /// The same argument of a method for which people take that value.
  constexpr Argument usually(Usual value) const {
    Argument result = *this;
    result.usual = value;
    return result;
  }
};

/// What a method is used for: the index of the reference.
enum class Purpose { None, Price, Trend, Momentum, Volatility, Volume, Pattern, Statistics };

/// The values that a column stays within, where there are such bounds.
struct Bounds {
  double low = -std::numeric_limits<double>::infinity();
  double high = std::numeric_limits<double>::infinity();
};

/// Where a chart shows a column.
enum class Place {
  Pane,   // below the price, in the one pane of its method
  Over,   // over what it is computed from: the price, or the column that the method was given
  Apart,  // in a pane that no other column of its method shares
};

/// How a chart shows a column.
enum class Style {
  Line,
  Bars,      // from 0
  Dots,      // one at each value
  Marks,     // at the records where it is not 0: above or below the price by its sign
  BandEdge,  // a line that bounds the area between it and the method's other edge
};

/// A column of a method's result.
struct Column {
  /// Its name, or what follows the alias in it.
  std::string_view name{};
  /// The first computed row, as an expression of N (the record count) and the arguments: the first record whose every
  /// input is itself computed. See computed_rows.h.
  std::string_view firstRow{};
  bool aliased = false;
  /// The last computed row, likewise.
  std::string_view lastRow = "N";
  std::string_view help{};
  /// "the source's" where it is that of the column computed from; empty for a pure number.
  std::string_view unit{};
  Bounds bounds{};
  Place place = Place::Pane;
  Style style = Style::Line;
  bool record = false;  // its values are numbers of records
};

/// What people ask about a method, a text each; empty where there is nothing to say.
struct Guide {
  std::string_view formula{};     // what it computes, in the arguments' names
  std::string_view reading{};     // how traders read it
  std::string_view origin{};      // who published it, where and when
  std::string_view difference{};  // how it departs from what was published
  std::string_view fails{};       // "where ...": when a call ends in an error, those of its arguments' bounds apart
};

/// What the same indicator is called by others; empty where they do not have it.
struct Elsewhere {
  std::string_view house{};  // the method of this library that computes it as the house always has, "Class.Method"
  std::string_view talib{};
  std::string_view tulip{};  // Tulip Indicators
};

enum class Kind { Method, PropertyGet, PropertyPut, PropertyPutReference };

/// One method of a class.
struct Method {
  std::string_view name{};
  std::string_view help{};
  List<Argument, MostArguments> arguments{};
  List<Column, MostColumns> columns{};
  /// The errors that the method itself raises, those of its arguments' conversion apart.
  List<Fault, 6> faults{};
  Kind kind = Kind::Method;
  Purpose purpose = Purpose::None;
  Elsewhere elsewhere{};
  /// The short names that the field has for it: RSI.
  List<std::string_view, 3> abbreviations{};
  Guide guide{};
  /// The heights of the lines that guide the eye in its pane: 30 and 70.
  List<double, 3> levels{};
  /// Arguments of a telling call, NAME=VALUE after NAME=VALUE, where the usual ones do not make one.
  std::string_view example{};
  /// Whether a live series computes all records anew with each change, since a new one may alter the rows of others.
  bool recomputed = false;

  // Taken from the member function.
  Type result = Type::Nothing;
  /// Calls the method of `object`. `arguments` are as many as the method's own, each of its type; those that the method
  /// writes back are changed in place.
  Value (*invoke)(void* object, std::span<Value> arguments) = nullptr;
};

/// The bytes of a globally unique identifier, in the order of its text.
struct Guid {
  std::array<std::uint8_t, 16> bytes{};

  /// From the 36 characters of its text; a constant that is not well-formed does not compile.
  consteval explicit Guid(std::string_view text) {
    std::size_t digits = 0;
    for (const char c : text) {
      if (c == '-') continue;
      const int digit = c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
      if (digit < 0 || digits == 32) throw "a digit of a GUID is 0-9 or a-f, and there are 32";
      auto& byte = bytes[digits++ / 2];
      byte = static_cast<std::uint8_t>(byte << 4 | digit);
    }
    if (digits != 32) throw "a GUID has 32 digits";
  }
};

/// One creatable class.
struct Class {
  std::string_view name;
  std::string_view help;
  /// What a program in C++ includes for it.
  std::string_view header;
  Guid classId;
  Guid interfaceId;
  /// Its objects hold data between calls; the others are calculators without a state.
  bool holdsState;
  /// Its methods are found with its name only, since others go before them.
  bool qualified;
  /// In the order of the interface, which is append-only.
  std::span<const Method* const> methods;
  std::shared_ptr<void> (*create)();
};

/// All classes, in the order of the library.
std::span<const Class* const> classes();

/// By name without regard to case; nothing for an unknown one.
const Class* findClass(std::string_view name);
const Method* findMethod(const Class& owner, std::string_view name, Kind kind = Kind::Method);

/// A method that computes something by itself: one of a class without a state, no property.
struct Calculation {
  const Class* owner = nullptr;
  const Method* method = nullptr;
};

bool isCalculation(const Class& owner, const Method& method);

/// The calculation of that name: of the class before a point, or the first in the order of the classes that are not
/// `qualified`. Nothing for an unknown one.
std::optional<Calculation> findCalculation(std::string_view name);

/// The number by which automation calls a method: its place in the interface, from 1. The parts of a property share
/// that of the first.
int dispatchId(const Class& owner, const Method& method);

/// The value that an optional argument has when it is left out.
Value defaultOf(const Argument& argument);

/// The code that a text names, without regard to case; nothing where the argument has no such choice.
std::optional<int> readChoice(const Argument& argument, std::string_view text);

/// "1 Simple, 2 Exponential, ...".
std::string listChoices(const Argument& argument);

/// "Trend", ...; "Over", ...; "BandEdge", ...
std::string_view nameOf(Purpose purpose);
std::string_view nameOf(Place place);
std::string_view nameOf(Style style);

/// Makes values of any kind into arguments of a method, each in its place: fills in what is `Missing` and converts the
/// others to the arguments' types. Errors: 449 for a missing argument that is not optional, and those of `coerce`.
/// REQUIRES: as many values as the method has arguments.
void convertArguments(const Method& method, std::span<Value> values);

/// Calls a method with values of any kind, converted so. In `arguments` stands afterwards what the method wrote back,
/// also when the call fails. Errors: those of the conversion, and the method's own.
Value call(const Method& method, void* object, std::span<Value> arguments);

/// The name of a result column of a call with that alias.
std::string columnName(const Column& column, std::string_view alias);

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
