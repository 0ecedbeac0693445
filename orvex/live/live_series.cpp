#include "orvex/live/live_series.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <optional>
#include <span>

#include "orvex/catalogue/call_on_values.h"
#include "orvex/catalogue/computed_rows.h"
#include "orvex/catalogue/usual.h"
#include "orvex/data/columns.h"
#include "orvex/data/continuation.h"
#include "orvex/data/host_events.h"
#include "orvex/data/text.h"

namespace orvex::inline ORVEX_COUNTS {

using catalogue::RowRange;
using catalogue::Type;
using catalogue::Value;

namespace {

/// Keeps the host's hook out of the calls of a change: from inside a yield it could change the series under way.
class WithoutYields {
 public:
  WithoutYields() noexcept : hook_(yieldHook()) { setYieldHook({}); }
  WithoutYields(const WithoutYields&) = delete;
  WithoutYields& operator=(const WithoutYields&) = delete;
  ~WithoutYields() { setYieldHook(hook_); }

 private:
  YieldHook hook_;
};

/// Whether the usual value of an argument is an expression of the record count.
bool followsCount(const catalogue::Argument& argument) {
  return argument.usual.given && !argument.usual.text.empty() && argument.type == Type::Integer;
}

std::shared_ptr<Database> recordsOf(int count) {
  auto data = std::make_shared<Database>(count);
  data->MoveFirst();
  return data;
}

}  // namespace

/// A kept call. A change prepares all of them, each after those that it takes columns of, and then commits them all.
class LiveSeries::Kept final : public LiveResult {
 public:
  /// What a column comes from: the prices, or a column of another kept call.
  struct Source {
    std::size_t argument;
    std::shared_ptr<Field> price;
    std::shared_ptr<Kept> kept;
    std::size_t column;
  };

  Kept(Found found, std::vector<Value> given, std::vector<Source> sources, std::optional<double> notComputed)
      : LiveResult(*found.method),
        notComputed_(notComputed),
        object_(found.owner->create()),
        given_(std::move(given)),
        sources_(std::move(sources)) {
    // A span of no records, or of fewer, makes some definitions look at records that are still to come; the code of a
    // choice does not.
    bool looksAhead = false;
    for (std::size_t i = 0; i < given_.size(); ++i) {
      const auto* number = std::get_if<Integer>(&given_[i]);
      looksAhead = looksAhead || (number != nullptr && *number < 1 && method().arguments[i].choices.empty());
    }
    isOfPrices_ = std::none_of(sources_.begin(), sources_.end(), [](const Source& one) { return one.kept; });
    const bool hasRecords = std::any_of(method().columns.begin(), method().columns.end(),
                                        [](const catalogue::Column& column) { return column.record; });
    // Numbers of records that are counted from within the series are those of a fresh call only.
    continues_ = !method().recomputed && !looksAhead && (isOfPrices_ || !hasRecords) &&
                 std::all_of(sources_.begin(), sources_.end(),
                             [](const Source& source) { return source.kept == nullptr || source.kept->continues_; });
  }

  bool takes(const Kept* other) const {
    return std::any_of(sources_.begin(), sources_.end(),
                       [&](const Source& source) { return source.kept.get() == other; });
  }

  /// Computes the result over `count` records of the prices, to be shown when it is committed. Where a record cannot be
  /// computed it is that of the records before, if they are more than it has, with the error attached; what is computed
  /// anew stays as it is then. Only memory that runs out leaves it as an exception.
  void prepare(const std::shared_ptr<RecordSet>& prices, int count) {
    next_.isPrepared = true;
    next_.isMade = false;
    next_.error.reset();
    // The last record may be another now.
    next_.current = std::min(current_, count - 1);
    for (const Source& source : sources_) {
      if (source.kept == nullptr || !source.kept->reached().error) continue;
      if (!next_.error) next_.error = source.kept->reached().error;
      count = std::min(count, source.kept->reached().current);
    }
    while (!next_.error || (continues_ && count > count_)) {
      try {
        const WithoutYields silence;
        compute(prices, count);
        next_.isMade = true;
        return;
      } catch (const Error& error) {
        continuation_.rollBack();
        if (error.isOfMemory()) throw std::bad_alloc();
        // The same record has failed with fewer records before.
        const bool isKnown = !next_.error && error_ && error_->record() == error.record();
        if (!next_.error) next_.error = error;
        if (isKnown || error.record() == 0) return;
        // Some look at a record only when the next one is there.
        count = error.record() < count ? error.record() : count - 1;
      }
    }
  }

