// The kernels of the oscillators. Each computes its rows without looking and then finds how many of them came out as
// ordinary numbers: a division by 0 or an overflow on the way shows in the row itself.
#pragma once

#include <cstddef>

#include "orvex/kernels/pack.h"
#include "orvex/kernels/provable.inl"

namespace {

using orvex::kernels::AroonRows;
using orvex::kernels::Bars;
using orvex::kernels::DirectionRows;
using orvex::kernels::Trend;

std::ptrdiff_t provable(Bars bars, Records records) {
  return least(least(provable(bars.high, records, 1), provable(bars.low, records, 1)),
               provable(bars.close, records, 1));
}

/// Computes `count` rows from the first record on, row(at) giving the pack of rows `at` and following, and returns how
/// many of them are ordinary numbers.
template <int Count, class Row>
std::size_t eachRow(Records records, std::ptrdiff_t count, double* out, Row row) {
  const std::ptrdiff_t first = records.first - 1;
  eachBlock<Count>(first, count, [=]<int Lanes, int Packs>(std::ptrdiff_t at) {
    ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
      row.template operator()<Pack<Lanes>>(at + i * Lanes).store(out + at + i * Lanes);
    }
  });
  return static_cast<std::size_t>(handledPrefix(out + first, count));
}

std::size_t trueRange(Bars bars, Records records, double* out) {
  const double *const high = bars.high.rows, *const low = bars.low.rows, *const close = bars.close.rows;
  return eachRow<4>(records, provable(bars, records), out, [=]<class P>(std::ptrdiff_t at) {
    const P top = P::load(high + at), bottom = P::load(low + at), before = P::load(close + at - 1);
    return larger(magnitude(before - bottom), larger(magnitude(top - before), larger(top - bottom, P::all(0.0))));
  });
}

/// The sums of ranges and of moves, each approaching its column by a share, side by side.
void approachThree(const double* range, double* up, double* down, double* rangeSum, double share,
                   std::ptrdiff_t count) {
  double a = 0.0, b = 0.0, c = 0.0;
  for (std::ptrdiff_t i = 1; i < count; ++i) {
    rangeSum[i] = a = a + (range[i] - a) * share;
    up[i] = b = b + (up[i] - b) * share;
    down[i] = c = c + (down[i] - c) * share;
  }
}

/// Averages and ratings of indices 0 to 100. All of them are whole numbers, and so the average moves by as much as the
/// distance between it and the index says: half a record's share of it, rounded.
void averageIndices(const double* index, int periods, std::ptrdiff_t count, double* average, double* rating) {
  int steps[201];
  for (int distance = -100; distance <= 100; ++distance) {
    const int halves = 2 * distance + periods;
    steps[distance + 100] = halves >= 0 ? halves / (2 * periods) : -((2 * periods - 1 - halves) / (2 * periods));
  }
  int before = 0;
  for (std::ptrdiff_t i = periods; i < count; ++i) {
    const int now = before + steps[static_cast<int>(index[i]) - before + 100];
    average[i] = now;
    rating[i] = (now + before + 1) / 2;
    before = now;
  }
}

