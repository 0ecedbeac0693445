#include "orvex/patterns/network.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace orvex::inline ORVEX_COUNTS {

namespace {

/// e to the power of x, less 1, for x from 0 to 40.
double exponentialMinusOne(double x) {
  // x = k ln 2 + f. The first part of ln 2 has so few digits that its product with k is exact.
  constexpr double perDoubling = 0x1.71547652b82fep+0;
  constexpr double lnTwoHigh = 0x1.62e42feep-1;
  constexpr double lnTwoLow = 0x1.a39ef35793c76p-33;
  const double halfMore = x * perDoubling + 0.5;
  const int k = static_cast<int>(halfMore);
  const double f = (x - k * lnTwoHigh) - k * lnTwoLow;
  // The Taylor series of e^f - 1 by Horner's rule; |f| is at most ln 2 / 2, so what is cut off is below 2^-57 of it.
  constexpr int terms = 14;
  double series = 1.0;
  for (int n = terms; n >= 2; --n) series = 1.0 + f / n * series;
  const std::uint64_t powerBits = static_cast<std::uint64_t>(1023 + k) << 52;
  double power = 0.0;
  std::memcpy(&power, &powerBits, sizeof power);
  return power * (f * series) + (power - 1.0);
}

/// Pseudo-random numbers: a linear congruential generator modulo 2^64 with Knuth's multiplier and increment (The Art of
/// Computer Programming 2, MMIX).
class Generator {
 public:
  /// The next number, from -1 on and below 1.
  double next() {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<double>(static_cast<std::int64_t>(state_) >> 11) * 0x1p-52;
  }

 private:
  std::uint64_t state_ = 1;
};

}  // namespace

double hyperbolicTangent(double x) {
  // From 20 on the tangent is 1 in every digit; the comparison lets what is not a number pass.
  const double size = std::fabs(x);
  if (size >= 20.0) return x < 0.0 ? -1.0 : 1.0;
  if (!(size < 20.0)) return x;
  const double grown = exponentialMinusOne(2.0 * size);
  const double tangent = grown / (grown + 2.0);
  return x < 0.0 ? -tangent : tangent;
}

Network::Network(std::size_t inputs)
    : size_(inputs),
      hiddenWeights_(inputs * inputs),
      hiddenBiases_(inputs),
      outputWeights_(inputs),
      hidden_(inputs),
      slopes_(inputs) {
  Generator generator;
  const double range = 1.0 / std::sqrt(static_cast<double>(inputs));
  const auto randomise = [&](std::vector<double>& weights) {
    for (double& weight : weights) weight = generator.next() * range;
  };
  randomise(hiddenWeights_);
  randomise(hiddenBiases_);
  randomise(outputWeights_);
}

double Network::output(std::span<const double> inputs) {
  std::copy(hiddenBiases_.begin(), hiddenBiases_.end(), hidden_.begin());
  const double* weights = hiddenWeights_.data();
  for (std::size_t input = 0; input < size_; ++input, weights += size_) {
    for (std::size_t unit = 0; unit < size_; ++unit) hidden_[unit] += weights[unit] * inputs[input];
  }
  double sum = outputBias_;
  for (std::size_t unit = 0; unit < size_; ++unit) {
    hidden_[unit] = hyperbolicTangent(hidden_[unit]);
    sum += outputWeights_[unit] * hidden_[unit];
  }
  return sum;
}

void Network::learn(std::span<const double> inputs, double target, double rate) {
  const double step = rate * (output(inputs) - target);
  for (std::size_t unit = 0; unit < size_; ++unit) {
    slopes_[unit] = step * outputWeights_[unit] * (1.0 - hidden_[unit] * hidden_[unit]);
    outputWeights_[unit] -= step * hidden_[unit];
    hiddenBiases_[unit] -= slopes_[unit];
  }
  outputBias_ -= step;
  double* weights = hiddenWeights_.data();
  for (std::size_t input = 0; input < size_; ++input, weights += size_) {
    for (std::size_t unit = 0; unit < size_; ++unit) weights[unit] -= slopes_[unit] * inputs[input];
  }
}

bool Network::isFinite() const {
  const auto allFinite = [](const std::vector<double>& weights) {
    return std::all_of(weights.begin(), weights.end(), [](double weight) { return std::isfinite(weight); });
  };
  return allFinite(hiddenWeights_) && allFinite(hiddenBiases_) && allFinite(outputWeights_) &&
         std::isfinite(outputBias_);
}

}  // namespace orvex::inline ORVEX_COUNTS
