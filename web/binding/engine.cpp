// What JavaScript calls: the catalogue as text, calculations by their place in it, tables as the command line prints
// them. Plain functions over numbers and addresses, whose one caller is web/package/src/engine.ts. What may fail
// returns nothing where it has.
#include <emscripten.h>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cli/catalogue_pages.h"
#include "cli/output.h"
#include "cli/values.h"
#include "orvex/catalogue/call_on_values.h"
#include "orvex/catalogue/description.h"
#include "orvex/catalogue/usual.h"
#include "orvex/data/error.h"
#include "orvex/data/object.h"
#include "orvex/patterns/candle_stick.h"
#include "orvex/prices/price_reader.h"
#include "web/binding/exchange.h"

namespace orvex::web {
namespace {

using catalogue::Value;

std::shared_ptr<Field> makeColumn(std::string_view name, int rows) {
  auto column = std::make_shared<Field>();
  if (rows > 0) column->initializeToFill(rows, name, 1, rows);
  column->setName(name);
  return column;
}

/// A call: what it is of, the columns and values that it is given, and then the columns that came of it.
class Call {
 public:
  Call(const catalogue::Calculation& calculation, int count)
      : calculation_(calculation),
        arguments_(calculation.method->arguments.size()),
        data_(std::make_shared<Database>(count)) {
    for (std::size_t i = 0; i < arguments_.size(); ++i) {
      const catalogue::Type type = calculation.method->arguments[i].type;
      if (type == catalogue::Type::Database) arguments_[i] = data_;
      if (type == catalogue::Type::RecordSet) arguments_[i] = prices_;
    }
  }

  void give(std::size_t argument, Value value) { arguments_.at(argument) = std::move(value); }
  void givePrice(std::shared_ptr<Field> column) { prices_->addField(std::move(column)); }

  /// What came of it, in JSON. Of columns that have no record in common there is nothing to compute, and no column
  /// either.
  std::string run() {
    try {
      catalogue::takeUsual(*calculation_.method, arguments_, data_);
      const catalogue::RowRange part = catalogue::partWithValues(arguments_);
      if (calculation_.method->result == catalogue::Type::RecordSet && part.first > part.last) {
        return R"({"columns":[]})";
      }
      const catalogue::ValuedCall made =
          catalogue::callOnValues(*calculation_.method, calculation_.owner->create().get(), arguments_);
      if (const auto* columns = std::get_if<std::shared_ptr<RecordSet>>(&made.result)) {
        return take(object(*columns), made.computed);
      }
      if (const auto* note = std::get_if<std::shared_ptr<Note>>(&made.result)) {
        return cli::showNote(object(*note), {}, cli::Format::Json);
      }
      return cli::showValue(made.result, {}, cli::Format::Json);
    } catch (const Error& error) {
      return describeError(error);
    } catch (...) {
      return describeError(Error(currentFault()));
    }
  }

  /// The same call for each record, which is that argument: a list of the notes that found something.
  std::string runEach(std::size_t argument) {
    std::vector<std::string> notes;
    const auto calculator = calculation_.owner->create();
    try {
      for (int record = 1; record <= data_->getRecordCount().value(); ++record) {
        arguments_.at(argument) = Integer(record);
        const Value result = catalogue::call(*calculation_.method, calculator.get(), arguments_);
        const Note& note = object(std::get<std::shared_ptr<Note>>(result));
        if (note.getNote() == CandleStick::NoPattern) continue;
        notes.push_back(fmt::format(R"({{"period":{},"value":{},"text":{}}})", record, cli::jsonNumber(note.getValue()),
                                    cli::jsonText(note.getNote())));
      }
      return fmt::format(R"({{"each":[{}]}})", fmt::join(notes, ","));
    } catch (const Error& error) {
      return describeError(error);
    } catch (...) {
      return describeError(Error(currentFault()));
    }
  }

  const double* rows(std::size_t column) const { return results_[column]->values().data(); }

 private:
  /// Keeps the columns of the result, and tells which of their rows are computed.
  std::string take(const RecordSet& result, const std::vector<catalogue::RowRange>& computed) {
    std::vector<std::string> columns;
    for (int i = 1; i <= result.getFieldCount(); ++i) {
      const auto column = result.getField(result.getName(i));
      const auto [first, last] = computed[static_cast<std::size_t>(i - 1)];
      results_.push_back(column);
      columns.push_back(fmt::format(R"({{"name":{},"rows":{},"first":{},"last":{}}})", cli::jsonText(column->getName()),
                                    column->getRecordCount().value(), first, last));
    }
    return fmt::format(R"({{"columns":[{}]}})", fmt::join(columns, ","));
  }

