#include "orvex/automation/server_classes.h"

#include <array>
#include <tuple>

#include "orvex/automation/dual_interface.h"
#include "orvex/catalogue/catalogue.h"

namespace orvex::inline ORVEX_COUNTS::automation {

namespace {

template <class... C>
constexpr std::array<const ServerClass*, sizeof...(C)> all(std::type_identity<std::tuple<C...>>) {
  return {&serverClass<C>...};
}

constexpr auto served = all(std::type_identity<catalogue::Classes>());

}  // namespace

std::span<const ServerClass* const> serverClasses() noexcept {
  return served;
}

template <class C>
const ServerClass& serverClassOf() noexcept {
  return serverClass<C>;
}
template const ServerClass& serverClassOf<Field>() noexcept;
template const ServerClass& serverClassOf<Note>() noexcept;
template const ServerClass& serverClassOf<RecordSet>() noexcept;
template const ServerClass& serverClassOf<Database>() noexcept;

}  // namespace orvex::inline ORVEX_COUNTS::automation