  /// Whether what is prepared is an error.
  bool fails() const noexcept { return next_.error.has_value(); }

  void commit() noexcept {
    next_.isPrepared = false;
    error_ = next_.error;
    standing_ = count_;
    current_ = next_.isMade ? next_.count : next_.current;
    if (!next_.isMade) return;
    if (next_.isContinued) {
      continuation_.commit();
      columnsMade_ = continuation_.columnCount();
      if (!next_.shown.empty()) columns_.swap(next_.shown);
      for (std::size_t i = 0; i < columns_.size(); ++i) showRows(*columns_[i], *next_.columns[i], next_.computed[i]);
    } else {
      for (std::size_t i = 0; i < next_.columns.size(); ++i) hideRows(*next_.columns[i], next_.computed[i], 0);
      columns_.swap(next_.columns);
      columnsMade_ = 0;
    }
    standing_ = next_.isContinued && next_.kept > 0 ? next_.before + static_cast<int>(next_.kept) : 0;
    next_.shown.clear();
    computed_.swap(next_.computed);
    count_ = next_.count;
  }

  void rollBack() noexcept {
    next_.isPrepared = false;
    next_.shown.clear();
    continuation_.rollBack();
  }

 private:
  /// What the change under way has made.
  struct Next {
    bool isPrepared = false;
    bool isMade = false;  // the columns are there, which they may be beside an error
    bool isContinued = false;
    std::optional<Error> error;
    int count = 0;
    int current = 0;                              // of the rows before, those of the prices as they are now
    std::int64_t kept = 0;                        // rows of the columns that are as before
    std::vector<std::shared_ptr<Field>> columns;  // of the part that was computed
    int before = 0;                               // the records before that part
    std::vector<std::shared_ptr<Field>> shown;    // the columns to be shown, where there are none yet
    std::vector<RowRange> computed;
  };

  /// The computed rows of a column: where they begin, and where they end if that is not the last record.
  struct RowsOfColumn {
    std::int64_t first;
    std::optional<catalogue::RowExpression> last;
  };

  /// How far it has come, with the change under way where there is one.
  struct Reached {
    int count;
    int current;  // how many of its rows are of the prices as they are: the last may be of a record that was revised
    const std::optional<Error>& error;
  };
  Reached reached() const noexcept {
    if (!next_.isPrepared) return {count_, current_, error_};
    if (next_.isMade) return {next_.count, next_.count, next_.error};
    return {count_, next_.current, next_.error};
  }

  /// The rows of a source and the records before the first of them, with those that are computed as of `count` records.
  struct SourceRows {
    const Field& field;
    int before;
    RowRange computed;
  };
  static SourceRows rowsOf(const Source& source, int count) {
    const Kept& kept = *source.kept;
    const bool isNew = kept.next_.isPrepared && kept.next_.isMade;
    RowRange computed = (isNew ? kept.next_.computed : kept.computed_)[source.column];
    computed.last -= kept.reached().count - count;
    if (!isNew) return {*kept.columns_[source.column], 0, computed};
    return {*kept.next_.columns[source.column], kept.next_.isContinued ? kept.next_.before : 0, computed};
  }

  void compute(const std::shared_ptr<RecordSet>& prices, int count) {
    next_.count = count;
    RowRange part{1, count};
    for (const Source& source : sources_) {
      if (source.kept == nullptr) continue;
      const RowRange computed = rowsOf(source, count).computed;
      part.first = std::max(part.first, computed.first);
      part.last = std::min(part.last, computed.last);
    }
    arguments_ = given_;
    next_.isContinued = continues_ && part.first <= part.last;
    if (next_.isContinued) {
      computeContinued(prices, part, count);
    } else {
      computeAnew(prices, count);
    }
  }

  void computeContinued(const std::shared_ptr<RecordSet>& prices, RowRange part, int count) {
    const int records = part.last - part.first + 1;
    if (next_.before != part.first - 1) continuation_.reset();
    next_.before = part.first - 1;
    for (const Source& source : sources_) {
      Value& argument = arguments_[source.argument];
      if (source.kept != nullptr) {
        const SourceRows rows = rowsOf(source, count);
        argument = partOf(rows.field, next_.before - rows.before, records);
      } else {
        argument = pricesOf(source.price, records);
      }
    }
    bindObjects(prices, records);
    // Rows of another kept call may change with the record that follows them.
    continuation_.begin(records, isOfPrices_);
    next_.kept = continuation_.keptRows();
    {
      const Continuation::Scope scope(continuation_);
      takeColumns(onPart(part.first, [&] { return method().invoke(object_.get(), arguments_); }));
    }
    findComputed(records);
    if (columns_.empty()) {
      for (const auto& column : next_.columns) {
        next_.shown.push_back(std::make_shared<Field>());
        next_.shown.back()->initialize(count, column->name());
      }
    } else {
      for (const auto& column : columns_) column->reserve(count);
    }
  }

