// Kernels in which each row comes from one row of each input, or from a row some records back, and from no sum.
#pragma once

#include <cstddef>
#include <cstdint>

#include "orvex/kernels/pack.inl"
#include "orvex/kernels/provable.inl"
#include "orvex/kernels/quotients.inl"

namespace {

constexpr std::ptrdiff_t rowsAPiece = 512;

/// How many rows to fill next: a few where `out` is inside a cache line, so that no pack after them lies in two.
std::ptrdiff_t nextPiece(const double* out, std::ptrdiff_t remaining) {
  constexpr std::uintptr_t line = 64;
  const std::uintptr_t inside = reinterpret_cast<std::uintptr_t>(out) % line;
  return least(inside == 0 ? rowsAPiece : static_cast<std::ptrdiff_t>((line - inside) / sizeof(double)), remaining);
}

/// `formula.operator()<P>(row)`, or with the pack's turn as well for formulas that have a quotient.
template <class P, class Formula>
P rowsOf(const Formula& formula, std::ptrdiff_t row, int turn) {
  if constexpr (requires { formula.template operator()<P>(row, turn); }) {
    return formula.template operator()<P>(row, turn);
  } else {
    return formula.template operator()<P>(row);
  }
}

/// Fills `count` rows from row `first` (counted from 0) on by the formula. Returns how many of them are finite.
template <class Formula>
std::ptrdiff_t fillPiece(std::ptrdiff_t first, std::ptrdiff_t count, double* out, Formula formula) {
  using P = Pack<widestLanes>;
  constexpr std::ptrdiff_t packs = 4;
  const P zero = P::all(0.0);
  const std::ptrdiff_t end = first + count;
  P sum[packs] = {};
  std::ptrdiff_t row = first;
  for (; row + packs * widestLanes <= end; row += packs * widestLanes) {
    ORVEX_UNROLL for (int i = 0; i < packs; ++i) {
      const P result = rowsOf<P>(formula, row + i * widestLanes, i);
      result.store(out + row + i * widestLanes);
      sum[i] = plusProduct(sum[i], result, zero);
    }
  }
  eachBlock<1>(row, end - row,
               [=]<int Lanes, int>(std::ptrdiff_t at) { rowsOf<Pack<Lanes>>(formula, at, 0).store(out + at); });
  const std::ptrdiff_t checked = isZero((sum[0] + sum[1]) + (sum[2] + sum[3])) ? row - first : 0;
  return checked + finitePrefix(out + first + checked, count - checked);
}

/// Fills the rows of `count` records. It ends at the first result that is not finite, so the inputs need no look of
/// their own. REQUIRES: a formula out of which an infinity or not-a-number, once met, does not come as a number.
template <class Formula>
std::size_t fillFinite(Records records, std::ptrdiff_t count, double* out, Formula formula) {
  std::ptrdiff_t done = 0;
  while (done < count) {
    const std::ptrdiff_t rows = nextPiece(out + records.first - 1 + done, count - done);
    const std::ptrdiff_t finite = fillPiece(records.first - 1 + done, rows, out, formula);
    done += finite;
    if (finite < rows) break;
  }
  return static_cast<std::size_t>(done);
}

std::size_t copy(Source source, Records records, double* out) {
  const double* const x = source.rows;
  return fillFinite(records, present(source, records, 0), out,
                    [=]<class P>(std::ptrdiff_t row) { return P::load(x + row); });
}

std::size_t difference(Source minuend, int lag, Source subtrahend, Records records, double* out) {
  const std::ptrdiff_t count = least(present(minuend, records, lag), present(subtrahend, records, 0));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t row) {
    return P::load(minuend.rows + row - lag) - P::load(subtrahend.rows + row);
  });
}

std::size_t around(Source center, Source width, double factor, Records records, double* above, double* below) {
  if (!isHandled(factor)) return 0;
  const std::ptrdiff_t count = least(present(center, records, 0), present(width, records, 0));
  std::ptrdiff_t done = 0;
  while (done < count) {
    const std::ptrdiff_t first = records.first - 1 + done, rows = least(rowsAPiece, count - done);
    eachBlock<4>(first, rows, [=]<int Lanes, int Count>(std::ptrdiff_t row) {
      using P = Pack<Lanes>;
      ORVEX_UNROLL for (int i = 0; i < Count; ++i) {
        const std::ptrdiff_t at = row + i * Lanes;
        const P middle = P::load(center.rows + at);
        const P distance = P::load(width.rows + at) * P::all(factor);
        (middle + distance).store(above + at);
        (middle - distance).store(below + at);
      }
    });
    const std::ptrdiff_t finite = least(finitePrefix(above + first, rows), finitePrefix(below + first, rows));
    done += finite;
    if (finite < rows) break;
  }
  return static_cast<std::size_t>(done);
}

