#include "orvex/standard/computation.h"

#include <algorithm>

#include "orvex/data/columns.h"
#include "orvex/data/continuation.h"
#include "orvex/data/object.h"

namespace orvex::inline ORVEX_COUNTS::standard {

Series Call::take(const std::shared_ptr<Field>& column) {
  const auto& rows = static_cast<const Field&>(object(column)).values();
  if (rows.size() != static_cast<std::size_t>(count())) raise(faults::SubscriptOutOfRange);
  const Span whole = {1, count()};
  unproven_.push_back({column, rows.data(), whole, whole, true});
  // The kernels of a call that goes on with an earlier one see new rows alone, and prove nothing of the column.
  if (Continuation::current() != nullptr) checkTaken(unproven_.back());
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
  const Span whole = {made.first, count()};
  if (!proven && !whole.isEmpty()) unproven_.push_back({made.column, made.rows, whole, whole, false});
  proven_ = nullptr;
  return made;
}

void Call::prove(const double* rows, const Span& span, bool areSized) {
  for (Unproven& column : unproven_) {
    if (column.rows != rows) continue;
    column.finite.drop(span);
    if (areSized) column.sized.drop(span);
  }
}

void Call::checkTaken(Unproven& column) {
  const Span span = column.finite;
  // Rows that an earlier call has looked at are finite.
  Place from = std::max(span.first, Place{keptRows()} + 1);
  column.finite.drop(span);
  const int last = static_cast<int>(span.last);
  const bool handled = from == span.first && areHandled({static_cast<int>(from), last}, column.rows);
  if (handled) column.sized.drop(span);
  try {
    for (; !handled && from <= span.last; ++from) static_cast<void>(Real(column.rows[from - 1]));
    from = span.last;
    // The counter of a loop over all records is stepped after the last one too.
    static_cast<void>(Integer(last) + 1);
  } catch (Error& error) {
    error.setRecord(static_cast<int>(from));
    throw;
  }
}

void Call::check() {
  for (Unproven& column : unproven_) {
    if (column.taken && !column.finite.isEmpty()) checkTaken(column);
  }
}

void Call::settle() {
  check();
  for (const Unproven& column : unproven_) {
    if (column.sized.isEmpty() || column.column.expired()) continue;
    // A call that goes on with an earlier one does not look through all of its rows again.
    plain_ = plain_ && !(column.taken && Continuation::current() != nullptr) &&
             areHandled({static_cast<int>(column.sized.first), static_cast<int>(column.sized.last)}, column.rows);
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

Series Call::copied(const Series& series, Place first) {
  return by(
      first, [&](kernels::Records records, double* rows) { return ran<formulas::Same>({series}, {}, records, rows); },
      [&](auto at, int record) { return at(series, record); });
}

std::shared_ptr<RecordSet> Call::result(std::string_view alias, const std::vector<Named>& columns) {
  check();
  auto set = std::make_shared<RecordSet>();
  for (const auto& [suffix, series] : columns) {
    // A column of the caller's, or one that the result has under another name, is copied.
    const bool taken = std::find(taken_.begin(), taken_.end(), series.column) != taken_.end();
    const auto column = taken ? copied(series, series.first).column : series.column;
    taken_.push_back(column);
    column->setName(std::string(alias).append(suffix));
    set->addField(column);
  }
  return set;
}

}  // namespace orvex::inline ORVEX_COUNTS::standard