  void computeAnew(const std::shared_ptr<RecordSet>& prices, int count) {
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
      const catalogue::Argument& argument = method().arguments[i];
      if (std::holds_alternative<catalogue::Missing>(arguments_[i]) && followsCount(argument)) {
        arguments_[i] = catalogue::usualOf(argument, count);
      }
    }
    if (next_.before != 0) continuation_.reset();
    next_.before = 0;
    for (const Source& source : sources_) {
      arguments_[source.argument] =
          source.kept == nullptr ? pricesOf(source.price, count) : withGaps(rowsOf(source, count), count);
    }
    bindObjects(prices, count);
    next_.computed.clear();
    if (std::any_of(sources_.begin(), sources_.end(), [](const Source& source) { return source.kept != nullptr; })) {
      catalogue::ValuedCall called = catalogue::callOnValues(method(), object_.get(), arguments_);
      takeColumns(called.result);
      next_.computed = std::move(called.computed);
      return;
    }
    takeColumns(catalogue::call(method(), object_.get(), arguments_));
    for (const catalogue::Column& column : method().columns) {
      next_.computed.push_back(catalogue::computedRows(method(), column, count, arguments_));
    }
  }

  void bindObjects(const std::shared_ptr<RecordSet>& prices, int records) {
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
      if (method().arguments[i].type == Type::Database) arguments_[i] = recordsOf(records);
      if (method().arguments[i].type == Type::RecordSet) arguments_[i] = pricesOf(prices, records);
    }
  }

  static std::shared_ptr<Field> partOf(const Field& column, int before, int records) {
    auto part = std::make_shared<Field>();
    part->view(column.rows().part(static_cast<std::size_t>(before), static_cast<std::size_t>(records)), column.name());
    return part;
  }

  /// A price column as the part under way has it.
  std::shared_ptr<Field> pricesOf(const std::shared_ptr<Field>& column, int records) const {
    return column->getRecordCount() == records ? column : partOf(*column, next_.before, records);
  }
  std::shared_ptr<RecordSet> pricesOf(const std::shared_ptr<RecordSet>& prices, int records) const {
    if (prices->fields().front()->getRecordCount() == records) return prices;
    auto part = std::make_shared<RecordSet>();
    for (const std::shared_ptr<Field>& field : prices->fields()) part->addField(pricesOf(field, records));
    return part;
  }

  void takeColumns(const Value& result) {
    const auto fields = std::get<std::shared_ptr<RecordSet>>(result)->fields();
    next_.columns.assign(fields.begin(), fields.end());
  }

  /// A source as a column of the whole series, without values where it is not computed.
  static std::shared_ptr<Field> withGaps(const SourceRows& source, int count) {
    auto column = std::make_shared<Field>();
    if (count == 0) return column;
    column->initialize(count, source.field.name());
    const auto rows = column->writableValues();
    std::fill(rows.begin(), rows.end(), std::numeric_limits<double>::quiet_NaN());
    const auto [first, last] = source.computed;
    if (first <= last) {
      const auto computed = source.field.values().subspan(static_cast<std::size_t>(first - 1 - source.before));
      std::copy_n(computed.begin(), last - first + 1, rows.begin() + (first - 1));
    }
    return column;
  }

  /// The computed rows of a continued call. Expressions are evaluated again only where the record count is in them.
  void findComputed(int records) {
    if (rowsOfColumns_.empty()) {
      std::vector<RowsOfColumn> all;
      for (const catalogue::Column& column : method().columns) {
        all.push_back({catalogue::evaluateRow(column.firstRow, method(), records, arguments_), std::nullopt});
        if (column.lastRow != "N") all.back().last.emplace(column.lastRow, method());
      }
      rowsOfColumns_ = std::move(all);
    }
    next_.computed.clear();
    for (const RowsOfColumn& rows : rowsOfColumns_) {
      const std::int64_t last = rows.last ? (*rows.last)(records, arguments_) : records;
      const std::int64_t end = std::int64_t{records} + 1;
      next_.computed.push_back({static_cast<int>(std::clamp(rows.first, std::int64_t{1}, end)) + next_.before,
                                static_cast<int>(std::clamp(last, std::int64_t{0}, end - 1)) + next_.before});
    }
  }

  void showRows(Field& shown, const Field& column, RowRange computed) const noexcept {
    shown.resize(next_.count);
    const auto to = shown.writableValues().begin() + next_.before;
    const std::span<const double> rows = column.values();
    const auto kept = static_cast<std::ptrdiff_t>(next_.kept);
    std::copy(rows.begin() + kept, rows.end(), to + kept);
    if (next_.kept == 0) std::fill(shown.writableValues().begin(), to, 0.0);
    std::fill(to + static_cast<std::ptrdiff_t>(rows.size()), shown.writableValues().end(), 0.0);
    hideRows(shown, computed, next_.kept == 0 ? 0 : next_.before + next_.kept);
  }

  /// Puts what stands for rows that are not computed into those behind the first `kept`.
  void hideRows(Field& shown, RowRange computed, std::int64_t kept) const noexcept {
    if (!notComputed_) return;
    const auto rows = shown.writableValues();
    const auto count = static_cast<std::ptrdiff_t>(rows.size());
    const auto from = static_cast<std::ptrdiff_t>(kept);
    const std::ptrdiff_t first = std::min<std::ptrdiff_t>(computed.first - 1, count);
    if (from < first) std::fill(rows.begin() + from, rows.begin() + first, *notComputed_);
    const std::ptrdiff_t behind = std::max({static_cast<std::ptrdiff_t>(computed.last), first, from});
    if (behind < count) std::fill(rows.begin() + behind, rows.end(), *notComputed_);
  }

  std::optional<double> notComputed_;
  std::shared_ptr<void> object_;
  std::vector<Value> given_;  // each of its argument's type; `Missing` for those that each change binds
  std::vector<Source> sources_;
  int current_ = 0;
  bool continues_;
  bool isOfPrices_;  // alone: its sources' rows stand but for the last record
  Continuation continuation_;
  std::vector<Value> arguments_;
  std::vector<RowsOfColumn> rowsOfColumns_;
  Next next_;
};

