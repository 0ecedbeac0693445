#include "orvex/data/record_set.h"

#include <utility>

#include "orvex/data/object.h"
#include "orvex/data/text.h"

namespace orvex {

void RecordSet::addField(std::shared_ptr<Field> NewField) {
  if (fields_.size() == static_cast<std::size_t>(Integer::Greatest)) raise(faults::Overflow);
  fields_.push_back(std::move(NewField));
}

void RecordSet::renameField(const std::string& OldFieldName, const std::string& NewFieldName) {
  trap(renameFieldFault, [&] { object(getField(OldFieldName)).setName(NewFieldName); });
}

void RecordSet::removeField(const std::string& FieldName) {
  trap(removeFieldFault, [&] { fields_.erase(fields_.begin() + (getIndex(FieldName).value() - 1)); });
}

double RecordSet::getValue(const std::string& FieldName, Integer RowIndex) const {
  return trap(getValueFault, [&] { return object(getField(FieldName)).getValue(RowIndex); });
}

void RecordSet::setValue(const std::string& FieldName, Integer RowIndex, double Value) {
  trap(setValueFault, [&] { object(getField(FieldName)).setValue(RowIndex, Value); });
}

std::shared_ptr<Field> RecordSet::getField(const std::string& FieldName) const {
  return trap(getFieldFault, [&] { return fields_[static_cast<std::size_t>(getIndex(FieldName).value() - 1)]; });
}

Integer RecordSet::getIndex(const std::string& FieldName) const {
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

bool RecordSet::isValidField(const std::string& FieldName) const {
  for (const std::shared_ptr<Field>& field : fields_) {
    if (field != nullptr && equalNames(field->name(), FieldName)) return true;
  }
  return false;
}

}  // namespace orvex
