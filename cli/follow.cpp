#include "cli/follow.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

#include "cli/binding.h"
#include "cli/failure.h"
#include "cli/input_file.h"
#include "cli/names.h"
#include "cli/platform.h"
#include "cli/values.h"
#include "orvex/data/text.h"
#include "orvex/live/live_series.h"
#include "orvex/prices/line_reader.h"
#include "orvex/prices/read_error.h"
#include "orvex/prices/text_encoding.h"

namespace orvex::cli {

namespace {

using catalogue::Method;
using catalogue::Type;

volatile std::sig_atomic_t interrupted = 0;

void interrupt(int) {
  interrupted = 1;
}

/// Lines as they come. A file is waited for at its end; the standard input ends.
class GrowingLines {
 public:
  explicit GrowingLines(const std::string& path) : input_(path), grows_(path != "-") {}

  /// The next line, without its end, which stands until the one after; `beforeWait` is run before more is waited for.
  /// False at the end.
  template <class BeforeWait>
  bool next(std::string_view& line, BeforeWait beforeWait) {
    std::size_t searched = begin_;
    for (;;) {
      const std::size_t end = text_.find('\n', searched);
      if (end != std::string::npos) {
        line = take(end);
        begin_ = end + 1;
        return true;
      }
      text_.erase(0, begin_);
      begin_ = 0;
      searched = text_.size();
      beforeWait();
      if (!read()) break;
    }
    if (text_.empty() || interrupted != 0) return false;
    line = take(text_.size());
    begin_ = text_.size();
    return true;
  }

  /// The end of what was read, the line and what follows it.
  const char* textEnd() const { return text_.data() + text_.size(); }

 private:
  std::string_view take(std::size_t end) {
    std::string_view line(text_.data() + begin_, end - begin_);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (isFirst_ && line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
    isFirst_ = false;
    return line;
  }

  bool read() {
    constexpr std::size_t piece = 65536;
    constexpr std::chrono::milliseconds wait(5);  // between two looks at a file
    while (interrupted == 0) {
      const std::size_t size = text_.size();
      text_.resize(size + piece);
      const ssize_t got = ::read(input_.number(), text_.data() + size, piece);
      text_.resize(size + static_cast<std::size_t>(std::max<ssize_t>(0, got)));
      if (got > 0) return true;
      if (got < 0 && errno != EINTR) raise(faults::DeviceError);
      if (got == 0 && !grows_) return false;
      if (got != 0) continue;
      std::this_thread::sleep_for(wait);
      // To the C library of Windows an end that it has met is final, until the position is set.
      lseek(input_.number(), 0, SEEK_CUR);
    }
    return false;
  }

  InputFile input_;
  bool grows_;
  bool isFirst_ = true;
  std::string text_;
  std::size_t begin_ = 0;
};

/// A call of the command line.
struct Followed {
  const catalogue::Class* owner;
  const Method* method;
  std::string name;
  std::vector<NamedText> arguments;
  std::string alias;
  std::shared_ptr<const LiveResult> result;
  bool hasSucceeded = false;
  bool isReported = false;              // its error, since it has succeeded last
  std::vector<std::string> jsonKeys{};  // of its columns

  /// Whether a record that is appended costs no more than itself.
  bool goesOn() const { return !result->error() && result->columnsMade() > 0; }
  /// Whether a record had a value when it was the last, and `behind` others were still to come.
  bool isComputed(std::size_t column, int record, int behind) const {
    const catalogue::RowRange computed = result->computed()[column];
    return computed.first <= record && record <= computed.last - behind;
  }

  std::string columnName(std::size_t column) const { return catalogue::columnName(method->columns[column], alias); }
};

/// Records that are read and not appended yet.
class WaitingRecords {
 public:
  std::size_t count() const { return lines_.size(); }
  std::size_t line(std::size_t index) const { return lines_[index]; }
  std::string_view date(std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : dateEnds_[index - 1];
    return std::string_view(dates_).substr(begin, dateEnds_[index] - begin);
  }
  PriceRecord record(std::size_t index) const {
    return {columns_[0][index], columns_[1][index], columns_[2][index],
            columns_[3][index], columns_[4][index], date(index)};
  }

