#include <gtest/gtest.h>

#include <limits>

#include "Orvex.h"
#include "orvex/catalogue/catalogue.h"
#include "tests/automation/server/support.h"

namespace orvex::test {
namespace {

constexpr Fault averageFault = MovingAverage::SimpleMovingAverageFault;

class LateBinding : public ::testing::Test {
 protected:
  Ref<_Database> data = Server::get().create<_Database>(catalogue::classOf<Database>);
  Ref<_Field> field = Server::get().create<_Field>(catalogue::classOf<Field>);
  Ref<IDispatch> average = Server::get().create(catalogue::classOf<MovingAverage>);

  void SetUp() override {
    ASSERT_EQ(invoke(data, "OpenDatabaseByArray", {Variant(std::vector<double>{1, 2, 3, 4, 5})}).code, S_OK);
    ASSERT_EQ(invoke(data, "MoveFirst", {}).code, S_OK);
    ASSERT_EQ(invoke(field, "initialize", {5, "Source"}).code, S_OK);
    for (int i = 1; i <= 5; ++i) ASSERT_EQ(invoke(field, "setValue", {i, i}).code, S_OK);
  }

  Outcome mean(std::vector<Variant> arguments) { return invoke(average, "SimpleMovingAverage", std::move(arguments)); }
};

TEST_F(LateBinding, ConvertsArgumentsAsAutomationDoes) {
  struct Case {
    const char* what;
    Variant periods;
    int number;  // of the error, 0 for none
  };
  const Case cases[] = {
      {"a 32-bit number", 3, 0},
      {"a fraction, ties to the even number: 2", 2.5, 0},
      {"a text that is a number", " 3 ", 0},
      {"True is -1, which no average can look back", true, 1105},
      {"Empty is 0, likewise", Variant(), 1105},
      {"past 16 bits", 32768, 6},
      {"rounds past 16 bits", 32767.5, 6},
      {"not a number", std::numeric_limits<double>::quiet_NaN(), 6},
      {"Null", Variant::null(), 94},
      {"a text that is none", "3 records", 13},
      {"an object", average, 13},
      {"no object", static_cast<IDispatch*>(nullptr), 13},
      {"an array", Variant(VT_R8, SafeArrayCreateVector(VT_R8, 1, 1)), 13},
  };
  for (const Case& one : cases) {
    const Outcome outcome = mean({data, field, one.periods});
    EXPECT_EQ(outcome.number, one.number) << one.what << ": " << outcome;
    EXPECT_EQ(outcome.source, one.number == 0 ? "" : one.number == 1105 ? averageFault.source : faults::Library);
  }
  // 2.5 looked back 2 records and not 3.
  const auto set = mean({data, field, 2.5}).object<_RecordSet>();
  EXPECT_EQ(invoke(set, "getValue", {"SimpleMovingAverage", 3}).result.dblVal, 2.5);
}

TEST_F(LateBinding, TakesTheDefaultValuesOfObjects) {
  SheetCell three(3);
  SheetCell reference{Variant(static_cast<IDispatch*>(&three))};
  SheetCell name("mean");
  SheetCell itself{Variant()};
  itself.value = Variant(static_cast<IDispatch*>(&itself));
  SheetCell leftOut{Variant(LeftOut())};
  Foreign none;
  IDispatch* const cells[] = {&three, &reference};
  for (IDispatch* periods : cells) {
    const Outcome outcome = mean({data, field, periods, static_cast<IDispatch*>(&name)});
    EXPECT_EQ(invoke(outcome.object<_RecordSet>(), "getValue", {"mean", 4}).result.dblVal, 3.0) << outcome;
  }
  for (IDispatch* periods :
       {static_cast<IDispatch*>(&itself), static_cast<IDispatch*>(&leftOut), static_cast<IDispatch*>(&none)}) {
    EXPECT_TRUE(mean({data, field, periods}).is(faults::TypeMismatch));
  }
  itself.value = Variant();
  // An array, and an element of one.
  SheetCell column{Variant(std::vector<double>{7, 8})};
  EXPECT_EQ(invoke(data, "OpenDatabaseByArray", {static_cast<IDispatch*>(&column)}).code, S_OK);
  EXPECT_EQ(invoke(data, "getRecordCount", {}).result.iVal, 2);
  SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 1, 1);
  static_cast<VARIANT*>(array->pvData)[0] = Variant(3);
  Variant element(VT_VARIANT, array);
  LONG first = 1;
  Variant cell(static_cast<IDispatch*>(&reference));
  SafeArrayPutElement(array, &first, &cell);
  EXPECT_EQ(invoke(data, "OpenDatabaseByArray", {element}).code, S_OK);
  const auto set = invoke(data, "getRecordset", {}).object<_RecordSet>();
  EXPECT_EQ(invoke(set, "getValue", {"Open", 1}).result.dblVal, 3.0);
  element = Variant();
  cell = Variant();
  for (const Foreign* one :
       {static_cast<Foreign*>(&three), static_cast<Foreign*>(&name), static_cast<Foreign*>(&itself), &none}) {
    EXPECT_EQ(one->references, one == &three ? 2u : 1u);
  }
}

TEST_F(LateBinding, TellsWhatIsWrongWithTheArguments) {
  const DISPID id = idOf(average.get(), "simplemovingAVERAGE");
  ASSERT_EQ(id, 1);
  EXPECT_EQ(mean({data, field}).code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(mean({data, field, 3, "a", "b"}).code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(mean({data, LeftOut(), 3}).code, DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(mean({data, field, 3, LeftOut()}).code, S_OK);
  EXPECT_EQ(invoke(average.get(), id, {data, field, 3, 2}, DISPATCH_METHOD, {2}).code, DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(invoke(average.get(), id, {data, field, 3, 2}, DISPATCH_METHOD, {9}).code, DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(invoke(average.get(), 999, {}).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(invoke(average.get(), id, {data, field, 3}, DISPATCH_PROPERTYPUT).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_TRUE(mean({field, field, 3}).is(faults::TypeMismatch));
  EXPECT_TRUE(mean({data, field, 6}).is(averageFault));

  // Alias, Periods and Source by name, data by place.
  const Outcome named =
      invoke(average.get(), id, {data, "named", 3, field}, DISPATCH_METHOD | DISPATCH_PROPERTYGET, {3, 2, 1});
  EXPECT_TRUE(invoke(named.object<_RecordSet>(), "isValidField", {"NAMED"}).result.boolVal) << named;

  wchar_t method[] = L"SimpleMovingAverage";
  wchar_t argument[] = L"PERIODS";
  wchar_t unknown[] = L"Period";
  wchar_t* names[] = {method, argument, unknown};
  DISPID ids[3];
  EXPECT_EQ(average->GetIDsOfNames(IID_NULL, names, 3, 1033, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[1], 2);
  EXPECT_EQ(ids[2], DISPID_UNKNOWN);
}

TEST_F(LateBinding, WritesBackWhatTheMethodChanged) {
  Variant empty;
  EXPECT_EQ(mean({data, field, 3, Variant(static_cast<VARIANT*>(&empty))}).code, S_OK);
  EXPECT_EQ(empty.text(), "SimpleMovingAverage");
  // Also where the call then fails.
  Variant text("");
  EXPECT_TRUE(mean({data, field, 0, Variant(static_cast<VARIANT*>(&text))}).is(averageFault));
  EXPECT_EQ(text.text(), "SimpleMovingAverage");
  Text typed;
  EXPECT_EQ(mean({data, field, 3, Variant(&typed)}).code, S_OK);
  EXPECT_EQ(typed.get(), "SimpleMovingAverage");
  // A variable that keeps its value keeps its type.
  Variant number(7);
  Variant periods("3");
  const Outcome outcome =
      mean({data, field, Variant(static_cast<VARIANT*>(&periods)), Variant(static_cast<VARIANT*>(&number))});
  EXPECT_TRUE(invoke(outcome.object<_RecordSet>(), "isValidField", {"7"}).result.boolVal) << outcome;
  EXPECT_EQ(number.vt, VT_I4);
  EXPECT_EQ(periods.text(), "3");
}

TEST_F(LateBinding, WritesBackIntoVariablesOfEveryType) {
  const auto set = invoke(data, "getRecordset", {});
  const auto oscillator = Server::get().create(catalogue::classOf<Oscillator>);
  for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT, VT_R4, VT_R8,
                             VT_CY, VT_DATE, VT_DECIMAL, VT_BSTR, VT_BOOL}) {
    Variant periods(0);
    ASSERT_EQ(VariantChangeType(&periods, &periods, 0, type), S_OK);
    Variant reference;
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    reference.byref = type == VT_DECIMAL ? static_cast<void*>(&periods) : &periods.bVal;
    // Without a number of periods of its own it says that it took 100.
    const Outcome outcome = invoke(oscillator, "ChaosFractalOscillator", {data, set.result, reference});
    EXPECT_EQ(outcome.code, S_OK) << outcome;
    VariantChangeType(&periods, &periods, 0, VT_R8);
    EXPECT_EQ(periods.dblVal, type == VT_BOOL ? -1 : 100) << "type " << type;
  }
}

TEST_F(LateBinding, WritesNumbersIntoTextsAsItReadsThem) {
  const auto bands = Server::get().create(catalogue::classOf<Bands>);
  wchar_t before[8] = {};
  GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before, 8);
  SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, L",");
  // The envelope leaves a hundredth of what it was given.
  Text shift("8.25");
  const Outcome outcome = invoke(bands, "MovingAverageEnvelope", {data, field, 1, 1, Variant(&shift)});
  SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before);
  EXPECT_EQ(outcome.code, S_OK) << outcome;
  EXPECT_EQ(shift.get(), "0.0825");
}

TEST_F(LateBinding, KeepsTheIdentityOfObjects) {
  const auto set = Server::get().create<_RecordSet>(catalogue::classOf<RecordSet>);
  ASSERT_EQ(invoke(set, "addField", {field}).code, S_OK);
  EXPECT_EQ(invoke(set, "getField", {"SOURCE"}).result.pdispVal, field.get());
  EXPECT_EQ(invoke(set, "setDatabase", {data}).code, S_OK);
  EXPECT_EQ(invoke(set, "getDatabase", {}).result.pdispVal, data.get());
  // A wrapper that is gone is made anew for the object that is still there.
  field = Ref<_Field>();
  EXPECT_EQ(invoke(invoke(set, "getField", {"Source"}).object<_Field>(), "getValue", {5}).result.dblVal, 5.0);
  // Nothing comes out as Nothing.
  const Outcome nothing = invoke(Server::get().create<_Field>(catalogue::classOf<Field>), "getNote", {});
  EXPECT_EQ(nothing.result.vt, VT_DISPATCH);
  EXPECT_EQ(nothing.result.pdispVal, nullptr);
}

TEST_F(LateBinding, SetsPropertiesByValueAndByReference) {
  const auto set = invoke(data, "getRecordset", {});
  const DISPID id = idOf(data.get(), "RecordsetCache");
  for (const int flag : {DISPATCH_PROPERTYPUTREF, DISPATCH_PROPERTYPUT}) {
    data = Server::get().create<_Database>(catalogue::classOf<Database>);
    EXPECT_EQ(invoke(data.get(), id, {set.result}, static_cast<WORD>(flag), {DISPID_PROPERTYPUT}).code, S_OK);
    EXPECT_EQ(invoke(data, "getRecordCount", {}).result.iVal, 5);
  }
  EXPECT_EQ(invoke(data.get(), id, {}, DISPATCH_PROPERTYGET).code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(LateBinding, TakesArraysOfEveryKind) {
  const auto vectorOf = [](VARTYPE type, LONG lower, auto... elements) {
    SAFEARRAY* array = SafeArrayCreateVector(type, lower, sizeof...(elements));
    const auto put = [&](auto element) {
      if constexpr (std::is_pointer_v<decltype(element)>) {
        SafeArrayPutElement(array, &lower, element);
      } else {
        SafeArrayPutElement(array, &lower, &element);
      }
      ++lower;
    };
    (put(elements), ...);
    return Variant(type, array);
  };
  SAFEARRAYBOUND square[] = {{4, 1}, {4, 1}};
  const CY money{.int64 = 25000};
  Text x("x");
  Text two("2.5 pieces");
  const Variant texts = vectorOf(VT_BSTR, 0, *&x, *&two);
  const Variant mixed = vectorOf(VT_VARIANT, 0, Variant(), Variant("2.5"));
  Variant single;
  single.vt = VT_R4;
  single.fltVal = 10.1f;
  DECIMAL impossible{};
  impossible.scale = 200;
  const Variant decimals = vectorOf(VT_DECIMAL, 1, impossible);
  struct Case {
    const char* what;
    Variant array;
    const char* fault;  // its description, or the empty text
    double first;
  };
  const Case cases[] = {
      {"doubles", vectorOf(VT_R8, 0, 9.0, 2.5), "", 2.5},
      {"a lower bound of its own", vectorOf(VT_R8, -1, 9.0, 9.0, 2.5), "", 2.5},
      {"one that begins after 1", vectorOf(VT_R8, 2, 2.5), "Subscript out of range", 0},
      {"singles", vectorOf(VT_R4, 1, 10.1f), "", 10.1},
      {"singles among others", vectorOf(VT_VARIANT, 1, single), "", 10.1},
      {"bytes", vectorOf(VT_UI1, 1, static_cast<unsigned char>(200)), "", 200},
      {"16-bit numbers", vectorOf(VT_I2, 1, short{-3}), "", -3},
      {"32-bit numbers", vectorOf(VT_I4, 1, LONG{-70000}), "", -70000},
      {"currency", vectorOf(VT_CY, 1, money), "", 2.5},
      {"truth values, which are read as their names", vectorOf(VT_BOOL, 1, VARIANT_TRUE), "", 0},
      {"dates, which are read as their texts", vectorOf(VT_DATE, 1, DATE{36526}), "", 1},
      {"texts", texts, "", 2.5},
      {"mixed elements", mixed, "", 2.5},
      {"Null", vectorOf(VT_VARIANT, 1, Variant::null()), "Invalid use of Null", 0},
      {"an object", vectorOf(VT_VARIANT, 1, Variant(average)), "Type mismatch", 0},
      {"several dimensions", Variant(VT_R8, SafeArrayCreate(VT_R8, 2, square)), "Subscript out of range", 0},
      {"no array yet", Variant(VT_R8, nullptr), "Subscript out of range", 0},
      {"a number", 2.5, "Type mismatch", 0},
      {"an impossible date", vectorOf(VT_DATE, 1, DATE{1e300}), "Type mismatch", 0},
      {"a decimal number that is none", decimals, "Overflow", 0},
  };
  for (const Case& one : cases) {
    Variant variable = one.array;
    Variant byReference(static_cast<VARIANT*>(&variable));
    for (const Variant* given : {&one.array, const_cast<const Variant*>(&byReference)}) {
      const Outcome loaded = invoke(data, "OpenDatabaseByArray", {*given});
      EXPECT_EQ(loaded.description, one.fault) << one.what << ": " << loaded;
      if (*one.fault != '\0') continue;
      const auto set = invoke(data, "getRecordset", {}).object<_RecordSet>();
      EXPECT_EQ(invoke(set, "getValue", {"Volume", 1}).result.dblVal, one.first) << one.what;
    }
  }
}

TEST_F(LateBinding, ReportsWhatItCannotReadInsideTheLoader) {
  const auto inMemory = [](int type) {
    VARIANT made{};
    made.vt = static_cast<VARTYPE>(type);
    return made;
  };
  struct Case {
    const char* what;
    VARIANT value;
    const Fault& fault;
  };
  // Of a type alone, with nothing behind it: an error value of 0, a record without a description, null references.
  const Case cases[] = {
      {"an error value", inMemory(VT_ERROR), faults::TypeMismatch},
      {"a record", inMemory(VT_RECORD), faults::TypeMismatch},
      {"an unknown type", inMemory(VT_FILETIME), faults::TypeMismatch},
      {"a number that is nowhere", inMemory(VT_BYREF | VT_R8), faults::InvalidCall},
      {"a variable that is nowhere", inMemory(VT_BYREF | VT_VARIANT), faults::InvalidCall},
      {"an array that is nowhere", inMemory(VT_BYREF | VT_ARRAY | VT_R8), faults::InvalidCall},
  };
  for (const Case& one : cases) {
    VARIANT value = one.value;
    SAFEARRAY elements{1, FADF_VARIANT | FADF_STATIC | FADF_FIXEDSIZE, sizeof value, 0, &value, {{1, 1}}};
    SAFEARRAY* place = &elements;
    Variant array;
    array.vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
    array.pparray = &place;
    Variant whole(&value);
    // References to references are another thing.
    if ((value.vt & VT_BYREF) != 0) static_cast<VARIANT&>(whole) = value;
    for (const Variant& given : {whole, array}) {
      EXPECT_EQ(invoke(data, "OpenDatabaseByArray", {Variant(std::vector<double>{1, 2})}).code, S_OK);
      const Outcome loaded = invoke(data, "OpenDatabaseByArray", {given});
      EXPECT_TRUE(loaded.is(Database::loadFault(one.fault.description))) << one.what << ": " << loaded;
      // The series before is gone.
      EXPECT_EQ(invoke(invoke(data, "getRecordset", {}).object<_RecordSet>(), "getFieldCount", {}).result.iVal, 0);
    }
  }
}

TEST_F(LateBinding, RefusesArraysThatAreNotWhatTheySay) {
  short numbers[5] = {};
  SAFEARRAY array{1, 0, sizeof(double), 0, nullptr, {{5, 1}}};
  SAFEARRAY* place = &array;
  Variant variable;
  variable.vt = VT_BYREF | VT_ARRAY | VT_R8;
  variable.pparray = &place;
  EXPECT_EQ(invoke(data, "OpenDatabaseByArray", {variable}).description, "Subscript out of range");
  array.pvData = numbers;
  array.cbElements = sizeof(short);
  EXPECT_EQ(invoke(data, "OpenDatabaseByArray", {variable}).description, "Type mismatch");
  array.rgsabound[0].lLbound = std::numeric_limits<LONG>::max() - 2;
  variable.vt = VT_BYREF | VT_ARRAY | VT_I2;
  EXPECT_EQ(invoke(data, "OpenDatabaseByArray", {variable}).description, "Overflow");

  DISPPARAMS none{nullptr, nullptr, 3, 0};
  EXPECT_EQ(average->Invoke(1, IID_NULL, 1033, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), E_INVALIDARG);

  // As a client in C may call: with no identifier for what has one only.
  using Ask = HRESULT(STDMETHODCALLTYPE*)(void* self, const IID*, void**);
  using Find = HRESULT(STDMETHODCALLTYPE*)(void* self, const IID*, wchar_t**, UINT, LCID, DISPID*);
  void** const entries = *reinterpret_cast<void***>(average.get());
  wchar_t method[] = L"VIDYA";
  wchar_t* names = method;
  DISPID id = DISPID_UNKNOWN;
  void* nothing = nullptr;
  EXPECT_EQ(reinterpret_cast<Ask>(entries[0])(average.get(), nullptr, &nothing), E_INVALIDARG);
  EXPECT_EQ(reinterpret_cast<Find>(entries[5])(average.get(), nullptr, &names, 1, 1033, &id), S_OK);
}

TEST_F(LateBinding, KeepsTextsAsTheyAre) {
  const wchar_t units[] = {L'a', 0, 0xD83D, 0xDE00, 0xD83D, L'z', 0xDE00, 0x20AC};
  Variant odd("");
  SysFreeString(odd.bstrVal);
  odd.bstrVal = SysAllocStringLen(units, 8);
  ASSERT_EQ(invoke(field, "setStrValue", {1, odd}).code, S_OK);
  const Outcome back = invoke(field, "getStrValue", {1});
  EXPECT_EQ(std::wstring(back.result.bstrVal, SysStringLen(back.result.bstrVal)), std::wstring(units, 8));
  for (const UINT length : {8u, 1000000u}) {
    std::wstring name(length, L'\u20AC');
    name.replace(0, 8, units, 8);
    SysReAllocStringLen(&odd.bstrVal, name.data(), length);
    ASSERT_EQ(invoke(field, "setName", {odd}).code, S_OK);
    Text early;
    ASSERT_EQ(field->getName(&early), S_OK);
    const Outcome late = invoke(field, "getName", {});
    for (const BSTR got : {*&early, late.result.bstrVal}) {
      EXPECT_TRUE(std::wstring(got, SysStringLen(got)) == name) << length << " characters";
    }
  }
  const Outcome all = invoke(field, "getStringArray", {});
  ASSERT_EQ(all.result.vt, VT_ARRAY | VT_BSTR);
  EXPECT_EQ(all.result.parray->rgsabound[0].lLbound, 1);
  EXPECT_EQ(all.result.parray->rgsabound[0].cElements, 5u);
  invoke(field, "destroy", {});
  EXPECT_EQ(invoke(field, "getDoubleArray", {}).result.parray, nullptr);
}

}  // namespace
}  // namespace orvex::test
