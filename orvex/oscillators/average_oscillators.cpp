#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "orvex/averages/average_of_part.h"
#include "orvex/averages/average_type.h"
#include "orvex/averages/exponential_factor.h"
#include "orvex/data/columns.h"
#include "orvex/data/continuation.h"
#include "orvex/data/head_of_series.h"
#include "orvex/data/host_events.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/kernels/chains.h"
#include "orvex/kernels/kernels.h"
#include "orvex/oscillators/oscillator.h"
#include "orvex/oscillators/spans.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

using kernels::Table;

/// result(r) = minuend(r - lag) - subtrahend(r) from `first` on.
void fillDifferences(FirstRecord first, Integer count, const std::shared_ptr<Field>& minuend, int lag,
                     const std::shared_ptr<Field>& subtrahend, Field& result, YieldHook hook = yieldHook()) {
  eachRecord(
      first, count,
      [&](kernels::Records records) {
        return kernels::run(&Table::difference, rowsOf(minuend), lag, rowsOf(subtrahend), records,
                            result.writableValues().data());
      },
      [&](Integer record) { result.setValue(record, at(minuend, record - lag) - at(subtrahend, record)); }, hook);
}

/// result(r) = (a(r) - b(r - lag)) / b(r - lag) x 100 from `first` on, 0 where b is 0.
void fillPercentages(FirstRecord first, Integer count, const std::shared_ptr<Field>& a, const std::shared_ptr<Field>& b,
                     int lag, Field& result) {
  eachRecord(
      first, count,
      [&](kernels::Records records) {
        return kernels::run(&Table::percentAbove, rowsOf(a), rowsOf(b), lag, records, result.writableValues().data());
      },
      [&](Integer record) {
        const Real whole = at(b, record - lag), part = at(a, record) - whole;
        result.setValue(record, whole == 0 ? Real(0) : part / whole * 100);
      });
}

/// Two averages of one column, both computed from `first` on.
struct ShortAndLong {
  std::shared_ptr<Field> shorter, longer;
  std::int64_t first;
};

ShortAndLong shortAndLong(Integer MA_Type, const std::shared_ptr<Database>& data, const std::shared_ptr<Field>& source,
                          Integer shortPeriods, Integer longPeriods) {
  const auto average = [&](Integer periods) { return averageColumn(MA_Type, data, source, periods, "Average"); };
  const auto first = [&](Integer periods) { return firstAverageRow(MA_Type.value(), periods.value()); };
  return {average(shortPeriods), average(longPeriods), std::max(first(shortPeriods), first(longPeriods))};
}

/// The highest less the lowest of the `length` values that end at the record.
Real rangeOfSpan(const SpanExtremes& known, const std::shared_ptr<Field>& source, Integer length, Integer record) {
  if (record >= known.records.first && record <= known.records.last) {
    const auto index = static_cast<std::size_t>(record.value() - 1);
    return Real(known.highest.rows[index]) - known.lowest.rows[index];
  }
  Extremes span;
  span.begin(at(source, record), at(source, record));
  for (int j = (record - length + 1).value(); j < record; ++j) span.take(at(source, j), at(source, j));
  return span.highest() - span.lowest();
}

/// MACD's columns, those of the averages among them, and the first rows of the line and of its signal.
struct Convergence {
  ShortAndLong averages;
  std::shared_ptr<Field> line, signal, histogram;
};

struct ConvergenceArguments {
  Integer shortCycle, longCycle, signalPeriods;
  std::string name;
};

Convergence convergence(const std::shared_ptr<Database>& data, const std::shared_ptr<Field>& source,
                        const ConvergenceArguments& wanted) {
  const Integer count = data->getRecordCount();
  const ShortAndLong averages =
      shortAndLong(average_type::Exponential, data, source, wanted.shortCycle, wanted.longCycle);
  const std::int64_t first = averages.first, firstBoth = first + wanted.signalPeriods.value();
  const auto line = makeColumn(count, wanted.name, first);
  fillDifferences(first, count, averages.shorter, 0, averages.longer, *line);
  const auto signal = averageOfPart(average_type::Exponential, line, first, wanted.signalPeriods,
                                    wanted.name + std::string(Oscillator::MACDSignalSuffix));
  const auto histogram = makeColumn(count, wanted.name + std::string(Oscillator::MACDHistogramSuffix), firstBoth);
  fillDifferences(firstBoth, count, line, 0, signal, *histogram, noYield);
  return {averages, line, signal, histogram};
}

