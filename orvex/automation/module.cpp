#include "orvex/automation/module.h"

#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "orvex/automation/event_pump.h"
#include "orvex/automation/registration.h"
#include "orvex/automation/server_classes.h"

namespace orvex::inline ORVEX_COUNTS::automation {

namespace {

std::atomic<long> uses = 0;
HINSTANCE instance = nullptr;

/// The type library that the DLL carries. Reading it takes longer than most calls, so it is kept from the first
/// question for it until nothing of the DLL is in use.
class KeptTypeLibrary {
 public:
  HRESULT typeInfo(const GUID& id, ITypeInfo** result) noexcept {
    AcquireSRWLockExclusive(&lock_);
    HRESULT outcome = library_ != nullptr ? S_OK : loadTypeLibrary(&library_);
    if (SUCCEEDED(outcome)) outcome = library_->GetTypeInfoOfGuid(id, result);
    ReleaseSRWLockExclusive(&lock_);
    return outcome;
  }
  void release() noexcept {
    AcquireSRWLockExclusive(&lock_);
    // Another thread may have begun to use the DLL again.
    ITypeLib* unused = moduleInUse() ? nullptr : std::exchange(library_, nullptr);
    ReleaseSRWLockExclusive(&lock_);
    if (unused != nullptr) unused->Release();
  }

 private:
  SRWLOCK lock_ = SRWLOCK_INIT;
  ITypeLib* library_ = nullptr;
};
KeptTypeLibrary keptTypeLibrary;

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
  if (--uses == 0) keptTypeLibrary.release();
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

HRESULT typeInfo(const GUID& id, ITypeInfo** result) noexcept {
  *result = nullptr;
  return keptTypeLibrary.typeInfo(id, result);
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
  const bool forMachine = commandLine == nullptr || *commandLine == L'\0';
  if (!forMachine && lstrcmpiW(commandLine, L"user") != 0) return E_INVALIDARG;
  const RegisteredFor whom = forMachine ? RegisteredFor::Machine : RegisteredFor::User;
  return install != FALSE ? registerServer(whom) : unregisterServer(whom);
}
}
