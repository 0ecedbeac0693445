#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "cli/platform.h"
#include "orvex/data/text.h"

namespace orvex::cli::platform {

namespace fs = std::filesystem;

namespace {

std::string utf8(std::wstring_view text) {
  return utf8FromUtf16(std::u16string(text.begin(), text.end()));
}

}  // namespace

std::vector<std::string> start(int, char**) {
  for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
  // The words that the C library hands over are in the system's code page, which lacks most letters.
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> all(CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
  std::vector<std::string> words;
  for (int i = 1; all != nullptr && i < count; ++i) words.push_back(utf8(all.get()[i]));
  return words;
}

bool printsToTerminal() {
  return _isatty(_fileno(stdout)) != 0;
}

fs::path pathOf(std::string_view text) {
  const std::u16string units = utf16FromUtf8(text);
  return std::wstring(units.begin(), units.end());
}

std::string textOf(const fs::path& path) {
  return utf8(path.native());
}

int openToRead(const std::string& path) {
  return _wopen(pathOf(path).c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}

fs::path programFolder() {
  std::wstring name(32768, L'\0');
  name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
  return fs::path(name).parent_path();
}

bool showInBrowser(const fs::path& page) {
  constexpr INT_PTR mostErrors = 32;
  const HINSTANCE shown = ShellExecuteW(nullptr, L"open", page.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<INT_PTR>(shown) > mostErrors;
}

void onInterrupt(void (*handler)(int)) {
  std::signal(SIGINT, handler);
  std::signal(SIGTERM, handler);
}

bool nobodyReads() {
  // The system has several words for it, of which errno knows one.
  const unsigned long reason = _doserrno;
  return reason == ERROR_BROKEN_PIPE || reason == ERROR_NO_DATA || reason == ERROR_PIPE_NOT_CONNECTED;
}

}  // namespace orvex::cli::platform
