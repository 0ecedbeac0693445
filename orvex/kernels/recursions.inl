// Kernels in which each row, or the sum so far, needs the row before.
//
// What a chain of rows waits for is itself. But an average also forgets: two chains that begin with different values
// end, after a while, with the very same bits, and from then on they are one. So the records are cut into stretches
// that run side by side, each from a guess and some records early. Where a stretch, at its own first record, has not
// met the one before it, its rows are computed again until they do; the bits are those of the one chain in any case.
//
// An example: the average of factor 1/2 of a price that stays at 8. The one chain, once it is there, has 8 in every
// row. A stretch that begins with 0 has 4, 6, 7, 7.5 and so on: its distance halves with each record, and in the 54th
// there is no double left between them. It has 8 too, and all that follows is the same. Begun 106 records early, as
// `recur` does for this factor, it has met the chain at its own first record, and no row is computed twice.
#pragma once

#include <cstddef>
#include <cstring>

#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"

namespace {

constexpr int stretches = 8;

bool sameBits(double a, double b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

/// The chain of `Values` rows from row `from` on, up to row `end` or, where `rejoin` is set, to the first row that
/// already holds what the chain gives there.
template <int Values, class Next>
void chain(const double* x, double* const (&rows)[Values], std::ptrdiff_t from, std::ptrdiff_t end, bool rejoin,
           Next next) {
  double state[Values];
  for (int v = 0; v < Values; ++v) state[v] = rows[v][from - 1];
  for (std::ptrdiff_t i = from; i < end; ++i) {
    next(state, x[i], x[i - 1]);
    bool met = rejoin;
    for (int v = 0; v < Values; ++v) {
      met = met && sameBits(rows[v][i], state[v]);
      rows[v][i] = state[v];
    }
    if (met) return;
  }
}

/// Rows 0 .. count - 1 of `Values` columns: `next(state, x(i), x(i - 1))` turns the values of row i - 1 into those of
/// row i, doubles or packs of them, and never leaves the range of its arguments but for roundings, of which 2^31
/// records add up to less than a millionth of it. Row -1 is given. `memory` is how many records it takes to forget all
/// but 1 / e of a value.
template <int Values, class Next>
void recur(const double* x, double* const (&rows)[Values], std::ptrdiff_t count, double memory, Next next) {
  // Until nothing is left of 53 bits, and then until the last roundings have come together.
  const double warmUp = 16.0 + 45.0 * memory;
  const std::ptrdiff_t early = warmUp < static_cast<double>(count) ? static_cast<std::ptrdiff_t>(warmUp) : count;
  // Stretch k runs from row k x distance on; an odd number of cache lines keeps the stretches out of each other's way.
  const std::ptrdiff_t distance = (count - early) / (stretches * 16) * 16 - 8;
  const std::ptrdiff_t length = distance + early;
  if (distance < 8 || 2 * length > count) return chain(x, rows, 0, count, false, next);

  using P = Pack<widestLanes>;
  constexpr int packs = stretches / widestLanes;
  P state[packs][Values];
  P before[packs];
  P met[packs][Values];
  for (int p = 0; p < packs; ++p) {
    for (int v = 0; v < Values; ++v) state[p][v] = P::all(rows[v][-1]);
    before[p] = gather<P>(x - 1 + p * widestLanes * distance, distance);
  }
  const auto run = [&](std::ptrdiff_t from, std::ptrdiff_t end) {
    for (std::ptrdiff_t i = from; i < end; ++i) {
      ORVEX_UNROLL for (int p = 0; p < packs; ++p) {
        const std::ptrdiff_t at = i + p * widestLanes * distance;
        const P now = gather<P>(x + at, distance);
        next(state[p], now, before[p]);
        before[p] = now;
        // A stretch comes to a row that the next one wrote early after it: the last to write is the one that counts.
        for (int v = 0; v < Values; ++v) scatter(state[p][v], rows[v] + at, distance);
      }
    }
  };
  run(0, early);
  for (int p = 0; p < packs; ++p) {
    for (int v = 0; v < Values; ++v) met[p][v] = state[p][v];
  }
  run(early, length);

  for (int k = 1; k < stretches; ++k) {
    const std::ptrdiff_t own = k * distance + early;
    bool joined = true;
    for (int v = 0; v < Values; ++v) {
      joined = joined && sameBits(met[k / widestLanes][v].v[k % widestLanes], rows[v][own - 1]);
    }
    if (!joined) chain(x, rows, own, own + distance, true, next);
  }
  chain(x, rows, (stretches - 1) * distance + length, count, false, next);
}

/// `recur` for one column: the rows of the records, after the row before the first.
template <class Next>
std::size_t recursion(Source source, Records records, double memory, double* out, Next next) {
  const std::ptrdiff_t count = provable(source, records, 0);
  if (count == 0 || records.first < 2 || !isHandled(out[records.first - 2])) return 0;
  double* const rows[] = {out + (records.first - 1)};
  recur(source.rows + (records.first - 1), rows, count, memory, next);
  return static_cast<std::size_t>(count);
}

std::size_t exponential(Source source, double factor, Records records, double* out) {
  if (!(factor > 0.0 && factor <= 1.0)) return 0;
  return recursion(source, records, 1.0 / factor, out,
                   [=](auto& row, auto x, auto) { row[0] = spread(1.0 - factor, x) * row[0] + spread(factor, x) * x; });
}

std::size_t approach(Source source, double factor, Records records, double* out) {
  if (!(factor > 0.0 && factor <= 1.0)) return 0;
  return recursion(source, records, 1.0 / factor, out,
                   [=](auto& row, auto x, auto) { row[0] = row[0] + (x - row[0]) * spread(factor, x); });
}

std::size_t variable(Source source, Source momentum, Records records, double* out) {
  std::ptrdiff_t count = least(provable(source, records, 0), present(momentum, records, 0));
  if (count == 0 || records.first < 2 || !isHandled(out[records.first - 2])) return 0;
  const double* const x = source.rows + (records.first - 1);
  const double* const percent = momentum.rows + (records.first - 1);
  double* const row = out + (records.first - 1);
  double previous = row[-1];
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    // Up to a share of 2 a row is no larger than the row before and the source's twice: 2^31 of them stay in range.
    if (!(percent[i] <= 200.0 && percent[i] >= -200.0)) return static_cast<std::size_t>(i);
    const double share = percent[i] / 100.0;
    const double k = share > 0.0 ? share : 0.0 - share;
    row[i] = previous = (1.0 - k) * previous + k * x[i];
  }
  return static_cast<std::size_t>(count);
}

std::size_t movementProducts(Source a, Source b, Records records, double* total) {
  if (!isHandled(*total)) return 0;
  const std::ptrdiff_t count = least(provable(a, records, 1), provable(b, records, 1));
  constexpr std::ptrdiff_t piece = 256;
  double products[piece];
  double sum = *total;
  for (std::ptrdiff_t done = 0; done < count; done += piece) {
    const std::ptrdiff_t rows = least(piece, count - done);
    const double* const x = a.rows + (records.first - 1 + done);
    const double* const y = b.rows + (records.first - 1 + done);
    eachBlock<4>(0, rows, [=, &products]<int Lanes, int Count>(std::ptrdiff_t row) {
      using P = Pack<Lanes>;
      const P zero = P::all(0.0);
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        const std::ptrdiff_t at = row + i * Lanes;
        const P moveX = P::load(x + at) - P::load(x + at - 1);
        const P moveY = P::load(y + at) - P::load(y + at - 1);
        (larger(moveX, zero - moveX) * larger(moveY, zero - moveY)).store(products + at);
      }
    });
    for (std::ptrdiff_t i = 0; i < rows; ++i) sum += products[i];
  }
  *total = sum;
  return static_cast<std::size_t>(count);
}

}  // namespace
