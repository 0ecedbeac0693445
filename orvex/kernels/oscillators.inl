// The kernels of the oscillators. Where a division by 0 or an overflow shows in the row itself, rows are computed
// without looking and then counted as far as they came out as numbers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "orvex/kernels/chains.inl"
#include "orvex/kernels/extremes.inl"
#include "orvex/kernels/pack.inl"
#include "orvex/kernels/pointwise.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/quotients.inl"
#include "orvex/kernels/sliding.inl"
#include "orvex/kernels/totals.inl"

namespace {

using orvex::kernels::AroonRows;
using orvex::kernels::Bars;
using orvex::kernels::Trend;

/// The lower one of low and the close before, and the true range, in as few operations as can be: of bars whose high is
/// not below their low the largest of the three differences lies between the highest and the lowest of the three
/// prices. Not-a-number where that does not hold, or where a price is none.
template <class P>
struct TrueBar {
  P low, range;

  TrueBar(const Bars& bars, std::ptrdiff_t at) {
    const P top = P::load(bars.high.rows + at), bottom = P::load(bars.low.rows + at);
    const P before = P::load(bars.close.rows + at - 1);
    low = smaller(before, bottom);
    // The comparisons let go of a close that is none; its difference with itself does not.
    range = whereGreater(bottom, top, P::all(notANumber), larger(before, top) - low + (before - before));
  }
};

/// How many records have their bars and the closes before.
std::ptrdiff_t present(const Bars& bars, Records records) {
  return least(least(present(bars.high, records, 0), present(bars.low, records, 0)), present(bars.close, records, 1));
}

std::size_t trueRange(Bars bars, Records records, double* out) {
  return fillFinite(records, present(bars, records), out,
                    [=]<class P>(std::ptrdiff_t at) { return TrueBar<P>(bars, at).range; });
}

std::size_t directionalMoves(Source high, Source low, Records records, double* up, double* down) {
  const std::ptrdiff_t count = least(provable(high, records, 1), provable(low, records, 1));
  eachBlock<4>(records.first - 1, count, [=]<int Lanes, int Packs>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    const P none = P::all(0.0);
    ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
      const std::ptrdiff_t at = row + i * Lanes;
      const P rise = P::load(high.rows + at) - P::load(high.rows + at - 1);
      const P fall = P::load(low.rows + at - 1) - P::load(low.rows + at);
      whereGreater(rise, fall, larger(rise, none), none).store(up + at);
      whereGreater(fall, rise, larger(fall, none), none).store(down + at);
    }
  });
  return static_cast<std::size_t>(count);
}

/// The whole parts of numbers that are not below 0, and not-a-number for what is left to the steps: numbers whose whole
/// part might not fit 32 bits.
template <class P>
P truncated(P x) {
  const P bound = P::all(0x1p30), none = P::all(0.0);
  return whereGreater(bound, x, wholePart(whereGreater(bound, x, x, none)), P::all(notANumber));
}

std::size_t wholePercent(Source part, Source whole, Records records, double* out) {
  const std::ptrdiff_t count = least(present(part, records, 0), present(whole, records, 0));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t at, int turn) {
    const P sum = P::load(whole.rows + at), none = P::all(0.0);
    return truncated(whereEqual(sum, none, none, quotient(P::load(part.rows + at) * P::all(100.0), sum, turn)));
  });
}

std::size_t directionalIndex(Source a, Source b, Records records, double* out) {
  const std::ptrdiff_t count = least(present(a, records, 0), present(b, records, 0));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t at, int turn) {
    const P x = P::load(a.rows + at), y = P::load(b.rows + at), none = P::all(0.0);
    const P difference = magnitude(x - y);
    return truncated(whereGreater(difference, none, quotient(difference, x + y, turn) * P::all(100.0), none));
  });
}

bool isWholePercentage(double x) {
  return x >= 0.0 && x <= 100.0 && static_cast<int>(x) == x;
}

