// Windows that slide over a column: each record's is gone through directly and in its own order of operations, many
// records side by side. Running sums would be faster still and would drift.
//
// What a processor can do here is add; what it waits for are loads, since every value is needed by as many windows as
// it is in, and each time from another lane. So, where windows are long, the records are cut into as many stretches as
// a pack has lanes, and a pack holds one record of each: a window is then a row of whole packs, and each of them is
// loaded once for all windows of a block that it is in. Other records go one after the other in the lanes, and those of
// short windows many packs together, which then share what they load.
//
// An example with two lanes and the records 1 to 8: the stretches are 1 2 3 4 and 5 6 7 8, the packs (1 5), (2 6),
// (3 7) and (4 8), and the sums of two records, (2 6) + (1 5), (3 7) + (2 6), (4 8) + (3 7), load no pack anew.
#pragma once

#include <cstddef>
#include <type_traits>

#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"

namespace {

/// Rows are addressed from 0. `center` is read at the record's own row alone, unless it is a second column of values;
/// null where a kernel has none.
struct SlidingColumns {
  const double* values;
  const double* center;
  double* out;
  bool hasTwoWindows = false;
};

constexpr std::ptrdiff_t longestSliding = 256;

/// Whole numbers as doubles, at hand for every lane.
struct WholeNumbers {
  double values[longestSliding + 1];

  constexpr WholeNumbers() : values() {
    for (int i = 0; i <= longestSliding; ++i) values[i] = i;
  }
};
constexpr WholeNumbers wholeNumbers;

/// `Count` packs of records one after the other. What a kernel does with a block is the same for this and the next.
template <class P_, int Count>
struct SideBySide {
  using P = P_;
  static constexpr int count = Count;

  const SlidingColumns& columns;
  std::ptrdiff_t row;

  P value(int i, std::ptrdiff_t age) const { return P::load(columns.values + row + i * P::lanes - age); }
  P center(int i, std::ptrdiff_t age = 0) const { return P::load(columns.center + row + i * P::lanes - age); }
  void fill(int i, P value) const { value.store(columns.out + row + i * P::lanes); }
  /// A number up to the length of the window, in all lanes.
  static P number(std::ptrdiff_t whole) { return P::all(static_cast<double>(whole)); }

  /// `visit(i, age, value)` for each pack of records i and each value of its window, the newest (of age 0) first.
  template <class Visit>
  void newestFirst(std::ptrdiff_t window, Visit visit) const {
    for (std::ptrdiff_t age = 0; age < window; ++age) {
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) visit(i, age, value(i, age));
    }
  }
};

/// `Count` packs of records of which each has one of every stretch.
template <int Count>
struct InStretches {
  using P = WidestPack;
  static constexpr int count = Count;

  const P* values;  // that of the first of the records, behind those before it
  const P* centers;
  P* out;

  P value(int i, std::ptrdiff_t age) const { return values[i - age]; }
  P center(int i, std::ptrdiff_t age = 0) const { return centers[i - age]; }
  void fill(int i, P value) const { out[i] = value; }
  static P number(std::ptrdiff_t whole) { return P::all(wholeNumbers.values[whole]); }

  // The packs in their order, each for all the windows that it is in: at both ends these are not all.
  template <class Visit>
  void newestFirst(std::ptrdiff_t window, Visit visit) const {
    unroll<1, Count>([&](auto back) {
      constexpr int at = Count - back.value;
      visitSome<at, Count>(at, visit);
    });
    for (std::ptrdiff_t at = 0; at > Count - 1 - window; --at) visitSome<0, Count>(at, visit);
    unroll<1, Count>([&](auto back) {
      constexpr int end = Count - back.value;
      visitSome<0, end>(end - window, visit);
    });
  }

 private:
  /// The windows of the records `First` to below `End`.
  template <int First, int End, class Visit>
  void visitSome(std::ptrdiff_t at, const Visit& visit) const {
    const P value = values[at];
    unroll<First, End>([&](auto i) { visit(i.value, i.value - at, value); });
  }
};

