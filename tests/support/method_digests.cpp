// Prints one line for each method and kernel level: a digest of all that 400 calls on fixed series gave, down to the
// bits. Builds of any kind print the same lines.
#include <cstdint>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "orvex/kernels/kernels.h"
#include "tests/support/calls.h"

namespace {

namespace catalogue = orvex::catalogue;
namespace kernels = orvex::kernels;
using orvex::test::Outcome;

/// FNV-1a in 64 bits.
class Digest {
 public:
  void take(std::uint64_t word) {
    for (int byte = 0; byte < 8; ++byte) state_ = (state_ ^ (word >> (8 * byte) & 0xff)) * 0x100000001b3;
  }
  void take(std::string_view text) {
    take(text.size());
    for (const char letter : text) take(static_cast<std::uint64_t>(static_cast<unsigned char>(letter)));
  }
  std::uint64_t value() const { return state_; }

 private:
  std::uint64_t state_ = 0xcbf29ce484222325;
};

void take(Digest& digest, const Outcome& outcome) {
  if (outcome.fault) digest.take(outcome.fault->source);
  for (const auto& [name, bits] : outcome.columns) {
    digest.take(name);
    for (const std::uint64_t row : bits) digest.take(row);
  }
  digest.take(outcome.other);
  digest.take(outcome.written);
  digest.take(static_cast<std::uint64_t>(outcome.position));
}

std::uint64_t digestOf(const catalogue::Class& owner, const catalogue::Method& method) {
  Digest digest;
  std::mt19937 random(1);
  for (int i = 0; i < 400; ++i) {
    take(digest, orvex::test::RandomCall(orvex::test::randomBytes(random), owner, method).run());
  }
  return digest.value();
}

}  // namespace

int main() {
  for (const auto level : kernels::allLevels) {
    if (level > kernels::widestLevel()) continue;
    kernels::setLevel(level);
    for (const catalogue::Class* owner : catalogue::classes()) {
      if (owner->holdsState) continue;
      for (const catalogue::Method* method : owner->methods) {
        if (method->kind != catalogue::Kind::Method) continue;
        std::cout << owner->name << '.' << method->name << ' ' << digestOf(*owner, *method) << '\n';
      }
    }
  }
}
