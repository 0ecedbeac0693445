#include "cli/run.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <system_error>

#include "cli/binding.h"
#include "cli/call.h"
#include "cli/facts.h"
#include "cli/failure.h"
#include "cli/names.h"
#include "cli/platform.h"
#include "cli/price_file.h"
#include "cli/values.h"
#include "orvex/catalogue/call_on_values.h"
#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/text.h"

namespace orvex::cli {

namespace {

using catalogue::Method;
using catalogue::RowRange;
using catalogue::Type;
using catalogue::Value;

/// Tells on the standard error how long each part of a run took, if it is asked to.
class Stopwatch {
 public:
  explicit Stopwatch(bool wanted) : wanted_(wanted) {}

  /// Of what went through `bytes` of a file, how many a second as well.
  void tell(std::string_view part, std::uintmax_t bytes = 0) {
    const Clock::time_point now = Clock::now();
    const double seconds = std::chrono::duration<double>(now - last_).count();
    last_ = now;
    if (!wanted_) return;
    complain(fmt::format("{} took {:.3f} s{}", part, seconds,
                         bytes == 0 ? "" : fmt::format(", {:.0f} MB/s", static_cast<double>(bytes) / 1e6 / seconds)));
  }

 private:
  using Clock = std::chrono::steady_clock;

