// The kernels of `Standard`.
#pragma once

#include <cstddef>

#include "orvex/kernels/chains.inl"
#include "orvex/kernels/extremes.inl"
#include "orvex/kernels/pack.inl"
#include "orvex/kernels/pointwise.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/quotients.inl"
#include "orvex/kernels/recursions.inl"
#include "orvex/kernels/sliding.inl"
#include "orvex/kernels/standard.h"
#include "orvex/kernels/strength.inl"
#include "orvex/kernels/totals.inl"
#include "orvex/kernels/windows.inl"

namespace {

using orvex::kernels::Operand;
using orvex::kernels::ScatterRows;

// What formulas do beside arithmetic.
template <int Lanes>
Pack<Lanes> over(Pack<Lanes> a, Pack<Lanes> b, int turn) {
  return quotient(a, b, turn);
}
template <int Lanes>
Pack<Lanes> overOr(Pack<Lanes> a, Pack<Lanes> b, double otherwise, int turn) {
  return whereEqual(b, Pack<Lanes>::all(0.0), Pack<Lanes>::all(otherwise), quotient(a, b, turn));
}
template <int Lanes>
Pack<Lanes> part(Pack<Lanes> x, const Divisor& n) {
  return x / n;
}
template <int Lanes>
Pack<Lanes> part(Pack<Lanes> x, double n) {
  return x / Divisor(n);
}
/// Where no high is below its low, the three distances' largest is that of the outermost two: rounding keeps their
/// order. Comparisons would hide what is no number elsewhere; it is added to the row, which is otherwise as it was.
template <int Lanes>
Pack<Lanes> rangeFrom(Pack<Lanes> high, Pack<Lanes> low, Pack<Lanes> close) {
  if (areAtLeast(high, low)) [[likely]]
    return larger(high, close) - smaller(low, close);
  const Pack<Lanes> nothing =
      (high * Pack<Lanes>::all(0.0) + low * Pack<Lanes>::all(0.0)) + close * Pack<Lanes>::all(0.0);
  return orvex::standard::rangeFrom<Pack<Lanes>>(high, low, close) + nothing;
}

/// Every row by the formula. What comes out is looked at in the same pass, and what is read where that does not tell:
/// the sums of it all, scaled, are not finite where anything is too large or no number.
template <class Formula>
std::size_t pointwise(const Operand* operands, const StandardParameters& given, Records records, double* out) {
  using P = WidestPack;
  constexpr int columns = Formula::columns;
  constexpr int packs = 4;
  struct Columns {
    const double* rows[columns];
  } x;
  std::ptrdiff_t count = records.last - records.first + 1;
  for (int i = 0; i < columns; ++i) {
    count = least(count, present(operands[i].source, records, operands[i].lag));
    x.rows[i] = operands[i].source.rows - operands[i].lag;
  }
  const StandardParameters parameters = given;
  const auto fill = [=]<class Q>(std::ptrdiff_t row, int turn, Q& read, Q& written) {
    Q values[columns];
    ORVEX_UNROLL for (int i = 0; i < columns; ++i) values[i] = Q::load(x.rows[i] + row);
    const Q result = Formula::of(values, parameters, turn);
    result.store(out + row);
    written = plusProduct(written, result, Q::all(inputScale));
    if constexpr (!Formula::tells) {
      ORVEX_UNROLL for (int i = 0; i < columns; ++i) read = plusProduct(read, values[i], Q::all(inputScale));
    }
  };
  const auto isProven = [=](std::ptrdiff_t row) {
    Pack<1> read = {}, written = {};
    fill(row, 0, read, written);
    return (read.v[0] + written.v[0]) * 0.0 == 0.0;
  };
  std::ptrdiff_t done = 0;
  while (done < count) {
    const std::ptrdiff_t first = records.first - 1 + done;
    const std::ptrdiff_t rows = nextPiece(out + first, count - done);
    P read[packs] = {}, written[packs] = {};
    std::ptrdiff_t row = first;
    for (; row + packs * widestLanes <= first + rows; row += packs * widestLanes) {
      ORVEX_UNROLL for (int i = 0; i < packs; ++i) fill(row + i * widestLanes, i, read[i], written[i]);
    }
    P sum = {};
    ORVEX_UNROLL for (int i = 0; i < packs; ++i) sum = sum + (read[i] + written[i]) * P::all(0.0);
    // A sum may be too large where no row is.
    const std::ptrdiff_t known = isZero(sum) ? row : first;
    for (row = known; row < first + rows; ++row) {
      if (!isProven(row)) return static_cast<std::size_t>(row - (records.first - 1));
    }
    done += rows;
  }
  return static_cast<std::size_t>(done);
}

struct LeakySumChain : Chain<1, 1, 1> {
  Divisor length;

