#include <algorithm>

#include "orvex/averages/average_of_part.h"
#include "orvex/averages/linear_regression.h"
#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/kernels/kernels.h"
#include "orvex/oscillators/oscillator.h"
#include "orvex/oscillators/spans.h"

namespace orvex::inline ORVEX_COUNTS {

using kernels::Table;

std::shared_ptr<RecordSet> Oscillator::CMO(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                           Integer Periods, InOut<std::string> Alias) {
  return trap(CMOFault, [&] {
    applyDefault(Alias, CMOName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), (Periods > 0 ? Periods : count).value() + 1LL);
    const auto kernel = [&](kernels::Records records) {
      return kernels::run(&Table::balanceOfMoves, rowsOf(Source), Periods.value(), records,
                          result->writableValues().data());
    };
    walkSpans(*data, Periods + 2, count + 1, CursorAfter::NextRecord, kernel, [&](Integer record) {
      Real up = 0, down = 0;
      visitSpan(*data, Periods, record, [&](Integer j) {
        const Real value = at(Source, j), before = at(Source, j - 1);
        if (value > before) up += value - before;
        if (value < before) down += before - value;
      });
      // A span of no records writes nothing.
      if (Periods > 0) result->setValue(record, up + down == 0 ? Real(0) : (up - down) * 100 / (up + down));
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::Momentum(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                Integer Periods, InOut<std::string> Alias) {
  return trap(MomentumFault, [&] {
    applyDefault(Alias, MomentumName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 2LL);
    // Record Periods + 1 has its lag already and is passed over all the same: where the column begins is kept.
    const Integer first = Periods + 2;
    data->setPosition(first);
    const auto kernel = [&](kernels::Records records) {
      return kernels::run(&Table::momentum, rowsOf(Source), Periods.value(), records, result->writableValues().data());
    };
    walk(*data, first, count, kernel, [&](Integer record) {
      data->setPosition(record - Periods);
      const Real old = at(Source, data->getPosition());
      data->setPosition(record);
      result->setValue(record, (at(Source, record) - old) / old * 100 + 100);
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::VerticalHorizontalFilter(std::shared_ptr<Database> data,
                                                                std::shared_ptr<Field> Source, Integer Periods,
                                                                InOut<std::string> Alias) {
  return trap(VerticalHorizontalFilterFault, [&] {
    applyDefault(Alias, VerticalHorizontalFilterName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL);
    const auto kernel = [&](kernels::Records records) {
      const SpanExtremes spans = spanExtremes(rowsOf(Source), rowsOf(Source), Periods, records);
      return kernels::run(&Table::rangeToPath, rowsOf(Source), spans.highest, spans.lowest, Periods.value(),
                          spans.records, result->writableValues().data());
    };
    walkSpans(*data, Periods + 2, count + 1, CursorAfter::NextRecord, kernel, [&](Integer record) {
      Extremes extremes;
      Real path = 0;
      visitSpan(
          *data, Periods, record, [&](Integer j) { extremes.begin(at(Source, j), at(Source, j)); },
          [&](Integer j) {
            const Real value = at(Source, j);
            extremes.take(value, value);
            path += abs(value - at(Source, j - 1));
          });
      result->setValue(record, abs(extremes.highest() - extremes.lowest()) / path);
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::LinearMomentumOscillator(std::shared_ptr<Database> data,
                                                                std::shared_ptr<Field> Source, Integer Periods,
                                                                InOut<std::string> Alias) {
  return trap(LinearMomentumOscillatorFault, [&] {
    applyDefault(Alias, LinearMomentumOscillatorName);
    const auto momentum = CMO(data, Source, Periods)->getField(CMOName);
    const auto quality =
        LinearRegression().Regression(data, momentum, Periods)->getField(LinearRegression::RSquaredName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 1);
    data->MoveFirst();
    // From record 1 on: where there is no line yet the column holds -100, and that is kept.
    walk(*data, 1, count, noKernel,
         [&](Integer record) { result->setValue(record, (at(quality, record) - 0.5) * 2 * 100); });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::WilliamsAccumulationDistribution(std::shared_ptr<Database> data,
                                                                        std::shared_ptr<RecordSet> OHLCV,
                                                                        InOut<std::string> Alias) {
  return trap(WilliamsAccumulationDistributionFault, [&] {
    applyDefault(Alias, WilliamsAccumulationDistributionName);
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName), close(OHLCV, Database::CloseName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 2);
    const auto kernel = [&](kernels::Records records) {
      return kernels::run(&Table::accumulation, kernels::Bars{high.rows(), low.rows(), close.rows()}, records,
                          result->writableValues().data());
    };
    eachRecord(2, count, kernel, [&](Integer record) {
      const Real last = close(record), before = close(record - 1);
      const Real trueHigh = std::max(high(record), before), trueLow = std::min(low(record), before);
      Real flow = 0;
      if (last > before) flow = last - trueLow;
      if (last < before) flow = last - trueHigh;
      result->setValue(record, at(result, record - 1) + flow);
    });
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::ChaikinVolatility(std::shared_ptr<Database> data,
                                                         std::shared_ptr<RecordSet> OHLCV, Integer Periods, Integer ROC,
                                                         Integer MA_Type, InOut<std::string> Alias) {
  return trap(ChaikinVolatilityFault, [&] {
    applyDefault(Alias, ChaikinVolatilityName);
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), ROC.value() + 1LL);
    const auto range = makeColumn(count, "HL", 1);
    const auto kernel = [&](kernels::Records records) {
      return kernels::run(&Table::difference, high.rows(), 0, low.rows(), records, range->writableValues().data());
    };
    eachRecord(
        1, count, kernel, [&](Integer record) { range->setValue(record, high(record) - low(record)); }, noYield);
    const auto average = averageColumn(MA_Type, data, range, Periods, "HLMA");
    const auto change = [&](kernels::Records records) {
      return kernels::run(&Table::fallInPercent, rowsOf(average), ROC.value(), records,
                          result->writableValues().data());
    };
    eachRecord(ROC + 1, count, change, [&](Integer record) {
      const Real old = at(average, record - ROC), now = at(average, record);
      result->setValue(record, old == 0 || now == 0 ? Real(0) : (old - now) / old * -100);
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::EaseOfMovement(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                      Integer Periods, Integer MA_Type, InOut<std::string> Alias) {
  return trap(EaseOfMovementFault, [&] {
    applyDefault(Alias, EaseOfMovementName);
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName), volume(OHLCV, Database::VolumeName);
    const Integer count = object(data).getRecordCount();
    const auto ease = makeColumn(count, "EMV", 2);
    const auto kernel = [&](kernels::Records records) {
      return kernels::run(&Table::easeOfMovement, high.rows(), low.rows(), volume.rows(), records,
                          ease->writableValues().data());
    };
    eachRecord(2, count, kernel, [&](Integer record) {
      const Real move = (high(record) + low(record)) / 2 - (high(record - 1) + low(record - 1)) / 2;
      const Real range = high(record) - low(record);
      ease->setValue(record, range == 0 ? Real(0) : move / (volume(record) / range) * 10000);
    });
    const auto result = averageColumn(MA_Type, data, ease, Periods, "MA");
    result->setName(Alias.get());
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
