// The largest and smallest values of windows of records. An extreme is exact in whatever order it is formed, so long as
// of equal values the right one is kept: every comparison here is made between an older and a newer part of the window.
#pragma once

#include <cstddef>

#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"

namespace {

using orvex::kernels::Ties;

double larger(double a, double b) {
  return a > b ? a : b;
}

double smaller(double a, double b) {
  return a < b ? a : b;
}

struct Highest {
  template <class P>
  static P choose(P a, P b) {
    return larger(a, b);
  }
  /// Lane by lane: `yes` where a is beyond b, `no` elsewhere.
  template <class P>
  static P whereBeyond(P a, P b, P yes, P no) {
    return whereGreater(a, b, yes, no);
  }
};

struct Lowest {
  template <class P>
  static P choose(P a, P b) {
    return smaller(a, b);
  }
  template <class P>
  static P whereBeyond(P a, P b, P yes, P no) {
    return whereGreater(b, a, yes, no);
  }
};

template <class Extreme, Ties ties>
struct Pick {
  template <class P>
  static P of(P older, P newer) {
    return ties == Ties::Newest ? Extreme::choose(older, newer) : Extreme::choose(newer, older);
  }
};

constexpr std::ptrdiff_t widestDoubled = 256;

/// Out of the extremes of k values those of 2k, and so on up to the window, which two of the last ones cover: about
/// log2(window) passes over a piece of the column that stays in the cache.
template <class P>
void extremesByDoubling(const double* x, std::ptrdiff_t window, std::ptrdiff_t first, std::ptrdiff_t count,
                        double* out) {
  constexpr std::ptrdiff_t piece = 1024;
  double scratch[piece + widestDoubled];
  for (std::ptrdiff_t start = first; start < first + count; start += piece) {
    const std::ptrdiff_t rows = first + count - start < piece ? first + count - start : piece;
    // extremes[i] is that of the k values from i on.
    const double* extremes = x + start - (window - 1);
    std::ptrdiff_t length = rows + window - 1;
    std::ptrdiff_t k = 1;
    for (; 2 * k <= window; k *= 2) {
      length -= k;
      eachBlock<4>(0, length, [=, &scratch]<int Lanes, int Count>(std::ptrdiff_t row) {
        using Rows = Pack<Lanes>;
        ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
          const double* const at = extremes + row + i * Lanes;
          P::of(Rows::load(at), Rows::load(at + k)).store(scratch + row + i * Lanes);
        }
      });
      extremes = scratch;
    }
    eachBlock<4>(0, rows, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
      using Rows = Pack<Lanes>;
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        const double* const at = extremes + row + i * Lanes;
        P::of(Rows::load(at), Rows::load(at + window - k)).store(out + start + row + i * Lanes);
      }
    });
  }
}

/// The column in blocks as long as the window (Marcel van Herk 1992, Joseph Gil and Michael Werman 1993): a window is
/// the end of one block and the beginning of the next, and the extremes of all ends and beginnings take two passes.
template <class P>
void extremesByBlocks(const double* x, std::ptrdiff_t window, std::ptrdiff_t first, std::ptrdiff_t count, double* out) {
  for (std::ptrdiff_t start = first; start < first + count; start += window) {
    const std::ptrdiff_t rows = first + count - start < window ? first + count - start : window;
    // The window of row start + i begins at block[i].
    const double* const block = x + start - (window - 1);
    double extreme = block[window - 1];
    for (std::ptrdiff_t i = window - 2; i >= rows; --i) extreme = P::of(block[i], extreme);
    for (std::ptrdiff_t i = rows < window ? rows - 1 : window - 1; i >= 0; --i) {
      extreme = P::of(block[i], extreme);
      out[start + i] = extreme;
    }
    if (rows < 2) continue;
    extreme = block[window];
    for (std::ptrdiff_t i = 1;; ++i) {
      out[start + i] = P::of(out[start + i], extreme);
      if (i == rows - 1) break;
      extreme = P::of(extreme, block[window + i]);
    }
  }
}

