#pragma once

#include <cstddef>

#include "orvex/kernels/kernels.h"
#include "orvex/standard/formulas.h"

/// The kernels that `Standard` has beside the house's: the same rules hold (kernels.h).
namespace orvex::inline ORVEX_COUNTS::kernels {

/// A column, and how many records before the record its row is taken from.
struct Operand {
  Source source;
  int lag;
};

/// Sums of squares and products of the distances from two columns' means.
struct ScatterRows {
  double* xx;
  double* xy;
  double* yy;
};

/// How the factor of a parabolic stop grows in a trend: by `step`, from `start` to `maximum`.
struct Acceleration {
  double start, step, maximum;

  bool operator==(const Acceleration&) const = default;
};

/// What a record of it leaves to the next: the stop of that one, and extreme and factor of the trend so far.
struct Stop {
  bool isLong = true;
  double level = 0.0;
  double extreme = 0.0;
  double factor = 0.0;
};

/// A parabolic stop's rules: `offset` is the share of itself by which a stop that turns stands off, and stops of
/// falling trends are negative where `isSigned`.
struct StopRules {
  Acceleration longSide, shortSide;
  double offset = 0.0;
  bool isSigned = false;
};

/// The bands round the middle of bars, as of a record: each moves toward the price only, until a close has crossed it.
struct Channel {
  double top = 0.0;
  double bottom = 0.0;
  bool isUp = true;
};

/// A bar of means: its open and its close.
struct Body {
  double start = 0.0;
  double end = 0.0;
};

/// The columns of bars.
struct BarRows {
  double* open;
  double* high;
  double* low;
  double* close;
};

/// Prices times volumes, and volumes, since an average began.
struct Traded {
  double flow = 0.0;
  double volume = 0.0;
};

/// Means of rises and falls, and what was made of them.
struct Moves {
  double rise = 0.0;
  double fall = 0.0;
  double row = 0.0;
};

/// What is made of the extremes of windows.
using ExtremesKernel = std::size_t (*)(Source high, Source low, Source x, int window, Records records, double* out);

/// What is made of the means of a window, weighted and plain.
using LineKernel = std::size_t (*)(Source source, int window, Records records, double* out);

struct StandardTable {
  /// What the formula of that place in `Formulas` makes of its columns. Stops before a row that is too large (2^200),
  /// or an operand's of which is, so that what it handles is proven for all that follows; of a formula that tells,
  /// operands are proven to be finite.
  std::size_t (*pointwise[standard::Formulas::size])(const Operand* operands, const standard::Parameters& parameters,
                                                     Records records, double* out);

  /// The row before - the row before / `periods` + the source, from the row before the first record on; so are the
  /// two that follow.
  std::size_t (*leakySum)(Source source, int periods, Records records, double* out);

  /// (the row before x (`periods` - 1) + the source) / `periods`.
  std::size_t (*leakyMean)(Source source, int periods, Records records, double* out);

  /// The row before + (the source - the row before) x the share.
  std::size_t (*follow)(Source source, Source share, Records records, double* out);

  /// Sum of the `window` values that end at the record, newest first.
  std::size_t (*sum)(Source source, int window, Records records, double* out);

  /// `formulas::Ultimate` of the sums over the cycles that end at the record, newest first. REQUIRES: cycles from the
  /// shortest to the longest.
  std::size_t (*ultimate)(Source buying, Source range, Cycles cycles, Records records, double* out);

  /// The row before + `formulas::MoneyFlow` of the record.
  std::size_t (*moneyFlowTotal)(Bars bars, Source volume, Records records, double* out);

  /// The flows of typical prices x volumes / the volumes since the last record whose session is not the one before's, 0
  /// of no volume; of a session without rows since the beginning. `sums` become those of the last record.
  std::size_t (*meanPrice)(Bars bars, Source volume, Source session, Traded* sums, Records records, double* out);