  void add(const PriceRecord& record, std::size_t line) {
    const double values[] = {record.open, record.high, record.low, record.close, record.volume};
    for (std::size_t i = 0; i < columns_.size(); ++i) columns_[i].push_back(values[i]);
    dates_ += record.date;
    dateEnds_.push_back(dates_.size());
    lines_.push_back(line);
  }

  /// Those from `first` on, in columns that stand until something else is done here.
  PriceRows from(std::size_t first, bool withDates) {
    const auto rows = [&](std::size_t column) {
      return Rows<double>{std::span<const double>(columns_[column]).subspan(first), nullptr};
    };
    dateTexts_.clear();
    for (std::size_t i = first; withDates && i < count(); ++i) dateTexts_.push_back(date(i));
    return {rows(0), rows(1), rows(2), rows(3), rows(4), {dateTexts_, nullptr}};
  }

  void clear() {
    for (auto& column : columns_) column.clear();
    dates_.clear();
    dateEnds_.clear();
    lines_.clear();
  }

 private:
  std::array<std::vector<double>, 5> columns_;
  std::string dates_;  // one behind the other
  std::vector<std::size_t> dateEnds_;
  std::vector<std::size_t> lines_;
  std::vector<std::string_view> dateTexts_;
};

std::string aliasOf(const Method& method, const std::vector<NamedText>& given) {
  for (const catalogue::Argument& argument : method.arguments) {
    if (argument.name != "Alias") continue;
    for (const NamedText& one : given) {
      if (equalNames(one.name, argument.name) && !one.value.empty()) return one.value;
    }
    return std::string(argument.otherwise.text);
  }
  return {};
}

class Following {
 public:
  Following(const FollowOptions& options, Sink& sink) : options_(options), sink_(sink) {
    for (const auto& words : splitCalls(options.words)) addCall(words);
    checkColumnNames();
  }

  void run() {
    GrowingLines lines(file_.value_or("-"));
    std::string_view line;
    const auto finish = [&] {
      appendWaiting();
      sink_.flush();
    };
    while (lines.next(line, finish)) {
      ++number_;
      // As of a file: what is no UTF-8 is taken for Windows-1252.
      if (isUtf8(line)) {
        accept(line, lines.textEnd());
      } else {
        const std::string text = utf8FromWindows1252(line);
        accept(text, text.data() + text.size());
      }
    }
    // What all lines leave open is told.
    if (!reader_ && !beginning_.empty() && interrupted == 0) findReader();
    finish();
    if (interrupted == 0) reportErrors(true);
  }

 private:
  void addCall(const std::vector<std::string>& words) {
    if (words.empty()) throw UsageError("there is no method; \"orvex list\" names them all.");
    const Target target = findTarget(words.front());
    const Method& method = findRunnable(target);
    Followed call{target.owner, &method, fullName(*target.owner, method), {}, {}, nullptr};
    CallWords rest = readWords({words.begin() + 1, words.end()});
    if (rest.file && file_) {
      throw UsageError(fmt::format("\"{}\" would be a second file after \"{}\"; arguments are written NAME=VALUE.",
                                   *rest.file, *file_));
    }
    if (rest.file) file_ = rest.file;
    if (method.result != Type::RecordSet) {
      throw UsageError(fmt::format("{} returns no columns, so there is nothing to follow.", call.name));
    }
    checkNames(*target.owner, method, rest.arguments);
    call.arguments = std::move(rest.arguments);
    call.alias = aliasOf(method, call.arguments);
    for (std::size_t i = 0; i < method.columns.size(); ++i) call.jsonKeys.push_back(jsonText(call.columnName(i)) + ':');
    calls_.push_back(std::move(call));
  }

