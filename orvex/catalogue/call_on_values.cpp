#include "orvex/catalogue/call_on_values.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "orvex/data/columns.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

namespace {

/// Hands every column that a call reads to `see`: those given, and the prices of a set.
template <class See>
void eachColumn(std::span<const Value> arguments, See&& see) {
  for (const Value& argument : arguments) {
    if (const auto* column = std::get_if<std::shared_ptr<Field>>(&argument); column != nullptr && *column != nullptr) {
      see(**column);
    }
    const auto* set = std::get_if<std::shared_ptr<RecordSet>>(&argument);
    if (set == nullptr || *set == nullptr) continue;
    for (const std::string_view name : Database::PriceNames) {
      if ((*set)->isValidField(name)) see(*(*set)->getField(name));
    }
  }
}

/// The record count of the database, or else of the longest column.
int recordCount(std::span<const Value> arguments) {
  for (const Value& argument : arguments) {
    const auto* data = std::get_if<std::shared_ptr<Database>>(&argument);
    if (data != nullptr && *data != nullptr) return (*data)->getRecordCount().value();
  }
  int count = 0;
  eachColumn(arguments, [&](const Field& column) { count = std::max(count, column.getRecordCount().value()); });
  return count;
}

/// The rows of a column as far as the series has records.
std::span<const double> rowsOf(const Field& column, int count) {
  const std::span<const double> rows = column.values();
  return rows.first(std::min(rows.size(), static_cast<std::size_t>(count)));
}

std::shared_ptr<Field> cut(const std::shared_ptr<Field>& column, RowRange part) {
  if (column == nullptr) return nullptr;
  const std::span<const double> rows = column->values();
  const auto first = std::min(rows.size(), static_cast<std::size_t>(part.first - 1));
  const auto last = std::min(rows.size(), static_cast<std::size_t>(std::max(part.first - 1, part.last)));
  if (first == last) {
    auto none = std::make_shared<Field>();
    none->setName(column->name());
    return none;
  }
  auto piece = std::make_shared<Field>();
  piece->view(column->rows().part(first, last - first), column->name());
  return piece;
}

std::shared_ptr<RecordSet> cut(const std::shared_ptr<RecordSet>& set, RowRange part) {
  if (set == nullptr) return nullptr;
  auto pieces = std::make_shared<RecordSet>();
  for (const std::string_view name : Database::PriceNames) {
    if (set->isValidField(name)) pieces->addField(cut(set->getField(name), part));
  }
  return pieces;
}

/// A call's arguments for a part of the series, and what comes of it for the whole.
class Part {
 public:
  Part(RowRange part, int count) : part_(part), count_(count) {}

  std::vector<Value> argumentsFor(const Method& method, std::span<const Value> arguments) const {
    std::vector<Value> pieces(arguments.begin(), arguments.end());
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      Value& piece = pieces[i];
      if (const auto* column = std::get_if<std::shared_ptr<Field>>(&piece)) {
        piece = cut(*column, part_);
      } else if (const auto* set = std::get_if<std::shared_ptr<RecordSet>>(&piece)) {
        piece = cut(*set, part_);
      } else if (const auto* data = std::get_if<std::shared_ptr<Database>>(&piece); data != nullptr && *data) {
        auto series = std::make_shared<Database>(std::max(0, part_.last - before()));
        series->MoveFirst();
        piece = std::move(series);
      } else if (method.arguments[i].record && !std::holds_alternative<Missing>(piece)) {
        piece = std::get<Integer>(coerce(piece, Type::Integer)) - before();
      }
    }
    return pieces;
  }

