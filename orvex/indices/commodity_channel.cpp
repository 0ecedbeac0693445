#include "orvex/averages/average_of_part.h"
#include "orvex/averages/average_type.h"
#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/general/general.h"
#include "orvex/indices/index.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

std::shared_ptr<RecordSet> Index::CommodityChannelIndex(std::shared_ptr<Database> data,
                                                        std::shared_ptr<RecordSet> OHLCV, Integer Periods,
                                                        Integer MA_Type, InOut<std::string> Alias) {
  applyDefault(Alias, CommodityChannelIndexName);
  const Integer count = object(data).getRecordCount();
  checkPeriods(Periods, 1, count, CommodityChannelIndexPeriodsFault);
  checkAverageType(MA_Type, CommodityChannelIndexAverageFault);
  return trap(CommodityChannelIndexFault, [&] {
    const auto prices = General().TypicalPrice(data, OHLCV, "Typical")->getField("Typical");
    const auto averages = averageColumn(MA_Type, data, prices, Periods, "Average");
    const std::int64_t first = firstAverageRow(MA_Type.value(), Periods.value());
    const auto result = makeColumn(count, Alias.get(), first);
    eachRecord(
        first, count,
        [&](kernels::Records records) {
          return kernels::run(&kernels::Table::channel, rowsOf(prices), rowsOf(averages), Periods.value(), records,
                              result->writableValues().data());
        },
        [&](Integer record) {
          const Real price = at(prices, record), average = at(averages, record);
          Real deviations = 0;
          bool flat = true;
          for (int j = (record - Periods + 1).value(); j <= record; ++j) {
            flat = flat && at(prices, j) == price;
            deviations += abs(at(prices, j) - average);
          }
          const Real divisor = 0.015 * (deviations / Periods);
          // Equal prices can differ from their own average by a rounding, which nothing should magnify.
          result->setValue(record, flat || divisor == 0 ? Real(0) : (price - average) / divisor);
        });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