std::size_t averageIndex(Source index, int periods, Records records, double* out) {
  constexpr int most = 100;
  const std::ptrdiff_t count = present(index, records, 0);
  if (count == 0 || records.first < 2 || periods < 1 || !isWholePercentage(out[records.first - 2])) return 0;
  // Among whole numbers the average moves by the distance between it and the index, divided and rounded: by so much
  // for each distance. Every product is exact, and a quotient that is no tie is further from one (2^-32 at least) than
  // its rounding can take it (2^-46).
  int steps[2 * most + 1];
  for (int distance = -most; distance <= most; ++distance) {
    const std::int64_t halves = 2 * distance + std::int64_t{periods}, whole = 2 * std::int64_t{periods};
    steps[distance + most] = static_cast<int>(halves >= 0 ? halves / whole : -((whole - 1 - halves) / whole));
  }
  const std::ptrdiff_t first = records.first - 1;
  int average = static_cast<int>(out[first - 1]);
  for (std::ptrdiff_t i = first; i < first + count; ++i) {
    if (!isWholePercentage(index.rows[i])) return static_cast<std::size_t>(i - first);
    average += steps[static_cast<int>(index.rows[i]) - average + most];
    out[i] = average;
  }
  return static_cast<std::size_t>(count);
}

std::size_t meanHalfUp(Source source, Records records, double* out) {
  return fillFinite(records, present(source, records, 1), out, [=]<class P>(std::ptrdiff_t at) {
    const P sum = P::load(source.rows + at) + P::load(source.rows + at - 1);
    return truncated(sum * P::all(0.5) + P::all(0.5));
  });
}

/// Into `out`, for `count` rows from `x` on, how far from the beginning of the `window` rows before each row, and the
/// row itself, the best of them stands, in percent. `values` and `places` hold the best of 1, 2, 4, ... rows.
template <bool isHighest>
void placesOfExtremes(const double* x, std::ptrdiff_t window, std::ptrdiff_t count, double* values, double* places,
                      double* out) {
  const auto choose = []<class P>(P older, P newer, P yes, P no) {
    return isHighest ? whereGreater(newer, older, yes, no) : whereGreater(older, newer, yes, no);
  };
  std::ptrdiff_t length = count + window - 1;
  for (std::ptrdiff_t i = 0; i < length; ++i) {
    values[i] = x[i - window];
    places[i] = 0.0;
  }
  std::ptrdiff_t k = 1;
  for (; 2 * k <= window; k *= 2) {
    length -= k;
    eachBlock<4>(0, length, [=]<int Lanes, int Packs>(std::ptrdiff_t row) {
      using P = Pack<Lanes>;
      ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
        const std::ptrdiff_t at = row + i * Lanes;
        const P older = P::load(values + at), newer = P::load(values + at + k);
        choose(older, newer, P::load(places + at + k) + P::all(static_cast<double>(k)), P::load(places + at))
            .store(places + at);
        choose(older, newer, newer, older).store(values + at);
      }
    });
  }
  const std::ptrdiff_t shift = window - k;
  const Divisor periods(static_cast<double>(window));
  eachBlock<4>(0, count, [=]<int Lanes, int Packs>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    const P n = P::all(static_cast<double>(window));
    ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
      const std::ptrdiff_t at = row + i * Lanes;
      const P older = P::load(values + at), newer = P::load(values + at + shift);
      const P place =
          choose(older, newer, P::load(places + at + shift) + P::all(static_cast<double>(shift)), P::load(places + at));
      // The row's own value is beaten only by a better one.
      const P best = choose(older, newer, newer, older);
      (choose(P::load(x + at), best, place, n) / periods * P::all(100.0)).store(out + at);
    }
  });
}

std::size_t aroon(Source high, Source low, int window, Records records, AroonRows out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count = least(provable(high, records, window), provable(low, records, window));
  if (count == 0) return 0;
  // What a piece works on stays in the first-level cache, unless its windows are too long for that.
  const std::ptrdiff_t piece = window < 256 ? 1024 : 4 * static_cast<std::ptrdiff_t>(window);
  const std::ptrdiff_t end = records.first - 1 + count;
  for (std::ptrdiff_t row = records.first - 1; row < end; row += piece) {
    const std::ptrdiff_t rows = least(piece, end - row);
    placesOfExtremes<true>(high.rows + row, window, rows, out.extremes, out.places, out.up + row);
    placesOfExtremes<false>(low.rows + row, window, rows, out.extremes, out.places, out.down + row);
  }
  return fillFinite(records, count, out.oscillator,
                    [=]<class P>(std::ptrdiff_t at) { return P::load(out.up + at) - P::load(out.down + at); });
}

