#include <algorithm>

#include "orvex/averages/moving_average.h"
#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/kernels/kernels.h"
#include "orvex/oscillators/oscillator.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

using kernels::Table;

/// Rounded half up to a whole number.
Real roundHalfUp(Real x) {
  return fix(x + 0.5);
}

std::shared_ptr<Field> wilder(const std::shared_ptr<Field>& source, Integer periods, std::string_view name) {
  return MovingAverage().WellesWilderSmoothing(source, periods, name)->getField(name);
}

}  // namespace

std::shared_ptr<RecordSet> Oscillator::TrueRange(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                 InOut<std::string> Alias) {
  return trap(TrueRangeFault, [&] {
    applyDefault(Alias, TrueRangeName);
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName), close(OHLCV, Database::CloseName);
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get(), 2);
    const auto kernel = [&](kernels::Records records) {
      return kernels::run(&Table::trueRange, kernels::Bars{high.rows(), low.rows(), close.rows()}, records,
                          result->writableValues().data());
    };
    eachRecord(2, count, kernel, [&](Integer record) {
      const Real inside = high(record) - low(record);
      const Real above = abs(high(record) - close(record - 1));
      const Real below = abs(close(record - 1) - low(record));
      Real range = 0;
      if (inside > 0) range = inside;
      if (above > range) range = above;
      if (below > range) range = below;
      result->setValue(record, range);
    });
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::AverageTrueRange(std::shared_ptr<Database> data,
                                                        std::shared_ptr<RecordSet> OHLCV, InOut<std::string> Alias,
                                                        Integer Period) {
  return trap(AverageTrueRangeFault, [&] {
    applyDefault(Alias, AverageTrueRangeName);
    const auto range = TrueRange(data, OHLCV)->getField(TrueRangeName);
    // A series of its own, so that the average moves no cursor but that.
    const auto ranges = std::make_shared<Database>(range->getRecordCount());
    const auto result = MovingAverage().SimpleMovingAverage(ranges, range, Period, "A")->getField("A");
    result->setName(Alias.get());
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

std::shared_ptr<RecordSet> Oscillator::DirectionalMovementSystem(std::shared_ptr<Database> data,
                                                                 std::shared_ptr<RecordSet> OHLCV, Integer Periods) {
  return trap(DirectionalMovementSystemFault, [&] {
    // The range that is smoothed is an average already: it goes through two of them.
    const auto range = AverageTrueRange(data, OHLCV, TrueRangeName, Periods)->getField(TrueRangeName);
    const auto rangeSum = wilder(range, Periods, RangeSumName);

    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName);
    const Integer count = object(data).getRecordCount();
    const auto rows = [](const std::shared_ptr<Field>& column) { return column->writableValues().data(); };
    const auto up = makeColumn(count, "UpDMI", 2), down = makeColumn(count, "DnDMI", 2);
    const auto downIndex = makeColumn(count, DownIndexName, 2);
    const auto upIndex = makeColumn(count, UpIndexName, 2);
    eachRecord(
        2, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::directionalMoves, high.rows(), low.rows(), records, rows(up), rows(down));
        },
        [&](Integer record) {
          const Real rise = high(record) - high(record - 1), fall = low(record - 1) - low(record);
          // Equal moves cancel each other.
          const bool moved = (rise >= 0 || fall >= 0) && rise != fall;
          up->setValue(record, moved && rise > fall ? rise : Real(0));
          down->setValue(record, moved && rise < fall ? fall : Real(0));
        });

    const auto upSum = wilder(up, Periods, "DM+Sum"), downSum = wilder(down, Periods, "DM-Sum");
    eachRecord(
        2, count,
        [&](kernels::Records records) {
          const auto share = [&](const std::shared_ptr<Field>& sum, const std::shared_ptr<Field>& result) {
            return kernels::run(&Table::wholePercent, rowsOf(sum), rowsOf(rangeSum), records, rows(result));
          };
          return std::min(share(upSum, upIndex), share(downSum, downIndex));
        },
        [&](Integer record) {
          const Real sum = at(rangeSum, record);
          upIndex->setValue(record, sum == 0 ? Real(0) : fix(at(upSum, record) * 100 / sum));
          downIndex->setValue(record, sum == 0 ? Real(0) : fix(at(downSum, record) * 100 / sum));
        });

    const auto index = makeColumn(count, DirectionalIndexName, 2);
    eachRecord(
        2, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::directionalIndex, rowsOf(downIndex), rowsOf(upIndex), records, rows(index));
        },
        [&](Integer record) {
          const Real difference = abs(at(downIndex, record) - at(upIndex, record));
          const Real sum = at(downIndex, record) + at(upIndex, record);
          // Truncated where the averages below are rounded.
          index->setValue(record, difference > 0 && sum > 0 ? fix(difference / sum * 100) : Real(0));
        });

    // The average starts from 0 and not from the mean of the first indices: that seed is kept.
    const Integer first = Periods + 1;
    const auto average = makeColumn(count, AverageIndexName, first.value());
    eachRecord(
        first, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::averageIndex, rowsOf(index), Periods.value(), records, rows(average));
        },
        [&](Integer record) {
          average->setValue(record,
                            roundHalfUp(((Periods - 1) * at(average, record - 1) + at(index, record)) / Periods));
        });

    // The rating looks one record back and not `Periods` of them: kept as well.
    const auto rating = makeColumn(count, AverageIndexRatingName, first.value());
    eachRecord(
        first, count,
        [&](kernels::Records records) {
          return kernels::run(&Table::meanHalfUp, rowsOf(average), records, rows(rating));
        },
        [&](Integer record) {
          rating->setValue(record, roundHalfUp((at(average, record) + at(average, record - 1)) / 2));
        });

    data->MoveFirst();
    return makeRecordSet({average, rating, index, rangeSum, downIndex, upIndex});
  });
}

std::shared_ptr<RecordSet> Oscillator::Aroon(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                             Integer Periods) {
  return trap(AroonFault, [&] {
    PriceColumn high(OHLCV, Database::HighName), low(OHLCV, Database::LowName);
    const Integer count = object(data).getRecordCount();
    const auto up = makeColumn(count, AroonUpName, Periods.value() + 1LL);
    const auto down = makeColumn(count, AroonDownName, Periods.value() + 1LL);
    const auto oscillator = makeColumn(count, AroonOscillatorName, Periods.value() + 1LL);
    const auto kernel = [&](kernels::Records records) {
      const auto extremes = workingRows(count, 2);
      return kernels::run(
          &Table::aroon, high.rows(), low.rows(), Periods.value(), records,
          kernels::AroonRows{up->writableValues().data(), down->writableValues().data(),
                             oscillator->writableValues().data(), extremes.get(), extremes.get() + count.value()});
    };
    eachRecord(Periods + 1, count, kernel, [&](Integer record) {
      // The record itself comes first and then the oldest: of equal extremes the record's own counts, otherwise the
      // oldest.
      Real highest = high(record), lowest = low(record);
      Integer highestRecord = record, lowestRecord = record;
      for (int j = (record - Periods).value(); j < record; ++j) {
        if (high(j) > highest) {
          highest = high(j);
          highestRecord = j;
        }
        if (low(j) < lowest) {
          lowest = low(j);
          lowestRecord = j;
        }
      }
      const auto share = [&](Integer extreme) { return Real(Periods - (record - extreme)) / Periods * 100; };
      up->setValue(record, share(highestRecord));
      down->setValue(record, share(lowestRecord));
      oscillator->setValue(record, at(up, record) - at(down, record));
    });
    data->MoveFirst();
    return makeRecordSet({up, down, oscillator});
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
