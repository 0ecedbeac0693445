#include "orvex/data/continuation.h"

#include <algorithm>
#include <cstring>

#include "orvex/data/error.h"

namespace orvex::inline ORVEX_COUNTS {

void Continuation::begin(std::int64_t count) noexcept {
  if (count < count_) reset();
  newCount_ = count;
  before_ = 0;
  nextColumn_ = nextWalk_ = 0;
  kept_ = std::max<std::int64_t>(0, count_ - 1);
}

void Continuation::commit() noexcept {
  count_ = newCount_;
  side_ = 1 - side_;
}

void Continuation::rollBack() noexcept {
  // Rows behind the kept ones are made anew by the next call in any case.
  if (count_ == 0) reset();
}

void Continuation::reset() noexcept {
  count_ = 0;
  columns_.clear();
  walks_.clear();
}

std::shared_ptr<Field> Continuation::column(Integer count, std::string_view name) {
  if (count < 1) raise(faults::SubscriptOutOfRange);
  if (nextColumn_ == columns_.size()) {
    if (count_ > 0) raise(faults::Internal);
    auto made = std::make_shared<Field>();
    made->initialize(count, name);
    columns_.push_back(made);
    ++nextColumn_;
    return made;
  }
  const std::shared_ptr<Field>& column = columns_[nextColumn_++];
  if (column->getRecordCount().value() > keptRows()) column->resize(static_cast<int>(keptRows()));
  column->resize(count);
  column->setName(name);
  return column;
}

Continuation::Records Continuation::enter(std::int64_t first, std::int64_t last, const Carried& carried) {
  if (nextWalk_ == walks_.size()) {
    if (count_ > 0) raise(faults::Internal);
    walks_.emplace_back();
  }
  Walk& walk = walks_[nextWalk_++];
  for (Progress& progress : walk.kept) {
    if (progress.carried.size() < carried.size()) progress.carried.resize(carried.size());
  }
  const Progress& reached = walk.kept[side_];
  entersAnew_ = !reached.begun;
  entered_ = {first, std::min(last, newCount_ - 1 - before_)};
  if (entersAnew_) {
    entersAnew_ = entered_.closed < first;
    return entered_;
  }
  entered_.first = reached.last + 1;
  if (carried.place_ != nullptr) std::memcpy(carried.place_, reached.carried.data(), carried.size());
  if (carried.column_ != nullptr) {
    double* const row = carried.column_->writableValues().data() + (reached.last - 1);
    std::memcpy(row, reached.carried.data(), sizeof *row);
  }
  return entered_;
}

void Continuation::keep(const Carried& carried) noexcept {
  Progress& reached = walks_[nextWalk_ - 1].kept[1 - side_];
  reached.begun = !entersAnew_;
  reached.last = entered_.closed;
  if (!reached.begun) return;
  if (carried.place_ != nullptr) std::memcpy(reached.carried.data(), carried.place_, carried.size());
  if (carried.column_ != nullptr) {
    const double* const row = carried.column_->values().data() + (entered_.closed - 1);
    std::memcpy(reached.carried.data(), row, sizeof *row);
  }
}

}  // namespace orvex::inline ORVEX_COUNTS