std::size_t place(Source above, Source below, Source highest, Source lowest, double factor, Records records,
                  double* out) {
  const std::ptrdiff_t count = least(least(present(above, records, 0), present(below, records, 0)),
                                     least(provable(highest, records, 0), provable(lowest, records, 0)));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t at, int turn) {
    return quotient(P::load(above.rows + at) - P::load(below.rows + at),
                    P::load(highest.rows + at) - P::load(lowest.rows + at), turn) *
           P::all(factor);
  });
}

std::size_t rangeToPath(Source source, Source highest, Source lowest, int window, Records records, double* out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count =
      least(provable(source, records, window), least(provable(highest, records, 0), provable(lowest, records, 0)));
  const double* const x = source.rows;
  const std::ptrdiff_t first = records.first - 1;
  eachBlock<8>(first, count, [=]<int Lanes, int Packs>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    P path[Packs] = {};
    for (std::ptrdiff_t j = 1 - window; j <= 0; ++j) {
      ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
        const double* const at = x + row + i * Lanes + j;
        path[i] = path[i] + magnitude(P::load(at) - P::load(at - 1));
      }
    }
    ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
      const std::ptrdiff_t at = row + i * Lanes;
      quotient(magnitude(P::load(highest.rows + at) - P::load(lowest.rows + at)), path[i], i).store(out + at);
    }
  });
  return static_cast<std::size_t>(finitePrefix(out + first, count));
}

std::size_t balanceOfMoves(Source source, int window, Records records, double* out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count = provable(source, records, window);
  const double* const x = source.rows;
  eachBlock<4>(records.first - 1, count, [=]<int Lanes, int Packs>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    const P none = P::all(0.0);
    P up[Packs] = {};
    P down[Packs] = {};
    for (std::ptrdiff_t j = 1 - window; j <= 0; ++j) {
      ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
        const double* const at = x + row + i * Lanes + j;
        const P value = P::load(at), before = P::load(at - 1);
        up[i] = up[i] + larger(value - before, none);
        down[i] = down[i] + larger(before - value, none);
      }
    }
    ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
      const P both = up[i] + down[i];
      whereEqual(both, none, none, (up[i] - down[i]) * P::all(100.0) / both).store(out + row + i * Lanes);
    }
  });
  return static_cast<std::size_t>(count);
}

std::size_t momentum(Source source, int lag, Records records, double* out) {
  const double* const x = source.rows;
  return fillFinite(records, present(source, records, lag), out, [=]<class P>(std::ptrdiff_t at, int turn) {
    const P old = P::load(x + at - lag), hundred = P::all(100.0);
    return quotient(P::load(x + at) - old, old, turn) * hundred + hundred;
  });
}

std::size_t buyingPressure(Bars bars, Records records, double* buying, double* range) {
  const std::ptrdiff_t count = least(present(bars, records), present(bars.close, records, 0));
  eachBlock<4>(records.first - 1, count, [=]<int Lanes, int Packs>(std::ptrdiff_t row) {
    ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
      const std::ptrdiff_t at = row + i * Lanes;
      const TrueBar<Pack<Lanes>> bar(bars, at);
      (Pack<Lanes>::load(bars.close.rows + at) - bar.low).store(buying + at);
      bar.range.store(range + at);
    }
  });
  return static_cast<std::size_t>(count);
}

