#include <algorithm>
#include <array>
#include <utility>

#include "orvex/kernels/chains.h"
#include "orvex/standard/elementary.h"
#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

namespace {

/// An average to be taken.
struct Averaged {
  Integer periods;
  Integer kind;

  Place lookback() const { return standard::lookback(kind, periods); }
};

/// The average of more records is the slower one, in whatever order they are given.
void sort(Averaged& fast, Averaged& slow) {
  if (slow.periods < fast.periods) std::swap(fast, slow);
}

/// The faster and the slower average, each from its own first record on.
std::pair<Series, Series> fastAndSlow(Call& call, const Series& x, Averaged fast, Averaged slow) {
  sort(fast, slow);
  return {average(call, fast.kind, x, fast.periods), average(call, slow.kind, x, slow.periods)};
}

/// The same, but both from the record on at which the later of them can begin: each starts from the records that it
/// covers there.
std::pair<Series, Series> alignedFastAndSlow(Call& call, const Series& x, const Averaged& fast, const Averaged& slow) {
  const Place first = x.first + std::max(fast.lookback(), slow.lookback());
  const auto from = [&](const Averaged& one) {
    return average(call, one.kind, x.from(first - one.lookback()), one.periods);
  };
  return {from(fast), from(slow)};
}

/// A line, the average of it, and how far it is from that.
using Convergence = std::array<Series, 3>;

Convergence withSignal(Call& call, const Series& line, const Averaged& signal) {
  const Series follower = average(call, signal.kind, line, signal.periods);
  return {call.shown(line, follower.first), follower, difference(call, line, follower)};
}

constexpr int Exponential = static_cast<int>(Kind::Exponential);

Convergence convergenceOf(Call& call, const Series& x, const Averaged& fast, const Averaged& slow,
                          const Averaged& signal) {
  std::pair<Series, Series> averages;
  const auto compute = [&](Call& within, const Series& from) {
    averages = alignedFastAndSlow(within, from, fast, slow);
    return withSignal(within, difference(within, averages.first, averages.second), signal);
  };
  // The average of 1 record is the column itself, whatever its kind.
  const auto isExponential = [](const Averaged& one) { return one.kind == Exponential && one.periods > 1; };
  if (isExponential(fast) && isExponential(slow) && isExponential(signal)) {
    const Place head = x.first + slow.lookback() + signal.lookback();
    Convergence known;
    const auto made = call.inOnePass<3>(
        x, head, [&](Call& within, const Series& from) { return known = compute(within, from); },
        [&](kernels::Records records, const std::array<double*, 3>& rows) {
          const auto factor = [](const Averaged& one) { return exponentialFactor(one.periods.value()); };
          const kernels::Convergence stages{
              {factor(fast), factor(slow), factor(signal)},
              {lastOf(*averages.first.column), lastOf(*averages.second.column), lastOf(*known[1].column)}};
          return kernels::run(&kernels::Chains::approachConvergence, rowsOf(x.column), stages, records,
                              kernels::ConvergenceRows{rows[0], rows[1], rows[2]});
        });
    if (made) return *made;
  }
  return compute(call, x);
}

std::vector<Named> convergence(Call& call, const Series& x, Averaged fast, Averaged slow, const Averaged& signal) {
  sort(fast, slow);
  const Convergence columns = convergenceOf(call, x, fast, slow, signal);
  return {{"", columns[0]}, {Standard::SignalSuffix, columns[1]}, {Standard::HistogramSuffix, columns[2]}};
}

}  // namespace

Standard::Result Standard::APO(DataRef data, FieldRef Source, Integer FastPeriods, Integer SlowPeriods, Integer MA_Type,
                               Name Alias) {
  return Method<"APO">(data, Alias)
      .periods(FastPeriods, 2)
      .periods(SlowPeriods, 2)
      .kind(MA_Type)
      .compute([&](Call& call) {
        const auto [fast, slow] = fastAndSlow(call, call.take(Source), {FastPeriods, MA_Type}, {SlowPeriods, MA_Type});
        return difference(call, fast, slow);
      });
}

Standard::Result Standard::PPO(DataRef data, FieldRef Source, Integer FastPeriods, Integer SlowPeriods, Integer MA_Type,
                               Name Alias) {
  return Method<"PPO">(data, Alias)
      .periods(FastPeriods, 2)
      .periods(SlowPeriods, 2)
      .kind(MA_Type)
      .compute([&](Call& call) {
        const auto [fast, slow] = fastAndSlow(call, call.take(Source), {FastPeriods, MA_Type}, {SlowPeriods, MA_Type});
        return percentAbove(call, fast, slow);
      });
}

