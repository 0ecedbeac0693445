#pragma once

#include <memory>
#include <string_view>

#include "orvex/data/columns.h"
#include "orvex/data/database.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/walk.h"

/// The loop that the running indices share.
namespace orvex::inline ORVEX_COUNTS {

/// A set of one column, `name`: row 1 is `seed`, and each record from `first` on is `next(record, the row before)`.
/// `kernel(records, rows)` computes the same. What they hand on besides is `carried`. Walks the cursor from `first` on
/// and leaves it on record 1.
template <class Kernel, class Next>
std::shared_ptr<RecordSet> cumulate(const std::shared_ptr<Database>& data, std::string_view name, Integer first,
                                    double seed, Kernel&& kernel, Next&& next, const Carried& carried = Carried()) {
  const Integer count = object(data).getRecordCount();
  const auto result = makeColumn(count, name, first.value());
  if (nextWalkBeginsAnew()) result->setValue(1, seed);
  data->setPosition(first);
  walk(
      *data, first, count, [&](kernels::Records records) { return kernel(records, result->writableValues().data()); },
      [&](Integer record) { result->setValue(record, next(record, record > 1 ? at(result, record - 1) : Real(0))); },
      {.carried = carried});
  data->MoveFirst();
  return makeRecordSet({result});
}

}  // namespace orvex::inline ORVEX_COUNTS
