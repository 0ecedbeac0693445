#include "tests/memory/allocations.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {
// In front of each block stands its size, in so many bytes that the block stays aligned.
constexpr std::size_t header = alignof(std::max_align_t);
}  // namespace

void* operator new(std::size_t size) {
  using namespace allocations;
  if (left <= 0) throw std::bad_alloc();
  if (left != unlimited) --left;
  auto* const block = static_cast<std::size_t*>(std::malloc(header + size));
  if (block == nullptr) throw std::bad_alloc();
  *block = size;
  inUse += size;
  mostInUse = std::max(mostInUse, inUse);
  return reinterpret_cast<char*>(block) + header;
}

void operator delete(void* memory) noexcept {
  if (memory == nullptr) return;
  auto* const block = reinterpret_cast<std::size_t*>(static_cast<char*>(memory) - header);
  allocations::inUse -= *block;
  std::free(block);
}

void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}