  /// An error, and the row without a value in a column that may have caused it.
  std::string describeError(const Error& error) const {
    const auto gap = catalogue::findGap(arguments_);
    return fmt::format(
        R"({{"error":{{{}{}}}}})", cli::errorMembers(error),
        gap ? fmt::format(R"(,"gap":{{"column":{},"record":{}}})", cli::jsonText(gap->column), gap->row) : "");
  }

  catalogue::Calculation calculation_;
  std::vector<Value> arguments_;
  std::shared_ptr<Database> data_;
  std::shared_ptr<RecordSet> prices_ = std::make_shared<RecordSet>();
  std::vector<std::shared_ptr<Field>> results_;
};

/// A price file that was read, or why it was not.
struct PriceFile {
  prices::PriceTable table;
  std::vector<double> seconds;
  std::string reply;
};

/// The lines of `words`: delimiter, decimal sign, order, missing; an empty one is found out.
prices::Options readOptions(std::string_view words) {
  std::vector<std::string> lines(1);
  for (const char c : words) {
    if (c == '\n' && lines.size() < 4) {
      lines.emplace_back();
    } else {
      lines.back() += c;
    }
  }
  lines.resize(4);
  prices::Options options;
  if (!lines[0].empty()) options.delimiter = lines[0];
  if (!lines[1].empty()) options.decimal = lines[1].front();
  if (lines[2] == "keep") options.order = prices::Order::Keep;
  if (lines[3] == "skip") options.missing = prices::Missing::Skip;
  if (lines[3] == "previous") options.missing = prices::Missing::Previous;
  return options;
}

/// Joins what `text` makes of each item.
template <class Items, class Text>
std::string listOf(const Items& items, Text&& text) {
  std::string list = "[";
  for (const auto& item : items) {
    if (list.size() > 1) list += ',';
    list += text(item);
  }
  return list + ']';
}

std::string describeTable(const prices::PriceTable& table) {
  const auto plain = [](const auto& item) { return cli::jsonText(std::string(item)); };
  const auto column = [&](const prices::PriceColumn& one) {
    return fmt::format(R"({{"name":{}{}}})", plain(one.name),
                       one.isText() ? R"(,"texts":)" + listOf(one.texts, plain) : "");
  };
  return fmt::format(R"({{"count":{},"remarks":{},"columns":{}}})", table.count, listOf(table.remarks, plain),
                     listOf(table.columns, column));
}

/// An error of the reader in its own words, with the line where it is in one.
std::string describeProblem(const Fault& fault, const std::string& text, std::size_t line) {
  return fmt::format(R"({{"error":{{"number":{},"source":{},"description":{},"line":{}}}}})", fault.number,
                     cli::jsonText(std::string(fault.source)), cli::jsonText(text), line);
}

std::unique_ptr<PriceFile> readPrices(std::string bytes, std::string_view words) {
  auto file = std::make_unique<PriceFile>();
  try {
    file->table = prices::read(std::move(bytes), readOptions(words));
    for (const prices::Time time : file->table.times) {
      file->seconds.push_back(static_cast<double>(time) / static_cast<double>(prices::secondLength));
    }
    file->reply = describeTable(file->table);
  } catch (const prices::ReadError& error) {
    file->reply = describeProblem(error.fault(), error.what(), error.line());
  } catch (...) {
    const Fault fault = currentFault();
    file->reply = describeProblem(fault, std::string(fault.description), 0);
  }
  return file;
}

/// Columns to be printed as the command line does.
struct Table {
  cli::ShownColumns shown;
};

}  // namespace
}  // namespace orvex::web

using orvex::web::Call;
using orvex::web::orNothing;
using orvex::web::PriceFile;
using orvex::web::Table;

