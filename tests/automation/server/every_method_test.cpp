#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "Orvex.h"
#include "orvex/catalogue/catalogue.h"
#include "tests/automation/server/support.h"

namespace orvex::test {
namespace {

using catalogue::Argument;
using catalogue::Class;
using catalogue::Kind;
using catalogue::Method;
using catalogue::Type;
using catalogue::Value;

/// What the calls of a round are given.
enum class Round { Plain, EmptyTexts, LeftOut, NullObjects };
constexpr Round rounds[] = {Round::Plain, Round::EmptyTexts, Round::LeftOut, Round::NullObjects};

constexpr int recordCount = 60;

/// Prices that rise and fall; 0 opens, 1 highs, 2 lows, 3 closes.
std::vector<double> prices(int column) {
  std::vector<double> values;
  for (int i = 1; i <= recordCount; ++i) {
    const double middle = 100 + i % 17 - i % 5 * 1.5 + (i * i) % 7;
    const double spread[] = {0.25, 2.0 + i % 3, -1.5 - i % 4, 0.5};
    values.push_back(middle + spread[column]);
  }
  return values;
}

std::string show(double number) {
  char text[40];
  std::snprintf(text, sizeof text, "%a ", number);
  return text;
}

std::string show(const std::string& name, std::span<const double> values) {
  std::string text = name + ": ";
  for (const double value : values) text += show(value);
  return text + "\n";
}

/// What a call is given, as the values of the library or of a host.
template <class Side>
typename Side::Value argumentOf(const Side& side, const Argument& argument, Round round) {
  if (round == Round::LeftOut && argument.optional) return typename Side::LeftOut();
  const auto given = [&](auto object) { return round == Round::NullObjects ? decltype(object)() : object; };
  switch (argument.type) {
    case Type::Integer:
      return typename Side::Integer(5);
    case Type::Long:
      return 7;
    case Type::Double:
      return 2.0;
    case Type::Boolean:
      return true;
    case Type::String:
      return std::string(round == Round::EmptyTexts && argument.written ? "" : "Close");
    case Type::Field:
      return given(side.close());
    case Type::RecordSet:
      return given(side.set);
    case Type::Database:
      return given(side.data);
    case Type::VariantArray:
      return typename Side::Column(prices(3));
    default:
      return typename Side::Nothing();
  }
}

template <class Side>
std::vector<typename Side::Value> argumentsOf(const Side& side, const Method& method, Round round) {
  std::vector<typename Side::Value> all;
  for (const Argument& argument : method.arguments) all.push_back(argumentOf(side, argument, round));
  return all;
}

/// The library itself, called without a server.
struct Library {
  using Value = catalogue::Value;
  using LeftOut = catalogue::Missing;
  using Integer = orvex::Integer;
  using Column = VariantArray;
  using Nothing = catalogue::Object;

  std::shared_ptr<Database> data = std::make_shared<Database>();
  std::shared_ptr<RecordSet> set;

  Library() {
    data->OpenDatabaseByFourArrays(prices(0), prices(1), prices(2), prices(3));
    data->MoveFirst();
    set = data->getRecordset();
  }

  std::shared_ptr<Field> close() const { return set->getField("Close"); }

  std::shared_ptr<void> receiver(const Class& owner) {
    if (owner.name == "Database") return data;
    if (owner.name == "RecordSet") return set;
    if (owner.name == "Field") return close();
    return owner.create();
  }

  static std::string show(const Value& value) {
    if (const auto* number = std::get_if<double>(&value)) return test::show(*number);
    if (const auto* set = std::get_if<std::shared_ptr<RecordSet>>(&value)) {
      std::string text;
      for (int i = 1; *set != nullptr && i <= (*set)->getFieldCount(); ++i) {
        const auto name = (*set)->getName(i);
        text += test::show(name, (*set)->getField(name)->values());
      }
      return text;
    }
    if (const auto* field = std::get_if<std::shared_ptr<Field>>(&value)) {
      return *field == nullptr ? "" : test::show((*field)->getName(), (*field)->values());
    }
    if (const auto* note = std::get_if<std::shared_ptr<Note>>(&value)) {
      return *note == nullptr ? ""
                              : std::to_string((*note)->getPeriod().value()) + " " + test::show((*note)->getValue()) +
                                    (*note)->getNote();
    }
    if (const auto* array = std::get_if<Array<double>>(&value)) return test::show("array", array->elements());
    if (const auto* texts = std::get_if<Array<std::string>>(&value)) {
      std::string text;
      for (const std::string& one : texts->elements()) text += one + "|";
      return text;
    }
    if (std::holds_alternative<std::shared_ptr<Database>>(value) || std::holds_alternative<catalogue::Object>(value)) {
      return "";
    }
    return std::get<std::string>(
        catalogue::coerce(std::holds_alternative<catalogue::Missing>(value) ? Value(Empty{}) : value, Type::String));
  }

