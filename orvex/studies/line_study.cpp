#include "orvex/studies/line_study.h"

#include <array>
#include <functional>
#include <tuple>

#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/general/general.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

struct Extreme {
  Integer record;
  Real value;
};

/// The value of the span that is `beyond` all others; of equal ones the first.
template <class Beyond>
Extreme extremeOf(const std::shared_ptr<Field>& column, Integer first, Integer last, Beyond beyond) {
  Extreme extreme{first, at(column, first)};
  for (int record = first.value() + 1; record <= last; ++record) {
    const Real value = at(column, record);
    if (beyond(value, extreme.value)) extreme = {record, value};
  }
  return extreme;
}

Extreme highestOf(const std::shared_ptr<Field>& column, Integer first, Integer last) {
  return extremeOf(column, first, last, std::greater<double>());
}

Extreme lowestOf(const std::shared_ptr<Field>& column, Integer first, Integer last) {
  return extremeOf(column, first, last, std::less<double>());
}

/// A line over a series: a column, and where the line is in a record.
template <class At>
struct Line {
  std::shared_ptr<Field> column;
  At at;
};
template <class At>
Line(std::shared_ptr<Field>, At) -> Line<At>;

/// Writes lines over the records, each with doubles as they are: as many records as were handed over, or none where
/// numbers come out that are none, which the steps then meet.
template <class... At>
std::size_t drawn(kernels::Records records, const Line<At>&... lines) {
  if (kernels::active() == nullptr) return 0;
  const auto draw = [&](const auto& line) {
    double* const rows = line.column->writableValues().data();
    double sum = 0.0;
    for (int record = records.first; record <= records.last; ++record) {
      const double value = line.at(record);
      rows[record - 1] = value;
      sum += value * 0.0;
    }
    return sum == 0.0;
  };
  return (draw(lines) && ...) ? static_cast<std::size_t>(records.last - records.first) + 1 : 0;
}

/// What lies at one height all along.
auto level(Real height) {
  return [height = height.value()](int) { return height; };
}

void checkSpan(Integer first, Integer last, Integer count, const Fault& startFault, const Fault& endFault) {
  if (first < 1 || first > count) raise(startFault);
  if (last < first || last > count) raise(endFault);
}

}  // namespace