  /// What the call has converted and written back, and where it has left the cursor.
  void giveBack(const Method& method, std::span<Value> pieces, std::span<Value> arguments) const {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      if (const auto* series = std::get_if<std::shared_ptr<Database>>(&pieces[i]); series != nullptr && *series) {
        const auto& data = std::get<std::shared_ptr<Database>>(arguments[i]);
        data->setPosition((*series)->getPosition() + before());
      } else if (method.arguments[i].record) {
        if (const auto* record = std::get_if<Integer>(&pieces[i])) arguments[i] = *record + before();
      } else if (method.arguments[i].type != Type::Field && method.arguments[i].type != Type::RecordSet) {
        arguments[i] = std::move(pieces[i]);
      }
    }
  }

  /// The result in records of the whole series.
  Value whole(const Method& method, Value result) const {
    if (auto* note = std::get_if<std::shared_ptr<Note>>(&result); note != nullptr && *note) {
      // A period of 0 names no record.
      if ((*note)->getPeriod() > 0) (*note)->setPeriod((*note)->getPeriod() + before());
    } else if (auto* set = std::get_if<std::shared_ptr<RecordSet>>(&result); set != nullptr && *set) {
      auto columns = std::make_shared<RecordSet>();
      std::size_t i = 0;
      for (const std::shared_ptr<Field>& piece : (*set)->fields()) {
        columns->addField(whole(method.columns[i++].record, *piece));
      }
      return columns;
    }
    return result;
  }

 private:
  int before() const { return part_.first - 1; }

  std::shared_ptr<Field> whole(bool ofRecords, const Field& piece) const {
    const std::span<const double> rows = piece.values();
    auto column = makeColumn(count_, piece.name(), part_.first, before() + static_cast<std::int64_t>(rows.size()));
    // A row that is not computed is 0, and no record.
    std::transform(rows.begin(), rows.end(), column->writableValues().begin() + before(),
                   [&](double row) { return ofRecords && row != 0.0 ? row + before() : row; });
    return column;
  }

  RowRange part_;
  int count_;
};

}  // namespace

RowRange valuedRows(std::span<const double> rows) {
  const auto hasValue = [](double row) { return !std::isnan(row); };
  const auto first = std::find_if(rows.begin(), rows.end(), hasValue);
  const auto last = std::find_if(rows.rbegin(), rows.rend(), hasValue);
  return {static_cast<int>(first - rows.begin()) + 1, static_cast<int>(rows.rend() - last)};
}

RowRange partWithValues(std::span<const Value> arguments) {
  const int count = recordCount(arguments);
  RowRange part{1, count};
  eachColumn(arguments, [&](const Field& column) {
    const std::span<const double> rows = rowsOf(column, count);
    if (rows.empty()) return;
    const RowRange valued = valuedRows(rows);
    part.first = std::max(part.first, valued.first);
    if (std::isnan(rows.back())) part.last = std::min(part.last, valued.last);
  });
  return part;
}

ValuedCall callOnValues(const Method& method, void* object, std::span<Value> arguments) {
  const int count = recordCount(arguments);
  ValuedCall outcome{{}, partWithValues(arguments), {}};
  const RowRange& part = outcome.part;
  const auto findComputed = [&](int records, std::span<const Value> given) {
    if (method.result != Type::RecordSet) return;
    for (const Column& column : method.columns) {
      const RowRange rows = computedRows(method, column, records, given);
      outcome.computed.push_back({rows.first + part.first - 1, rows.last + part.first - 1});
    }
  };
  if (part.first == 1 && part.last == count) {
    outcome.result = call(method, object, arguments);
    findComputed(count, arguments);
    return outcome;
  }
  const Part piece(part, count);
  std::vector<Value> pieces = piece.argumentsFor(method, arguments);
  try {
    outcome.result = piece.whole(method, onPart(part.first, [&] { return call(method, object, pieces); }));
  } catch (...) {
    piece.giveBack(method, pieces, arguments);
    throw;
  }
  findComputed(part.last - part.first + 1, pieces);
  piece.giveBack(method, pieces, arguments);
  return outcome;
}

std::optional<Gap> findGap(std::span<const Value> arguments) {
  std::optional<Gap> gap;
  const int count = recordCount(arguments);
  eachColumn(arguments, [&](const Field& column) {
    const std::span<const double> rows = rowsOf(column, count);
    const RowRange valued = valuedRows(rows);
    for (int row = valued.first; !gap && row < valued.last; ++row) {
      if (std::isnan(rows[static_cast<std::size_t>(row - 1)])) gap = Gap{column.getName(), row};
    }
  });
  return gap;
}

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
