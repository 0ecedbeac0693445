#include "orvex/data/record_set.h"

#include <utility>

#include "orvex/data/object.h"
#include "orvex/data/text.h"

namespace orvex::inline ORVEX_COUNTS {

void RecordSet::addField(std::shared_ptr<Field> NewField) {
  if (fields_.size() == static_cast<std::size_t>(Integer::Greatest)) raise(faults::Overflow);
  fields_.push_back(std::move(NewField));
}

void RecordSet::renameField(std::string_view OldFieldName, std::string_view NewFieldName) {
  trap(renameFieldFault, [&] { getField(OldFieldName)->setName(NewFieldName); });
}

void RecordSet::removeField(std::string_view FieldName) {
  trap(removeFieldFault, [&] { fields_.erase(fields_.begin() + (getIndex(FieldName).value() - 1)); });
}

double RecordSet::getValue(std::string_view FieldName, Integer RowIndex) const {
  return trap(getValueFault, [&] { return getField(FieldName)->getValue(RowIndex); });
}

void RecordSet::setValue(std::string_view FieldName, Integer RowIndex, double Value) {
  trap(setValueFault, [&] { getField(FieldName)->setValue(RowIndex, Value); });
}

std::shared_ptr<Field> RecordSet::getField(std::string_view FieldName) const {
  return trap(getFieldFault, [&] { return fields_[static_cast<std::size_t>(getIndex(FieldName).value() - 1)]; });
}

Integer RecordSet::getIndex(std::string_view FieldName) const {
  Integer position = 0;
  for (const std::shared_ptr<Field>& field : fields_) {
    ++position;
    if (equalNames(object(field).name(), FieldName)) return position;
  }
  raise(getIndexFault);
}

std::string RecordSet::getName(Integer FieldIndex) const {
  return trap(getNameFault, [&] {
    if (FieldIndex < 1 || FieldIndex > getFieldCount()) raise(faults::SubscriptOutOfRange);
    return object(fields_[static_cast<std::size_t>(FieldIndex.value() - 1)]).getName();
  });
}

bool RecordSet::isValidField(std::string_view FieldName) const {
  for (const std::shared_ptr<Field>& field : fields_) {
    if (field != nullptr && equalNames(field->name(), FieldName)) return true;
  }
  return false;
}

}  // namespace orvex::inline ORVEX_COUNTS
