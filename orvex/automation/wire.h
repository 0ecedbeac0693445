#pragma once

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "orvex/automation/platform.h"
#include "orvex/automation/server_object.h"
#include "orvex/automation/texts.h"
#include "orvex/automation/variants.h"
#include "orvex/catalogue/describe.h"

/// How each type of the library crosses a dual interface.
namespace orvex::inline ORVEX_COUNTS::automation {

/// `Type` is what a caller has in a variable; `in` reads it and `out` makes a new one, the caller's to free.
template <class T>
struct Wire;

template <>
struct Wire<Integer> {
  using Type = short;
  static Integer in(Type value) { return value; }
  static Type out(Integer value) { return static_cast<Type>(value.value()); }
};

template <>
struct Wire<std::int32_t> {
  using Type = LONG;
  static std::int32_t in(Type value) { return value; }
  static Type out(std::int32_t value) { return value; }
};

template <>
struct Wire<double> {
  using Type = double;
  static double in(Type value) { return value; }
  static Type out(double value) { return value; }
};

template <>
struct Wire<bool> {
  using Type = VARIANT_BOOL;
  static bool in(Type value) { return value != VARIANT_FALSE; }
  static Type out(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }
};

template <>
struct Wire<std::string> {
  using Type = BSTR;
  static std::string in(Type value) { return textOf(value); }
  static Type out(const std::string& value) { return newText(value); }
};

template <class C>
struct Wire<std::shared_ptr<C>> {
  using Type = IUnknown*;
  static std::shared_ptr<C> in(Type value) {
    return std::get<std::shared_ptr<C>>(catalogue::coerce(objectValue(value), catalogue::typeOf<std::shared_ptr<C>>));
  }
  static Type out(const std::shared_ptr<C>& value) {
    ServerObject* wrapper = wrap(value);
    return wrapper == nullptr ? nullptr : wrapper->dispatch();
  }
};

template <>
struct Wire<catalogue::Object> {
  using Type = IUnknown*;
  static catalogue::Object in(Type value) { return keep(value); }
  static Type out(const catalogue::Object& value) {
    auto* any = static_cast<IUnknown*>(value.get());
    if (any != nullptr) any->AddRef();
    return any;
  }
};

template <>
struct Wire<VariantArray> {
  using Type = VARIANT;
  static VariantArray in(const Type& value) {
    return std::get<VariantArray>(
        catalogue::coerce(valueOf(value, catalogue::Type::VariantArray), catalogue::Type::VariantArray));
  }
};

/// What is returned as a VARIANT.
template <class T>
struct VariantWire {
  using Type = VARIANT;
  static Type out(T value) { return variantOf(std::move(value)); }
};
template <>
struct Wire<Empty> : VariantWire<Empty> {};
template <>
struct Wire<Array<double>> : VariantWire<Array<double>> {};
template <>
struct Wire<Array<std::string>> : VariantWire<Array<std::string>> {};

/// One argument of a call, read from where the caller has it. A null reference stands for an argument that is left out,
/// and for an array that cannot be read.
template <class A>
class Parameter {
 public:
  using Held = typename catalogue::Held<std::remove_cvref_t<A>>::type;
  using Type = typename Wire<Held>::Type;

  struct Incoming {
    Type* place;
    const catalogue::Argument& argument;
  };

  explicit Parameter(const Incoming& incoming)
      : value_(incoming.place != nullptr ? Wire<Held>::in(*incoming.place) : leftOut(incoming.argument)) {}

  Held& get() { return value_; }
  void writeBack() noexcept {}

 protected:
  static Held leftOut(const catalogue::Argument& argument) {
    if constexpr (std::is_same_v<Held, VariantArray>) {
      return VariantArray(NoValue{faults::InvalidCall});
    } else {
      if (!argument.optional) raise(faults::InvalidCall);
      return std::get<Held>(catalogue::defaultOf(argument));
    }
  }

  Held value_;
};

inline void replace(BSTR& place, const std::string& value) {
  const BSTR fresh = newText(value);
  SysFreeString(place);
  place = fresh;
}
template <class T>
void replace(typename Wire<T>::Type& place, const T& value) {
  place = Wire<T>::out(value);
}

/// One that the call may write back.
template <class T>
class Parameter<InOut<T>> : Parameter<T> {
 public:
  using typename Parameter<T>::Held;
  using typename Parameter<T>::Type;
  using typename Parameter<T>::Incoming;

  explicit Parameter(const Incoming& incoming)
      : Parameter<T>(incoming), place_(incoming.place), before_(this->value_) {}

  InOut<T> get() { return InOut<T>(this->value_); }
  /// Puts what the call has changed where the caller has it.
  void writeBack() noexcept {
    if (place_ == nullptr || this->value_ == before_) return;
    try {
      replace(*place_, this->value_);
    } catch (...) {
      // Without memory for the text the caller's variable stays as it was.
    }
  }

 private:
  Type* place_;
  Held before_;
};

}  // namespace orvex::inline ORVEX_COUNTS::automation
