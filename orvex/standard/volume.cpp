#include <algorithm>

#include "orvex/data/head_of_series.h"
#include "orvex/kernels/chains.h"
#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

Standard::Result Standard::MFI(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"MFI">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const auto atOnce = call.atOnce(Periods.value() + 1, [&](kernels::Records records, double* rows) {
      const Series columns[] = {prices.high(), prices.low(), prices.close(), prices.volume()};
      const auto source = [&](int i) { return rowsOf(columns[i].column); };
      const auto flows = workingRows(call.count(), 2);
      std::size_t done =
          kernels::run(&kernels::StandardTable::moneyFlowIndex, kernels::Bars{source(0), source(1), source(2)},
                       source(3), Periods.value(), records, flows.get(), flows.get() + call.count(), rows);
      for (const Series& one : columns) done = call.proves(done, records, one, Periods.value());
      return done;
    });
    if (atOnce) return *atOnce;
    const Series price = typicalPrice(call, prices), flow = product(call, price, prices.volume());
    const Series up = call.of<formulas::WhereGreater>(2, {price, {price, 1}, flow});
    const Series down = call.of<formulas::WhereGreater>(2, {Input(price, 1), price, flow});
    return ofBoth<formulas::ShareOfBoth>(call, sum(call, up, Periods.value()), sum(call, down, Periods.value()));
  });
}

Standard::Result Standard::FORCE(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"FORCE">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series moves = momentum(call, prices.close(), 1);
    return exponential(call, product(call, moves, prices.volume()), Periods.value());
  });
}

Standard::Result Standard::AD(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"AD">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return accumulation(call, prices);
  });
}

Standard::Result Standard::ADOSC(DataRef data, SetRef OHLCV, Integer FastPeriods, Integer SlowPeriods, Name Alias) {
  return Method<"ADOSC">(data, Alias).periods(FastPeriods, 2).periods(SlowPeriods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series line = accumulation(call, prices);
    const Place first = std::max(FastPeriods, SlowPeriods).value();
    Series fast, slow;
    const auto compute = [&](Call& within, const Series& x) {
      fast = fromFirst(within, x, FastPeriods.value());
      slow = fromFirst(within, x, SlowPeriods.value());
      return std::array{difference(within, fast.from(first), slow)};
    };
    const auto kernel = [&](kernels::Records records, const std::array<double*, 1>& rows) {
      const kernels::FastAndSlow averages{
          {exponentialFactor(FastPeriods.value()), exponentialFactor(SlowPeriods.value())},
          {lastOf(*fast.column), lastOf(*slow.column)}};
      return kernels::run(&kernels::Chains::difference, rowsOf(line.column), averages, records, rows[0]);
    };
    const auto made = call.inOnePass<1>(line, first, compute, kernel);
    return made ? made->front() : compute(call, line).front();
  });
}

namespace {

using VolumeKernel = std::size_t (*kernels::Table::*)(kernels::Source, kernels::Source, kernels::Records, double*);

/// Row 1 as `first()` gives it, and what the kernel makes of the rows after it.
template <class First>
auto startedAt(Call& call, First first, VolumeKernel kernel, const Series& x, const Series& volume) {
  return [=, &call, &x, &volume](kernels::Records records, double* rows) {
    return seeded(
        call, std::array{&x, &volume}, 1, 1, records, std::array{rows}, [&] { return std::array{first()}; },
        [&](kernels::Records rest) {
          return kernels::run(kernel, rowsOf(x.column), rowsOf(volume.column), rest, rows);
        });
  };
}

}  // namespace

Standard::Result Standard::OBV(DataRef data, FieldRef Source, FieldRef Volume, Name Alias) {
  return Method<"OBV">(data, Alias).compute([&](Call& call) {
    const Series x = call.take(Source), volume = call.take(Volume);
    return call.recursion(1,
                          startedAt(
                              call, [&] { return volume.rows[0]; }, &kernels::Table::onBalanceVolume, x, volume),
                          [&]<class T>(At<T> at, const Series& own, int r) {
                            if (r == 1) return at(volume, r);
                            const T now = at(x, r), before = at(x, r - 1), amount = at(volume, r);
                            return at(own, r - 1) + (now > before ? amount : now < before ? T(0) - amount : T(0));
                          });
  });
}

Standard::Result Standard::CMF(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"CMF">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series flow = sum(call, moneyFlowVolume(call, prices), Periods.value());
    const Series volume = sum(call, prices.volume(), Periods.value());
    return ofBoth<formulas::Ratio>(call, flow, volume);
  });
}

Standard::Result Standard::EMV(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"EMV">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series high = prices.high(), low = prices.low(), volume = prices.volume();
    const Series moves = momentum(call, medianPrice(call, prices), 1);
    return call.each(
        2, [&](auto at, int r) { return at(moves, r) * (at(high, r) - at(low, r)) / (at(volume, r) / 10000); });
  });
}

namespace {

/// Klinger's trend: its direction, and the ranges that it has gone through.
struct Klinger {
  int trend = 0;
  double path = 0.0;
};

}  // namespace