  template <class T>
  void next(T (&state)[1], const T (&in)[1], T (&out)[1], int) const {
    out[0] = state[0] = state[0] - state[0] / length + in[0];
  }
};

std::size_t leakySum(Source source, int periods, Records records, double* out) {
  if (periods < 1) return 0;
  return recursion(LeakySumChain{{}, Divisor(periods)}, source, records, periods, out);
}

struct LeakyMeanChain : Chain<1, 1, 1> {
  double kept;
  Divisor length;

  template <class T>
  void next(T (&state)[1], const T (&in)[1], T (&out)[1], int) const {
    out[0] = state[0] = (state[0] * T::all(kept) + in[0]) / length;
  }
};

std::size_t leakyMean(Source source, int periods, Records records, double* out) {
  if (periods < 1) return 0;
  const LeakyMeanChain chain{{}, static_cast<double>(periods - 1), Divisor(periods)};
  return recursion(chain, source, records, periods, out);
}

/// The means of rises and falls, the row before of the source, and that of the result.
template <class Formula>
struct MovesChain : Chain<1, 1, 4> {
  static constexpr bool checksOutputs = true;

  MeanMovesChain means;

  template <class T>
  void next(T (&state)[4], const T (&in)[1], T (&out)[1], int turn) const {
    const T before = state[2];
    T moves[] = {state[0], state[1], state[2]}, both[2];
    means.next(moves, in, both, turn);
    for (int i = 0; i < 3; ++i) state[i] = moves[i];
    state[3] = out[0] = whereEqual(in[0], before, state[3], Formula::of(both, StandardParameters(), turn));
  }
};

template <class Formula>
std::size_t ofMoves(Source source, int periods, orvex::kernels::Moves* moves, Records records, double* out) {
  const std::ptrdiff_t count = provable(source, records, 1), first = records.first - 1;
  if (count == 0 || periods < 1 || !isHandled(moves->rise) || !isHandled(moves->fall)) return 0;
  const double* const x = source.rows + first;
  double state[] = {moves->rise, moves->fall, x[-1], moves->row};
  const MovesChain<Formula> chain{{}, {{}, static_cast<double>(periods - 1), Divisor(periods)}};
  if (!runChain(chain, {x}, {out + first}, state, count, periods)) return 0;
  *moves = {state[0], state[1], state[3]};
  return static_cast<std::size_t>(count);
}

struct FollowChain : Chain<2, 1, 1> {
  template <class T>
  void next(T (&state)[1], const T (&in)[2], T (&out)[1], int) const {
    out[0] = state[0] = state[0] + (in[0] - state[0]) * in[1];
  }
};

std::size_t follow(Source source, Source share, Records records, double* out) {
  const std::ptrdiff_t count = least(present(source, records, 0), present(share, records, 0)),
                       first = records.first - 1;
  if (count == 0 || first < 1 || !isHandled(out[first - 1])) return 0;
  // How soon it forgets depends on the shares. A guess: where a stretch has not met the one before it, it goes on
  // alone.
  constexpr double memory = 20.0;
  double state[] = {out[first - 1]};
  const bool done =
      runChain(FollowChain(), {source.rows + first, share.rows + first}, {out + first}, state, count, memory);
  return done ? static_cast<std::size_t>(count) : 0;
}

std::size_t moneyFlowTotal(orvex::kernels::Bars bars, Source volume, Records records, double* out) {
  const Source columns[] = {bars.high, bars.low, bars.close, volume};
  std::ptrdiff_t count = records.last - records.first + 1;
  for (const Source& column : columns) count = least(count, provable(column, records, 0));
  return totals(records.first - 1, count, out, [=]<class P>(std::ptrdiff_t row) {
    const P bar[] = {P::load(columns[0].rows + row), P::load(columns[1].rows + row), P::load(columns[2].rows + row),
                     P::load(columns[3].rows + row)};
    return orvex::standard::formulas::MoneyFlow::of(bar, StandardParameters(), 0);
  });
}

std::size_t windowSum(Source source, int window, Records records, double* out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count = provable(source, records, window - 1);
  slideSum<8, 12>({source.rows, nullptr, out}, window, records.first - 1, count, PlainSum());
  return static_cast<std::size_t>(count);
}

template <class Formula>
std::size_t lineOf(Source source, int window, Records records, double* out) {
  const Divisor weights(0.5 * window * (window + 1.0)), length(window);
  const Divisor parameters[] = {Divisor(window - 1.0)};
  return slide<4, 4>({source.rows, nullptr, out}, window, WeightedMean::longEnough, records.first - 1,
                     present(source, records, window - 1), [=]<class Block>(const Block& block) {
                       using P = typename Block::P;
                       P weighted[Block::count] = {};
                       P plain[Block::count] = {};
                       block.newestFirst(window, [&](int i, std::ptrdiff_t age, P value) {
                         weighted[i] = weighted[i] + block.number(window - age) * value;
                         plain[i] = plain[i] + value;
                       });
                       ORVEX_UNROLL for (int i = 0; i < Block::count; ++i) {
                         const P means[] = {weighted[i] / weights, plain[i] / length};
                         block.fill(i, Formula::of(means, parameters, i));
                       }
                     });
}

/// Each cycle's sums go on from where those of the next shorter one end.
std::size_t ultimateOfSums(Source buying, Source range, orvex::kernels::Cycles cycles, Records records, double* out) {
  const int longest = cycles.lengths[2];
  if (cycles.lengths[0] < 1) return 0;
  const std::ptrdiff_t count = least(provable(buying, records, longest - 1), provable(range, records, longest - 1));
  const SlidingColumns columns = {buying.rows, range.rows, out, true};
  return slide<2, 4>(columns, longest, 4, records.first - 1, count, [=]<class Block>(const Block& block) {
    using P = typename Block::P;
    P bought[Block::count] = {};
    P ranged[Block::count] = {};
    P sums[Block::count][6];
    std::ptrdiff_t age = 0;
    ORVEX_UNROLL for (int cycle = 0; cycle < 3; ++cycle) {
      for (; age < cycles.lengths[cycle]; ++age) {
        ORVEX_UNROLL for (int i = 0; i < Block::count; ++i) {
          bought[i] = bought[i] + block.value(i, age);
          ranged[i] = ranged[i] + block.center(i, age);
        }
      }
      ORVEX_UNROLL for (int i = 0; i < Block::count; ++i) {
        sums[i][cycle] = bought[i];
        sums[i][cycle + 3] = ranged[i];
      }
    }
    ORVEX_UNROLL for (int i = 0; i < Block::count; ++i) {
      block.fill(i, orvex::standard::formulas::Ultimate::of(sums[i], StandardParameters(), i));
    }
  });
}

std::size_t below(Source source, int window, Records records, double* out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count = provable(source, records, window);
  const double* const x = source.rows;
  eachBlock<4>(records.first - 1, count, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    const P one = P::all(1.0), zero = P::all(0.0);
    P own[Count];
    P found[Count] = {};
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) own[i] = P::load(x + row + i * Lanes);
    for (std::ptrdiff_t age = 1; age <= window; ++age) {
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        found[i] = found[i] + whereGreater(own[i], P::load(x + row + i * Lanes - age), one, zero);
      }
    }
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) found[i].store(out + row + i * Lanes);
  });
  return static_cast<std::size_t>(count);
}

