// Loads whatever bytes there are as a price file: the first byte tells how long the delimiter is that follows it.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "orvex/data/database.h"
#include "tests/support/file.h"

namespace {

using orvex::test::File;

/// How many lines a text has, counted the plain way.
std::size_t countLines(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  std::size_t lines = 0;
  while (!text.empty()) {
    ++lines;
    const std::size_t end = text.find_first_of("\r\n");
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + (text.substr(end).starts_with("\r\n") ? 2 : 1));
  }
  return lines;
}

void require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view input(reinterpret_cast<const char*>(bytes), size);
  const std::size_t length = std::min<std::size_t>(input[0] & 3, size - 1);
  const std::string delimiter(input.substr(1, length));
  const std::string_view content = input.substr(1 + length);
  static File file("");
  file.write(std::string(content));

  orvex::Database data;
  const std::size_t lines = countLines(content);
  try {
    data.OpenDataBase(file.path(), delimiter);
    require(data.getRecordCount() == lines && data.getPosition() == 1);
    require(data.getRecordset()->getFieldCount() == 6);
    for (const char* name : {"Open", "High", "Low", "Close", "Volume"}) {
      for (const double value : data.getRecordset()->getField(name)->values()) require(std::isfinite(value));
    }
  } catch (const orvex::Error& error) {
    require(error.number() == 1012 && error.source() == "OpenDatabase" && data.getRecordset()->getFieldCount() == 0);
    // Only an empty file, one of too many lines and a number beyond a double fail.
    require(error.description() == (lines == 0 ? "Subscript out of range" : "Overflow"));
  }
  return 0;
}
