#include "orvex/data/continuation.h"

#include <algorithm>
#include <cstring>

#include "orvex/data/error.h"

namespace orvex::inline ORVEX_COUNTS {

void Continuation::begin(std::int64_t count, bool lastIsSame) noexcept {
  if (count < count_) reset();
  lastStands_ = lastIsSame && allBegun_ && count > count_;
  newCount_ = count;
  before_ = 0;
  nextColumn_ = nextWalk_ = 0;
  kept_ = std::max<std::int64_t>(0, count_ - 1);
}

void Continuation::commit() noexcept {
  count_ = newCount_;
  side_ = 1 - side_;
  allBegun_ = std::all_of(walks_.begin(), walks_.end(), [&](const Walk& walk) { return walk.kept[side_].begun; });
}

void Continuation::rollBack() noexcept {
  // Rows behind the kept ones are made anew by the next call in any case, the last call's last one from now on too.
  allBegun_ = false;
  if (count_ == 0) reset();
}

void Continuation::reset() noexcept {
  count_ = 0;
  allBegun_ = false;
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
  const std::int64_t standing = lastStands_ ? std::max<std::int64_t>(0, count_ - before_) : keptRows();
  if (column->getRecordCount().value() > standing) column->resize(static_cast<int>(standing));
  column->resize(count);
  column->setName(name);
  return column;
}

void Continuation::Place::keep(const Carried& from) noexcept {
  if (from.place_ != nullptr) std::memcpy(carried.data(), from.place_, from.size());
  if (from.column_ != nullptr) {
    const double* const row = from.column_->values().data() + (record - 1);
    std::memcpy(carried.data(), row, sizeof *row);
  }
}

void Continuation::Place::giveBack(const Carried& to) const {
  if (to.place_ != nullptr) std::memcpy(to.place_, carried.data(), to.size());
  if (to.column_ != nullptr) {
    double* const row = to.column_->writableValues().data() + (record - 1);
    std::memcpy(row, carried.data(), sizeof *row);
  }
}

Continuation::Records Continuation::enter(std::int64_t first, std::int64_t last, const Carried& carried) {
  if (nextWalk_ == walks_.size()) {
    if (count_ > 0) raise(faults::Internal);
    walks_.emplace_back();
  }
  Walk& walk = walks_[nextWalk_++];
  for (Progress& progress : walk.kept) {
    for (Place* const place : {&progress.closed, &progress.last}) {
      if (place->carried.size() < carried.size()) place->carried.resize(carried.size());
    }
  }
  const Progress& reached = walk.kept[side_];
  Progress& reaches = walk.kept[1 - side_];
  reaches.last.record = std::min(last, newCount_ - before_);
  reaches.closed.record = std::min(last, newCount_ - 1 - before_);
  reaches.begun = reached.begun || reaches.closed.record >= first;
  if (reached.begun) {
    const Place& from = lastStands_ ? reached.last : reached.closed;
    from.giveBack(carried);
    first = from.record + 1;
  }
  entered_ = {first, reaches.closed.record};
  return entered_;
}

void Continuation::keep(const Carried& carried) noexcept {
  Progress& reaches = walks_[nextWalk_ - 1].kept[1 - side_];
  if (reaches.begun) reaches.closed.keep(carried);
}

void Continuation::keepLast(const Carried& carried) noexcept {
  Progress& reaches = walks_[nextWalk_ - 1].kept[1 - side_];
  if (reaches.begun) reaches.last.keep(carried);
}

}  // namespace orvex::inline ORVEX_COUNTS