/// Rows of `sums` of which the whole window is equal become 0, of `Lanes` records from row `at` on.
template <int Lanes>
void clearEqual(const double* x, std::ptrdiff_t window, std::ptrdiff_t at, double* sums) {
  using P = Pack<Lanes>;
  if (window > 1 && !hasZero(P::load(x + at) - P::load(x + at - 1))) return;
  for (int lane = 0; lane < Lanes; ++lane) {
    std::ptrdiff_t equal = 1;
    while (equal < window && x[at + lane - equal] == x[at + lane]) ++equal;
    if (equal == window) sums[at + lane] = 0.0;
  }
}

std::size_t scatterAround(Source x, Source y, Source meanX, Source meanY, int window, Records records,
                          ScatterRows out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count = least(least(provable(x, records, window - 1), provable(y, records, window - 1)),
                                     least(provable(meanX, records, 0), provable(meanY, records, 0)));
  eachBlock<4>(records.first - 1, count, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    P centerX[Count], centerY[Count];
    P xx[Count] = {}, xy[Count] = {}, yy[Count] = {};
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
      centerX[i] = P::load(meanX.rows + row + i * Lanes);
      centerY[i] = P::load(meanY.rows + row + i * Lanes);
    }
    for (std::ptrdiff_t age = 0; age < window; ++age) {
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        const P dx = P::load(x.rows + row + i * Lanes - age) - centerX[i];
        const P dy = P::load(y.rows + row + i * Lanes - age) - centerY[i];
        xx[i] = xx[i] + dx * dx;
        xy[i] = xy[i] + dx * dy;
        yy[i] = yy[i] + dy * dy;
      }
    }
    ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
      const std::ptrdiff_t at = row + i * Lanes;
      xx[i].store(out.xx + at);
      xy[i].store(out.xy + at);
      yy[i].store(out.yy + at);
      clearEqual<Lanes>(x.rows, window, at, out.xx);
      clearEqual<Lanes>(y.rows, window, at, out.yy);
    }
  });
  return static_cast<std::size_t>(count);
}

