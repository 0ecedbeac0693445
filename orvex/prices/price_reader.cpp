#include "orvex/prices/price_reader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

#include "orvex/data/integer.h"
#include "orvex/data/text.h"
#include "orvex/data/text_file.h"
#include "orvex/prices/line_reader.h"
#include "orvex/prices/text_encoding.h"

namespace orvex::inline ORVEX_COUNTS::prices {

namespace {

const Fault mismatch = Database::loadFault(faults::TypeMismatch.description);
const Fault noRecords = Database::loadFault(faults::SubscriptOutOfRange.description);
const Fault tooMany = Database::loadFault(faults::Overflow.description);

bool isPrice(Role role) {
  return role != Role::Date && role != Role::Clock && role != Role::Other;
}

std::string lineText(std::size_t line) {
  return "line " + std::to_string(line);
}

/// "line 3" or "lines 3, 5, 6 and 12 more".
std::string linesText(const std::vector<std::size_t>& lines) {
  constexpr std::size_t most = 3;
  std::string text = lines.size() == 1 ? "line " : "lines ";
  for (std::size_t i = 0; i < std::min(most, lines.size()); ++i)
    text += (i == 0 ? "" : ", ") + std::to_string(lines[i]);
  if (lines.size() > most) text += " and " + std::to_string(lines.size() - most) + " more";
  return text;
}

std::string counted(std::size_t count, std::string_view what) {
  return std::to_string(count) + ' ' + std::string(what) + (count == 1 ? "" : "s");
}

/// What the cells of a table are parts of.
struct Storage {
  std::string text;
  std::deque<std::string> joined;
};

/// Collects the records of a file line by line, and checks what only all of them show.
class Collection {
 public:
  Collection(std::shared_ptr<Storage> storage, const Options& options)
      : storage_(std::move(storage)), options_(options), reader_(findLayout(storage_->text, options)) {
    const Layout& layout = reader_.layout();
    table_.remarks = layout.remarks;
    table_.storage = storage_;
    for (const ColumnLayout& column : layout.columns) {
      if (isPrice(column.role)) priceColumns_.push_back(table_.columns.size());
      if (column.role == Role::Other) otherColumns_.push_back(table_.columns.size());
      table_.columns.push_back({column.name, column.heading, column.role, {}, {}, 0});
    }
    dateColumn_ = layout.find(Role::Date);
  }

  PriceTable collect() {
    readLines();
    if (table_.count == 0) throw ReadError(noRecords, "It has no records.");
    removeClock();
    settleMissing();
    settleDates();
    settleOrder();
    // Either reading has shown the order; which one it is nobody knows.
    if (datesUnsettled_) table_.times.clear();
    select();
    finishColumns();
    remarkOnOddBars();
    return std::move(table_);
  }

 private:
  void readLines() {
    Lines lines(storage_->text);
    const char* const textEnd = storage_->text.data() + storage_->text.size();
    std::string_view line;
    while (lines.number() + 1 < reader_.layout().firstRecordLine && lines.next(line)) {
    }
    bool first = true;
    while (lines.next(line)) {
      if (line.empty()) continue;
      switch (reader_.read(line, textEnd)) {
        case LineReader::Outcome::Blank:
          break;
        case LineReader::Outcome::Problem:
          if (options_.missing == Missing::Skip && reader_.problem().tooShort) {
            leftOut_.push_back(lines.number());
          } else {
            throw ReadError(mismatch, reader_.problem().text, lines.number(), reader_.problem().cell);
          }
          break;
        case LineReader::Outcome::Record:
          if (first) reserve(line.size() + 1);
          first = false;
          add(lines.number());
      }
    }
  }

  /// Room for the records that the whole text has if they are as long as the first one, or shorter by a ninth.
  void reserve(std::size_t length) {
    const std::size_t records = storage_->text.size() / length * 9 / 8 + 1;
    for (PriceColumn& column : table_.columns) {
      if (isPrice(column.role)) {
        column.numbers.reserve(records);
      } else {
        column.texts.reserve(records);
        if (column.role == Role::Other) column.numbers.reserve(records);
      }
    }
    table_.lines.reserve(records);
    if (reader_.layout().hasDates) table_.times.reserve(records);
    if (reader_.layout().dates == DateShape::DayOrMonth) monthFirst_.reserve(records);
  }

