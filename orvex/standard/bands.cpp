#include <algorithm>
#include <cmath>

#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

namespace {

Series middleOf(Call& call, const Series& top, const Series& bottom) {
  return ofBoth<formulas::Middle>(call, top, bottom);
}

/// center + width x factor.
Series apart(Call& call, const Series& center, const Series& width, double factor) {
  return ofBoth<formulas::Apart>(call, center, width, {{factor}});
}

std::vector<Named> bands(const Series& upper, const Series& middle, const Series& lower) {
  return {{Standard::UpperSuffix, upper}, {Standard::MiddleSuffix, middle}, {Standard::LowerSuffix, lower}};
}

}  // namespace

Standard::Result Standard::BBANDS(DataRef data, FieldRef Source, Integer Periods, double UpperDeviations,
                                  double LowerDeviations, Integer MA_Type, Name Alias) {
  return Method<"BBANDS">(data, Alias)
      .periods(Periods, 2)
      .factor(UpperDeviations)
      .factor(LowerDeviations)
      .kind(MA_Type)
      .compute([&](Call& call) {
        const Series x = call.take(Source), middle = average(call, MA_Type, x, Periods);
        const int periods = Periods.value();
        const Series mean = static_cast<Kind>(MA_Type.value()) == Kind::Simple ? middle : simple(call, x, periods);
        const Series width = deviation(call, x, mean, periods, 1.0);
        return bands(apart(call, middle, width, UpperDeviations), call.shown(middle, width.first),
                     apart(call, middle, width, -LowerDeviations));
      });
}

Standard::Result Standard::DONCHIAN(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"DONCHIAN">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series top = highest(call, prices.high(), Periods.value());
    const Series bottom = lowest(call, prices.low(), Periods.value());
    return bands(top, middleOf(call, top, bottom), bottom);
  });
}

Standard::Result Standard::Keltner(DataRef data, SetRef OHLCV, Integer Periods, Integer RangePeriods, double Factor,
                                   Name Alias) {
  return Method<"Keltner">(data, Alias)
      .periods(Periods, 2)
      .periods(RangePeriods)
      .factor(Factor)
      .compute([&](Call& call) {
        Prices prices(call, OHLCV);
        const Place first = std::max(Place{Periods.value()}, Place{RangePeriods.value()} + 1);
        const Series typical = typicalPrice(call, prices), range = trueRange(call, prices);
        // Both averages begin at one record, each from the records that it covers there.
        const Series middle = exponential(call, typical.from(first - Periods.value() + 1), Periods.value());
        const Series width = wilder(call, range.from(first - RangePeriods.value() + 1), RangePeriods.value());
        return bands(apart(call, middle, width, Factor), middle, apart(call, middle, width, -Factor));
      });
}

Standard::Result Standard::MIDPOINT(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"MIDPOINT">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    const Series x = call.take(Source);
    return middleOfRange(call, x, x, Periods.value());
  });
}

Standard::Result Standard::MIDPRICE(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"MIDPRICE">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series high = prices.high();
    return middleOfRange(call, high, prices.low(), Periods.value());
  });
}

namespace {

using kernels::Acceleration;
using kernels::Stop;

/// What the stop does with a bar: shows its level, turns where the bar reaches it, and follows the trend. The last two
/// bars hold it back.
struct Parabolic {
  kernels::StopRules rules;
  double startValue = 0.0;

  template <class T>
  T operator()(At<T> at, const Series& high, const Series& low, Stop& stop, int r) const {
    const T highBefore = at(high, r - 1), lowBefore = at(low, r - 1), h = at(high, r), l = at(low, r);
    if (r == 2) begin(at, high, low, stop);
    // The first bar that is computed is its own bar before.
    const T oldHigh = r == 2 ? h : highBefore, oldLow = r == 2 ? l : lowBefore;
    T level = stop.level, extreme = stop.extreme, factor = stop.factor;
    T shown = level;
    const bool turns = stop.isLong ? l <= level : h >= level;
    if (turns) {
      stop.isLong = !stop.isLong;
      const Acceleration& side = stop.isLong ? rules.longSide : rules.shortSide;
      level = heldBack(stop.isLong, extreme, oldHigh, oldLow, h, l);
      level = stop.isLong ? level - level * rules.offset : level + level * rules.offset;
      shown = level;
      factor = side.start;
      extreme = stop.isLong ? h : l;
    } else {
      const Acceleration& side = stop.isLong ? rules.longSide : rules.shortSide;
      if (stop.isLong ? h > extreme : l < extreme) {
        extreme = stop.isLong ? h : l;
        factor = smaller(factor + side.step, T(side.maximum));
      }
    }
    const T next = heldBack(stop.isLong, level + factor * (extreme - level), oldHigh, oldLow, h, l);
    stop = {stop.isLong, next, extreme, factor};
    return rules.isSigned && !stop.isLong ? -shown : shown;
  }

