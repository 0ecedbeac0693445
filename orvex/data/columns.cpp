#include "orvex/data/columns.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "orvex/data/continuation.h"

namespace orvex::inline ORVEX_COUNTS {

std::shared_ptr<Field> makeColumn(Integer count, std::string_view name) {
  return makeColumn(count, name, 1, 0);
}

std::shared_ptr<Field> makeColumn(Integer count, std::string_view name, std::int64_t first, std::int64_t last) {
  if (Continuation* const continuation = Continuation::current()) return continuation->column(count, name);
  auto column = std::make_shared<Field>();
  column->initializeToFill(count, name, first, last);
  return column;
}

std::shared_ptr<RecordSet> makeRecordSet(std::initializer_list<std::shared_ptr<Field>> columns) {
  return std::make_shared<RecordSet>(std::vector<std::shared_ptr<Field>>(columns));
}

void blank(Field& column, Integer last) {
  const std::span<double> rows = column.writableValues();
  if (last > rows.size()) raise(Field::setValueFault);
  // The last row that is kept may hold what the walk carried.
  const auto first = static_cast<std::ptrdiff_t>(std::max<std::int64_t>(1, keptRows()));
  if (last >= first) std::fill(rows.begin() + (first - 1), rows.begin() + last.value(), 0.0);
}

}  // namespace orvex::inline ORVEX_COUNTS
