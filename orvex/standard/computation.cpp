#include "orvex/standard/computation.h"

#include <algorithm>

#include "orvex/data/columns.h"
#include "orvex/data/object.h"

namespace orvex::inline ORVEX_COUNTS::standard {

Series Call::take(const std::shared_ptr<Field>& column) {
  const auto& rows = static_cast<const Field&>(object(column)).values();
  if (rows.size() != static_cast<std::size_t>(count())) raise(faults::SubscriptOutOfRange);
  bool handled = false;
  eachComputed(
      1,
      [&](kernels::Records records) {
        const std::size_t done = kernels::run(&kernels::Table::handled, kernels::source(rows), records);
        handled = done == rows.size();
        return done;
      },
      [&](int record) { static_cast<void>(Real(rows[static_cast<std::size_t>(record) - 1])); });
  plain_ = plain_ && handled;
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
  if (isPlain() && made.first <= count()) plain_ = areHandled({static_cast<int>(made.first), count()}, made.rows);
  return made;
}

bool Call::areFinite(kernels::Records records, const double* rows) const {
  return areHandled(records, rows) ||
         std::all_of(rows + records.first - 1, rows + records.last, [](double x) { return x - x == 0.0; });
}

Series Call::shown(const Series& series, Place first) {
  return by(
      std::max(first, series.first),
      [&](kernels::Records records, double* rows) {
        return kernels::run(&kernels::Table::copy, rowsOf(series.column), records, rows);
      },
      [&](auto at, int record) { return at(series, record); });
}

std::shared_ptr<RecordSet> Call::result(std::string_view alias, const std::vector<Named>& columns) {
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
