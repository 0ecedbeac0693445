#include "orvex/standard/computation.h"

#include <algorithm>

#include "orvex/data/columns.h"
#include "orvex/data/continuation.h"
#include "orvex/data/object.h"

namespace orvex::inline ORVEX_COUNTS::standard {

Series Call::take(const std::shared_ptr<Field>& column) {
  const auto& rows = static_cast<const Field&>(object(column)).values();
  if (rows.size() != static_cast<std::size_t>(count())) raise(faults::SubscriptOutOfRange);
  const Unproven whole = {column, rows.data(), 1, count(), true};
  if (Continuation::current() != nullptr) {
    // Its walks come in one order, whatever the kernels prove.
    checkTaken(whole);
  } else {
    unproven_.push_back(whole);
  }
  taken_.push_back(column);
  return {1, rows.data(), column};
}

Series Call::take(const std::shared_ptr<RecordSet>& set, std::string_view name) {
  return take(object(set).getField(name));
}

Series Call::make(Place first) const {
  const auto column = makeColumn(count_, {}, std::max<Place>(first, 1));
  return {std::max<Place>(first, 1), column->values().data(), column};
}

namespace {

bool areHandled(kernels::Records records, const double* rows) {
  const kernels::Source source{rows, static_cast<std::size_t>(records.last)};
  const auto all = static_cast<std::size_t>(records.last - records.first) + 1;
  return kernels::run(&kernels::Table::handled, source, records) == all;
}

}  // namespace

Series Call::done(const Series& made) {
  // Of a call that goes on with an earlier one the kernels have seen new rows alone.
  const bool proven = proven_ == made.rows && Continuation::current() == nullptr;
  if (!proven && made.first <= count()) unproven_.push_back({made.column, made.rows, made.first, count(), false});
  proven_ = nullptr;
  return made;
}

void Call::prove(const double* rows, Place first, Place last) {
  for (Unproven& column : unproven_) {
    if (column.rows != rows) continue;
    if (first <= column.first) column.first = std::max(column.first, last + 1);
    if (last >= column.last) column.last = std::min(column.last, first - 1);
  }
}

void Call::checkTaken(const Unproven& column) {
  bool handled = false;
  eachComputed(
      column.first,
      [&](kernels::Records records) {
        const kernels::Source source{column.rows, static_cast<std::size_t>(count())};
        const std::size_t done = kernels::run(&kernels::Table::handled, source, records);
        handled = records.first == column.first && done == numberOf({records.first, count()});
        return done;
      },
      [&](int record) { static_cast<void>(Real(column.rows[record - 1])); });
  plain_ = plain_ && handled;
}

void Call::check() {
  for (Unproven& column : unproven_) {
    if (!column.taken || column.first > column.last) continue;
    checkTaken(column);
    column.first = column.last + 1;
  }
}

void Call::settle() {
  check();
  for (const Unproven& column : unproven_) {
    if (column.first > column.last || column.column.expired()) continue;
    plain_ = plain_ && areHandled({static_cast<int>(column.first), static_cast<int>(column.last)}, column.rows);
  }
  unproven_.clear();
}

bool Call::areFinite(kernels::Records records, const double* rows, bool whole) {
  if (areHandled(records, rows)) {
    if (whole) proven_ = rows;
    return true;
  }
  return std::all_of(rows + records.first - 1, rows + records.last, [](double x) { return x - x == 0.0; });
}

Series Call::shown(const Series& series, Place first) {
  return by(
      std::max(first, series.first),
      [&](kernels::Records records, double* rows) { return ran<formulas::Same>({series}, {}, records, rows); },
      [&](auto at, int record) { return at(series, record); });
}

std::shared_ptr<RecordSet> Call::result(std::string_view alias, const std::vector<Named>& columns) {
  check();
  auto set = std::make_shared<RecordSet>();
  for (const auto& [suffix, series] : columns) {
    // A column of the caller's, or one that the result has under another name, is copied.
    const bool taken = std::find(taken_.begin(), taken_.end(), series.column) != taken_.end();
    const auto column = taken ? shown(series, series.first).column : series.column;
    taken_.push_back(column);
    column->setName(std::string(alias).append(suffix));
    set->addField(column);
  }
  return set;
}

}  // namespace orvex::inline ORVEX_COUNTS::standard
