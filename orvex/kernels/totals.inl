// Rows that need little of the row before: a total, a direction, a range. What does not depend on it is computed many
// records at a time, the rest one by one.
#pragma once

#include <cstddef>

#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/quotients.inl"
#include "orvex/kernels/standard.h"

namespace {

using orvex::kernels::Bars;

/// So few rows that the processor is at the changes of the next ones while it waits for the sums of these.
constexpr std::ptrdiff_t totalPiece = 16;

constexpr auto addUp = [](double before, double change) { return before + change; };

/// Rows of `out` for `count` rows from `from` (counted from 0): `change(pack of rows)` many at a time, then row =
/// next(row before, change), mostly their sum. An infinite or undefined change, or one that makes the row so, must show
/// in every later row: a piece is good when its last row is.
template <class Change, class Next = decltype(addUp)>
std::size_t totals(std::ptrdiff_t from, std::ptrdiff_t count, double* out, Change change, Next next = addUp) {
  if (count == 0 || from < 1 || !isHandled(out[from - 1])) return 0;
  double changes[totalPiece];
  double row = out[from - 1];
  for (std::ptrdiff_t done = 0; done < count; done += totalPiece) {
    const std::ptrdiff_t piece = least(totalPiece, count - done);
    const std::ptrdiff_t first = from + done;
    eachBlock<4>(0, piece, [=, &changes]<int Lanes, int Count>(std::ptrdiff_t i) {
      ORVEX_UNROLL for (int k = 0; k < Count; ++k) {
        change.template operator()<Pack<Lanes>>(first + i + k * Lanes).store(changes + i + k * Lanes);
      }
    });
    for (std::ptrdiff_t i = 0; i < piece; ++i) out[first + i] = row = next(row, changes[i]);
    if (!isHandled(row)) return static_cast<std::size_t>(done);
  }
  return static_cast<std::size_t>(count);
}

/// How far two values are apart; 0 without a sign where they are equal.
template <class P>
P distance(P a, P b) {
  return magnitude(a - b);
}

/// The records that can be computed from two columns' rows record - 1 and record.
std::ptrdiff_t provablePair(Source a, Source b, Records records) {
  return least(provable(a, records, 1), provable(b, records, 1));
}

std::size_t runningTotal(Source source, Records records, double* out) {
  const double* const x = source.rows;
  return totals(records.first - 1, provable(source, records, 0), out,
                [=]<class P>(std::ptrdiff_t row) { return P::load(x + row); });
}

std::size_t onBalanceVolume(Source price, Source volume, Records records, double* out) {
  const double* const x = price.rows;
  const double* const v = volume.rows;
  return totals(records.first - 1, provablePair(price, volume, records), out, [=]<class P>(std::ptrdiff_t row) {
    const P now = P::load(x + row), then = P::load(x + row - 1), amount = P::load(v + row), zero = P::all(0.0);
    return whereGreater(now, then, amount, whereGreater(then, now, zero - amount, zero));
  });
}

std::size_t priceVolumeTrend(Source price, Source volume, Records records, double* out) {
  const double* const x = price.rows;
  const double* const v = volume.rows;
  return totals(records.first - 1, provablePair(price, volume, records), out, [=]<class P>(std::ptrdiff_t row) {
    const P then = P::load(x + row - 1);
    return (P::load(x + row) - then) / then * P::load(v + row);
  });
}

template <bool rising>
std::size_t volumeIndex(Source price, Source volume, Records records, double* out) {
  const double* const x = price.rows;
  const double* const v = volume.rows;
  return totals(
      records.first - 1, provablePair(price, volume, records), out,
      [=]<class P>(std::ptrdiff_t row) {
        const P then = P::load(x + row - 1), before = P::load(v + row - 1), amount = P::load(v + row);
        const P move = (P::load(x + row) - then) / then;
        return whereGreater(rising ? amount : before, rising ? before : amount, move, P::all(0.0));
      },
      [](double before, double move) { return move * before + before; });
}

std::size_t tradeVolume(Source price, Source volume, double tick, int* direction, Records records, double* out) {
  const std::ptrdiff_t from = records.first - 1;
  const std::ptrdiff_t count = provablePair(price, volume, records);
  if (count == 0 || !isHandled(tick) || !isHandled(out[from - 1])) return 0;
  const double* const x = price.rows;
  const double* const v = volume.rows;
  int turns[totalPiece];
  double total = out[from - 1];
  int last = *direction;
  for (std::ptrdiff_t start = from; start < from + count; start += totalPiece) {
    const std::ptrdiff_t piece = least(totalPiece, from + count - start);
    for (std::ptrdiff_t i = 0; i < piece; ++i) {
      const double move = x[start + i] - x[start + i - 1];
      turns[i] = (move > tick) - (move < -tick);
    }
    // Whole numbers, so that the choice is a conditional move and no jump, which would often be guessed wrong.
    for (std::ptrdiff_t i = 0; i < piece; ++i) turns[i] = last = turns[i] != 0 ? turns[i] : last;
    for (std::ptrdiff_t i = 0; i < piece; ++i) out[start + i] = total += turns[i] * v[start + i];
  }
  *direction = last;
  return static_cast<std::size_t>(count);
}

/// Whether `count` values are all the same.
bool isConstant(const double* x, std::ptrdiff_t count) {
  using P = WidestPack;
  std::ptrdiff_t i = 1;
  P moves = P::all(0.0);
  for (; i + widestLanes <= count; i += widestLanes) moves = moves + distance(P::load(x + i), P::load(x + i - 1));
  double rest = 0.0;
  for (; i < count; ++i) rest = x[i] == x[i - 1] ? rest : 1.0;
  double all = rest;
  for (int lane = 0; lane < widestLanes; ++lane) all += moves.v[lane];
  return all == 0.0;
}

std::size_t meanPrice(Bars bars, Source volume, Source session, orvex::kernels::Traded* sums, Records records,
                      double* out) {
  const std::ptrdiff_t from = records.first - 1;
  std::ptrdiff_t count = least(least(provable(bars.high, records, 0), provable(bars.low, records, 0)),
                               least(provable(bars.close, records, 0), provable(volume, records, 0)));
  if (session.rows != nullptr) count = least(count, provable(session, records, 1));
  if (count == 0 || !isHandled(sums->flow) || !isHandled(sums->volume)) return 0;
  const Divisor three(3.0);
  const double* const v = volume.rows;
  const double* const begins = session.rows;
  // A piece is divided when the next one has been added up: numbers that have just been written one by one are slow to
  // be read as packs.
  double flows[2][totalPiece];
  double volumes[2][totalPiece];
  double flow = sums->flow, total = sums->volume;
  // Where volumes below 0 have left almost nothing of a total, the mean is no number.
  double check = 0.0;
  const auto divide = [&](std::ptrdiff_t start, std::ptrdiff_t piece, int turn) {
    eachBlock<4>(0, piece, [=, &flows, &volumes, &check]<int Lanes, int Count>(std::ptrdiff_t i) {
      using P = Pack<Lanes>;
      P sum = P::all(0.0);
      ORVEX_UNROLL for (int k = 0; k < Count; ++k) {
        const std::ptrdiff_t at = i + k * Lanes;
        const P whole = P::load(volumes[turn] + at), zero = P::all(0.0);
        const P mean = whereEqual(whole, zero, zero, P::load(flows[turn] + at) / whole);
        mean.store(out + start + at);
        sum = sum + mean * zero;
      }
      ORVEX_UNROLL for (int lane = 0; lane < Lanes; ++lane) check += sum.v[lane];
    });
  };
  std::ptrdiff_t start = from, last = 0;
  int turn = 0;
  for (; start < from + count; start += totalPiece, turn = 1 - turn) {
    const std::ptrdiff_t piece = least(totalPiece, from + count - start);
    double* const flowing = flows[turn];
    double* const trading = volumes[turn];
    eachBlock<4>(0, piece, [=]<int Lanes, int Count>(std::ptrdiff_t i) {
      using P = Pack<Lanes>;
      ORVEX_UNROLL for (int k = 0; k < Count; ++k) {
        const std::ptrdiff_t at = i + k * Lanes, row = start + at;
        const P sum = P::load(bars.high.rows + row) + P::load(bars.low.rows + row) + P::load(bars.close.rows + row);
        (sum / three * P::load(v + row)).store(flowing + at);
      }
    });
    // Most pieces are of one session.
    const bool isOne = begins == nullptr || isConstant(begins + start - 1, piece + 1);
    for (std::ptrdiff_t i = 0; i < piece; ++i) {
      if (!isOne && begins[start + i] != begins[start + i - 1]) flow = total = 0.0;
      flowing[i] = flow = flow + flowing[i];
      trading[i] = total = total + v[start + i];
    }
    if (start > from) divide(start - totalPiece, totalPiece, 1 - turn);
    last = piece;
  }
  divide(start - totalPiece, last, 1 - turn);
  if (check != 0.0 || !isHandled(flow) || !isHandled(total)) return 0;
  *sums = {flow, total};
  return static_cast<std::size_t>(count);
}

/// Its passes wait for no sum: short pieces cost more than they hide.
constexpr std::ptrdiff_t swingPiece = 256;

std::size_t swing(Source open, Bars bars, double limit, double* range, Records records, double* out) {
  const std::ptrdiff_t count = least(least(provable(bars.high, records, 0), provable(bars.low, records, 0)),
                                     provablePair(open, bars.close, records));
  if (!isHandled(limit) || !isHandled(*range)) return 0;
  const double* const o = open.rows;
  const double* const h = bars.high.rows;
  const double* const l = bars.low.rows;
  const double* const c = bars.close.rows;
  double ranges[swingPiece];
  for (std::ptrdiff_t done = 0; done < count; done += swingPiece) {
    const std::ptrdiff_t piece = least(swingPiece, count - done);
    const std::ptrdiff_t start = records.first - 1 + done;
    // Every range is above 0, so 0 can stand for a tie, which leaves that of the record before in force.
    eachBlock<2>(0, piece, [=, &ranges]<int Lanes, int Count>(std::ptrdiff_t i) {
      using P = Pack<Lanes>;
      const P tie = P::all(0.0), half = P::all(0.5);
      ORVEX_UNROLL for (int k = 0; k < Count; ++k) {
        const std::ptrdiff_t row = start + i + k * Lanes;
        const P high = P::load(h + row), low = P::load(l + row), before = P::load(c + row - 1);
        const P up = distance(high, before), down = distance(low, before), span = distance(high, low);
        const P body = P::all(0.25) * distance(before, P::load(o + row - 1));
        const P ofUp = whereGreater(up, span, up - half * down + body, tie);
        const P ofDown = whereGreater(down, span, down - half * up + body, tie);
        const P either = whereGreater(up, down, ofUp, whereGreater(down, up, ofDown, tie));
        whereGreater(span, larger(up, down), span + body, either).store(ranges + i + k * Lanes);
      }
    });
    double last = *range;
    for (std::ptrdiff_t i = 0; i < piece; ++i) ranges[i] = last = ranges[i] > 0.0 ? ranges[i] : last;
    eachBlock<2>(0, piece, [=, &ranges]<int Lanes, int Count>(std::ptrdiff_t i) {
      using P = Pack<Lanes>;
      const P zero = P::all(0.0);
      ORVEX_UNROLL for (int k = 0; k < Count; ++k) {
        const std::ptrdiff_t row = start + i + k * Lanes;
        const P close = P::load(c + row), before = P::load(c + row - 1);
        const P reach = larger(distance(P::load(h + row), before), distance(P::load(l + row), before));
        const P move = (close - before) + P::all(0.5) * (close - P::load(o + row)) +
                       P::all(0.25) * (before - P::load(o + row - 1));
        const P term = P::load(ranges + i + k * Lanes);
        whereGreater(term, zero, P::all(50.0) * move / term * reach / P::all(limit), zero).store(out + row);
      }
    });
    const std::ptrdiff_t finite = finitePrefix(out + start, piece);
    if (finite > 0) *range = ranges[finite - 1];
    if (finite < piece) return static_cast<std::size_t>(done + finite);
  }
  return static_cast<std::size_t>(count);
}

}  // namespace