constexpr double laneNumbers[] = {0, 1, 2, 3, 4, 5, 6, 7};

/// The records of a pack of rows, counted from 1.
template <class P>
P recordsFrom(std::ptrdiff_t row) {
  return P::all(static_cast<double>(row + 1)) + P::load(laneNumbers);
}

/// `tell(row, record)` of the record of each window's extreme, of a pack of rows. It is found as highest and lowest
/// values are (extremes.inl): of k values from each one on, then of 2k.
template <class Extreme, bool isNewest, class Tell>
void recordsOfExtremes(const double* x, std::ptrdiff_t window, std::ptrdiff_t first, std::ptrdiff_t count, Tell tell) {
  constexpr std::ptrdiff_t piece = 512;
  double values[piece + widestDoubled];
  double places[piece + widestDoubled];
  for (std::ptrdiff_t start = first; start < first + count; start += piece) {
    const std::ptrdiff_t rows = least(piece, first + count - start);
    const std::ptrdiff_t from = start - (window - 1);
    std::ptrdiff_t length = rows + window - 1;
    // The older one is kept where it is better, or, of equal ones, where the oldest is wanted.
    const auto place = []<class P>(P older, P newer, P placeOlder, P placeNewer) {
      const P best = isNewest ? Extreme::choose(older, newer) : Extreme::choose(newer, older);
      return isNewest ? whereEqual(best, newer, placeNewer, placeOlder)
                      : whereEqual(best, older, placeOlder, placeNewer);
    };
    const auto combine = [&, place](std::ptrdiff_t number, std::ptrdiff_t distance, const double* column, auto placeAt,
                                    auto put) {
      eachBlock<4>(0, number, [&, distance, column, placeAt, put]<int Lanes, int Count>(std::ptrdiff_t row) {
        using P = Pack<Lanes>;
        ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
          const std::ptrdiff_t at = row + i * Lanes;
          const P older = P::load(column + at), newer = P::load(column + at + distance);
          put(at, Extreme::choose(older, newer),
              place(older, newer, placeAt.template operator()<P>(at), placeAt.template operator()<P>(at + distance)));
        }
      });
    };
    const auto keep = [&]<class P>(std::ptrdiff_t at, P best, P record) {
      best.store(values + at);
      record.store(places + at);
    };
    const auto show = [=]<class P>(std::ptrdiff_t at, P, P record) { tell(start + at, record); };
    const auto own = [=]<class P>(std::ptrdiff_t at) { return recordsFrom<P>(from + at); };
    const auto kept = [&]<class P>(std::ptrdiff_t at) { return P::load(places + at); };
    if (window == 1) {
      combine(rows, 0, x + from, own, show);
      continue;
    }
    combine(--length, 1, x + from, own, keep);
    std::ptrdiff_t k = 2;
    for (; 2 * k <= window; k *= 2) {
      length -= k;
      combine(length, k, values, kept, keep);
    }
    combine(rows, window - k, values, kept, show);
  }
}

