#include "orvex/catalogue/catalogue.h"

#include <array>
#include <type_traits>

namespace orvex::inline ORVEX_COUNTS::catalogue {

namespace {

template <class... C>
constexpr std::array<const Class*, sizeof...(C)> all(std::type_identity<std::tuple<C...>>) {
  return {&classOf<C>...};
}

constexpr auto described = all(std::type_identity<Classes>());

}  // namespace

std::span<const Class* const> classes() {
  return described;
}

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
