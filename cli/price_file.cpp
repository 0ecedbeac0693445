#include "cli/price_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

#include "cli/failure.h"
#include "cli/names.h"
#include "orvex/data/columns.h"
#include "orvex/data/number_text.h"
#include "orvex/data/text.h"
#include "orvex/data/text_file.h"

namespace orvex::cli {

namespace {

struct Cell {
  std::string text;
  bool quoted = false;
};
using Cells = std::vector<Cell>;

constexpr std::array priceNames = {Database::OpenName, Database::HighName, Database::LowName, Database::CloseName,
                                   Database::VolumeName};

bool isBlank(std::string_view text) {
  return text.find_first_not_of(" \t") == std::string_view::npos;
}

/// The name that a cell gives to a column: blanks around it belong to it only if it is quoted.
std::string nameOf(const Cell& cell) {
  if (cell.quoted) return cell.text;
  if (isBlank(cell.text)) return {};
  const std::size_t from = cell.text.find_first_not_of(" \t");
  return cell.text.substr(from, cell.text.find_last_not_of(" \t") - from + 1);
}

/// What a double cannot hold is no number here but a text: identifiers such as 12e4567 look so.
bool isNumber(std::string_view text) {
  try {
    const NumberText number = readNumber(text);
    return number.length > 0 && isBlank(text.substr(number.length));
  } catch (const Error&) {
    return false;
  }
}

/// The cells of a line. What begins with a quotation mark goes to the next single one; a doubled one stands for itself.
/// Error 13 for one that is not closed.
Cells split(std::string_view line, std::string_view delimiter) {
  Cells cells(1);
  while (!line.empty()) {
    if (line.starts_with(delimiter)) {
      cells.emplace_back();
      line.remove_prefix(delimiter.size());
    } else if (line.front() == '"' && cells.back().text.empty()) {
      cells.back().quoted = true;
      line.remove_prefix(1);
      for (;;) {
        const std::size_t mark = line.find('"');
        if (mark == std::string_view::npos) raise(faults::TypeMismatch);
        cells.back().text += line.substr(0, mark);
        line.remove_prefix(mark + 1);
        if (!line.starts_with('"')) break;
        cells.back().text += '"';
        line.remove_prefix(1);
      }
    } else {
      cells.back().text += line.front();
      line.remove_prefix(1);
    }
  }
  return cells;
}

/// The delimiter that stands most often in a line; where two do, not the comma, which may be a decimal one.
std::string delimiterOf(std::string_view line) {
  std::string found = ",";
  std::ptrdiff_t most = 0;
  for (const char candidate : {'\t', ';', ','}) {
    const std::ptrdiff_t count = std::count(line.begin(), line.end(), candidate);
    if (count > most) {
      found = candidate;
      most = count;
    }
  }
  return found;
}

bool isPriceName(const std::string& name) {
  return equalNames(name, Database::DateName) ||
         std::any_of(priceNames.begin(), priceNames.end(), [&](auto price) { return equalNames(name, price); });
}

/// Tells whether a first line is one of names: some is a price column's, or none is a number and the first does not
/// look like a date.
bool isHeader(std::string_view line, std::string_view delimiter) {
  Cells cells;
  try {
    cells = split(line, delimiter);
  } catch (const Error&) {
    return false;
  }
  if (std::ranges::any_of(cells, isPriceName, nameOf)) return true;
  if (std::ranges::all_of(cells, isBlank, &Cell::text) || std::ranges::any_of(cells, isNumber, &Cell::text)) {
    return false;
  }
  const std::string first = nameOf(cells.front());
  return first.empty() || first.front() < '0' || first.front() > '9';
}

std::string explain(const std::string& path, const Fault& fault) {
  std::string text = fmt::format("no prices could be read from \"{}\".", path);
  if (fault.description == faults::Overflow.description) {
    text += fmt::format(" A series has at most {} records, and every number fits a double.", Integer::Greatest);
  } else if (fault.description == faults::SubscriptOutOfRange.description) {
    text += " It has no records.";
  }
  return text;
}

/// The lines of a file, blank ones apart, as rows of cells, with the number of each line.
struct Row {
  std::size_t line;
  Cells cells;
};

std::vector<Row> readRows(const std::string& path, std::string_view delimiter) {
  TextFile file(path);
  std::vector<Row> rows;
  std::size_t number = 0;
  std::string_view line;
  while (file.nextLine(line)) {
    ++number;
    if (isBlank(line)) continue;
    const auto refuse = [&](std::string_view why) {
      throw Failure(Database::loadFault(faults::TypeMismatch.description),
                    fmt::format("line {} of \"{}\" {}.", number, path, why));
    };
    try {
      rows.push_back({number, split(line, delimiter)});
    } catch (const Error&) {
      refuse("opens a quotation mark and does not close it");
    }
    // Enough to know that the file cannot load: what else it has is not worth the memory.
    if (rows.size() > std::size_t{Integer::Greatest} + 1) raise(faults::Overflow);
    Cells& cells = rows.back().cells;
    const std::size_t width = rows.front().cells.size();
    for (std::size_t i = width; i < cells.size(); ++i) {
      if (!isBlank(cells[i].text)) {
        refuse(fmt::format("has more than the {} values that line {} names", width, rows.front().line));
      }
    }
    cells.resize(width);
  }
  return rows;
}

/// The column of the dates among these names, or the number of names.
std::size_t dateColumn(const std::vector<std::string>& names) {
  for (const std::string_view name : {std::string_view(Database::DateName), std::string_view("Datetime"),
                                      std::string_view("Timestamp"), std::string_view("Time")}) {
    const auto found =
        std::find_if(names.begin(), names.end(), [&](const std::string& one) { return equalNames(one, name); });
    if (found != names.end()) return static_cast<std::size_t>(found - names.begin());
  }
  return names.size();
}

/// The names that more than one column bears, each once. Columns without a name do not count.
std::vector<std::string> doubledNames(const std::vector<std::string>& names) {
  std::vector<std::string> doubled;
  for (auto name = names.begin(); name != names.end(); ++name) {
    const auto same = [&](const std::string& one) { return equalNames(one, *name); };
    if (!name->empty() && std::count_if(names.begin(), name, same) == 1) doubled.push_back(*name);
  }
  return doubled;
}

FileColumn makeFileColumn(std::string_view name, std::span<const Row> rows, std::size_t index, bool dates) {
  const auto isText = [&](const Row& row) {
    return !isBlank(row.cells[index].text) && !isNumber(row.cells[index].text);
  };
  FileColumn column{makeColumn(rows.size(), name), {}};
  const auto text = dates ? rows.begin() : std::find_if(rows.begin(), rows.end(), isText);
  if (text != rows.end()) column.textLine = text->line;
  Integer record = 0;
  for (const Row& row : rows) {
    ++record;
    if (column.textLine) {
      column.field->setStrValue(record, row.cells[index].text);
    } else {
      column.field->setValue(record, numberFromText(row.cells[index].text));
    }
  }
  return column;
}

std::shared_ptr<Database> makeDatabase(const RecordSet& prices, Integer count) {
  auto complete = std::make_shared<RecordSet>();
  const auto add = [&](std::string_view name) {
    complete->addField(prices.isValidField(name) ? prices.getField(name) : makeColumn(count, name));
  };
  add(Database::DateName);
  for (const std::string_view name : priceNames) add(name);
  auto data = std::make_shared<Database>();
  data->RecordsetCache(complete);
  data->MoveFirst();
  return data;
}

PriceFile readWithHeader(const std::string& path, std::string_view delimiter) {
  const std::vector<Row> all = readRows(path, delimiter);
  // It had a header when it was looked at before.
  if (all.empty()) raise(faults::SubscriptOutOfRange);
  const std::span<const Row> rows = std::span(all).subspan(1);
  std::vector<std::string> names;
  std::ranges::transform(all.front().cells, std::back_inserter(names), nameOf);
  const std::size_t dates = dateColumn(names);
  PriceFile file{path, {}, nullptr, nullptr, std::make_shared<RecordSet>(), {}};
  for (std::size_t i = 0; i < names.size(); ++i) {
    const FileColumn column =
        makeFileColumn(i == dates ? Database::DateName : std::string_view(names[i]), rows, i, i == dates);
    file.columns.push_back(column);
    if (i == dates) file.dates = column.field;
    if (i == dates || !column.textLine) file.prices->addField(column.field);
  }
  file.data = makeDatabase(*file.prices, rows.size());
  if (const std::vector<std::string> doubled = doubledNames(names); !doubled.empty()) {
    file.remarks.push_back(fmt::format("\"{}\" has more than one column called {}; the first one is taken.", path,
                                       enumerate(doubled, "or")));
  }
  return file;
}

/// Tells whether a line is a date and five numbers.
bool isRecord(std::string_view line, std::string_view delimiter) {
  std::size_t numbers = 0;
  for (std::size_t at = line.find(delimiter); at != std::string_view::npos; ++numbers) {
    const std::size_t from = at + delimiter.size();
    at = line.find(delimiter, from);
    if (!isNumber(line.substr(from, at - from))) return false;
  }
  return numbers == priceNames.size();
}

std::size_t countBlankLines(const std::string& path) {
  TextFile file(path);
  std::size_t count = 0;
  std::string_view line;
  while (file.nextLine(line)) count += isBlank(line) ? 1 : 0;
  return count;
}

PriceFile readWithoutHeader(const std::string& path, const std::string& delimiter, std::string_view firstLine) {
  PriceFile file{path, {}, nullptr, std::make_shared<Database>(), nullptr, {}};
  file.data->OpenDataBase(path, delimiter);
  file.prices = file.data->getRecordset();
  file.dates = file.prices->getField(Database::DateName);
  file.columns.push_back({file.dates, 1});
  for (const std::string_view name : priceNames) {
    file.columns.push_back({file.prices->getField(name), {}});
  }
  if (!isRecord(firstLine, delimiter)) {
    file.remarks.push_back(fmt::format(
        "\"{}\" does not begin with a header line or with a date and five numbers (open, high, low, close, volume), "
        "\"{}\" between them. What is missing there or is no number is taken for 0.",
        path, delimiter));
  }
  if (const std::size_t blanks = countBlankLines(path); blanks > 0) {
    file.remarks.push_back(
        fmt::format("\"{}\" has no header line, so its blank lines count as records of zeros: {} of {} records.", path,
                    blanks, file.data->getRecordCount().value()));
  }
  return file;
}

/// Nothing where the file cannot be read: the loader meets that again and reports it.
std::string firstLine(const std::string& path) {
  try {
    TextFile file(path);
    std::string_view line;
    while (file.nextLine(line)) {
      if (!isBlank(line)) return std::string(line);
    }
  } catch (const Error&) {
  }
  return {};
}

}  // namespace

std::vector<std::string> PriceFile::columnNames() const {
  std::vector<std::string> names;
  for (const FileColumn& column : columns) names.push_back(column.field->getName());
  return names;
}

PriceFile readPriceFile(const std::string& path, const std::optional<std::string>& delimiter) {
  try {
    const std::string line = firstLine(path);
    const std::string mark = delimiter.value_or(delimiterOf(line));
    return isHeader(line, mark) ? readWithHeader(path, mark) : readWithoutHeader(path, mark, line);
  } catch (const Error& error) {
    throw Failure(Database::loadFault(error.description()), explain(path, error.fault()));
  }
}

}  // namespace orvex::cli
