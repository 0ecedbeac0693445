#include <cstddef>
#include <cstdint>
#include <span>

#include "tests/support/misbehaving_host.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  orvex::test::runMisbehavingHost(orvex::test::Choices(std::span(bytes, size)));
  return 0;
}
