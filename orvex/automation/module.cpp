#include "orvex/automation/module.h"

#include <atomic>
#include <string>
#include <vector>

#include "orvex/automation/event_pump.h"
#include "orvex/automation/registration.h"
#include "orvex/automation/server_classes.h"

namespace orvex::inline ORVEX_COUNTS::automation {

namespace {

std::atomic<long> uses = 0;
HINSTANCE instance = nullptr;

/// Makes objects of one class. There is one for each as long as the DLL is loaded, so it counts as no object.
class Factory final : public IClassFactory {
 public:
  explicit Factory(const ServerClass& served) noexcept : served_(served) {}

  const ServerClass& served() const noexcept { return served_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
    if (result == nullptr) return E_POINTER;
    *result = id == IID_IUnknown || id == IID_IClassFactory ? this : nullptr;
    if (*result == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override {
    lockModule();
    return 2;
  }
  ULONG STDMETHODCALLTYPE Release() override {
    unlockModule();
    return 1;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** result) override {
    if (result == nullptr) return E_POINTER;
    *result = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    pumpEventsOfThisThread();
    try {
      ServerObject* object = served_.make();
      const HRESULT outcome = object->queryInterface(id, result);
      object->release();
      return outcome;
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    lock != FALSE ? lockModule() : unlockModule();
    return S_OK;
  }

 private:
  const ServerClass& served_;
};

std::vector<Factory>& factories() {
  static std::vector<Factory> all = [] {
    std::vector<Factory> made;
    for (const ServerClass* served : serverClasses()) made.emplace_back(*served);
    return made;
  }();
  return all;
}

}  // namespace

void lockModule() noexcept {
  ++uses;
}

void unlockModule() noexcept {
  --uses;
}

bool moduleInUse() noexcept {
  return uses != 0;
}

std::wstring modulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(instance, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(2 * path.size());
  }
}

HRESULT loadTypeLibrary(ITypeLib** result) noexcept {
  *result = nullptr;
  try {
    return LoadTypeLibEx(modulePath().c_str(), REGKIND_NONE, result);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT loadTypeInfo(const GUID& id, ITypeInfo** result) noexcept {
  *result = nullptr;
  ITypeLib* library = nullptr;
  HRESULT outcome = loadTypeLibrary(&library);
  if (FAILED(outcome)) return outcome;
  outcome = library->GetTypeInfoOfGuid(id, result);
  library->Release();
  return outcome;
}

}  // namespace orvex::inline ORVEX_COUNTS::automation

using namespace orvex::automation;

extern "C" {

BOOL WINAPI DllMain(HINSTANCE loaded, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) instance = loaded;
  return TRUE;
}

HRESULT STDMETHODCALLTYPE DllGetClassObject(const CLSID& id, const IID& interfaceId, void** result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  try {
    for (Factory& factory : factories()) {
      if (id == guidOf(factory.served().description.classId)) return factory.QueryInterface(interfaceId, result);
    }
  } catch (...) {
    return E_OUTOFMEMORY;
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

HRESULT STDMETHODCALLTYPE DllCanUnloadNow() {
  return moduleInUse() ? S_FALSE : S_OK;
}

HRESULT STDMETHODCALLTYPE DllRegisterServer() {
  return registerServer(RegisteredFor::Machine);
}

HRESULT STDMETHODCALLTYPE DllUnregisterServer() {
  return unregisterServer(RegisteredFor::Machine);
}

HRESULT STDMETHODCALLTYPE DllInstall(BOOL install, const wchar_t* commandLine) {
  const bool forUser = commandLine != nullptr && lstrcmpiW(commandLine, L"user") == 0;
  const RegisteredFor whom = forUser ? RegisteredFor::User : RegisteredFor::Machine;
  return install != FALSE ? registerServer(whom) : unregisterServer(whom);
}
}
