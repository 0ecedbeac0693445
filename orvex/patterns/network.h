#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS {

/// The hyperbolic tangent to within three units in the last place, from basic operations alone: the standard library's
/// differs from platform to platform.
double hyperbolicTangent(double x);

/// A feed-forward network of n inputs, one hidden layer of n tanh units and one linear output, that learns by gradient
/// descent on half the square of its error (Rumelhart, Hinton and Williams, Learning representations by
/// back-propagating errors, Nature 323, 1986). It begins from fixed pseudo-random weights between -1 / sqrt(n) and
/// 1 / sqrt(n), and its sums run over the inputs, and over the units, from the first to the last after the bias: its
/// bits are the same everywhere.
class Network {
 public:
  explicit Network(std::size_t inputs);

  /// The output for these inputs.
  /// REQUIRES: as many inputs as the network has, as everywhere below.
  double output(std::span<const double> inputs);

  /// One step of the weights towards `target`.
  void learn(std::span<const double> inputs, double target, double rate);

  /// Whether every weight is a finite number.
  bool isFinite() const;

 private:
  std::size_t size_;
  std::vector<double> hiddenWeights_;  // of the first input to all units, of the second input, ...
  std::vector<double> hiddenBiases_;
  std::vector<double> outputWeights_;
  double outputBias_ = 0.0;
  std::vector<double> hidden_;  // what the units gave last
  std::vector<double> slopes_;
};

}  // namespace orvex::inline ORVEX_COUNTS
