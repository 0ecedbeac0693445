#pragma once

#include <cstddef>

#include "orvex/kernels/kernels.h"
#include "orvex/standard/formulas.h"

/// Kernels that have several stages, each of which goes on from the row before, in one pass over the records: what the
/// stages hand to each other is written nowhere. They go on from the values that walks have left, and fill all of the
/// records or none.
namespace orvex::inline ORVEX_COUNTS::kernels {

/// Exponential averages: the factors of two and that of their difference's, and their values as of the record before.
struct Convergence {
  double factors[3];
  double before[3];
};

/// A difference of two averages, the average of that, and how far it is from it.
struct ConvergenceRows {
  double* line;
  double* signal;
  double* histogram;
};

/// The factors of two averages, and their values as of the record before.
struct FastAndSlow {
  double factors[2];
  double before[2];
};

/// The factors of an average and of the average of it, the source's row as of the record before, and the averages of
/// its moves and of their sizes, once and twice.
struct Smoothing {
  double factors[2];
  double source;
  double net[2];
  double whole[2];
};

/// Exponential averages, each of the one before it: the factor of all, their values as of the record before, and the
/// parameters of what is made of them.
struct Cascade {
  static constexpr int most = 6;

  double factor;
  double before[most];
  standard::Parameters parameters;
};

/// What is made of a cascade.
using CascadeKernel = std::size_t (*)(Source source, Cascade averages, Records records, double* out);

struct Chains {
  /// The first average of the source less the second, the average of that, and their difference: of averages as
  /// `Table::exponential` has them, and as `Table::approach` has.
  std::size_t (*convergence)(Source source, Convergence averages, Records records, ConvergenceRows out);
  std::size_t (*approachConvergence)(Source source, Convergence averages, Records records, ConvergenceRows out);

  /// The first average of the source less the second, of averages as `Table::exponential` has them.
  std::size_t (*difference)(Source source, FastAndSlow averages, Records records, double* out);

  /// `formulas::Percentage` of the moves' twice smoothed average and of that of their sizes, of averages as
  /// `Table::approach` has them.
  std::size_t (*trueStrength)(Source source, Smoothing averages, Records records, double* out);

  /// How far the third average moves in a record, in percent: from a row that is 0 not at all. Of averages as
  /// `Table::exponential` has them, and as `Table::approach` has.
  CascadeKernel tripleRate;
  CascadeKernel approachTripleRate;

  /// `formulas::Ratio` of the first average to the second, `TwiceLess` of both, `ThriceLess` of three, and
  /// `Combined` of the sixth to the third, of averages as `Table::approach` has them.
  CascadeKernel ratioOfAverages;
  CascadeKernel doubleAverage;
  CascadeKernel tripleAverage;
  CascadeKernel tillson;
};

/// Those of the level in use; none at `Off`.
const Chains* activeChains() noexcept;

/// Runs a chain of the level in use. Fills nothing at `Off`.
template <class... Parameters, class... Arguments>
std::size_t run(std::size_t (*Chains::*chain)(Parameters...), Arguments... arguments) {
  const Chains* const chains = activeChains();
  return chains == nullptr ? 0 : (chains->*chain)(arguments...);
}

}  // namespace orvex::inline ORVEX_COUNTS::kernels
