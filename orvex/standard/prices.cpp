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
    const Series end = call.of<formulas::AveragePrice>(1, {open, high, low, close});
    const Series start = call.recursion(
        1,
        [&](kernels::Records records, double* rows) -> std::size_t {
          std::size_t done = 0;
          if (records.first == 1) {
            const auto isHandled = [](const Series& x) {
              return kernels::run(&kernels::Table::handled, rowsOf(x.column), kernels::Records{1, 1}) == 1;
            };
            if (!isHandled(open) || !isHandled(close)) return 0;
            rows[0] = (open.rows[0] + close.rows[0]) / 2;
            done = 1;
            ++records.first;
          }
          if (records.first > records.last) return done;
          return done + kernels::run(&kernels::StandardTable::halfway, rowsOf(end.column), records, rows);
        },
        [&]<class T>(At<T> at, const Series& own, int r) {
          return r > 1 ? (at(own, r - 1) + at(end, r - 1)) / 2 : (at(open, r) + at(close, r)) / 2;
        });
    return std::vector<Named>{{OpenSuffix, start},
                              {HighSuffix, call.of<formulas::Largest>(1, {high, start, end})},
                              {LowSuffix, call.of<formulas::Smallest>(1, {low, start, end})},
                              {CloseSuffix, end}};
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
