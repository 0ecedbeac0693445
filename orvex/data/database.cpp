#include "orvex/data/database.h"

#include <cstdint>
#include <utility>

#include "orvex/data/host_events.h"
#include "orvex/data/number_text.h"
#include "orvex/data/object.h"
#include "orvex/data/text.h"
#include "orvex/data/text_file.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

/// Runs a loader's body; the report of a fault carries the fault's own description.
template <class Body>
void load(Body&& body) {
  try {
    body();
  } catch (...) {
    raise(Database::loadFault(currentFault().description));
  }
}

/// Takes the parts of a line, one after the other.
class LineParts {
 public:
  explicit LineParts(const std::string& delimiter)
      : delimiter_(delimiter),
        endsNumber_(delimiter.size() == 1 &&
                    std::string_view("0123456789+-.eE \t").find(delimiter[0]) == delimiter.npos) {}

  void begin(std::string_view line) { rest_ = line; }

  /// The text before the next delimiter into `part`; false where there is none, and nothing is taken then.
  bool text(std::string_view& part) {
    // An empty delimiter stands in front of every character; an empty line has none.
    if (rest_.empty()) return false;
    const std::size_t at = delimiter_.size() == 1 ? rest_.find(delimiter_[0]) : rest_.find(delimiter_);
    if (at == std::string_view::npos) return false;
    part = rest_.substr(0, at);
    cut(at);
    return true;
  }

  /// The same, as a number.
  bool number(double& value) {
    if (endsNumber_) {
      // The usual case, a number with the delimiter right behind it, needs no search.
      const NumberText read = readNumber(rest_);
      if (read.length < rest_.size() && rest_[read.length] == delimiter_[0]) {
        value = read.value;
        rest_.remove_prefix(read.length + 1);
        return true;
      }
    }
    std::string_view part;
    if (!text(part)) return false;
    value = numberFromText(part);
    return true;
  }

  std::string_view rest() const { return rest_; }

 private:
  void cut(std::size_t at) {
    rest_.remove_prefix(at);
    rest_.remove_prefix(firstCharacterLength(rest_));
  }

  const std::string& delimiter_;
  // No part of a number can be taken for the delimiter.
  bool endsNumber_;
  std::string_view rest_;
};

}  // namespace

void Database::RecordsetCache(std::shared_ptr<RecordSet> NewRecordset) {
  recordset_ = std::move(NewRecordset);
  const std::shared_ptr<RecordSet> adopted = recordset_;
  const auto column = [&](std::string_view name) { return object(adopted).getField(name); };
  columns_.date = column(DateName);
  columns_.open = column(OpenName);
  columns_.high = column(HighName);
  columns_.low = column(LowName);
  columns_.close = column(CloseName);
  columns_.volume = column(VolumeName);
  recordCount_ = columns_.open->getRecordCount();
}

Integer Database::setPosition(Integer Index) {
  if (Index < 1) raise(BeginOfFile);
  // The record behind the last may lie beyond what a count can tell.
  if (Index > std::int64_t{recordCount_.value()} + 1) raise(EndOfFile);
  position_ = Index;
  return 0;
}

void Database::OpenDataBase(const std::string& filename, const std::string& Delimiter) {
  load([&] {
    beginLoad();
    loadLines(filename, Delimiter);
  });
}

void Database::OpenDatabaseByArray(const VariantArray& Ary) {
  loadElements(Ary, [&](int row) {
    const double value = Ary.number(row);
    for (Field* column :
         {columns_.open.get(), columns_.high.get(), columns_.low.get(), columns_.close.get(), columns_.volume.get()}) {
      column->setValue(row, value);
    }
  });
}

void Database::OpenDatabaseByFourArrays(const VariantArray& OpenAry, const VariantArray& HighAry,
                                        const VariantArray& LowAry, const VariantArray& CloseAry) {
  loadElements(OpenAry, [&](int row) {
    columns_.open->setValue(row, OpenAry.number(row));
    columns_.high->setValue(row, HighAry.number(row));
    columns_.low->setValue(row, LowAry.number(row));
    const double close = CloseAry.number(row);
    columns_.close->setValue(row, close);
    columns_.volume->setValue(row, close);
  });
}

