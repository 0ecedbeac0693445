#include "orvex/standard/parts.h"

#include <algorithm>

#include "orvex/kernels/chains.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS::standard {

namespace {

using kernels::Records;
using kernels::Source;
using kernels::StandardTable;
using kernels::Table;

Source source(const Series& series) {
  return rowsOf(series.column);
}

}  // namespace

Series simple(Call& call, const Series& x, int periods) {
  return call.by(
      x.first + periods - 1,
      [&](Records records, double* rows) {
        return call.proves(kernels::run(&Table::mean, source(x), periods, records, rows), records, x, periods - 1);
      },
      [&]<class T>(At<T> at, int r) {
        T total = 0;
        for (int j = 0; j < periods; ++j) total += at(x, r - j);
        return total / periods;
      });
}

namespace {

/// The column that begins at `first` with `seed(at)`, out of x from row `from` on, and goes on as the kernel and the
/// step do, from row to row.
template <class Seed, class Kernel, class Step>
Series chain(Call& call, const Series& x, Place from, Place first, Seed seed, Kernel kernel, Step step) {
  return call.recursion(
      first,
      [&](Records records, double* rows) {
        return seeded(
            call, std::array{&x}, from, first, records, std::array{rows},
            [&] { return std::array{seed(At<double>())}; }, [&](Records rest) { return kernel(rest, rows); });
      },
      [&]<class T>(At<T> at, const Series& own, int r) { return r > first ? step(at, at(own, r - 1), r) : seed(at); });
}

}  // namespace

Series smoothed(Call& call, const Series& x, int periods, double factor) {
  const Place first = x.first + periods - 1;
  return chain(
      call, x, x.first, first,
      [&]<class T>(At<T> at) {
        T total = 0;
        for (Place j = first; j >= x.first; --j) total += at(x, static_cast<int>(j));
        return total / periods;
      },
      [&](Records records, double* rows) { return kernels::run(&Table::approach, source(x), factor, records, rows); },
      [&]<class T>(At<T> at, T before, int r) { return before + (at(x, r) - before) * factor; });
}

Series fromFirst(Call& call, const Series& x, int periods) {
  const double factor = exponentialFactor(periods);
  return chain(
      call, x, x.first, x.first, [&](auto at) { return at(x, static_cast<int>(x.first)); },
      [&](Records records, double* rows) {
        return kernels::run(&Table::exponential, source(x), factor, records, rows);
      },
      [&]<class T>(At<T> at, T before, int r) { return (1.0 - factor) * before + factor * at(x, r); });
}

Series leakySum(Call& call, const Series& x, int periods) {
  const Place first = std::max<Place>(periods, 2);
  return chain(
      call, x, x.first, first,
      [&]<class T>(At<T> at) {
        T total = 0;
        for (Place j = x.first; j <= first; ++j) total += at(x, static_cast<int>(j));
        return total;
      },
      [&](Records records, double* rows) {
        return kernels::run(&StandardTable::leakySum, source(x), periods, records, rows);
      },
      [&]<class T>(At<T> at, T before, int r) { return before - before / periods + at(x, r); });
}

Series exponential(Call& call, const Series& x, int periods) {
  return smoothed(call, x, periods, exponentialFactor(periods));
}

Series wilder(Call& call, const Series& x, int periods) {
  return smoothed(call, x, periods, 1.0 / periods);
}

Series weighted(Call& call, const Series& x, int periods) {
  const double total = 0.5 * periods * (periods + 1.0);
  return call.by(
      x.first + periods - 1,
      [&](Records records, double* rows) {
        return call.proves(kernels::run(&Table::weightedMean, source(x), periods, records, rows), records, x,
                           periods - 1);
      },
      [&]<class T>(At<T> at, int r) {
        T sum = 0;
        for (int j = 0; j < periods; ++j) sum += (periods - j) * at(x, r - j);
        return sum / total;
      });
}

Series triangular(Call& call, const Series& x, int periods) {
  return simple(call, simple(call, x, (periods + 1) / 2), periods / 2 + 1);
}

