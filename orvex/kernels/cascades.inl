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

struct DifferenceChain : Chain<1, 1, 2> {
  static constexpr bool checksOutputs = true;

  Exponential fast, slow;

  template <class T>
  void next(T (&state)[2], const T (&in)[1], T (&out)[1], int) const {
    state[0] = fast.after(state[0], in[0]);
    state[1] = slow.after(state[1], in[0]);
    out[0] = state[0] - state[1];
  }
};

std::size_t differenceOfAverages(Source source, orvex::kernels::FastAndSlow averages, Records records, double* out) {
  const std::ptrdiff_t first = records.first - 1, count = present(source, records, 0);
  const auto& [fast, slow] = averages.factors;
  if (count == 0 || !areHandled(averages.before) || !isShare(fast) || !isShare(slow)) return 0;
  const DifferenceChain chain{{}, Exponential(fast), Exponential(slow)};
  const double memory = memoryOf(smaller(fast, slow), 1);
  const bool done = runChain(chain, {source.rows + first}, {out + first}, averages.before, count, memory);
  return done ? static_cast<std::size_t>(count) : 0;
}

/// The state: the averages of the moves, those of their sizes, and the source's row before.
struct TrueStrengthChain : Chain<1, 1, 5> {
  static constexpr bool checksOutputs = true;

  Approach first, second;

  template <class T>
  void next(T (&state)[5], const T (&in)[1], T (&out)[1], int turn) const {
    const T move = in[0] - state[4];
    state[0] = first.after(state[0], move);
    state[1] = second.after(state[1], state[0]);
    state[2] = first.after(state[2], magnitude(move));
    state[3] = second.after(state[3], state[2]);
    state[4] = in[0];
    const T both[] = {state[1], state[3]};
    out[0] = orvex::standard::formulas::Percentage::of(both, orvex::standard::Parameters(), turn);
  }
};

std::size_t trueStrength(Source source, orvex::kernels::Smoothing averages, Records records, double* out) {
  const std::ptrdiff_t first = records.first - 1, count = present(source, records, 0);
  double state[] = {averages.net[0], averages.net[1], averages.whole[0], averages.whole[1], averages.source};
  const auto& [once, twice] = averages.factors;
  if (count == 0 || !areHandled(state) || !isShare(once) || !isShare(twice)) return 0;
  const TrueStrengthChain chain{{}, Approach(once), Approach(twice)};
  const double memory = memoryOf(smaller(once, twice), 2);
  const bool done = runChain(chain, {source.rows + first}, {out + first}, state, count, memory);
  return done ? static_cast<std::size_t>(count) : 0;
}

}  // namespace