LiveSeries::LiveSeries(double notComputed)
    : columns_{{{std::make_shared<Field>(), &PriceRecord::open, &PriceRows::open},
                {std::make_shared<Field>(), &PriceRecord::high, &PriceRows::high},
                {std::make_shared<Field>(), &PriceRecord::low, &PriceRows::low},
                {std::make_shared<Field>(), &PriceRecord::close, &PriceRows::close},
                {std::make_shared<Field>(), &PriceRecord::volume, &PriceRows::volume}}},
      dates_(std::make_shared<Field>()),
      prices_(std::make_shared<RecordSet>()),
      notComputed_(notComputed) {
  dates_->setName(Database::DateName);
  prices_->addField(dates_);
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    columns_[i].field->setName(Database::PriceNames[i]);
    prices_->addField(columns_[i].field);
  }
}

LiveSeries::LiveSeries(const PriceRows& prices, double notComputed) : LiveSeries(notComputed) {
  const auto hasRows = [&](const PriceField& column) { return !(prices.*column.rows).values.empty(); };
  if (std::none_of(columns_.begin(), columns_.end(), hasRows)) raise(faults::SubscriptOutOfRange);
  for (PriceField& column : columns_) {
    if (hasRows(column)) continue;
    prices_->removeField(column.field->name());
    column.field = nullptr;
  }
  append(prices);
}

LiveSeries::~LiveSeries() = default;

template <class Use>
void LiveSeries::forEachColumn(Use&& use) const {
  use(*dates_);
  for (const PriceField& column : columns_) {
    if (column.field != nullptr) use(*column.field);
  }
  for (const SessionField& sessions : sessions_) use(*sessions.field);
}