std::size_t directionalMovement(Source range, Source high, Source low, int periods, DirectionRows out) {
  const auto count = static_cast<std::ptrdiff_t>(range.count);
  const Records records{2, static_cast<int>(count)};
  if (periods < 1 || 2 * periods > count || provable(range, records, 1) != count - 1 ||
      provable(high, records, 1) != count - 1 || provable(low, records, 1) != count - 1) {
    return 0;
  }
  const double *const highs = high.rows, *const lows = low.rows;
  eachBlock<4>(1, count - 1, [=]<int Lanes, int Packs>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    const P none = P::all(0.0);
    ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
      const std::ptrdiff_t at = row + i * Lanes;
      const P rise = P::load(highs + at) - P::load(highs + at - 1), fall = P::load(lows + at - 1) - P::load(lows + at);
      whereGreater(rise, fall, larger(rise, none), none).store(out.up + at);
      whereGreater(fall, rise, larger(fall, none), none).store(out.down + at);
    }
  });
  approachThree(range.rows, out.up, out.down, out.rangeSum, 1.0 / periods, count);
  const std::ptrdiff_t climb = 2 * periods;
  for (std::ptrdiff_t i = 0; i < climb; ++i) out.rangeSum[i] = 0.0;

  // Below this bound the whole part fits 32 bits; everything else is left to the steps.
  constexpr double bound = 0x1p30;
  double worst = 0.0;
  eachBlock<4>(climb, count - climb, [=, &worst]<int Lanes, int Packs>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    const P none = P::all(0.0), hundred = P::all(100.0);
    P most = none;
    ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
      const std::ptrdiff_t at = row + i * Lanes;
      const P sum = P::load(out.rangeSum + at);
      const P upShare = whereEqual(sum, none, none, P::load(out.up + at) * hundred / sum);
      const P downShare = whereEqual(sum, none, none, P::load(out.down + at) * hundred / sum);
      most = larger(most, larger(upShare, downShare));
      const P upIndex = wholePart(smaller(upShare, P::all(bound)));
      const P downIndex = wholePart(smaller(downShare, P::all(bound)));
      const P difference = magnitude(downIndex - upIndex);
      upIndex.store(out.upIndex + at);
      downIndex.store(out.downIndex + at);
      const P share = difference / (downIndex + upIndex) * hundred;
      wholePart(whereGreater(difference, none, share, none)).store(out.index + at);
    }
    for (int lane = 0; lane < Lanes; ++lane) worst = most.v[lane] > worst ? most.v[lane] : worst;
  });
  if (!(worst < bound)) return 0;
  averageIndices(out.index, periods, count, out.average, out.rating);
  return static_cast<std::size_t>(count - 1);
}

/// Into `out` how far from the beginning of the `window` rows before each row, and the row itself, the best of them
/// stands, in percent. `values` and `places` hold the best of 1, 2, 4, ... rows from each row on.
template <bool isHighest>
void placesOfExtremes(const double* x, std::ptrdiff_t window, std::ptrdiff_t first, std::ptrdiff_t count,
                      double* values, double* places, double* out) {
  const auto choose = []<class P>(P older, P newer, P yes, P no) {
    return isHighest ? whereGreater(newer, older, yes, no) : whereGreater(older, newer, yes, no);
  };
  const std::ptrdiff_t from = first - window;
  std::ptrdiff_t length = count + window - 1;
  for (std::ptrdiff_t i = from; i < from + length; ++i) {
    values[i] = x[i];
    places[i] = 0.0;
  }
  std::ptrdiff_t k = 1;
  for (; 2 * k <= window; k *= 2) {
    length -= k;
    eachBlock<4>(from, length, [=]<int Lanes, int Packs>(std::ptrdiff_t row) {
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
  eachBlock<4>(first, count, [=]<int Lanes, int Packs>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    const P n = P::all(static_cast<double>(window));
    ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
      const std::ptrdiff_t at = row + i * Lanes;
      const std::ptrdiff_t oldest = at - window;
      const P older = P::load(values + oldest), newer = P::load(values + oldest + shift);
      const P place = choose(older, newer, P::load(places + oldest + shift) + P::all(static_cast<double>(shift)),
                             P::load(places + oldest));
      // The row's own value is beaten only by a better one.
      const P best = choose(older, newer, newer, older);
      (choose(P::load(x + at), best, place, n) / n * P::all(100.0)).store(out + at);
    }
  });
}

std::size_t aroon(Source high, Source low, int window, Records records, AroonRows out) {
  if (window < 1) return 0;
  const std::ptrdiff_t count = least(provable(high, records, window), provable(low, records, window));
  if (count == 0) return 0;
  const std::ptrdiff_t first = records.first - 1;
  placesOfExtremes<true>(high.rows, window, first, count, out.extremes, out.places, out.up);
  placesOfExtremes<false>(low.rows, window, first, count, out.extremes, out.places, out.down);
  return eachRow<4>(records, count, out.oscillator,
                    [=]<class P>(std::ptrdiff_t at) { return P::load(out.up + at) - P::load(out.down + at); });
}

std::size_t place(Source above, Source below, Source highest, Source lowest, double factor, Records records,
                  double* out) {
  const std::ptrdiff_t count = least(least(provable(above, records, 0), provable(below, records, 0)),
                                     least(provable(highest, records, 0), provable(lowest, records, 0)));
  return eachRow<4>(records, count, out, [=]<class P>(std::ptrdiff_t at) {
    return (P::load(above.rows + at) - P::load(below.rows + at)) /
           (P::load(highest.rows + at) - P::load(lowest.rows + at)) * P::all(factor);
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
      (magnitude(P::load(highest.rows + at) - P::load(lowest.rows + at)) / path[i]).store(out + at);
    }
  });
  return static_cast<std::size_t>(handledPrefix(out + first, count));
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
  if (lag < 0) return 0;
  const double* const x = source.rows;
  return eachRow<4>(records, provable(source, records, lag), out, [=]<class P>(std::ptrdiff_t at) {
    const P old = P::load(x + at - lag), hundred = P::all(100.0);
    return (P::load(x + at) - old) / old * hundred + hundred;
  });
}

