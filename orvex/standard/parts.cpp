#include "orvex/standard/parts.h"

#include <algorithm>

#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS::standard {

namespace {

using kernels::Records;
using kernels::Source;
using kernels::Table;

Source source(const Series& series) {
  return rowsOf(series.column);
}

}  // namespace

Series simple(Call& call, const Series& x, int periods) {
  return call.by(
      x.first + periods - 1,
      [&](Records records, double* rows) { return kernels::run(&Table::mean, source(x), periods, records, rows); },
      [&]<class T>(At<T> at, int r) {
        T total = 0;
        for (int j = 0; j < periods; ++j) total += at(x, r - j);
        return total / periods;
      });
}

Series smoothed(Call& call, const Series& x, int periods, double factor) {
  const Place first = x.first + periods - 1;
  return call.recursion(
      first,
      [&](Records records, double* rows) {
        std::size_t done = 0;
        if (records.first == first) {
          done = kernels::run(&Table::mean, source(x), periods, Records{records.first, records.first}, rows);
          if (done == 0) return done;
          ++records.first;
        }
        if (records.first > records.last) return done;
        return done + kernels::run(&Table::approach, source(x), factor, records, rows);
      },
      [&]<class T>(At<T> at, const Series& own, int r) {
        if (r > first) {
          const T before = at(own, r - 1);
          return before + (at(x, r) - before) * factor;
        }
        T total = 0;
        for (int j = 0; j < periods; ++j) total += at(x, r - j);
        return total / periods;
      });
}

Series exponential(Call& call, const Series& x, int periods) {
  return smoothed(call, x, periods, 2.0 / (periods + 1.0));
}

Series wilder(Call& call, const Series& x, int periods) {
  return smoothed(call, x, periods, 1.0 / periods);
}

Series weighted(Call& call, const Series& x, int periods) {
  const double total = 0.5 * periods * (periods + 1.0);
  return call.by(
      x.first + periods - 1,
      [&](Records records, double* rows) {
        return kernels::run(&Table::weightedMean, source(x), periods, records, rows);
      },
      [&]<class T>(At<T> at, int r) {
        T sum = 0;
        for (int j = 0; j < periods; ++j) sum += (periods - j) * at(x, r - j);
        return sum / total;
      });
}

Series triangular(Call& call, const Series& x, int periods) {
  return simple(call, simple(call, x, (periods + 1) / 2), periods / 2 + 1);
}

Series kaufman(Call& call, const Series& x, int periods) {
  const Place first = x.first + periods;
  constexpr double slowest = 2.0 / 31.0;
  constexpr double span = 2.0 / 3.0 - 2.0 / 31.0;
  const Series steps = call.each(x.first + 1, [&](auto at, int r) { return magnitude(at(x, r) - at(x, r - 1)); });
  const Series mean = simple(call, steps, periods);
  return call.recursion(first, [&]<class T>(At<T> at, const Series& own, int r) {
    const T before = r > first ? at(own, r - 1) : at(x, r - 1);
    const T move = at(x, r) - at(x, r - periods), path = at(mean, r) * periods;
    const T efficiency = path <= move || path == T(0) ? T(1) : magnitude(move / path);
    const T share = efficiency * span + slowest;
    return before + (at(x, r) - before) * (share * share);
  });
}

Series tillson(Call& call, const Series& x, int periods, double factor) {
  std::array<Series, 6> e;
  for (std::size_t i = 0; i < e.size(); ++i) e[i] = exponential(call, i == 0 ? x : e[i - 1], periods);
  const double square = factor * factor;
  const double c1 = -(square * factor);
  const double c2 = 3.0 * (square - c1);
  const double c3 = -6.0 * square - 3.0 * (factor - c1);
  const double c4 = 1.0 + 3.0 * factor - c1 + 3.0 * square;
  return call.each(e[5].first, [&](auto at, int r) {
    return c1 * at(e[5], r) + c2 * at(e[4], r) + c3 * at(e[3], r) + c4 * at(e[2], r);
  });
}

Place lookback(Integer kind, Integer periods) {
  const Place window = Place{periods.value()} - 1;
  if (window < 1) return 0;
  switch (static_cast<Kind>(kind.value())) {
    case Kind::Double:
      return 2 * window;
    case Kind::Triple:
      return 3 * window;
    case Kind::Kaufman:
      return window + 1;
    case Kind::Mesa:
      return 32;
    case Kind::Tillson:
      return 6 * window;
    default:
      return window;
  }
}

