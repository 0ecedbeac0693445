#pragma once

#include <cstddef>
#include <span>

#include "orvex/data/counts.h"

/// Column arithmetic: rows in, rows out. A kernel fills the rows of the longest beginning of `records` that it can
/// prove faultless, intermediate values included, and returns how many that are; 0 where it was not written for what it
/// is given. It declines windows that reach outside the column and values that are not finite or so large that an
/// intermediate could overflow. Every row is computed in the definition's own order of operations, so the bits are
/// those of the step that the kernel stands for. Rows are addressed from 1.
namespace orvex::inline ORVEX_COUNTS::kernels {

/// Plain structures: the variants are compiled for different processors and must share no inline function.
struct Source {
  const double* rows;
  std::size_t count;
};

struct Records {
  int first;
  int last;
};

/// Least-squares results, in the order of the columns: all of them, or the forecast or r-squared alone.
struct RegressionRows {
  double* slope;
  double* intercept;
  double* forecast;
  double* rSquared;
};

/// The prices of bars.
struct Bars {
  Source high;
  Source low;
  Source close;
};

struct Cycles {
  int lengths[3];
};

/// Aroon's columns and working space.
struct AroonRows {
  double* up;
  double* down;
  double* oscillator;
  double* extremes;
  double* places;
};

/// What one record of the parabolic stop-and-reverse leaves to the next: its level, the extreme of the trend (0 of the
/// one that does not run) and the acceleration factor.
struct Trend {
  bool isLong;
  double stop;
  double longExtreme;
  double shortExtreme;
  double factor;
};

/// Which of equal values is taken, the first or the last in the column: zeros of either sign are equal, and differ.
enum class Ties { Oldest, Newest };

/// The kernels as one variant of the processor has them.
struct Table {
  /// Sum of the `window` values that end at the record, newest first, divided by `window`.
  std::size_t (*mean)(Source source, int window, Records records, double* out);

  /// The same with weights `window` (newest) to 1 (oldest), divided by the sum of the weights.
  std::size_t (*weightedMean)(Source source, int window, Records records, double* out);

  /// (1 - factor) x the row before + factor x the source, for factors above 0 up to 1. Begins from the row before the
  /// first record.
  std::size_t (*exponential)(Source source, double factor, Records records, double* out);

  /// The row before + (source - the row before) x factor, likewise.
  std::size_t (*approach)(Source source, double factor, Records records, double* out);

  /// The straight line through the `window` values that end at the record, for windows of 2 values or more; counts of
  /// 16 bits alone: of 181 at most. `quality` is the r-squared that a line without one takes over, and becomes that of
  /// the last record.
  std::size_t (*regression)(Source source, int window, Records records, double* quality, RegressionRows out);

  /// The largest of the `window` values that end at the record, in time that does not grow with the window.
  std::size_t (*highest)(Source source, int window, Ties ties, Records records, double* out);

  /// The smallest of them, likewise.
  std::size_t (*lowest)(Source source, int window, Ties ties, Records records, double* out);

  /// The source's latest value that is greater than each of the `neighbours` values on either side, the later ones not
  /// after the record; `latest` before the first. `extremes` is working space of as many rows as the column has; it may
  /// be `out` where the first record is one of the first `neighbours`.
  std::size_t (*peaks)(Source source, int neighbours, Records records, double latest, double* extremes, double* out);

  /// The latest one that is less than them, likewise.
  std::size_t (*valleys)(Source source, int neighbours, Records records, double latest, double* extremes, double* out);

  /// factor x the root of the mean square distance from the record's `center` of the `window` values, newest first,
  /// that end `lag` records before the record.
  std::size_t (*deviation)(Source source, Source center, int window, int lag, double factor, Records records,
                           double* out);

  /// Nothing but the check that every kernel begins with: how many of the source's rows, from the first record on, are
  /// finite and of a size with which no intermediate can overflow.
  std::size_t (*handled)(Source source, Records records);

  /// The source itself.
  std::size_t (*copy)(Source source, Records records, double* out);

  /// center + width x factor, and center - width x factor. `width` may be the rows of `above` or of `below`.
  std::size_t (*around)(Source center, Source width, double factor, Records records, double* above, double* below);

  /// (high + low) / 2.
  std::size_t (*medianPrice)(Source high, Source low, Records records, double* out);

  /// (high + low + close) / 3.
  std::size_t (*typicalPrice)(Source high, Source low, Source close, Records records, double* out);

  /// (high + low + 2 x close) / 4.
  std::size_t (*weightedClose)(Source high, Source low, Source close, Records records, double* out);

  /// (current - prior) / prior x 100, prior being the source's row `lag` records back.
  std::size_t (*rateOfChange)(Source source, int lag, Records records, double* out);