/// The same columns without those of the averages, in one pass; nothing where that cannot be.
std::optional<Convergence> convergenceInOnePass(Integer count, const std::shared_ptr<Field>& source,
                                                const ConvergenceArguments& wanted) {
  const std::int64_t last =
      std::max(wanted.shortCycle.value(), wanted.longCycle.value()) + std::int64_t{wanted.signalPeriods.value()} + 1;
  return inOnePass<Convergence>(count, last, {source.get()}, [&](const std::shared_ptr<Database>& data) {
    const Convergence head = convergence(data, headOf(*source, last), wanted);
    Convergence whole{
        {}, lengthened(*head.line, count), lengthened(*head.signal, count), lengthened(*head.histogram, count)};
    const kernels::Convergence stages{
        {exponentialFactor(wanted.shortCycle).value(), exponentialFactor(wanted.longCycle).value(),
         exponentialFactor(wanted.signalPeriods).value()},
        {lastOf(*head.averages.shorter), lastOf(*head.averages.longer), lastOf(*head.signal)}};
    const auto rows = [](const std::shared_ptr<Field>& column) { return column->writableValues().data(); };
    const std::size_t done =
        kernels::run(&kernels::Chains::convergence, rowsOf(source), stages, restAfter(last, count),
                     kernels::ConvergenceRows{rows(whole.line), rows(whole.signal), rows(whole.histogram)});
    return std::pair(whole, done);
  });
}

/// The averages of each other that TRIX goes by, and its column.
struct Triple {
  std::array<std::shared_ptr<Field>, 3> averages;
  std::shared_ptr<Field> rate;
};

Triple triple(const std::shared_ptr<Database>& data, const std::shared_ptr<Field>& source, Integer periods,
              std::string_view name) {
  const Integer count = data->getRecordCount();
  Triple columns;
  columns.averages[0] = averageColumn(average_type::Exponential, data, source, periods, "Average");
  const std::int64_t wait = periods.value();
  std::int64_t first = 1 + wait;
  for (const int stage : {1, 2}) {
    columns.averages[stage] =
        averageOfPart(average_type::Exponential, columns.averages[stage - 1], first, periods, "Average");
    first += wait;
  }
  columns.rate = makeColumn(count, name, first + 1);
  fillPercentages(first + 1, count, columns.averages[2], columns.averages[2], 1, *columns.rate);
  return columns;
}

std::optional<Triple> tripleInOnePass(Integer count, const std::shared_ptr<Field>& source, Integer periods,
                                      std::string_view name) {
  const std::int64_t last = 3 * std::int64_t{periods.value()} + 2;
  return inOnePass<Triple>(count, last, {source.get()}, [&](const std::shared_ptr<Database>& data) {
    const Triple head = triple(data, headOf(*source, last), periods, name);
    Triple whole{{}, lengthened(*head.rate, count)};
    const kernels::Cascade stages{exponentialFactor(periods).value(),
                                  {lastOf(*head.averages[0]), lastOf(*head.averages[1]), lastOf(*head.averages[2])},
                                  {}};
    const std::size_t done = kernels::run(&kernels::Chains::tripleRate, rowsOf(source), stages, restAfter(last, count),
                                          whole.rate->writableValues().data());
    return std::pair(whole, done);
  });
}

/// What the price and the volume oscillator differ in.
struct DifferenceTexts {
  std::string_view name;
  Fault periods, average, unexpected;
};

