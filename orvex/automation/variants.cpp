#include "orvex/automation/variants.h"

#include <cstring>
#include <memory>
#include <new>
#include <tuple>
#include <utility>
#include <vector>

#include "orvex/automation/floating_point.h"
#include "orvex/automation/server_object.h"
#include "orvex/automation/texts.h"
#include "orvex/catalogue/catalogue.h"
#include "orvex/data/double_digits.h"
#include "orvex/data/number_text.h"

namespace orvex::inline ORVEX_COUNTS::automation {

namespace {

using catalogue::coerce;
using catalogue::Missing;
using catalogue::Type;
using catalogue::Value;

/// A VARIANT's content where it lies, in the VARIANT itself or behind its reference.
struct Content {
  VARTYPE type;
  void* place;

  template <class T>
  T as() const {
    T value;
    std::memcpy(&value, place, sizeof(T));
    return value;
  }
};

Content contentOf(const VARIANT& variant) {
  constexpr VARTYPE anyReference = VT_BYREF | VT_VARIANT;
  if ((V_VT(&variant) & VT_BYREF) == 0) {
    // A decimal number begins where the other kinds have their type.
    const void* place = V_VT(&variant) == VT_DECIMAL ? static_cast<const void*>(&variant) : &V_UI1(&variant);
    return {V_VT(&variant), const_cast<void*>(place)};
  }
  if (V_BYREF(&variant) == nullptr) raise(faults::InvalidCall);
  if (V_VT(&variant) == anyReference) {
    const VARIANT& inner = *V_VARIANTREF(&variant);
    if (V_VT(&inner) == anyReference) raise(faults::TypeMismatch);
    return contentOf(inner);
  }
  return {static_cast<VARTYPE>(V_VT(&variant) & ~VT_BYREF), V_BYREF(&variant)};
}

std::string dateText(DATE date) {
  BSTR text = nullptr;
  // One locale for all machines, so that the same date loads as the same text everywhere.
  constexpr LCID locale = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
  if (FAILED(VarBstrFromDate(date, locale, 0, &text))) raise(faults::TypeMismatch);
  const std::unique_ptr<OLECHAR, decltype(&SysFreeString)> owned(text, &SysFreeString);
  return textOf(text);
}

double decimalNumber(DECIMAL decimal) {
  double number = 0.0;
  if (FAILED(VarR8FromDec(&decimal, &number))) raise(faults::Overflow);
  return number;
}

Value scalarOf(const Content& content, Type wanted) {
  switch (content.type) {
    case VT_EMPTY:
      return Empty{};
    case VT_NULL:
      return Null{};
    case VT_BOOL:
      return content.as<VARIANT_BOOL>() != VARIANT_FALSE;
    case VT_I1:
      return Integer(content.as<signed char>());
    case VT_UI1:
      return Integer(content.as<unsigned char>());
    case VT_I2:
      return Integer(content.as<short>());
    case VT_UI2:
      return std::int32_t{content.as<unsigned short>()};
    case VT_I4:
    case VT_INT:
      return content.as<std::int32_t>();
    case VT_UI4:
    case VT_UINT:
      return static_cast<double>(content.as<std::uint32_t>());
    case VT_I8:
      return static_cast<double>(content.as<std::int64_t>());
    case VT_UI8:
      return static_cast<double>(content.as<std::uint64_t>());
    case VT_R4:
      if (wanted == Type::String) return shortestText(content.as<float>());
      return double{content.as<float>()};
    case VT_R8:
      return content.as<double>();
    case VT_CY:
      return static_cast<double>(content.as<CY>().int64) / 10000.0;
    case VT_DECIMAL:
      return decimalNumber(content.as<DECIMAL>());
    case VT_DATE:
      if (wanted == Type::String) return dateText(content.as<DATE>());
      return content.as<DATE>();
    case VT_BSTR:
      return textOf(content.as<BSTR>());
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return wanted == Type::Object ? keep(content.as<IUnknown*>()) : objectValue(content.as<IUnknown*>());
    case VT_ERROR:
      if (content.as<SCODE>() == DISP_E_PARAMNOTFOUND) return Missing{};
      break;
    default:
      break;
  }
  raise(faults::TypeMismatch);
}

bool isObject(const Content& content) {
  return (content.type == VT_DISPATCH || content.type == VT_UNKNOWN) && content.as<IUnknown*>() != nullptr;
}

/// A VARIANT of our own.
struct OwnedVariant {
  OwnedVariant() noexcept { VariantInit(&variant); }
  ~OwnedVariant() { VariantClear(&variant); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;

  VARIANT variant;
};

/// Asks an object for the property that stands for it where a value is wanted, as a spreadsheet's cell has one. It is
/// the host's code that answers.
void askForValue(IUnknown* any, VARIANT& value) {
  const catalogue::Object kept = keep(any);
  IDispatch* object = nullptr;
  if (FAILED(any->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&object)))) raise(faults::TypeMismatch);
  const HostFloatingPointScope scope;
  DISPPARAMS none{};
  const HRESULT outcome = object->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                                         &value, nullptr, nullptr);
  object->Release();
  if (FAILED(outcome)) raise(faults::TypeMismatch);
}

