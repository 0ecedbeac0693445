#include "orvex/data/rows.h"

#include <cstdint>
#include <limits>
#include <new>
#include <utility>
#ifdef __linux__
#include <sys/mman.h>
#endif

namespace orvex::inline ORVEX_COUNTS {

namespace {

constexpr std::size_t cacheLine = 64;

/// From so many bytes on a column begins with a large page and consists of them, where the system has them: memory that
/// is new comes page by page, and a million records would wait for two thousand small ones.
constexpr std::size_t largePage = std::size_t{2} << 20;
constexpr std::size_t manyBytes = 2 * largePage;

bool inLargePages(std::size_t bytes) noexcept {
#ifdef __linux__
  return bytes >= manyBytes;
#else
  static_cast<void>(bytes);
  return false;
#endif
}

void* allocateBytes(std::size_t bytes) {
#ifdef __linux__
  if (inLargePages(bytes)) {
    if (bytes > std::numeric_limits<std::size_t>::max() - largePage) throw std::bad_alloc();
    const std::size_t whole = (bytes + largePage - 1) / largePage * largePage;
    void* const memory = ::operator new (whole, std::align_val_t{largePage});
    // A wish: where it is not granted the pages are small ones.
    static_cast<void>(madvise(memory, whole, MADV_HUGEPAGE));
    return memory;
  }
#endif
  return ::operator new(bytes);
}

void freeBytes(void* memory, std::size_t bytes) noexcept {
  if (inLargePages(bytes)) {
    ::operator delete (memory, std::align_val_t{largePage});
  } else {
    ::operator delete(memory);
  }
}

/// Allocates what a shared pointer keeps for itself, and the rows behind it.
template <class T>
struct WithRows {
  using value_type = T;

  std::size_t count;
  double** rows;

  WithRows(std::size_t number, double** place) : count(number), rows(place) {}
  template <class Other>
  WithRows(const WithRows<Other>& other) : count(other.count), rows(other.rows) {}

  T* allocate(std::size_t number) {
    // Allocators are slower where they are asked for aligned memory, so the place is found here.
    const std::size_t head = number * sizeof(T) + cacheLine - 1;
    if (count > (std::numeric_limits<std::size_t>::max() - head) / sizeof(double)) throw std::bad_alloc();
    char* const memory = static_cast<char*>(allocateBytes(head + count * sizeof(double)));
    const std::size_t inside = reinterpret_cast<std::uintptr_t>(memory + head) % cacheLine;
    *rows = reinterpret_cast<double*>(memory + head - inside);
    return reinterpret_cast<T*>(memory);
  }
  void deallocate(T* memory, std::size_t number) noexcept {
    freeBytes(memory, number * sizeof(T) + cacheLine - 1 + count * sizeof(double));
  }

  friend bool operator==(const WithRows&, const WithRows&) = default;
};

struct Nothing {};

}  // namespace

OwnRows newRows(std::size_t count) {
  double* rows = nullptr;
  std::shared_ptr<void> owner = std::allocate_shared<Nothing>(WithRows<Nothing>(count, &rows));
  return {{rows, count}, std::move(owner)};
}

}  // namespace orvex::inline ORVEX_COUNTS