template <class Extreme>
std::size_t recordOf(Source source, int window, Records records, double* newest, double* oldest) {
  if (window < 1 || window > widestDoubled) return 0;
  const std::ptrdiff_t count = provable(source, records, window - 1), first = records.first - 1;
  recordsOfExtremes<Extreme, true>(source.rows, window, first, count,
                                   [=]<class P>(std::ptrdiff_t row, P record) { record.store(newest + row); });
  recordsOfExtremes<Extreme, false>(source.rows, window, first, count,
                                    [=]<class P>(std::ptrdiff_t row, P record) { record.store(oldest + row); });
  return static_cast<std::size_t>(count);
}

template <class Extreme>
std::size_t ageOf(Source source, int window, Records records, double* out) {
  if (window < 1 || window > widestDoubled) return 0;
  const std::ptrdiff_t count = provable(source, records, window - 1);
  recordsOfExtremes<Extreme, true>(
      source.rows, window, records.first - 1, count,
      [=]<class P>(std::ptrdiff_t row, P record) { (recordsFrom<P>(row) - record).store(out + row); });
  return static_cast<std::size_t>(count);
}

using orvex::kernels::Acceleration;

/// The state: the direction (1 or -1), the stop of the record, extreme and factor of the trend, and the bar before. As
/// in `ParabolicChain`, both directions are worked out and one is chosen. Of plain rules both sides are alike, and
/// stops neither stand off nor are signed.
template <bool isPlain>
struct StopChain : Chain<2, 1, 6> {
  static constexpr int together = widestLanes;
  static constexpr bool checksInputs = true;

  orvex::kernels::StopRules rules;

  template <class T>
  void next(T (&state)[6], const T (&in)[2], T (&out)[1], int) const {
    const T none = T::all(0.0), top = in[0], bottom = in[1];
    const T way = state[0], level = state[1], extreme = state[2], factor = state[3];
    const T highest = larger(state[4], top), lowest = smaller(state[5], bottom);
    const auto choose = [&](const T& direction, const T& ifLong, const T& ifShort) {
      return whereGreater(direction, none, ifLong, ifShort);
    };
    const auto of = [&](const T& direction, double Acceleration::*number) {
      if constexpr (isPlain) return T::all(rules.longSide.*number);
      return choose(direction, T::all(rules.longSide.*number), T::all(rules.shortSide.*number));
    };
    // The trend goes on where the upper of these is above the lower.
    const T upper = choose(way, bottom, level), lower = choose(way, level, top);
    const auto where = [&](const T& goesOn, const T& turns) { return whereGreater(upper, lower, goesOn, turns); };

    const T ceiling = larger(extreme, highest), floor = smaller(extreme, lowest);
    // A distance of 0 below a stop of -0 makes one of 0.
    const T turned = isPlain
                         ? choose(way, ceiling, floor + none)
                         : choose(way, ceiling + ceiling * T::all(rules.offset), floor - floor * T::all(rules.offset));
    const T shown = where(level, turned);
    const T furthest = choose(way, larger(top, extreme), smaller(bottom, extreme));
    const T faster = smaller(factor + of(way, &Acceleration::step), of(way, &Acceleration::maximum));
    const T grown = whereEqual(furthest, extreme, factor, faster);
    const T next = where(way, none - way);
    state[0] = next;
    state[2] = where(furthest, choose(way, bottom, top));
    state[3] = where(grown, of(next, &Acceleration::start));
    const T stop = shown + state[3] * (state[2] - shown);
    state[1] = choose(next, smaller(stop, lowest), larger(stop, highest));
    state[4] = top;
    state[5] = bottom;
    out[0] = !isPlain && rules.isSigned ? choose(next, shown, shown * T::all(-1.0)) : shown;
  }
};

