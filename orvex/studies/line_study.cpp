#include "orvex/studies/line_study.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>

#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
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

template <std::size_t Count>
using Columns = std::array<std::shared_ptr<Field>, Count>;

/// Writes where lines are in a record.
template <std::size_t Count, class Number>
void draw(const Columns<Count>& lines, Integer record, const std::array<Number, Count>& heights) {
  for (std::size_t i = 0; i < Count; ++i) lines[i]->setValue(record, heights[i]);
}

/// The same for as many records as are handed over, by `heights(record)`, which computes with doubles as they are; or
/// for none where numbers come out that are none, which the steps then meet.
template <std::size_t Count, class Heights>
std::size_t drawAll(const Columns<Count>& lines, kernels::Records records, Heights heights) {
  if (kernels::active() == nullptr) return 0;
  std::array<double*, Count> rows;
  for (std::size_t i = 0; i < Count; ++i) rows[i] = lines[i]->writableValues().data();
  std::array<double, Count> sums{};
  for (int record = records.first; record <= records.last; ++record) {
    const std::array<double, Count> all = heights(record);
    for (std::size_t i = 0; i < Count; ++i) {
      rows[i][record - 1] = all[i];
      sums[i] += all[i] * 0.0;
    }
  }
  const bool finite = std::all_of(sums.begin(), sums.end(), [](double sum) { return sum == 0.0; });
  return finite ? static_cast<std::size_t>(records.last - records.first) + 1 : 0;
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
    const Columns<3> lines = {tops, medians, bottoms};
    const std::array<double, 3> heights = {top, median, bottom};
    walk(
        *data, StartPeriod, EndPeriod,
        [&](kernels::Records records) { return drawAll(lines, records, [&](int) { return heights; }); },
        [&](Integer record) { draw(lines, record, heights); }, {.behind = 1});
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
    const auto line = [&](std::string_view name) {
      return makeColumn(count, name, StartPeriod.value(), EndPeriod.value());
    };
    const Columns<5> lines = {line(QuadrantHighName), line(Quadrant75Name), line(Quadrant50Name), line(Quadrant25Name),
                              line(QuadrantLowName)};
    const std::array<double, 5> heights = {high, low + (high - low) * 0.75, low + (high - low) * 0.5,
                                           low + (high - low) * 0.25, low};
    eachRecord(
        StartPeriod, EndPeriod,
        [&](kernels::Records records) { return drawAll(lines, records, [&](int) { return heights; }); },
        [&](Integer record) { draw(lines, record, heights); });
    auto result = makeRecordSet({});
    for (const auto& column : lines) result->addField(column);
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
    const Columns<3> lines = {makeColumn(count, SpeedLineName), makeColumn(count, SpeedTwoThirdsName),
                              makeColumn(count, SpeedOneThirdName)};
    const Extreme highest = highestOf(object(OHLCV).getField(Database::HighName), StartPeriod, EndPeriod);
    const Extreme lowest = lowestOf(OHLCV->getField(Database::LowName), StartPeriod, EndPeriod);
    const auto [a, origin] = highest.record < lowest.record ? highest : lowest;
    const auto [b, target] = highest.record < lowest.record ? lowest : highest;
    const Real move = target - origin;
    const auto heights = [start = origin, from = a, to = b]<class Number>(Number whole, Integer record) {
      const auto along = [&](Number slope) -> Number {
        return Number(start) + slope * (record - from).value() / (to - from).value();
      };
      return std::array{along(whole), along(whole * 2 / 3), along(whole / 3)};
    };
    const bool isLine = a != b;
    eachRecord(
        a, EndPeriod,
        [&](kernels::Records records) -> std::size_t {
          if (!isLine) return 0;
          return drawAll(lines, records, [&](int record) { return heights(move.value(), record); });
        },
        // With both extremes on one record there is no line, and the division by zero says so.
        [&](Integer record) { draw(lines, record, heights(move, record)); });
    data->MoveFirst();
    return makeRecordSet({lines[0], lines[1], lines[2]});
  });
}

std::shared_ptr<RecordSet> LineStudy::TrendLinePenetration(std::shared_ptr<Database> data,
                                                           std::shared_ptr<Field> TrendLine,
                                                           std::shared_ptr<Field> Source, InOut<std::string> Alias) {
  return trap(TrendLinePenetrationFault, [&] {
    applyDefault(Alias, TrendLinePenetrationName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 2);
    const auto kernel = [&](kernels::Records records) {
      return kernels::run(&kernels::Table::penetrations, rowsOf(Source), rowsOf(TrendLine), records,
                          result->writableValues().data());
    };
    eachRecord(2, count, kernel, [&](Integer record) {
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
