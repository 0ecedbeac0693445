#include <cmath>

#include "orvex/standard/elementary.h"
#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

Standard::Result Standard::TRANGE(DataRef data, SetRef OHLCV, Name Alias) {
  return Method<"TRANGE">(data, Alias).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return trueRange(call, prices);
  });
}

Standard::Result Standard::ATR(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"ATR">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return averageTrueRange(call, prices, Periods.value());
  });
}

Standard::Result Standard::NATR(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"NATR">(data, Alias).periods(Periods).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series range = averageTrueRange(call, prices, Periods.value()), close = prices.close();
    return ofBoth<formulas::Percentage>(call, range, close);
  });
}

Standard::Result Standard::STDDEV(DataRef data, FieldRef Source, Integer Periods, double Factor, Name Alias) {
  return Method<"STDDEV">(data, Alias).periods(Periods, 2).factor(Factor).compute([&](Call& call) {
    const Series x = call.take(Source);
    return deviation(call, x, simple(call, x, Periods.value()), Periods.value(), Factor);
  });
}

Standard::Result Standard::VAR(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"VAR">(data, Alias).periods(Periods).compute([&](Call& call) {
    const Series x = call.take(Source), mean = simple(call, x, Periods.value());
    const Series root = deviation(call, x, mean, Periods.value(), 1.0);
    return call.of<formulas::Square>(root.first, {root});
  });
}

Standard::Result Standard::HV(DataRef data, FieldRef Source, Integer Periods, Integer PeriodsPerYear, Name Alias) {
  return Method<"HV">(data, Alias).periods(Periods, 2).periods(PeriodsPerYear).compute([&](Call& call) {
    const Series x = call.take(Source);
    const Series moves = call.each(2, [&](auto at, int r) { return logarithm(at(x, r) / at(x, r - 1)); });
    // Of a sample, for a year, in percent.
    const double sample = Periods.value() / (Periods.value() - 1.0);
    const double factor = 100 * std::sqrt(sample * PeriodsPerYear.value());
    return deviation(call, moves, simple(call, moves, Periods.value()), Periods.value(), factor);
  });
}

Standard::Result Standard::CHOP(DataRef data, SetRef OHLCV, Integer Periods, Name Alias) {
  return Method<"CHOP">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    const Series path = sum(call, trueRange(call, prices), Periods.value());
    const Series top = highest(call, prices.high(), Periods.value());
    const Series bottom = lowest(call, prices.low(), Periods.value());
    const double whole = logarithm(static_cast<double>(Periods.value()));
    return call.each(path.first, [&](auto at, int r) {
      return 100 * logarithm(at(path, r) / (at(top, r) - at(bottom, r))) / whole;
    });
  });
}

Standard::Result Standard::ULCER(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"ULCER">(data, Alias).periods(Periods).compute([&](Call& call) {
    const Series x = call.take(Source), top = highest(call, x, Periods.value());
    const Series squares = call.each(top.first, [&](auto at, int r) {
      const auto fall = 100 * (at(x, r) - at(top, r)) / at(top, r);
      return fall * fall;
    });
    const Series mean = simple(call, squares, Periods.value());
    return call.each(mean.first, [&](auto at, int r) { return root(at(mean, r)); });
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
