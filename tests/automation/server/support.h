#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "orvex/automation/module.h"
#include "orvex/automation/platform.h"
#include "orvex/automation/texts.h"
#include "orvex/data/error.h"

/// What a host of the automation server has: the loaded DLL, references, VARIANTs, late calls and error objects.
namespace orvex::test {

template <class I>
class Ref {
 public:
  Ref() = default;
  Ref(const Ref& other) : pointer_(other.pointer_) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  Ref(Ref&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Ref& operator=(Ref other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~Ref() {
    if (pointer_ != nullptr) pointer_->Release();
  }

  I* operator->() const { return pointer_; }
  I* get() const { return pointer_; }
  /// For a function that hands out a reference.
  I** put() {
    *this = Ref();
    return &pointer_;
  }
  /// For an argument by reference.
  I** byRef() { return &pointer_; }
  template <class Other>
  Ref<Other> as() const {
    Ref<Other> other;
    if (pointer_ != nullptr) pointer_->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.put()));
    return other;
  }

 private:
  I* pointer_ = nullptr;
};

class Text {
 public:
  Text() = default;
  explicit Text(const std::string& text) : text_(automation::newText(text)) {}
  ~Text() { SysFreeString(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  BSTR* operator&() { return &text_; }
  std::string get() const { return automation::textOf(text_); }

 private:
  BSTR text_ = nullptr;
};

struct LeftOut {};

/// A VARIANT that clears itself.
class Variant : public VARIANT {
  struct Kind {
    int type;
  };

 public:
  Variant() : VARIANT{} {}
  Variant(int value) : Variant(Kind{VT_I4}) { lVal = value; }
  Variant(short value) : Variant(Kind{VT_I2}) { iVal = value; }
  Variant(double value) : Variant(Kind{VT_R8}) { dblVal = value; }
  Variant(bool value) : Variant(Kind{VT_BOOL}) { boolVal = value ? VARIANT_TRUE : VARIANT_FALSE; }
  Variant(const char* value) : Variant(Kind{VT_BSTR}) { bstrVal = automation::newText(value); }
  Variant(LeftOut) : Variant(Kind{VT_ERROR}) { scode = DISP_E_PARAMNOTFOUND; }
  Variant(IDispatch* object) : Variant(Kind{VT_DISPATCH}) {
    pdispVal = object;
    if (object != nullptr) object->AddRef();
  }
  template <class I>
  Variant(const Ref<I>& object) : Variant(static_cast<IDispatch*>(object.get())) {}
  Variant(VARIANT* variable) : Variant(Kind{VT_BYREF | VT_VARIANT}) { pvarVal = variable; }
  Variant(BSTR* variable) : Variant(Kind{VT_BYREF | VT_BSTR}) { pbstrVal = variable; }
  /// Takes the array over.
  Variant(VARTYPE elements, SAFEARRAY* array) : Variant(Kind{VT_ARRAY | elements}) { parray = array; }
  static Variant null() { return Variant(Kind{VT_NULL}); }

  Variant(const Variant& other) : Variant() { VariantCopy(this, const_cast<Variant*>(&other)); }
  Variant& operator=(const Variant& other) {
    VariantCopy(this, const_cast<Variant*>(&other));
    return *this;
  }
  ~Variant() { VariantClear(this); }

  std::string text() const { return vt == VT_BSTR ? automation::textOf(bstrVal) : "no text"; }

 private:
  explicit Variant(Kind kind) : VARIANT{} { vt = static_cast<VARTYPE>(kind.type); }
};

/// What came of a call.
struct Outcome {
  HRESULT code = S_OK;
  int number = 0;  // of the library's error
  std::string source;
  std::string description;
  Variant result;

  template <class I>
  Ref<I> object() const {
    Ref<IDispatch> any;
    if (result.vt == VT_DISPATCH && result.pdispVal != nullptr) {
      result.pdispVal->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(any.put()));
    }
    return any.as<I>();
  }
  bool is(const Fault& fault) const {
    return number == fault.number && source == fault.source && description == fault.description;
  }
};

inline std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << std::hex << static_cast<unsigned long>(outcome.code) << std::dec << ": " << outcome.number << " "
             << outcome.source << " \"" << outcome.description << "\"";
}

inline std::wstring wide(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

inline DISPID idOf(IDispatch* object, std::string_view name) {
  std::wstring text = wide(name);
  wchar_t* names = text.data();
  DISPID id = DISPID_UNKNOWN;
  object->GetIDsOfNames(IID_NULL, &names, 1, 1033, &id);
  return id;
}

/// A late call; `named` are places of arguments by name, which stand after those by place.
inline Outcome invoke(IDispatch* object, DISPID id, std::vector<Variant> arguments, WORD flags = DISPATCH_METHOD,
                      std::vector<DISPID> named = {}) {
  std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
  std::vector<DISPID> ids(named.rbegin(), named.rend());
  DISPPARAMS parameters{reversed.data(), ids.data(), static_cast<UINT>(reversed.size()), static_cast<UINT>(ids.size())};
  EXCEPINFO exception{};
  Outcome outcome;
  outcome.code = object->Invoke(id, IID_NULL, 1033, flags, &parameters, &outcome.result, &exception, nullptr);
  if (outcome.code == DISP_E_EXCEPTION) {
    outcome.number = exception.scode & 0xFFFF;
    outcome.source = automation::textOf(exception.bstrSource);
    outcome.description = automation::textOf(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
  }
  return outcome;
}

template <class I>
Outcome invoke(const Ref<I>& object, std::string_view name, std::vector<Variant> arguments) {
  return invoke(object.get(), idOf(object.get(), name), std::move(arguments));
}

/// What an early call told beside its HRESULT.
inline Outcome early(HRESULT code) {
  Outcome outcome;
  outcome.code = code;
  if (SUCCEEDED(code)) return outcome;
  outcome.number = code & 0xFFFF;
  Ref<IErrorInfo> error;
  if (GetErrorInfo(0, error.put()) != S_OK) return outcome;
  Text source;
  Text description;
  error->GetSource(&source);
  error->GetDescription(&description);
  outcome.source = source.get();
  outcome.description = description.get();
  return outcome;
}

/// Orvex.dll, which stands beside the program.
class Server {
 public:
  static Server& get() {
    static Server server;
    return server;
  }

  template <class I = IDispatch>
  Ref<I> create(const GUID& id) const {
    Ref<IClassFactory> factory;
    Ref<I> object;
    if (SUCCEEDED(classObject_(id, IID_IClassFactory, reinterpret_cast<void**>(factory.put())))) {
      factory->CreateInstance(nullptr, __uuidof(I), reinterpret_cast<void**>(object.put()));
    }
    return object;
  }
  template <class I = IDispatch>
  Ref<I> create(const catalogue::Class& described) const {
    return create<I>(automation::guidOf(described.classId));
  }
  bool canUnload() const { return canUnload_() == S_OK; }
  Ref<IClassFactory> factory(const GUID& id) const {
    Ref<IClassFactory> factory;
    classObject_(id, IID_IClassFactory, reinterpret_cast<void**>(factory.put()));
    return factory;
  }
  Ref<ITypeLib> typeLibrary() const {
    Ref<ITypeLib> library;
    LoadTypeLibEx(L"Orvex.dll", REGKIND_NONE, library.put());
    return library;
  }

 private:
  Server() {
    CoInitialize(nullptr);
    const HMODULE module = LoadLibraryW(L"Orvex.dll");
    classObject_ =
        reinterpret_cast<decltype(classObject_)>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    canUnload_ =
        reinterpret_cast<decltype(canUnload_)>(reinterpret_cast<void*>(GetProcAddress(module, "DllCanUnloadNow")));
  }

  HRESULT(STDMETHODCALLTYPE* classObject_)(const CLSID&, const IID&, void**) = nullptr;
  HRESULT(STDMETHODCALLTYPE* canUnload_)() = nullptr;
};

}  // namespace orvex::test
