#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS {

/// A text file, read whole, as lines of UTF-8. A file that is not valid UTF-8 is taken for Windows-1252. A byte-order
/// mark is passed over; lines end with CR LF, LF or CR; a last line without an end counts, an end at the end of the
/// file begins no further line.
class TextFile {
 public:
  /// Reads the file at a UTF-8 path, which is open no longer than this takes. Errors: 53 for a file that is not
  /// there, 76 for a folder on the way to it that is not, 75 for one that may not be read or is no ordinary file, 57
  /// where reading breaks off, 6 for one of more than `mostLines` lines, of which little more than those is read.
  TextFile(const std::string& path, std::size_t mostLines);
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;

  /// How many lines there are, blank ones included.
  std::size_t lineCount() const noexcept { return lineCount_; }

  /// Takes the next line, without its end, into `line`; false after the last one. The text is valid as long as the
  /// object is.
  bool nextLine(std::string_view& line) noexcept;

 private:
  std::unique_ptr<char[]> bytes_;
  std::string decoded_;    // the text, where it was not UTF-8
  std::string_view rest_;  // what no line has been taken from yet
  std::size_t lineCount_ = 0;
  bool loneReturns_ = false;  // some line ends with a carriage return alone
};

/// All bytes of a file. Errors as those of `TextFile`.
std::string readBytes(const std::string& path);

}  // namespace orvex::inline ORVEX_COUNTS
