// Averages of averages, and what formulas make of them.
#pragma once

#include <cstddef>

#include "orvex/kernels/chains.h"
#include "orvex/kernels/chains.inl"
#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/recursions.inl"
#include "orvex/standard/formulas.h"

namespace {

using orvex::kernels::Cascade;

/// The formula of some of the averages, by their numbers: 1 is that of the source, and 0 the last one's row before.
template <class Average, int Stages, class Formula, int... Picked>
struct CascadeChain : Chain<1, 1, Stages> {
  static_assert(Stages <= Cascade::most);
  static constexpr bool checksOutputs = true;

  Average average;
  orvex::standard::Parameters parameters;

  template <class T>
  void next(T (&state)[Stages], const T (&in)[1], T (&out)[1], int turn) const {
    T rows[Stages + 1];
    rows[0] = state[Stages - 1];
    unroll<0, Stages>([&](auto i) {
      state[i.value] = average.after(state[i.value], i.value == 0 ? in[0] : rows[i.value]);
      rows[i.value + 1] = state[i.value];
    });
    const T picked[] = {rows[Picked]...};
    out[0] = Formula::of(picked, parameters, turn);
  }
};

template <class Average, int Stages, class Formula, int... Picked>
std::size_t cascade(Source source, Cascade averages, Records records, double* out) {
  const std::ptrdiff_t first = records.first - 1, count = present(source, records, 0);
  double before[Stages];
  for (int i = 0; i < Stages; ++i) before[i] = averages.before[i];
  if (count == 0 || !isShare(averages.factor) || !areHandled(before)) return 0;
  const CascadeChain<Average, Stages, Formula, Picked...> chain{{}, Average(averages.factor), averages.parameters};
  const bool done =
      runChain(chain, {source.rows + first}, {out + first}, before, count, memoryOf(averages.factor, Stages));
  return done ? static_cast<std::size_t>(count) : 0;
}

}  // namespace
