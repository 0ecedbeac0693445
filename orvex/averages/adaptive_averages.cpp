// The moving averages whose smoothing follows a statistic of the series.

#include "orvex/averages/linear_regression.h"
#include "orvex/averages/moving_average.h"
#include "orvex/averages/regression_columns.h"
#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/kernels/kernels.h"
#include "orvex/oscillators/oscillator.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

using kernels::Table;

/// Leaves a regression's set without columns.
void removeRegression(RecordSet& recordset) {
  for (const std::string_view name : {LinearRegression::RSquaredName, LinearRegression::SlopeName,
                                      LinearRegression::InterceptName, LinearRegression::ForecastName}) {
    recordset.removeField(name);
  }
}

}  // namespace

std::shared_ptr<RecordSet> MovingAverage::TimeSeriesMovingAverage(std::shared_ptr<Database> data,
                                                                  std::shared_ptr<Field> Source, Integer Periods,
                                                                  InOut<std::string> Alias) {
  return trap(TimeSeriesMovingAverageFault, [&] {
    applyDefault(Alias, TimeSeriesMovingAverageName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 1);
    const auto recordset = regressionColumns(data, Source, Periods, RegressionPart::Forecast);
    const auto forecasts = recordset->getField(LinearRegression::ForecastName);
    walk(
        *data, 1, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::copy, rowsOf(forecasts), records, result->writableValues().data());
        },
        [&](Integer record) { result->setValue(record, at(forecasts, record)); });
    removeRegression(*recordset);
    // Twice the regression's own warm-up: its first `Periods` forecasts are left out on purpose.
    blank(*result, 2 * Periods);
    data->MoveFirst();
    recordset->addField(result);
    return recordset;
  });
}

std::shared_ptr<RecordSet> MovingAverage::VariableMovingAverage(std::shared_ptr<Database> data,
                                                                std::shared_ptr<Field> Source, Integer Periods,
                                                                InOut<std::string> Alias) {
  return trap(VariableMovingAverageFault, [&] {
    applyDefault(Alias, VariableMovingAverageName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 2);
    // The momentum's period is this constant, whatever `Periods` is.
    const auto recordset = Oscillator().CMO(data, Source, 9, "");
    const auto momentum = recordset->getField(Oscillator::CMOName);
    data->setPosition(2);
    walk(
        *data, 2, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::variable, rowsOf(Source), rowsOf(momentum), records,
                              result->writableValues().data());
        },
        [&](Integer record) {
          data->MovePrevious();
          const Real previous = at(result, record - 1);
          data->MoveNext();
          const Real k = abs(at(momentum, record) / 100);
          result->setValue(record, (1 - k) * previous + k * at(Source, record));
        },
        {.carried = Carried::rowBefore(*result)});
    // The momentum's warm-up and the recursion's climb from 0 are both hidden.
    blank(*result, 3 * Periods);
    data->MoveFirst();
    // Added first and then removed by name: an alias "CMO" stays, since the momentum stands before it.
    recordset->addField(result);
    recordset->removeField(Oscillator::CMOName);
    return recordset;
  });
}

std::shared_ptr<RecordSet> MovingAverage::VIDYA(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                Integer Periods, double R2Scale, InOut<std::string> Alias) {
  return trap(VIDYAFault, [&] {
    applyDefault(Alias, VIDYAName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 2);
    const auto recordset = regressionColumns(data, Source, Periods, RegressionPart::RSquared);
    const auto qualities = recordset->getField(LinearRegression::RSquaredName);
    data->setPosition(2);
    walk(
        *data, 2, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::blend, rowsOf(Source), rowsOf(qualities), R2Scale, records,
                              result->writableValues().data());
        },
        [&](Integer record) {
          data->MovePrevious();
          // The value before and not the average before: the recursion that the name promises is left out on purpose.
          const Real previous = at(Source, record - 1);
          data->MoveNext();
          const Real k = at(qualities, record) * R2Scale;
          result->setValue(record, (1 - k) * previous + k * at(Source, record));
        });
    removeRegression(*recordset);
    blank(*result, 2 * Periods);
    data->MoveFirst();
    recordset->addField(result);
    return recordset;
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
