#include "orvex/automation/registration.h"

#include <olectl.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/automation/interface_definition.h"
#include "orvex/automation/module.h"
#include "orvex/automation/server_classes.h"

namespace orvex::inline ORVEX_COUNTS::automation {

namespace {

// 64-bit Windows has two views of the registry. Classes are registered in that of the process alone; names of programs
// and type libraries stand in both, and interfaces are to: any process may call through them.
constexpr bool is64Bit = sizeof(void*) == 8;
constexpr REGSAM ownView = is64Bit ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
constexpr REGSAM otherView = is64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
constexpr const wchar_t* ownPlatform = is64Bit ? L"win64" : L"win32";
constexpr const wchar_t* otherPlatform = is64Bit ? L"win32" : L"win64";

std::wstring wide(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

std::wstring guidText(const GUID& id) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

std::wstring versionText() {
  return std::to_wstring(LibraryMajorVersion) + L"." + std::to_wstring(LibraryMinorVersion);
}

/// The registered classes of the machine or of the user: their own hive, not the merged view of both, in which one
/// would write into the other's keys.
class Classes {
 public:
  explicit Classes(RegisteredFor whom) noexcept
      : hive_(whom == RegisteredFor::User ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE) {}

  LSTATUS open(const std::wstring& key, REGSAM access, HKEY* opened) const {
    return RegOpenKeyExW(hive_, path(key).c_str(), 0, access, opened);
  }
  LSTATUS create(const std::wstring& key, REGSAM access, HKEY* created) const {
    return RegCreateKeyExW(hive_, path(key).c_str(), 0, nullptr, 0, access, nullptr, created, nullptr);
  }
  bool has(const std::wstring& key, REGSAM view) const {
    HKEY opened = nullptr;
    if (open(key, KEY_QUERY_VALUE | view, &opened) != ERROR_SUCCESS) return false;
    RegCloseKey(opened);
    return true;
  }

  /// Removes a key with all that is below it. One that is not there is no error.
  LSTATUS remove(const std::wstring& key, REGSAM view = ownView) const {
    HKEY opened = nullptr;
    LSTATUS status = open(key, KEY_READ | KEY_WRITE | DELETE | view, &opened);
    if (status == ERROR_SUCCESS) {
      status = RegDeleteTreeW(opened, nullptr);
      RegCloseKey(opened);
    }
    if (status == ERROR_SUCCESS) status = RegDeleteKeyExW(hive_, path(key).c_str(), view, 0);
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
  }

  /// The same for a key with nothing below it and without values.
  void removeEmpty(const std::wstring& key, REGSAM view = ownView) const {
    HKEY opened = nullptr;
    if (open(key, KEY_QUERY_VALUE | view, &opened) != ERROR_SUCCESS) return;
    DWORD keys = 0;
    DWORD values = 0;
    const LSTATUS told = RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                                          nullptr, nullptr, nullptr);
    RegCloseKey(opened);
    if (told == ERROR_SUCCESS && keys == 0 && values == 0) RegDeleteKeyExW(hive_, path(key).c_str(), view, 0);
  }

 private:
  static std::wstring path(const std::wstring& key) { return L"Software\\Classes\\" + key; }

  HKEY hive_;
};

/// What one registration writes: until it is kept, everything is put back as it was when it ends.
class Writer {
 public:
  explicit Writer(const Classes& classes) noexcept : classes_(classes) {}
  ~Writer() {
    if (kept_) return;
    for (auto change = changes_.rbegin(); change != changes_.rend(); ++change) putBack(*change);
  }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  /// Sets a value of a key, its nameless one by default. After a failure it does nothing any more.
  void operator()(const std::wstring& key, const std::wstring& value, const wchar_t* name = nullptr,
                  REGSAM view = ownView) {
    if (outcome_ != ERROR_SUCCESS) return;
    changes_.push_back(changeOf(key, name, view));
    HKEY opened = nullptr;
    outcome_ = classes_.create(key, KEY_SET_VALUE | view, &opened);
    if (outcome_ != ERROR_SUCCESS) return;
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    outcome_ = RegSetValueExW(opened, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), bytes);
    RegCloseKey(opened);
  }

