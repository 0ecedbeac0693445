#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "orvex/automation/interface_definition.h"
#include "orvex/catalogue/catalogue.h"
#include "tests/automation/server/support.h"

/// What registering does to the registry of a machine that nobody else uses meanwhile: check_registration makes one.
namespace orvex::test {
namespace {

using automation::guidOf;

constexpr bool is64Bit = sizeof(void*) == 8;
constexpr REGSAM ownView = is64Bit ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
constexpr REGSAM otherView = is64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
constexpr const wchar_t* otherPlatform = is64Bit ? L"win32" : L"win64";

std::wstring guidText(const GUID& id) {
  wchar_t text[39];
  StringFromGUID2(id, text, 39);
  return text;
}

std::wstring classKey(const catalogue::Class& described) {
  return L"CLSID\\" + guidText(guidOf(described.classId));
}
std::wstring interfaceKey(const catalogue::Class& described) {
  return L"Interface\\" + guidText(guidOf(described.interfaceId));
}
const std::wstring libraryKey = L"TypeLib\\" + guidText(guidOf(automation::LibraryId));

std::wstring path(const std::wstring& key) {
  return L"Software\\Classes\\" + key;
}

bool has(HKEY hive, const std::wstring& key, REGSAM view = ownView) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(hive, path(key).c_str(), 0, KEY_READ | view, &opened) != ERROR_SUCCESS) return false;
  RegCloseKey(opened);
  return true;
}

void set(HKEY hive, const std::wstring& key, REGSAM view, DWORD options = 0) {
  HKEY made = nullptr;
  ASSERT_EQ(
      RegCreateKeyExW(hive, path(key).c_str(), 0, nullptr, options, KEY_ALL_ACCESS | view, nullptr, &made, nullptr),
      ERROR_SUCCESS);
  RegSetValueExW(made, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(L"x"), 4);
  RegCloseKey(made);
}

void remove(HKEY hive, const std::wstring& key, REGSAM view) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(hive, path(key).c_str(), 0, KEY_ALL_ACCESS | view, &opened) != ERROR_SUCCESS) return;
  RegDeleteTreeW(opened, nullptr);
  RegCloseKey(opened);
  RegDeleteKeyExW(hive, path(key).c_str(), view, 0);
}

using Keys = std::map<std::wstring, std::wstring>;