/// What `convert` makes of a VARIANT's content, or of that of the value of an object, which may be an object in turn.
template <class Convert>
auto withValueOf(const Content& content, Convert&& convert, int depth = 0) -> decltype(convert(content)) {
  constexpr int deepest = 8;
  if (!isObject(content)) return convert(content);
  if (depth == deepest) raise(faults::TypeMismatch);
  OwnedVariant value;
  askForValue(content.as<IUnknown*>(), value.variant);
  const Content inner = contentOf(value.variant);
  // An argument that is left out is no value.
  if (inner.type == VT_ERROR) raise(faults::TypeMismatch);
  return withValueOf(inner, convert, depth + 1);
}

Cell readCell(const Content& content) {
  switch (content.type) {
    case VT_EMPTY:
      return Empty{};
    case VT_NULL:
      return Null{};
    case VT_R4:
      return numberFromSingle(content.as<float>());
    case VT_BSTR:
    case VT_BOOL:
    case VT_DATE:
      return std::get<std::string>(coerce(scalarOf(content, Type::String), Type::String));
    default:
      return std::get<double>(coerce(scalarOf(content, Type::Double), Type::Double));
  }
}

/// An element of an array. One that cannot be read fails where it is used, which is inside a loader's trap.
Cell cellOf(VARTYPE type, void* place) {
  try {
    return withValueOf(type == VT_VARIANT ? contentOf(*static_cast<VARIANT*>(place)) : Content{type, place}, readCell);
  } catch (const Error& error) {
    return NoValue{error.fault()};
  }
}

/// Whether every value of the type is a number.
bool isNumeric(VARTYPE type) {
  constexpr VARTYPE numbers[] = {VT_I1,  VT_I2,  VT_I4,  VT_I8,   VT_UI1, VT_UI2,
                                 VT_UI4, VT_UI8, VT_INT, VT_UINT, VT_R4,  VT_CY};
  for (const VARTYPE number : numbers) {
    if (type == number) return true;
  }
  return false;
}

/// How many bytes a value of a type takes where a reference points or an array has its elements; 0 for what no argument
/// is made of.
std::size_t sizeOf(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return sizeof(void*);
    case VT_DECIMAL:
      return sizeof(DECIMAL);
    case VT_VARIANT:
      return sizeof(VARIANT);
    default:
      return 0;
  }
}

/// The elements of an array, locked in place.
class Elements {
 public:
  explicit Elements(SAFEARRAY* array) : array_(array) {
    if (FAILED(SafeArrayAccessData(array_, &first_))) raise(faults::TypeMismatch);
  }
  ~Elements() { SafeArrayUnaccessData(array_); }
  Elements(const Elements&) = delete;
  Elements& operator=(const Elements&) = delete;

  std::size_t count() const { return array_->rgsabound[0].cElements; }
  /// There is a description of the array and no memory for it yet.
  bool areMissing() const { return first_ == nullptr && count() > 0; }
  template <class T>
  T* as() const {
    return static_cast<T*>(first_);
  }
  void* at(std::size_t i) const { return static_cast<char*>(first_) + i * array_->cbElements; }