  bool failed() const noexcept { return outcome_ != ERROR_SUCCESS; }
  void keep() noexcept { kept_ = true; }

 private:
  struct Value {
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
  };
  struct Change {
    std::wstring key;
    REGSAM view;
    bool isNew;  // the key, with all that is below it
    const wchar_t* name;
    std::optional<Value> before;
  };

  Change changeOf(const std::wstring& key, const wchar_t* name, REGSAM view) const {
    for (std::size_t end = key.find(L'\\');; end = key.find(L'\\', end + 1)) {
      std::wstring parent = key.substr(0, end);
      if (!classes_.has(parent, view)) return {std::move(parent), view, true, nullptr, {}};
      if (end == std::wstring::npos) return {key, view, false, name, valueOf(key, name, view)};
    }
  }

  std::optional<Value> valueOf(const std::wstring& key, const wchar_t* name, REGSAM view) const {
    HKEY opened = nullptr;
    if (classes_.open(key, KEY_QUERY_VALUE | view, &opened) != ERROR_SUCCESS) return {};
    Value value;
    DWORD size = 0;
    LSTATUS status = RegQueryValueExW(opened, name, nullptr, &value.type, nullptr, &size);
    if (status == ERROR_SUCCESS) {
      value.data.resize(size);
      status = RegQueryValueExW(opened, name, nullptr, &value.type, value.data.data(), &size);
    }
    RegCloseKey(opened);
    if (status != ERROR_SUCCESS) return {};
    return value;
  }

  void putBack(const Change& change) const noexcept {
    if (change.isNew) {
      classes_.remove(change.key, change.view);
      return;
    }
    HKEY opened = nullptr;
    if (classes_.open(change.key, KEY_SET_VALUE | change.view, &opened) != ERROR_SUCCESS) return;
    if (change.before) {
      RegSetValueExW(opened, change.name, 0, change.before->type, change.before->data.data(),
                     static_cast<DWORD>(change.before->data.size()));
    } else {
      RegDeleteValueW(opened, change.name);
    }
    RegCloseKey(opened);
  }

  const Classes& classes_;
  std::vector<Change> changes_;
  LSTATUS outcome_ = ERROR_SUCCESS;
  bool kept_ = false;
};

struct ClassKeys {
  explicit ClassKeys(const catalogue::Class& described)
      : id(guidText(guidOf(described.classId))),
        classKey(L"CLSID\\" + id),
        interfaceKey(L"Interface\\" + guidText(guidOf(described.interfaceId))),
        name(wide(programId(described))),
        versionedName(wide(versionedProgramId(described))) {}

  std::wstring id, classKey, interfaceKey, name, versionedName;
};

struct LibraryKeys {
  std::wstring id = guidText(guidOf(LibraryId));
  std::wstring libraryKey = L"TypeLib\\" + id;
  std::wstring versionKey = libraryKey + L"\\" + versionText();

