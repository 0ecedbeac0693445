#include "orvex/averages/average_type.h"
#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/general/general.h"

namespace orvex {

std::shared_ptr<RecordSet> General::StandardDeviation(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                      Integer Periods, Integer StandardDeviations, Integer MAType,
                                                      InOut<std::string> Alias) {
  const std::string averageName = "Temp";
  const auto result = trap(StandardDeviationFault, [&] {
    applyDefault(Alias, StandardDeviationName);
    return makeColumn(object(data).getRecordCount(), Alias.get());
  });
  const auto recordset =
      trap(StandardDeviationAverageFault, [&] { return averageOfType(MAType, data, Source, Periods, averageName); });
  return trap(StandardDeviationFault, [&] {
    PriceColumn average(recordset, averageName);
    const Integer count = result->getRecordCount();
    data->setPosition(Periods + 1);
    walk(
        *data, Periods + 1, count, noKernel,
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
        noYield);
    object(recordset).removeField(averageName);
    recordset->addField(result);
    data->MoveFirst();
    return recordset;
  });
}

double General::CorrelationAnalysis(std::shared_ptr<Field> Source1, std::shared_ptr<Field> Source2) {
  return trap(CorrelationAnalysisFault, [&] {
    const Integer count = object(Source1).getRecordCount();
    Real total = 0;
    eachRecord(2, count, noKernel, [&](Integer row) {
      total += abs(at(Source1, row) - at(Source1, row - 1)) * abs(at(Source2, row) - at(Source2, row - 1));
    });
    return (1 - total / (count - 2)).value();
  });
}

}  // namespace orvex
