#include "tests/support/allocations.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

/// Stands in front of each block.
struct Header {
  void* memory;
  std::size_t size;
};

void* allocate(std::size_t size, std::size_t alignment) {
  using namespace allocations;
  if (left <= 0) throw std::bad_alloc();
  if (left != unlimited) --left;
  auto* const memory = static_cast<char*>(std::malloc(sizeof(Header) + alignment + size));
  if (memory == nullptr) throw std::bad_alloc();
  const auto address = reinterpret_cast<std::uintptr_t>(memory) + sizeof(Header);
  char* const block = memory + sizeof(Header) + (alignment - address % alignment) % alignment;
  reinterpret_cast<Header*>(block)[-1] = {memory, size};
  std::memset(block, 0xFF, size);
  inUse += size;
  mostInUse = std::max(mostInUse, inUse);
  return block;
}

void release(void* block) noexcept {
  if (block == nullptr) return;
  const Header header = static_cast<Header*>(block)[-1];
  allocations::inUse -= header.size;
  std::free(header.memory);
}

}  // namespace

void* operator new(std::size_t size) {
  return allocate(size, alignof(std::max_align_t));
}

void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocate(size, static_cast<std::size_t>(alignment));
}

void operator delete(void* block) noexcept {
  release(block);
}

void operator delete(void* block, std::size_t) noexcept {
  release(block);
}

void operator delete(void* block, std::align_val_t) noexcept {
  release(block);
}

void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  release(block);
}
