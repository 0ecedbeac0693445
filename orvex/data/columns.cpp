#include "orvex/data/columns.h"

namespace orvex::inline ORVEX_COUNTS {

std::shared_ptr<Field> makeColumn(Integer count, std::string_view name) {
  auto column = std::make_shared<Field>();
  column->initialize(count, name);
  return column;
}

std::shared_ptr<RecordSet> makeRecordSet(std::initializer_list<std::shared_ptr<Field>> columns) {
  auto recordset = std::make_shared<RecordSet>();
  for (const std::shared_ptr<Field>& column : columns) recordset->addField(column);
  return recordset;
}

void blank(Field& column, Integer last) {
  for (int row = 1; row <= last; ++row) column.setValue(row, 0.0);
}

}  // namespace orvex::inline ORVEX_COUNTS
