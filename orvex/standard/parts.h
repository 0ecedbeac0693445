#pragma once

#include <algorithm>
#include <array>

#include "orvex/data/integer.h"
#include "orvex/data/record_set.h"
#include "orvex/kernels/kernels.h"
#include "orvex/standard/computation.h"

/// The computations that several methods of `Standard` are made of. Each takes columns as they are, however many of
/// their first rows are not computed, and gives a column whose first row follows from there.
namespace orvex::inline ORVEX_COUNTS::standard {

/// The kinds of average, by the numbers that TA-Lib gives them.
enum class Kind { Simple, Exponential, Weighted, Double, Triple, Triangular, Kaufman, Mesa, Tillson };

/// How many records after the first of its column an average of that kind begins.
Place lookback(Integer kind, Integer periods);

/// The average of that kind; the column itself of 1 record.
Series average(Call& call, Integer kind, const Series& x, Integer periods);

/// The mean of the last P values.
Series simple(Call& call, const Series& x, int periods);
/// value + (x - value) x factor, from the mean of the first P values on.
Series smoothed(Call& call, const Series& x, int periods, double factor);
/// 2 / (P + 1), by which an exponential average of P records moves.
inline double exponentialFactor(int periods) {
  return 2.0 / (periods + 1.0);
}
/// The same with that factor, and with 1 / P, Wilder's.
Series exponential(Call& call, const Series& x, int periods);
Series wilder(Call& call, const Series& x, int periods);
/// Weights P (newest) to 1.
Series weighted(Call& call, const Series& x, int periods);
Series triangular(Call& call, const Series& x, int periods);
Series kaufman(Call& call, const Series& x, int periods);
Series tillson(Call& call, const Series& x, int periods, double factor);
/// How far the exponential average of the average of the average moves in a record, in percent.
Series tripleRate(Call& call, const Series& x, int periods);
/// The exponential average / the exponential average of it; 1 where that is 0.
Series ratioOfAverages(Call& call, const Series& x, int periods);
/// The MESA adaptive average and the one that follows it.
std::array<Series, 2> mesa(Call& call, const Series& x, double fastLimit, double slowLimit);

/// factor x the value + (1 - factor) x the row before, 2 / (P + 1) being the factor, from the column's first value on.
Series fromFirst(Call& call, const Series& x, int periods);
/// The row before - the row before / P + the value, from the sum of the values up to record max(P, 2) on.
Series leakySum(Call& call, const Series& x, int periods);

/// The sum, the largest and the smallest of the last P values.
Series sum(Call& call, const Series& x, int periods);
Series highest(Call& call, const Series& x, int periods);
Series lowest(Call& call, const Series& x, int periods);
/// How many records ago the largest and the smallest of the last P values were, the newest of equal ones.
Series highestAge(Call& call, const Series& x, int periods);
Series lowestAge(Call& call, const Series& x, int periods);
/// The root of the mean square distance of the last P values from their mean, times `factor`.
Series deviation(Call& call, const Series& x, const Series& mean, int periods, double factor);

/// The formula of two columns, from the record on at which the later of them begins.
template <class Formula>
Series ofBoth(Call& call, const Series& a, const Series& b, const Parameters& parameters = {}) {
  return call.of<Formula>(std::max(a.first, b.first), {a, b}, parameters);
}

/// What the kernel of a walk does whose first row comes out of the sources' rows from `from` on: `seed()` gives that
/// row of each column, `fill(records)` writes what follows, and looks at the records' rows in all sources. How many
/// rows that makes.
template <std::size_t Sources, std::size_t Columns, class Seed, class Fill>
std::size_t seeded(Call& call, const std::array<const Series*, Sources>& sources, Place from, Place first,
                   kernels::Records records, const std::array<double*, Columns>& rows, Seed seed, Fill fill) {
  const auto prove = [&](std::size_t done, kernels::Records seen) {
    for (const Series* source : sources) done = call.proves(done, seen, *source);
    return done;
  };
  std::size_t done = 0;
  if (records.first == first) {
    // What the seed is made of is looked at here, so that no sum in it can overflow, and it itself, since a quotient
    // may.
    const kernels::Records seeds = {static_cast<int>(from), records.first};
    const auto all = static_cast<std::size_t>(first - from) + 1;
    for (const Series* source : sources) {
      if (kernels::run(&kernels::Table::handled, rowsOf(source->column), seeds) != all) return 0;
    }
    const std::array<double, Columns> values = seed();
    for (const double value : values) {
      if (value - value != 0.0) return 0;
    }
    for (std::size_t i = 0; i < Columns; ++i) rows[i][first - 1] = values[i];
    prove(all, seeds);
    done = 1;
    ++records.first;
  }
  if (records.first > records.last) return done;
  return done + prove(fill(records), records);
}

/// The columns of which row r is `step(at, state, r)`, from row `first` on, which comes out of the sources' rows from
/// `from` on. The rows after it are first handed to `kernel(records, rows, state)`, which looks at the records' rows in
/// all sources and leaves the state as of the last record that it fills.
template <int Columns, std::size_t Sources, class State, class Step, class Kernel>
std::array<Series, Columns> begun(Call& call, const std::array<const Series*, Sources>& sources, Place from,
                                  Place first, State begin, Step step, Kernel kernel) {
  const auto fill = [&](kernels::Records records, const std::array<double*, Columns>& rows, State& state) {
    const State before = state;
    const std::size_t done = seeded(
        call, sources, from, first, records, rows, [&] { return step(At<double>(), state, static_cast<int>(first)); },
        [&](kernels::Records rest) { return kernel(rest, rows, state); });
    if (done == 0) state = before;
    return done;
  };
  return call.columns<Columns>(first, fill, begin, step);
}

/// a - b, (a - b) / b x 100 (0 where b is 0) and a x b.
Series difference(Call& call, const Series& a, const Series& b);
Series percentAbove(Call& call, const Series& a, const Series& b);
Series product(Call& call, const Series& a, const Series& b);
/// x - x(r - lag), and the same in percent of the older value, 0 where that is 0.
Series momentum(Call& call, const Series& x, int lag);
Series rate(Call& call, const Series& x, int lag);

/// The columns of bars, taken when they are needed first.
class Prices {
 public:
  Prices(Call& call, std::shared_ptr<RecordSet> set) : call_(call), set_(std::move(set)) {}