std::size_t buyingPressure(Bars bars, Records records, double* buying, double* range) {
  const double *const high = bars.high.rows, *const low = bars.low.rows, *const close = bars.close.rows;
  const std::ptrdiff_t count = provable(bars, records);
  eachRow<4>(records, count, buying, [=]<class P>(std::ptrdiff_t at) {
    return P::load(close + at) - smaller(P::load(close + at - 1), P::load(low + at));
  });
  return eachRow<4>(records, count, range, [=]<class P>(std::ptrdiff_t at) {
    const P top = P::load(high + at), bottom = P::load(low + at), before = P::load(close + at - 1);
    return larger(before - bottom, larger(top - before, top - bottom));
  });
}

std::size_t ultimate(Source buying, Source range, int first, int second, int third, Records records, double* out) {
  if (first < 1 || second < 1 || third < 1) return 0;
  const int longer = first > second ? first : second, longest = longer > third ? longer : third;
  const std::ptrdiff_t count = least(provable(buying, records, longest - 1), provable(range, records, longest - 1));
  const std::ptrdiff_t from = records.first - 1;
  eachBlock<4>(from, count, [=]<int Lanes, int Packs>(std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    P pressure[3][Packs];
    const int cycles[] = {first, second, third};
    for (int cycle = 0; cycle < 3; ++cycle) {
      P bought[Packs] = {};
      P ranged[Packs] = {};
      for (std::ptrdiff_t j = 1 - cycles[cycle]; j <= 0; ++j) {
        ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
          bought[i] = bought[i] + P::load(buying.rows + row + i * Lanes + j);
          ranged[i] = ranged[i] + P::load(range.rows + row + i * Lanes + j);
        }
      }
      ORVEX_UNROLL for (int i = 0; i < Packs; ++i) pressure[cycle][i] = bought[i] / ranged[i];
    }
    ORVEX_UNROLL for (int i = 0; i < Packs; ++i) {
      ((pressure[0][i] * P::all(4.0) + pressure[1][i] * P::all(2.0) + pressure[2][i]) / P::all(7.0) * P::all(100.0))
          .store(out + row + i * Lanes);
    }
  });
  return static_cast<std::size_t>(handledPrefix(out + from, count));
}

