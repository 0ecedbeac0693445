// Calls of a host that misbehaves, for minutes, under the sanitizers.
#include <sanitizer/allocator_interface.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "tests/support/misbehaving_host.h"
#include "tests/support/soak.h"

/// What the sanitizer keeps for itself, of freed memory and of where it came from, stays small.
extern "C" const char* __asan_default_options() {
  return "quarantine_size_mb=4:malloc_context_size=4";
}

namespace {

std::int64_t allocatedBytes() {
  return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
}

std::int64_t openFiles() {
  using Files = std::filesystem::directory_iterator;
  return std::distance(Files("/proc/self/fd"), Files());
}

std::int64_t residentBytes() {
  std::int64_t all = 0;
  std::int64_t resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return resident * sysconf(_SC_PAGESIZE);
}

}  // namespace

int main(int count, char** words) {
  orvex::test::Soak soak(
      count, words,
      {{"allocated bytes", 1 << 10, allocatedBytes}, {"files", 0, openFiles}, {"resident", 4 << 20, residentBytes}});
  return soak.run([](std::uint32_t seed) {
    std::mt19937 generator(seed);
    const auto bytes = orvex::test::randomBytes(generator, 50 + generator() % 2000);
    return orvex::test::runMisbehavingHost(orvex::test::Choices(bytes));
  });
}
