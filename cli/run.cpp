#include "cli/run.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <system_error>

#include "cli/binding.h"
#include "cli/facts.h"
#include "cli/failure.h"
#include "cli/names.h"
#include "cli/price_file.h"
#include "cli/values.h"
#include "orvex/catalogue/call_on_values.h"
#include "orvex/data/object.h"

namespace orvex::cli {

namespace {

using catalogue::Class;
using catalogue::Column;
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
  const std::uintmax_t size = std::filesystem::file_size(path, none);
  return none ? 0 : size;
}

const Method& findRunnable(const Target& target) {
  const Class& owner = *target.owner;
  if (owner.holdsState) {
    throw UsageError(
        fmt::format("{0} is a class whose objects hold data between calls; a single call of one shows nothing, so it "
                    "is not run. \"orvex describe {0}\" tells what it does.",
                    owner.name));
  }
  if (target.methods.empty()) {
    std::vector<std::string> names;
    for (const Method* method : owner.methods) names.emplace_back(method->name);
    throw UsageError(fmt::format("{0} is a class; name one of its methods as {0}.METHOD. It has {1}.", owner.name,
                                 enumerate(names)));
  }
  for (const Method* method : target.methods) {
    if (catalogue::isCalculation(owner, *method)) return *method;
  }
  throw UsageError(
      fmt::format("{} is a property, which computes nothing by itself.", fullName(owner, *target.methods.front())));
}

void checkOptions(const std::string& name, const Method& method, const CallWords& words, const RunOptions& options) {
  if (words.file && !needsFile(method)) {
    throw UsageError(
        fmt::format("{} takes no file, so \"{}\" has no place; arguments are written NAME=VALUE.", name, *words.file));
  }
  if (method.result == Type::RecordSet) return;
  const char* option = options.append        ? "--append"
                       : options.blankWarmup ? "--warmup"
                       : options.last        ? "--last"
                                             : nullptr;
  if (option != nullptr) {
    throw UsageError(fmt::format("{} is for methods that return columns; {} returns a {}.", option, name,
                                 catalogue::typeName(method.result)));
  }
}

/// What may lie behind an error that a method reports in its general words only.
std::string explain(const std::string& name, const Method& method, std::span<const Value> arguments,
                    const PriceFile* file) {
  std::string text = fmt::format("{} could not be computed.", name);
  if (const auto gap = catalogue::findGap(arguments)) {
    text += fmt::format(" {} has no value in record {}, and values before and behind it.", gap->column, gap->row);
  }
  if (file != nullptr) {
    std::vector<std::string> lacking;
    for (const std::string_view price :
         {Database::OpenName, Database::HighName, Database::LowName, Database::CloseName, Database::VolumeName}) {
      if (!file->prices->isValidField(std::string(price))) lacking.emplace_back(price);
    }
    const bool takesPrices = std::any_of(method.arguments.begin(), method.arguments.end(),
                                         [](const auto& argument) { return argument.type == Type::RecordSet; });
    if (takesPrices && !lacking.empty()) {
      text += fmt::format(" It takes prices by name, and \"{}\" has no numbers for {}.", file->name,
                          enumerate(lacking, "or"));
    }
    const int count = file->data->getRecordCount().value();
    for (const Column& column : method.columns) {
      const RowRange rows = catalogue::computedRows(method, column, count, arguments);
      if (rows.first <= rows.last) continue;
      text += fmt::format(" With these arguments its first value would stand in record {}, and \"{}\" has {} records.",
                          catalogue::evaluateRow(column.firstRow, method, count, arguments), file->name, count);
      break;
    }
  }
  return text + fmt::format(" \"orvex describe {}\" tells what it takes and when it fails.", name);
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

ShownColumns selectColumns(const RecordSet& result, const catalogue::ValuedCall& called, const PriceFile* file,
                           const RunOptions& options) {
  ShownColumns shown;
  const auto add = [&](const std::shared_ptr<Field>& field, bool texts) {
    const RowRange all{1, field->getRecordCount().value()};
    shown.columns.push_back({field, texts, texts ? all : catalogue::valuedRows(field->values())});
  };
  if (file != nullptr && options.append) {
    for (const FileColumn& column : file->columns) add(column.field, column.textLine.has_value());
  } else if (file != nullptr && file->dates != nullptr && options.format != Format::Json) {
    add(file->dates, true);
  }
  int count = 0;
  for (int i = 1; i <= result.getFieldCount(); ++i) {
    add(result.fields()[static_cast<std::size_t>(i - 1)], false);
    ShownColumn& column = shown.columns.back();
    count = std::max(count, column.filled.last);
    column.computed = called.computed[static_cast<std::size_t>(i - 1)];
    if (options.blankWarmup.value_or(options.format != Format::Json)) column.filled = *column.computed;
  }
  shown.records = {std::max(1, count - options.last.value_or(count) + 1), count};
  return shown;
}

}  // namespace

void run(const RunOptions& options, Sink& sink) {
  const Target target = findTarget(options.target);
  const Method& method = findRunnable(target);
  const std::string name = fullName(*target.owner, method);
  const CallWords words = readWords(options.words);
  checkNames(*target.owner, method, words.arguments);
  checkOptions(name, method, words, options);
  Stopwatch watch(options.timings);
  std::optional<PriceFile> prices;
  if (words.file) {
    prices = readPriceFile(*words.file, options.reading);
    watch.tell("reading", sizeOf(*words.file));
  }
  const PriceFile* const file = prices ? &*prices : nullptr;
  if (file != nullptr) std::for_each(file->remarks.begin(), file->remarks.end(), complain);

  const std::vector<Value> before = bindArguments(*target.owner, method, words.arguments, file);
  std::vector<Value> arguments = before;
  catalogue::ValuedCall called;
  try {
    called = catalogue::callOnValues(method, target.owner->create().get(), arguments);
  } catch (const Error& error) {
    throw Failure(error.fault(), explain(name, method, arguments, file));
  }

  watch.tell("computing");

  const Value& result = called.result;
  const std::vector<Written> written = findWritten(method, before, arguments);
  if (const auto* note = std::get_if<std::shared_ptr<Note>>(&result)) {
    sink.print(showNote(object(*note), written, options.format));
  } else if (const auto* columns = std::get_if<std::shared_ptr<RecordSet>>(&result)) {
    if (file != nullptr) remarkOnRecords(object(*columns), method, called, file->data->getRecordCount().value());
    ShownColumns shown = selectColumns(object(*columns), called, file, options);
    shown.written = written;
    if (file != nullptr) shown.position = file->data->getPosition();
    showColumns(sink, shown, options.format);
  } else {
    sink.print(showValue(result, written, options.format));
  }
  sink.flush();
  watch.tell("printing");
}

}  // namespace orvex::cli