  /// The same, but for a prior of 0 the last rate so far. `rate` is that before the first record, and becomes that of
  /// the last one.
  std::size_t (*rateOfChangeKept)(Source source, int lag, Records records, double* rate, double* out);

  /// (1 - k) x the source's row before + k x its row, k = share x scale.
  std::size_t (*blend)(Source source, Source share, double scale, Records records, double* out);

  /// (1 - k) x the row before + k x the source, k = |momentum / 100|, likewise from the row before the first record.
  std::size_t (*variable)(Source source, Source momentum, Records records, double* out);

  /// Onto `total`: the products, record by record, of how far, up or down, `a` and `b` move from the row before.
  std::size_t (*movementProducts)(Source a, Source b, Records records, double* total);

  /// The largest of high - low and the distances of both to the close before, or 0.
  std::size_t (*trueRange)(Bars bars, Records records, double* out);

  /// How far the high rose, into `up`, and the low fell, into `down`: of both the larger one alone, where they differ
  /// and it is not below 0; all else is 0.
  std::size_t (*directionalMoves)(Source high, Source low, Records records, double* up, double* down);

  /// part x 100 / whole, truncated; 0 where the whole is 0. For parts and wholes that are not below 0.
  std::size_t (*wholePercent)(Source part, Source whole, Records records, double* out);

  /// |a - b| / (a + b) x 100, truncated; 0 where they are equal. For numbers that are not below 0.
  std::size_t (*directionalIndex)(Source a, Source b, Records records, double* out);

  /// ((periods - 1) x the row before + index) / periods, rounded half up, for whole numbers from 0 to 100.
  std::size_t (*averageIndex)(Source index, int periods, Records records, double* out);

  /// The mean of a row and the row before, rounded half up, for numbers that are not below 0.
  std::size_t (*meanHalfUp)(Source source, Records records, double* out);

  /// How far from the beginning of the `window` records before each record, and the record itself, the highest high and
  /// the lowest low stand, in percent of `window`, and the difference. Of equal ones the record's own counts, otherwise
  /// the oldest.
  std::size_t (*aroon)(Source high, Source low, int window, Records records, AroonRows out);

  /// (above - below) / (highest - lowest) x factor.
  std::size_t (*place)(Source above, Source below, Source highest, Source lowest, double factor, Records records,
                       double* out);

  /// (highest - lowest) / the sum of the last `window` moves without their signs, oldest first.
  std::size_t (*rangeToPath)(Source source, Source highest, Source lowest, int window, Records records, double* out);

  /// (up - down) x 100 / (up + down) of the last `window` moves, oldest first; 0 where nothing moved.
  std::size_t (*balanceOfMoves)(Source source, int window, Records records, double* out);

  /// (value - old) / old x 100 + 100, with the value of `lag` records before.
  std::size_t (*momentum)(Source source, int lag, Records records, double* out);

  /// Close - min(low, close before), and the true range that is not cut at 0; not-a-number where a row is left to the
  /// steps, which `ultimate` meets.
  std::size_t (*buyingPressure)(Bars bars, Records records, double* buying, double* range);

  /// ((b1 / r1) x 4 + (b2 / r2) x 2 + b3 / r3) / 7 x 100 of sums over the last records of three cycles, oldest first,
  /// out of the columns of `buyingPressure`.
  std::size_t (*ultimate)(Source buying, Source range, Cycles cycles, Records records, double* out);

  /// The parabolic stop-and-reverse from `trend` on, which it leaves as of the last record that it fills. For steps and
  /// bounds of the factor above 0 up to 1.
  std::size_t (*parabolic)(Source high, Source low, double step, double bound, Trend* trend, Records records,
                           double* out);

  /// The row before + the move of the close from the true low or the true high, whichever way it went.
  std::size_t (*accumulation)(Bars bars, Records records, double* out);

  /// The move of the bar's middle / (volume / range) x 10000; 0 without a range.
  std::size_t (*easeOfMovement)(Source high, Source low, Source volume, Records records, double* out);

  /// 1 for a high above the four before, -1 for a low below the four before, otherwise 0.
  std::size_t (*breakouts)(Source high, Source low, Records records, double* out);

  /// The minuend of `lag` records before less the subtrahend.
  std::size_t (*difference)(Source minuend, int lag, Source subtrahend, Records records, double* out);

  /// (a - b) / b x 100, of b `lag` records before; 0 where b is 0.
  std::size_t (*percentAbove)(Source a, Source b, int lag, Records records, double* out);

  /// (old - row) / old x -100, of the old row `lag` records before; 0 where either is 0.
  std::size_t (*fallInPercent)(Source source, int lag, Records records, double* out);

