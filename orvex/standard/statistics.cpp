#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

namespace orvex::inline ORVEX_COUNTS {

using namespace standard;
using kernels::StandardTable;

namespace {

/// What two columns' values of a window do around their means: sums of squares and of products.
struct Scatter {
  Series xx, xy, yy;
};

Scatter scatter(Call& call, const Series& x, const Series& y, int periods) {
  const Series meanX = simple(call, x, periods), meanY = simple(call, y, periods);
  const auto made = call.columns<3>(
      meanX.first,
      [&](kernels::Records records, const std::array<double*, 3>& rows, Nothing&) {
        return kernels::run(&StandardTable::scatter, rowsOf(x.column), rowsOf(y.column), rowsOf(meanX.column),
                            rowsOf(meanY.column), periods, records, kernels::ScatterRows{rows[0], rows[1], rows[2]});
      },
      Nothing(),
      [&]<class T>(At<T> at, Nothing&, int r) {
        T xx = 0, xy = 0, yy = 0;
        bool isFlatX = true, isFlatY = true;
        for (int j = r; j > r - periods; --j) {
          const T dx = at(x, j) - at(meanX, r), dy = at(y, j) - at(meanY, r);
          xx += dx * dx;
          xy += dx * dy;
          yy += dy * dy;
          isFlatX = isFlatX && at(x, j) == at(x, r);
          isFlatY = isFlatY && at(y, j) == at(y, r);
        }
        // Equal values lie at their mean, wherever the rounded sum of them does.
        return std::array{isFlatX ? T(0) : xx, xy, isFlatY ? T(0) : yy};
      });
  return {made[0], made[1], made[2]};
}

/// What the formula makes of each record's least-squares line through the last P values, the oldest at 0.
template <class Formula>
Series line(Call& call, const Series& x, int periods, kernels::LineKernel StandardTable::*kernel) {
  const auto made = call.atOnce(x.first + periods - 1, [&](kernels::Records records, double* rows) {
    return call.proves(kernels::run(kernel, rowsOf(x.column), periods, records, rows), records, x, periods - 1);
  });
  if (made) return *made;
  return ofBoth<Formula>(call, weighted(call, x, periods), simple(call, x, periods), {{periods - 1.0}});
}

template <Text name, class Formula>
Standard::Result ofLines(const Standard::DataRef& data, const Standard::FieldRef& source, Integer periods,
                         Standard::Name& alias, kernels::LineKernel StandardTable::*kernel) {
  return Method<name>(data, alias).periods(periods, 2).compute([&](Call& call) {
    return line<Formula>(call, call.take(source), periods.value(), kernel);
  });
}

}  // namespace

Standard::Result Standard::BETA(DataRef data, FieldRef Source1, FieldRef Source2, Integer Periods, Name Alias) {
  return Method<"BETA">(data, Alias).periods(Periods).compute([&](Call& call) {
    const auto moves = [&](const Series& x) { return call.of<formulas::Rate>(2, {x, {x, 1}}); };
    const Series x = moves(call.take(Source1)), y = moves(call.take(Source2));
    const Scatter sums = scatter(call, x, y, Periods.value());
    return ofBoth<formulas::Ratio>(call, sums.xy, sums.xx);
  });
}

Standard::Result Standard::CORREL(DataRef data, FieldRef Source1, FieldRef Source2, Integer Periods, Name Alias) {
  return Method<"CORREL">(data, Alias).periods(Periods).compute([&](Call& call) {
    const Series x = call.take(Source1), y = call.take(Source2);
    const Scatter sums = scatter(call, x, y, Periods.value());
    return call.of<formulas::Correlation>(sums.xy.first, {sums.xy, sums.xx, sums.yy});
  });
}

Standard::Result Standard::LINEARREG(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return ofLines<"LINEARREG", formulas::LineEnd>(data, Source, Periods, Alias, &StandardTable::lineEnd);
}

Standard::Result Standard::LINEARREG_SLOPE(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return ofLines<"LINEARREG_SLOPE", formulas::LineSlope>(data, Source, Periods, Alias, &StandardTable::lineSlope);
}

Standard::Result Standard::LINEARREG_INTERCEPT(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return ofLines<"LINEARREG_INTERCEPT", formulas::LineStart>(data, Source, Periods, Alias, &StandardTable::lineStart);
}

Standard::Result Standard::LINEARREG_ANGLE(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"LINEARREG_ANGLE">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    const Series slope = line<formulas::LineSlope>(call, call.take(Source), Periods.value(), &StandardTable::lineSlope);
    return call.of<formulas::Degrees>(slope.first, {slope});
  });
}

Standard::Result Standard::TSF(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return ofLines<"TSF", formulas::LineAhead>(data, Source, Periods, Alias, &StandardTable::lineAhead);
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

/// The record of the extreme of the last values, counted from 1. Of equal ones a newer takes its place, but once it has
/// left the window the oldest of those that remain does: which of them is told is as TA-Lib finds it
/// on its way.
template <class Beats>
Series placeOf(Call& call, const Series& x, int periods, decltype(&StandardTable::highestRecord) kernel, Beats beats) {
  const Place first = x.first + periods - 1;
  return call.recursion(
      first,
      [&](kernels::Records records, double* rows) -> std::size_t {
        const auto oldest = workingRows(call.count());
        const std::size_t done = call.proves(
            kernels::run(kernel, rowsOf(x.column), periods, records, rows, oldest.get()), records, x, periods - 1);
        for (int r = records.first; r < records.first + static_cast<int>(done); ++r) {
          // Of one extreme alone there is nothing to choose.
          double& place = rows[r - 1];
          if (place == oldest[r - 1]) continue;
          const double before = r > first ? rows[r - 2] : 0.0;
          if (before <= r - periods) {
            place = oldest[r - 1];
          } else if (place != r) {
            place = before;
          }
        }
        return done;
      },
      [&]<class T>(At<T> at, const Series& own, int r) {
        int best = r > first ? static_cast<int>(double(at(own, r - 1))) : 0;
        if (best <= r - periods) {
          best = r - periods + 1;
          for (int j = best + 1; j <= r; ++j)
            if (beats(at(x, j), at(x, best))) best = j;
        } else if (!beats(at(x, best), at(x, r))) {
          best = r;
        }
        return T(best);
      });
}

}  // namespace

Standard::Result Standard::MININDEX(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"MININDEX">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return placeOf(call, call.take(Source), Periods.value(), &StandardTable::lowestRecord,
                   [](auto a, auto b) { return a < b; });
  });
}

Standard::Result Standard::MAXINDEX(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"MAXINDEX">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return placeOf(call, call.take(Source), Periods.value(), &StandardTable::highestRecord,
                   [](auto a, auto b) { return a > b; });
  });
}

Standard::Result Standard::SUM(DataRef data, FieldRef Source, Integer Periods, Name Alias) {
  return Method<"SUM">(data, Alias).periods(Periods, 2).compute([&](Call& call) {
    return sum(call, call.take(Source), Periods.value());
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
