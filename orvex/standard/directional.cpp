#include <algorithm>

#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

namespace {

/// Wilder's sums of the rises of the highs, of the falls of the lows and of the true range.
struct Movement {
  double plus = 0.0;
  double minus = 0.0;
  double range = 0.0;
};

/// The columns that they are made of.
struct Bars {
  explicit Bars(Prices& prices) : high(prices.high()), low(prices.low()), close(prices.close()) {}

  Series high, low, close;
};

/// Takes a record in: the sum of the P - 1 values up to record P, and from then on less its own P-th part, plus the
/// value. Of rise and fall only the larger counts, and neither where they are equal.
template <class T>
void advance(At<T> at, const Bars& bars, int periods, Movement& sums, int r) {
  const T rise = at(bars.high, r) - at(bars.high, r - 1), fall = at(bars.low, r - 1) - at(bars.low, r);
  const T plus = rise > T(0) && rise > fall ? rise : T(0), minus = fall > T(0) && fall > rise ? fall : T(0);
  const T range = trueRange(at, bars.high, bars.low, bars.close, r);
  const T a = sums.plus, b = sums.minus, c = sums.range;
  sums = r <= std::max(periods, 2) ? Movement{a + plus, b + minus, c + range}
                                   : Movement{a - a / periods + plus, b - b / periods + minus, c - c / periods + range};
}

/// The same up to the first record that is told, from record 2 on.
template <class T>
void advanceTo(At<T> at, const Bars& bars, int periods, Movement& sums, Place first, int r) {
  for (int j = r == first ? 2 : r; j <= r; ++j) advance(at, bars, periods, sums, j);
}

/// 100 x the difference of both sides in their sum; false where there is neither.
template <class T>
bool directionalIndex(const Movement& sums, T& index) {
  const T whole = sums.range;
  if (whole == T(0)) return false;
  const T plus = 100 * (T(sums.plus) / whole), minus = 100 * (T(sums.minus) / whole);
  const T both = minus + plus;
  if (both == T(0)) return false;
  index = 100 * (magnitude(minus - plus) / both);
  return true;
}

/// The column that `value(sums)` makes of the sums.
template <Text name, class Value>
Standard::Result ofMovement(const Standard::DataRef& data, const Standard::SetRef& set, Integer periods,
                            Standard::Name& alias, int least, Place first, Value value) {
  return Method<name>(data, alias).periods(periods, least).compute([&](Call& call) {
    Prices prices(call, set);
    const Bars bars(prices);
    return call.carried(first, Movement(), [&]<class T>(At<T> at, Movement& sums, int r) {
      advanceTo(at, bars, periods.value(), sums, first, r);
      return value(at, sums);
    });
  });
}

/// One side as a share of the range, in percent. Of one record it is a plain share.
template <Text name, double Movement::*side>
Standard::Result indicator(const Standard::DataRef& data, const Standard::SetRef& set, Integer periods,
                           Standard::Name& alias) {
  const Place first = Place{periods.value()} + 1;
  return ofMovement<name>(data, set, periods, alias, 1, first, [&]<class T>(At<T>, const Movement& sums) {
    const T share = quotient(T(sums.*side), T(sums.range));
    return periods > 1 ? 100 * share : share;
  });
}

/// One side alone, which the closes say nothing to.
template <Text name>
Standard::Result side(const Standard::DataRef& data, const Standard::SetRef& set, Integer periods,
                      Standard::Name& alias, bool rising) {
  return Method<name>(data, alias).periods(periods).compute([&](Call& call) {
    Prices prices(call, set);
    const Series high = prices.high(), low = prices.low();
    const int count = periods.value();
    const Place first = std::max(count, 2);
    return call.recursion(first, [&]<class T>(At<T> at, const Series& own, int r) {
      const auto move = [&](int j) {
        const T rise = at(high, j) - at(high, j - 1), fall = at(low, j - 1) - at(low, j);
        const T one = rising ? rise : fall, other = rising ? fall : rise;
        return one > T(0) && one > other ? one : T(0);
      };
      if (r > first) return at(own, r - 1) - at(own, r - 1) / count + move(r);
      T total = 0;
      for (int j = 2; j <= r; ++j) total += move(j);
      return total;
    });
  });
}

/// The sums, and the index that was told last.
struct Direction {
  Movement sums{};
  double index = 0.0;
};

Series averageIndex(Call& call, const Bars& bars, int periods) {
  const Place first = 2 * Place{periods};
  return call.carried(first, Direction(), [&]<class T>(At<T> at, Direction& now, int r) {
    T index = 0;
    if (r > first) {
      advance(at, bars, periods, now.sums, r);
      if (directionalIndex(now.sums, index)) now.index = (T(now.index) * (periods - 1) + index) / periods;
      return T(now.index);
    }
    T total = 0;
    for (int j = 2; j <= r; ++j) {
      advance(at, bars, periods, now.sums, j);
      if (j > periods && directionalIndex(now.sums, index)) total += index;
    }
    now.index = total / periods;
    return T(now.index);
  });
}

}  // namespace

Standard::Result Standard::ADX(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"ADX">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return averageIndex(call, Bars(prices), Periods.value());
  });
}

Standard::Result Standard::ADXR(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"ADXR">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const int lag = Periods.value() - 1;
    const Series index = averageIndex(call, Bars(prices), Periods.value());
    return call.each(index.first + lag, [&](auto at, int r) { return (at(index, r) + at(index, r - lag)) / 2; });
  });
}

Standard::Result Standard::DX(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"DX">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Bars bars(prices);
    const Place first = Place{Periods.value()} + 1;
    return call.carried(first, Direction(), [&]<class T>(At<T> at, Direction& now, int r) {
      advanceTo(at, bars, Periods.value(), now.sums, first, r);
      T index = now.index;
      directionalIndex(now.sums, index);
      now.index = index;
      return index;
    });
  });
}

Standard::Result Standard::PLUS_DI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return indicator<"PLUS_DI", &Movement::plus>(data, OHLCV, Periods, Alias);
}

Standard::Result Standard::MINUS_DI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return indicator<"MINUS_DI", &Movement::minus>(data, OHLCV, Periods, Alias);
}

Standard::Result Standard::PLUS_DM(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return side<"PLUS_DM">(data, OHLCV, Periods, Alias, true);
}

Standard::Result Standard::MINUS_DM(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return side<"MINUS_DM">(data, OHLCV, Periods, Alias, false);
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