std::size_t parabolicStop(Source high, Source low, orvex::kernels::StopRules rules, orvex::kernels::Stop* stop,
                          Records records, double* out) {
  // With factors up to 1 a stop stays between itself and the extreme: nothing overflows that the bars or the result
  // would not show.
  for (const Acceleration& side : {rules.longSide, rules.shortSide}) {
    if (!(side.start <= 1.0 && side.step <= 1.0 && side.maximum <= 1.0)) return 0;
  }
  const std::ptrdiff_t first = records.first - 1, count = least(present(high, records, 1), present(low, records, 1));
  if (count == 0 || !isHandled(stop->level) || !isHandled(stop->extreme) || !isHandled(stop->factor)) return 0;
  // As `parabolic` has it.
  constexpr double memory = 8.0;
  double state[] = {stop->isLong ? 1.0 : -1.0, stop->level,        stop->extreme, stop->factor,
                    high.rows[first - 1],      low.rows[first - 1]};
  const auto run = [&](const auto& chain) {
    return runChain(chain, {high.rows + first, low.rows + first}, {out + first}, state, count, memory);
  };
  const auto& [longSide, shortSide, offset, isSigned] = rules;
  const bool isPlain = longSide == shortSide && offset == 0.0 && !isSigned;
  if (!(isPlain ? run(StopChain<true>{{}, rules}) : run(StopChain<false>{{}, rules}))) return 0;
  *stop = {state[0] > 0.0, state[1], state[2], state[3]};
  return static_cast<std::size_t>(count);
}

/// The state: both bands, the direction (1 or -1) and the close of the record before.
struct ChannelChain : Chain<3, 2, 4> {
  static constexpr bool checksInputs = true;

  double factor;

  template <class T>
  void next(T (&state)[4], const T (&in)[3], T (&out)[2], int) const {
    const T close = in[2], width = T::all(factor) * in[1], top = in[0] + width, bottom = in[0] - width;
    const T oldTop = state[0], oldBottom = state[1], before = state[3], up = T::all(1.0), down = T::all(-1.0);
    state[0] = whereGreater(oldTop, top, top, whereGreater(before, oldTop, top, oldTop));
    state[1] = whereGreater(bottom, oldBottom, bottom, whereGreater(oldBottom, before, bottom, oldBottom));
    state[2] = whereGreater(state[2], T::all(0.0), whereGreater(state[1], close, down, up),
                            whereGreater(close, state[0], up, down));
    state[3] = close;
    out[0] = whereGreater(state[2], T::all(0.0), state[1], state[0]);
    out[1] = state[2];
  }
};

std::size_t superTrend(Source middle, Source range, Source close, double factor, orvex::kernels::Channel* channel,
                       Records records, double* level, double* trend) {
  const std::ptrdiff_t first = records.first - 1;
  const std::ptrdiff_t count =
      least(least(present(middle, records, 0), present(range, records, 0)), present(close, records, 1));
  if (count == 0 || !isHandled(factor) || !isHandled(channel->top) || !isHandled(channel->bottom)) return 0;
  // Until prices have crossed the channel. A guess, as `follow` has it.
  constexpr double memory = 8.0;
  double state[] = {channel->top, channel->bottom, channel->isUp ? 1.0 : -1.0, close.rows[first - 1]};
  if (!runChain(ChannelChain{{}, factor}, {middle.rows + first, range.rows + first, close.rows + first},
                {level + first, trend + first}, state, count, memory)) {
    return 0;
  }
  *channel = {state[0], state[1], state[2] > 0.0};
  return static_cast<std::size_t>(count);
}

/// Where bodies begin: the second value of the state is where the one before ended.
struct BodyChain : Chain<1, 1, 2> {
  template <class T>
  void next(T (&state)[2], const T (&in)[1], T (&out)[1], int) const {
    out[0] = state[0] = (state[0] + state[1]) * T::all(0.5);
    state[1] = in[0];
  }
};

