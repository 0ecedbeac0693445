#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"
#include "orvex/indices/index.h"

namespace orvex {

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

}  // namespace

std::shared_ptr<RecordSet> Index::RelativeStrengthIndex(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                        Integer Periods, InOut<std::string> Alias) {
  applyDefault(Alias, RelativeStrengthIndexName);
  if (Periods < 1) raise(RelativeStrengthIndexPeriodsFault);
  return trap(RelativeStrengthIndexFault, [&] {
    const Integer count = object(data).getRecordCount();
    const auto result = makeColumn(count, Alias.get());
    if (Periods < count) {
      const Integer first = Periods + 1;
      Move mean;
      data->setPosition(first);
      walk(*data, first, count, noKernel, [&](Integer record) {
        mean = record == first ? firstMean(Source, Periods) : nextMean(mean, moveAt(Source, record), Periods);
        const bool still = mean.rise == 0 && mean.fall == 0;
        result->setValue(record, still ? Real(50) : 100 * mean.rise / (mean.rise + mean.fall));
      });
    }
    data->MoveFirst();
    return makeRecordSet({result});
  });
}

}  // namespace orvex