void Database::OpenDatabaseByRows(const PriceRows& prices) {
  load([&] {
    recordset_ = std::make_shared<RecordSet>();
    columns_ = {};
    recordCount_ = 0;
    MoveFirst();
    loadRows(prices);
  });
}

void Database::beginLoad() {
  recordset_ = std::make_shared<RecordSet>();
  for (std::shared_ptr<Field>* column :
       {&columns_.date, &columns_.open, &columns_.high, &columns_.low, &columns_.close, &columns_.volume}) {
    *column = std::make_shared<Field>();
  }
}

void Database::initializeColumns(const Columns& columns, Integer count) {
  recordCount_ = count;
  columns.date->initialize(count, DateName);
  columns.open->initialize(count, OpenName);
  columns.high->initialize(count, HighName);
  columns.low->initialize(count, LowName);
  columns.close->initialize(count, CloseName);
  columns.volume->initialize(count, VolumeName);
}

void Database::publish(RecordSet& recordset, const Columns& columns) {
  for (const std::shared_ptr<Field>& column :
       {columns.date, columns.open, columns.high, columns.low, columns.close, columns.volume}) {
    recordset.addField(column);
  }
}

void Database::loadLines(const std::string& filename, const std::string& delimiter) {
  // A host may load again, or let go of everything, from inside a yield: this load goes on with its own objects.
  const std::shared_ptr<Database> self = weak_from_this().lock();
  const std::shared_ptr<RecordSet> recordset = recordset_;
  const Columns columns = columns_;
  const std::string mark = delimiter;  // NOLINT(performance-unnecessary-copy-initialization)
  TextFile file(filename, static_cast<std::size_t>(Integer::Greatest));
  initializeColumns(columns, file.lineCount());

  const YieldHook hook = yieldHook();
  LineParts parts(mark);
  std::string_view line;
  Integer row = 0;
  while (file.nextLine(line)) {
    ++row;
    parts.begin(line);
    std::string_view date;
    if (parts.text(date)) columns.date->setStrValue(row, date);
    for (Field* price : {columns.open.get(), columns.high.get(), columns.low.get(), columns.close.get()}) {
      double value = 0.0;
      if (parts.number(value)) price->setValue(row, value);
    }
    columns.volume->setValue(row, numberFromText(parts.rest()));
    if (hook) hook();
  }
  MoveFirst();
  publish(*recordset, columns);
}

template <class Fill>
void Database::loadElements(const VariantArray& longest, Fill&& fill) {
  load([&] {
    beginLoad();
    initializeColumns(columns_, longest.upperBound());
    for (int row = 0; row < recordCount_;) fill(++row);
    publish(*recordset_, columns_);
  });
}

void Database::loadRows(const PriceRows& prices) {
  recordCount_ = prices.dates.values.size();
  const auto add = [&](std::shared_ptr<Field>& field, const Rows<double>& rows, std::string_view name) {
    if (rows.values.empty()) return;
    field = std::make_shared<Field>();
    field->view(rows, name);
    recordset_->addField(field);
    if (recordCount_ == 0) recordCount_ = field->getRecordCount();
    if (recordCount_ != field->getRecordCount()) raise(faults::SubscriptOutOfRange);
  };
  if (recordCount_ > 0) {
    columns_.date = std::make_shared<Field>();
    columns_.date->initialize(recordCount_, DateName);
    columns_.date->viewTexts(prices.dates);
    recordset_->addField(columns_.date);
  }
  add(columns_.open, prices.open, OpenName);
  add(columns_.high, prices.high, HighName);
  add(columns_.low, prices.low, LowName);
  add(columns_.close, prices.close, CloseName);
  add(columns_.volume, prices.volume, VolumeName);
  if (recordCount_ == 0) raise(faults::SubscriptOutOfRange);
}

}  // namespace orvex::inline ORVEX_COUNTS
