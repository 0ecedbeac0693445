// Running totals: what does not depend on the row before is computed many records at a time, the sum itself one by one.
#pragma once

#include <cstddef>

#include "orvex/kernels/pack.h"
#include "orvex/kernels/provable.inl"

namespace {

constexpr std::ptrdiff_t totalPiece = 256;

/// Rows of `out` for `count` rows from `from` (counted from 0): `change(pack of rows)` many at a time, then row =
/// next(row before, change). An infinite or undefined change, or one that makes the row so, must show in every later
/// row: a piece is good when its last row is.
template <class Change, class Next>
std::size_t totals(std::ptrdiff_t from, std::ptrdiff_t count, double* out, Change change, Next next) {
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

/// The records that can be computed from two columns' rows record - 1 and record.
std::ptrdiff_t provablePair(Source a, Source b, Records records) {
  return least(provable(a, records, 1), provable(b, records, 1));
}

std::size_t runningTotal(Source source, Records records, double* out) {
  const double* const x = source.rows;
  return totals(
      records.first - 1, provable(source, records, 0), out,
      [=]<class P>(std::ptrdiff_t row) { return P::load(x + row); },
      [](double before, double change) { return before + change; });
}

std::size_t onBalanceVolume(Source price, Source volume, Records records, double* out) {
  const double* const x = price.rows;
  const double* const v = volume.rows;
  return totals(
      records.first - 1, provablePair(price, volume, records), out,
      [=]<class P>(std::ptrdiff_t row) {
        const P now = P::load(x + row), then = P::load(x + row - 1), amount = P::load(v + row), zero = P::all(0.0);
        return whereGreater(now, then, amount, whereGreater(then, now, zero - amount, zero));
      },
      [](double before, double change) { return before + change; });
}

std::size_t priceVolumeTrend(Source price, Source volume, Records records, double* out) {
  const double* const x = price.rows;
  const double* const v = volume.rows;
  return totals(
      records.first - 1, provablePair(price, volume, records), out,
      [=]<class P>(std::ptrdiff_t row) {
        const P then = P::load(x + row - 1);
        return (P::load(x + row) - then) / then * P::load(v + row);
      },
      [](double before, double change) { return change + before; });
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
  if (!isHandled(tick)) return 0;
  const std::ptrdiff_t count = provablePair(price, volume, records);
  const double* const x = price.rows;
  const double* const v = volume.rows;
  const std::ptrdiff_t from = records.first - 1;
  double total = out[from - 1];
  double sign = *direction;
  if (!isHandled(total)) return 0;
  for (std::ptrdiff_t row = from; row < from + count; ++row) {
    const double move = x[row] - x[row - 1];
    sign = move > tick ? 1.0 : sign;
    sign = move < -tick ? -1.0 : sign;
    out[row] = total += sign * v[row];
  }
  *direction = static_cast<int>(sign);
  return static_cast<std::size_t>(count);
}

}  // namespace
