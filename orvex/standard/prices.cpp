#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

Standard::Result Standard::AVGPRICE(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"AVGPRICE">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series open = prices.open(), high = prices.high(), low = prices.low(), close = prices.close();
    return call.each(1, [&](auto at, int r) { return (at(high, r) + at(low, r) + at(close, r) + at(open, r)) / 4; });
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
    const Series high = prices.high(), low = prices.low(), close = prices.close();
    return call.by(
        1,
        [&](kernels::Records records, double* rows) {
          return kernels::run(&kernels::Table::weightedClose, rowsOf(high.column), rowsOf(low.column),
                              rowsOf(close.column), records, rows);
        },
        [&](auto at, int r) { return (at(high, r) + at(low, r) + 2 * at(close, r)) / 4; });
  });
}

namespace {

/// The open and close of a record's averaged bar.
struct Body {
  double open = 0.0;
  double close = 0.0;
};

}  // namespace

Standard::Result Standard::HEIKIN_ASHI(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"HEIKIN_ASHI">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series open = prices.open(), high = prices.high(), low = prices.low(), close = prices.close();
    const auto bars = call.columns<4>(1, Body(), [&]<class T>(At<T> at, Body& body, int r) {
      const T h = at(high, r), l = at(low, r);
      const T end = (at(open, r) + h + l + at(close, r)) / 4;
      const T start = r > 1 ? (T(body.open) + body.close) / 2 : (at(open, r) + at(close, r)) / 2;
      body = {start, end};
      return std::array{start, larger(h, larger(start, end)), smaller(l, smaller(start, end)), end};
    });
    return std::vector<Named>{
        {OpenSuffix, bars[0]}, {HighSuffix, bars[1]}, {LowSuffix, bars[2]}, {CloseSuffix, bars[3]}};
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