  /// Where the library of a platform is. The number of the language is written in hexadecimal digits.
  std::wstring placeKey(const wchar_t* platform) const {
    std::array<wchar_t, 9> language{};
    wsprintfW(language.data(), L"%x", LibraryLocale);
    return versionKey + L"\\" + language.data() + L"\\" + platform;
  }
};

void writeClass(Writer& write, const catalogue::Class& described, const std::wstring& path) {
  const ClassKeys keys(described);
  const std::wstring help = wide(described.help);
  write(keys.classKey, help);
  write(keys.classKey + L"\\InprocServer32", path);
  write(keys.classKey + L"\\InprocServer32", L"Apartment", L"ThreadingModel");
  write(keys.classKey + L"\\ProgID", keys.versionedName);
  write(keys.classKey + L"\\VersionIndependentProgID", keys.name);
  write(keys.classKey + L"\\TypeLib", LibraryKeys().id);
  write(keys.classKey + L"\\Version", versionText());
  write(keys.classKey + L"\\Programmable", L"");
  write(keys.versionedName, help);
  write(keys.versionedName + L"\\CLSID", keys.id);
  write(keys.name, help);
  write(keys.name + L"\\CLSID", keys.id);
  write(keys.name + L"\\CurVer", keys.versionedName);
}

void writeInterface(Writer& write, const catalogue::Class& described, REGSAM view) {
  const std::wstring key = ClassKeys(described).interfaceKey;
  const std::wstring marshaller = wide(InterfaceMarshaller);
  write(key, L"_" + wide(described.name), nullptr, view);
  write(key + L"\\ProxyStubClsid", marshaller, nullptr, view);
  write(key + L"\\ProxyStubClsid32", marshaller, nullptr, view);
  write(key + L"\\TypeLib", LibraryKeys().id, nullptr, view);
  write(key + L"\\TypeLib", versionText(), L"Version", view);
}

void writeTypeLibrary(Writer& write, const std::wstring& path) {
  const LibraryKeys keys;
  write(keys.versionKey, wide(LibraryHelp));
  write(keys.versionKey + L"\\FLAGS", L"0");
  write(keys.versionKey + L"\\HELPDIR", path.substr(0, path.find_last_of(L'\\')));
  write(keys.placeKey(ownPlatform), path);
}

HRESULT writeServer(const Classes& classes) {
  // A DLL whose type library cannot be read is not registered at all.
  ITypeLib* library = nullptr;
  if (FAILED(loadTypeLibrary(&library))) return SELFREG_E_TYPELIB;
  library->Release();

  const std::wstring path = modulePath();
  Writer write(classes);
  for (const ServerClass* served : serverClasses()) writeClass(write, served->description, path);
  if (write.failed()) return SELFREG_E_CLASS;
  writeTypeLibrary(write, path);
  for (const ServerClass* served : serverClasses()) {
    for (const REGSAM view : {ownView, otherView}) writeInterface(write, served->description, view);
  }
  if (write.failed()) return SELFREG_E_TYPELIB;
  write.keep();
  return S_OK;
}

/// Whatever the other width's registration needs as well stays until that is gone too.
HRESULT removeServer(const Classes& classes) {
  HRESULT outcome = S_OK;
  const auto remove = [&](const std::wstring& key, HRESULT failure, REGSAM view = ownView) {
    if (classes.remove(key, view) != ERROR_SUCCESS) outcome = failure;
  };
  for (const ServerClass* served : serverClasses()) {
    const ClassKeys keys(served->description);
    remove(keys.classKey, SELFREG_E_CLASS);
    if (classes.has(keys.classKey, otherView)) continue;
    remove(keys.versionedName, SELFREG_E_CLASS);
    remove(keys.name, SELFREG_E_CLASS);
  }

  const LibraryKeys library;
  remove(library.placeKey(ownPlatform), SELFREG_E_TYPELIB);
  if (!classes.has(library.placeKey(otherPlatform), ownView)) {
    for (const ServerClass* served : serverClasses()) {
      for (const REGSAM view : {ownView, otherView}) {
        remove(ClassKeys(served->description).interfaceKey, SELFREG_E_TYPELIB, view);
      }
    }
    remove(library.versionKey, SELFREG_E_TYPELIB);
    classes.removeEmpty(library.libraryKey);
  }

  // A user who never had a class of their own registered has no keys to hold them, so registering made these too.
  for (const wchar_t* parent : {L"CLSID", L"Interface", L"TypeLib"}) {
    for (const REGSAM view : {ownView, otherView}) classes.removeEmpty(parent, view);
  }
  return outcome;
}

}  // namespace

HRESULT registerServer(RegisteredFor whom) noexcept {
  try {
    return writeServer(Classes(whom));
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT unregisterServer(RegisteredFor whom) noexcept {
  try {
    return removeServer(Classes(whom));
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace orvex::inline ORVEX_COUNTS::automation