template <class Extreme, Ties ties>
std::size_t extremes(Source source, int window, Records records, double* out) {
  if (window < 1) return 0;
  const std::ptrdiff_t before = window - 1, first = records.first - 1;
  if (window > widestDoubled) {
    const std::ptrdiff_t count = provable(source, records, before);
    extremesByBlocks<Pick<Extreme, ties>>(source.rows, window, first, count, out);
    return static_cast<std::size_t>(count);
  }
  const std::ptrdiff_t count = present(source, records, before);
  if (count == 0) return 0;
  // Piece by piece, each looked at right before it is used.
  constexpr std::ptrdiff_t piece = 1024;
  std::ptrdiff_t handled = handledPrefix(source.rows + first - before, before);
  if (handled < before) return 0;
  for (std::ptrdiff_t done = 0; done < count; done += piece) {
    const std::ptrdiff_t rows = least(piece, count - done);
    handled = handledPrefix(source.rows + first + done, rows);
    extremesByDoubling<Pick<Extreme, ties>>(source.rows, window, first + done, handled, out);
    if (handled < rows) return static_cast<std::size_t>(done + handled);
  }
  return static_cast<std::size_t>(count);
}

std::size_t highest(Source source, int window, Ties ties, Records records, double* out) {
  return ties == Ties::Newest ? extremes<Highest, Ties::Newest>(source, window, records, out)
                              : extremes<Highest, Ties::Oldest>(source, window, records, out);
}

std::size_t lowest(Source source, int window, Ties ties, Records records, double* out) {
  return ties == Ties::Newest ? extremes<Lowest, Ties::Newest>(source, window, records, out)
                              : extremes<Lowest, Ties::Oldest>(source, window, records, out);
}

/// The latest value that is beyond its neighbours: it is, where it is beyond the extreme of the `neighbours` values
/// before it and of those after it.
template <class Extreme>
std::size_t fractals(Source source, int neighbours, Records records, double latest, double* extremes, double* out) {
  if (neighbours < 1 || records.first < 1 || records.last < records.first) return 0;
  const std::ptrdiff_t reach = neighbours;
  const std::ptrdiff_t from = records.first - 1;
  // Record 2 x reach + 1 is the first to have seen a value with all its neighbours.
  const std::ptrdiff_t quiet = least(2 * reach < from ? from : 2 * reach, records.last);
  std::ptrdiff_t done = quiet;
  if (quiet < records.last) {
    // The neighbours before the value that the first of them has seen end `reach` + 1 records before it.
    const Records windows = {static_cast<int>(quiet - reach), records.last};
    const auto known =
        static_cast<std::ptrdiff_t>(::extremes<Extreme, Ties::Newest>(source, neighbours, windows, extremes));
    if (known > reach + 1) done = quiet - reach - 1 + known;
  }
  constexpr double none = largestInput;
  const auto mark = [=]<int Lanes>(Constant<Lanes>, std::ptrdiff_t row) {
    using P = Pack<Lanes>;
    const P value = P::load(source.rows + row - reach), no = P::all(none);
    const P later = P::load(extremes + row), earlier = P::load(extremes + row - reach - 1);
    Extreme::whereBeyond(value, later, Extreme::whereBeyond(value, earlier, value, no), no).store(out + row);
  };
  // From the last record back, so that extremes that stand in `out` are there until they are asked.
  std::ptrdiff_t row = done;
  while (row - widestLanes >= quiet) mark(Constant<widestLanes>(), row -= widestLanes);
  while (row > quiet) mark(Constant<1>(), --row);
  for (row = from; row < quiet; ++row) out[row] = latest;
  for (; row < done; ++row) {
    if (out[row] != none) latest = out[row];
    out[row] = latest;
  }
  return static_cast<std::size_t>(done - from);
}

}  // namespace