Series kaufman(Call& call, const Series& x, int periods) {
  const Place first = x.first + periods;
  const Series steps = call.of<formulas::Distance>(x.first + 1, {x, {x, 1}});
  const Series mean = simple(call, steps, periods);
  const Series share = call.of<formulas::Efficiency>(first, {x, {x, periods}, mean}, {{static_cast<double>(periods)}});
  return call.recursion(
      first,
      [&](Records records, double* rows) -> std::size_t {
        // The row before the first is lent for the value that the average begins from.
        double& before = rows[records.first - 2];
        const double lent = before;
        if (records.first == first) before = x.rows[records.first - 2];
        const std::size_t done = kernels::run(&StandardTable::follow, source(x), source(share), records, rows);
        before = lent;
        return done;
      },
      [&]<class T>(At<T> at, const Series& own, int r) {
        const T before = r > first ? at(own, r - 1) : at(x, r - 1);
        return before + (at(x, r) - before) * at(share, r);
      });
}

namespace {

/// Exponential averages, each of the one before it, and what `finish` and the kernel make of them.
template <int Stages, class Finish>
Series cascade(Call& call, const Series& x, int periods, kernels::CascadeKernel kernels::Chains::*kernel,
               const Parameters& parameters, Finish finish) {
  std::array<Series, Stages> averages;
  const auto compute = [&](Call& within, const Series& from) {
    for (int i = 0; i < Stages; ++i) averages[i] = exponential(within, i == 0 ? from : averages[i - 1], periods);
    return std::array{finish(within, averages)};
  };
  const Place head = x.first + Stages * (Place{periods} - 1) + 1;
  const auto made = call.inOnePass<1>(x, head, compute, [&](Records records, const std::array<double*, 1>& rows) {
    kernels::Cascade known{exponentialFactor(periods), {}, parameters};
    for (int i = 0; i < Stages; ++i) known.before[i] = lastOf(*averages[i].column);
    return kernels::run(kernel, source(x), known, records, rows[0]);
  });
  return made ? made->front() : compute(call, x).front();
}

}  // namespace

Series tripleRate(Call& call, const Series& x, int periods) {
  return cascade<3>(call, x, periods, &kernels::Chains::approachTripleRate, {},
                    [](Call& within, const std::array<Series, 3>& e) { return rate(within, e[2], 1); });
}

Series ratioOfAverages(Call& call, const Series& x, int periods) {
  const Parameters one{{1}};
  return cascade<2>(
      call, x, periods, &kernels::Chains::ratioOfAverages, one,
      [&](Call& within, const std::array<Series, 2>& e) { return ofBoth<formulas::Ratio>(within, e[0], e[1], one); });
}

Series tillson(Call& call, const Series& x, int periods, double factor) {
  const double square = factor * factor;
  const double c1 = -(square * factor);
  const double c2 = 3.0 * (square - c1);
  const double c3 = -6.0 * square - 3.0 * (factor - c1);
  const double c4 = 1.0 + 3.0 * factor - c1 + 3.0 * square;
  const Parameters weights{{c1, c2, c3, c4}};
  return cascade<6>(call, x, periods, &kernels::Chains::tillson, weights,
                    [&](Call& within, const std::array<Series, 6>& e) {
                      return within.of<formulas::Combined>(e[5].first, {e[5], e[4], e[3], e[2]}, weights);
                    });
}

Place lookback(Integer kind, Integer periods) {
  const Place window = Place{periods.value()} - 1;
  if (window < 1) return 0;
  switch (static_cast<Kind>(kind.value())) {
    case Kind::Double:
      return 2 * window;
    case Kind::Triple:
      return 3 * window;
    case Kind::Kaufman:
      return window + 1;
    case Kind::Mesa:
      return 32;
    case Kind::Tillson:
      return 6 * window;
    default:
      return window;
  }
}