std::shared_ptr<RecordSet> LineStudy::Fibonacci(std::shared_ptr<Field> Source, Integer StartPeriod, Integer EndPeriod,
                                                InOut<std::string> Alias) {
  return trap(FibonacciFault, [&] {
    applyDefault(Alias, FibonacciName);
    const auto result = makeColumn(object(Source).getRecordCount(), Alias.get());
    const YieldHook hook = yieldHook();
    Real a = 0, b = 1;
    // Index and number both move the mark on, so the gaps are wider than the numbers. Kept as published, like the stop
    // that leaves a mark on the last record of the span out.
    for (Integer i = StartPeriod; i <= EndPeriod; ++i) {
      const Real before = a;
      a = b;
      b += before;
      if (i + b > EndPeriod.value()) break;
      result->setValue(Integer::rounded(i + b - 1), b);
      if (hook) hook();
    }
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> LineStudy::TironeLevel(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                  Integer StartPeriod, Integer EndPeriod) {
  return trap(TironeLevelFault, [&] {
    const Integer count = object(data).getRecordCount();
    const auto tops = makeColumn(count, TironeTopName, StartPeriod.value(), EndPeriod.value());
    const auto medians = makeColumn(count, TironeMedianName, StartPeriod.value(), EndPeriod.value());
    const auto bottoms = makeColumn(count, TironeBottomName, StartPeriod.value(), EndPeriod.value());
    if (EndPeriod > count) raise(TironeLevelEndFault);
    if (StartPeriod < 1) raise(TironeLevelStartFault);

    General general;
    const auto high = object(OHLCV).getField(Database::HighName);
    const Real hh = general.MaxValue(high, StartPeriod, EndPeriod)->getValue();
    const auto low = OHLCV->getField(Database::LowName);
    const Real ll = general.MinValue(low, StartPeriod, EndPeriod)->getValue();
    const Real top = hh - (hh - ll) / 3;
    const Real median = ll + (hh - ll) / 2;
    const Real bottom = ll + (hh - ll) / 3;

    // The cursor runs one record behind the rows. A span that begins at record 1 therefore fails here; that is kept.
    data->setPosition(StartPeriod - 1);
    walk(
        *data, StartPeriod, EndPeriod,
        [&](kernels::Records records) {
          return drawn(records, Line{tops, level(top)}, Line{medians, level(median)}, Line{bottoms, level(bottom)});
        },
        [&](Integer record) {
          tops->setValue(record, top);
          medians->setValue(record, median);
          bottoms->setValue(record, bottom);
        },
        {.behind = 1});
    data->MoveFirst();
    return makeRecordSet({tops, medians, bottoms});
  });
}

std::shared_ptr<RecordSet> LineStudy::QuadrantLines(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                    Integer StartPeriod, Integer EndPeriod) {
  const Integer count = object(data).getRecordCount();
  checkSpan(StartPeriod, EndPeriod, count, QuadrantLinesStartFault, QuadrantLinesEndFault);
  return trap(QuadrantLinesFault, [&] {
    const Real high = highestOf(Source, StartPeriod, EndPeriod).value;
    const Real low = lowestOf(Source, StartPeriod, EndPeriod).value;
    const auto line = [&](std::string_view name, Real height) {
      return Line{makeColumn(count, name, StartPeriod.value(), EndPeriod.value()), level(height)};
    };
    const std::array lines = {line(QuadrantHighName, high), line(Quadrant75Name, low + (high - low) * 0.75),
                              line(Quadrant50Name, low + (high - low) * 0.5),
                              line(Quadrant25Name, low + (high - low) * 0.25), line(QuadrantLowName, low)};
    eachRecord(
        StartPeriod, EndPeriod,
        [&](kernels::Records records) {
          return std::apply([&](const auto&... each) { return drawn(records, each...); }, lines);
        },
        [&](Integer record) {
          for (const auto& each : lines) each.column->setValue(record, each.at(record.value()));
        });
    auto result = makeRecordSet({});
    for (const auto& each : lines) result->addField(each.column);
    data->MoveFirst();
    return result;
  });
}

std::shared_ptr<RecordSet> LineStudy::SpeedResistanceLines(std::shared_ptr<Database> data,
                                                           std::shared_ptr<RecordSet> OHLCV, Integer StartPeriod,
                                                           Integer EndPeriod) {
  const Integer count = object(data).getRecordCount();
  checkSpan(StartPeriod, EndPeriod, count, SpeedResistanceLinesStartFault, SpeedResistanceLinesEndFault);
  return trap(SpeedResistanceLinesFault, [&] {
    const auto line = makeColumn(count, SpeedLineName);
    const auto twoThirds = makeColumn(count, SpeedTwoThirdsName);
    const auto oneThird = makeColumn(count, SpeedOneThirdName);
    const Extreme highest = highestOf(object(OHLCV).getField(Database::HighName), StartPeriod, EndPeriod);
    const Extreme lowest = lowestOf(OHLCV->getField(Database::LowName), StartPeriod, EndPeriod);
    const auto [a, origin] = highest.record < lowest.record ? highest : lowest;
    const auto [b, target] = highest.record < lowest.record ? lowest : highest;
    const Real move = target - origin;
    const auto lineOf = [start = origin.value(), from = a.value(), length = (b - a).value()](double slope) {
      return [=](int record) { return start + slope * (record - from) / length; };
    };
    const double whole = move.value();
    eachRecord(
        a, EndPeriod,
        [&, a = a, b = b](kernels::Records records) {
          if (a == b) return std::size_t{0};
          return drawn(records, Line{line, lineOf(whole)}, Line{twoThirds, lineOf(whole * 2 / 3)},
                       Line{oneThird, lineOf(whole / 3)});
        },
        [&, a = a, b = b, origin = origin](Integer record) {
          // With both extremes on one record there is no line, and the division by zero says so.
          line->setValue(record, origin + move * (record - a) / (b - a));
          twoThirds->setValue(record, origin + move * 2 / 3 * (record - a) / (b - a));
          oneThird->setValue(record, origin + move / 3 * (record - a) / (b - a));
        });
    data->MoveFirst();
    return makeRecordSet({line, twoThirds, oneThird});
  });
}

std::shared_ptr<RecordSet> LineStudy::TrendLinePenetration(std::shared_ptr<Database> data,
                                                           std::shared_ptr<Field> TrendLine,
                                                           std::shared_ptr<Field> Source, InOut<std::string> Alias) {
  return trap(TrendLinePenetrationFault, [&] {
    applyDefault(Alias, TrendLinePenetrationName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 2);
    eachRecord(2, count, noKernel, [&](Integer record) {
      const Real lineBefore = at(TrendLine, record - 1);
      const Real line = at(TrendLine, record);
      if (lineBefore == 0 || line == 0) {
        result->setValue(record, 0);
        return;
      }
      const Real before = at(Source, record - 1);
      const Real now = at(Source, record);
      result->setValue(record, crossing(before, lineBefore, now, line));
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