std::size_t ultimate(Source buying, Source range, orvex::kernels::Cycles cycles, Records records, double* out) {
  // From the shortest to the longest: the records that cycles share are read once.
  int order[] = {0, 1, 2};
  const auto sort = [&](int& a, int& b) {
    if (cycles.lengths[b] < cycles.lengths[a]) {
      const int shorter = b;
      b = a;
      a = shorter;
    }
  };
  sort(order[0], order[1]);
  sort(order[1], order[2]);
  sort(order[0], order[1]);
  const std::ptrdiff_t shortest = cycles.lengths[order[0]], middle = cycles.lengths[order[1]],
                       longest = cycles.lengths[order[2]];
  if (shortest < 1) return 0;
  const std::ptrdiff_t count = least(present(buying, records, longest - 1), present(range, records, longest - 1));
  const Divisor seven(7.0);
  const SlidingColumns columns = {buying.rows, range.rows, out, true};
  return slide<2, 4>(columns, longest, 2, records.first - 1, count, [=]<class Block>(const Block& block) {
    using P = typename Block::P;
    P bought[3][Block::count] = {};
    P ranged[3][Block::count] = {};
    const auto add = [&](std::ptrdiff_t oldest, std::ptrdiff_t newest, auto shortestOfThem) {
      for (std::ptrdiff_t age = oldest - 1; age >= newest; --age) {
        ORVEX_UNROLL for (int i = 0; i < Block::count; ++i) {
          const P b = block.value(i, age), r = block.center(i, age);
          ORVEX_UNROLL for (int cycle = shortestOfThem.value; cycle < 3; ++cycle) {
            bought[cycle][i] = bought[cycle][i] + b;
            ranged[cycle][i] = ranged[cycle][i] + r;
          }
        }
      }
    };
    add(longest, middle, Constant<2>());
    add(middle, shortest, Constant<1>());
    add(shortest, 0, Constant<0>());
    ORVEX_UNROLL for (int i = 0; i < Block::count; ++i) {
      P pressure[3];
      for (int cycle = 0; cycle < 3; ++cycle) {
        // Times 1, or not-a-number where the sum of the ranges is too large: the quotient alone would not show that.
        const P sum = ranged[cycle][i];
        pressure[order[cycle]] = quotient(bought[cycle][i], sum, i + cycle) * (P::all(1.0) + (sum - sum));
      }
      block.fill(i, (pressure[0] * P::all(4.0) + pressure[1] * P::all(2.0) + pressure[2]) / seven * P::all(100.0));
    }
  });
}

/// The state: the direction (1 or -1), the stop, the factor and the extreme of the trend. Both directions are worked
/// out and one is chosen, since no processor foretells reversals. Two chains are one as soon as they turn in one
/// record.
struct ParabolicChain : Chain<2, 1, 4> {
  static constexpr int together = widestLanes;
  static constexpr bool checksInputs = true;

  double step, bound;

  template <class T>
  void next(T (&state)[4], const T (&in)[2], T (&out)[1], int) const {
    const T top = in[0], bottom = in[1], none = T::all(0.0);
    const T direction = state[0], stop = state[1], factor = state[2], extreme = state[3];
    const T behind = whereGreater(direction, none, bottom, top);
    const T furthest = whereGreater(direction, none, larger(top, extreme), smaller(bottom, extreme));
    const T grown =
        whereEqual(furthest, extreme, factor, whereGreater(T::all(bound), factor, factor + T::all(step), factor));
    const T next = stop + factor * (extreme - stop);
    // The trend turns where the upper of these is above the lower.
    const T upper = whereGreater(direction, none, next, top), lower = whereGreater(direction, none, bottom, next);
    state[0] = whereGreater(upper, lower, none - direction, direction);
    state[1] = out[0] = whereGreater(upper, lower, extreme, next);
    state[2] = whereGreater(upper, lower, T::all(step), grown);
    state[3] = whereGreater(upper, lower, behind, furthest);
  }
};

std::size_t parabolic(Source high, Source low, double step, double bound, Trend* trend, Records records, double* out) {
  if (!(step > 0.0 && step <= 1.0 && bound > 0.0 && bound <= 1.0)) return 0;
  const double extreme = trend->isLong ? trend->longExtreme : trend->shortExtreme;
  if (!isHandled(trend->stop) || !isHandled(extreme) || !isHandled(trend->factor)) return 0;
  // Trends last some tens of records; so many records early most stretches have met the one before.
  constexpr double memory = 8.0;
  const std::ptrdiff_t first = records.first - 1;
  double state[] = {trend->isLong ? 1.0 : -1.0, trend->stop, trend->factor, extreme};
  const auto run = [&](std::ptrdiff_t count) {
    return runChain(ParabolicChain{{}, step, bound}, {high.rows + first, low.rows + first}, {out + first}, state, count,
                    memory);
  };
  std::ptrdiff_t count = least(present(high, records, 0), present(low, records, 0));
  if (!run(count)) {
    count = least(provable(high, records, 0), provable(low, records, 0));
    if (!run(count)) return 0;
  }
  const bool isLong = state[0] > 0.0;
  *trend = {isLong, state[1], isLong ? state[3] : 0.0, isLong ? 0.0 : state[3], state[2]};
  return static_cast<std::size_t>(count);
}

