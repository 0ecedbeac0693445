#include "orvex/data/field.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace orvex::inline ORVEX_COUNTS {

Empty Field::initialize(Integer RecordCount, std::string_view Name) {
  initializeToFill(RecordCount, Name, 1, 0);
  return {};
}

void Field::initializeToFill(Integer RecordCount, std::string_view Name, std::int64_t first, std::int64_t last) {
  if (RecordCount < 1) raise(faults::SubscriptOutOfRange);
  OwnRows rows = newRows(static_cast<std::size_t>(RecordCount.value()));
  const auto count = static_cast<std::int64_t>(RecordCount.value());
  const std::int64_t before = std::clamp(first - 1, std::int64_t{0}, count);
  std::fill_n(rows.values.begin(), before, 0.0);
  const auto after = static_cast<std::ptrdiff_t>(std::clamp(last, before, count));
  std::fill(rows.values.begin() + after, rows.values.end(), 0.0);
  replace(std::move(rows), Name);
}

void Field::view(Rows<double> rows, std::string_view Name) {
  if (rows.values.empty()) raise(faults::SubscriptOutOfRange);
  const Integer count = rows.values.size();
  if (rows.owner == nullptr) {
    OwnRows copy = newRows(rows.values.size());
    std::copy(rows.values.begin(), rows.values.end(), copy.values.begin());
    return replace(std::move(copy), Name);
  }
  std::string name(Name);
  values_ = rows.values;
  own_ = nullptr;
  owner_ = std::move(rows.owner);
  texts_ = nullptr;
  name_ = std::move(name);
  recordCount_ = count;
  note_.renew();
}

void Field::viewTexts(Rows<std::string_view> texts) {
  if (texts.values.size() != values_.size()) raise(faults::SubscriptOutOfRange);
  auto all = std::make_unique<Texts>();
  if (texts.owner == nullptr) {
    all->own.assign(texts.values.begin(), texts.values.end());
  } else {
    all->viewed = std::move(texts);
  }
  texts_ = std::move(all);
}

void Field::resize(Integer RecordCount) {
  if (RecordCount < 0) raise(faults::SubscriptOutOfRange);
  const auto count = static_cast<std::size_t>(RecordCount.value());
  const std::size_t kept = std::min(values_.size(), count);
  reserve(RecordCount);
  if (texts_ != nullptr) texts_->own.resize(count);
  std::fill(own_ + kept, own_ + count, 0.0);
  values_ = {own_, count};
  recordCount_ = RecordCount;
}

void Field::reserve(Integer RecordCount) {
  const auto count = static_cast<std::size_t>(std::max(0, RecordCount.value()));
  if (texts_ != nullptr) {
    makeTextsOwn();
    if (count > texts_->own.capacity()) texts_->own.reserve(std::max(count, 2 * values_.size()));
  }
  if (own_ != nullptr && count <= room_) return;
  const std::size_t room = own_ == nullptr ? count : std::max(count, 2 * values_.size());
  OwnRows rows = newRows(std::max(room, values_.size()));
  std::copy_n(values_.begin(), values_.size(), rows.values.begin());
  own_ = rows.values.data();
  values_ = {own_, values_.size()};
  room_ = rows.values.size();
  owner_ = std::move(rows.owner);
}

Empty Field::destroy() {
  values_ = {};
  own_ = nullptr;
  owner_ = nullptr;
  texts_ = nullptr;
  return {};
}

void Field::setStrValue(Integer RowIndex, std::string_view Value) {
  trap(setStrValueFault, [&] {
    if (!hasRow(RowIndex)) raise(faults::SubscriptOutOfRange);
    if (texts_ == nullptr) {
      auto made = std::make_unique<Texts>();
      made->own.resize(values_.size());
      texts_ = std::move(made);
    }
    makeTextsOwn();
    texts_->own[index(RowIndex)] = Value;
  });
}

std::string Field::getStrValue(Integer RowIndex) const {
  return trap(getStrValueFault, [&] {
    if (!hasRow(RowIndex)) raise(faults::SubscriptOutOfRange);
    return std::string(text(index(RowIndex)));
  });
}

Array<double> Field::getDoubleArray() const {
  return values_.empty() ? Array<double>() : Array<double>(std::vector<double>(values_.begin(), values_.end()));
}

Array<std::string> Field::getStringArray() const {
  if (values_.empty()) return {};
  std::vector<std::string> texts(values_.size());
  for (std::size_t row = 0; row < texts.size(); ++row) texts[row] = text(row);
  return Array<std::string>(std::move(texts));
}

OwnRows Field::releaseRows() {
  OwnRows rows{writableValues(), std::const_pointer_cast<void>(owner_)};
  destroy();
  return rows;
}

std::string_view Field::text(std::size_t row) const {
  if (texts_ == nullptr) return {};
  if (!texts_->own.empty()) return texts_->own[row];
  return texts_->viewed.values.empty() ? std::string_view() : texts_->viewed.values[row];
}

void Field::makeTextsOwn() {
  if (!texts_->own.empty()) return;
  const auto viewed = texts_->viewed.values;
  std::vector<std::string> own(viewed.begin(), viewed.end());
  own.resize(values_.size());
  texts_->own = std::move(own);
  texts_->viewed = {};
}

void Field::copyRows() {
  if (values_.empty()) return;
  OwnRows copy = newRows(values_.size());
  std::copy(values_.begin(), values_.end(), copy.values.begin());
  values_ = copy.values;
  own_ = copy.values.data();
  room_ = copy.values.size();
  owner_ = std::move(copy.owner);
}

void Field::replace(OwnRows rows, std::string_view name) {
  Rows<double> made{rows.values, std::move(rows.owner)};
  view(std::move(made), name);
  own_ = rows.values.data();
  room_ = rows.values.size();
}

}  // namespace orvex::inline ORVEX_COUNTS
