#include "cli/output.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "cli/values.h"

namespace orvex::cli {

namespace {

using Cells = std::vector<std::string>;

/// The cells of a column in the records that are shown, with `number` for those that are numbers.
template <class Number>
Cells cellsOf(const ShownColumn& column, catalogue::RowRange records, Number&& number, std::string_view empty = "") {
  Cells cells;
  for (int record = records.first; record <= records.last; ++record) {
    if (!column.filled.contains(record)) {
      cells.emplace_back(empty);
    } else if (column.texts) {
      cells.push_back(column.field->getStrValue(record));
    } else {
      cells.push_back(number(column.field->getValue(record)));
    }
  }
  return cells;
}

/// How many characters a text takes on a terminal.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

/// The numbers of a column with as many decimals as its largest leaves of eight digits, less those that are 0 in all.
Cells roundedCells(const ShownColumn& column, catalogue::RowRange records) {
  constexpr int digits = 8;
  double largest = 0.0;
  for (int record = records.first; record <= records.last; ++record) {
    if (column.filled.contains(record)) largest = std::max(largest, std::abs(column.field->getValue(record)));
  }
  const int whole = largest > 0.0 ? static_cast<int>(std::floor(std::log10(largest))) + 1 : 0;
  if (whole > 2 * digits || whole < -digits) {
    return cellsOf(column, records, [&](double number) { return fmt::format("{:.{}g}", number, digits); });
  }
  int decimals = std::max(digits - whole, 0);
  Cells cells = cellsOf(column, records, [&](double number) { return fmt::format("{:.{}f}", number, decimals); });
  const auto droppable = [](const std::string& cell) { return cell.empty() || cell.back() == '0'; };
  const auto dropLast = [](std::string& cell) {
    if (!cell.empty()) cell.pop_back();
  };
  for (; decimals > 0 && std::all_of(cells.begin(), cells.end(), droppable); --decimals) {
    std::for_each(cells.begin(), cells.end(), dropLast);
  }
  if (decimals == 0 && digits > whole) std::for_each(cells.begin(), cells.end(), dropLast);  // the point
  return cells;
}

std::string showWritten(const std::vector<Written>& written) {
  std::string text;
  for (const Written& one : written) {
    if (one.given) text += fmt::format("{} is now {}\n", one.name, jsonValue(one.value));
  }
  return text;
}

std::string showTable(const ShownColumns& result) {
  struct Aligned {
    Cells cells;
    std::size_t width;
    bool left;
  };
  std::vector<Aligned> columns;
  const auto add = [&](const std::string& name, Cells cells, bool left) {
    cells.insert(cells.begin(), name);
    std::size_t width = 0;
    for (const std::string& cell : cells) width = std::max(width, widthOf(cell));
    columns.push_back({std::move(cells), width, left});
  };
  Cells numbers;
  for (int record = result.records.first; record <= result.records.last; ++record) {
    numbers.push_back(fmt::to_string(record));
  }
  add("Record", numbers, false);
  for (const ShownColumn& column : result.columns) {
    add(column.field->getName(),
        column.texts ? cellsOf(column, result.records, numberText) : roundedCells(column, result.records),
        column.texts);
  }
  std::string text;
  for (std::size_t row = 0; row <= numbers.size(); ++row) {
    std::string line;
    for (const Aligned& column : columns) {
      const std::string& cell = column.cells[row];
      const std::string space(column.width - widthOf(cell), ' ');
      if (!line.empty()) line += "  ";
      line += column.left ? cell + space : space + cell;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
  }
  return text + showWritten(result.written);
}

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

std::string showCsv(const ShownColumns& result) {
  Cells names;
  std::vector<Cells> columns;
  for (const ShownColumn& column : result.columns) {
    names.push_back(column.field->getName());
    columns.push_back(cellsOf(column, result.records, numberText));
  }
  std::string text = csvLine(names);
  for (int record = result.records.first; record <= result.records.last; ++record) {
    Cells row;
    for (const Cells& column : columns) row.push_back(column[static_cast<std::size_t>(record - result.records.first)]);
    text += csvLine(row);
  }
  return text;
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

std::string showJson(const ShownColumns& result) {
  Cells columns;
  for (const ShownColumn& column : result.columns) {
    Cells cells;
    if (column.texts) {
      cells = cellsOf(column, result.records, numberText);
      std::transform(cells.begin(), cells.end(), cells.begin(), jsonText);
    } else {
      cells = cellsOf(column, result.records, jsonNumber, "null");
    }
    columns.push_back(fmt::format(R"({{"name":{},"values":[{}]{}}})", jsonText(column.field->getName()),
                                  fmt::join(cells, ","), computedJson(column)));
  }
  std::string records = fmt::format(R"("records":{{"first":{},"last":{}}})", result.records.first, result.records.last);
  if (result.dates != nullptr) {
    Cells dates = cellsOf({result.dates, true, result.records}, result.records, numberText);
    std::transform(dates.begin(), dates.end(), dates.begin(), jsonText);
    records += fmt::format(R"(,"dates":[{}])", fmt::join(dates, ","));
  }
  return fmt::format(R"({{{},"columns":[{}],"written":{}{}}})", records, fmt::join(columns, ","),
                     writtenJson(result.written),
                     result.position ? fmt::format(R"(,"position":{})", result.position->value()) : "") +
         '\n';
}

/// A member for what was written back, where something was.
std::string andWritten(const std::vector<Written>& written) {
  return written.empty() ? "" : fmt::format(R"(,"written":{})", writtenJson(written));
}

}  // namespace

std::string showColumns(const ShownColumns& result, Format format) {
  switch (format) {
    case Format::Table:
      return showTable(result);
    case Format::Csv:
      return showCsv(result);
    case Format::Json:
      break;
  }
  return showJson(result);
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

std::string showError(const Error& error, const std::string& explanation) {
  std::string inner;
  if (!(error.cause() == error.fault())) {
    inner += fmt::format(R"(,"cause":{{"number":{},"source":{},"description":{}}})", error.cause().number,
                         jsonText(std::string(error.cause().source)), jsonText(std::string(error.cause().description)));
  }
  if (error.record() != 0) inner += fmt::format(R"(,"record":{})", error.record());
  return fmt::format(R"({{"error":{{"number":{},"source":{},"description":{}{},"explanation":{}}}}})", error.number(),
                     jsonText(std::string(error.source())), jsonText(std::string(error.description())), inner,
                     jsonText(explanation)) +
         '\n';
}

}  // namespace orvex::cli
