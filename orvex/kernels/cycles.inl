// The dominant cycle of a price.
#pragma once

#include <cstddef>

#include "orvex/kernels/chains.inl"
#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/standard/discriminator.h"

namespace {

using orvex::standard::Discriminator;

/// With one output or two, as `Discriminator::show` has them.
template <int Outputs>
struct DiscriminatorChain : Chain<4, Outputs, static_cast<int>(Discriminator::values)> {
  template <class T>
  void next(T (&state)[Discriminator::values], const T (&in)[4], T (&out)[Outputs], int turn) const {
    Discriminator::take(state, in, turn);
    Discriminator::show(state, out);
  }
};

template <int Outputs>
std::size_t discriminate(Source smooth, double* carried, Records records, double* const (&columns)[Outputs]) {
  const std::ptrdiff_t first = records.first - 1, count = provable(smooth, records, 6);
  if (count == 0) return 0;
  double state[Discriminator::values];
  for (std::size_t i = 0; i < Discriminator::values; ++i) {
    state[i] = carried[i];
    if (!isHandled(state[i])) return 0;
  }
  const double* const own = smooth.rows + first;
  double* rows[Outputs];
  for (int i = 0; i < Outputs; ++i) rows[i] = columns[i] + first;
  // How soon it forgets depends on the prices: nine of ten stretches of a random walk have met the one before after
  // some eight hundred records.
  constexpr double memory = 20.0;
  if (!runChain(DiscriminatorChain<Outputs>(), {own, own - 2, own - 4, own - 6}, rows, state, count, memory)) return 0;
  for (std::size_t i = 0; i < Discriminator::values; ++i) carried[i] = state[i];
  return static_cast<std::size_t>(count);
}

std::size_t dominantCycle(Source smooth, double* carried, Records records, double* length) {
  return discriminate<1>(smooth, carried, records, {length});
}

std::size_t phasor(Source smooth, double* carried, Records records, double* inPhase, double* quadrature) {
  return discriminate<2>(smooth, carried, records, {inPhase, quadrature});
}

}  // namespace
