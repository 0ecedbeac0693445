#pragma once

#include <fmt/format.h>

#include <cstddef>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "orvex/data/error.h"

namespace orvex::cli {

/// A mistake in how the program was called: exit status 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// An error of the library, and what it means for this call in a reader's words: exit status 1.
class Failure : public std::exception {
 public:
  /// `line` and `cell`, from 1, are of a file that could not be read; 0 where the matter lies in none.
  Failure(const Error& error, std::string explanation, std::size_t line = 0, std::size_t cell = 0)
      // NOLINTNEXTLINE(bugprone-throw-keyword-missing): thrown inside of this one.
      : error_(error), explanation_(std::move(explanation)), line_(line), cell_(cell) {}
  Failure(const Fault& fault, std::string explanation, std::size_t line = 0, std::size_t cell = 0)
      : Failure(Error(fault), std::move(explanation), line, cell) {}

  const Error& error() const noexcept { return error_; }
  const std::string& explanation() const noexcept { return explanation_; }
  std::size_t line() const noexcept { return line_; }
  std::size_t cell() const noexcept { return cell_; }
  const char* what() const noexcept override { return explanation_.c_str(); }

 private:
  Error error_;
  std::string explanation_;
  std::size_t line_;
  std::size_t cell_;
};

/// Tells something on the standard error.
inline void complain(std::string_view text) {
  fmt::print(stderr, "orvex: {}\n", text);
}

}  // namespace orvex::cli