Series average(Call& call, Integer kind, const Series& x, Integer periods) {
  const int p = periods.value();
  if (p <= 1) return x;
  switch (static_cast<Kind>(kind.value())) {
    case Kind::Exponential:
      return exponential(call, x, p);
    case Kind::Weighted:
      return weighted(call, x, p);
    case Kind::Double: {
      const Series once = exponential(call, x, p), twice = exponential(call, once, p);
      return call.each(twice.first, [&](auto at, int r) { return 2.0 * at(once, r) - at(twice, r); });
    }
    case Kind::Triple: {
      const Series once = exponential(call, x, p), twice = exponential(call, once, p);
      const Series thrice = exponential(call, twice, p);
      return call.each(thrice.first,
                       [&](auto at, int r) { return 3.0 * at(once, r) - 3.0 * at(twice, r) + at(thrice, r); });
    }
    case Kind::Triangular:
      return triangular(call, x, p);
    case Kind::Kaufman:
      return kaufman(call, x, p);
    case Kind::Mesa:
      return mesa(call, x, 0.5, 0.05)[0];
    case Kind::Tillson:
      return tillson(call, x, p, 0.7);
    default:
      return simple(call, x, p);
  }
}

Series sum(Call& call, const Series& x, int periods) {
  return call.each(x.first + periods - 1, [&]<class T>(At<T> at, int r) {
    T total = 0;
    for (int j = r - periods + 1; j <= r; ++j) total += at(x, j);
    return total;
  });
}

Series highest(Call& call, const Series& x, int periods) {
  return call.by(
      x.first + periods - 1,
      [&](Records records, double* rows) {
        return kernels::run(&Table::highest, source(x), periods, kernels::Ties::Newest, records, rows);
      },
      [&]<class T>(At<T> at, int r) {
        T best = at(x, r - periods + 1);
        for (int j = r - periods + 2; j <= r; ++j)
          if (at(x, j) >= best) best = at(x, j);
        return best;
      });
}

Series lowest(Call& call, const Series& x, int periods) {
  return call.by(
      x.first + periods - 1,
      [&](Records records, double* rows) {
        return kernels::run(&Table::lowest, source(x), periods, kernels::Ties::Newest, records, rows);
      },
      [&]<class T>(At<T> at, int r) {
        T best = at(x, r - periods + 1);
        for (int j = r - periods + 2; j <= r; ++j)
          if (at(x, j) <= best) best = at(x, j);
        return best;
      });
}

Series deviation(Call& call, const Series& x, const Series& mean, int periods, double factor) {
  return call.by(
      mean.first,
      [&](Records records, double* rows) {
        return kernels::run(&Table::deviation, source(x), source(mean), periods, 0, factor, records, rows);
      },
      [&]<class T>(At<T> at, int r) {
        T total = 0;
        for (int j = 0; j < periods; ++j) {
          const T distance = at(x, r - j) - at(mean, r);
          total += distance * distance;
        }
        return factor * root(total / periods);
      });
}

Series difference(Call& call, const Series& a, const Series& b) {
  return call.by(
      std::max(a.first, b.first),
      [&](Records records, double* rows) {
        return kernels::run(&Table::difference, source(a), 0, source(b), records, rows);
      },
      [&](auto at, int r) { return at(a, r) - at(b, r); });
}

Series product(Call& call, const Series& a, const Series& b) {
  return call.each(std::max(a.first, b.first), [&](auto at, int r) { return at(a, r) * at(b, r); });
}

Series percentAbove(Call& call, const Series& a, const Series& b) {
  return call.by(
      std::max(a.first, b.first),
      [&](Records records, double* rows) {
        return kernels::run(&Table::percentAbove, source(a), source(b), 0, records, rows);
      },
      [&]<class T>(At<T> at, int r) { return quotient(at(a, r) - at(b, r), at(b, r)) * 100; });
}

Series momentum(Call& call, const Series& x, int lag) {
  return call.each(x.first + lag, [&](auto at, int r) { return at(x, r) - at(x, r - lag); });
}

Series rate(Call& call, const Series& x, int lag) {
  return call.by(
      x.first + lag,
      [&](Records records, double* rows) { return kernels::run(&Table::rateOfChange, source(x), lag, records, rows); },
      [&]<class T>(At<T> at, int r) {
        const T old = at(x, r - lag);
        return quotient(at(x, r) - old, old) * 100;
      });
}

Series medianPrice(Call& call, Prices& prices) {
  const Series high = prices.high(), low = prices.low();
  return call.by(
      1,
      [&](Records records, double* rows) {
        return kernels::run(&Table::medianPrice, source(high), source(low), records, rows);
      },
      [&](auto at, int r) { return (at(high, r) + at(low, r)) / 2; });
}