Standard::Result Standard::BOP(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"BOP">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series open = prices.open(), high = prices.high(), low = prices.low(), close = prices.close();
    return call.of<formulas::BalanceOfPower>(1, {high, low, close, open});
  });
}

Standard::Result Standard::CCI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"CCI">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series price = typicalPrice(call, prices), mean = simple(call, price, Periods.value());
    return call.by(
        mean.first,
        [&](kernels::Records records, double* rows) {
          const std::size_t done = kernels::run(&kernels::Table::channel, rowsOf(price.column), rowsOf(mean.column),
                                                Periods.value(), records, rows);
          return call.proves(call.proves(done, records, price, Periods.value() - 1), records, mean);
        },
        [&]<class T>(At<T> at, int r) {
          T distance = 0;
          bool isFlat = true;
          for (int j = r - Periods.value() + 1; j <= r; ++j) {
            distance += magnitude(at(price, j) - at(mean, r));
            isFlat = isFlat && at(price, j) == at(price, r);
          }
          // Equal prices stand at their mean, wherever the rounded sum of them lies.
          const T divisor = 0.015 * (distance / Periods.value());
          return isFlat ? T(0) : quotient(at(price, r) - at(mean, r), divisor);
        });
  });
}

Standard::Result Standard::CMO(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"CMO">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return chandeMomentum(call, call.take(Source), Periods.value());
  });
}

Standard::Result Standard::MACD(DataRef data, FieldRef Source, Integer FastPeriods, Integer SlowPeriods,
                                Integer SignalPeriods, Name Alias) {
  return Method<"MACD">(data, Alias)
      .periods(FastPeriods, 2)
      .periods(SlowPeriods, 2)
      .periods(SignalPeriods)
      .compute([&](Call& call) {
        return convergence(call, call.take(Source), {FastPeriods, Exponential}, {SlowPeriods, Exponential},
                           {SignalPeriods, Exponential});
      });
}

Standard::Result Standard::MACDEXT(DataRef data, FieldRef Source, Integer FastPeriods, Integer FastMA_Type,
                                   Integer SlowPeriods, Integer SlowMA_Type, Integer SignalPeriods,
                                   Integer SignalMA_Type, Name Alias) {
  return Method<"MACDEXT">(data, Alias)
      .periods(FastPeriods, 2)
      .kind(FastMA_Type)
      .periods(SlowPeriods, 2)
      .kind(SlowMA_Type)
      .periods(SignalPeriods)
      .kind(SignalMA_Type)
      .compute([&](Call& call) {
        return convergence(call, call.take(Source), {FastPeriods, FastMA_Type}, {SlowPeriods, SlowMA_Type},
                           {SignalPeriods, SignalMA_Type});
      });
}

Standard::Result Standard::MOM(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"MOM">(data, Alias).periods(Periods).compute([&](Call& call) {
    return momentum(call, call.take(Source), Periods.value());
  });
}

Standard::Result Standard::ROC(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"ROC">(data, Alias).periods(Periods).compute([&](Call& call) {
    return rate(call, call.take(Source), Periods.value());
  });
}

Standard::Result Standard::ROCP(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"ROCP">(data, Alias).periods(Periods).compute([&](Call& call) {
    const Series x = call.take(Source);
    return call.of<formulas::Rate>(Place{Periods.value()} + 1, {x, {x, Periods.value()}});
  });
}

Standard::Result Standard::ROCR(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"ROCR">(data, Alias).periods(Periods).compute([&](Call& call) {
    const Series x = call.take(Source);
    return call.of<formulas::Ratio>(Place{Periods.value()} + 1, {x, {x, Periods.value()}});
  });
}

Standard::Result Standard::RSI(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"RSI">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return relativeStrength(call, call.take(Source), Periods.value());
  });
}

Standard::Result Standard::STOCH(DataRef data, SetRef OHLCV, Integer KPeriods, Integer KSlowingPeriods,
                                 Integer KMA_Type, Integer DPeriods, Integer DMA_Type, Name Alias) {
  return Method<"STOCH">(data, Alias)
      .periods(KPeriods)
      .periods(KSlowingPeriods)
      .kind(KMA_Type)
      .periods(DPeriods)
      .kind(DMA_Type)
      .compute([&](Call& call) {
        Prices prices(call, OHLCV);
        const Series high = prices.high(), low = prices.low(), close = prices.close();
        const Series fast = stochastic(call, high, low, close, KPeriods.value());
        const Series slow = average(call, KMA_Type, fast, KSlowingPeriods);
        const Series signal = average(call, DMA_Type, slow, DPeriods);
        return std::vector<Named>{{KSuffix, call.shown(slow, signal.first)}, {DSuffix, signal}};
      });
}

