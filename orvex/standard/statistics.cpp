#include "orvex/standard/elementary.h"
#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;

namespace {

/// What two columns' values of a window do around their means: sums of squares and of products.
template <class T>
struct Scatter {
  T xx = 0, xy = 0, yy = 0;
};

template <class T>
Scatter<T> scatterAt(At<T> at, const Series& x, const Series& y, int periods, int r) {
  T meanX = 0, meanY = 0;
  for (int j = r - periods + 1; j <= r; ++j) {
    meanX += at(x, j);
    meanY += at(y, j);
  }
  meanX = meanX / periods;
  meanY = meanY / periods;
  Scatter<T> sums;
  bool isFlatX = true, isFlatY = true;
  for (int j = r - periods + 1; j <= r; ++j) {
    const T dx = at(x, j) - meanX, dy = at(y, j) - meanY;
    sums.xx += dx * dx;
    sums.xy += dx * dy;
    sums.yy += dy * dy;
    isFlatX = isFlatX && at(x, j) == at(x, r);
    isFlatY = isFlatY && at(y, j) == at(y, r);
  }
  // Equal values lie at their mean, wherever the rounded sum of them does.
  if (isFlatX) sums.xx = 0;
  if (isFlatY) sums.yy = 0;
  return sums;
}

/// The least-squares line through the last P values, the oldest at 0. A mean w with weights 1 (oldest) to P and the
/// plain mean m tell all of it: its slope is 6 (w - m) / (P - 1), and it ends at 3 w - 2 m.
template <class T>
struct Line {
  T slope, end;
};

/// The column that `value(line)` makes of each record's line.
template <Text name, class Value>
Standard::Result ofLines(const Standard::DataRef& data, const Standard::FieldRef& source, Integer periods,
                         Standard::Name& alias, Value value) {
  return Method<name>(data, alias).periods(periods, 2).compute([&](Call& call) {
    const Series x = call.take(source);
    const Series plain = simple(call, x, periods.value()), rising = weighted(call, x, periods.value());
    const int last = periods.value() - 1;
    return call.each(plain.first, [&]<class T>(At<T> at, int r) {
      const T w = at(rising, r), m = at(plain, r);
      return value(Line<T>{6 * (w - m) / last, 3 * w - 2 * m});
    });
  });
}

}  // namespace

Standard::Result Standard::BETA(DataRef data, FieldRef Source1, FieldRef Source2, Integer Periods, Name Alias) {
  return Method<"BETA">(data, Alias).periods(Periods).compute([&](Call& call) {
    const auto moves = [&](const Series& x) {
      return call.each(2, [&]<class T>(At<T> at, int r) { return quotient(at(x, r) - at(x, r - 1), at(x, r - 1)); });
    };
    const Series x = moves(call.take(Source1)), y = moves(call.take(Source2));
    return call.each(Place{Periods.value()} + 1, [&]<class T>(At<T> at, int r) {
      const Scatter<T> sums = scatterAt(at, x, y, Periods.value(), r);
      return quotient(sums.xy, sums.xx);
    });
  });
}

Standard::Result Standard::CORREL(DataRef data, FieldRef Source1, FieldRef Source2, Integer Periods, Name Alias) {
  return Method<"CORREL">(data, Alias).periods(Periods).compute([&](Call& call) {
    const Series x = call.take(Source1), y = call.take(Source2);
    return call.each(Periods.value(), [&]<class T>(At<T> at, int r) {
      const Scatter<T> sums = scatterAt(at, x, y, Periods.value(), r);
      const T both = sums.xx * sums.yy;
      return quotient(sums.xy, root(both));
    });
  });
}

Standard::Result Standard::LINEARREG(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return ofLines<"LINEARREG">(data, Source, Periods, Alias, [&](const auto& line) { return line.end; });
}

Standard::Result Standard::LINEARREG_SLOPE(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return ofLines<"LINEARREG_SLOPE">(data, Source, Periods, Alias, [](const auto& line) { return line.slope; });
}

Standard::Result Standard::LINEARREG_INTERCEPT(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return ofLines<"LINEARREG_INTERCEPT">(
      data, Source, Periods, Alias, [&](const auto& line) { return line.end - line.slope * (Periods.value() - 1); });
}

Standard::Result Standard::LINEARREG_ANGLE(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return ofLines<"LINEARREG_ANGLE">(data, Source, Periods, Alias,
                                    [](const auto& line) { return arcTangent(line.slope) * DegreesPerRadian; });
}

Standard::Result Standard::TSF(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return ofLines<"TSF">(data, Source, Periods, Alias, [](const auto& line) { return line.end + line.slope; });
}

Standard::Result Standard::ZSCORE(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"ZSCORE">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    const Series x = call.take(Source), mean = simple(call, x, Periods.value());
    const Series spread = deviation(call, x, mean, Periods.value(), 1.0);
    const Series top = highest(call, x, Periods.value()), bottom = lowest(call, x, Periods.value());
    return call.each(mean.first, [&]<class T>(At<T> at, int r) {
      // Equal values stand at their mean, wherever the rounded sum of them lies.
      return at(top, r) == at(bottom, r) ? T(0) : quotient(at(x, r) - at(mean, r), at(spread, r));
    });
  });
}

Standard::Result Standard::PERCENTRANK(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"PERCENTRANK">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return percentRank(call, call.take(Source), Periods.value());
  });
}

Standard::Result Standard::MIN(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"MIN">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return lowest(call, call.take(Source), Periods.value());
  });
}

Standard::Result Standard::MAX(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"MAX">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return highest(call, call.take(Source), Periods.value());
  });
}

namespace {

/// Where the extreme of the last values stands.
struct Holder {
  int record = 0;
};

/// The record of the extreme of the last values, counted from 1. Of equal ones a newer takes its place, but once it has
/// left the window the oldest of those that remain does: which of them is told is as the field's most used library
/// finds it on its way.
template <class Beats>
Series placeOf(Call& call, const Series& x, int periods, Beats beats) {
  return call.carried(x.first + periods - 1, Holder(), [&]<class T>(At<T> at, Holder& holder, int r) {
    const auto better = [&](int a, int b) { return beats(at(x, a), at(x, b)); };
    if (holder.record < r - periods + 1) {
      holder.record = r - periods + 1;
      for (int j = holder.record + 1; j <= r; ++j)
        if (better(j, holder.record)) holder.record = j;
    } else if (!better(holder.record, r)) {
      holder.record = r;
    }
    return T(holder.record);
  });
}

}  // namespace

Standard::Result Standard::MININDEX(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"MININDEX">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return placeOf(call, call.take(Source), Periods.value(), [](auto a, auto b) { return a < b; });
  });
}

Standard::Result Standard::MAXINDEX(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"MAXINDEX">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return placeOf(call, call.take(Source), Periods.value(), [](auto a, auto b) { return a > b; });
  });
}

Standard::Result Standard::SUM(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"SUM">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return sum(call, call.take(Source), Periods.value());
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