  /// `formulas::ShareOfBoth` of the sums of typical price x volume over the `window` records, newest first, by whether
  /// the typical price rose or fell. `rising` and `falling` are working space of as many rows as the columns have.
  std::size_t (*moneyFlowIndex)(Bars bars, Source volume, int window, Records records, double* rising, double* falling,
                                double* out);

  /// `formulas::LineEnd` and its like of the means of the `window` values that end at the record, weighted 1 (oldest)
  /// to `window` and plain, newest first. REQUIRES: a window of 2 or more.
  LineKernel lineEnd;
  LineKernel lineSlope;
  LineKernel lineStart;
  LineKernel lineAhead;

  /// How many of the `window` values before the record are below its own.
  std::size_t (*below)(Source source, int window, Records records, double* out);

  /// The sums over the `window` values that end at the record, newest first. A sum of squares of equal values is 0.
  std::size_t (*scatter)(Source x, Source y, Source meanX, Source meanY, int window, Records records, ScatterRows out);

  /// The numbers of the records of the largest (smallest) of the `window` values that end at the record: of equal ones
  /// the newest, and the oldest.
  std::size_t (*highestRecord)(Source source, int window, Records records, double* newest, double* oldest);
  std::size_t (*lowestRecord)(Source source, int window, Records records, double* newest, double* oldest);

  /// How many records before the record the newest of them is.
  std::size_t (*highestAge)(Source source, int window, Records records, double* out);
  std::size_t (*lowestAge)(Source source, int window, Records records, double* out);

  /// The stop at which a record finds or leaves the trend, held back by the bars of the record and of the one before,
  /// for factors up to 1. `stop` becomes that of the last record.
  std::size_t (*parabolicStop)(Source high, Source low, StopRules rules, Stop* stop, Records records, double* out);

  /// middle -+ factor x range, held as `Channel` says: the band that the price is inside of, and 1 of the lower, -1 of
  /// the upper. `channel` becomes that of the last record.
  std::size_t (*superTrend)(Source middle, Source range, Source close, double factor, Channel* channel, Records records,
                            double* level, double* trend);

  /// The middle of the body before, `formulas::AveragePrice`, and the largest and the smallest of them and the bar.
  /// `body` becomes that of the last record.
  std::size_t (*heikinAshi)(Source open, Bars bars, Body* body, Records records, BarRows out);

  /// The length of the dominant cycle of smoothed prices, and its components (discriminator.h). `carried` are the
  /// numbers that it carries: as of the record before the first, and then as of the last one.
  std::size_t (*dominantCycle)(Source smooth, double* carried, Records records, double* length);
  std::size_t (*phasor)(Source smooth, double* carried, Records records, double* inPhase, double* quadrature);

  /// `formulas::ShareOfBoth` and `formulas::Balance` of the means of rises and of falls, which go on from `moves`: (the
  /// mean x (`periods` - 1) + the move or 0) / `periods`. Where the source stays, so does the row. `moves` become those
  /// of the last record.
  std::size_t (*shareOfMoves)(Source source, int periods, Moves* moves, Records records, double* out);
  std::size_t (*balanceOfMoves)(Source source, int periods, Moves* moves, Records records, double* out);

  /// `formulas::Middle`, `Place` and `PlaceBelow` of the highest high and the lowest low of the `window` values that
  /// end at the record, and of x there. Declines windows of more than 256.
  ExtremesKernel middleOfExtremes;
  ExtremesKernel placeInExtremes;
  ExtremesKernel placeBelowExtremes;
};

/// The kernels of the level in use; none at `Off`.
const StandardTable* activeStandard() noexcept;

/// Runs a kernel of the level in use. Fills nothing at `Off`.
template <class... Parameters, class... Arguments>
std::size_t run(std::size_t (*StandardTable::*kernel)(Parameters...), Arguments... arguments) {
  const StandardTable* const table = activeStandard();
  return table == nullptr ? 0 : (table->*kernel)(arguments...);
}

}  // namespace orvex::inline ORVEX_COUNTS::kernels
