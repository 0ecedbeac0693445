#include "orvex/averages/average_of_part.h"

#include <algorithm>

#include "orvex/averages/average_type.h"
#include "orvex/data/columns.h"
#include "orvex/data/continuation.h"
#include "orvex/data/object.h"

namespace orvex::inline ORVEX_COUNTS {

std::shared_ptr<Field> averageColumn(Integer MA_Type, std::shared_ptr<Database> data, std::shared_ptr<Field> source,
                                     Integer periods, std::string_view name) {
  return object(averageOfType(MA_Type, std::move(data), std::move(source), periods, name)).getField(name);
}

std::shared_ptr<Field> averageOfPart(Integer MA_Type, const std::shared_ptr<Field>& column, Integer first,
                                     Integer periods, std::string_view name) {
  const Integer count = object(column).getRecordCount();
  if (first > count) raise(faults::SubscriptOutOfRange);
  const auto before = static_cast<std::size_t>((first - 1).value());
  const auto part = std::make_shared<Field>();
  part->view(column->rows().part(before, column->values().size() - before), name);
  const auto series = std::make_shared<Database>(part->getRecordCount());
  const auto average = onPart(first.value(), [&] {
    const Continuation::Part behind(first.value() - 1);
    return averageColumn(MA_Type, series, part, periods, name);
  });
  const auto result = makeColumn(count, name, first.value());
  const auto kept = static_cast<std::size_t>(std::max<std::int64_t>(0, keptRows() - (first.value() - 1)));
  const auto rows = average->values().subspan(kept);
  std::copy(rows.begin(), rows.end(), result->writableValues().subspan(before + kept).begin());
  return result;
}

}  // namespace orvex::inline ORVEX_COUNTS