std::shared_ptr<RecordSet> differenceInPercent(const std::shared_ptr<Database>& data,
                                               const std::shared_ptr<Field>& source, Integer shortCycle,
                                               Integer longCycle, Integer MA_Type, InOut<std::string>& alias,
                                               const DifferenceTexts& texts) {
  applyDefault(alias, texts.name);
  const Integer count = object(data).getRecordCount();
  checkPeriods(shortCycle, 1, count, texts.periods);
  checkPeriods(longCycle, 1, count, texts.periods);
  checkAverageType(MA_Type, texts.average);
  return trap(texts.unexpected, [&] {
    const ShortAndLong averages = shortAndLong(MA_Type, data, source, shortCycle, longCycle);
    const auto result = makeColumn(count, alias.get(), averages.first);
    fillPercentages(averages.first, count, averages.shorter, averages.longer, 0, *result);
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace

std::shared_ptr<RecordSet> Oscillator::PriceOscillator(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                       Integer ShortCycle, Integer LongCycle, Integer MA_Type,
                                                       InOut<std::string> Alias) {
  return differenceInPercent(
      data, Source, ShortCycle, LongCycle, MA_Type, Alias,
      {PriceOscillatorName, PriceOscillatorPeriodsFault, PriceOscillatorAverageFault, PriceOscillatorFault});
}

std::shared_ptr<RecordSet> Oscillator::VolumeOscillator(std::shared_ptr<Database> data, std::shared_ptr<Field> Volume,
                                                        Integer ShortCycle, Integer LongCycle, Integer MA_Type,
                                                        InOut<std::string> Alias) {
  return differenceInPercent(
      data, Volume, ShortCycle, LongCycle, MA_Type, Alias,
      {VolumeOscillatorName, VolumeOscillatorPeriodsFault, VolumeOscillatorAverageFault, VolumeOscillatorFault});
}

std::shared_ptr<RecordSet> Oscillator::MACD(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                            Integer ShortCycle, Integer LongCycle, Integer SignalPeriods,
                                            InOut<std::string> Alias) {
  applyDefault(Alias, MACDName);
  const Integer count = object(data).getRecordCount();
  for (const Integer periods : {ShortCycle, LongCycle, SignalPeriods}) {
    checkPeriods(periods, 1, count, MACDPeriodsFault);
  }
  return trap(MACDFault, [&] {
    const ConvergenceArguments wanted{ShortCycle, LongCycle, SignalPeriods, Alias.get()};
    auto columns = convergenceInOnePass(count, Source, wanted);
    if (!columns) columns = convergence(data, Source, wanted);
    data->MoveFirst();
    return makeRecordSet({columns->line, columns->signal, columns->histogram});
  });
}

std::shared_ptr<RecordSet> Oscillator::DetrendedPriceOscillator(std::shared_ptr<Database> data,
                                                                std::shared_ptr<Field> Source, Integer Periods,
                                                                Integer MA_Type, InOut<std::string> Alias) {
  applyDefault(Alias, DetrendedPriceOscillatorName);
  const Integer count = object(data).getRecordCount();
  checkPeriods(Periods, 1, count, DetrendedPriceOscillatorPeriodsFault);
  checkAverageType(MA_Type, DetrendedPriceOscillatorAverageFault);
  return trap(DetrendedPriceOscillatorFault, [&] {
    const auto average = averageColumn(MA_Type, data, Source, Periods, "Average");
    const std::int64_t first = firstAverageRow(MA_Type.value(), Periods.value());
    const auto result = makeColumn(count, Alias.get(), first);
    const int lag = Periods.value() / 2 + 1;
    fillDifferences(first, count, Source, lag, average, *result);
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::TRIX(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                            Integer Periods, InOut<std::string> Alias) {
  applyDefault(Alias, TRIXName);
  const Integer count = object(data).getRecordCount();
  checkPeriods(Periods, 1, count, TRIXPeriodsFault);
  return trap(TRIXFault, [&] {
    auto columns = tripleInOnePass(count, Source, Periods, Alias.get());
    if (!columns) columns = triple(data, Source, Periods, Alias.get());
    data->MoveFirst();
    return makeRecordSet({columns->rate});
  });
}

std::shared_ptr<RecordSet> Oscillator::GoldenDeathCross(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                        Integer ShortPeriods, Integer LongPeriods, Integer MA_Type,
                                                        InOut<std::string> Alias) {
  applyDefault(Alias, GoldenDeathCrossName);
  const Integer count = object(data).getRecordCount();
  checkPeriods(ShortPeriods, 1, count, GoldenDeathCrossPeriodsFault);
  checkPeriods(LongPeriods, 1, count, GoldenDeathCrossPeriodsFault);
  checkAverageType(MA_Type, GoldenDeathCrossAverageFault);
  return trap(GoldenDeathCrossFault, [&] {
    const auto averages = shortAndLong(MA_Type, data, Source, ShortPeriods, LongPeriods);
    const auto result = makeColumn(count, Alias.get(), averages.first + 1);
    const auto kernel = [&](kernels::Records records) {
      return kernels::run(&Table::crossings, rowsOf(averages.shorter), rowsOf(averages.longer), records,
                          result->writableValues().data());
    };
    eachRecord(averages.first + 1, count, kernel, [&](Integer record) {
      const Real shortBefore = at(averages.shorter, record - 1), longBefore = at(averages.longer, record - 1);
      const Real shortNow = at(averages.shorter, record), longNow = at(averages.longer, record);
      result->setValue(record, crossing(shortBefore, longBefore, shortNow, longNow));
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::RainbowOscillator(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                         Integer Levels, Integer MA_Type, InOut<std::string> Alias) {
  applyDefault(Alias, RainbowOscillatorName);
  const Integer count = object(data).getRecordCount();
  checkPeriods(Levels, 2, count, RainbowOscillatorPeriodsFault);
  checkAverageType(MA_Type, RainbowOscillatorAverageFault);
  return trap(RainbowOscillatorFault, [&] {
    const std::int64_t wait = firstAverageRow(MA_Type.value(), 2) - 1;
    std::int64_t first = 1 + wait;
    auto level = averageColumn(MA_Type, data, Source, 2, "Level");
    // The levels are taken together as they come, since there may be thousands of them: a record's sum, largest and
    // smallest. What no number can hold shows where it is used.
    const auto sum = makeColumn(count, "Sum", 1), largest = makeColumn(count, "Largest", 1),
               smallest = makeColumn(count, "Smallest", 1);
    double* const sums = sum->writableValues().data();
    double* const highs = largest->writableValues().data();
    double* const lows = smallest->writableValues().data();
    for (int number = 1; number <= Levels; ++number) {
      if (number > 1) {
        level = averageOfPart(MA_Type, level, first, 2, "Level");
        first += wait;
      }
      const double* const value = level->values().data();
      const auto take = [=](kernels::Records records) {
        const std::ptrdiff_t from = records.first - 1, to = records.last;
        if (number == 1) {
          for (double* const rows : {sums, highs, lows}) std::copy(value + from, value + to, rows + from);
        } else {
          for (std::ptrdiff_t i = from; i < to; ++i) {
            sums[i] += value[i];
            highs[i] = value[i] > highs[i] ? value[i] : highs[i];
            lows[i] = value[i] < lows[i] ? value[i] : lows[i];
          }
        }
        return static_cast<std::size_t>(to - from);
      };
      eachRecord(
          1, count, take,
          [&](Integer record) {
            take({record.value(), record.value()});
          },
          noYield);
    }

    // Of a few records each looks at its own span.
    const std::int64_t firstNew = std::max(first, keptRows() + 1);
    const bool isShort = keptRows() > 0 && count.value() - firstNew < fewRecords;
    const kernels::Records records = isShort || firstNew > count.value()
                                         ? kernels::Records{1, 0}
                                         : kernels::Records{static_cast<int>(firstNew), count.value()};
    const SpanExtremes spans = spanExtremes(rowsOf(Source), rowsOf(Source), Levels, records);
    const auto result = makeColumn(count, Alias.get(), first);
    const auto upper = makeColumn(count, RainbowUpperName, first);
    const auto lower = makeColumn(count, RainbowLowerName, first);
    eachRecord(first, count, noKernel, [&](Integer record) {
      const auto index = static_cast<std::size_t>(record.value() - 1);
      const Real range = rangeOfSpan(spans, Source, Levels, record);
      Real place = 0, width = 0, below = 0;
      if (range != 0) {
        place = 100 * (at(Source, record) - Real(sums[index]) / Levels) / range;
        width = 100 * (Real(highs[index]) - lows[index]) / range;
        below = -width;
      }
      result->setValue(record, place);
      upper->setValue(record, width);
      lower->setValue(record, below);
    });
    data->MoveFirst();
    return makeRecordSet({result, upper, lower});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
