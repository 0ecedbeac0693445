#include "orvex/averages/moving_average.h"

#include "orvex/averages/exponential_factor.h"
#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

using kernels::Table;

/// The mean of the `window` values that end at the cursor, newest first. Leaves the cursor where it stood.
Real meanAtCursor(Database& data, const std::shared_ptr<Field>& source, Integer window) {
  Real sum = 0;
  for (int i = 1; i <= window; ++i) {
    sum += at(source, data.getPosition());
    data.MovePrevious();
  }
  data.setPosition(data.getPosition() + window);
  return sum / window;
}

/// Fills rows `first` to N with means over `window` records, walking the cursor from `first` on.
void fillMeans(Database& data, const std::shared_ptr<Field>& source, Integer window, Integer first, Field& result) {
  const Integer count = data.getRecordCount();
  data.setPosition(first);
  walk(
      data, first, count,
      [&](kernels::Records records) {
        return kernels::run(&Table::mean, rowsOf(source), window.value(), records, result.writableValues().data());
      },
      [&](Integer record) { result.setValue(record, meanAtCursor(data, source, window)); });
}

}  // namespace

std::shared_ptr<RecordSet> MovingAverage::SimpleMovingAverage(std::shared_ptr<Database> data,
                                                              std::shared_ptr<Field> Source, Integer Periods,
                                                              InOut<std::string> Alias) {
  return trap(SimpleMovingAverageFault, [&] {
    applyDefault(Alias, SimpleMovingAverageName);
    const auto result = makeColumn(object(data).getRecordCount(), Alias.get(), Periods.value() + 1LL);
    fillMeans(*data, Source, Periods, Periods + 1, *result);
    blank(*result, Periods);
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> MovingAverage::ExponentialMovingAverage(std::shared_ptr<Database> data,
                                                                   std::shared_ptr<Field> Source, Integer Periods,
                                                                   InOut<std::string> Alias) {
  return trap(ExponentialMovingAverageFault, [&] {
    applyDefault(Alias, ExponentialMovingAverageName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL);
    const Real k = exponentialFactor(Periods);
    if (nextWalkBeginsAnew()) {
      Real average = 0;
      for (int row = 1; row <= Periods; ++row) average += at(Source, row);
      average = average / Periods;
      // The seed's weights stand the other way round than the recursion's. They are kept as published: every row that
      // follows depends on them.
      result->setValue(Periods, (1 - k) * at(Source, Periods + 1) + k * average);
    }

    const Integer first = Periods + 1;
    data->setPosition(first);
    walk(
        *data, first, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::exponential, rowsOf(Source), k.value(), records, result->writableValues().data());
        },
        [&](Integer record) { result->setValue(record, (1 - k) * at(result, record - 1) + k * at(Source, record)); });
    blank(*result, Periods);
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> MovingAverage::WeightedMovingAverage(std::shared_ptr<Database> data,
                                                                std::shared_ptr<Field> Source, Integer Periods,
                                                                InOut<std::string> Alias) {
  return trap(WeightedMovingAverageFault, [&] {
    applyDefault(Alias, WeightedMovingAverageName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL);
    const Integer first = Periods + 1;
    data->setPosition(first);
    Real total = 0;
    for (int weight = 1; weight <= Periods; ++weight) total += weight;
    walk(
        *data, first, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::weightedMean, rowsOf(Source), Periods.value(), records,
                              result->writableValues().data());
        },
        [&](Integer record) {
          Real sum = 0;
          for (int weight = Periods.value(); weight >= 1; --weight) {
            sum += weight * at(Source, data->getPosition());
            data->MovePrevious();
          }
          data->setPosition(data->getPosition() + Periods);
          result->setValue(record, sum / total);
        });
    blank(*result, Periods);
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> MovingAverage::TriangularMovingAverage(std::shared_ptr<Database> data,
                                                                  std::shared_ptr<Field> Source, Integer Periods,
                                                                  InOut<std::string> Alias) {
  return trap(TriangularMovingAverageFault, [&] {
    applyDefault(Alias, TriangularMovingAverageName);
    const Integer half = Periods / 2;
    const Integer firstWindow = Periods % 2 == 0 ? half : half + 1;
    const Integer secondWindow = half + 1;
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL);
    const auto inner = makeColumn(count, "MA1", Periods.value() + 1LL);

    fillMeans(*data, Source, firstWindow, Periods + 1, *inner);
    fillMeans(*data, inner, secondWindow, Periods + 1, *result);
    blank(*result, 2 * Periods);
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> MovingAverage::WellesWilderSmoothing(std::shared_ptr<Field> Source, Integer Periods,
                                                                InOut<std::string> Alias) {
  return trap(WellesWilderSmoothingFault, [&] {
    applyDefault(Alias, WellesWilderSmoothingName);
    const Integer count = object(Source).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 2);
    const Real factor = count > 1 ? Real(1) / Periods : Real(0);
    eachRecord(
        2, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::approach, rowsOf(Source), factor.value(), records,
                              result->writableValues().data());
        },
        [&](Integer record) {
          const Real previous = at(result, record - 1);
          result->setValue(record, previous + (at(Source, record) - previous) * factor);
        },
        Carried::rowBefore(*result));
    blank(*result, 2 * Periods);
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
