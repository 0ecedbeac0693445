#include "orvex/data/field.h"

#include <utility>

namespace orvex::inline ORVEX_COUNTS {

Empty Field::initialize(Integer RecordCount, std::string_view Name) {
  if (RecordCount < 1) raise(faults::SubscriptOutOfRange);
  std::vector<double> values(static_cast<std::size_t>(RecordCount.value()));
  std::string name(Name);
  auto note = std::make_shared<Note>();
  values_ = std::move(values);
  texts_ = {};
  name_ = std::move(name);
  recordCount_ = RecordCount;
  note_ = std::move(note);
  return {};
}

Empty Field::destroy() {
  values_ = {};
  texts_ = {};
  return {};
}

void Field::setStrValue(Integer RowIndex, std::string_view Value) {
  trap(setStrValueFault, [&] {
    if (!hasRow(RowIndex)) raise(faults::SubscriptOutOfRange);
    if (texts_.empty()) texts_.resize(values_.size());
    texts_[index(RowIndex)] = Value;
  });
}

std::string Field::getStrValue(Integer RowIndex) const {
  return trap(getStrValueFault, [&] {
    if (!hasRow(RowIndex)) raise(faults::SubscriptOutOfRange);
    return texts_.empty() ? std::string() : texts_[index(RowIndex)];
  });
}

Array<double> Field::getDoubleArray() const {
  return values_.empty() ? Array<double>() : Array<double>(values_);
}

Array<std::string> Field::getStringArray() const {
  if (values_.empty()) return {};
  return Array<std::string>(texts_.empty() ? std::vector<std::string>(values_.size()) : texts_);
}

}  // namespace orvex::inline ORVEX_COUNTS