template <class Write>
bool LiveSeries::change(Integer count, OnError onError, Write&& write) {
  const int countBefore = count_;
  const auto row = static_cast<std::size_t>(std::max(0, countBefore - 1));
  std::optional<PriceRecord> revised;
  std::string date;
  const auto takeBack = [&] {
    for (const auto& kept : kept_) kept->rollBack();
    forEachColumn([&](Field& column) { column.resize(countBefore); });
    if (revised) setRecord(row, *revised);
  };
  try {
    if (count == countBefore) {
      date = dates_->getStrValue(countBefore);
      revised.emplace().date = date;
      for (const PriceField& column : columns_) {
        if (column.field != nullptr) (*revised).*column.value = column.field->values()[row];
      }
    }
    forEachColumn([&](Field& column) { column.reserve(count); });
    forEachColumn([&](Field& column) { column.resize(count); });
    write();
    for (const auto& kept : kept_) {
      kept->prepare(prices_, count.value());
      if (onError == OnError::Decline && kept->fails()) {
        takeBack();
        return false;
      }
    }
  } catch (const Error& error) {
    takeBack();
    if (error.isOfMemory()) throw std::bad_alloc();
    throw;
  } catch (...) {
    takeBack();
    throw;
  }
  count_ = count.value();
  for (const auto& kept : kept_) kept->commit();
  return true;
}

void LiveSeries::setRecord(std::size_t row, const PriceRecord& record) {
  for (const PriceField& column : columns_) {
    if (column.field != nullptr) column.field->writableValues()[row] = record.*column.value;
  }
  for (const SessionField& sessions : sessions_) {
    sessions.field->writableValues()[row] = prices::sessionOf(record.date, sessions.length);
  }
  const int number = static_cast<int>(row) + 1;
  if (!record.date.empty() || !dates_->getStrValue(number).empty()) dates_->setStrValue(number, record.date);
}

void LiveSeries::append(const PriceRecord& record) {
  change(Integer(std::int64_t{count_} + 1), OnError::Attach,
         [&] { setRecord(static_cast<std::size_t>(count_), record); });
}

void LiveSeries::append(const PriceRows& records) {
  append(records, OnError::Attach);
}

bool LiveSeries::appendUnlessErrors(const PriceRows& records) {
  return append(records, OnError::Decline);
}

bool LiveSeries::append(const PriceRows& records, OnError onError) {
  std::size_t count = records.dates.values.size();
  for (const PriceField& column : columns_) {
    const std::size_t rows = (records.*column.rows).values.size();
    if (column.field == nullptr) continue;
    if (count == 0) count = rows;
    if (rows != count) raise(faults::SubscriptOutOfRange);
  }
  if (count == 0) return true;
  const auto before = static_cast<std::size_t>(count_);
  return change(Integer(before + count), onError, [&] {
    for (const PriceField& column : columns_) {
      if (column.field == nullptr) continue;
      const auto rows = (records.*column.rows).values;
      std::copy(rows.begin(), rows.end(), column.field->writableValues().subspan(before).begin());
    }
    int row = count_;
    for (const std::string_view date : records.dates.values) dates_->setStrValue(++row, date);
    for (const SessionField& sessions : sessions_) fillSessions(sessions, before);
  });
}

void LiveSeries::revise(const PriceRecord& record) {
  if (count_ == 0) raise(faults::SubscriptOutOfRange);
  change(count_, OnError::Attach, [&] { setRecord(static_cast<std::size_t>(count_ - 1), record); });
}

LiveSeries::Found LiveSeries::find(std::string_view method) {
  const auto found = catalogue::findCalculation(method);
  if (!found) raise(faults::InvalidCall);
  return {found->owner, found->method};
}

std::shared_ptr<const LiveResult> LiveSeries::keep(std::string_view name, const std::vector<Argument>& arguments) {
  const Found found = find(name);
  std::vector<const LiveValue*> values(found.method->arguments.size(), nullptr);
  for (const Argument& argument : arguments) {
    const auto* const named =
        std::find_if(found.method->arguments.begin(), found.method->arguments.end(),
                     [&](const catalogue::Argument& one) { return equalNames(one.name, argument.first); });
    if (named == found.method->arguments.end()) raise(faults::InvalidCall);
    values[static_cast<std::size_t>(named - found.method->arguments.begin())] = &argument.second;
  }
  return keep(found, values);
}

std::shared_ptr<const LiveResult> LiveSeries::keep(Found found, const std::vector<LiveValue>& arguments) {
  std::vector<const LiveValue*> values;
  auto next = arguments.begin();
  for (const catalogue::Argument& argument : found.method->arguments) {
    const bool bound = argument.type == Type::Database || argument.type == Type::RecordSet;
    values.push_back(bound || next == arguments.end() ? nullptr : &*next++);
  }
  if (next != arguments.end()) raise(faults::InvalidCall);
  return keep(found, values);
}