Standard::Result Standard::STOCHF(DataRef data, SetRef OHLCV, Integer KPeriods, Integer DPeriods, Integer DMA_Type,
                                  Name Alias) {
  return Method<"STOCHF">(data, Alias).periods(KPeriods).periods(DPeriods).kind(DMA_Type).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series high = prices.high(), low = prices.low(), close = prices.close();
    const Series fast = stochastic(call, high, low, close, KPeriods.value());
    const Series signal = average(call, DMA_Type, fast, DPeriods);
    return std::vector<Named>{{KSuffix, call.shown(fast, signal.first)}, {DSuffix, signal}};
  });
}

Standard::Result Standard::StochRSI(DataRef data, FieldRef Source, Integer Periods, Integer KPeriods, Integer DPeriods,
                                    Integer DMA_Type, Name Alias) {
  return Method<"StochRSI">(data, Alias)
      .periods(Periods, 2)
      .periods(KPeriods)
      .periods(DPeriods)
      .kind(DMA_Type)
      .compute([&](Call& call) {
        const Series strength = relativeStrength(call, call.take(Source), Periods.value());
        const Series fast = stochastic(call, strength, strength, strength, KPeriods.value());
        const Series signal = average(call, DMA_Type, fast, DPeriods);
        return std::vector<Named>{{KSuffix, call.shown(fast, signal.first)}, {DSuffix, signal}};
      });
}

Standard::Result Standard::TRIX(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"TRIX">(data, Alias).periods(Periods).compute([&](Call& call) {
    return tripleRate(call, call.take(Source), Periods.value());
  });
}

Standard::Result Standard::ULTOSC(DataRef data, SetRef OHLCV, Integer Cycle1, Integer Cycle2, Integer Cycle3,
                                  Name Alias) {
  return Method<"ULTOSC">(data, Alias).periods(Cycle1).periods(Cycle2).periods(Cycle3).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series low = prices.low(), close = prices.close(), range = trueRange(call, prices);
    const Series buying = call.of<formulas::BuyingPressure>(2, {close, low, {close, 1}});
    std::array cycles = {Cycle1.value(), Cycle2.value(), Cycle3.value()};
    std::sort(cycles.begin(), cycles.end());
    return ultimate(call, buying, range, cycles);
  });
}

Standard::Result Standard::WILLR(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"WILLR">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series high = prices.high(), low = prices.low(), close = prices.close();
    return stochasticBelow(call, high, low, close, Periods.value());
  });
}

Standard::Result Standard::TSI(DataRef data, FieldRef Source, Integer FirstPeriods, Integer SecondPeriods, Name Alias) {
  return Method<"TSI">(data, Alias).periods(FirstPeriods, 2).periods(SecondPeriods, 2).compute([&](Call& call) {
    const int once = FirstPeriods.value(), again = SecondPeriods.value();
    const Series x = call.take(Source);
    std::array<Series, 2> net, whole;
    const auto compute = [&](Call& within, const Series& from) {
      const auto smooth = [&](const Series& series, std::array<Series, 2>& averages) {
        averages[0] = exponential(within, series, once);
        averages[1] = exponential(within, averages[0], again);
      };
      const Series moves = momentum(within, from, 1);
      smooth(moves, net);
      smooth(within.of<formulas::Magnitude>(2, {moves}), whole);
      return std::array{ofBoth<formulas::Percentage>(within, net[1], whole[1])};
    };
    const Place head = Place{once} + again;
    const auto kernel = [&](kernels::Records records, const std::array<double*, 1>& rows) {
      const auto known = [](const Series& average) { return lastOf(*average.column); };
      const kernels::Smoothing averages{{exponentialFactor(once), exponentialFactor(again)},
                                        x.rows[head - 1],
                                        {known(net[0]), known(net[1])},
                                        {known(whole[0]), known(whole[1])}};
      return kernels::run(&kernels::Chains::trueStrength, rowsOf(x.column), averages, records, rows[0]);
    };
    const auto made = call.inOnePass<1>(x, head, compute, kernel);
    return made ? made->front() : compute(call, x).front();
  });
}

Standard::Result Standard::KST(DataRef data, FieldRef Source, Integer SignalPeriods, Name Alias) {
  return Method<"KST">(data, Alias).periods(SignalPeriods).compute([&](Call& call) {
    const Series x = call.take(Source);
    const auto part = [&](int lag, int periods) { return simple(call, rate(call, x, lag), periods); };
    const Series a = part(10, 10), b = part(15, 10), c = part(20, 10), d = part(30, 15);
    const Series line = call.of<formulas::Combined>(d.first, {a, b, c, d}, {{1, 2, 3, 4}});
    return std::vector<Named>{{"", line}, {SignalSuffix, simple(call, line, SignalPeriods.value())}};
  });
}