 private:
  SAFEARRAY* array_;
  void* first_ = nullptr;
};

VariantArray arrayOf(SAFEARRAY* array, VARTYPE type) {
  if (array == nullptr) return Array<double>();
  LONG bound = 0;
  if (SafeArrayGetDim(array) != 1) {
    SafeArrayGetUBound(array, 1, &bound);
    return VariantArray::ofSeveralDimensions(bound);
  }
  SafeArrayGetLBound(array, 1, &bound);
  // A VARIANT may name another type than its array has; the array's is the one that its elements have.
  VARTYPE own = VT_EMPTY;
  if (SUCCEEDED(SafeArrayGetVartype(array, &own))) type = own;
  const Elements elements(array);
  if (elements.areMissing()) return Array<double>();
  // What lies in the array is not what its type says, or is nothing that a value is made of, such as a record.
  if (array->cbElements != sizeOf(type)) return VariantArray();
  if (type == VT_R8) {
    const auto* numbers = elements.as<double>();
    return Array<double>(std::vector<double>(numbers, numbers + elements.count()), bound);
  }
  if (isNumeric(type)) {
    std::vector<double> numbers(elements.count());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      numbers[i] = std::get<double>(readCell({type, elements.at(i)}));
    }
    return Array<double>(std::move(numbers), bound);
  }
  std::vector<Cell> cells(elements.count());
  for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = cellOf(type, elements.at(i));
  return Array<Cell>(std::move(cells), bound);
}

struct Destroy {
  void operator()(SAFEARRAY* array) const noexcept { SafeArrayDestroy(array); }
};
using OwnedArray = std::unique_ptr<SAFEARRAY, Destroy>;

template <class T>
OwnedArray newArray(VARTYPE type, const Array<T>& source) {
  if (!source.exists()) return nullptr;
  // Not as a vector, which has a fixed size for its new owner too.
  SAFEARRAYBOUND bound{static_cast<ULONG>(source.elements().size()), source.lowerBound()};
  OwnedArray array(SafeArrayCreate(type, 1, &bound));
  if (array == nullptr) throw std::bad_alloc();
  return array;
}

/// Makes the VARIANT of each kind of value.
struct ToVariant {
  VARIANT result{};

  void operator()(Missing) {}
  void operator()(Empty) {}
  void operator()(Null) { V_VT(&result) = VT_NULL; }
  void operator()(bool value) {
    V_VT(&result) = VT_BOOL;
    V_BOOL(&result) = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  void operator()(Integer value) {
    V_VT(&result) = VT_I2;
    V_I2(&result) = static_cast<short>(value.value());
  }
  void operator()(std::int32_t value) {
    V_VT(&result) = VT_I4;
    V_I4(&result) = value;
  }
  void operator()(double value) {
    V_VT(&result) = VT_R8;
    V_R8(&result) = value;
  }
  void operator()(const std::string& value) {
    V_BSTR(&result) = newText(value);
    V_VT(&result) = VT_BSTR;
  }
  template <class C>
  void operator()(const std::shared_ptr<C>& value) {
    ServerObject* wrapper = wrap(value);
    V_VT(&result) = VT_DISPATCH;
    V_DISPATCH(&result) = wrapper == nullptr ? nullptr : wrapper->dispatch();
  }
  void operator()(const catalogue::Object& value) {
    auto* any = static_cast<IUnknown*>(value.get());
    V_VT(&result) = VT_DISPATCH;
    V_DISPATCH(&result) = nullptr;
    if (any == nullptr || SUCCEEDED(any->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&result.pdispVal)))) {
      return;
    }
    any->AddRef();
    V_VT(&result) = VT_UNKNOWN;
    V_UNKNOWN(&result) = any;
  }
  void operator()(const Array<double>& value) {
    OwnedArray array = newArray(VT_R8, value);
    if (array != nullptr && !value.elements().empty()) {
      std::memcpy(Elements(array.get()).as<double>(), value.elements().data(), value.elements().size_bytes());
    }
    take(VT_R8, std::move(array));
  }
  void operator()(const Array<std::string>& value) {
    OwnedArray array = newArray(VT_BSTR, value);
    if (array != nullptr) {
      const Elements texts(array.get());
      for (std::size_t i = 0; i < texts.count(); ++i) texts.as<BSTR>()[i] = newText(value.elements()[i]);
    }
    take(VT_BSTR, std::move(array));
  }
  void operator()(const VariantArray&) { raise(faults::Internal); }

 private:
  void take(VARTYPE type, OwnedArray array) {
    V_VT(&result) = static_cast<VARTYPE>(VT_ARRAY | type);
    V_ARRAY(&result) = array.release();
  }
};

