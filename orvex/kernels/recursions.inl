// Rows that follow from the row before: averages, and chains of averages and what is computed from them.
#pragma once

#include <cstddef>

#include "orvex/kernels/chains.h"
#include "orvex/kernels/chains.inl"
#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"

namespace {

/// Whether averages move by such a factor.
bool isShare(double factor) {
  return factor > 0.0 && factor <= 1.0;
}

/// row = (1 - factor) x the row before + factor x the source.
struct Exponential {
  double kept, factor;

  explicit Exponential(double share) : kept(1.0 - share), factor(share) {}

  template <class T>
  T after(const T& before, const T& x) const {
    return T::all(kept) * before + T::all(factor) * x;
  }
};

/// row = the row before + (the source - the row before) x factor.
struct Approach {
  double factor;

  explicit Approach(double share) : factor(share) {}

  template <class T>
  T after(const T& before, const T& x) const {
    return before + (x - before) * T::all(factor);
  }
};

template <class Average>
struct AverageChain : Chain<1, 1, 1> {
  Average average;

  template <class T>
  void next(T (&state)[1], const T (&in)[1], T (&out)[1], int) const {
    out[0] = state[0] = average.after(state[0], in[0]);
  }
};

/// A chain of one column: the rows of the records, after the row before the first.
template <class C>
std::size_t recursion(const C& chain, Source source, Records records, double memory, double* out) {
  const std::ptrdiff_t first = records.first - 1;
  std::ptrdiff_t count = present(source, records, 0);
  if (count == 0 || first < 1 || !isHandled(out[first - 1])) return 0;
  double state[] = {out[first - 1]};
  if (!runChain(chain, {source.rows + first}, {out + first}, state, count, memory)) {
    count = provable(source, records, 0);
    if (!runChain(chain, {source.rows + first}, {out + first}, state, count, memory)) return 0;
  }
  return static_cast<std::size_t>(count);
}

std::size_t exponential(Source source, double factor, Records records, double* out) {
  if (!isShare(factor)) return 0;
  return recursion(AverageChain<Exponential>{{}, Exponential(factor)}, source, records, 1.0 / factor, out);
}

std::size_t approach(Source source, double factor, Records records, double* out) {
  if (!isShare(factor)) return 0;
  return recursion(AverageChain<Approach>{{}, Approach(factor)}, source, records, 1.0 / factor, out);
}

/// How many records it takes to forget all but 1 / e of what averages of these factors began with, one of the other.
double memoryOf(double factor, int stages) {
  // What the last of several averages keeps of it grows with the records before it fades: twice and three times as many
  // e-th parts are well beyond it.
  return (1.0 + 0.25 * (stages - 1)) / factor;
}

using orvex::kernels::ConvergenceRows;

/// The difference of two averages, its average, and the difference of these.
template <class Average>
struct ConvergenceChain : Chain<1, 3, 3> {
  // No state has the last difference.
  static constexpr bool checksOutputs = true;

  Average shorter, longer, signal;

  template <class T>
  void next(T (&state)[3], const T (&in)[1], T (&out)[3], int) const {
    state[0] = shorter.after(state[0], in[0]);
    state[1] = longer.after(state[1], in[0]);
    const T line = state[0] - state[1];
    state[2] = signal.after(state[2], line);
    out[0] = line;
    out[1] = state[2];
    out[2] = line - state[2];
  }
};

template <int Count>
bool areHandled(const double (&values)[Count]) {
  bool handled = true;
  for (const double value : values) handled = handled && isHandled(value);
  return handled;
}

template <class Average>
std::size_t convergence(Source source, orvex::kernels::Convergence averages, Records records, ConvergenceRows out) {
  const std::ptrdiff_t first = records.first - 1, count = present(source, records, 0);
  const auto& [shorter, longer, signal] = averages.factors;
  if (count == 0 || !areHandled(averages.before)) return 0;
  if (!isShare(shorter) || !isShare(longer) || !isShare(signal)) return 0;
  const ConvergenceChain<Average> chain{{}, Average(shorter), Average(longer), Average(signal)};
  const double slowest = smaller(smaller(shorter, longer), signal);
  const bool done =
      runChain(chain, {source.rows + first}, {out.line + first, out.signal + first, out.histogram + first},
               averages.before, count, memoryOf(slowest, 2));
  return done ? static_cast<std::size_t>(count) : 0;
}

std::size_t variable(Source source, Source momentum, Records records, double* out) {
  std::ptrdiff_t count = least(provable(source, records, 0), present(momentum, records, 0));
  if (count == 0 || records.first < 2 || !isHandled(out[records.first - 2])) return 0;
  const double* const x = source.rows + (records.first - 1);
  const double* const percent = momentum.rows + (records.first - 1);
  double* const row = out + (records.first - 1);
  double previous = row[-1];
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    // Up to a share of 2 a row is no larger than the row before and the source's twice: 2^31 of them stay in range.
    if (!(percent[i] <= 200.0 && percent[i] >= -200.0)) return static_cast<std::size_t>(i);
    const double share = percent[i] / 100.0;
    const double k = share > 0.0 ? share : 0.0 - share;
    row[i] = previous = (1.0 - k) * previous + k * x[i];
  }
  return static_cast<std::size_t>(count);
}

std::size_t movementProducts(Source a, Source b, Records records, double* total) {
  if (!isHandled(*total)) return 0;
  const std::ptrdiff_t count = least(provable(a, records, 1), provable(b, records, 1));
  constexpr std::ptrdiff_t piece = 256;
  double products[piece];
  double sum = *total;
  for (std::ptrdiff_t done = 0; done < count; done += piece) {
    const std::ptrdiff_t rows = least(piece, count - done);
    const double* const x = a.rows + (records.first - 1 + done);
    const double* const y = b.rows + (records.first - 1 + done);
    eachBlock<4>(0, rows, [=, &products]<int Lanes, int Count>(std::ptrdiff_t row) {
      using P = Pack<Lanes>;
      const P zero = P::all(0.0);
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        const std::ptrdiff_t at = row + i * Lanes;
        const P moveX = P::load(x + at) - P::load(x + at - 1);
        const P moveY = P::load(y + at) - P::load(y + at - 1);
        (larger(moveX, zero - moveX) * larger(moveY, zero - moveY)).store(products + at);
      }
    });
    for (std::ptrdiff_t i = 0; i < rows; ++i) sum += products[i];
  }
  *total = sum;
  return static_cast<std::size_t>(count);
}

}  // namespace