Standard::Result Standard::COPPOCK(DataRef data, FieldRef Source, Integer Periods, Integer FastPeriods,
                                   Integer SlowPeriods, Name Alias) {
  return Method<"COPPOCK">(data, Alias)
      .periods(Periods)
      .periods(FastPeriods)
      .periods(SlowPeriods)
      .compute([&](Call& call) {
        const Series x = call.take(Source);
        const Series a = rate(call, x, FastPeriods.value()), b = rate(call, x, SlowPeriods.value());
        return weighted(call, ofBoth<formulas::Sum>(call, a, b), Periods.value());
      });
}

namespace {

/// What Fisher's transform carries: the smoothed place in the range, and its transform.
struct Transformed {
  double place = 0.0;
  double value = 0.0;
};

}  // namespace

Standard::Result Standard::FISHER(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"FISHER">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series price = medianPrice(call, prices);
    const Series top = highest(call, price, Periods.value()), bottom = lowest(call, price, Periods.value());
    const auto rows = call.columns<2>(top.first, Transformed(), [&]<class T>(At<T> at, Transformed& last, int r) {
      T range = at(top, r) - at(bottom, r);
      if (range == T(0)) range = 0.001;
      T place = 0.33 * 2.0 * ((at(price, r) - at(bottom, r)) / range - 0.5) + 0.67 * T(last.place);
      if (place > T(0.99)) place = 0.999;
      if (place < T(-0.99)) place = -0.999;
      const T before = last.value;
      const T value = 0.5 * logarithm((1 + place) / (1 - place)) + 0.5 * before;
      last = {place, value};
      return std::array{value, before};
    });
    return std::vector<Named>{{"", rows[0]}, {SignalSuffix, rows[1]}};
  });
}

Standard::Result Standard::AO(DataRef data, SetRef OHLCV, Integer FastPeriods, Integer SlowPeriods, Name Alias) {
  return Method<"AO">(data, Alias).periods(FastPeriods, 2).periods(SlowPeriods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series price = medianPrice(call, prices), fast = simple(call, price, FastPeriods.value());
    return difference(call, fast, simple(call, price, SlowPeriods.value()));
  });
}

Standard::Result Standard::QSTICK(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"QSTICK">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series close = prices.close();
    return simple(call, difference(call, close, prices.open()), Periods.value());
  });
}

Standard::Result Standard::ELDER_RAY(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"ELDER_RAY">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series mean = exponential(call, prices.close(), Periods.value());
    return std::vector<Named>{{BullSuffix, difference(call, prices.high(), mean)},
                              {BearSuffix, difference(call, prices.low(), mean)}};
  });
}

Standard::Result Standard::DPO(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"DPO">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    const Series x = call.take(Source), mean = simple(call, x, Periods.value());
    const int lag = Periods.value() / 2 + 1;
    return call.of<formulas::Difference>(std::max(mean.first, x.first + lag), {Input(x, lag), mean});
  });
}

Standard::Result Standard::MASS(DataRef data, SetRef OHLCV, Integer FastPeriods, Integer SlowPeriods, Name Alias) {
  return Method<"MASS">(data, Alias).periods(FastPeriods, 2).periods(SlowPeriods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series high = prices.high();
    const Series range = difference(call, high, prices.low());
    return sum(call, ratioOfAverages(call, range, FastPeriods.value()), SlowPeriods.value());
  });
}

namespace {

struct Streak {
  int length = 0;  // of rises, below 0 of falls
};

}  // namespace

Standard::Result Standard::CRSI(DataRef data, FieldRef Source, Integer Periods, Integer StreakPeriods,
                                Integer RankPeriods, Name Alias) {
  return Method<"CRSI">(data, Alias)
      .periods(Periods, 2)
      .periods(StreakPeriods, 2)
      .periods(RankPeriods, 2)
      .compute([&](Call& call) {
        const Series x = call.take(Source);
        const Series streaks = call.carried(1, Streak(), [&]<class T>(At<T> at, Streak& streak, int r) {
          const T move = r > 1 ? at(x, r) - at(x, r - 1) : T(0);
          streak.length = move > T(0)   ? std::max(streak.length, 0) + 1
                          : move < T(0) ? std::min(streak.length, 0) - 1
                                        : 0;
          return T(streak.length);
        });
        const Series ofPrice = relativeStrength(call, x, Periods.value());
        const Series ofStreaks = relativeStrength(call, streaks, StreakPeriods.value());
        const Series rank = percentRank(call, rate(call, x, 1), RankPeriods.value());
        return call.each(std::max({ofPrice.first, ofStreaks.first, rank.first}),
                         [&](auto at, int r) { return (at(ofPrice, r) + at(ofStreaks, r) + at(rank, r)) / 3; });
      });
}

}  // namespace orvex::inline ORVEX_COUNTS
