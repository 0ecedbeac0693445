// Kernels over a window of records of one column.
#pragma once

#include <cstddef>

#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/quotients.inl"
#include "orvex/kernels/sliding.inl"

namespace {

struct Mean : PlainSum {
  static constexpr bool isChecked = true;
  Divisor length;

  template <class P>
  P result(P sum) const {
    return sum / length;
  }
};

std::size_t mean(Source source, int window, Records records, double* out) {
  if (window < 1) return 0;
  return slideSum<8, 12>({source.rows, nullptr, out}, window, records.first - 1, present(source, records, window - 1),
                         Mean{{}, Divisor(window)});
}

struct WeightedMean {
  static constexpr bool hasCenter = false, isChecked = true;
  static constexpr std::ptrdiff_t longEnough = widestLanes == 4 ? longestSliding + 1 : 80;
  Divisor weights;

  template <class P>
  P next(P sum, P value, P place, P) const {
    return sum + place * value;
  }
  template <class P>
  P result(P sum) const {
    return sum / weights;
  }
};

std::size_t weightedMean(Source source, int window, Records records, double* out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count = present(source, records, window - 1);
  if (count == 0) return 0;
  double total = 0.0;
  for (int weight = 1; weight <= window; ++weight) total += weight;
  return slideSum<8, 12>({source.rows, nullptr, out}, window, records.first - 1, count, WeightedMean{Divisor(total)});
}

using orvex::kernels::RegressionRows;

/// A line's values, its quality, or both.
template <bool hasLine, bool hasQuality>
std::size_t regressionParts(Source source, int window, Records records, double* quality, RegressionRows out) {
  // Below 2 the line has no slope; from 182 on the square of a position does not fit a count of 16 bits.
  if (window < 2 || (ORVEX_COUNT_BITS == 16 && window > 181)) return 0;
  const std::ptrdiff_t count = provable(source, records, window - 1);
  if (count == 0) return 0;
  const double n = window;
  const Divisor length(n);
  double sumX = 0.0;
  double sumXX = 0.0;
  for (int x = 1; x <= window; ++x) {
    sumX += x;
    sumXX += static_cast<double>(x) * x;
  }
  const double qXX = sumXX - sumX * sumX / n;
  const Divisor width(qXX);
  // Half the window, a tie to the even number.
  const int center = window % 4 == 3 ? window / 2 + 1 : window / 2;
  const double* const y = source.rows;
  const double kept = *quality;
  const std::ptrdiff_t first = records.first - 1;
  eachBlock<4>(first, count, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    P sumY[Count] = {};
    P sumYY[Count] = {};
    P sumXY[Count] = {};
    for (std::ptrdiff_t j = 1; j <= window; ++j) {
      const P position = P::all(static_cast<double>(j));
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        const P value = P::load(y + row + i * Lanes - window + j);
        sumY[i] = sumY[i] + value;
        if constexpr (hasQuality) sumYY[i] = sumYY[i] + value * value;
        sumXY[i] = sumXY[i] + position * value;
      }
    }
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
      const std::ptrdiff_t at = row + i * Lanes;
      const P qXY = sumXY[i] - P::all(sumX) * sumY[i] / length;
      if constexpr (hasLine) {
        const P slope = qXY / width;
        const P intercept = P::all(1.0 / n) * sumY[i] - P::all(center) * slope;
        if (out.slope != nullptr) slope.store(out.slope + at);
        if (out.intercept != nullptr) intercept.store(out.intercept + at);
        (P::all(n) * slope + intercept).store(out.forecast + at);
      }
      if constexpr (hasQuality) {
        const P qYY = sumYY[i] - sumY[i] * sumY[i] / length;
        const P above = qXY * qXY;
        const P below = qYY * P::all(qXX);
        (above / below).store(out.rSquared + at);
        if (!hasZero(above) && !hasZero(below)) continue;
        for (int lane = 0; lane < Lanes; ++lane) {
          // A line without a slope, or through equal values, keeps the quality of the record before.
          if (above.v[lane] == 0.0 || below.v[lane] == 0.0) {
            out.rSquared[at + lane] = at + lane == first ? kept : out.rSquared[at + lane - 1];
          }
        }
      }
    }
  });
  if (hasQuality && count > 0) *quality = out.rSquared[first + count - 1];
  return static_cast<std::size_t>(count);
}

std::size_t regression(Source source, int window, Records records, double* quality, RegressionRows out) {
  if (out.rSquared == nullptr) return regressionParts<true, false>(source, window, records, quality, out);
  if (out.forecast == nullptr) return regressionParts<false, true>(source, window, records, quality, out);
  return regressionParts<true, true>(source, window, records, quality, out);
}

struct Deviation {
  static constexpr bool hasCenter = true, isChecked = true;
  static constexpr std::ptrdiff_t longEnough = 60;
  Divisor length;
  double factor;

  template <class P>
  P next(P sum, P value, P, P center) const {
    const P distance = value - center;
    return sum + distance * distance;
  }
  template <class P>
  P result(P sum) const {
    return spread(factor, sum) * root(sum / length);
  }
};

std::size_t deviation(Source source, Source center, int window, int lag, double factor, Records records, double* out) {
  if (window < 1 || lag < 0 || !isHandled(factor)) return 0;
  const std::ptrdiff_t count =
      least(present(source, records, static_cast<std::ptrdiff_t>(window) - 1 + lag), present(center, records, 0));
  return slideSum<4, 6>({source.rows - lag, center.rows, out}, window, records.first - 1, count,
                        Deviation{Divisor(window), factor});
}

}  // namespace