  void checkColumnNames() const {
    std::vector<std::string> names{std::string(Database::DateName)};
    for (const Followed& call : calls_) {
      for (std::size_t i = 0; i < call.method->columns.size(); ++i) {
        const std::string name = call.columnName(i);
        if (std::any_of(names.begin(), names.end(), [&](const auto& other) { return equalNames(name, other); })) {
          throw UsageError(fmt::format("there would be two columns called \"{}\".{}", name,
                                       call.alias.empty() ? "" : " Give one of them another name with Alias=NAME."));
        }
        names.push_back(name);
      }
    }
  }

  [[noreturn]] void fail(const prices::ReadError& error, std::size_t line) const {
    throw Failure(error.fault(), line == 0 ? fmt::format("no prices could be read. {}", error.what())
                                           : fmt::format("line {}: {}", line, error.what()));
  }

  /// A line in a text that ends at `textEnd`.
  void accept(std::string_view line, const char* textEnd) {
    if (reader_) {
      read(line, textEnd);
    } else {
      learn(line);
    }
  }

  /// Collects lines until it is certain how they are to be read.
  void learn(std::string_view line) {
    constexpr std::size_t most = 200;
    beginning_.append(line).append("\n");
    records_.emplace_back(line);
    if (records_.size() < most) {
      try {
        if (!isCertain()) return;
      } catch (const prices::ReadError&) {
        return;  // more lines may tell
      }
    }
    findReader();
    std::vector<std::string> known = std::move(records_);
    number_ = 0;
    for (const std::string& record : known) {
      ++number_;
      read(record);
    }
  }

  bool isCertain() const {
    return records_.size() >= prices::findLayout(prices::textOf(beginning_), options_.reading).firstRecordLine;
  }

  void findReader() {
    try {
      reader_.emplace(prices::findLayout(prices::textOf(beginning_), options_.reading));
    } catch (const prices::ReadError& error) {
      fail(error, error.line());
    }
    const prices::Layout& layout = reader_->layout();
    for (const std::string& remark : layout.remarks) complain(remark);
    const prices::Role roles[] = {prices::Role::Open, prices::Role::High, prices::Role::Low, prices::Role::Close,
                                  prices::Role::Volume};
    for (std::size_t i = 0; i < places_.size(); ++i) places_[i] = layout.find(roles[i]);
    hasDates_ = layout.find(prices::Role::Date) < layout.columns.size();
    number_ = records_.size();
  }

  void read(std::string_view line) { read(line, line.data() + line.size()); }
  void read(std::string_view line, const char* textEnd) {
    if (number_ < reader_->layout().firstRecordLine) return;
    switch (reader_->read(line, textEnd)) {
      case prices::LineReader::Outcome::Blank:
        return;
      case prices::LineReader::Outcome::Problem:
        reject(reader_->problem().text);
      case prices::LineReader::Outcome::Record:
        take();
    }
  }

  /// What stands before a line that cannot be followed is computed and printed all the same.
  [[noreturn]] void reject(const std::string& why) {
    appendWaiting();
    sink_.flush();
    throw Failure(Database::loadFault(faults::TypeMismatch.description), fmt::format("line {}: {}", number_, why));
  }

  void take() {
    PriceRecord record;
    double* const values[] = {&record.open, &record.high, &record.low, &record.close, &record.volume};
    const auto cells = reader_->cells();
    for (std::size_t i = 0; i < places_.size(); ++i) {
      if (places_[i] < cells.size()) *values[i] = cells[places_[i]].number;
    }
    if (hasDates_) record.date = reader_->dateText();
    checkOrder();
    const bool revises = series_ && hasDates_ && !record.date.empty() && record.date == lastDate_;
    if (!series_) {
      begin(record);
      printChange(record.date, number_);
    } else if (revises) {
      appendWaiting();
      series_->revise(record);
      printChange(record.date, number_);
    } else {
      // Few enough that the first row does not wait for long.
      constexpr std::size_t most = 256;
      waiting_.add(record, number_);
      if (waiting_.count() == most) appendWaiting();
    }
    if (!revises) lastDate_ = record.date;
  }

