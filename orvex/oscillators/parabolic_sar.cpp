#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/kernels/kernels.h"
#include "orvex/oscillators/oscillator.h"

namespace orvex::inline ORVEX_COUNTS {

std::shared_ptr<RecordSet> Oscillator::ParabolicSAR(std::shared_ptr<Database> data, std::shared_ptr<Field> HighPrice,
                                                    std::shared_ptr<Field> LowPrice, double MinAF, double MaxAF,
                                                    InOut<std::string> Alias) {
  return trap(ParabolicSARFault, [&] {
    applyDefault(Alias, ParabolicSARName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 2);
    data->setPosition(1);
    const Real rise = at(HighPrice, 2) - at(HighPrice, 1);
    // The rise of the low, not its fall: which way the first trend goes is kept.
    const Real lowRise = at(LowPrice, 2) - at(LowPrice, 1);
    const bool isLong = !(lowRise > rise);
    kernels::Trend trend{isLong, isLong ? at(LowPrice, 1) : at(HighPrice, 1), at(HighPrice, 1), at(LowPrice, 1), MinAF};
    const auto kernel = [&](kernels::Records records) {
      return kernels::run(&kernels::Table::parabolic, rowsOf(HighPrice), rowsOf(LowPrice), MinAF, MaxAF, &trend,
                          records, result->writableValues().data());
    };

    walk(*data, 2, count, kernel,
         [&](Integer record) {
           const kernels::Trend before = trend;
           const Real high = at(HighPrice, record), low = at(LowPrice, record);
           // The step is taken while the factor is below its bound and not cut to it: with the usual figures ten steps
           // of 0.02 lead to about 0.22, since nine of them still end a little below 0.2.
           const auto quicken = [&] {
             if (trend.factor < Real(MaxAF)) trend.factor = Real(trend.factor) + MinAF;
           };
           // The stop goes by the extreme and the factor of the record before, and nothing holds it back from the lows
           // or highs of the last records. A reversal puts it on the extreme as it was before this record.
           if (before.isLong) {
             if (high > trend.longExtreme) {
               trend.longExtreme = high;
               quicken();
             }
             trend.stop = before.stop + before.factor * (Real(before.longExtreme) - before.stop);
             if (low < trend.stop) trend = {false, before.longExtreme, 0, low, MinAF};
           } else {
             if (low < trend.shortExtreme) {
               trend.shortExtreme = low;
               quicken();
             }
             trend.stop = before.stop + before.factor * (Real(before.shortExtreme) - before.stop);
             if (high > trend.stop) trend = {true, before.shortExtreme, high, 0, MinAF};
           }
           result->setValue(record, trend.stop);
         },
         {.behind = 1, .carried = Carried(trend)});
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