extern "C" {

EMSCRIPTEN_KEEPALIVE void* orvex_allocate(std::size_t size) {
  return std::malloc(size);
}
EMSCRIPTEN_KEEPALIVE void orvex_release(void* room) {
  std::free(room);
}

/// How many bytes the text has that was given last. It stays where it is until the next is given.
EMSCRIPTEN_KEEPALIVE std::size_t orvex_text_size() {
  return orvex::web::givenSize();
}

/// All calculations with everything that is known of each, in JSON.
EMSCRIPTEN_KEEPALIVE const char* orvex_catalogue() {
  return orvex::web::give(orvex::cli::calculationsJson());
}

/// Begins a call of the calculation at that place of the catalogue, over a series of `count` records.
EMSCRIPTEN_KEEPALIVE Call* orvex_call_begin(std::size_t calculation, int count) {
  return orNothing([&] { return std::make_unique<Call>(orvex::web::calculations().at(calculation), count).release(); });
}

/// Gives an argument that is a column, and returns where its rows are to be written.
EMSCRIPTEN_KEEPALIVE double* orvex_call_column(Call* call, std::size_t argument, const char* name, std::size_t size,
                                               int rows) {
  return orNothing([&] {
    const auto column = orvex::web::makeColumn({name, size}, rows);
    call->give(argument, column);
    return column->writableValues().data();
  });
}

/// Adds a column to the prices of the series, and returns where its rows are to be written.
EMSCRIPTEN_KEEPALIVE double* orvex_call_price(Call* call, const char* name, std::size_t size, int rows) {
  return orNothing([&] {
    const auto column = orvex::web::makeColumn({name, size}, rows);
    call->givePrice(column);
    return column->writableValues().data();
  });
}

EMSCRIPTEN_KEEPALIVE bool orvex_call_number(Call* call, std::size_t argument, double value) {
  return orNothing([&] { return call->give(argument, value), true; });
}
EMSCRIPTEN_KEEPALIVE bool orvex_call_text(Call* call, std::size_t argument, const char* value, std::size_t size) {
  return orNothing([&] { return call->give(argument, std::string(value, size)), true; });
}

/// Makes the call and tells in JSON what came of it: columns, a note, a value or an error.
EMSCRIPTEN_KEEPALIVE const char* orvex_call_run(Call* call) {
  return orNothing([&] { return orvex::web::give(call->run()); });
}

/// Makes the call for each record, which becomes that argument.
EMSCRIPTEN_KEEPALIVE const char* orvex_call_run_each(Call* call, std::size_t argument) {
  return orNothing([&] { return orvex::web::give(call->runEach(argument)); });
}

/// The rows of a column that came of it.
EMSCRIPTEN_KEEPALIVE const double* orvex_call_rows(const Call* call, std::size_t column) {
  return call->rows(column);
}

EMSCRIPTEN_KEEPALIVE void orvex_call_end(Call* call) {
  const std::unique_ptr<Call> ended(call);
}

/// Reads a price file. `options` are lines: delimiter, decimal sign, order, missing; an empty one is found out.
EMSCRIPTEN_KEEPALIVE PriceFile* orvex_read(const char* bytes, std::size_t size, const char* options,
                                           std::size_t optionsSize) {
  return orNothing([&] { return orvex::web::readPrices({bytes, size}, {options, optionsSize}).release(); });
}

/// What came of it in JSON: the columns with their texts, and remarks; or an error.
EMSCRIPTEN_KEEPALIVE const char* orvex_read_reply(PriceFile* file) {
  return orvex::web::give(std::move(file->reply));
}

/// The rows of a column of numbers.
EMSCRIPTEN_KEEPALIVE const double* orvex_read_numbers(const PriceFile* file, std::size_t column) {
  return file->table.columns[column].numbers.data();
}

/// The times of the records in seconds since 1970; nothing where the dates were not read as such.
EMSCRIPTEN_KEEPALIVE const double* orvex_read_times(const PriceFile* file) {
  return file->seconds.empty() ? nullptr : file->seconds.data();
}

EMSCRIPTEN_KEEPALIVE void orvex_read_end(PriceFile* file) {
  const std::unique_ptr<PriceFile> ended(file);
}

/// Begins a table of `count` records.
EMSCRIPTEN_KEEPALIVE Table* orvex_table_begin(int count) {
  return orNothing([&] {
    auto table = std::make_unique<Table>();
    table->shown.records = {1, count};
    return table.release();
  });
}

/// Adds a column of numbers, empty outside the rows first..last, and returns where its rows are to be written.
EMSCRIPTEN_KEEPALIVE double* orvex_table_numbers(Table* table, const char* name, std::size_t size, int first,
                                                 int last) {
  return orNothing([&] {
    const auto column = orvex::web::makeColumn({name, size}, table->shown.records.last);
    table->shown.columns.push_back({column, false, {first, last}});
    return column->writableValues().data();
  });
}

/// Adds a column of texts: row after row in `texts`, each of as many bytes as `sizes` tells.
EMSCRIPTEN_KEEPALIVE bool orvex_table_texts(Table* table, const char* name, std::size_t size, const char* texts,
                                            const std::uint32_t* sizes) {
  return orNothing([&] {
    const int count = table->shown.records.last;
    const auto column = orvex::web::makeColumn({name, size}, count);
    for (int row = 1; row <= count; ++row) {
      const std::size_t length = sizes[row - 1];
      column->setStrValue(row, {texts, length});
      texts += length;
    }
    table->shown.columns.push_back({column, true, {1, count}});
    return true;
  });
}

/// The table as comma-separated values.
EMSCRIPTEN_KEEPALIVE const char* orvex_table_csv(const Table* table) {
  return orNothing([&] {
    auto sink = orvex::cli::Sink::keeping();
    orvex::cli::showColumns(sink, table->shown, orvex::cli::Format::Csv);
    return orvex::web::give(std::move(sink.text()));
  });
}

EMSCRIPTEN_KEEPALIVE void orvex_table_end(Table* table) {
  const std::unique_ptr<Table> ended(table);
}

}  // extern "C"
