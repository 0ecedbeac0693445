#include "orvex/averages/average_type.h"
#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/general/general.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

using kernels::Table;

std::shared_ptr<RecordSet> General::StandardDeviation(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                      Integer Periods, Integer StandardDeviations, Integer MAType,
                                                      InOut<std::string> Alias) {
  constexpr std::string_view averageName = "Temp";
  const auto result = trap(StandardDeviationFault, [&] {
    applyDefault(Alias, StandardDeviationName);
    return makeColumn(object(data).getRecordCount(), Alias.get(), Periods.value() + 1LL);
  });
  const auto recordset =
      trap(StandardDeviationAverageFault, [&] { return averageOfType(MAType, data, Source, Periods, averageName); });
  return trap(StandardDeviationFault, [&] {
    PriceColumn average(recordset, averageName);
    const Integer count = result->getRecordCount();
    const Integer first = Periods + 1;
    data->setPosition(first);
    walk(
        *data, first, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::deviation, rowsOf(Source), average.rows(), Periods.value(), 0,
                              Real(StandardDeviations).value(), records, result->writableValues().data());
        },
        [&](Integer record) {
          Real sum = 0;
          const Real mean = average(data->getPosition());
          for (int i = 1; i <= Periods; ++i) {
            const Real distance = at(Source, data->getPosition()) - mean;
            sum += distance * distance;
            data->MovePrevious();
          }
          data->setPosition(data->getPosition() + Periods);
          result->setValue(record, StandardDeviations * sqrt(sum / Periods));
        },
        {.hook = noYield});
    object(recordset).removeField(averageName);
    recordset->addField(result);
    data->MoveFirst();
    return recordset;
  });
}

double General::CorrelationAnalysis(std::shared_ptr<Field> Source1, std::shared_ptr<Field> Source2) {
  return trap(CorrelationAnalysisFault, [&] {
    const Integer count = object(Source1).getRecordCount();
    double total = 0;
    eachRecord(
        2, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::movementProducts, rowsOf(Source1), rowsOf(Source2), records, &total);
        },
        [&](Integer row) {
          total = total + abs(at(Source1, row) - at(Source1, row - 1)) * abs(at(Source2, row) - at(Source2, row - 1));
        });
    return (1 - Real(total) / (count - 2)).value();
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