  bool wanted_;
  Clock::time_point last_ = Clock::now();
};

/// 0 where it cannot be told, as of a pipe.
std::uintmax_t sizeOf(const std::string& path) {
  std::error_code none;
  const std::uintmax_t size = std::filesystem::file_size(platform::pathOf(path), none);
  return none ? 0 : size;
}

void checkOptions(const std::string& name, const Method& method, const CallWords& words, bool everyRecord,
                  const RunOptions& options) {
  if (words.file && !needsFile(method)) {
    throw UsageError(
        fmt::format("{} takes no file, so \"{}\" has no place; arguments are written NAME=VALUE.", name, *words.file));
  }
  if (method.result == Type::RecordSet || everyRecord) return;
  const char* option = options.append        ? "--append"
                       : options.blankWarmup ? "--warmup"
                       : options.last        ? "--last"
                                             : nullptr;
  if (option != nullptr) {
    const std::string_view type = catalogue::typeName(method.result);
    throw UsageError(fmt::format("{} is for methods that return columns; {} returns a{} {}.", option, name,
                                 type.starts_with('I') ? "n" : "", type));
  }
}

std::vector<Written> findWritten(const Method& method, std::span<const Value> before, std::span<const Value> after) {
  std::vector<Written> written;
  for (std::size_t i = 0; i < after.size(); ++i) {
    const bool given = !std::holds_alternative<catalogue::Missing>(before[i]);
    if (method.arguments[i].written && (!given || jsonValue(before[i]) != jsonValue(after[i]))) {
      written.push_back({std::string(method.arguments[i].name), after[i], given});
    }
  }
  return written;
}

/// What the computed records of a result have about them that could be overlooked.
void remarkOnRecords(const RecordSet& result, const Method& method, const catalogue::ValuedCall& called, int count) {
  if (called.part.first > 1 || called.part.last < count) {
    complain(fmt::format("computed from the records {} to {} of {}: a column that it takes has no value in the others.",
                         called.part.first, called.part.last, count));
  }
  // A method of a span of records leaves out what lies behind it because it was told to.
  const bool ofSpan = std::any_of(method.arguments.begin(), method.arguments.end(),
                                  [](const auto& argument) { return argument.record; });
  for (std::size_t i = 0; i < called.computed.size(); ++i) {
    const std::string name = result.fields()[i]->getName();
    const auto [first, last] = called.computed[i];
    if (first > last) {
      complain(fmt::format("{} has no computed record: all of its rows are empty, or zeros.", name));
    } else if (last < called.part.last && !ofSpan) {
      complain(fmt::format("{} is computed to record {} only, not in the last one.", name, last));
    }
  }
}

/// The columns of the file that stand before the result.
ShownColumns beginWithFile(const PriceFile* file, const RunOptions& options) {
  ShownColumns shown;
  if (file == nullptr) return shown;
  if (options.append) {
    shown.columns = columnsOf(*file);
  } else if (file->dates != nullptr && options.format == Format::Json) {
    shown.dates = file->dates;
  } else if (file->dates != nullptr) {
    shown.columns.push_back({file->dates, true, {1, file->dates->getRecordCount().value()}});
  }
  return shown;
}

/// Adds a column of the result. UsageError for a name that another column has: what comes out could not be told apart.
void addResult(ShownColumns& shown, const Method& method, const ShownColumn& added) {
  const std::string name = added.field->getName();
  const bool taken = std::any_of(shown.columns.begin(), shown.columns.end(),
                                 [&](const ShownColumn& column) { return equalNames(column.field->getName(), name); });
  if (taken) {
    const bool aliased = std::any_of(method.arguments.begin(), method.arguments.end(),
                                     [](const auto& argument) { return argument.name == "Alias"; });
    throw UsageError(fmt::format("there would be two columns called \"{}\".{}", name,
                                 aliased ? " Give the result another name with Alias=NAME." : ""));
  }
  shown.columns.push_back(added);
}

void chooseRecords(ShownColumns& shown, int count, const RunOptions& options) {
  shown.records = {std::max(1, count - options.last.value_or(count) + 1), count};
}

ShownColumns selectColumns(const RecordSet& result, const Method& method, const catalogue::ValuedCall& called,
                           const PriceFile* file, const RunOptions& options) {
  ShownColumns shown = beginWithFile(file, options);
  int count = 0;
  for (std::size_t i = 0; i < result.fields().size(); ++i) {
    const auto& field = result.fields()[i];
    ShownColumn column{field, false, catalogue::valuedRows(field->values()), called.computed[i]};
    count = std::max(count, column.filled.last);
    if (options.blankWarmup.value_or(options.format != Format::Json)) column.filled = *column.computed;
    addResult(shown, method, column);
  }
  chooseRecords(shown, count, options);
  return shown;
}

/// The notes of the call at each record, as a column of texts and one of values.
void runEveryRecord(Sink& sink, const Call& call, const BoundCall& bound, const catalogue::Argument& record,
                    const RunOptions& options) {
  const Integer count = call.file->data->getRecordCount();
  const auto texts = makeColumn(count, "Text");
  const auto values = makeColumn(count, "Value");
  const RowRange part = catalogue::partWithValues(bound.values);
  // Without any record the method says so.
  for (int row = part.first; row <= std::max(part.first, part.last); ++row) {
    std::vector<Value> arguments = bound.values;
    arguments[static_cast<std::size_t>(&record - call.method.arguments.begin())] = Integer(row);
    const Value result = call(arguments).result;
    const Note& note = object(std::get<std::shared_ptr<Note>>(result));
    texts->setStrValue(row, note.getNote());
    values->setValue(row, note.getValue());
  }
  ShownColumns shown = beginWithFile(call.file, options);
  addResult(shown, call.method, {texts, true, part});
  addResult(shown, call.method, {values, false, part});
  chooseRecords(shown, count.value(), options);
  showColumns(sink, shown, options.format);
}

}  // namespace

void run(const RunOptions& options, Sink& sink) {
  const Target target = findTarget(options.target);
  const Method& method = findRunnable(target);
  const std::string name = fullName(*target.owner, method);
  CallWords words = readWords(options.words);
  checkNames(*target.owner, method, words.arguments);
  const catalogue::Argument* const record = askedRecord(method);
  const bool everyRecord =
      record != nullptr && std::erase_if(words.arguments, [&](const NamedText& one) {
                             return equalNames(one.name, record->name) && equalNames(one.value, "all");
                           }) > 0;
  checkOptions(name, method, words, everyRecord, options);
  Stopwatch watch(options.timings);
  std::optional<PriceFile> prices;
  if (words.file) {
    prices = readPriceFile(*words.file, options.reading);
    watch.tell("reading", sizeOf(*words.file));
  }
  const PriceFile* const file = prices ? &*prices : nullptr;
  if (file != nullptr && !options.quiet) std::for_each(file->remarks.begin(), file->remarks.end(), complain);

  const BoundCall bound = bindArguments(*target.owner, method, words.arguments, file);
  const Call call{*target.owner, method, name, file};
  if (everyRecord) return runEveryRecord(sink, call, bound, *record, options);
  if (!bound.usual.empty() && !options.quiet) complain("with the usual" + bound.usual);
  std::vector<Value> arguments = bound.values;
  const catalogue::ValuedCall called = call(arguments);
  watch.tell("computing");

  const Value& result = called.result;
  const std::vector<Written> written = findWritten(method, bound.values, arguments);
  if (const auto* note = std::get_if<std::shared_ptr<Note>>(&result)) {
    sink.print(showNote(object(*note), written, options.format));
  } else if (const auto* columns = std::get_if<std::shared_ptr<RecordSet>>(&result)) {
    if (file != nullptr && !options.quiet) {
      remarkOnRecords(object(*columns), method, called, file->data->getRecordCount().value());
    }
    ShownColumns shown = selectColumns(object(*columns), method, called, file, options);
    shown.written = written;
    if (file != nullptr) shown.position = file->data->getPosition();
    showColumns(sink, shown, options.format);
  } else {
    sink.print(showValue(result, written, options.format));
  }
  if (options.timings) sink.flush();
  watch.tell("printing");
}

}  // namespace orvex::cli
