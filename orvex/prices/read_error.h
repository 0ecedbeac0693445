#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include "orvex/data/error.h"

namespace orvex::inline ORVEX_COUNTS::prices {

/// Why no prices could be read. The text says what is wrong and what would work; `line` and `cell` count from 1 and are
/// 0 where the matter lies in no line or in no cell of it.
class ReadError : public std::runtime_error {
 public:
  ReadError(const Fault& fault, const std::string& text, std::size_t line = 0, std::size_t cell = 0)
      : std::runtime_error(text), fault_(fault), line_(line), cell_(cell) {}

  /// The error number, source and description that the price loader has for such a file.
  const Fault& fault() const noexcept { return fault_; }
  std::size_t line() const noexcept { return line_; }
  std::size_t cell() const noexcept { return cell_; }

 private:
  Fault fault_;
  std::size_t line_;
  std::size_t cell_;
};

}  // namespace orvex::inline ORVEX_COUNTS::prices
