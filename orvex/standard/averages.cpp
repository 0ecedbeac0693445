#include <cmath>

#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

namespace {

/// An average of one column that has no argument but its periods.
template <Text name, class Average>
Standard::Result averageOf(const Standard::DataRef& data, const Standard::FieldRef& source, Integer periods,
                           Standard::Name& alias, Average average) {
  return Method<name>(data, alias).periods(periods).compute([&](Call& call) {
    return average(call, call.take(source), periods.value());
  });
}

template <Kind kind>
Series ofKind(Call& call, const Series& x, int periods) {
  return average(call, static_cast<int>(kind), x, periods);
}

Series hull(Call& call, const Series& x, int periods) {
  const Series half = weighted(call, x, std::max(periods / 2, 1)), whole = weighted(call, x, periods);
  const Series raw = ofBoth<formulas::TwiceLess>(call, half, whole);
  return weighted(call, raw, std::max(static_cast<int>(std::sqrt(periods)), 1));
}

Series zeroLag(Call& call, const Series& x, int periods) {
  const int lag = (periods - 1) / 2;
  const Series ahead = call.of<formulas::Ahead>(x.first + lag, {x, {x, lag}});
  return exponential(call, ahead, periods);
}

}  // namespace

Standard::Result Standard::SMA(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return averageOf<"SMA">(data, Source, Periods, Alias, simple);
}

Standard::Result Standard::EMA(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return averageOf<"EMA">(data, Source, Periods, Alias, exponential);
}

Standard::Result Standard::WMA(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return averageOf<"WMA">(data, Source, Periods, Alias, weighted);
}

Standard::Result Standard::DEMA(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return averageOf<"DEMA">(data, Source, Periods, Alias, ofKind<Kind::Double>);
}

Standard::Result Standard::TEMA(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return averageOf<"TEMA">(data, Source, Periods, Alias, ofKind<Kind::Triple>);
}

Standard::Result Standard::T3(DataRef data, FieldRef Source, Integer Periods, double VolumeFactor, Name Alias) {
  return Method<"T3">(data, Alias).periods(Periods).factor(VolumeFactor, 0.0, 1.0).compute([&](Call& call) {
    return tillson(call, call.take(Source), Periods.value(), VolumeFactor);
  });
}

Standard::Result Standard::TRIMA(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return averageOf<"TRIMA">(data, Source, Periods, Alias, triangular);
}

Standard::Result Standard::KAMA(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return averageOf<"KAMA">(data, Source, Periods, Alias, ofKind<Kind::Kaufman>);
}

Standard::Result Standard::MAMA(DataRef data, FieldRef Source, double FastLimit, double SlowLimit, Name Alias) {
  return Method<"MAMA">(data, Alias)
      .factor(FastLimit, 0.01, 0.99)
      .factor(SlowLimit, 0.01, 0.99)
      .compute([&](Call& call) {
        const auto [adaptive, following] = mesa(call, call.take(Source), FastLimit, SlowLimit);
        return std::vector<Named>{{"", adaptive}, {FollowingSuffix, following}};
      });
}

Standard::Result Standard::HMA(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return averageOf<"HMA">(data, Source, Periods, Alias, hull);
}

Standard::Result Standard::ZLEMA(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return averageOf<"ZLEMA">(data, Source, Periods, Alias, zeroLag);
}

Standard::Result Standard::RMA(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return averageOf<"RMA">(data, Source, Periods, Alias, wilder);
}

Standard::Result Standard::VWMA(DataRef data, FieldRef Source, FieldRef Volume, Integer Periods, Name Alias) {
  return Method<"VWMA">(data, Alias).periods(Periods).compute([&](Call& call) {
    const Series x = call.take(Source), volume = call.take(Volume);
    const Series flow = sum(call, product(call, x, volume), Periods.value());
    const Series whole = sum(call, volume, Periods.value());
    return ofBoth<formulas::Quotient>(call, flow, whole);
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
