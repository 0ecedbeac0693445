#include <algorithm>

#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

namespace {

/// The rises of the highs, or the falls of the lows: of both only the larger counts, and neither where they are equal.
Series movesOf(Call& call, const Series& high, const Series& low, bool rising) {
  return rising ? call.of<formulas::DirectionalMove>(2, {high, {high, 1}, {low, 1}, low})
                : call.of<formulas::DirectionalMove>(2, {Input(low, 1), low, high, {high, 1}});
}

/// Wilder's sums of the moves of both sides and of the true range: of P - 1 values up to record P, and from then on
/// less their own P-th part, plus the value.
struct Movement {
  Movement(Call& call, Prices& prices, int periods)
      : plus(sideOf(call, prices, periods, true)),
        minus(sideOf(call, prices, periods, false)),
        range(leakySum(call, trueRange(call, prices), periods)) {}

  static Series sideOf(Call& call, Prices& prices, int periods, bool rising) {
    const Series high = prices.high(), low = prices.low();
    return leakySum(call, movesOf(call, high, low, rising), periods);
  }

  Series plus, minus, range;
};

/// One side as a share of the range, in percent. Of one record it is a plain share.
template <Text name>
Standard::Result indicator(const Standard::DataRef& data, const Standard::SetRef& set, Integer periods,
                           Standard::Name& alias, bool rising) {
  return Method<name>(data, alias).periods(periods).compute([&](Call& call) {
    Prices prices(call, set);
    const Series side = Movement::sideOf(call, prices, periods.value(), rising);
    const Series range = leakySum(call, trueRange(call, prices), periods.value());
    const Place first = Place{periods.value()} + 1;
    return periods > 1 ? call.of<formulas::Percentage>(first, {side, range})
                       : call.of<formulas::Ratio>(first, {side, range});
  });
}

/// One side alone, which the closes say nothing to.
template <Text name>
Standard::Result side(const Standard::DataRef& data, const Standard::SetRef& set, Integer periods,
                      Standard::Name& alias, bool rising) {
  return Method<name>(data, alias).periods(periods).compute([&](Call& call) {
    Prices prices(call, set);
    return Movement::sideOf(call, prices, periods.value(), rising);
  });
}

/// 100 x the difference of both sides in their sum; below 0 where there is neither.
Series directionalIndex(Call& call, Prices& prices, int periods) {
  const Movement sums(call, prices, periods);
  return call.of<formulas::DirectionalIndex>(Place{periods} + 1, {sums.plus, sums.minus, sums.range});
}

/// The mean of the first of them, of which those that are none count as 0.
template <class T>
T meanIndex(At<T> at, const Series& index, int periods) {
  T total = 0;
  for (int r = periods + 1; r <= 2 * periods; ++r) {
    const T now = at(index, r);
    if (now > T(0)) total += now;
  }
  return total / periods;
}

/// Its average, which a record without an index leaves as it is.
Series averageIndex(Call& call, Prices& prices, int periods) {
  const Series index = directionalIndex(call, prices, periods);
  const Place first = 2 * Place{periods};
  return call.recursion(
      first,
      [&](kernels::Records records, double* rows) -> std::size_t {
        const double *const begin = index.rows + (records.first - 1), *const end = index.rows + records.last;
        if (std::any_of(begin, end, [](double x) { return x < 0.0; })) return 0;
        std::size_t done = 0;
        if (records.first == first) {
          if (kernels::active() == nullptr) return 0;
          rows[records.first - 1] = meanIndex(At<double>(), index, periods);
          done = 1;
          ++records.first;
        }
        if (records.first > records.last) return done;
        return done + kernels::run(&kernels::StandardTable::leakyMean, rowsOf(index.column), periods, records, rows);
      },
      [&]<class T>(At<T> at, const Series& own, int r) {
        if (r == first) return meanIndex(at, index, periods);
        const T before = at(own, r - 1), now = at(index, r);
        return now < T(0) ? before : (before * (periods - 1) + now) / periods;
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
    return call.of<formulas::Middle>(index.first + lag, {index, {index, lag}});
  });
}

Standard::Result Standard::DX(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"DX">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series index = directionalIndex(call, prices, Periods.value());
    // A record without one keeps the row before.
    return call.recursion(index.first, [&]<class T>(At<T> at, const Series& own, int r) {
      const T now = at(index, r);
      if (now < T(0)) return r > index.first ? at(own, r - 1) : T(0);
      return now;
    });
  });
}

Standard::Result Standard::PLUS_DI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return indicator<"PLUS_DI">(data, OHLCV, Periods, Alias, true);
}

Standard::Result Standard::MINUS_DI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return indicator<"MINUS_DI">(data, OHLCV, Periods, Alias, false);
}

Standard::Result Standard::PLUS_DM(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return side<"PLUS_DM">(data, OHLCV, Periods, Alias, true);
}

Standard::Result Standard::MINUS_DM(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return side<"MINUS_DM">(data, OHLCV, Periods, Alias, false);
}

Standard::Result Standard::Aroon(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"Aroon">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const auto freshness = [&](const Series& age) {
      const double periods = Periods.value();
      return call.of<formulas::Freshness>(age.first, {age}, {{100.0 / periods, periods}});
    };
    const Series top = freshness(highestAge(call, prices.high(), Periods.value() + 1));
    const Series bottom = freshness(lowestAge(call, prices.low(), Periods.value() + 1));
    return std::vector<Named>{{DownSuffix, bottom}, {UpSuffix, top}};
  });
}

Standard::Result Standard::AROONOSC(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"AROONOSC">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series top = highestAge(call, prices.high(), Periods.value() + 1);
    const Series bottom = lowestAge(call, prices.low(), Periods.value() + 1);
    return ofBoth<formulas::TimesDifference>(call, bottom, top, {{100.0 / Periods.value()}});
  });
}

Standard::Result Standard::VORTEX(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"VORTEX">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series high = prices.high(), low = prices.low();
    const Series rising = call.of<formulas::Distance>(2, {high, {low, 1}});
    const Series falling = call.of<formulas::Distance>(2, {low, {high, 1}});
    const Series whole = sum(call, trueRange(call, prices), Periods.value());
    return std::vector<Named>{{PlusSuffix, ofBoth<formulas::Ratio>(call, sum(call, rising, Periods.value()), whole)},
                              {MinusSuffix, ofBoth<formulas::Ratio>(call, sum(call, falling, Periods.value()), whole)}};
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
