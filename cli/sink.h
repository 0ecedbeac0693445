#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orvex::cli {

/// The standard output takes no more: a full disk must not look like success.
class WriteError : public std::runtime_error {
 public:
  WriteError() : std::runtime_error("the result could not be written to the standard output.") {}
};

/// What a command prints, on its way to the standard output: a long result is never in memory as a whole.
class Sink {
 public:
  Sink() = default;
  /// One that keeps everything in `text` and writes nothing.
  static Sink keeping() {
    Sink sink;
    sink.keeps_ = true;
    return sink;
  }

  /// The text that is written next, to append to.
  std::string& text() { return text_; }

  void print(std::string_view more) { text_ += more; }

  /// Writes what has come together, where that is worth it. To be called from time to time.
  void pass() {
    if (!keeps_ && text_.size() >= worthWriting) write();
  }

  /// Writes everything. WriteError where that fails.
  void flush() {
    write();
    if (std::fflush(stdout) != 0) throw WriteError();
  }

 private:
  static constexpr std::size_t worthWriting = 65536;

  void write() {
    if (std::fwrite(text_.data(), 1, text_.size(), stdout) != text_.size()) throw WriteError();
    text_.clear();
  }

  std::string text_;
  bool keeps_ = false;
};

}  // namespace orvex::cli
