#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

Standard::Result Standard::AVGPRICE(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"AVGPRICE">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series open = prices.open(), high = prices.high(), low = prices.low(), close = prices.close();
    return call.of<formulas::AveragePrice>(1, {high, low, close, open});
  });
}

Standard::Result Standard::MEDPRICE(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"MEDPRICE">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return medianPrice(call, prices);
  });
}

Standard::Result Standard::TYPPRICE(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"TYPPRICE">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return typicalPrice(call, prices);
  });
}

Standard::Result Standard::WCLPRICE(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"WCLPRICE">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return call.of<formulas::WeightedClose>(1, {prices.high(), prices.low(), prices.close()});
  });
}

Standard::Result Standard::HEIKIN_ASHI(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"HEIKIN_ASHI">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series open = prices.open(), high = prices.high(), low = prices.low(), close = prices.close();
    const auto step = [&]<class T>(At<T> at, kernels::Body& before, int r) {
      const T bar[] = {at(open, r), at(high, r), at(low, r), at(close, r)};
      const T start = (r > 1 ? T(before.start) + T(before.end) : bar[0] + bar[3]) / 2;
      const T end = formulas::AveragePrice::of(bar, {}, 0);
      before = {start, end};
      const T tops[] = {bar[1], start, end}, bottoms[] = {bar[2], start, end};
      return std::array{start, formulas::Largest::of(tops, {}, 0), formulas::Smallest::of(bottoms, {}, 0), end};
    };
    const auto fill = [&](kernels::Records records, const std::array<double*, 4>& rows, kernels::Body& before) {
      return kernels::run(&kernels::StandardTable::heikinAshi, rowsOf(open.column),
                          kernels::Bars{rowsOf(high.column), rowsOf(low.column), rowsOf(close.column)}, &before,
                          records, kernels::BarRows{rows[0], rows[1], rows[2], rows[3]});
    };
    const auto made = begun<4>(call, std::array{&open, &high, &low, &close}, 1, 1, kernels::Body(), step, fill);
    return std::vector<Named>{
        {OpenSuffix, made[0]}, {HighSuffix, made[1]}, {LowSuffix, made[2]}, {CloseSuffix, made[3]}};
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