std::size_t parabolic(Source high, Source low, double step, double bound, Trend* trend, Records records, double* out) {
  if (!(step > 0.0 && step <= 1.0 && bound > 0.0 && bound <= 1.0)) return 0;
  const std::ptrdiff_t count = least(provable(high, records, 0), provable(low, records, 0));
  const std::ptrdiff_t first = records.first - 1;
  Trend now = *trend;
  for (std::ptrdiff_t i = first; i < first + count; ++i) {
    const double top = high.rows[i], bottom = low.rows[i];
    if (now.isLong) {
      const double extreme = now.longExtreme;
      const double stop = now.stop + now.factor * (extreme - now.stop);
      if (bottom < stop) {
        now = {false, extreme, 0.0, bottom, step};
      } else {
        now.stop = stop;
        if (top > extreme) {
          now.longExtreme = top;
          if (now.factor < bound) now.factor += step;
        }
      }
    } else {
      const double extreme = now.shortExtreme;
      const double stop = now.stop + now.factor * (extreme - now.stop);
      if (top > stop) {
        now = {true, extreme, top, 0.0, step};
      } else {
        now.stop = stop;
        if (bottom < extreme) {
          now.shortExtreme = bottom;
          if (now.factor < bound) now.factor += step;
        }
      }
    }
    out[i] = now.stop;
  }
  *trend = now;
  return static_cast<std::size_t>(count);
}

std::size_t accumulation(Bars bars, Records records, double* out) {
  const double *const high = bars.high.rows, *const low = bars.low.rows, *const close = bars.close.rows;
  const std::ptrdiff_t first = records.first - 1;
  if (first < 1 || !isHandled(out[first - 1])) return 0;
  const std::ptrdiff_t count = provable(bars, records);
  eachRow<4>(records, count, out, [=]<class P>(std::ptrdiff_t at) {
    const P last = P::load(close + at), before = P::load(close + at - 1), none = P::all(0.0);
    const P fromLow = last - smaller(before, P::load(low + at));
    const P fromHigh = last - larger(before, P::load(high + at));
    return whereGreater(last, before, fromLow, whereGreater(before, last, fromHigh, none));
  });
  double sum = out[first - 1];
  for (std::ptrdiff_t i = first; i < first + count; ++i) out[i] = sum = sum + out[i];
  return static_cast<std::size_t>(count);
}

std::size_t easeOfMovement(Source high, Source low, Source volume, Records records, double* out) {
  const std::ptrdiff_t count =
      least(least(provable(high, records, 1), provable(low, records, 1)), provable(volume, records, 0));
  return eachRow<4>(records, count, out, [=]<class P>(std::ptrdiff_t at) {
    const P top = P::load(high.rows + at), bottom = P::load(low.rows + at);
    const P none = P::all(0.0), one = P::all(1.0), two = P::all(2.0);
    const P middleBefore = (P::load(high.rows + at - 1) + P::load(low.rows + at - 1)) / two;
    const P range = top - bottom;
    const P boxRatio = P::load(volume.rows + at) / range;
    const P ease = ((top + bottom) / two - middleBefore) / boxRatio * P::all(10000.0);
    // Times 1, or times not-a-number where the ratio was too large: the quotient alone would not show that.
    return whereEqual(range, none, none, ease * (one + (boxRatio - boxRatio)));
  });
}

std::size_t breakouts(Source high, Source low, Records records, double* out) {
  const std::ptrdiff_t count = least(provable(high, records, 4), provable(low, records, 4));
  return eachRow<4>(records, count, out, [=]<class P>(std::ptrdiff_t at) {
    P top = P::load(high.rows + at - 1), bottom = P::load(low.rows + at - 1);
    ORVEX_UNROLL for (int j = 2; j <= 4; ++j) {
      top = larger(top, P::load(high.rows + at - j));
      bottom = smaller(bottom, P::load(low.rows + at - j));
    }
    const P above = whereGreater(P::load(high.rows + at), top, P::all(1.0), P::all(0.0));
    return whereGreater(bottom, P::load(low.rows + at), P::all(-1.0), above);
  });
}

std::size_t percentAbove(Source a, Source b, int lag, Records records, double* out) {
  const std::ptrdiff_t count = least(provable(a, records, 0), provable(b, records, lag));
  return eachRow<4>(records, count, out, [=]<class P>(std::ptrdiff_t at) {
    const P whole = P::load(b.rows + at - lag), none = P::all(0.0);
    return whereEqual(whole, none, none, (P::load(a.rows + at) - whole) / whole * P::all(100.0));
  });
}

}  // namespace
