#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <deque>
#include <functional>
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
namespace orvex::inline ORVEX_COUNTS::test {

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
  Variant(const char* value) : Variant(std::string(value)) {}
  Variant(const std::string& value) : Variant(Kind{VT_BSTR}) { bstrVal = automation::newText(value); }
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
  explicit Variant(const std::vector<double>& values)
      : Variant(VT_R8, SafeArrayCreateVector(VT_R8, 1, static_cast<ULONG>(values.size()))) {
    std::memcpy(parray->pvData, values.data(), values.size() * sizeof(double));
  }
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

/// How a value of that type lies in memory.
inline VARTYPE typeInMemory(catalogue::Type type) {
  using catalogue::Type;
  switch (type) {
    case Type::Boolean:
      return VT_BOOL;
    case Type::Integer:
      return VT_I2;
    case Type::Long:
      return VT_I4;
    case Type::Double:
      return VT_R8;
    case Type::String:
      return VT_BSTR;
    case Type::Field:
    case Type::Note:
    case Type::RecordSet:
    case Type::Database:
      return VT_DISPATCH;
    case Type::Object:
      return VT_UNKNOWN;
    default:
      return VT_VARIANT;
  }
}

/// An early call of a class's method: through the entry of the virtual table where the method's place in the
/// description says that it is. `isNull(variable)` tells which arguments, and whether the result, are given by a null
/// pointer.
template <class IsNull>
Outcome callEarly(IDispatch* object, const catalogue::Class& owner, const catalogue::Method& method,
                  std::vector<Variant>& variables, IsNull isNull) {
  std::vector<VARIANT> passed;
  const auto passAddress = [&](Variant& variable, catalogue::Type type) {
    VARIANT address{};
    address.vt = VT_BYREF | VT_UI1;
    if (!isNull(variable)) {
      address.byref = typeInMemory(type) == VT_VARIANT ? static_cast<void*>(&variable) : &variable.bVal;
    }
    passed.push_back(address);
  };
  for (std::size_t i = 0; i < variables.size(); ++i) {
    if (method.arguments[i].byValue) {
      passed.push_back(variables[i]);
    } else {
      passAddress(variables[i], method.arguments[i].type);
    }
  }
  Variant result;
  if (method.result != catalogue::Type::Nothing) passAddress(result, method.result);

  std::vector<VARTYPE> types;
  std::vector<VARIANT*> places;
  for (VARIANT& one : passed) {
    types.push_back(one.vt);
    places.push_back(&one);
  }
  constexpr std::size_t inherited = 7;
  const auto place = std::find(owner.methods.begin(), owner.methods.end(), &method) - owner.methods.begin();
  VARIANT code{};
  const HRESULT called = DispCallFunc(object, (inherited + static_cast<std::size_t>(place)) * sizeof(void*), CC_STDCALL,
                                      VT_I4, static_cast<UINT>(passed.size()), types.data(), places.data(), &code);
  Outcome outcome = early(FAILED(called) ? called : code.lVal);
  const VARTYPE type = typeInMemory(method.result);
  if (method.result != catalogue::Type::Nothing && type != VT_VARIANT) result.vt = type;
  outcome.result = result;
  return outcome;
}

/// An object of another server: it knows nothing but IDispatch.
class Foreign : public IDispatch {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    *result = id == IID_IUnknown || id == IID_IDispatch ? this : nullptr;
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }

  ULONG references = 1;
};

/// One with a default value, as the cell of a spreadsheet has.
class SheetCell final : public Foreign {
 public:
  explicit SheetCell(Variant content) : value(std::move(content)) {}

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (id != DISPID_VALUE || (flags & DISPATCH_PROPERTYGET) == 0 || parameters->cArgs != 0) return E_NOTIMPL;
    return VariantCopy(result, &value);
  }

  Variant value;
};

/// A window whose messages run code of the host in the middle of a call.
class EventWindow {
 public:
  EventWindow() {
    WNDCLASSW description{};
    description.lpfnWndProc = &EventWindow::handle;
    description.lpszClassName = L"OrvexTest";
    RegisterClassW(&description);
    window_ = CreateWindowW(L"OrvexTest", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  ~EventWindow() { DestroyWindow(window_); }
  EventWindow(const EventWindow&) = delete;
  EventWindow& operator=(const EventWindow&) = delete;

  void post(std::function<void()> event) {
    events_.push_back(std::move(event));
    PostMessageW(window_, WM_APP, 0, 0);
  }

  /// Runs the event at a timer from now on.
  void every(UINT milliseconds, std::function<void()> event) {
    timed_ = std::move(event);
    SetTimer(window_, 1, milliseconds, nullptr);
  }

  int handled = 0;

 private:
  static LRESULT CALLBACK handle(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message != WM_APP && message != WM_TIMER) return DefWindowProcW(window, message, first, second);
    auto& self = *reinterpret_cast<EventWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    ++self.handled;
    if (message == WM_TIMER) {
      self.timed_();
      return 0;
    }
    const auto event = std::move(self.events_.front());
    self.events_.pop_front();
    event();
    return 0;
  }

  HWND window_ = nullptr;
  std::deque<std::function<void()>> events_;
  std::function<void()> timed_;
};

/// What the heaps of the process hold.
struct HeapUse {
  std::size_t blocks = 0;
  std::size_t bytes = 0;

  static HeapUse now() {
    HeapUse use;
    HANDLE heaps[64];
    const DWORD heapCount = GetProcessHeaps(64, heaps);
    for (DWORD i = 0; i < heapCount; ++i) {
      PROCESS_HEAP_ENTRY entry{};
      while (HeapWalk(heaps[i], &entry) != FALSE) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) == 0) continue;
        ++use.blocks;
        use.bytes += entry.cbData;
      }
    }
    return use;
  }
};

/// Orvex.dll, which stands beside the program.
class Server {
 public:
  static Server& get() {
    static Server server;
    return server;
  }

  Ref<IClassFactory> factory(const GUID& id) const {
    Ref<IClassFactory> factory;
    classObject_(id, IID_IClassFactory, reinterpret_cast<void**>(factory.put()));
    return factory;
  }
  template <class I = IDispatch>
  Ref<I> create(const catalogue::Class& described) const {
    Ref<I> object;
    const auto maker = factory(automation::guidOf(described.classId));
    maker->CreateInstance(nullptr, __uuidof(I), reinterpret_cast<void**>(object.put()));
    return object;
  }
  bool canUnload() const { return canUnload_() == S_OK; }
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

}  // namespace orvex::inline ORVEX_COUNTS::test
