#include <algorithm>

#include "orvex/averages/average_of_part.h"
#include "orvex/averages/average_type.h"
#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/general/general.h"
#include "orvex/indices/index.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

using kernels::Table;

/// A column on its way through the averages, with its first computed row.
struct Smoothed {
  std::shared_ptr<Field> column;
  std::int64_t first;
};

Smoothed average(const Smoothed& inner, Integer MA_Type, Integer periods, std::string_view name) {
  return {averageOfPart(MA_Type, inner.column, inner.first, periods, name),
          inner.first + firstAverageRow(MA_Type.value(), periods.value()) - 1};
}

}  // namespace

std::shared_ptr<RecordSet> Index::StochasticMomentumIndex(std::shared_ptr<Database> data,
                                                          std::shared_ptr<RecordSet> OHLCV, Integer KPeriods,
                                                          Integer KSmoothing, Integer KDoubleSmoothing,
                                                          Integer DPeriods, Integer MA_Type) {
  const Integer count = object(data).getRecordCount();
  checkPeriods(KPeriods, 1, count, StochasticMomentumIndexPeriodsFault);
  checkPeriods(DPeriods, 1, count, StochasticMomentumIndexPeriodsFault);
  checkAverageType(MA_Type, StochasticMomentumIndexAverageFault);
  return trap(StochasticMomentumIndexFault, [&] {
    PriceColumn highs(OHLCV, Database::HighName), lows(OHLCV, Database::LowName);
    PriceColumn closes(OHLCV, Database::CloseName);
    Smoothed momentum{makeColumn(count, "Momentum", KPeriods.value()), KPeriods.value()};
    Smoothed range{makeColumn(count, "Range", KPeriods.value()), KPeriods.value()};
    {
      // The extremes of `General` cover one record more than the number that they are given.
      const auto highest = General().HHV(data, highs.field(), KPeriods - 1, "HHV")->getField("HHV");
      const auto lowest = General().LLV(data, lows.field(), KPeriods - 1, "LLV")->getField("LLV");
      eachRecord(
          KPeriods, count,
          [&](kernels::Records records) {
            const std::size_t momenta = kernels::run(&Table::fromMiddle, closes.rows(), rowsOf(highest), rowsOf(lowest),
                                                     records, momentum.column->writableValues().data());
            const std::size_t ranges = kernels::run(&Table::difference, rowsOf(highest), 0, rowsOf(lowest), records,
                                                    range.column->writableValues().data());
            return std::min(momenta, ranges);
          },
          [&](Integer record) {
            const Real high = at(highest, record), low = at(lowest, record);
            momentum.column->setValue(record, closes(record) - (high + low) / 2);
            range.column->setValue(record, high - low);
          });
    }
    for (const Integer periods : {KSmoothing, KDoubleSmoothing}) {
      if (periods < 2) continue;
      momentum = average(momentum, MA_Type, periods, "Momentum");
      range = average(range, MA_Type, periods, "Range");
    }
    const Smoothed percentK{makeColumn(count, PercentKName, momentum.first), momentum.first};
    eachRecord(
        percentK.first, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::percentOfHalf, rowsOf(momentum.column), rowsOf(range.column), records,
                              percentK.column->writableValues().data());
        },
        [&](Integer record) {
          const Real divisor = at(range.column, record) / 2;
          percentK.column->setValue(record, divisor == 0 ? Real(0) : 100 * at(momentum.column, record) / divisor);
        },
        noYield);
    const Smoothed percentD = average(percentK, MA_Type, DPeriods, PercentDName);
    data->MoveFirst();
    return makeRecordSet({percentK.column, percentD.column});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