 private:
  template <class T>
  static T heldBack(bool isLong, T level, T highBefore, T lowBefore, T high, T low) {
    return isLong ? smaller(smaller(level, lowBefore), low) : larger(larger(level, highBefore), high);
  }

  template <class T>
  void begin(At<T> at, const Series& high, const Series& low, Stop& stop) const {
    const T rise = at(high, 2) - at(high, 1), fall = at(low, 1) - at(low, 2);
    stop.isLong = startValue == 0.0 ? !(fall > T(0) && rise < fall) : startValue > 0.0;
    stop.extreme = stop.isLong ? at(high, 2) : at(low, 2);
    stop.level = stop.isLong ? at(low, 1) : at(high, 1);
    if (startValue != 0.0) stop.level = magnitude(startValue);
    stop.factor = (stop.isLong ? rules.longSide : rules.shortSide).start;
  }
};

/// Neither the start nor a step is above the maximum.
Acceleration held(double start, double step, double maximum) {
  return {std::min(start, maximum), std::min(step, maximum), maximum};
}

Series parabolic(Call& call, const std::shared_ptr<RecordSet>& set, const Parabolic& rule) {
  Prices prices(call, set);
  const Series high = prices.high(), low = prices.low();
  const auto step = [&](auto at, Stop& stop, int r) { return std::array{rule(at, high, low, stop, r)}; };
  const auto fill = [&](kernels::Records records, const std::array<double*, 1>& rows, Stop& stop) {
    return kernels::run(&kernels::StandardTable::parabolicStop, rowsOf(high.column), rowsOf(low.column), rule.rules,
                        &stop, records, rows[0]);
  };
  return begun<1>(call, std::array{&high, &low}, 1, 2, Stop(), step, fill).front();
}

}  // namespace

Standard::Result Standard::SAR(DataRef data, SetRef OHLCV, double Acceleration, double Maximum, Name Alias) {
  return Method<"SAR">(data, Alias).factor(Acceleration, 0.0).factor(Maximum, 0.0).compute([&](Call& call) {
    const auto side = held(Acceleration, Acceleration, Maximum);
    return parabolic(call, OHLCV, {.rules = {.longSide = side, .shortSide = side}});
  });
}

Standard::Result Standard::SAREXT(DataRef data, SetRef OHLCV, double StartValue, double OffsetOnReverse,
                                  double LongStart, double LongStep, double LongMaximum, double ShortStart,
                                  double ShortStep, double ShortMaximum, Name Alias) {
  return Method<"SAREXT">(data, Alias)
      .factor(StartValue)
      .factor(OffsetOnReverse, 0.0)
      .factor(LongStart, 0.0)
      .factor(LongStep, 0.0)
      .factor(LongMaximum, 0.0)
      .factor(ShortStart, 0.0)
      .factor(ShortStep, 0.0)
      .factor(ShortMaximum, 0.0)
      .compute([&](Call& call) {
        return parabolic(call, OHLCV,
                         {.rules = {.longSide = held(LongStart, LongStep, LongMaximum),
                                    .shortSide = held(ShortStart, ShortStep, ShortMaximum),
                                    .offset = OffsetOnReverse,
                                    .isSigned = true},
                          .startValue = StartValue});
      });
}

Standard::Result Standard::SUPERTREND(DataRef data, SetRef OHLCV, Integer Periods, double Factor, Name Alias) {
  return Method<"SUPERTREND">(data, Alias).periods(Periods, 2).factor(Factor).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series middle = medianPrice(call, prices), close = prices.close();
    const Series range = averageTrueRange(call, prices, Periods.value());
    const auto step = [&]<class T>(At<T> at, kernels::Channel& channel, int r) {
      const T width = Factor * at(range, r);
      T top = at(middle, r) + width, bottom = at(middle, r) - width;
      if (r > range.first) {
        // A band moves toward the price only, until a close has crossed it.
        const T before = at(close, r - 1), oldTop = channel.top, oldBottom = channel.bottom;
        if (!(top < oldTop || before > oldTop)) top = oldTop;
        if (!(bottom > oldBottom || before < oldBottom)) bottom = oldBottom;
        channel.isUp = channel.isUp ? !(at(close, r) < bottom) : at(close, r) > top;
      }
      channel = {top, bottom, channel.isUp};
      return std::array{channel.isUp ? bottom : top, T(channel.isUp ? 1 : -1)};
    };
    const auto fill = [&](kernels::Records records, const std::array<double*, 2>& rows, kernels::Channel& channel) {
      return kernels::run(&kernels::StandardTable::superTrend, rowsOf(middle.column), rowsOf(range.column),
                          rowsOf(close.column), Factor, &channel, records, rows[0], rows[1]);
    };
    const auto rows =
        begun<2>(call, std::array{&middle, &range, &close}, range.first, range.first, kernels::Channel(), step, fill);
    return std::vector<Named>{{"", rows[0]}, {TrendSuffix, rows[1]}};
  });
}

