#include "cli/output.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "cli/price_file.h"
#include "cli/values.h"
#include "orvex/catalogue/call_on_values.h"

namespace orvex::cli {

namespace {

using Cells = std::vector<std::string>;

/// How many characters a text takes on a terminal.
std::size_t widthOf(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string showWritten(const std::vector<Written>& written) {
  std::string text;
  for (const Written& one : written) {
    if (one.given) text += fmt::format("{} is now {}\n", one.name, jsonValue(one.value));
  }
  return text;
}

/// A column of the table: its numbers with as many decimals as the largest leaves of eight digits, less those that are
/// 0 in all.
class TableColumn {
 public:
  TableColumn(const ShownColumn& column, catalogue::RowRange records) : column_(column) {
    const std::string name = column.field->getName();
    if (!column.texts) findDecimals(records);
    std::size_t droppable = std::string::npos;
    std::size_t width = 0;
    std::string cell;
    for (int record = records.first; record <= records.last; ++record) {
      cell.clear();
      append(cell, record);
      width = std::max(width, widthOf(cell));
      if (decimals_ > 0 && !cell.empty()) droppable = std::min(droppable, cell.size() - 1 - cell.find_last_not_of('0'));
    }
    if (decimals_ > 0) {
      dropped_ = std::min(droppable, static_cast<std::size_t>(decimals_));
      if (dropped_ == static_cast<std::size_t>(decimals_)) ++dropped_;  // the point
      width -= std::min(width, dropped_);
    }
    width_ = std::max(width, widthOf(name));
  }

  std::size_t width() const { return width_; }
  bool left() const { return column_.texts; }

  void append(std::string& out, int record) const {
    if (!column_.filled.contains(record)) return;
    if (column_.texts) {
      out += column_.field->getStrValue(record);
      return;
    }
    const double number = column_.field->getValue(record);
    if (decimals_ < 0) {
      fmt::format_to(std::back_inserter(out), "{:.{}g}", number, digits);
    } else {
      fmt::format_to(std::back_inserter(out), "{:.{}f}", number, decimals_);
      out.resize(out.size() - dropped_);
    }
  }

 private:
  static constexpr int digits = 8;

  void findDecimals(catalogue::RowRange records) {
    double largest = 0.0;
    for (int record = records.first; record <= records.last; ++record) {
      if (column_.filled.contains(record)) largest = std::max(largest, std::abs(column_.field->getValue(record)));
    }
    const int whole = largest > 0.0 ? static_cast<int>(std::floor(std::log10(largest))) + 1 : 0;
    decimals_ = whole > 2 * digits || whole < -digits ? -1 : std::max(digits - whole, 0);
  }

  const ShownColumn& column_;
  int decimals_ = -1;  // below 0: as many digits, wherever the point stands
  std::size_t dropped_ = 0;
  std::size_t width_ = 0;
};

void showTable(Sink& sink, const ShownColumns& result) {
  std::vector<TableColumn> columns;
  for (const ShownColumn& column : result.columns) columns.emplace_back(column, result.records);
  constexpr std::string_view title = "Record";
  const std::size_t numberWidth = std::max(title.size(), fmt::formatted_size("{}", result.records.last));
  const auto line = [&](std::string_view number, auto&& cellOf) {
    std::string& out = sink.text();
    const std::size_t begin = out.size();
    out.append(numberWidth - number.size(), ' ').append(number);
    std::string cell;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      cell.clear();
      cellOf(cell, i);
      const std::size_t space = columns[i].width() - widthOf(cell);
      out += "  ";
      if (!columns[i].left()) out.append(space, ' ');
      out += cell;
      if (columns[i].left()) out.append(space, ' ');
    }
    out.erase(std::max(begin, out.find_last_not_of(' ') + 1));
    out += '\n';
    sink.pass();
  };
  line(title, [&](std::string& cell, std::size_t i) { cell += result.columns[i].field->name(); });
  for (int record = result.records.first; record <= result.records.last; ++record) {
    line(fmt::to_string(record), [&](std::string& cell, std::size_t i) { columns[i].append(cell, record); });
  }
  sink.print(showWritten(result.written));
}

void showCsv(Sink& sink, const ShownColumns& result) {
  Cells names;
  for (const ShownColumn& column : result.columns) names.push_back(column.field->getName());
  sink.print(csvLine(names));
  for (int record = result.records.first; record <= result.records.last; ++record) {
    std::string& out = sink.text();
    for (const ShownColumn& column : result.columns) {
      if (&column != &result.columns.front()) out += ',';
      if (!column.filled.contains(record)) continue;
      if (column.texts) {
        out += csvCell(column.field->getStrValue(record));
      } else {
        appendNumber(out, column.field->getValue(record));
      }
    }
    out += '\n';
    sink.pass();
  }
}

std::string writtenJson(const std::vector<Written>& written) {
  Cells members;
  for (const Written& one : written) members.push_back(jsonText(one.name) + ':' + jsonValue(one.value));
  return fmt::format("{{{}}}", fmt::join(members, ","));
}

/// The computed records of a column of the result, null where there are none.
std::string computedJson(const ShownColumn& column) {
  if (!column.computed) return {};
  const auto [first, last] = *column.computed;
  return first > last ? R"(,"computed":null)" : fmt::format(R"(,"computed":{{"first":{},"last":{}}})", first, last);
}

void showJson(Sink& sink, const ShownColumns& result) {
  sink.print(fmt::format(R"({{"records":{{"first":{},"last":{}}},)", result.records.first, result.records.last));
  if (result.dates != nullptr) {
    sink.print(R"("dates":[)");
    for (int record = result.records.first; record <= result.records.last; ++record) {
      if (record > result.records.first) sink.print(",");
      sink.print(jsonText(result.dates->getStrValue(record)));
      sink.pass();
    }
    sink.print("],");
  }
  sink.print(R"("columns":[)");
  for (const ShownColumn& column : result.columns) {
    if (&column != &result.columns.front()) sink.print(",");
    sink.print(fmt::format(R"({{"name":{},"values":[)", jsonText(column.field->getName())));
    for (int record = result.records.first; record <= result.records.last; ++record) {
      std::string& out = sink.text();
      if (record > result.records.first) out += ',';
      if (!column.filled.contains(record)) {
        out += column.texts ? R"("")" : "null";
      } else if (column.texts) {
        out += jsonText(column.field->getStrValue(record));
      } else if (const double number = column.field->getValue(record); std::isfinite(number)) {
        appendNumber(out, number);
      } else {
        out += "null";
      }
      sink.pass();
    }
    sink.print(fmt::format("]{}}}", computedJson(column)));
  }
  sink.print(fmt::format(R"(],"written":{}{}}})", writtenJson(result.written),
                         result.position ? fmt::format(R"(,"position":{})", result.position->value()) : "") +
             '\n');
}

/// A member for what was written back, where something was.
std::string andWritten(const std::vector<Written>& written) {
  return written.empty() ? "" : fmt::format(R"(,"written":{})", writtenJson(written));
}

}  // namespace

std::string csvCell(const std::string& text) {
  const bool plain =
      text.find_first_of(",\"\r\n;\t") == std::string::npos && !text.starts_with(' ') && !text.ends_with(' ');
  if (plain) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string csvLine(const Cells& cells) {
  std::string line;
  for (const std::string& cell : cells) {
    if (&cell != &cells.front()) line += ',';
    line += csvCell(cell);
  }
  return line + '\n';
}

std::vector<ShownColumn> columnsOf(const PriceFile& file) {
  std::vector<ShownColumn> columns;
  for (const FileColumn& column : file.columns) {
    const bool texts = column.textLine.has_value();
    const catalogue::RowRange all{1, column.field->getRecordCount().value()};
    columns.push_back({column.field, texts, texts ? all : catalogue::valuedRows(column.field->values())});
  }
  return columns;
}

void showColumns(Sink& sink, const ShownColumns& result, Format format) {
  switch (format) {
    case Format::Table:
      return showTable(sink, result);
    case Format::Csv:
      return showCsv(sink, result);
    case Format::Json:
      break;
  }
  showJson(sink, result);
}

std::string showNote(const Note& note, const std::vector<Written>& written, Format format) {
  const int period = note.getPeriod().value();
  switch (format) {
    case Format::Table:
      return fmt::format("Period  {}\nValue   {}\n", period, numberText(note.getValue())) +
             (note.getNote().empty() ? "" : fmt::format("Text    {}\n", note.getNote())) + showWritten(written);
    case Format::Csv:
      return csvLine({"period", "value", "text"}) +
             csvLine({fmt::to_string(period), numberText(note.getValue()), note.getNote()});
    case Format::Json:
      break;
  }
  return fmt::format(R"({{"note":{{"period":{},"value":{},"text":{}}}{}}})", period, jsonNumber(note.getValue()),
                     jsonText(note.getNote()), andWritten(written)) +
         '\n';
}

std::string showValue(const catalogue::Value& value, const std::vector<Written>& written, Format format) {
  const std::string json = jsonValue(value);
  if (format == Format::Json) return fmt::format(R"({{"value":{}{}}})", json, andWritten(written)) + '\n';
  const auto* text = std::get_if<std::string>(&value);
  return (text != nullptr ? *text : json) + '\n' + (format == Format::Table ? showWritten(written) : "");
}

std::string errorMembers(const Error& error) {
  const auto told = [](const Fault& fault) {
    return fmt::format(R"("number":{},"source":{},"description":{})", fault.number, jsonText(std::string(fault.source)),
                       jsonText(std::string(fault.description)));
  };
  std::string members = told(error.fault());
  if (!(error.cause() == error.fault())) members += fmt::format(R"(,"cause":{{{}}})", told(error.cause()));
  if (error.record() != 0) members += fmt::format(R"(,"record":{})", error.record());
  return members;
}

std::string showError(const Failure& failure) {
  std::string place;
  if (failure.line() != 0) place += fmt::format(R"(,"line":{})", failure.line());
  if (failure.cell() != 0) place += fmt::format(R"(,"cell":{})", failure.cell());
  return fmt::format(R"({{"error":{{{}{},"explanation":{}}}}})", errorMembers(failure.error()), place,
                     jsonText(failure.explanation())) +
         '\n';
}

}  // namespace orvex::cli
