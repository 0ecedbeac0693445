#include "orvex/averages/average_of_part.h"

#include <algorithm>

#include "orvex/averages/average_type.h"
#include "orvex/data/columns.h"
#include "orvex/data/object.h"

namespace orvex::inline ORVEX_COUNTS {

std::shared_ptr<Field> averageColumn(Integer MA_Type, std::shared_ptr<Database> data, std::shared_ptr<Field> source,
                                     Integer periods, std::string_view name) {
  return object(averageOfType(MA_Type, std::move(data), std::move(source), periods, name)).getField(name);
}

std::shared_ptr<Field> averageOfPart(Integer MA_Type, const std::shared_ptr<Field>& column, Integer first,
                                     Integer periods, std::string_view name) {
  const Integer count = object(column).getRecordCount();
  const Integer before = first - 1;
  const auto part = makeColumn(count - before, name);
  std::ranges::copy(column->values().subspan(static_cast<std::size_t>(before.value())), part->values().begin());
  const auto series = std::make_shared<Database>(part->getRecordCount());
  const auto average = averageColumn(MA_Type, series, part, periods, name);
  const auto result = makeColumn(count, name);
  std::ranges::copy(average->values(), result->values().begin() + before.value());
  return result;
}

}  // namespace orvex::inline ORVEX_COUNTS