std::size_t accumulation(Bars bars, Records records, double* out) {
  const double *const high = bars.high.rows, *const low = bars.low.rows, *const close = bars.close.rows;
  const std::ptrdiff_t count =
      least(least(provable(bars.high, records, 0), provable(bars.low, records, 0)), provable(bars.close, records, 1));
  return totals(records.first - 1, count, out, [=]<class P>(std::ptrdiff_t at) {
    const P last = P::load(close + at), before = P::load(close + at - 1), none = P::all(0.0);
    const P fromLow = last - smaller(before, P::load(low + at));
    const P fromHigh = last - larger(before, P::load(high + at));
    return whereGreater(last, before, fromLow, whereGreater(before, last, fromHigh, none));
  });
}

std::size_t easeOfMovement(Source high, Source low, Source volume, Records records, double* out) {
  const std::ptrdiff_t count =
      least(least(present(high, records, 1), present(low, records, 1)), present(volume, records, 0));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t at, int turn) {
    const P top = P::load(high.rows + at), bottom = P::load(low.rows + at);
    const P none = P::all(0.0), one = P::all(1.0), half = P::all(0.5);
    const P middleBefore = (P::load(high.rows + at - 1) + P::load(low.rows + at - 1)) * half;
    const P move = (top + bottom) * half - middleBefore;
    const P range = top - bottom;
    const P boxRatio = quotient(P::load(volume.rows + at), range, turn);
    // Times 1, or not-a-number where the ratio is none: the quotient alone would not show that. Nor would the row of a
    // bar without a range show a move that is none.
    return whereEqual(range, none, move - move,
                      quotient(move, boxRatio, turn + 1) * P::all(10000.0) * (one + (boxRatio - boxRatio)));
  });
}

std::size_t breakouts(Source high, Source low, Records records, double* out) {
  const std::ptrdiff_t count = least(provable(high, records, 4), provable(low, records, 4));
  fillPiece(records.first - 1, count, out, [=]<class P>(std::ptrdiff_t at) {
    P top = P::load(high.rows + at - 1), bottom = P::load(low.rows + at - 1);
    ORVEX_UNROLL for (int j = 2; j <= 4; ++j) {
      top = larger(top, P::load(high.rows + at - j));
      bottom = smaller(bottom, P::load(low.rows + at - j));
    }
    const P above = whereGreater(P::load(high.rows + at), top, P::all(1.0), P::all(0.0));
    return whereGreater(bottom, P::load(low.rows + at), P::all(-1.0), above);
  });
  return static_cast<std::size_t>(count);
}

std::size_t percentAbove(Source a, Source b, int lag, Records records, double* out) {
  const std::ptrdiff_t count = least(present(a, records, 0), present(b, records, lag));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t at, int turn) {
    const P whole = P::load(b.rows + at - lag), part = P::load(a.rows + at) - whole, none = P::all(0.0);
    return whereEqual(whole, none, part - part, quotient(part, whole, turn) * P::all(100.0));
  });
}

std::size_t fallInPercent(Source source, int lag, Records records, double* out) {
  const double* const x = source.rows;
  return fillFinite(records, present(source, records, lag), out, [=]<class P>(std::ptrdiff_t at, int turn) {
    const P old = P::load(x + at - lag), now = P::load(x + at), none = P::all(0.0);
    return whereEqual(old, none, now - now,
                      whereEqual(now, none, old - old, quotient(old - now, old, turn) * P::all(-100.0)));
  });
}

/// With `hasGaps` there is no b where it is 0.
template <bool hasGaps>
std::size_t crossings(Source a, Source b, Records records, double* out) {
  const std::ptrdiff_t count = least(provable(a, records, 1), provable(b, records, 1));
  fillPiece(records.first - 1, count, out, [=]<class P>(std::ptrdiff_t at) {
    const P before = P::load(a.rows + at - 1), otherBefore = P::load(b.rows + at - 1);
    const P now = P::load(a.rows + at), other = P::load(b.rows + at), none = P::all(0.0);
    const P above = whereGreater(before, otherBefore, none, whereGreater(now, other, P::all(1.0), none));
    const P below = whereGreater(otherBefore, before, none, whereGreater(other, now, P::all(-1.0), none));
    const P crossing = above + below;
    if constexpr (!hasGaps) return crossing;
    return whereEqual(otherBefore, none, none, whereEqual(other, none, none, crossing));
  });
  return static_cast<std::size_t>(count);
}

}  // namespace
