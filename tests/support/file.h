#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace orvex::inline ORVEX_COUNTS::test {

/// A file of this process alone that is gone with the object.
class File {
 public:
  explicit File(const std::string& content)
      : path_(
            (std::filesystem::temp_directory_path() / ("orvex-test-" + std::to_string(std::random_device()()) + ".csv"))
                .string()) {
    write(content);
  }
  ~File() { std::filesystem::remove(path_); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  void write(const std::string& content) { std::ofstream(path_, std::ios::binary) << content; }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace orvex::inline ORVEX_COUNTS::test
