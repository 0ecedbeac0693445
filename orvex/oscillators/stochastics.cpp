#include <algorithm>

#include "orvex/averages/average_of_part.h"
#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/indices/index.h"
#include "orvex/kernels/kernels.h"
#include "orvex/oscillators/oscillator.h"
#include "orvex/oscillators/spans.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

/// Steps `record`: puts `place(record, extremes)`, with the extremes of two columns over the span that ends there, into
/// its row. The cursor ends on it.
template <class High, class Low, class Place>
void placeInSpan(Database& data, Integer length, Integer record, High&& high, Low&& low, Field& out, Place&& place) {
  Extremes extremes;
  visitSpan(
      data, length, record, [&](Integer j) { extremes.begin(high(j), low(j)); },
      [&](Integer j) { extremes.take(high(j), low(j)); });
  data.MovePrevious();
  // By the cursor, since a length below 0 takes it past the record, and it goes on until it has left the series.
  const Integer under = data.getPosition();
  out.setValue(under, place(under, extremes));
}

/// What the bars of a cycle add up to.
struct Pressure {
  Real buying, range;
};

}  // namespace

std::shared_ptr<RecordSet> Oscillator::StochasticOscillator(std::shared_ptr<Database> data,
                                                            std::shared_ptr<RecordSet> OHLCV, Integer KPeriods,
                                                            Integer KSlowingPeriods, Integer DPeriods,
                                                            Integer MA_Type) {
  return trap(StochasticOscillatorFault, [&] {
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName), close(OHLCV, Database::CloseName);
    const Integer count = object(data).getRecordCount();
    auto k = makeColumn(count, PercentKName, KPeriods.value() + 1LL);
    const auto kernel = [&](kernels::Records records) {
      const SpanExtremes spans = spanExtremes(high.rows(), low.rows(), KPeriods, records);
      return spans.place(close.rows(), spans.lowest, 100, *k);
    };
    walkSpans(*data, KPeriods + 2, count + 1, CursorAfter::Record, kernel, [&](Integer record) {
      placeInSpan(*data, KPeriods, record, high, low, *k, [&](Integer last, const Extremes& span) {
        return (close(last) - span.lowest()) / (span.highest() - span.lowest()) * 100;
      });
    });
    if (KSlowingPeriods >= 2) k = averageColumn(MA_Type, data, k, KSlowingPeriods, PercentKName);
    const auto d = averageColumn(MA_Type, data, k, DPeriods, PercentDName);
    data->MoveFirst();
    return makeRecordSet({k, d});
  });
}

std::shared_ptr<RecordSet> Oscillator::WilliamsPctR(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                    Integer Periods, InOut<std::string> Alias) {
  return trap(WilliamsPctRFault, [&] {
    applyDefault(Alias, WilliamsPctRName);
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName), close(OHLCV, Database::CloseName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL, count.value() - 1);
    // Its counter ends one record before those of the others do: the last record stays 0, and that is kept.
    const auto kernel = [&](kernels::Records records) {
      const SpanExtremes spans = spanExtremes(high.rows(), low.rows(), Periods, records);
      return spans.place(spans.highest, close.rows(), -100, *result);
    };
    walkSpans(*data, Periods + 2, count, CursorAfter::Record, kernel, [&](Integer record) {
      placeInSpan(*data, Periods, record, high, low, *result, [&](Integer last, const Extremes& span) {
        return (span.highest() - close(last)) / (span.highest() - span.lowest()) * -100;
      });
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::StochRSI(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                Integer Periods, InOut<std::string> Alias) {
  return trap(StochRSIFault, [&] {
    applyDefault(Alias, StochRSIName);
    const auto strength = Index().RelativeStrengthIndex(data, Source, Periods, "RSI")->getField("RSI");
    const auto value = [&](Integer record) { return at(strength, record); };
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL);
    const auto kernel = [&](kernels::Records records) {
      const SpanExtremes spans = spanExtremes(rowsOf(strength), rowsOf(strength), Periods, records);
      return spans.place(rowsOf(strength), spans.lowest, 1, *result);
    };
    walkSpans(*data, Periods + 2, count + 1, CursorAfter::Record, kernel, [&](Integer record) {
      placeInSpan(*data, Periods, record, value, value, *result, [&](Integer last, const Extremes& span) {
        return (value(last) - span.lowest()) / (span.highest() - span.lowest());
      });
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::UltimateOscillator(std::shared_ptr<Database> data,
                                                          std::shared_ptr<RecordSet> OHLCV, Integer Cycle1,
                                                          Integer Cycle2, Integer Cycle3, InOut<std::string> Alias) {
  return trap(UltimateOscillatorFault, [&] {
    applyDefault(Alias, UltimateOscillatorName);
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName), close(OHLCV, Database::CloseName);
    const Integer count = object(data).getRecordCount();
    const Integer longest = std::max({Cycle1, Cycle2, Cycle3});
    const auto result = makeColumn(count, Alias.get(), longest.value() + 1LL);
    const ForFewToo kernel{[&](kernels::Records records) -> std::size_t {
      if (longest < 1 || records.first <= longest.value()) return 0;
      // Counted from the record ahead of the first bar, whose close that one is compared with.
      const int before = records.first - longest.value() - 1, last = records.last - before;
      const auto rows = static_cast<std::size_t>(last);
      const auto pressures = workingRows(last, 2);
      double* const buying = pressures.get();
      double* const range = buying + rows;
      const kernels::Bars bars{behind(high.rows(), before), behind(low.rows(), before), behind(close.rows(), before)};
      const std::size_t done =
          kernels::run(&kernels::Table::buyingPressure, bars, kernels::Records{2, last}, buying, range);
      return kernels::run(&kernels::Table::ultimate, kernels::Source{buying, rows}, kernels::Source{range, rows},
                          kernels::Cycles{{Cycle1.value(), Cycle2.value(), Cycle3.value()}},
                          kernels::Records{longest.value() + 1, 1 + static_cast<int>(done)},
                          result->writableValues().data() + before);
    }};
    walkSpans(*data, longest + 2, count + 1, CursorAfter::NextRecord, kernel, [&](Integer record) {
      const auto pressure = [&](Integer cycle) {
        Pressure sum;
        visitSpan(*data, cycle, record, [&](Integer j) {
          const Real before = close(j - 1), bottom = low(j), top = high(j);
          sum.buying += close(j) - std::min(bottom, before);
          sum.range += std::max({top - bottom, top - before, before - bottom});
        });
        return sum;
      };
      const Pressure first = pressure(Cycle1), second = pressure(Cycle2), third = pressure(Cycle3);
      // The weights go by the order of the arguments, whichever cycle is the shortest.
      result->setValue(
          record,
          (first.buying / first.range * 4 + second.buying / second.range * 2 + third.buying / third.range) / 7 * 100);
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
