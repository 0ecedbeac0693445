#pragma once

#include <xmmintrin.h>

#include <cstdint>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS::automation {

/// How the processor computes: rounding, flushing of subnormal numbers, and which exceptions interrupt. Hosts differ:
/// some let a division by zero interrupt, which would end them inside the library, where it is an ordinary fault.
struct FloatingPoint {
  std::uint32_t vector = 0;
  std::uint16_t stack = 0;  // of the x87 unit, which 32-bit code returns its results through

  static FloatingPoint current() noexcept {
    FloatingPoint state;
    state.vector = _mm_getcsr();
#ifdef __i386__
    __asm__ volatile("fnstcw %0" : "=m"(state.stack));
#endif
    return state;
  }

  void apply() const noexcept {
    _mm_setcsr(vector);
#ifdef __i386__
    __asm__ volatile("fnclex\n\tfldcw %0" : : "m"(stack));
#endif
  }

  /// Round to nearest, nothing interrupts, nothing is flushed to zero.
  static FloatingPoint ours() noexcept {
    return {0x1F80, 0x037F};
  }

  /// Whether results are those of `ours`. The precision of the x87 unit and the record of past exceptions do not
  /// matter.
  bool computesAsOurs() const noexcept {
    constexpr std::uint32_t vectorControl = 0xFFC0;
    [[maybe_unused]] constexpr std::uint16_t stackControl = 0x0C3F;
#ifdef __i386__
    if ((stack & stackControl) != (ours().stack & stackControl)) return false;
#endif
    return (vector & vectorControl) == ours().vector;
  }
};

/// Computes as the library does until the end of the scope, and then as the host does again.
class FloatingPointScope {
 public:
  FloatingPointScope() noexcept {
    if (!host_.computesAsOurs()) enter();
  }
  ~FloatingPointScope() {
    if (entered_) leave();
  }
  FloatingPointScope(const FloatingPointScope&) = delete;
  FloatingPointScope& operator=(const FloatingPointScope&) = delete;

 private:
  void enter() noexcept;
  void leave() noexcept;

  FloatingPoint host_ = FloatingPoint::current();
  const FloatingPoint* outer_ = nullptr;
  bool entered_ = false;
};

/// Computes as the calling host does until the end of the scope: for events that it handles in the middle of a call.
class HostFloatingPointScope {
 public:
  HostFloatingPointScope() noexcept;
  ~HostFloatingPointScope() { library_.apply(); }
  HostFloatingPointScope(const HostFloatingPointScope&) = delete;
  HostFloatingPointScope& operator=(const HostFloatingPointScope&) = delete;

 private:
  FloatingPoint library_ = FloatingPoint::current();
};

}  // namespace orvex::inline ORVEX_COUNTS::automation