Series average(Call& call, Integer kind, const Series& x, Integer periods) {
  const int p = periods.value();
  if (p <= 1) return x;
  switch (static_cast<Kind>(kind.value())) {
    case Kind::Exponential:
      return exponential(call, x, p);
    case Kind::Weighted:
      return weighted(call, x, p);
    case Kind::Double:
      return cascade<2>(
          call, x, p, &kernels::Chains::doubleAverage, {},
          [](Call& within, const std::array<Series, 2>& e) { return ofBoth<formulas::TwiceLess>(within, e[0], e[1]); });
    case Kind::Triple:
      return cascade<3>(call, x, p, &kernels::Chains::tripleAverage, {},
                        [](Call& within, const std::array<Series, 3>& e) {
                          return within.of<formulas::ThriceLess>(e[2].first, {e[0], e[1], e[2]});
                        });
    case Kind::Triangular:
      return triangular(call, x, p);
    case Kind::Kaufman:
      return kaufman(call, x, p);
    case Kind::Mesa:
      return mesa(call, x, 0.5, 0.05)[0];
    case Kind::Tillson:
      return tillson(call, x, p, 0.7);
    default:
      return simple(call, x, p);
  }
}

Series sum(Call& call, const Series& x, int periods) {
  return call.by(
      x.first + periods - 1,
      [&](Records records, double* rows) {
        return call.proves(kernels::run(&StandardTable::sum, source(x), periods, records, rows), records, x,
                           periods - 1);
      },
      [&]<class T>(At<T> at, int r) {
        T total = 0;
        for (int j = 0; j < periods; ++j) total += at(x, r - j);
        return total;
      });
}

Series highest(Call& call, const Series& x, int periods) {
  return call.by(
      x.first + periods - 1,
      [&](Records records, double* rows) {
        return call.proves(kernels::run(&Table::highest, source(x), periods, kernels::Ties::Newest, records, rows),
                           records, x, periods - 1);
      },
      [&]<class T>(At<T> at, int r) {
        T best = at(x, r - periods + 1);
        for (int j = r - periods + 2; j <= r; ++j)
          if (at(x, j) >= best) best = at(x, j);
        return best;
      });
}

Series lowest(Call& call, const Series& x, int periods) {
  return call.by(
      x.first + periods - 1,
      [&](Records records, double* rows) {
        return call.proves(kernels::run(&Table::lowest, source(x), periods, kernels::Ties::Newest, records, rows),
                           records, x, periods - 1);
      },
      [&]<class T>(At<T> at, int r) {
        T best = at(x, r - periods + 1);
        for (int j = r - periods + 2; j <= r; ++j)
          if (at(x, j) <= best) best = at(x, j);
        return best;
      });
}

Series deviation(Call& call, const Series& x, const Series& mean, int periods, double factor) {
  return call.by(
      mean.first,
      [&](Records records, double* rows) {
        const std::size_t done =
            kernels::run(&Table::deviation, source(x), source(mean), periods, 0, factor, records, rows);
        return call.proves(call.proves(done, records, x, periods - 1), records, mean);
      },
      [&]<class T>(At<T> at, int r) {
        T total = 0;
        for (int j = 0; j < periods; ++j) {
          const T distance = at(x, r - j) - at(mean, r);
          total += distance * distance;
        }
        return factor * root(total / periods);
      });
}

namespace {

/// The age of the extreme of the last values: the newest of those that none beats.
template <class Beats>
Series ageOf(Call& call, const Series& x, int periods, decltype(&StandardTable::highestAge) kernel, Beats beats) {
  const Place first = x.first + periods - 1;
  return call.recursion(
      first,
      [&](Records records, double* rows) {
        return call.proves(kernels::run(kernel, source(x), periods, records, rows), records, x, periods - 1);
      },
      [&]<class T>(At<T> at, const Series& own, int r) {
        int age = r > first ? static_cast<int>(double(at(own, r - 1))) + 1 : periods;
        if (age == periods) {
          --age;
          for (int j = periods - 2; j >= 0; --j)
            if (!beats(at(x, r - age), at(x, r - j))) age = j;
        } else if (!beats(at(x, r - age), at(x, r))) {
          age = 0;
        }
        return T(age);
      });
}

}  // namespace