  const Series& open() { return column(0, "Open"); }
  const Series& high() { return column(1, "High"); }
  const Series& low() { return column(2, "Low"); }
  const Series& close() { return column(3, "Close"); }
  const Series& volume() { return column(4, "Volume"); }

 private:
  const Series& column(std::size_t index, std::string_view name) {
    Series& series = columns_[index];
    if (series.column == nullptr) series = call_.take(set_, name);
    return series;
  }

  Call& call_;
  std::shared_ptr<RecordSet> set_;
  std::array<Series, 5> columns_;
};

/// (high + low) / 2 and (high + low + close) / 3.
Series medianPrice(Call& call, Prices& prices);
Series typicalPrice(Call& call, Prices& prices);

/// The largest of high - low and the distances of both to the close before, from record 2 on.
Series trueRange(Call& call, Prices& prices);
/// Its average after Wilder.
Series averageTrueRange(Call& call, Prices& prices, int periods);

/// 100 x the share of the rises in all moves, averaged after Wilder; 0 without a move.
Series relativeStrength(Call& call, const Series& x, int periods);

/// 100 x the difference of both in all moves, likewise.
Series chandeMomentum(Call& call, const Series& x, int periods);

/// (highest high + lowest low) / 2.
Series middleOfRange(Call& call, const Series& high, const Series& low, int periods);

/// 100 x ((close - lowest) / (highest - lowest)), 0 without a range: 100 at the top.
Series stochastic(Call& call, const Series& high, const Series& low, const Series& close, int periods);
/// -100 x ((highest - close) / (highest - lowest)), likewise: 0 at the top.
Series stochasticBelow(Call& call, const Series& high, const Series& low, const Series& close, int periods);

/// 100 x (4 a + 2 b + c) / 7, of the sums of the pressures over those of the ranges in three windows, from the shortest
/// to the longest; 0 for one without a range.
Series ultimate(Call& call, const Series& pressure, const Series& range, const std::array<int, 3>& cycles);

/// How many of the P values before are below the value, in percent.
Series percentRank(Call& call, const Series& x, int periods);

/// ((close - low) - (high - close)) / (high - low) x volume, 0 without a range.
Series moneyFlowVolume(Call& call, Prices& prices);
/// Its sum from record 1 on.
Series accumulation(Call& call, Prices& prices);

}  // namespace orvex::inline ORVEX_COUNTS::standard