  /// A text that stands as long as the table does.
  std::string_view kept(std::string_view text) {
    const std::string& all = storage_->text;
    if (text.data() >= all.data() && text.data() <= all.data() + all.size()) return text;
    return storage_->joined.emplace_back(text);
  }

  void add(std::size_t number) {
    const auto cells = reader_.cells();
    for (const std::size_t i : priceColumns_) {
      table_.columns[i].numbers.push_back(cells[i].number);
      anyMissing_ |= cells[i].kind == CellKind::Missing;
    }
    for (const std::size_t i : otherColumns_) {
      PriceColumn& column = table_.columns[i];
      if (cells[i].kind == CellKind::Text && !column.isText() && !cells[i].text.empty()) {
        column.textLine = number;
        reader_.keepTexts(i);
        column.numbers = {};
      }
      if (!column.isText()) column.numbers.push_back(cells[i].number);
      column.texts.push_back(kept(cells[i].text));
    }
    if (dateColumn_ != table_.columns.size()) table_.columns[dateColumn_].texts.push_back(kept(reader_.dateText()));
    if (const DateCell* const date = reader_.date()) addDate(*date, number);
    table_.lines.push_back(number);
    ++table_.count;
  }

  /// Keeps 1/2/2020 both ways until some date shows whether the day or the month comes first.
  void addDate(const DateCell& date, std::size_t number) {
    const Time monthFirst = date.monthFirst.value_or(date.time);
    table_.times.push_back(monthFirstLine_ != 0 ? monthFirst : date.time);
    if (date.shape != DateShape::DayOrMonth) return;
    const bool open = monthFirstLine_ == 0 && dayFirstLine_ == 0;
    if (open) monthFirst_.push_back(monthFirst);
    if (date.monthFirst && date.dayFirstHolds) return;
    if (!date.monthFirst && dayFirstLine_ == 0) dayFirstLine_ = number;
    if (!date.dayFirstHolds && monthFirstLine_ == 0) monthFirstLine_ = number;
    if (dayFirstLine_ != 0 && monthFirstLine_ != 0) {
      throw ReadError(mismatch,
                      "The date has the " + std::string(number == dayFirstLine_ ? "day" : "month") +
                          " first, that of " + lineText(std::min(dayFirstLine_, monthFirstLine_)) + " the " +
                          (number == dayFirstLine_ ? "month" : "day") + '.',
                      number, dateColumn_ + 1);
    }
    if (!open) return;
    reader_.settleDates(monthFirstLine_ != 0);
    if (monthFirstLine_ != 0) table_.times.swap(monthFirst_);
    monthFirst_ = {};
  }

  /// The time of the day is a part of the date now.
  void removeClock() {
    const std::size_t clock = reader_.layout().find(Role::Clock);
    if (clock < table_.columns.size())
      table_.columns.erase(table_.columns.begin() + static_cast<std::ptrdiff_t>(clock));
  }

  /// The rows without a value at the beginning and at the end are not computed; those between are a fault, or settled
  /// as the options have it.
  void settleMissing() {
    if (!anyMissing_ && leftOut_.empty()) return;
    std::vector<char> skipped(table_.count, 0);
    std::vector<std::size_t> filled;
    for (PriceColumn& column : table_.columns) {
      if (!isPrice(column.role)) continue;
      std::vector<double>& rows = column.numbers;
      const auto hasValue = [](double row) { return !std::isnan(row); };
      const auto first = static_cast<std::size_t>(std::find_if(rows.begin(), rows.end(), hasValue) - rows.begin());
      if (first == rows.size()) continue;
      auto last = rows.size();
      while (!hasValue(rows[last - 1])) --last;
      if (options_.missing == Missing::Previous) last = rows.size();
      for (std::size_t i = options_.missing == Missing::Skip ? 0 : first;
           i < (options_.missing == Missing::Skip ? rows.size() : last); ++i) {
        if (hasValue(rows[i])) continue;
        if (options_.missing == Missing::Refuse) {
          throw ReadError(mismatch,
                          "It has no value in column " + shown(column.name) +
                              ", and records before and behind it have. --missing skip leaves such records out, "
                              "--missing previous takes the value of the record before.",
                          table_.lines[i], placeOf(column));
        }
        if (options_.missing == Missing::Skip) {
          skipped[i] = 1;
        } else {
          rows[i] = rows[i - 1];
          filled.push_back(table_.lines[i]);
        }
      }
    }
    for (std::size_t i = 0; i < skipped.size(); ++i) {
      if (skipped[i] != 0) leftOut_.push_back(table_.lines[i]);
    }
    keepOnly([&](std::size_t i) { return skipped[i] == 0; });
    if (!leftOut_.empty()) {
      std::sort(leftOut_.begin(), leftOut_.end());
      table_.remarks.push_back(counted(leftOut_.size(), "record") +
                               " without all prices left out: " + linesText(leftOut_) + '.');
    }
    if (!filled.empty()) {
      std::sort(filled.begin(), filled.end());
      table_.remarks.push_back(counted(filled.size(), "missing price") +
                               " taken from the record before: " + linesText(filled) + '.');
    }
    if (table_.count == 0) throw ReadError(noRecords, "No record is left when those without all prices are left out.");
  }

