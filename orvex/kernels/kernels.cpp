#include "orvex/kernels/kernels.h"

#include <algorithm>
#include <atomic>

#include "orvex/kernels/variants.h"

namespace orvex::inline ORVEX_COUNTS::kernels {

namespace {

std::atomic<Level>& levelInUse() noexcept {
  static std::atomic<Level> level = widestLevel();
  return level;
}

/// The variant of the level in use; none at `Off`.
const Variant* activeVariant() noexcept {
  switch (level()) {
#ifdef ORVEX_X86_VARIANTS
    case Level::Avx512:
      return &avx512::variant;
    case Level::Avx2Fma:
      return &avx2_fma::variant;
    case Level::Avx2:
      return &avx2::variant;
#endif
    case Level::Off:
      return nullptr;
    default:
      return &baseline::variant;
  }
}

}  // namespace

Level widestLevel() noexcept {
#ifdef ORVEX_X86_VARIANTS
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx512f")) return Level::Avx512;
  if (__builtin_cpu_supports("avx2")) return __builtin_cpu_supports("fma") ? Level::Avx2Fma : Level::Avx2;
#endif
  return Level::Baseline;
}

Level level() noexcept {
  return levelInUse().load(std::memory_order_relaxed);
}

void setLevel(Level level) noexcept {
  levelInUse().store(std::min(level, widestLevel()), std::memory_order_relaxed);
}

const Table* active() noexcept {
  const Variant* const variant = activeVariant();
  return variant == nullptr ? nullptr : &variant->table;
}

const Chains* activeChains() noexcept {
  const Variant* const variant = activeVariant();
  return variant == nullptr ? nullptr : &variant->chains;
}

}  // namespace orvex::inline ORVEX_COUNTS::kernels