/// Packs of the rows from `x` on, `stretch` rows from lane to lane: `count` of them, a multiple of the lanes.
void packStretches(const double* x, std::ptrdiff_t stretch, std::ptrdiff_t count, WidestPack* packs) {
  for (std::ptrdiff_t i = 0; i < count; i += widestLanes) {
    WidestPack square[widestLanes];
    ORVEX_UNROLL for (int lane = 0; lane < widestLanes; ++lane) square[lane] = WidestPack::load(x + lane * stretch + i);
    transpose(square);
    ORVEX_UNROLL for (int k = 0; k < widestLanes; ++k) packs[i + k] = square[k];
  }
}

/// The other way round. Whether all are numbers.
bool unpackStretches(const WidestPack* packs, std::ptrdiff_t stretch, std::ptrdiff_t count, double* x) {
  WidestPack check = WidestPack::all(0.0);
  for (std::ptrdiff_t i = 0; i < count; i += widestLanes) {
    WidestPack square[widestLanes];
    ORVEX_UNROLL for (int k = 0; k < widestLanes; ++k) {
      square[k] = packs[i + k];
      check = check + square[k] * WidestPack::all(0.0);
    }
    transpose(square);
    ORVEX_UNROLL for (int lane = 0; lane < widestLanes; ++lane) square[lane].store(x + lane * stretch + i);
  }
  return isZero(check);
}

/// Fills rows from `first` (counted from 0) on, as many as make stretches of whole blocks; their number, or 0 where not
/// all are numbers. REQUIRES: a window no shorter than a block.
template <int block, class Kernel>
std::ptrdiff_t slideInStretches(const SlidingColumns& columns, std::ptrdiff_t window, std::ptrdiff_t first,
                                std::ptrdiff_t count, const Kernel& kernel) {
  constexpr std::ptrdiff_t piece = 64;
  static_assert(8 % block == 0 && 8 % widestLanes == 0 && piece % 8 == 0);
  const std::ptrdiff_t before = window - 1;
  const std::ptrdiff_t centersBefore = columns.hasTwoWindows ? before : 0;
  const std::ptrdiff_t stretch = count / widestLanes / 8 * 8;
  if (window > longestSliding || stretch < 2 * window) return 0;
  WidestPack values[longestSliding - 1 + piece];
  WidestPack centers[longestSliding - 1 + piece];
  WidestPack out[piece];
  for (std::ptrdiff_t i = 0; i < before; ++i) {
    values[i] = gather<WidestPack>(columns.values + first - before + i, stretch);
  }
  for (std::ptrdiff_t i = 0; i < centersBefore; ++i) {
    centers[i] = gather<WidestPack>(columns.center + first - before + i, stretch);
  }
  bool finite = true;
  for (std::ptrdiff_t done = 0; done < stretch && finite; done += piece) {
    const std::ptrdiff_t rows = least(piece, stretch - done);
    packStretches(columns.values + first + done, stretch, rows, values + before);
    if (columns.center != nullptr) packStretches(columns.center + first + done, stretch, rows, centers + centersBefore);
    for (std::ptrdiff_t i = 0; i < rows; i += block) {
      kernel(InStretches<block>{values + before + i, centers + centersBefore + i, out + i});
    }
    finite = unpackStretches(out, stretch, rows, columns.out + first + done);
    for (std::ptrdiff_t i = 0; i < before; ++i) values[i] = values[i + rows];
    for (std::ptrdiff_t i = 0; i < centersBefore; ++i) centers[i] = centers[i + rows];
  }
  return finite ? stretch * widestLanes : 0;
}

/// Runs `kernel(block)` for `count` rows from `first` (counted from 0) on, with the window of records that ends at
/// each. How many of the rows are numbers: up to the first that is none. `longEnough` is the shortest window that pays
/// for the turning of columns into packs and back; `Packs` and `PacksInTurn` are how many packs 16 registers hold side
/// by side, and in stretches; of 8 some are left for what is loaded. REQUIRES: a result out of which an infinity or
/// not-a-number, once met, does not come as a number.
template <int Packs, int PacksInTurn = 8, class Kernel>
std::size_t slide(const SlidingColumns& columns, std::ptrdiff_t window, std::ptrdiff_t longEnough, std::ptrdiff_t first,
                  std::ptrdiff_t count, Kernel kernel) {
  constexpr bool isNarrow = registers == 8;
  constexpr int Count = isNarrow ? (Packs * 3 + 3) / 4 : Packs, InTurn = isNarrow && PacksInTurn > 4 ? 4 : PacksInTurn;
  std::ptrdiff_t done = window < longEnough ? 0 : slideInStretches<InTurn>(columns, window, first, count, kernel);
  // Looked at while they are in the first-level cache.
  constexpr std::ptrdiff_t piece = 1024;
  while (done < count) {
    const std::ptrdiff_t rows = least(piece, count - done);
    eachBlock<Count>(first + done, rows, [&]<int Lanes, int Blocks>(std::ptrdiff_t row) {
      kernel(SideBySide<Pack<Lanes>, Blocks>{columns, row});
    });
    const std::ptrdiff_t finite = finitePrefix(columns.out + first + done, rows);
    done += finite;
    if (finite < rows) break;
  }
  return static_cast<std::size_t>(done);
}

