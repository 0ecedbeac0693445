#include "cli/input_file.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "cli/platform.h"

namespace orvex::cli {

InputFile::InputFile(const std::string& path) : number_(path == "-" ? STDIN_FILENO : platform::openToRead(path)) {
  if (number_ < 0) raise(faultOf(path));
  if (fstat(number_, &status_) == 0 && S_ISDIR(status_.st_mode)) {
    close();
    raise(faults::FileAccess);
  }
}

std::string InputFile::bytes() const {
  constexpr std::size_t piece = std::size_t{1} << 20;
  std::string all;
  std::size_t size = 0;
  if (S_ISREG(status_.st_mode)) all.resize(static_cast<std::size_t>(status_.st_size) + 1);
  for (;;) {
    if (size == all.size()) all.resize(std::max(piece, 2 * size));
    // More than a system reads at once.
    constexpr std::size_t most = std::size_t{1} << 30;
    const auto got = ::read(number_, all.data() + size, static_cast<unsigned>(std::min(most, all.size() - size)));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) raise(faults::DeviceError);
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
  }
  all.resize(size);
  return all;
}

const Fault& InputFile::faultOf(const std::string& path) {
  const std::filesystem::path folder = platform::pathOf(path).parent_path();
  std::error_code ignored;
  if (errno != ENOENT && errno != ENOTDIR) return faults::FileAccess;
  return folder.empty() || std::filesystem::is_directory(folder, ignored) ? faults::FileNotFound : faults::PathNotFound;
}

void InputFile::close() const {
  if (number_ > STDERR_FILENO) ::close(number_);
}

}  // namespace orvex::cli