void replace(VARIANT& target, VARIANT fresh) {
  VariantClear(&target);
  target = fresh;
}

}  // namespace

namespace {

bool isScalar(Type type) {
  return type == Type::Boolean || type == Type::Integer || type == Type::Long || type == Type::Double ||
         type == Type::String;
}

/// What cannot be read is an array that fails where it is used, which is inside a loader's trap.
Value arrayOf(const VARIANT& variant) {
  try {
    return withValueOf(contentOf(variant), [](const Content& content) -> Value {
      if ((content.type & VT_ARRAY) != 0) {
        return arrayOf(content.as<SAFEARRAY*>(), static_cast<VARTYPE>(content.type & ~VT_ARRAY));
      }
      if (content.type == VT_ERROR && content.as<SCODE>() == DISP_E_PARAMNOTFOUND) return Missing{};
      return VariantArray();
    });
  } catch (const Error& error) {
    return VariantArray(NoValue{error.fault()});
  }
}

}  // namespace

Value valueOf(const VARIANT& variant, Type wanted) {
  if (wanted == Type::VariantArray) return arrayOf(variant);
  const auto convert = [&](const Content& content) { return scalarOf(content, wanted); };
  const Content content = contentOf(variant);
  return isScalar(wanted) ? withValueOf(content, convert) : convert(content);
}

VARIANT variantOf(const Value& value) {
  ToVariant conversion;
  std::visit(conversion, value);
  return conversion.result;
}

void writeBack(const VARIANT& reference, const Value& value) {
  if ((V_VT(&reference) & VT_BYREF) == 0) return;
  if (V_VT(&reference) == (VT_BYREF | VT_VARIANT)) {
    VARIANT& target = *V_VARIANTREF(&reference);
    if ((V_VT(&target) & VT_BYREF) != 0) {
      writeBack(target, value);
    } else {
      replace(target, variantOf(value));
    }
    return;
  }
  const Content target = contentOf(reference);
  // As the library reads and writes numbers, and not as the user's settings do.
  VARIANT fresh = variantOf(coerce(value, target.type == VT_BSTR ? Type::String : Type::Double));
  if (FAILED(VariantChangeType(&fresh, &fresh, 0, target.type))) {
    VariantClear(&fresh);
    raise(faults::TypeMismatch);
  }
  if (target.type == VT_BSTR) {
    SysFreeString(target.as<BSTR>());
    std::memcpy(target.place, &V_BSTR(&fresh), sizeof(BSTR));
  } else {
    std::memcpy(target.place, contentOf(fresh).place, sizeOf(target.type));
  }
}

catalogue::Object keep(IUnknown* any) {
  if (any == nullptr) return {};
  any->AddRef();
  return {any, [](IUnknown* kept) { kept->Release(); }};
}

Value objectValue(IUnknown* any) {
  if (any == nullptr) return catalogue::Object();
  ServerObject* own = ownObject(any);
  Value value = own == nullptr ? keep(any) : catalogue::Object(own->object());
  if (own == nullptr) return value;
  const catalogue::Class* owner = &own->served().description;
  const auto take = [&]<class C>(std::type_identity<C>) {
    if (owner == &catalogue::classOf<C>) value = std::static_pointer_cast<C>(own->object());
  };
  take(std::type_identity<Field>());
  take(std::type_identity<Note>());
  take(std::type_identity<RecordSet>());
  take(std::type_identity<Database>());
  return value;
}

}  // namespace orvex::inline ORVEX_COUNTS::automation