std::size_t medianPrice(Source high, Source low, Records records, double* out) {
  const std::ptrdiff_t count = least(present(high, records, 0), present(low, records, 0));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t row) {
    return (P::load(high.rows + row) + P::load(low.rows + row)) * P::all(0.5);
  });
}

std::size_t typicalPrice(Source high, Source low, Source close, Records records, double* out) {
  const std::ptrdiff_t count =
      least(present(high, records, 0), least(present(low, records, 0), present(close, records, 0)));
  const Divisor three(3.0);
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t row) {
    return (P::load(high.rows + row) + P::load(low.rows + row) + P::load(close.rows + row)) / three;
  });
}

std::size_t weightedClose(Source high, Source low, Source close, Records records, double* out) {
  const std::ptrdiff_t count =
      least(present(high, records, 0), least(present(low, records, 0), present(close, records, 0)));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t row) {
    return (P::load(high.rows + row) + P::load(low.rows + row) + P::all(2.0) * P::load(close.rows + row)) *
           P::all(0.25);
  });
}

/// The change in percent; of a row that is 0 an infinity or not-a-number.
template <class P>
P changeInPercent(const double* current, std::ptrdiff_t lag, int turn) {
  const P prior = P::load(current - lag);
  return quotient(P::load(current) - prior, prior, turn) * P::all(100.0);
}

std::size_t rateOfChange(Source source, int lag, Records records, double* out) {
  const double* const x = source.rows;
  return fillFinite(records, present(source, records, lag), out,
                    [=]<class P>(std::ptrdiff_t row, int turn) { return changeInPercent<P>(x + row, lag, turn); });
}

std::size_t rateOfChangeKept(Source source, int lag, Records records, double* rate, double* out) {
  const double* const x = source.rows;
  const std::ptrdiff_t count = present(source, records, lag);
  std::ptrdiff_t done = 0;
  while (done < count) {
    const std::ptrdiff_t first = records.first - 1 + done;
    const std::ptrdiff_t rows = nextPiece(out + first, count - done);
    const std::ptrdiff_t finite = fillPiece(first, rows, out, [=]<class P>(std::ptrdiff_t row, int turn) {
      return changeInPercent<P>(x + row, lag, turn);
    });
    if (finite > 0) *rate = out[first + finite - 1];
    for (std::ptrdiff_t row = first + finite; row < first + rows; ++row) {
      if (x[row - lag] == 0.0) {
        out[row] = *rate;
      } else if (out[row] * 0.0 == 0.0) {
        *rate = out[row];
      } else {
        return static_cast<std::size_t>(row - (records.first - 1));
      }
    }
    done += rows;
  }
  return static_cast<std::size_t>(done);
}

std::size_t blend(Source source, Source share, double scale, Records records, double* out) {
  if (!isHandled(scale)) return 0;
  const double* const x = source.rows;
  return fillFinite(records, least(provable(source, records, 1), provable(share, records, 0)), out,
                    [=]<class P>(std::ptrdiff_t row) {
                      const P k = P::load(share.rows + row) * P::all(scale);
                      return (P::all(1.0) - k) * P::load(x + row - 1) + k * P::load(x + row);
                    });
}

std::size_t performance(Source source, double base, Records records, double* out) {
  const double* const x = source.rows;
  return fillFinite(records, present(source, records, 0), out, [=]<class P>(std::ptrdiff_t row, int turn) {
    return quotient(P::load(x + row) - P::all(base), P::all(base), turn) * P::all(100.0);
  });
}

std::size_t ratio(Source a, Source b, double one, Records records, double* out) {
  const std::ptrdiff_t count = least(provable(a, records, 0), provable(b, records, 0));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t row, int turn) {
    const P ratio = quotient(P::load(a.rows + row), P::load(b.rows + row), turn);
    return whereEqual(ratio, P::all(1.0), P::all(one), ratio);
  });
}

std::size_t fromMiddle(Source source, Source highest, Source lowest, Records records, double* out) {
  const std::ptrdiff_t count =
      least(present(source, records, 0), least(present(highest, records, 0), present(lowest, records, 0)));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t row) {
    return P::load(source.rows + row) - (P::load(highest.rows + row) + P::load(lowest.rows + row)) * P::all(0.5);
  });
}

std::size_t percentOfHalf(Source part, Source whole, Records records, double* out) {
  const std::ptrdiff_t count = least(provable(part, records, 0), provable(whole, records, 0));
  return fillFinite(records, count, out, [=]<class P>(std::ptrdiff_t row, int turn) {
    const P divisor = P::load(whole.rows + row) * P::all(0.5), zero = P::all(0.0);
    return whereEqual(divisor, zero, zero, quotient(P::all(100.0) * P::load(part.rows + row), divisor, turn));
  });
}

}  // namespace
