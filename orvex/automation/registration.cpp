#include "orvex/automation/registration.h"

#include <olectl.h>

#include <array>
#include <string>
#include <string_view>

#include "orvex/automation/interface_definition.h"
#include "orvex/automation/module.h"
#include "orvex/automation/server_classes.h"

// The headers of some compilers lack them.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID id, WORD majorVersion, WORD minorVersion, LCID locale,
                                                   SYSKIND system);

namespace orvex::inline ORVEX_COUNTS::automation {

namespace {

/// Makes HKEY_CLASSES_ROOT that of the current user alone, also for a platform that registers type libraries there.
class ClassesOf {
 public:
  explicit ClassesOf(RegisteredFor whom) noexcept {
    if (whom == RegisteredFor::Machine) return;
    HKEY classes = nullptr;
    outcome_ = HRESULT_FROM_WIN32(static_cast<unsigned long>(RegCreateKeyExW(
        HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &classes, nullptr)));
    if (FAILED(outcome_)) return;
    outcome_ = HRESULT_FROM_WIN32(static_cast<unsigned long>(RegOverridePredefKey(HKEY_CLASSES_ROOT, classes)));
    RegCloseKey(classes);
    overridden_ = SUCCEEDED(outcome_);
  }
  ~ClassesOf() {
    if (overridden_) RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
  }
  ClassesOf(const ClassesOf&) = delete;
  ClassesOf& operator=(const ClassesOf&) = delete;

  HRESULT outcome() const noexcept { return outcome_; }

 private:
  HRESULT outcome_ = S_OK;
  bool overridden_ = false;
};

std::wstring wide(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

std::wstring guidText(const GUID& id) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

struct ClassKeys {
  explicit ClassKeys(const catalogue::Class& described)
      : id(guidText(guidOf(described.classId))),
        classKey(L"CLSID\\" + id),
        name(wide(programId(described))),
        versionedName(wide(versionedProgramId(described))) {}

  std::wstring id, classKey, name, versionedName;
};

/// Writes values until one cannot be written.
class Writer {
 public:
  void operator()(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    if (outcome_ != ERROR_SUCCESS) return;
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    outcome_ = RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name, REG_SZ, value.c_str(), bytes);
  }
  HRESULT outcome() const { return outcome_ == ERROR_SUCCESS ? S_OK : SELFREG_E_CLASS; }

 private:
  LSTATUS outcome_ = ERROR_SUCCESS;
};

HRESULT registerClasses() {
  const std::wstring path = modulePath();
  const std::wstring library = guidText(guidOf(LibraryId));
  const std::wstring version = std::to_wstring(LibraryMajorVersion) + L"." + std::to_wstring(LibraryMinorVersion);
  Writer write;
  for (const ServerClass* served : serverClasses()) {
    const ClassKeys keys(served->description);
    const std::wstring help = wide(served->description.help);
    write(keys.classKey, nullptr, help);
    write(keys.classKey + L"\\InprocServer32", nullptr, path);
    write(keys.classKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    write(keys.classKey + L"\\ProgID", nullptr, keys.versionedName);
    write(keys.classKey + L"\\VersionIndependentProgID", nullptr, keys.name);
    write(keys.classKey + L"\\TypeLib", nullptr, library);
    write(keys.classKey + L"\\Version", nullptr, version);
    write(keys.classKey + L"\\Programmable", nullptr, L"");
    write(keys.versionedName, nullptr, help);
    write(keys.versionedName + L"\\CLSID", nullptr, keys.id);
    write(keys.name, nullptr, help);
    write(keys.name + L"\\CLSID", nullptr, keys.id);
    write(keys.name + L"\\CurVer", nullptr, keys.versionedName);
  }
  return write.outcome();
}

HRESULT removeClasses() {
  HRESULT outcome = S_OK;
  for (const ServerClass* served : serverClasses()) {
    const ClassKeys keys(served->description);
    for (const std::wstring& key : {keys.classKey, keys.versionedName, keys.name}) {
      const LSTATUS removed = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
      if (removed != ERROR_SUCCESS && removed != ERROR_FILE_NOT_FOUND) outcome = SELFREG_E_CLASS;
    }
  }
  return outcome;
}

HRESULT registerTypeLibrary(RegisteredFor whom) {
  const auto enter = whom == RegisteredFor::User ? &RegisterTypeLibForUser : &RegisterTypeLib;
  ITypeLib* library = nullptr;
  HRESULT outcome = loadTypeLibrary(&library);
  if (SUCCEEDED(outcome)) {
    outcome = enter(library, modulePath().data(), nullptr);
    library->Release();
  }
  return SUCCEEDED(outcome) ? S_OK : SELFREG_E_TYPELIB;
}

HRESULT removeTypeLibrary(RegisteredFor whom) {
  const auto remove = whom == RegisteredFor::User ? &UnRegisterTypeLibForUser : &UnRegisterTypeLib;
  constexpr SYSKIND system = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
  const HRESULT outcome = remove(guidOf(LibraryId), LibraryMajorVersion, LibraryMinorVersion, LibraryLocale, system);
  return SUCCEEDED(outcome) || outcome == TYPE_E_REGISTRYACCESS ? S_OK : SELFREG_E_TYPELIB;
}

/// A user who never had a class of their own registered has no keys to hold them, so registering made these too.
void removeEmptyParents() {
  for (const wchar_t* parent : {L"CLSID", L"Interface", L"TypeLib"}) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, parent, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) continue;
    DWORD keys = 0;
    DWORD values = 0;
    const LSTATUS told = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                                          nullptr, nullptr, nullptr);
    RegCloseKey(key);
    if (told == ERROR_SUCCESS && keys == 0 && values == 0) RegDeleteKeyW(HKEY_CLASSES_ROOT, parent);
  }
}

template <class Work>
HRESULT withClassesOf(RegisteredFor whom, Work&& work) noexcept {
  const ClassesOf classes(whom);
  if (FAILED(classes.outcome())) return classes.outcome();
  try {
    return work();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace

HRESULT registerServer(RegisteredFor whom) noexcept {
  HRESULT outcome = withClassesOf(whom, [&] {
    const HRESULT classes = registerClasses();
    return SUCCEEDED(classes) ? registerTypeLibrary(whom) : classes;
  });
  if (FAILED(outcome)) unregisterServer(whom);
  return outcome;
}

HRESULT unregisterServer(RegisteredFor whom) noexcept {
  return withClassesOf(whom, [&] {
    const HRESULT library = removeTypeLibrary(whom);
    const HRESULT classes = removeClasses();
    removeEmptyParents();
    return FAILED(classes) ? classes : library;
  });
}

}  // namespace orvex::inline ORVEX_COUNTS::automation