  static std::string call(const Class& owner, const Method& method, Round round) {
    Library library;
    std::vector<Value> values = argumentsOf(library, method, round);
    std::string text;
    try {
      text = show(catalogue::call(method, library.receiver(owner).get(), values));
    } catch (const Error& error) {
      text =
          std::to_string(error.number()) + " " + std::string(error.source()) + " " + std::string(error.description());
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (method.arguments[i].written && round != Round::LeftOut) text += " wrote " + show(values[i]);
    }
    return text + " at " + std::to_string(library.data->getPosition().value());
  }
};

/// The same through the server.
struct Host {
  using Value = Variant;
  using LeftOut = test::LeftOut;
  using Integer = short;
  using Column = Variant;
  using Nothing = Ref<IDispatch>;

  Ref<_Database> data = Server::get().create<_Database>(catalogue::classOf<Database>);
  Ref<_RecordSet> set;

  Host() {
    Variant columns[] = {Variant(prices(0)), Variant(prices(1)), Variant(prices(2)), Variant(prices(3))};
    short position = 0;
    data->OpenDatabaseByFourArrays(&columns[0], &columns[1], &columns[2], &columns[3]);
    data->MoveFirst(&position);
    data->getRecordset(set.put());
  }
  ~Host() {
    // Database and set may have been made to hold each other.
    Ref<_Database> none;
    set->setDatabase(none.byRef());
  }

  Ref<_Field> close() const {
    Ref<_Field> field;
    Text name("Close");
    set->getField(&name, field.put());
    return field;
  }

  Ref<IDispatch> receiver(const Class& owner) const {
    if (owner.name == "Database") return data.as<IDispatch>();
    if (owner.name == "RecordSet") return set.as<IDispatch>();
    if (owner.name == "Field") return close().as<IDispatch>();
    return Server::get().create(owner);
  }

  static std::string show(_Field* field) {
    Text name;
    Variant values;
    if (field == nullptr) return "";
    field->getName(&name);
    field->getDoubleArray(&values);
    return test::show(name.get(), elements<double>(values));
  }

  template <class T>
  static std::span<const T> elements(const VARIANT& array) {
    if ((array.vt & VT_ARRAY) == 0 || array.parray == nullptr) return {};
    EXPECT_EQ(array.parray->rgsabound[0].lLbound, 1);
    return {static_cast<const T*>(array.parray->pvData), array.parray->rgsabound[0].cElements};
  }

  static std::string show(const Outcome& outcome) {
    if (outcome.number != 0) {
      return std::to_string(outcome.number) + " " + outcome.source + " " + outcome.description;
    }
    if (FAILED(outcome.code)) return "HRESULT " + std::to_string(outcome.code);
    const VARIANT& value = outcome.result;
    if (value.vt == VT_R8) return test::show(value.dblVal);
    if (value.vt == (VT_ARRAY | VT_R8)) return test::show("array", elements<double>(value));
    if (value.vt == (VT_ARRAY | VT_BSTR)) {
      std::string text;
      for (const BSTR one : elements<BSTR>(value)) text += automation::textOf(one) + "|";
      return text;
    }
    if (value.vt == VT_BOOL) return value.boolVal != VARIANT_FALSE ? "True" : "False";
    if (value.vt == VT_BSTR) return automation::textOf(value.bstrVal);
    if (value.vt == VT_I2) return std::to_string(value.iVal);
    if (const auto found = outcome.object<_RecordSet>(); found.get() != nullptr) {
      std::string text;
      short count = 0;
      found->getFieldCount(&count);
      for (short i = 1; i <= count; ++i) {
        Text name;
        Ref<_Field> field;
        found->getName(&i, &name);
        found->getField(&name, field.put());
        text += show(field.get());
      }
      return text;
    }
    if (const auto note = outcome.object<_Note>(); note.get() != nullptr) {
      short period = 0;
      double number = 0;
      Text text;
      note->getPeriod(&period);
      note->getValue(&number);
      note->getNote(&text);
      return std::to_string(period) + " " + test::show(number) + text.get();
    }
    return show(outcome.object<_Field>().get());
  }