Series highestAge(Call& call, const Series& x, int periods) {
  return ageOf(call, x, periods, &StandardTable::highestAge, [](auto a, auto b) { return a > b; });
}

Series lowestAge(Call& call, const Series& x, int periods) {
  return ageOf(call, x, periods, &StandardTable::lowestAge, [](auto a, auto b) { return a < b; });
}

Series difference(Call& call, const Series& a, const Series& b) {
  return ofBoth<formulas::Difference>(call, a, b);
}

Series product(Call& call, const Series& a, const Series& b) {
  return ofBoth<formulas::Product>(call, a, b);
}

Series percentAbove(Call& call, const Series& a, const Series& b) {
  return ofBoth<formulas::PercentRate>(call, a, b);
}

Series momentum(Call& call, const Series& x, int lag) {
  return call.of<formulas::Difference>(x.first + lag, {x, {x, lag}});
}

Series rate(Call& call, const Series& x, int lag) {
  return call.of<formulas::PercentRate>(x.first + lag, {x, {x, lag}});
}

Series medianPrice(Call& call, Prices& prices) {
  return call.of<formulas::Middle>(1, {prices.high(), prices.low()});
}

Series typicalPrice(Call& call, Prices& prices) {
  return call.of<formulas::TypicalPrice>(1, {prices.high(), prices.low(), prices.close()});
}

Series trueRange(Call& call, Prices& prices) {
  return call.of<formulas::TrueRange>(2, {prices.high(), prices.low(), {prices.close(), 1}});
}

Series averageTrueRange(Call& call, Prices& prices, int periods) {
  return wilder(call, trueRange(call, prices), periods);
}

namespace {

/// What the formula makes of Wilder's means of rises and falls. Without a move both shrink alike, and what is made of
/// them stays: it is not left to their rounding.
template <class Formula>
Series ofMoves(Call& call, const Series& x, int periods, decltype(&StandardTable::shareOfMoves) kernel) {
  const Place first = x.first + periods;
  const auto step = [&]<class T>(At<T> at, kernels::Moves& moves, int r) {
    T means[] = {moves.rise, moves.fall};
    const auto add = [&](int j) {
      const T move = at(x, j) - at(x, j - 1);
      if (move > T(0)) means[0] = means[0] + move;
      if (move < T(0)) means[1] = means[1] - move;
    };
    if (r == first) {
      for (int j = r - periods + 1; j <= r; ++j) add(j);
    } else {
      for (T& mean : means) mean = mean * (periods - 1);
      add(r);
    }
    for (T& mean : means) mean = mean / periods;
    const bool stays = r > first && at(x, r) == at(x, r - 1);
    const T row = stays ? T(moves.row) : Formula::of(means, {}, 0);
    moves = {means[0], means[1], row};
    return std::array{row};
  };
  const auto fill = [&](Records records, const std::array<double*, 1>& rows, kernels::Moves& moves) {
    return kernels::run(kernel, source(x), periods, &moves, records, rows[0]);
  };
  return begun<1>(call, std::array{&x}, x.first, first, kernels::Moves(), step, fill).front();
}

/// What the formula makes of the highest high and the lowest low of the last P values, and of x.
template <class Formula>
Series ofExtremes(Call& call, const Series& high, const Series& low, const Series& x, int periods,
                  kernels::ExtremesKernel StandardTable::*kernel) {
  const Place first = std::max({high.first + periods - 1, low.first + periods - 1, x.first});
  const auto made = call.atOnce(first, [&](Records records, double* rows) {
    std::size_t done = kernels::run(kernel, source(high), source(low), source(x), periods, records, rows);
    for (const Series* one : {&high, &low}) done = call.proves(done, records, *one, periods - 1);
    return call.proves(done, records, x);
  });
  if (made) return *made;
  const Series top = highest(call, high, periods), bottom = lowest(call, low, periods);
  if constexpr (Formula::columns == 2) {
    return call.of<Formula>(first, {top, bottom});
  } else {
    return call.of<Formula>(first, {top, bottom, x});
  }
}

}  // namespace