  /// 1 where a crosses above b (at or below it in the row before, above it now), -1 where it crosses below, otherwise
  /// 0.
  std::size_t (*crossings)(Source a, Source b, Records records, double* out);

  /// The same of a line that has gaps: 0 where it is 0 now or in the row before.
  std::size_t (*penetrations)(Source price, Source line, Records records, double* out);

  /// The row before + the source, likewise from the row before the first record; so are the five that follow.
  std::size_t (*runningTotal)(Source source, Records records, double* out);

  /// The row before + the volume where the price rose, - the volume where it fell.
  std::size_t (*onBalanceVolume)(Source price, Source volume, Records records, double* out);

  /// The price's move as a share of the price before x the volume + the row before.
  std::size_t (*priceVolumeTrend)(Source price, Source volume, Records records, double* out);

  /// The same share x the row before + the row before where the volume rose, the row before elsewhere.
  std::size_t (*positiveVolume)(Source price, Source volume, Records records, double* out);

  /// Likewise where the volume fell.
  std::size_t (*negativeVolume)(Source price, Source volume, Records records, double* out);

  /// The row before + the volume in the direction of the last move beyond +-`tick`. `direction` (1, 0 or -1) is that
  /// before the first record, and becomes that of the last one.
  std::size_t (*tradeVolume)(Source price, Source volume, double tick, int* direction, Records records, double* out);

  /// Wilder's swing: 50 x move / range x reach / `limit`, 0 without a range. `range` is that of the record before the
  /// first, and becomes that of the last one.
  std::size_t (*swing)(Source open, Bars bars, double limit, double* range, Records records, double* out);

  /// (source - base) / base x 100.
  std::size_t (*performance)(Source source, double base, Records records, double* out);

  /// a / b, or `one` where that is 1.
  std::size_t (*ratio)(Source a, Source b, double one, Records records, double* out);

  /// 100 x rise / (rise + fall), 50 of neither, where rise and fall are `means` at the record `known`, which is the
  /// first or the one before it, and (the one before x (`window` - 1) + the record's) / `window` from there on. `means`
  /// become those of the last record.
  std::size_t (*strength)(Source source, int window, Records records, int known, double* means, double* out);

  /// 100 x rising / (rising + falling), sums of typical price x volume over the last `window` records, oldest first, by
  /// where the typical price went; 50 where both are 0, 0 where only their total is.
  std::size_t (*moneyFlowIndex)(Bars bars, Source volume, int window, Records records, double* rising, double* falling,
                                double* out);

  /// The sum of above / below over the last `window` records, oldest first. Rows that it does not fill become 0: their
  /// definition may not write them.
  std::size_t (*ratioSum)(Source above, Source below, int window, Records records, double* terms, double* out);

  /// total x total x (flow / total): the sums over the last `window` records, newest first, of volume and of the
  /// close's place in its range / (the range x volume), where neither is 0.
  std::size_t (*moneyFlow)(Bars bars, Source volume, int window, Records records, double* terms, double* out);

  /// (price - average) / (0.015 x the mean distance of the last `window` prices from it, oldest first); 0 where the
  /// divisor is or where they are all equal.
  std::size_t (*channel)(Source prices, Source averages, int window, Records records, double* out);

  /// source - (highest + lowest) / 2.
  std::size_t (*fromMiddle)(Source source, Source highest, Source lowest, Records records, double* out);

  /// (100 x part) / (whole / 2), 0 where the divisor is.
  std::size_t (*percentOfHalf)(Source part, Source whole, Records records, double* out);
};

/// The instruction sets that there are variants for, from none to the widest.
enum class Level { Off, Baseline, Avx2, Avx2Fma, Avx512 };
inline constexpr Level allLevels[] = {Level::Off, Level::Baseline, Level::Avx2, Level::Avx2Fma, Level::Avx512};

/// The widest level that this processor has.
Level widestLevel() noexcept;

/// The level in use, at first the widest. It changes no result, only the time that it takes; tests and benchmarks set
/// it, for the whole process. A level that the processor lacks becomes the widest that it has.
Level level() noexcept;
void setLevel(Level level) noexcept;

/// The kernels of the level in use; none at `Off`.
const Table* active() noexcept;

inline Source source(std::span<const double> rows) {
  return {rows.data(), rows.size()};
}

/// Runs a kernel of the level in use: `run(&Table::mean, source(...), ...)`. Fills nothing at `Off`.
template <class... Parameters, class... Arguments>
std::size_t run(std::size_t (*Table::*kernel)(Parameters...), Arguments... arguments) {
  const Table* const table = active();
  return table == nullptr ? 0 : (table->*kernel)(arguments...);
}

}  // namespace orvex::inline ORVEX_COUNTS::kernels
