#pragma once

#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include "orvex/automation/errors.h"
#include "orvex/automation/module.h"
#include "orvex/automation/server_object.h"
#include "orvex/automation/wire.h"
#include "orvex/catalogue/describe.h"

/// The dual interface of a class: a virtual table that is made from its description. The entries are typed function
/// pointers, so that the whole table is a constant.
///
/// What the templates make of one row, as an example. The description of `MovingAverage` begins with
///
///   row<&MovingAverage::SimpleMovingAverage>("SimpleMovingAverage", ..., {Data, Source, Periods, aliasOr("")}, ...)
///
/// for `std::shared_ptr<RecordSet> SimpleMovingAverage(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
/// Integer Periods, InOut<std::string> Alias)`. So `ThunkOf<MovingAverage, 0>::function()`, the first entry after those
/// of IDispatch, is
///
///   HRESULT callForResult(ServerObject* self, IUnknown** data, IUnknown** Source, short* Periods, BSTR* Alias,
///                         IUnknown** Result) noexcept {
///     if (Result == nullptr) return E_POINTER;
///     *Result = nullptr;
///     const Hold hold(self);  // the host may let go of its reference from inside a yield
///     return guarded(interfaceId, [&] {
///       std::tuple parameters(Parameter<std::shared_ptr<Database>>(...), ..., Parameter<InOut<std::string>>(...));
///       try {
///         *Result = Wire<std::shared_ptr<RecordSet>>::out(average.SimpleMovingAverage(parameters...));
///       } catch (...) {
///         write back what changed, here Alias; throw;
///       }
///       write back what changed;
///     });
///   }
namespace orvex::inline ORVEX_COUNTS::automation {

template <class A, bool ByValue>
using Passed = std::conditional_t<ByValue, typename Parameter<A>::Type, typename Parameter<A>::Type*>;

/// The function that stands in the table for row `I` of the description of `C`.
template <class C, std::size_t I, class Arguments, class Places>
struct Thunk;

template <class C, std::size_t I, class... A, std::size_t... Place>
struct Thunk<C, I, std::tuple<A...>, std::index_sequence<Place...>> {
  static constexpr const auto& row = std::get<I>(catalogue::Description<C>::rows);
  using Row = std::remove_cvref_t<decltype(row)>;
  using Result = typename Row::Parts::Result;

  static constexpr auto function() {
    if constexpr (std::is_void_v<Result>) {
      return &call;
    } else {
      return &callForResult<typename Wire<std::remove_cvref_t<Result>>::Type>;
    }
  }

 private:
  /// Calls the member function and hands its result, if it has one, to `deliver`.
  template <class Deliver>
  static HRESULT run(ServerObject* self, Deliver&& deliver,
                     Passed<A, row.arguments[Place].byValue>&... passed) noexcept {
    const Hold hold(self);
    return guarded(self->served().interfaceId, [&] {
      std::tuple<Parameter<A>...> parameters(
          typename Parameter<A>::Incoming{place<A, row.arguments[Place].byValue>(passed), row.arguments[Place]}...);
      const auto writeBack = [&] { (std::get<Place>(parameters).writeBack(), ...); };
      auto& object = *static_cast<C*>(self->object().get());
      try {
        deliver([&]() -> decltype(auto) { return (object.*Row::function)(std::get<Place>(parameters).get()...); });
      } catch (...) {
        // What was written by then reaches the caller even of a call that fails.
        writeBack();
        throw;
      }
      writeBack();
    });
  }

  template <class Argument, bool ByValue>
  static typename Parameter<Argument>::Type* place(Passed<Argument, ByValue>& passed) {
    if constexpr (ByValue) {
      return &passed;
    } else {
      return passed;
    }
  }

  static HRESULT STDMETHODCALLTYPE call(ServerObject* self,
                                        Passed<A, row.arguments[Place].byValue>... passed) noexcept {
    return run(
        self, [](const auto& method) { method(); }, passed...);
  }

  template <class Out>
  static HRESULT STDMETHODCALLTYPE callForResult(ServerObject* self, Passed<A, row.arguments[Place].byValue>... passed,
                                                 Out* result) noexcept {
    if (result == nullptr) return E_POINTER;
    *result = Out{};
    return run(
        self, [&](const auto& method) { *result = Wire<std::remove_cvref_t<Result>>::out(method()); }, passed...);
  }
};

template <class C, std::size_t I>
using ThunkOf =
    Thunk<C, I, typename std::tuple_element_t<I, decltype(catalogue::Description<C>::rows)>::Parts::Arguments,
          std::make_index_sequence<std::tuple_size_v<
              typename std::tuple_element_t<I, decltype(catalogue::Description<C>::rows)>::Parts::Arguments>>>;

/// The entries from row `I` on, one after the other.
template <class C, std::size_t I = 0,
          bool More = (I < std::tuple_size_v<std::remove_cvref_t<decltype(catalogue::Description<C>::rows)>>)>
struct MethodSlots {};

template <class C, std::size_t I>
struct MethodSlots<C, I, true> {
  decltype(ThunkOf<C, I>::function()) slot = ThunkOf<C, I>::function();
  MethodSlots<C, I + 1> rest{};
};

template <class C>
struct VirtualTable {
  DispatchSlots dispatch{};
  MethodSlots<C> methods{};
};

template <class C>
inline constexpr VirtualTable<C> virtualTable{};

template <class C>
ServerObject* makeObject() {
  const auto object = std::make_shared<C>();
  if constexpr (requires { object->binding; }) {
    return wrap(object);
  } else {
    return new ServerObject(serverClassOf<C>(), object, nullptr);
  }
}

template <class C>
inline constexpr ServerClass serverClass{catalogue::classOf<C>, guidOf(catalogue::Description<C>::identity.interfaceId),
                                         &virtualTable<C>, &makeObject<C>};

}  // namespace orvex::inline ORVEX_COUNTS::automation
