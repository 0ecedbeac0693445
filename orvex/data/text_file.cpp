#include "orvex/data/text_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "orvex/data/error.h"
#include "orvex/data/text.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

namespace fs = std::filesystem;

struct Close {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using OpenFile = std::unique_ptr<std::FILE, Close>;

fs::path pathFromUtf8(const std::string& name) {
#ifdef _WIN32
  // Unit by unit: names there may hold half a character.
  const std::u16string units = utf16FromUtf8(name);
  return fs::path(std::wstring(units.begin(), units.end()));
#else
  return fs::path(name);
#endif
}

OpenFile open(const fs::path& path) {
#ifdef _WIN32
  return OpenFile(_wfopen(path.c_str(), L"rb"));
#else
  return OpenFile(std::fopen(path.c_str(), "rb"));
#endif
}

OpenFile openForReading(const std::string& name) {
  if (name.empty() || name.find('\0') != std::string::npos) raise(faults::FileNotFound);
  const fs::path path = pathFromUtf8(name);
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found) {
    const bool folderThere = !path.has_parent_path() || fs::is_directory(path.parent_path(), error);
    raise(folderThere ? faults::FileNotFound : faults::PathNotFound);
  }
  // Only what is there to be read from beginning to end: a folder has no text, and the end of a pipe or a device may be
  // long in coming, or never come.
  if (status.type() != fs::file_type::regular) raise(faults::FileAccess);
  OpenFile file = open(path);
  if (file == nullptr) raise(errno == ENOENT ? faults::FileNotFound : faults::FileAccess);
  std::setvbuf(file.get(), nullptr, _IONBF, 0);
  return file;
}

/// How many carriage returns end a line by themselves; of one at the end only what follows can tell.
std::size_t countLoneReturns(std::string_view text) noexcept {
  std::size_t count = 0;
  for (std::size_t at = text.find('\r'); at != std::string_view::npos; at = text.find('\r', at + 1)) {
    count += at + 1 < text.size() && text[at + 1] != '\n';
  }
  return count;
}

/// What one look at all bytes of a text tells, which it is shown part by part.
class Survey {
 public:
  void take(std::string_view part) noexcept;
  /// Tells it that nothing more comes.
  void end() noexcept { loneReturns_ += endsInReturn_; }

  bool isAscii() const noexcept { return ascii_; }
  bool hasLoneReturns() const noexcept { return loneReturns_ != 0; }
  /// How many lines have come to their end so far. One that the last byte ends may have to wait for the next byte.
  std::size_t lineEnds() const noexcept { return lineFeeds_ + loneReturns_; }

 private:
  std::size_t lineFeeds_ = 0;
  std::size_t loneReturns_ = 0;
  bool ascii_ = true;
  bool endsInReturn_ = false;
};

void Survey::take(std::string_view part) noexcept {
  if (part.empty()) return;
  if (endsInReturn_ && part.front() != '\n') ++loneReturns_;
  endsInReturn_ = part.back() == '\r';
  std::string_view text = part;
  // Counted a byte a lane, which compilers turn into vector code; a lane is added up before it could wrap.
  constexpr std::size_t lanes = 64;
  constexpr std::size_t rounds = 255;
  unsigned high = 0;
  unsigned returns = 0;
  while (!text.empty()) {
    unsigned char feeds[lanes] = {};
    std::size_t round = 0;
    for (; round < rounds && text.size() >= lanes; ++round) {
      for (std::size_t i = 0; i < lanes; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        feeds[i] = static_cast<unsigned char>(feeds[i] + (byte == '\n'));
        high |= byte;
        returns |= byte == '\r';
      }
      text.remove_prefix(lanes);
    }
    for (const unsigned char lane : feeds) lineFeeds_ += lane;
    if (round < rounds) break;
  }
  for (const char c : text) {
    lineFeeds_ += c == '\n';
    high |= static_cast<unsigned char>(c);
    returns |= c == '\r';
  }
  ascii_ = ascii_ && high < 0x80;
  if (returns != 0) loneReturns_ += countLoneReturns(part);
}

}  // namespace

TextFile::TextFile(const std::string& path, std::size_t mostLines) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  const OpenFile file = openForReading(path);
  Survey seen;
  // Room for nearly every price file at once. What is not read into is never touched.
  std::size_t room = std::size_t{1} << 22;
  std::unique_ptr<char[]> bytes(new char[room]);
  std::size_t size = 0;
  for (;;) {
    const std::size_t got = std::fread(bytes.get() + size, 1, room - size, file.get());
    std::string_view part(bytes.get() + size, got);
    if (size == 0 && part.starts_with(byteOrderMark)) part.remove_prefix(byteOrderMark.size());
    seen.take(part);
    if (seen.lineEnds() > mostLines) raise(faults::Overflow);
    size += got;
    if (size < room) break;
    std::unique_ptr<char[]> more(new char[2 * room]);
    std::memcpy(more.get(), bytes.get(), size);
    bytes = std::move(more);
    room *= 2;
  }
  if (std::ferror(file.get()) != 0) raise(faults::DeviceError);
  bytes_ = std::move(bytes);
  rest_ = {bytes_.get(), size};

  if (rest_.starts_with(byteOrderMark)) rest_.remove_prefix(byteOrderMark.size());
  seen.end();
  if (!seen.isAscii() && !isUtf8(rest_)) {
    decoded_ = utf8FromWindows1252(rest_);
    rest_ = decoded_;
  }
  loneReturns_ = seen.hasLoneReturns();
  const bool endOpen = !rest_.empty() && rest_.back() != '\n' && rest_.back() != '\r';
  lineCount_ = seen.lineEnds() + (endOpen ? 1 : 0);
  if (lineCount_ > mostLines) raise(faults::Overflow);
}

bool TextFile::nextLine(std::string_view& line) noexcept {
  if (rest_.empty()) return false;
  const std::size_t end = std::min(loneReturns_ ? rest_.find_first_of("\r\n") : rest_.find('\n'), rest_.size());
  line = rest_.substr(0, end);
  rest_.remove_prefix(end);
  if (rest_.starts_with("\r\n")) {
    rest_.remove_prefix(2);
  } else if (!rest_.empty()) {
    rest_.remove_prefix(1);
  }
  if (!loneReturns_ && line.ends_with('\r')) line.remove_suffix(1);
  return true;
}

std::string readBytes(const std::string& path) {
  const OpenFile file = openForReading(path);
  std::error_code unknown;
  const std::uintmax_t told = fs::file_size(pathFromUtf8(path), unknown);
  // One more than there are, so that the end shows at once.
  std::string bytes(unknown ? std::size_t{1} << 16 : static_cast<std::size_t>(told) + 1, '\0');
  std::size_t size = 0;
  while ((size += std::fread(bytes.data() + size, 1, bytes.size() - size, file.get())) == bytes.size()) {
    bytes.resize(2 * size);
  }
  if (std::ferror(file.get()) != 0) raise(faults::DeviceError);
  bytes.resize(size);
  return bytes;
}

}  // namespace orvex::inline ORVEX_COUNTS