/// Values and keys below a key, and the key itself.
void read(HKEY key, const std::wstring& name, Keys& keys) {
  keys[name] = L"a key";
  wchar_t text[1000];
  BYTE data[1000];
  for (DWORD i = 0;; ++i) {
    DWORD length = 1000;
    DWORD size = sizeof data;
    DWORD type = 0;
    if (RegEnumValueW(key, i, text, &length, nullptr, &type, data, &size) != ERROR_SUCCESS) break;
    keys[name + L" " + text] = std::wstring(reinterpret_cast<wchar_t*>(data), size / sizeof(wchar_t));
  }
  for (DWORD i = 0;; ++i) {
    DWORD length = 1000;
    if (RegEnumKeyExW(key, i, text, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    HKEY below = nullptr;
    RegOpenKeyExW(key, text, 0, KEY_READ, &below);
    read(below, name + L"\\" + text, keys);
    RegCloseKey(below);
  }
}

/// All that a hive says about the server, in both views.
Keys registered(HKEY hive) {
  Keys keys;
  const auto add = [&](const std::wstring& key) {
    for (const REGSAM view : {ownView, otherView}) {
      HKEY opened = nullptr;
      if (RegOpenKeyExW(hive, path(key).c_str(), 0, KEY_READ | view, &opened) != ERROR_SUCCESS) continue;
      read(opened, std::to_wstring(view) + L" " + key, keys);
      RegCloseKey(opened);
    }
  };
  for (const catalogue::Class* one : catalogue::classes()) {
    add(classKey(*one));
    add(interfaceKey(*one));
    add(wide(automation::programId(*one)));
    add(wide(automation::versionedProgramId(*one)));
  }
  add(libraryKey);
  return keys;
}

/// A DLL that registers itself.
class Library {
 public:
  explicit Library(const wchar_t* file) : module_(LoadLibraryW(file)) {}
  ~Library() { FreeLibrary(module_); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  HRESULT enter() const { return entry<HRESULT(WINAPI*)()>("DllRegisterServer")(); }
  HRESULT remove() const { return entry<HRESULT(WINAPI*)()>("DllUnregisterServer")(); }
  HRESULT install(BOOL in, const wchar_t* words) const {
    return entry<HRESULT(WINAPI*)(BOOL, const wchar_t*)>("DllInstall")(in, words);
  }

 private:
  template <class Function>
  Function entry(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }

  HMODULE module_;
};

class Registration : public ::testing::Test {
 protected:
  Library library{L"Orvex.dll"};

  void TearDown() override {
    library.remove();
    library.install(FALSE, L"user");
    EXPECT_TRUE(registered(HKEY_LOCAL_MACHINE).empty());
    EXPECT_TRUE(registered(HKEY_CURRENT_USER).empty());
  }
};

TEST_F(Registration, LeavesWhatTheOtherWidthNeeds) {
  const HKEY hive = HKEY_LOCAL_MACHINE;
  const std::wstring place = libraryKey + L"\\1.0\\409\\" + otherPlatform;
  ASSERT_EQ(library.enter(), S_OK);
  for (const catalogue::Class* one : catalogue::classes()) set(hive, classKey(*one) + L"\\InprocServer32", otherView);
  set(hive, place, otherView);
  ASSERT_EQ(library.remove(), S_OK);
  for (const catalogue::Class* one : catalogue::classes()) {
    SCOPED_TRACE(one->name);
    EXPECT_FALSE(has(hive, classKey(*one)));
    EXPECT_TRUE(has(hive, classKey(*one), otherView));
    EXPECT_TRUE(has(hive, wide(automation::programId(*one)) + L"\\CLSID"));
    EXPECT_TRUE(has(hive, wide(automation::versionedProgramId(*one)) + L"\\CLSID"));
    EXPECT_TRUE(has(hive, interfaceKey(*one) + L"\\TypeLib", otherView));
  }
  EXPECT_TRUE(has(hive, place, otherView));
  EXPECT_TRUE(has(hive, libraryKey + L"\\1.0\\FLAGS", otherView));
  // What is left goes with the other width.
  for (const catalogue::Class* one : catalogue::classes()) remove(hive, classKey(*one), otherView);
  remove(hive, place, otherView);
  ASSERT_EQ(library.remove(), S_OK);
  EXPECT_TRUE(registered(hive).empty());
}

TEST_F(Registration, KeepsMachineAndUserApart) {
  ASSERT_EQ(library.install(TRUE, nullptr), S_OK);
  const Keys machines = registered(HKEY_LOCAL_MACHINE);
  EXPECT_TRUE(registered(HKEY_CURRENT_USER).empty());
  ASSERT_EQ(library.install(FALSE, L""), S_OK);
  ASSERT_EQ(library.install(TRUE, L"USER"), S_OK);
  const Keys users = registered(HKEY_CURRENT_USER);
  EXPECT_FALSE(users.empty());
  EXPECT_TRUE(registered(HKEY_LOCAL_MACHINE).empty());
  ASSERT_EQ(library.enter(), S_OK);
  EXPECT_TRUE(registered(HKEY_LOCAL_MACHINE) == machines);
  EXPECT_TRUE(registered(HKEY_CURRENT_USER) == users);
  ASSERT_EQ(library.remove(), S_OK);
  EXPECT_EQ(library.install(TRUE, L"users"), E_INVALIDARG);
  EXPECT_EQ(library.install(FALSE, L"machine"), E_INVALIDARG);
  EXPECT_TRUE(registered(HKEY_LOCAL_MACHINE).empty());
  EXPECT_TRUE(registered(HKEY_CURRENT_USER) == users);
}

TEST_F(Registration, LeavesAnEarlierOneAsItWasWhenItFails) {
  ASSERT_EQ(library.enter(), S_OK);
  // No key that is kept can be made below one that is not.
  const std::wstring name = wide(automation::programId(*catalogue::classes().back()));
  remove(HKEY_LOCAL_MACHINE, name, ownView);
  set(HKEY_LOCAL_MACHINE, name, ownView, REG_OPTION_VOLATILE);
  const Keys before = registered(HKEY_LOCAL_MACHINE);
  ASSERT_TRUE(CopyFileW(L"Orvex.dll", L"OrvexElsewhere.dll", FALSE));
  EXPECT_TRUE(FAILED(Library(L"OrvexElsewhere.dll").enter()));
  EXPECT_TRUE(registered(HKEY_LOCAL_MACHINE) == before);
  EXPECT_EQ(library.remove(), S_OK);
  // Nor is anything left where there was nothing before.
  set(HKEY_LOCAL_MACHINE, name, ownView, REG_OPTION_VOLATILE);
  const Keys obstacle = registered(HKEY_LOCAL_MACHINE);
  EXPECT_TRUE(FAILED(library.enter()));
  EXPECT_TRUE(registered(HKEY_LOCAL_MACHINE) == obstacle);
  DeleteFileW(L"OrvexElsewhere.dll");
}

TEST_F(Registration, WritesNothingWithoutATypeLibrary) {
  ASSERT_EQ(library.enter(), S_OK);
  const Keys before = registered(HKEY_LOCAL_MACHINE);
  std::ifstream original("Orvex.dll", std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(original), {}};
  // Version 1.2 of the format, which begins with its name.
  const auto found = bytes.find(std::string("MSFT\2\0\1\0", 8));
  ASSERT_NE(found, std::string::npos);
  bytes.replace(found, 4, "NONE");
  std::ofstream("OrvexBroken.dll", std::ios::binary) << bytes;
  EXPECT_EQ(Library(L"OrvexBroken.dll").enter(), static_cast<HRESULT>(0x80040200));  // SELFREG_E_TYPELIB
  EXPECT_TRUE(registered(HKEY_LOCAL_MACHINE) == before);
  DeleteFileW(L"OrvexBroken.dll");
}

}  // namespace
}  // namespace orvex::test