Standard::Result Standard::CHANDELIER(DataRef data, SetRef OHLCV, Integer Periods, double Factor, Name Alias) {
  return Method<"CHANDELIER">(data, Alias).periods(Periods).factor(Factor).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series range = averageTrueRange(call, prices, Periods.value());
    const Series top = highest(call, prices.high(), Periods.value());
    const Series bottom = lowest(call, prices.low(), Periods.value());
    return std::vector<Named>{{LongSuffix, apart(call, top, range, -Factor)},
                              {ShortSuffix, apart(call, bottom, range, Factor)}};
  });
}

Standard::Result Standard::ICHIMOKU(DataRef data, SetRef OHLCV, Integer ConversionPeriods, Integer BasePeriods,
                                    Integer SpanPeriods, Integer Displacement, Name Alias) {
  return Method<"ICHIMOKU">(data, Alias)
      .periods(ConversionPeriods)
      .periods(BasePeriods)
      .periods(SpanPeriods)
      .periods(Displacement, 0)
      .compute([&](Call& call) {
        Prices prices(call, OHLCV);
        const Series high = prices.high(), low = prices.low(), close = prices.close();
        const auto middle = [&](Integer periods) { return middleOfRange(call, high, low, periods.value()); };
        const int ahead = Displacement.value();
        const auto displaced = [&](const Series& x) {
          return call.of<formulas::Same>(x.first + ahead, {Input(x, ahead)});
        };
        const Series conversion = middle(ConversionPeriods), base = middle(BasePeriods);
        const Series lagging = call.each(
            1, [&]<class T>(At<T> at, int r) { return r <= call.count() - ahead ? at(close, r + ahead) : T(0); });
        return std::vector<Named>{{ConversionSuffix, conversion},
                                  {BaseSuffix, base},
                                  {SpanASuffix, displaced(middleOf(call, conversion, base))},
                                  {SpanBSuffix, displaced(middle(SpanPeriods))},
                                  {LaggingSuffix, lagging}};
      });
}

namespace {

/// The extremes of the session so far, and the levels that the one before it gave.
struct SessionSoFar {
  double high = 0.0;
  double low = 0.0;
  std::array<double, 9> levels{};
};

/// The levels of a session's high, low and close: the pivot, resistances and supports 1 to 4, 0 for those that the kind
/// does not have.
template <class T>
std::array<T, 9> pivotLevels(int kind, T high, T low, T close) {
  const T pivot = (high + low + close) / 3, range = high - low, none = 0;
  if (kind == 0) {
    const T third = high + 2 * (pivot - low), thirdBelow = low - 2 * (high - pivot);
    return {pivot,         2 * pivot - low, pivot + range,     third, third + range, 2 * pivot - high,
            pivot - range, thirdBelow,      thirdBelow - range};
  }
  if (kind == 1) {
    return {pivot, pivot + 0.382 * range, pivot + 0.618 * range, pivot + range,
            none,  pivot - 0.382 * range, pivot - 0.618 * range, pivot - range,
            none};
  }
  const T step = range * 1.1;
  return {pivot,
          close + step / 12,
          close + step / 6,
          close + step / 4,
          close + step / 2,
          close - step / 12,
          close - step / 6,
          close - step / 4,
          close - step / 2};
}

}  // namespace

Standard::Result Standard::PIVOTS(DataRef data, SetRef OHLCV, FieldRef Session, Integer PivotKind, Name Alias) {
  return Method<"PIVOTS">(data, Alias).choice(PivotKind, 0, 2).compute([&](Call& call) {
    using State = SessionSoFar;
    Prices prices(call, OHLCV);
    const Series high = prices.high(), low = prices.low(), close = prices.close(), session = call.take(Session);
    const auto rows = call.columns<9>(1, State(), [&]<class T>(At<T> at, State& now, int r) {
      const bool begins = r == 1 || at(session, r) != at(session, r - 1);
      std::array<T, 9> levels;
      std::copy(now.levels.begin(), now.levels.end(), levels.begin());
      if (begins && r > 1) levels = pivotLevels(PivotKind.value(), T(now.high), T(now.low), at(close, r - 1));
      now.high = begins ? at(high, r) : larger(T(now.high), at(high, r));
      now.low = begins ? at(low, r) : smaller(T(now.low), at(low, r));
      std::copy(levels.begin(), levels.end(), now.levels.begin());
      return levels;
    });
    std::vector<Named> named;
    for (std::size_t i = 0; i < rows.size(); ++i) named.push_back({PivotSuffixes[i], rows[i]});
    return named;
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