std::shared_ptr<LiveSeries::Kept> LiveSeries::findKept(const LiveResult* result) const {
  const auto found = std::find_if(kept_.begin(), kept_.end(), [&](const auto& kept) { return kept.get() == result; });
  if (found == kept_.end()) raise(faults::InvalidCall);
  return *found;
}

void LiveSeries::fillSessions(const SessionField& sessions, std::size_t from) const {
  const std::span<double> rows = sessions.field->writableValues();
  for (std::size_t row = from; row < rows.size(); ++row) {
    rows[row] = prices::sessionOf(dates_->getStrValue(static_cast<int>(row) + 1), sessions.length);
  }
}

std::shared_ptr<Field> LiveSeries::columnNamed(std::string_view name, const catalogue::Argument& argument) {
  if (argument.session) {
    if (const auto length = prices::sessionOfDates(name)) return sessionsOf(*length);
  }
  const Integer index = prices_->getIndex(name);
  return prices_->fields()[static_cast<std::size_t>(index.value() - 1)];
}

std::shared_ptr<Field> LiveSeries::sessionsOf(prices::SessionLength length) {
  const auto found = std::find_if(sessions_.begin(), sessions_.end(),
                                  [&](const SessionField& sessions) { return sessions.length == length; });
  if (found != sessions_.end()) return found->field;
  SessionField sessions{length, std::make_shared<Field>()};
  sessions.field->resize(count_);
  fillSessions(sessions, 0);
  sessions_.push_back(sessions);
  return sessions.field;
}

std::shared_ptr<const LiveResult> LiveSeries::keep(Found found, const std::vector<const LiveValue*>& arguments) {
  if (found.method == nullptr || !catalogue::isCalculation(*found.owner, *found.method) ||
      found.method->result != Type::RecordSet) {
    raise(faults::InvalidCall);
  }
  std::vector<Value> given(arguments.size());
  std::vector<Kept::Source> sources;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const catalogue::Argument& argument = found.method->arguments[i];
    const auto* const number = arguments[i] == nullptr ? nullptr : std::get_if<double>(&arguments[i]->value());
    const auto* const text = arguments[i] == nullptr ? nullptr : std::get_if<std::string>(&arguments[i]->value());
    const auto* const column = arguments[i] == nullptr ? nullptr : std::get_if<LiveColumn>(&arguments[i]->value());
    if (argument.type == Type::Database || argument.type == Type::RecordSet) {
      if (arguments[i] != nullptr) raise(faults::TypeMismatch);
    } else if (argument.type == Type::Field) {
      if (number != nullptr) raise(faults::TypeMismatch);
      if (column != nullptr) {
        std::shared_ptr<Kept> kept = findKept(column->result.get());
        if (column->column >= kept->method().columns.size()) raise(faults::SubscriptOutOfRange);
        sources.push_back({i, nullptr, std::move(kept), column->column});
        continue;
      }
      const std::string_view usual = argument.usual.given ? argument.usual.text : argument.name;
      const std::string_view name = text != nullptr ? std::string_view(*text) : usual;
      sources.push_back({i, columnNamed(name, argument), nullptr, 0});
    } else if (text != nullptr) {
      const auto code = catalogue::readChoice(argument, *text);
      given[i] = catalogue::coerce(code ? Value(std::int32_t{*code}) : Value(*text), argument.type);
    } else if (number != nullptr) {
      given[i] = catalogue::coerce(*number, argument.type);
    } else if (column != nullptr) {
      raise(faults::TypeMismatch);
    } else if (!followsCount(argument)) {
      given[i] = argument.optional ? catalogue::defaultOf(argument) : catalogue::usualOf(argument, 0);
      if (std::holds_alternative<catalogue::Missing>(given[i])) raise(catalogue::ArgumentNotOptional);
    }
  }
  kept_.reserve(kept_.size() + 1);
  auto kept = std::make_shared<Kept>(found, std::move(given), std::move(sources),
                                     notComputed_ == 0.0 ? std::nullopt : std::optional(notComputed_));
  kept->prepare(prices_, count_);
  kept->commit();
  kept_.push_back(kept);
  return kept;
}

void LiveSeries::drop(const std::shared_ptr<const LiveResult>& result) {
  const std::shared_ptr<Kept> kept = findKept(result.get());
  if (std::any_of(kept_.begin(), kept_.end(), [&](const auto& other) { return other->takes(kept.get()); })) {
    raise(faults::InvalidCall);
  }
  std::erase(kept_, kept);
}

}  // namespace orvex::inline ORVEX_COUNTS