  /// The cell of a column, from 1, in the lines of the file.
  std::size_t placeOf(const PriceColumn& column) const { return reader_.layout().find(column.role) + 1; }

  /// Takes out the records that `keep` does not hold for.
  template <class Keep>
  void keepOnly(Keep&& keep) {
    std::size_t next = 0;
    const auto move = [&](auto& rows, std::size_t from, std::size_t to) {
      if (!rows.empty()) rows[to] = rows[from];
    };
    bool all = true;
    for (std::size_t i = 0; i < table_.count; ++i) {
      if (!keep(i)) {
        all = false;
        continue;
      }
      if (!all) {
        for (PriceColumn& column : table_.columns) {
          move(column.numbers, i, next);
          move(column.texts, i, next);
        }
        move(table_.times, i, next);
        move(monthFirst_, i, next);
        move(table_.lines, i, next);
      }
      ++next;
    }
    if (!all) resize(next);
  }

  void resize(std::size_t count) {
    const auto cut = [&](auto& rows) {
      if (!rows.empty()) rows.resize(count);
    };
    for (PriceColumn& column : table_.columns) {
      cut(column.numbers);
      cut(column.texts);
    }
    cut(table_.times);
    cut(monthFirst_);
    cut(table_.lines);
    table_.count = count;
  }

  /// Which of 1/2/2020 is the day where no date has shown it: the one way in which the dates are in order.
  void settleDates() {
    if (monthFirst_.empty()) return;
    const auto ordered = [](const std::vector<Time>& times) {
      const auto notAfter = [](Time a, Time b) { return a >= b; };
      const auto notBefore = [](Time a, Time b) { return a <= b; };
      return std::adjacent_find(times.begin(), times.end(), notAfter) == times.end() ||
             std::adjacent_find(times.begin(), times.end(), notBefore) == times.end();
    };
    const bool byDay = ordered(table_.times);
    const bool byMonth = ordered(monthFirst_);
    if (table_.times == monthFirst_) return;
    if (byDay == byMonth) {
      datesUnsettled_ = true;
      const bool sameWay = table_.count < 2 || (table_.times[0] < table_.times[1]) == (monthFirst_[0] < monthFirst_[1]);
      if ((!byDay || !sameWay) && options_.order != Order::Keep) {
        throw ReadError(
            mismatch,
            "No date tells whether the day or the month comes first in " + shown(reader_.layout().dateSample) +
                ", and the records are in order either way or neither. --order keep takes them as they are.",
            table_.lines.front(), dateColumn_ + 1);
      }
      table_.remarks.push_back("Nothing tells whether the day or the month comes first in dates such as " +
                               shown(reader_.layout().dateSample) + ", so they stay texts.");
    } else {
      table_.remarks.push_back(std::string("Dates such as ") + shown(reader_.layout().dateSample) +
                               " are read with the " + (byMonth ? "month" : "day") +
                               " first: only so are they in order.");
    }
    if (byMonth) table_.times.swap(monthFirst_);
  }