Standard::Result Standard::KVO(DataRef data, SetRef OHLCV, Integer FastPeriods, Integer SlowPeriods, Name Alias) {
  return Method<"KVO">(data, Alias).periods(FastPeriods).periods(SlowPeriods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series high = prices.high(), low = prices.low(), close = prices.close(), volume = prices.volume();
    const Series force = call.carried(2, Klinger(), [&]<class T>(At<T> at, Klinger& last, int r) {
      const auto place = [&](int j) { return at(high, j) + at(low, j) + at(close, j); };
      const T now = place(r), before = place(r - 1), range = at(high, r) - at(low, r);
      T path = last.path;
      const int turn = now > before ? 1 : now < before ? -1 : 0;
      if (turn != 0 && turn != last.trend) {
        last.trend = turn;
        path = at(high, r - 1) - at(low, r - 1);
      }
      path = path + range;
      last.path = path;
      const T amount = at(volume, r) * magnitude(range / path * 2 - 1) * 100;
      return last.trend > 0 ? amount : -amount;
    });
    return difference(call, fromFirst(call, force, FastPeriods.value()), fromFirst(call, force, SlowPeriods.value()));
  });
}

namespace {

/// 1000, moved by the price's own rates where the volume went the way of `counts`.
template <class Counts>
Series volumeIndex(Call& call, const Series& x, const Series& volume, VolumeKernel kernel, Counts counts) {
  return call.recursion(1,
                        startedAt(
                            call, [] { return 1000.0; }, kernel, x, volume),
                        [&]<class T>(At<T> at, const Series& own, int r) {
                          if (r == 1) return T(1000);
                          const T before = at(own, r - 1), old = at(x, r - 1);
                          if (!counts(at(volume, r), at(volume, r - 1)) || old == T(0)) return before;
                          return before + before * ((at(x, r) - old) / old);
                        });
}

}  // namespace

Standard::Result Standard::NVI(DataRef data, FieldRef Source, FieldRef Volume, Name Alias) {
  return Method<"NVI">(data, Alias).compute([&](Call& call) {
    const Series x = call.take(Source), volume = call.take(Volume);
    return volumeIndex(call, x, volume, &kernels::Table::negativeVolume,
                       [](auto now, auto before) { return now < before; });
  });
}

Standard::Result Standard::PVI(DataRef data, FieldRef Source, FieldRef Volume, Name Alias) {
  return Method<"PVI">(data, Alias).compute([&](Call& call) {
    const Series x = call.take(Source), volume = call.take(Volume);
    return volumeIndex(call, x, volume, &kernels::Table::positiveVolume,
                       [](auto now, auto before) { return now > before; });
  });
}

Standard::Result Standard::VOSC(DataRef data, FieldRef Volume, Integer FastPeriods, Integer SlowPeriods, Name Alias) {
  return Method<"VOSC">(data, Alias).periods(FastPeriods).periods(SlowPeriods).compute([&](Call& call) {
    const Series volume = call.take(Volume), fast = simple(call, volume, FastPeriods.value());
    return percentAbove(call, fast, simple(call, volume, SlowPeriods.value()));
  });
}

Standard::Result Standard::PVT(DataRef data, FieldRef Source, FieldRef Volume, Name Alias) {
  return Method<"PVT">(data, Alias).compute([&](Call& call) {
    const Series x = call.take(Source), volume = call.take(Volume);
    const auto kernel = startedAt(
        call, [] { return 0.0; }, &kernels::Table::priceVolumeTrend, x, volume);
    return call.recursion(1, kernel, [&]<class T>(At<T> at, const Series& own, int r) {
      if (r == 1) return T(0);
      const T old = at(x, r - 1);
      return at(own, r - 1) + quotient(at(x, r) - old, old) * at(volume, r);
    });
  });
}

namespace {

/// The mean price of what was traded since the last record where `session` has changed, where there is one; 0 before
/// any trade.
Series averagePrice(Call& call, Prices& prices, Place first, const Series* session) {
  const Series &high = prices.high(), &low = prices.low(), &close = prices.close(), &volume = prices.volume();
  const auto step = [&]<class T>(At<T> at, kernels::Traded& sums, int r) {
    if (session != nullptr && r > 1 && at(*session, r) != at(*session, r - 1)) sums = {};
    const T bar[] = {at(high, r), at(low, r), at(close, r)};
    const T flow = T(sums.flow) + formulas::TypicalPrice::of(bar, {}, 0) * at(volume, r);
    const T whole = T(sums.volume) + at(volume, r);
    sums = {flow, whole};
    return std::array{quotient(flow, whole)};
  };
  const auto fill = [&](kernels::Records records, const std::array<double*, 1>& rows, kernels::Traded& sums) {
    return kernels::run(&kernels::StandardTable::meanPrice,
                        kernels::Bars{rowsOf(high.column), rowsOf(low.column), rowsOf(close.column)},
                        rowsOf(volume.column), session == nullptr ? kernels::Source() : rowsOf(session->column), &sums,
                        records, rows[0]);
  };
  const std::array sources = {&high, &low, &close, &volume, session == nullptr ? &volume : session};
  return begun<1>(call, sources, first, first, kernels::Traded(), step, fill).front();
}

}  // namespace

Standard::Result Standard::VWAP(DataRef data, SetRef OHLCV, FieldRef Session, Name Alias) {
  return Method<"VWAP">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series session = call.take(Session);
    return averagePrice(call, prices, 1, &session);
  });
}

Standard::Result Standard::AVWAP(DataRef data, SetRef OHLCV, Integer Anchor, Name Alias) {
  return Method<"AVWAP">(data, Alias).record(Anchor).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return averagePrice(call, prices, Anchor.value(), nullptr);
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