  /// Appends what has been read and prints its rows: those that one by one would have been printed. Where all calls go
  /// on without an error, many records are one change, since a computed row stays as it is when others follow; where
  /// one fails, each record tells what it brings.
  void appendWaiting() {
    bool atOnce = waiting_.count() > 1;
    for (std::size_t i = 0; i < waiting_.count(); ++i) {
      if (atOnce && std::all_of(calls_.begin(), calls_.end(), [](const Followed& call) { return call.goesOn(); })) {
        const int before = series_->count();
        if (series_->appendUnlessErrors(waiting_.from(i, hasDates_))) {
          for (int record = before + 1; i < waiting_.count(); ++i, ++record) print(waiting_.date(i), record);
          break;
        }
        atOnce = false;
      }
      series_->append(waiting_.record(i));
      printChange(waiting_.date(i), waiting_.line(i));
    }
    waiting_.clear();
  }

  void printChange(std::string_view date, std::size_t line) {
    print(date, series_->count());
    reportErrors(false, line);
  }

  void checkOrder() {
    const prices::DateCell* date = reader_->date();
    if (date == nullptr || date->shape == prices::DateShape::DayOrMonth) return;
    if (lastTime_ && date->time < *lastTime_) {
      reject(
          fmt::format("its date, {}, is before that of the record before, {}. Records are followed as they come, the "
                      "oldest first.",
                      reader_->dateText(), lastDate_));
    }
    lastTime_ = date->time;
  }

  void begin(const PriceRecord& record) {
    PriceRows rows;
    const double* const values[] = {&record.open, &record.high, &record.low, &record.close, &record.volume};
    Rows<double> PriceRows::*const columns[] = {&PriceRows::open, &PriceRows::high, &PriceRows::low, &PriceRows::close,
                                                &PriceRows::volume};
    for (std::size_t i = 0; i < places_.size(); ++i) {
      if (places_[i] < reader_->layout().columns.size()) rows.*columns[i] = {{values[i], 1}, nullptr};
    }
    if (hasDates_) rows.dates = {{&record.date, 1}, nullptr};
    series_.emplace(rows);
    for (Followed& call : calls_) keep(call);
    printHeader();
  }

  void keep(Followed& call) {
    std::vector<LiveSeries::Argument> arguments;
    for (const NamedText& given : call.arguments) {
      const auto argument = std::find_if(call.method->arguments.begin(), call.method->arguments.end(),
                                         [&](const auto& one) { return equalNames(one.name, given.name); });
      const bool ofDates = argument->session && prices::sessionOfDates(given.value).has_value();
      if (argument->type == Type::String || ofDates) {
        arguments.emplace_back(argument->name, given.value);
      } else if (argument->type == Type::Field) {
        arguments.emplace_back(argument->name, columnNamed(given.value, call));
      } else {
        const catalogue::Value number = catalogue::coerce(bindText(*argument, given.value), Type::Double);
        arguments.emplace_back(argument->name, std::get<double>(number));
      }
    }
    try {
      call.result = series_->keep(call.name, arguments);
    } catch (const Error& error) {
      throw Failure(error, fmt::format("{} cannot be followed on these prices: {}. They have {}.", call.name,
                                       error.what(), enumerate(columnNames(&call))));
    }
  }

  /// The columns that a call can take.
  std::vector<std::string> columnNames(const Followed* before) const {
    std::vector<std::string> names;
    for (const auto& field : series_->prices()->fields()) {
      if (field->name() != Database::DateName) names.push_back(field->getName());
    }
    for (const Followed& call : calls_) {
      if (&call == before) break;
      for (std::size_t i = 0; i < call.method->columns.size(); ++i) names.push_back(call.columnName(i));
    }
    return names;
  }

