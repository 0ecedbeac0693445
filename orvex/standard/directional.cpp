#include <algorithm>

#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

namespace {

/// How far the high rose and the low fell; only the larger counts, and neither where they are equal.
template <class T>
struct Moves {
  T plus, minus;
};

template <class T>
Moves<T> movesAt(At<T> at, const Series& high, const Series& low, int r) {
  const T rise = at(high, r) - at(high, r - 1), fall = at(low, r - 1) - at(low, r);
  return {rise > T(0) && rise > fall ? rise : T(0), fall > T(0) && fall > rise ? fall : T(0)};
}

/// Wilder's sum: that of the P - 1 values up to record P, and from then on less its own P-th part, plus the value.
Series wilderSum(Call& call, const Series& x, int periods) {
  const Place first = x.first + std::max(periods - 2, 0);
  return call.recursion(first, noRows, [&]<class T>(At<T> at, const Series& own, int r) {
    if (r > first) return at(own, r - 1) - at(own, r - 1) / periods + at(x, r);
    T total = 0;
    for (int j = static_cast<int>(x.first); j <= r; ++j) total += at(x, j);
    return total;
  });
}

/// The sums of the moves and of the true range, as far as they are asked for.
struct Direction {
  Direction(Call& call, Prices& prices, int periods) {
    const Series high = prices.high(), low = prices.low();
    const auto moves = call.columns<2>(2, Nothing(), [&](auto at, Nothing&, int r) {
      const auto [up, down] = movesAt(at, high, low, r);
      return std::array{up, down};
    });
    plus = wilderSum(call, moves[0], periods);
    minus = wilderSum(call, moves[1], periods);
  }
  Direction(Call& call, Prices& prices, int periods, bool) : Direction(call, prices, periods) {
    range = wilderSum(call, trueRange(call, prices), periods);
  }

  Series plus, minus, range;
};

/// One side as a share of the range, in percent, from record P + 1 on. Of one record it is a plain share.
Series indicator(Call& call, const Series& moves, const Series& range, int periods) {
  return call.each(range.first + (periods > 1 ? 1 : 0), [&]<class T>(At<T> at, int r) {
    const T whole = at(range, r);
    if (whole == T(0)) return T(0);
    return periods > 1 ? 100 * (at(moves, r) / whole) : at(moves, r) / whole;
  });
}

/// 100 x the difference of both sides in their sum; false where there is neither.
template <class T>
bool directionalIndex(At<T> at, const Direction& sums, int r, T& index) {
  const T whole = at(sums.range, r);
  if (whole == T(0)) return false;
  const T plus = 100 * (at(sums.plus, r) / whole), minus = 100 * (at(sums.minus, r) / whole);
  const T both = minus + plus;
  if (both == T(0)) return false;
  index = 100 * (magnitude(minus - plus) / both);
  return true;
}

Series averageIndex(Call& call, Prices& prices, int periods) {
  const Direction sums(call, prices, periods, true);
  const Place first = 2 * Place{periods};
  return call.recursion(first, noRows, [&]<class T>(At<T> at, const Series& own, int r) {
    T index = 0;
    if (r > first) {
      const T before = at(own, r - 1);
      return directionalIndex(at, sums, r, index) ? (before * (periods - 1) + index) / periods : before;
    }
    T total = 0;
    for (int j = periods + 1; j <= r; ++j)
      if (directionalIndex(at, sums, j, index)) total += index;
    return total / periods;
  });
}

}  // namespace

Standard::Result Standard::ADX(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"ADX">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return averageIndex(call, prices, Periods.value());
  });
}

Standard::Result Standard::ADXR(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"ADXR">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const int lag = Periods.value() - 1;
    const Series index = averageIndex(call, prices, Periods.value());
    return call.each(index.first + lag, [&](auto at, int r) { return (at(index, r) + at(index, r - lag)) / 2; });
  });
}

Standard::Result Standard::DX(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"DX">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Direction sums(call, prices, Periods.value(), true);
    const Place first = Place{Periods.value()} + 1;
    return call.recursion(first, noRows, [&]<class T>(At<T> at, const Series& own, int r) {
      T index = 0;
      if (!directionalIndex(at, sums, r, index) && r > first) index = at(own, r - 1);
      return index;
    });
  });
}

Standard::Result Standard::PLUS_DI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"PLUS_DI">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Direction sums(call, prices, Periods.value(), true);
    return indicator(call, sums.plus, sums.range, Periods.value());
  });
}

Standard::Result Standard::MINUS_DI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"MINUS_DI">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Direction sums(call, prices, Periods.value(), true);
    return indicator(call, sums.minus, sums.range, Periods.value());
  });
}

Standard::Result Standard::PLUS_DM(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"PLUS_DM">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return Direction(call, prices, Periods.value()).plus;
  });
}

Standard::Result Standard::MINUS_DM(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"MINUS_DM">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return Direction(call, prices, Periods.value()).minus;
  });
}

namespace {

/// The records of the newest highest high and lowest low of this record and the P before it.
struct Extremes {
  int top = 0;
  int bottom = 0;
};

template <class T>
void follow(At<T> at, const Series& high, const Series& low, int periods, int r, Extremes& extremes) {
  const auto move = [&](int& holder, auto&& beats) {
    if (holder >= r - periods) {
      if (beats(r, holder)) holder = r;
      return;
    }
    holder = r - periods;
    for (int j = holder + 1; j <= r; ++j)
      if (beats(j, holder)) holder = j;
  };
  move(extremes.top, [&](int a, int b) { return at(high, a) >= at(high, b); });
  move(extremes.bottom, [&](int a, int b) { return at(low, a) <= at(low, b); });
}

}  // namespace

Standard::Result Standard::Aroon(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"Aroon">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series high = prices.high(), low = prices.low();
    const int periods = Periods.value();
    const double share = 100.0 / periods;
    const auto sides = call.columns<2>(Place{periods} + 1, Extremes(), [&]<class T>(At<T> at, Extremes& now, int r) {
      follow(at, high, low, periods, r, now);
      return std::array{T(share * (periods - (r - now.bottom))), T(share * (periods - (r - now.top)))};
    });
    return std::vector<Named>{{DownSuffix, sides[0]}, {UpSuffix, sides[1]}};
  });
}

Standard::Result Standard::AROONOSC(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"AROONOSC">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series high = prices.high(), low = prices.low();
    const int periods = Periods.value();
    const double share = 100.0 / periods;
    return call.carried(Place{periods} + 1, Extremes(), [&]<class T>(At<T> at, Extremes& now, int r) {
      follow(at, high, low, periods, r, now);
      return T(share * (now.top - now.bottom));
    });
  });
}

Standard::Result Standard::VORTEX(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"VORTEX">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series high = prices.high(), low = prices.low();
    const auto ways = call.columns<2>(2, Nothing(), [&](auto at, Nothing&, int r) {
      return std::array{magnitude(at(high, r) - at(low, r - 1)), magnitude(at(low, r) - at(high, r - 1))};
    });
    // Means stand for the sums: their shares are the same.
    const Series up = simple(call, ways[0], Periods.value()), down = simple(call, ways[1], Periods.value());
    const Series whole = simple(call, trueRange(call, prices), Periods.value());
    const auto sides = call.columns<2>(whole.first, Nothing(), [&](auto at, Nothing&, int r) {
      return std::array{quotient(at(up, r), at(whole, r)), quotient(at(down, r), at(whole, r))};
    });
    return std::vector<Named>{{PlusSuffix, sides[0]}, {MinusSuffix, sides[1]}};
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