/// More rows than the second-level cache has room for.
constexpr std::ptrdiff_t beyondCaches = 200'000;

/// In which order a window's values are taken.
enum class Order { newestFirst, oldestFirst };

// A kind of sum over a window: `next(sum, value, place, center)` is the sum with one value more, whose place in the
// window is counted from the oldest, which has 1; `result(sum)` is the row. `hasCenter` tells whether there is a
// center, `isChecked` whether rows may come out as no numbers that nobody else looks for, and `longEnough` is the
// shortest window that gains by stretches, as measured: with four lanes plain sums gain sooner, weighted ones never; in
// 8 registers plain ones never.

/// The sum of the window's values, and nothing more: of values that a caller knows, or with rows that it looks at.
struct PlainSum {
  static constexpr bool hasCenter = false, isChecked = false;
  static constexpr std::ptrdiff_t longEnough = registers == 8 ? longestSliding + 1 : widestLanes == 4 ? 24 : 40;

  template <class P>
  P next(P sum, P value, P, P) const {
    return sum + value;
  }
  template <class P>
  P result(P sum) const {
    return sum;
  }
};

/// Fills rows from `first` (counted from 0) on, all but the few of a last piece that is too short, of windows that
/// `Reach` packs side by side cover and fewer do not. Their number; of a checked sum up to the first that is no number.
///
/// Windows that begin a pack apart share all values but those at their ends. So packs are gone through in the order of
/// the values, each shifted by a record, by two, ... and loaded once for all the windows that it is in, of which each
/// goes on from where the pack before has left it. Some `Chains` windows are on their way at a time, in several
/// stretches of the piece, since an addition waits for the one before.
template <int Reach, int Chains, Order order, class Sum>
std::ptrdiff_t slideTogether(SlidingColumns columns, std::ptrdiff_t window, std::ptrdiff_t first, std::ptrdiff_t count,
                             Sum sum) {
  using P = WidestPack;
  constexpr std::ptrdiff_t lanes = widestLanes;
  constexpr int atOnce = Chains / Reach < 1 ? 1 : Chains / Reach;
  constexpr std::ptrdiff_t onward = order == Order::newestFirst ? -lanes : lanes;
  constexpr std::ptrdiff_t toNext = onward / lanes;
  const std::ptrdiff_t rest = window - (Reach - 1) * lanes;
  const std::ptrdiff_t toFirst = order == Order::newestFirst ? 0 : 1 - window;
  std::ptrdiff_t done = 0;
  while (true) {
    // Few, so that they stay in the first-level cache.
    const std::ptrdiff_t packs = least(32, (count - done) / (atOnce * lanes));
    // Windows are shared but at the ends of a stretch.
    if (packs < 2 * Reach) return done;
    const std::ptrdiff_t stretch = packs * lanes, piece = atOnce * stretch;
    // Of a column that no cache holds the next piece is fetched meanwhile: the processor foresees no such leaps.
    const bool fetchesNext = count > beyondCaches && count - done >= 2 * piece;
    P total[atOnce][Reach] = {};
    P center[atOnce][Reach] = {};
    std::ptrdiff_t row = first + done + (order == Order::newestFirst ? stretch - lanes : 0);
    for (std::ptrdiff_t pack = 0; pack < packs + Reach - 1; ++pack, row += onward) {
      if (fetchesNext) {
        ORVEX_UNROLL for (int s = 0; s < atOnce; ++s) {
          __builtin_prefetch(columns.values + row + s * stretch + toFirst + piece);
          __builtin_prefetch(columns.out + row + s * stretch + piece, 1);
        }
      }
      ORVEX_UNROLL for (int s = 0; s < atOnce; ++s) {
        ORVEX_UNROLL for (int begun = Reach - 1; begun > 0; --begun) {
          total[s][begun] = total[s][begun - 1];
          if constexpr (Sum::hasCenter) center[s][begun] = center[s][begun - 1];
        }
        total[s][0] = P::all(0.0);
        if constexpr (Sum::hasCenter) {
          if (pack < packs) center[s][0] = P::load(columns.center + row + s * stretch);
        }
      }
      const auto take = [&](std::ptrdiff_t step, auto windows) {
        P value[atOnce];
        ORVEX_UNROLL for (int s = 0; s < atOnce; ++s) {
          value[s] = loadOnce(columns.values + row + s * stretch + toFirst + step * toNext);
        }
        ORVEX_UNROLL for (int begun = 0; begun < windows.value; ++begun) {
          const std::ptrdiff_t passed = step + begun * lanes;
          const P place = P::all(wholeNumbers.values[order == Order::newestFirst ? window - passed : passed + 1]);
          ORVEX_UNROLL for (int s = 0; s < atOnce; ++s) {
            total[s][begun] = sum.next(total[s][begun], value[s], place, center[s][begun]);
          }
        }
      };
      for (std::ptrdiff_t step = 0; step < rest; ++step) take(step, Constant<Reach>());
      // The last windows of the piece are at their end, where the column may be as well.
      if (pack < packs + Reach - 2) {
        for (std::ptrdiff_t step = rest; step < lanes; ++step) take(step, Constant<Reach - 1>());
      }
      if (pack < Reach - 1) continue;
      ORVEX_UNROLL for (int s = 0; s < atOnce; ++s) {
        sum.result(total[s][Reach - 1]).store(columns.out + row + s * stretch - (Reach - 1) * onward);
      }
    }
    const std::ptrdiff_t finite = Sum::isChecked ? finitePrefix(columns.out + first + done, piece) : piece;
    done += finite;
    if (finite < piece) return done;
  }
}