  std::string where() const {
    short position = 0;
    data->getPosition(&position);
    return " at " + std::to_string(position);
  }

  static std::string callLate(const Class& owner, const Method& method, Round round) {
    const Host host;
    std::vector<Variant> variables = argumentsOf(host, method, round);
    std::vector<Variant> arguments;
    for (std::size_t i = 0; i < variables.size(); ++i) {
      const bool variable = method.arguments[i].written && round != Round::LeftOut;
      const bool ofText = variable && variables[i].vt == VT_BSTR && round == Round::EmptyTexts;
      arguments.push_back(ofText     ? Variant(&variables[i].bstrVal)
                          : variable ? Variant(static_cast<VARIANT*>(&variables[i]))
                                     : variables[i]);
    }
    const bool put = method.kind == Kind::PropertyPut || method.kind == Kind::PropertyPutReference;
    const auto object = host.receiver(owner);
    const Outcome outcome = invoke(object.get(), idOf(object.get(), method.name), arguments,
                                   put ? DISPATCH_PROPERTYPUT : DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                   put ? std::vector<DISPID>{DISPID_PROPERTYPUT} : std::vector<DISPID>());
    return show(outcome) + written(method, variables, round) + host.where();
  }

  static std::string callEarly(const Class& owner, const Method& method, Round round) {
    const Host host;
    std::vector<Variant> variables = argumentsOf(host, method, round);
    const auto leftOut = [](const Variant& variable) { return variable.vt == VT_ERROR; };
    const Outcome outcome = test::callEarly(host.receiver(owner).get(), owner, method, variables, leftOut);
    return show(outcome) + written(method, variables, round) + host.where();
  }

  static std::string written(const Method& method, const std::vector<Variant>& variables, Round round) {
    std::string text;
    for (std::size_t i = 0; i < variables.size(); ++i) {
      if (!method.arguments[i].written || round == Round::LeftOut) continue;
      Outcome variable;
      variable.result = variables[i];
      text += " wrote " + show(variable);
    }
    return text;
  }
};

template <class Visit>
void forEveryCall(Visit&& visit) {
  for (const Class* owner : catalogue::classes()) {
    for (const Method* method : owner->methods) {
      for (const Round round : rounds) visit(*owner, *method, round);
    }
  }
}

TEST(EveryMethod, GivesTheSameLateAndEarlyAsInTheLibrary) {
  forEveryCall([](const Class& owner, const Method& method, Round round) {
    SCOPED_TRACE(std::string(owner.name) + "." + std::string(method.name) + ", round " +
                 std::to_string(static_cast<int>(round)));
    const std::string expected = Library::call(owner, method, round);
    EXPECT_EQ(Host::callLate(owner, method, round), expected);
    EXPECT_EQ(Host::callEarly(owner, method, round), expected);
  });
}

TEST(EveryMethod, LeavesNothingBehind) {
  const auto round = [] {
    forEveryCall([](const Class& owner, const Method& method, Round given) {
      Host::callLate(owner, method, given);
      Host::callEarly(owner, method, given);
    });
    SetErrorInfo(0, nullptr);
  };
  // The first rounds fill caches of the platform, and a later one still may. What is lost is lost in every round.
  std::vector<std::size_t> blocks;
  do {
    round();
    blocks.push_back(HeapUse::now().blocks);
  } while (blocks.size() < 3 || (blocks.back() > blocks[blocks.size() - 2] && blocks.size() < 8));
  EXPECT_LE(blocks.back(), blocks[blocks.size() - 2]);
  EXPECT_TRUE(Server::get().canUnload());
}

}  // namespace
}  // namespace orvex::test
