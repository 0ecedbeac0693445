#include "orvex/averages/moving_average.h"
#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/general/general.h"
#include "orvex/indices/index.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

/// Fixed: it does not follow `Periods`.
constexpr int smoothingPeriods = 9;

}  // namespace

std::shared_ptr<RecordSet> Index::MassIndex(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                            Integer Periods, InOut<std::string> Alias) {
  return trap(MassIndexFault, [&] {
    applyDefault(Alias, MassIndexName);
    const Integer count = object(data).getRecordCount();
    checkPeriods(Periods, 1, count, MassIndexPeriodsFault);
    const auto result = makeColumn(count, Alias.get());
    constexpr std::string_view smoothing = "EMA";
    const auto ranges = General().HighMinusLow(data, OHLCV, "HML")->getField("HML");
    const auto single =
        MovingAverage().ExponentialMovingAverage(data, ranges, smoothingPeriods, smoothing)->getField(smoothing);
    const auto twice =
        MovingAverage().ExponentialMovingAverage(data, single, smoothingPeriods, smoothing)->getField(smoothing);

    const Integer first = 2 * Periods + 1;
    data->setPosition(first);
    walkSpans(
        *data, first, count + 1, CursorAfter::NextRecord,
        [&](kernels::Records records) {
          const auto terms = workingRows(count);
          return kernels::run(&kernels::Table::ratioSum, rowsOf(single), rowsOf(twice), Periods.value(), records,
                              terms.get(), result->writableValues().data());
        },
        [&](Integer record) {
          Real sum = 0;
          data->setPosition(record + 1 - Periods);
          for (int i = 1; i <= Periods; ++i) {
            const Real divisor = at(twice, data->getPosition());
            // The cursor stands still on a double smoothing of 0, so the rest of the window reads that record again and
            // the sum goes into a row further left. Published results show it, so it is kept.
            if (divisor == 0) continue;
            sum += at(single, data->getPosition()) / divisor;
            data->MoveNext();
          }
          data->MovePrevious();
          result->setValue(data->getPosition(), sum);
          data->MoveNext();
        });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