  void settleOrder() {
    const std::vector<Time>& times = table_.times;
    if (times.size() < 2) return;
    std::size_t up = 0;
    std::size_t down = 0;
    for (std::size_t i = 1; i < times.size(); ++i) {
      up += times[i] > times[i - 1];
      down += times[i] < times[i - 1];
    }
    if (up + 1 == times.size() || options_.order == Order::Keep) return;
    const bool newestFirst = down > up;
    for (std::size_t i = 1; down + 1 != times.size() && i < times.size(); ++i) {
      if (newestFirst ? times[i] < times[i - 1] : times[i] > times[i - 1]) continue;
      const std::string before = dateShown(i - 1);
      const std::string why = times[i] == times[i - 1]
                                  ? "It has the date of " + lineText(table_.lines[i - 1]) + " again, " + before
                                  : "Its date, " + dateShown(i) + ", does not follow " + before + " in " +
                                        lineText(table_.lines[i - 1]) + " as the other dates do, which are in " +
                                        (newestFirst ? "falling" : "rising") + " order";
      throw ReadError(mismatch, why + ". --order keep takes the records as they are.", table_.lines[i],
                      dateColumn_ + 1);
    }
    for (PriceColumn& column : table_.columns) {
      std::reverse(column.numbers.begin(), column.numbers.end());
      std::reverse(column.texts.begin(), column.texts.end());
    }
    std::reverse(table_.times.begin(), table_.times.end());
    std::reverse(table_.lines.begin(), table_.lines.end());
    table_.remarks.emplace_back("The newest record comes first, so the records are read in reverse.");
  }

  std::string dateShown(std::size_t i) const {
    for (const PriceColumn& column : table_.columns) {
      if (column.role == Role::Date) return shown(column.texts[i]);
    }
    return prices::dateText(table_.times[i]);
  }

  /// The records from..to, counted from 0, `to` behind the last.
  void select() {
    const std::size_t from = options_.from ? bound(*options_.from, true) : 0;
    const std::size_t to = options_.to ? bound(*options_.to, false) : table_.count;
    const std::size_t last = std::min(to, table_.count);
    std::size_t first = std::min(from, last);
    if (options_.tail) first = std::max(first, last - std::min(last, *options_.tail));
    if (first == last) {
      std::string text =
          "No record is left of " + counted(table_.count, "record") + " with --from, --to and --tail as they are";
      if (!table_.times.empty()) {
        text += "; the file has " + dateText(table_.times.front()) + " to " + dateText(table_.times.back());
      }
      throw ReadError(noRecords, text + '.');
    }
    if (first > 0 || last < table_.count) keepOnly([&](std::size_t i) { return i >= first && i < last; });
    if (table_.count > static_cast<std::size_t>(Integer::Greatest)) {
      throw ReadError(tooMany, "It has " + std::to_string(table_.count) + " records, and a series has at most " +
                                   std::to_string(Integer::Greatest) + ": --tail " + std::to_string(Integer::Greatest) +
                                   " takes the last ones.");
    }
  }

  std::size_t bound(const std::string& text, bool first) const {
    const std::string option = first ? "--from " : "--to ";
    std::size_t record = 0;
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, record);
    const bool whole = error == std::errc() && behind == end;
    const auto span = readTimeSpan(text);
    if (whole && !(span && !table_.times.empty())) {
      if (record == 0) throw ReadError(mismatch, option + text + ": records are counted from 1.");
      return first ? record - 1 : record;
    }
    if (!span) {
      throw ReadError(
          mismatch, option + shown(text) +
                        " is neither the number of a record nor a date like 2020-01-31, 2020-01 or 2020-01-31 09:30.");
    }
    if (table_.times.empty()) {
      throw ReadError(
          mismatch, option + text +
                        ": the dates of the file could not be read, so records are chosen by their numbers, " + option +
                        "100.");
    }
    if (options_.order == Order::Keep && !std::is_sorted(table_.times.begin(), table_.times.end())) {
      throw ReadError(mismatch,
                      option + text +
                          ": the records are not in the order of their dates, so they are chosen by their numbers, " +
                          option + "100.");
    }
    const auto at = first ? std::lower_bound(table_.times.begin(), table_.times.end(), span->first)
                          : std::upper_bound(table_.times.begin(), table_.times.end(), span->last);
    return static_cast<std::size_t>(at - table_.times.begin());
  }

  void finishColumns() {
    for (PriceColumn& column : table_.columns) {
      if (column.role == Role::Other && !column.isText()) column.texts = {};
      if (column.role == Role::Date) column.textLine = table_.lines.front();
      if (!isPrice(column.role)) continue;
      const auto hasValue = [](double row) { return !std::isnan(row); };
      const auto first = std::find_if(column.numbers.begin(), column.numbers.end(), hasValue);
      if (first == column.numbers.end()) {
        table_.remarks.push_back("The column " + column.name + " has no values at all.");
        continue;
      }
      std::vector<std::string> runs;
      if (first != column.numbers.begin()) {
        runs.push_back("before " + lineText(table_.lines[static_cast<std::size_t>(first - column.numbers.begin())]));
      }
      if (!hasValue(column.numbers.back())) {
        auto last = column.numbers.size();
        while (!hasValue(column.numbers[last - 1])) --last;
        runs.push_back("behind " + lineText(table_.lines[last - 1]));
      }
      if (!runs.empty()) {
        table_.remarks.push_back("The column " + column.name + " has no values " + runs.front() +
                                 (runs.size() > 1 ? " and " + runs.back() : "") +
                                 ": what is computed from it leaves those records out.");
      }
    }
  }