Series typicalPrice(Call& call, Prices& prices) {
  const Series high = prices.high(), low = prices.low(), close = prices.close();
  return call.by(
      1,
      [&](Records records, double* rows) {
        return kernels::run(&Table::typicalPrice, source(high), source(low), source(close), records, rows);
      },
      [&](auto at, int r) { return (at(high, r) + at(low, r) + at(close, r)) / 3; });
}

Series trueRange(Call& call, Prices& prices) {
  const Series high = prices.high(), low = prices.low(), close = prices.close();
  return call.by(
      2,
      [&](Records records, double* rows) {
        return kernels::run(&Table::trueRange, kernels::Bars{source(high), source(low), source(close)}, records, rows);
      },
      [&](auto at, int r) { return trueRange(at, high, low, close, r); });
}

Series averageTrueRange(Call& call, Prices& prices, int periods) {
  return wilder(call, trueRange(call, prices), periods);
}

namespace {

struct Means {
  double rise = 0.0;
  double fall = 0.0;
  double row = 0.0;
};

}  // namespace

/// Wilder's means of rises and falls, of which `combine` makes the row.
template <class Combine>
Series ofMoves(Call& call, const Series& x, int periods, Combine combine) {
  const Place first = x.first + periods;
  return call.carried(first, Means(), [&]<class T>(At<T> at, Means& means, int r) {
    const auto add = [&](T& rise, T& fall, int j) {
      const T move = at(x, j) - at(x, j - 1);
      if (move > T(0)) rise = rise + move;
      if (move < T(0)) fall = fall - move;
    };
    T rise = means.rise, fall = means.fall;
    // Without a move both means shrink alike, and what is made of them stays: it is not left to their rounding.
    const bool stays = r > first && at(x, r) == at(x, r - 1);
    if (r == first) {
      for (int j = r - periods + 1; j <= r; ++j) add(rise, fall, j);
    } else {
      rise = rise * (periods - 1);
      fall = fall * (periods - 1);
      add(rise, fall, r);
    }
    rise = rise / periods;
    fall = fall / periods;
    means = {rise, fall, stays ? means.row : double(combine(rise, fall))};
    return T(means.row);
  });
}

Series relativeStrength(Call& call, const Series& x, int periods) {
  return ofMoves(call, x, periods, []<class T>(T rise, T fall) { return 100 * quotient(rise, rise + fall); });
}

Series chandeMomentum(Call& call, const Series& x, int periods) {
  return ofMoves(call, x, periods, []<class T>(T rise, T fall) { return 100 * quotient(rise - fall, rise + fall); });
}

Series stochastic(Call& call, const Series& high, const Series& low, const Series& close, int periods) {
  const Series top = highest(call, high, periods), bottom = lowest(call, low, periods);
  return call.each(std::max({top.first, bottom.first, close.first}), [&]<class T>(At<T> at, int r) {
    return quotient(at(close, r) - at(bottom, r), (at(top, r) - at(bottom, r)) / 100);
  });
}

Series percentRank(Call& call, const Series& x, int periods) {
  return call.each(x.first + periods, [&]<class T>(At<T> at, int r) {
    int below = 0;
    for (int j = r - periods; j < r; ++j) below += at(x, j) < at(x, r) ? 1 : 0;
    return T(below) / periods * 100;
  });
}

Series moneyFlowVolume(Call& call, Prices& prices) {
  const Series high = prices.high(), low = prices.low(), close = prices.close(), volume = prices.volume();
  return call.each(1, [&]<class T>(At<T> at, int r) {
    const T h = at(high, r), l = at(low, r), c = at(close, r);
    return h > l ? ((c - l) - (h - c)) / (h - l) * at(volume, r) : T(0);
  });
}

Series total(Call& call, const Series& x) {
  return call.recursion(
      x.first,
      [&](Records records, double* rows) -> std::size_t {
        std::size_t done = 0;
        if (records.first == x.first) {
          rows[records.first - 1] = x.rows[records.first - 1];
          done = 1;
          ++records.first;
        }
        if (records.first > records.last) return done;
        return done + kernels::run(&Table::runningTotal, source(x), records, rows);
      },
      [&]<class T>(At<T> at, const Series& own, int r) { return r > x.first ? at(own, r - 1) + at(x, r) : at(x, r); });
}

Series accumulation(Call& call, Prices& prices) {
  return total(call, moneyFlowVolume(call, prices));
}

}  // namespace orvex::inline ORVEX_COUNTS::standard