std::size_t heikinAshi(Source open, orvex::kernels::Bars bars, orvex::kernels::Body* body, Records records,
                       orvex::kernels::BarRows out) {
  using namespace orvex::standard::formulas;
  const Source columns[] = {open, bars.high, bars.low, bars.close};
  std::ptrdiff_t count = records.last - records.first + 1;
  for (const Source& column : columns) count = least(count, present(column, records, 0));
  if (!isHandled(body->start) || !isHandled(body->end)) return 0;
  double state[] = {body->start, body->end};
  // So many that stretches pay, and so few that all columns of them fit the second-level cache.
  constexpr std::ptrdiff_t piece = 4096;
  for (std::ptrdiff_t done = 0; done < count; done += piece) {
    const std::ptrdiff_t rows = least(piece, count - done), first = records.first - 1 + done;
    for (const Source& column : columns) {
      if (handledPrefix(column.rows + first, rows) < rows) return static_cast<std::size_t>(done);
    }
    eachBlock<4>(first, rows, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
      using P = Pack<Lanes>;
      ORVEX_UNROLL for (int i = 0; i < Count; ++i, row += Lanes) {
        const P bar[] = {P::load(open.rows + row), P::load(bars.high.rows + row), P::load(bars.low.rows + row),
                         P::load(bars.close.rows + row)};
        AveragePrice::of(bar, StandardParameters(), i).store(out.close + row);
      }
    });
    if (!runChain(BodyChain(), {out.close + first}, {out.open + first}, state, rows, 2.0)) {
      return static_cast<std::size_t>(done);
    }
    *body = {state[0], state[1]};
    eachBlock<4>(first, rows, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
      using P = Pack<Lanes>;
      ORVEX_UNROLL for (int i = 0; i < Count; ++i, row += Lanes) {
        const P start = P::load(out.open + row), end = P::load(out.close + row);
        const P tops[] = {P::load(bars.high.rows + row), start, end};
        const P bottoms[] = {P::load(bars.low.rows + row), start, end};
        Largest::of(tops, StandardParameters(), i).store(out.high + row);
        Smallest::of(bottoms, StandardParameters(), i).store(out.low + row);
      }
    });
  }
  return static_cast<std::size_t>(count);
}

template <class Formula>
std::size_t ofExtremes(Source high, Source low, Source x, int window, Records records, double* out) {
  using orvex::kernels::Ties;
  if (window < 1 || window > widestDoubled) return 0;
  const std::ptrdiff_t before = window - 1, first = records.first - 1;
  const std::ptrdiff_t count =
      least(least(present(high, records, before), present(low, records, before)), present(x, records, 0));
  constexpr std::ptrdiff_t piece = 1024;
  double tops[piece + widestDoubled];
  double bottoms[piece + widestDoubled];
  for (std::ptrdiff_t done = 0; done < count; done += piece) {
    const std::ptrdiff_t rows = least(piece, count - done), row = first + done, all = before + rows;
    const double *const highs = high.rows + row - before, *const lows = low.rows + row - before;
    const double* const own = x.rows + row;
    if (handledPrefix(highs, all) < all || handledPrefix(lows, all) < all || handledPrefix(own, rows) < rows) {
      return static_cast<std::size_t>(done);
    }
    extremesByDoubling<Pick<Highest, Ties::Newest>>(highs, window, before, rows, tops);
    extremesByDoubling<Pick<Lowest, Ties::Newest>>(lows, window, before, rows, bottoms);
    eachBlock<4>(0, rows, [=, &tops, &bottoms]<int Lanes, int Count>(std::ptrdiff_t at) {
      using P = Pack<Lanes>;
      ORVEX_UNROLL for (int i = 0; i < Count; ++i, at += Lanes) {
        const P top = P::load(tops + before + at), bottom = P::load(bottoms + before + at);
        P result;
        if constexpr (Formula::columns == 2) {
          const P both[] = {top, bottom};
          result = Formula::of(both, StandardParameters(), i);
        } else {
          const P three[] = {top, bottom, P::load(own + at)};
          result = Formula::of(three, StandardParameters(), i);
        }
        result.store(out + row + at);
      }
    });
  }
  return static_cast<std::size_t>(finitePrefix(out + first, count));
}

template <class Formulas>
struct Pointwise;

/// A kernel for each formula, in the order of the list.
template <class... Formula>
struct Pointwise<orvex::standard::List<Formula...>> {
  static constexpr orvex::kernels::StandardTable table(orvex::kernels::StandardTable others) {
    std::size_t i = 0;
    ((others.pointwise[i++] = pointwise<Formula>), ...);
    return others;
  }
};

}  // namespace
