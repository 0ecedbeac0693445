// Columns that are computed record by record from prices or volumes.

#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/general/general.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

using kernels::Table;

/// One value a record, `formula(record)`, from record 1 on; `kernel(records, out)` computes the same.
template <class Kernel, class Formula>
std::shared_ptr<RecordSet> transform(const std::shared_ptr<Database>& data, InOut<std::string>& Alias,
                                     std::string_view name, Kernel&& kernel, Formula&& formula) {
  applyDefault(Alias, name);
  const Integer count = object(data).getRecordCount();
  const auto result = makeColumn(count, Alias.get(), 1);
  data->MoveFirst();
  walk(
      *data, 1, count, [&](kernels::Records records) { return kernel(records, result->writableValues().data()); },
      [&](Integer record) { result->setValue(record, formula(record)); });
  data->MoveFirst();
  return makeRecordSet({result});
}

}  // namespace

std::shared_ptr<RecordSet> General::HighMinusLow(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                 InOut<std::string> Alias) {
  return trap(HighMinusLowFault, [&] {
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName);
    return transform(
        data, Alias, HighMinusLowName,
        [&](kernels::Records records, double* out) {
          return kernels::run(&Table::difference, high.rows(), 0, low.rows(), records, out);
        },
        [&](Integer record) { return high(record) - low(record); });
  });
}

std::shared_ptr<RecordSet> General::MedianPrice(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                InOut<std::string> Alias) {
  return trap(MedianPriceFault, [&] {
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName);
    return transform(
        data, Alias, MedianPriceName,
        [&](kernels::Records records, double* out) {
          return kernels::run(&Table::medianPrice, high.rows(), low.rows(), records, out);
        },
        [&](Integer record) { return (high(record) + low(record)) / 2; });
  });
}

std::shared_ptr<RecordSet> General::TypicalPrice(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                 InOut<std::string> Alias) {
  return trap(TypicalPriceFault, [&] {
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName), close(OHLCV, Database::CloseName);
    return transform(
        data, Alias, TypicalPriceName,
        [&](kernels::Records records, double* out) {
          return kernels::run(&Table::typicalPrice, high.rows(), low.rows(), close.rows(), records, out);
        },
        [&](Integer record) { return (high(record) + low(record) + close(record)) / 3; });
  });
}

std::shared_ptr<RecordSet> General::WeightedClose(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                  InOut<std::string> Alias) {
  return trap(WeightedCloseFault, [&] {
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName), close(OHLCV, Database::CloseName);
    return transform(
        data, Alias, WeightedCloseName,
        [&](kernels::Records records, double* out) {
          return kernels::run(&Table::weightedClose, high.rows(), low.rows(), close.rows(), records, out);
        },
        [&](Integer record) { return (high(record) + low(record) + 2 * close(record)) / 4; });
  });
}

std::shared_ptr<RecordSet> General::VolumeROC(std::shared_ptr<Database> data, std::shared_ptr<Field> Volume,
                                              Integer Periods, InOut<std::string> Alias) {
  return trap(VolumeROCFault, [&] {
    applyDefault(Alias, VolumeROCName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL);
    double rate = 0;
    const Integer first = Periods + 1;
    data->setPosition(first);
    walk(
        *data, first, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::rateOfChangeKept, rowsOf(Volume), Periods.value(), records, &rate,
                              result->writableValues().data());
        },
        [&](Integer record) {
          data->setPosition(data->getPosition() - Periods);
          const double earlier = object(Volume).getValue(data->getPosition());
          data->setPosition(data->getPosition() + Periods);
          const Real prior = earlier;
          // Of no volume there is no rate: the last one stands on, on purpose.
          if (prior != 0) rate = (at(Volume, data->getPosition()) - prior) / prior * 100;
          result->setValue(record, rate);
        },
        {.carried = Carried(rate)});
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> General::PriceROC(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                             Integer Periods, InOut<std::string> Alias) {
  return trap(PriceROCFault, [&] {
    applyDefault(Alias, PriceROCName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL);
    const Integer first = Periods + 1;
    data->setPosition(first);
    walk(
        *data, first, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::rateOfChange, rowsOf(Source), Periods.value(), records,
                              result->writableValues().data());
        },
        [&](Integer record) {
          const Real prior = at(Source, data->getPosition() - Periods);
          const Real current = at(Source, data->getPosition());
          result->setValue(record, (current - prior) / prior * 100);
        });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