/// `slideTogether` for a window of any length: no row of one that is too short or too long to gain by it. Narrower
/// packs wait less for loads and have half the registers: with four lanes only plain sums gain, and with two or in 8
/// registers nothing does.
template <int Chains, Order order, class Sum>
std::ptrdiff_t slideShort(const SlidingColumns& columns, std::ptrdiff_t window, std::ptrdiff_t first,
                          std::ptrdiff_t count, const Sum& sum) {
  if constexpr (widestLanes == 8 || (widestLanes == 4 && registers == 16 && std::is_base_of_v<PlainSum, Sum>)) {
    constexpr int chains = widestLanes == 8 ? Chains : 10;
    switch ((window + widestLanes - 1) / widestLanes) {
      case 2:
        return slideTogether<2, chains, order>(columns, window, first, count, sum);
      case 3:
        return slideTogether<3, chains, order>(columns, window, first, count, sum);
      case 4:
        return slideTogether<4, chains, order>(columns, window, first, count, sum);
      case 5:
        return slideTogether<5, chains, order>(columns, window, first, count, sum);
    }
  }
  return 0;
}

/// What `slide` does, for a result that comes of one sum over the window, the newest value first.
template <int Count, int Chains, class Sum>
std::size_t slideSum(const SlidingColumns& columns, std::ptrdiff_t window, std::ptrdiff_t first, std::ptrdiff_t count,
                     Sum sum) {
  const std::ptrdiff_t done = slideShort<Chains, Order::newestFirst>(columns, window, first, count, sum);
  const auto each = [=]<class Block>(const Block& block) {
    using P = typename Block::P;
    P total[Block::count] = {};
    P center[Block::count] = {};
    if constexpr (Sum::hasCenter) {
      ORVEX_UNROLL for (int i = 0; i < Block::count; ++i) center[i] = block.center(i);
    }
    block.newestFirst(window, [&](int i, std::ptrdiff_t age, P value) {
      total[i] = sum.next(total[i], value, block.number(window - age), center[i]);
    });
    ORVEX_UNROLL for (int i = 0; i < Block::count; ++i) block.fill(i, sum.result(total[i]));
  };
  return static_cast<std::size_t>(done) +
         slide<Count>(columns, window, Sum::longEnough, first + done, count - done, each);
}

}  // namespace