  /// Bars whose prices contradict each other are taken as they are, and told.
  void remarkOnOddBars() {
    const PriceColumn* const open = table_.find(Role::Open);
    const PriceColumn* const high = table_.find(Role::High);
    const PriceColumn* const low = table_.find(Role::Low);
    const PriceColumn* const close = table_.find(Role::Close);
    if (high == nullptr || low == nullptr) return;
    std::size_t count = 0;
    std::size_t first = 0;
    for (std::size_t i = 0; i < table_.count; ++i) {
      const double top = high->numbers[i];
      const double bottom = low->numbers[i];
      bool odd = top < bottom;
      if (open != nullptr) odd = odd || open->numbers[i] > top || open->numbers[i] < bottom;
      if (close != nullptr) odd = odd || close->numbers[i] > top || close->numbers[i] < bottom;
      if (odd && count++ == 0) first = i;
    }
    if (count == 0) return;
    table_.remarks.push_back(counted(count, "record") + (count == 1 ? " has" : " have") +
                             " an open or a close outside the range from low to high, " +
                             (count == 1 ? "in " : "the first in ") + lineText(table_.lines[first]) + '.');
  }

  std::shared_ptr<Storage> storage_;
  const Options& options_;
  LineReader reader_;
  PriceTable table_;
  // The places of the columns of these kinds while the lines are read.
  std::vector<std::size_t> priceColumns_;
  std::vector<std::size_t> otherColumns_;
  std::size_t dateColumn_ = 0;
  std::vector<Time> monthFirst_;    // where the day may come first as well
  std::size_t dayFirstLine_ = 0;    // the first line that shows the day to come first
  std::size_t monthFirstLine_ = 0;  // or the month
  bool datesUnsettled_ = false;
  bool anyMissing_ = false;
  std::vector<std::size_t> leftOut_;
};

}  // namespace

bool PriceColumn::hasValues() const noexcept {
  return std::any_of(numbers.begin(), numbers.end(), [](double number) { return !std::isnan(number); });
}

const PriceColumn* PriceTable::find(Role role) const noexcept {
  const auto found = std::find_if(columns.begin(), columns.end(), [&](const PriceColumn& column) {
    return column.role == role && (column.isText() || column.hasValues());
  });
  return found == columns.end() ? nullptr : &*found;
}

const PriceColumn* PriceTable::find(std::string_view name) const noexcept {
  for (const auto part : {&PriceColumn::name, &PriceColumn::heading}) {
    const auto found = std::find_if(columns.begin(), columns.end(),
                                    [&](const PriceColumn& column) { return equalNames(column.*part, name); });
    if (found != columns.end()) return &*found;
  }
  return nullptr;
}

PriceTable readFile(const std::string& path, const Options& options) {
  try {
    return read(readBytes(path), options);
  } catch (const Error& error) {
    throw ReadError(Database::loadFault(error.description()), std::string(error.description()) + '.');
  }
}

PriceTable read(std::string bytes, const Options& options) {
  auto storage = std::make_shared<Storage>();
  storage->text = textOf(std::move(bytes));
  return Collection(std::move(storage), options).collect();
}

PriceRows rowsOf(PriceTable table) {
  const auto kept = std::make_shared<const PriceTable>(std::move(table));
  const auto numbers = [&](Role role) {
    const PriceColumn* const column = kept->find(role);
    return column == nullptr ? Rows<double>{} : Rows<double>{column->numbers, kept};
  };
  PriceRows rows{.open = numbers(Role::Open),
                 .high = numbers(Role::High),
                 .low = numbers(Role::Low),
                 .close = numbers(Role::Close),
                 .volume = numbers(Role::Volume)};
  if (const PriceColumn* const dates = kept->find(Role::Date)) rows.dates = {dates->texts, kept};
  return rows;
}

}  // namespace orvex::inline ORVEX_COUNTS::prices