Series relativeStrength(Call& call, const Series& x, int periods) {
  return ofMoves<formulas::ShareOfBoth>(call, x, periods, &StandardTable::shareOfMoves);
}

Series chandeMomentum(Call& call, const Series& x, int periods) {
  return ofMoves<formulas::Balance>(call, x, periods, &StandardTable::balanceOfMoves);
}

Series middleOfRange(Call& call, const Series& high, const Series& low, int periods) {
  return ofExtremes<formulas::Middle>(call, high, low, high, periods, &StandardTable::middleOfExtremes);
}

Series stochastic(Call& call, const Series& high, const Series& low, const Series& close, int periods) {
  return ofExtremes<formulas::Place>(call, high, low, close, periods, &StandardTable::placeInExtremes);
}

Series stochasticBelow(Call& call, const Series& high, const Series& low, const Series& close, int periods) {
  return ofExtremes<formulas::PlaceBelow>(call, high, low, close, periods, &StandardTable::placeBelowExtremes);
}

Series ultimate(Call& call, const Series& pressure, const Series& range, const std::array<int, 3>& cycles) {
  return call.by(
      std::max(pressure.first, range.first) + cycles[2] - 1,
      [&](Records records, double* rows) {
        const kernels::Cycles lengths{{cycles[0], cycles[1], cycles[2]}};
        return kernels::run(&StandardTable::ultimate, source(pressure), source(range), lengths, records, rows);
      },
      [&]<class T>(At<T> at, int r) {
        T sums[6];
        T bought = 0, whole = 0;
        int age = 0;
        for (int i = 0; i < 3; ++i) {
          for (; age < cycles[i]; ++age) {
            bought += at(pressure, r - age);
            whole += at(range, r - age);
          }
          sums[i] = bought;
          sums[i + 3] = whole;
        }
        return formulas::Ultimate::of(sums, {}, 0);
      });
}

Series percentRank(Call& call, const Series& x, int periods) {
  const Series below = call.by(
      x.first + periods,
      [&](Records records, double* rows) {
        return call.proves(kernels::run(&StandardTable::below, source(x), periods, records, rows), records, x, periods);
      },
      [&]<class T>(At<T> at, int r) {
        int count = 0;
        for (int j = r - periods; j < r; ++j) count += at(x, j) < at(x, r) ? 1 : 0;
        return T(count);
      });
  return call.of<formulas::PercentOf>(below.first, {below}, {{static_cast<double>(periods)}});
}

Series moneyFlowVolume(Call& call, Prices& prices) {
  return call.of<formulas::MoneyFlow>(1, {prices.high(), prices.low(), prices.close(), prices.volume()});
}

Series accumulation(Call& call, Prices& prices) {
  const Series &high = prices.high(), &low = prices.low(), &close = prices.close(), &volume = prices.volume();
  const auto flow = [&]<class T>(At<T> at, int r) {
    const T bar[] = {at(high, r), at(low, r), at(close, r), at(volume, r)};
    return formulas::MoneyFlow::of(bar, {}, 0);
  };
  const kernels::Bars bars = {source(high), source(low), source(close)};
  return call.recursion(
      1,
      [&](Records records, double* rows) {
        return seeded(
            call, std::array{&high, &low, &close, &volume}, 1, 1, records, std::array{rows},
            [&] { return std::array{flow(At<double>(), 1)}; },
            [&](Records rest) {
              return kernels::run(&StandardTable::moneyFlowTotal, bars, source(volume), rest, rows);
            });
      },
      [&]<class T>(At<T> at, const Series& own, int r) { return r == 1 ? flow(at, r) : at(own, r - 1) + flow(at, r); });
}

}  // namespace orvex::inline ORVEX_COUNTS::standard
