#include <cstdint>

#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/indices/index.h"
#include "orvex/kernels/kernels.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

/// A move of a column, split: of rise and fall at most one is above 0, and none is below.
struct Move {
  Real rise, fall;
};

Move moveAt(const std::shared_ptr<Field>& source, Integer record) {
  const Real move = at(source, record) - at(source, record - 1);
  return {move > 0 ? move : Real(0), move < 0 ? -move : Real(0)};
}

/// The mean of the first `count` moves.
Move firstMean(const std::shared_ptr<Field>& source, Integer count) {
  Move sum;
  for (int record = 2; record <= count.value() + 1; ++record) {
    const Move move = moveAt(source, record);
    sum.rise += move.rise;
    sum.fall += move.fall;
  }
  return {sum.rise / count, sum.fall / count};
}

Move nextMean(const Move& mean, const Move& move, Integer count) {
  const auto next = [&](Real before, Real now) { return (before * (count - 1) + now) / count; };
  return {next(mean.rise, move.rise), next(mean.fall, move.fall)};
}

/// How much of the two is the first, in percent: the middle where there is neither.
Real percentage(Real part, Real rest) {
  if (part == 0 && rest == 0) return 50;
  const Real whole = part + rest;
  return whole == 0 ? Real(0) : 100 * part / whole;
}

}  // namespace

std::shared_ptr<RecordSet> Index::RelativeStrengthIndex(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                        Integer Periods, InOut<std::string> Alias) {
  applyDefault(Alias, RelativeStrengthIndexName);
  if (Periods < 1) raise(RelativeStrengthIndexPeriodsFault);
  return trap(RelativeStrengthIndexFault, [&] {
    const Integer count = object(data).getRecordCount();
    const std::int64_t first = std::int64_t{Periods.value()} + 1;
    const auto result = makeColumn(count, Alias.get(), first);
    Move mean;
    if (first <= count.value() && nextWalkBeginsAnew()) mean = firstMean(Source, Periods);
    eachRecord(
        first, count,
        [&](kernels::Records records) {
          // The means that it begins with are those of the first record itself, or of the one before a later record.
          const bool seeded = records.first == first;
          double means[] = {mean.rise, mean.fall};
          const std::size_t done =
              kernels::run(&kernels::Table::strength, rowsOf(Source), Periods.value(), records,
                           seeded ? records.first : records.first - 1, means, result->writableValues().data());
          mean = {means[0], means[1]};
          return done;
        },
        [&](Integer record) {
          if (record != first) mean = nextMean(mean, moveAt(Source, record), Periods);
          result->setValue(record, percentage(mean.rise, mean.fall));
        },
        Carried(mean));
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Index::MoneyFlowIndex(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                 Integer Periods, InOut<std::string> Alias) {
  applyDefault(Alias, MoneyFlowIndexName);
  const Integer count = object(data).getRecordCount();
  checkPeriods(Periods, 1, count, MoneyFlowIndexPeriodsFault);
  return trap(MoneyFlowIndexFault, [&] {
    const auto result = makeColumn(count, Alias.get(), Periods.value() + 1LL);
    PriceColumn highs(OHLCV, Database::HighName), lows(OHLCV, Database::LowName);
    PriceColumn closes(OHLCV, Database::CloseName), volumes(OHLCV, Database::VolumeName);
    const auto typical = [&](Integer record) { return (highs(record) + lows(record) + closes(record)) / 3; };
    eachRecord(
        Periods + 1, count,
        [&](kernels::Records records) {
          const kernels::Bars bars{highs.rows(), lows.rows(), closes.rows()};
          const auto flows = workingRows(count, 2);
          return kernels::run(&kernels::Table::moneyFlowIndex, bars, volumes.rows(), Periods.value(), records,
                              flows.get(), flows.get() + count.value(), result->writableValues().data());
        },
        [&](Integer record) {
          Real rising = 0, falling = 0;
          const int first = (record - Periods + 1).value();
          Real before = typical(first - 1);
          for (int j = first; j <= record; ++j) {
            const Real price = typical(j);
            if (price > before) rising += price * volumes(j);
            if (price < before) falling += price * volumes(j);
            before = price;
          }
          result->setValue(record, percentage(rising, falling));
        });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
