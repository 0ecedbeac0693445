#include "orvex/data/rows.h"

#include <cstdint>
#include <limits>
#include <new>
#include <utility>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace orvex::inline ORVEX_COUNTS {

namespace {

constexpr std::size_t cacheLine = 64;

/// Has the system back so long a column by large pages where it has them: small ones, each made when it is first
/// written, take longer than what is computed into them. Only a wish.
void askForLargePages([[maybe_unused]] char* memory, [[maybe_unused]] std::size_t bytes) {
#if defined(__linux__)
  constexpr std::size_t page = 4096, worthIt = 4 << 20;
  if (bytes < worthIt) return;
  const std::size_t before = page - reinterpret_cast<std::uintptr_t>(memory) % page;
  static_cast<void>(madvise(memory + before, (bytes - before) / page * page, MADV_HUGEPAGE));
#endif
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
    const std::size_t bytes = head + count * sizeof(double);
    char* const memory = static_cast<char*>(::operator new(bytes));
    askForLargePages(memory, bytes);
    const std::size_t inside = reinterpret_cast<std::uintptr_t>(memory + head) % cacheLine;
    *rows = reinterpret_cast<double*>(memory + head - inside);
    return reinterpret_cast<T*>(memory);
  }
  void deallocate(T* memory, std::size_t) noexcept { ::operator delete(memory); }

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
