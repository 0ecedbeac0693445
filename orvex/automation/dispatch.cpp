#include "orvex/automation/dispatch.h"

#include <algorithm>
#include <array>
#include <string>

#include "orvex/automation/errors.h"
#include "orvex/automation/variants.h"
#include "orvex/data/text.h"

namespace orvex::inline ORVEX_COUNTS::automation {

namespace {

using catalogue::Argument;
using catalogue::Class;
using catalogue::Kind;
using catalogue::Method;
using catalogue::Missing;
using catalogue::Type;
using catalogue::Value;

std::string nameOf(LPCOLESTR name) {
  return utf8FromUtf16(std::u16string(name, name + std::char_traits<OLECHAR>::length(name)));
}

DISPID argumentId(const Class& owner, std::string_view method, const std::string& name) {
  for (const Method* candidate : owner.methods) {
    if (candidate->name != method) continue;
    for (std::size_t i = 0; i < candidate->arguments.size(); ++i) {
      if (equalNames(candidate->arguments[i].name, name)) return static_cast<DISPID>(i);
    }
  }
  return DISPID_UNKNOWN;
}

/// The method that a call means: of a property's parts the one for these flags.
const Method* findMethod(const Class& owner, DISPID id, WORD flags) {
  if (id < 1 || static_cast<std::size_t>(id) > owner.methods.size()) return nullptr;
  const auto serves = [&](Kind kind) {
    switch (kind) {
      case Kind::PropertyPut:
        return (flags & DISPATCH_PROPERTYPUT) != 0;
      case Kind::PropertyPutReference:
        // Some hosts set objects as they set values.
        return (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
      default:
        // Visual Basic cannot tell a method without arguments from a property.
        return (flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) != 0;
    }
  };
  const Method& first = *owner.methods[static_cast<std::size_t>(id) - 1];
  if (catalogue::dispatchId(owner, first) != id) return nullptr;
  for (const Method* method : owner.methods) {
    if (method->name == first.name && serves(method->kind)) return method;
  }
  return nullptr;
}

/// The host's arguments in the method's order; null where there is none.
struct Placed {
  std::array<const VARIANT*, decltype(Method::arguments)::capacity> variants{};
};

HRESULT place(const Method& method, const DISPPARAMS& given, Placed& placed, UINT& atFault) {
  const std::size_t count = method.arguments.size();
  if (given.cArgs > count || given.cNamedArgs > given.cArgs) return DISP_E_BADPARAMCOUNT;
  for (UINT i = 0; i < given.cArgs; ++i) {
    // The last argument comes first, and before all of them those by name.
    std::size_t at = given.cArgs - 1 - i;
    if (i < given.cNamedArgs) {
      const DISPID name = given.rgdispidNamedArgs[i];
      at = name == DISPID_PROPERTYPUT ? count - 1 : static_cast<std::size_t>(name);
    }
    atFault = i;
    if (at >= count || placed.variants[at] != nullptr) return DISP_E_PARAMNOTFOUND;
    placed.variants[at] = &given.rgvarg[i];
  }
  return S_OK;
}

/// A call under way.
class Call {
 public:
  Call(const Method& method, const Placed& placed) : method_(method), placed_(placed) {}

  HRESULT readArguments() {
    for (std::size_t i = 0; i < count(); ++i) {
      const Argument& argument = method_.arguments[i];
      const VARIANT* given = placed_.variants[i];
      if (given != nullptr) values_[i] = valueOf(*given, argument.type);
      if (!std::holds_alternative<Missing>(values_[i])) {
        if (argument.written) variables_[i].given = given;
      } else if (!argument.optional) {
        return given != nullptr ? DISP_E_PARAMNOTOPTIONAL : DISP_E_BADPARAMCOUNT;
      }
    }
    catalogue::convertArguments(method_, values());
    for (std::size_t i = 0; i < count(); ++i) {
      if (variables_[i].given != nullptr) variables_[i].before = values_[i];
    }
    return S_OK;
  }

  Value run(ServerObject& object) {
    try {
      Value result = method_.invoke(object.object().get(), values());
      writeBackChanges();
      return result;
    } catch (...) {
      writeBackChanges();
      throw;
    }
  }

 private:
  static constexpr std::size_t most = decltype(Method::arguments)::capacity;

  /// What an argument that the method may write back was given as, if it was.
  struct Variable {
    const VARIANT* given = nullptr;
    Value before;
  };

  std::size_t count() const { return method_.arguments.size(); }
  std::span<Value> values() { return std::span(values_).first(count()); }

  void writeBackChanges() {
    for (std::size_t i = 0; i < count(); ++i) {
      const Variable& variable = variables_[i];
      if (variable.given != nullptr && differ(variable.before, values_[i])) writeBack(*variable.given, values_[i]);
    }
  }

  static bool differ(const Value& before, const Value& after) {
    if (const auto* text = std::get_if<std::string>(&before)) return *text != std::get<std::string>(after);
    const auto number = [](const Value& value) { return std::get<double>(catalogue::coerce(value, Type::Double)); };
    return number(before) != number(after);
  }

  const Method& method_;
  const Placed& placed_;
  std::array<Value, most> values_{};
  std::array<Variable, most> variables_{};
};

}  // namespace

HRESULT findNames(const Class& owner, std::span<const LPOLESTR> names, std::span<DISPID> ids) noexcept {
  std::fill(ids.begin(), ids.end(), DISPID_UNKNOWN);
  try {
    const std::string name = nameOf(names[0]);
    const Method* method = nullptr;
    for (const Method* candidate : owner.methods) {
      if (!equalNames(candidate->name, name)) continue;
      method = candidate;
      break;
    }
    if (method == nullptr) return DISP_E_UNKNOWNNAME;
    ids[0] = catalogue::dispatchId(owner, *method);
    for (std::size_t i = 1; i < names.size(); ++i) ids[i] = argumentId(owner, method->name, nameOf(names[i]));
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  return std::find(ids.begin(), ids.end(), DISPID_UNKNOWN) == ids.end() ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT invokeLate(ServerObject& object, DISPID id, WORD flags, const DISPPARAMS& parameters, VARIANT* result,
                   EXCEPINFO* exception, UINT* argumentAtFault) noexcept {
  if (result != nullptr) VariantInit(result);
  const Method* method = findMethod(object.served().description, id, flags);
  if (method == nullptr) return DISP_E_MEMBERNOTFOUND;
  Placed placed;
  UINT atFault = 0;
  HRESULT outcome = place(*method, parameters, placed, atFault);
  if (FAILED(outcome)) {
    if (argumentAtFault != nullptr) *argumentAtFault = atFault;
    return outcome;
  }
  const HRESULT called = guarded(exception, [&] {
    Call call(*method, placed);
    outcome = call.readArguments();
    if (FAILED(outcome)) return;
    const Value value = call.run(object);
    if (result != nullptr) *result = variantOf(value);
  });
  return FAILED(called) ? called : outcome;
}

}  // namespace orvex::inline ORVEX_COUNTS::automation
