#pragma once

#include <concepts>
#include <type_traits>
#include <utility>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS {

template <class T>
class InOut;

/// A number in a variable of another type could not receive what is written back.
template <class U>
concept NumberVariable = std::is_lvalue_reference_v<U> && !std::is_const_v<std::remove_reference_t<U>> &&
                         std::is_arithmetic_v<std::remove_reference_t<U>>;

/// What an `InOut<T>` takes without writing it back.
template <class U, class T>
concept LiteralOf = std::constructible_from<T, U&&> && !std::same_as<std::remove_cvref_t<U>, InOut<T>> &&
                    !std::same_as<U, T&> && !NumberVariable<U>;

/// An argument that a method may write back. It binds to a caller's variable, which then receives what is written, to
/// a literal, or to nothing: `average.SimpleMovingAverage(data, close, 20)`, `(..., 20, "sma")`, `(..., 20, name)`.
/// REQUIRES: a variable that is bound outlives the call.
template <class T>
class InOut {
 public:
  InOut() = default;
  InOut(T& variable) noexcept : variable_(&variable) {}
  template <LiteralOf<T> U>
  InOut(U&& literal) : own_(std::forward<U>(literal)) {}

  const T& get() const noexcept { return variable_ != nullptr ? *variable_ : own_; }
  void set(T value) { (variable_ != nullptr ? *variable_ : own_) = std::move(value); }

 private:
  T own_{};
  T* variable_ = nullptr;
};

}  // namespace orvex::inline ORVEX_COUNTS
