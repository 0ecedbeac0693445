#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "cli/platform.h"

// Not every system declares it.
extern char** environ;  // NOLINT(readability-redundant-declaration)

namespace orvex::cli::platform {

namespace fs = std::filesystem;

std::vector<std::string> start(int argc, char** argv) {
  return {argv + 1, argv + argc};
}

bool printsToTerminal() {
  return isatty(STDOUT_FILENO) != 0;
}

fs::path pathOf(std::string_view text) {
  return text;
}

std::string textOf(const fs::path& path) {
  return path.string();
}

int openToRead(const std::string& path) {
  return open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

fs::path programFolder() {
  std::error_code unknown;
  return fs::read_symlink("/proc/self/exe", unknown).parent_path();
}

bool showInBrowser(const fs::path& page) {
#ifdef __APPLE__
  std::string program = "open";
#else
  std::string program = "xdg-open";
#endif
  std::string path = page.string();
  char* words[] = {program.data(), path.data(), nullptr};
  pid_t child = 0;
  int status = 0;
  return posix_spawnp(&child, program.c_str(), nullptr, nullptr, words, environ) == 0 &&
         waitpid(child, &status, 0) == child && status == 0;
}

void onInterrupt(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  action.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &action, nullptr);
}

bool nobodyReads() {
  return errno == EPIPE;
}

}  // namespace orvex::cli::platform
