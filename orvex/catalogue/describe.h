#pragma once

#include <memory>
#include <span>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "orvex/catalogue/description.h"

/// How a class is described: a specialisation of `Description` with its identity and one row a method.
namespace orvex::inline ORVEX_COUNTS::catalogue {

/// Parts of a member function's type.
template <class F>
struct Signature;
template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> {
  using Owner = C;
  using Result = R;
  using Arguments = std::tuple<A...>;
};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};

template <class T>
inline constexpr bool isInOut = false;
template <class T>
inline constexpr bool isInOut<InOut<T>> = true;

/// What holds an argument's value in a `Value`.
template <class T>
struct Held {
  using type = std::remove_cvref_t<T>;
};
template <class T>
struct Held<InOut<T>> {
  using type = T;
};
template <>
struct Held<std::string_view> {
  using type = std::string;
};

/// One row of a description: the method's erased form and, in its type, the member function that every typed way in
/// (the virtual tables of automation) is made from.
template <auto F>
struct Row : Method {
  static constexpr auto function = F;
  using Parts = Signature<decltype(F)>;
};

namespace detail {

/// Binds an argument to its place in a `Value`, which an in/out argument writes to.
template <class T>
decltype(auto) bind(Value& value) {
  auto& held = std::get<typename Held<std::remove_cvref_t<T>>::type>(value);
  if constexpr (isInOut<std::remove_cvref_t<T>>) {
    return std::remove_cvref_t<T>(held);
  } else {
    return (held);
  }
}

template <auto F, class... A, std::size_t... I>
Value invoke(void* object, std::span<Value> arguments, std::tuple<A...>*, std::index_sequence<I...>) {
  using Parts = Signature<decltype(F)>;
  auto& owner = *static_cast<typename Parts::Owner*>(object);
  if constexpr (std::is_void_v<typename Parts::Result>) {
    (owner.*F)(bind<A>(arguments[I])...);
    return Missing{};
  } else {
    return (owner.*F)(bind<A>(arguments[I])...);
  }
}

template <auto F>
Value invoke(void* object, std::span<Value> arguments) {
  using Arguments = typename Signature<decltype(F)>::Arguments;
  return invoke<F>(object, arguments, static_cast<Arguments*>(nullptr),
                   std::make_index_sequence<std::tuple_size_v<Arguments>>());
}

template <class... A>
constexpr void takeTypes(Method& method, std::tuple<A...>*) {
  if (method.arguments.size() != sizeof...(A)) throw "a row names as many arguments as its method has";
  std::size_t i = 0;
  ((method.arguments[i].type = typeOf<A>, method.arguments[i].written = isInOut<std::remove_cvref_t<A>>, ++i), ...);
}

}  // namespace detail

/// The row of a method: what it says of itself, and what its member function's type says.
template <auto F>
constexpr Row<F> row(const Method& described) {
  using Parts = Signature<decltype(F)>;
  Row<F> result{described};
  result.result = typeOf<typename Parts::Result>;
  result.invoke = &detail::invoke<F>;
  detail::takeTypes(result, static_cast<typename Parts::Arguments*>(nullptr));
  return result;
}

/// Specialised for each class with
///   static constexpr Identity identity;
///   static constexpr auto rows = std::tuple{row<&C::Method>({.name = ..., .help = ...}), ...};
template <class C>
struct Description;

struct Identity {
  std::string_view name;
  std::string_view help;
  std::string_view header;
  Guid classId;
  Guid interfaceId;
  bool holdsState = false;
  bool qualified = false;
};

namespace detail {

template <class C>
inline constexpr auto methodsOf = std::apply(
    [](const auto&... rows) { return std::array<const Method*, sizeof...(rows)>{&rows...}; }, Description<C>::rows);

template <class C>
std::shared_ptr<void> create() {
  return std::make_shared<C>();
}

}  // namespace detail

/// The erased form of a described class.
template <class C>
inline constexpr Class classOf{Description<C>::identity.name,
                               Description<C>::identity.help,
                               Description<C>::identity.header,
                               Description<C>::identity.classId,
                               Description<C>::identity.interfaceId,
                               Description<C>::identity.holdsState,
                               Description<C>::identity.qualified,
                               detail::methodsOf<C>,
                               &detail::create<C>};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
