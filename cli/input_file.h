#pragma once

#include <sys/stat.h>

#include <string>

#include "orvex/data/error.h"

namespace orvex::cli {

/// A file that is open for reading and closed with the object; "-" is the standard input.
class InputFile {
 public:
  /// Errors 53, 75 and 76 for one that is not there or cannot be opened.
  explicit InputFile(const std::string& path);
  ~InputFile() { close(); }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  int number() const noexcept { return number_; }
  /// All bytes to the end, from a pipe too. Error 57 where they cannot be read.
  std::string bytes() const;

 private:
  static const Fault& faultOf(const std::string& path);
  void close() const;

  int number_;
  struct stat status_ {};
};

}  // namespace orvex::cli