  /// A price column, or a column of a call that stands before.
  LiveValue columnNamed(const std::string& name, const Followed& taker) const {
    for (const std::string_view price : Database::PriceNames) {
      if (equalNames(price, name) && series_->prices()->isValidField(price)) return std::string(price);
    }
    for (const Followed& call : calls_) {
      if (&call == &taker) break;
      for (std::size_t i = 0; i < call.method->columns.size(); ++i) {
        if (equalNames(call.columnName(i), name)) return LiveColumn{call.result, i};
      }
    }
    const std::vector<std::string> names = columnNames(&taker);
    throw Failure(RecordSet::getIndexFault, fmt::format("{}: there is no column \"{}\"; there are {}.{}", taker.name,
                                                        name, enumerate(names), didYouMean(name, names)));
  }

  void printHeader() {
    if (options_.format == Format::Json) return;
    std::vector<std::string> names;
    if (hasDates_) names.emplace_back(Database::DateName);
    for (const Followed& call : calls_) {
      for (std::size_t i = 0; i < call.method->columns.size(); ++i) names.push_back(call.columnName(i));
    }
    sink_.print(csvLine(names));
  }

  /// The row of a record as it was when the record was the last.
  void print(std::string_view date, int record) {
    std::string& out = sink_.text();
    const bool asJson = options_.format == Format::Json;
    bool isFirst = true;
    const auto begin = [&] {
      if (!isFirst) out += ',';
      isFirst = false;
    };
    if (asJson) out += '{';
    if (hasDates_) {
      begin();
      const std::string text(date);
      out += asJson ? fmt::format(R"("{}":{})", Database::DateName, jsonText(text)) : csvCell(text);
    }
    const int behind = series_->count() - record;
    const auto row = static_cast<std::size_t>(record - 1);
    for (const Followed& call : calls_) {
      for (std::size_t i = 0; i < call.method->columns.size(); ++i) {
        begin();
        if (asJson) out += call.jsonKeys[i];
        if (!call.result->error() && call.isComputed(i, record, behind)) {
          appendNumber(out, call.result->columns()[i]->values()[row]);
        } else if (asJson) {
          out += "null";
        }
      }
    }
    out += asJson ? "}\n" : "\n";
    sink_.pass();
  }

  /// Tells of each call that fails after it has had values; at the end of each that has none. Until then there may be
  /// too few records yet.
  void reportErrors(bool atEnd, std::size_t line = 0) {
    const Followed* failed = nullptr;
    for (Followed& call : calls_) {
      if (call.result == nullptr) continue;
      const auto& error = call.result->error();
      if (!error) {
        call.hasSucceeded = true;
        call.isReported = false;
        continue;
      }
      if (atEnd) failed = &call;
      if (!call.hasSucceeded || call.isReported || atEnd) continue;
      call.isReported = true;
      complain(fmt::format("{} could not be computed with line {}: {}", call.name, line, error->what()));
    }
    if (failed == nullptr) return;
    throw Failure(*failed->result->error(),
                  fmt::format("{} {}.", failed->name,
                              failed->hasSucceeded ? "could not be computed to the last record"
                                                   : "has no row: too few records, or an argument that is none"));
  }

  const FollowOptions& options_;
  Sink& sink_;
  std::vector<Followed> calls_;
  std::optional<std::string> file_;

  std::string beginning_;
  std::vector<std::string> records_;
  std::optional<prices::LineReader> reader_;
  std::array<std::size_t, 5> places_{};  // of the prices among the columns of a line
  bool hasDates_ = false;
  std::size_t number_ = 0;  // of the line

  WaitingRecords waiting_;
  std::optional<LiveSeries> series_;
  std::string lastDate_;
  std::optional<prices::Time> lastTime_;
};

}  // namespace

void follow(const FollowOptions& options, Sink& sink) {
  platform::onInterrupt(&interrupt);
  try {
    Following(options, sink).run();
  } catch (const WriteError&) {
    // Whoever read has gone: there is nobody to tell.
    if (!platform::nobodyReads()) throw;
    sink.text().clear();
  }
}

}  // namespace orvex::cli
