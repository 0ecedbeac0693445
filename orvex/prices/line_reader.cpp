#include "orvex/prices/line_reader.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "orvex/prices/plain_number.h"
#include "orvex/prices/text_encoding.h"

namespace orvex::inline ORVEX_COUNTS::prices {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

bool isPlain(char c) {
  return static_cast<unsigned char>(c) > ' ' && static_cast<unsigned char>(c) < 0x7F;
}

std::string counted(std::size_t count, std::string_view what) {
  return std::to_string(count) + ' ' + std::string(what) + (count == 1 ? "" : "s");
}

}  // namespace

LineReader::LineReader(Layout layout)
    : layout_(std::move(layout)),
      cells_(layout_.columns.size(), Cell{{}, none, CellKind::Missing}),
      plainDates_(layout_.dates) {
  dateColumn_ = layout_.find(Role::Date);
  timeColumn_ = layout_.find(Role::Clock);
  for (const ColumnLayout& column : layout_.columns) {
    numeric_.push_back(column.role != Role::Date && column.role != Role::Clock ? 1 : 0);
  }
  const std::string& delimiter = layout_.splitter.delimiter();
  const bool inNoNumber =
      delimiter.size() == 1 && std::string_view("0123456789+-.,eE\" ").find(delimiter[0]) == std::string_view::npos;
  const bool comma = delimiter == "," && layout_.decimal == '.';
  if (inNoNumber || comma) mark_ = delimiter[0];
  // Between commas a point is a decimal one; elsewhere one number must have shown it.
  fast_ = mark_ != '\0' && (layout_.decimalProven || comma);
}

LineReader::Outcome LineReader::fail(std::string text, std::size_t cell, bool tooShort) {
  problem_ = {std::move(text), cell, tooShort};
  return Outcome::Problem;
}

const char* LineReader::findDelimiter(const char* at, const char* end) const {
  if (mark_ != '\0') {
    const void* const found = std::memchr(at, mark_, static_cast<std::size_t>(end - at));
    return found == nullptr ? end : static_cast<const char*>(found);
  }
  const std::string& delimiter = layout_.splitter.delimiter();
  return std::search(at, end, delimiter.begin(), delimiter.end());
}

/// Takes the cells from `column` on that need no second look: numbers in full, and texts without blanks or quotation
/// marks around them. Gives the column of the first that does; `at` is then at the delimiter before it or at the end.
std::size_t LineReader::takePlainCells(const char*& at, const char* end, const char* textEnd, std::size_t column) {
  // In no memory that the cells could share.
  const char mark = mark_;
  const char decimal = layout_.decimal;
  const char* next = at;
  for (; column < cells_.size(); ++column, ++next) {
    const char* behind = next;
    Cell& cell = cells_[column];
    if (numeric_[column] != 0) {
      if (!takePlainNumber(behind, textEnd, decimal, cell.number)) break;
      if (behind != end && *behind != mark) break;
      cell.kind = CellKind::Number;
    } else {
      if (next == end || !isPlain(*next) || *next == '"') break;
      behind = findDelimiter(next, end);
      if (behind == next || !isPlain(behind[-1])) break;
      cell.number = none;
      cell.kind = CellKind::Text;
    }
    cell.text = {next, static_cast<std::size_t>(behind - next)};
    at = next = behind;
    if (next == end) return column + 1;
  }
  return column;
}

/// The text of the cell that begins at `at`, which is then at the delimiter behind it or at the end. False for a
/// quotation mark without its other half.
bool LineReader::nextCell(const char*& at, const char* end, std::string_view& text) {
  const char* start = at;
  while (start != end && (*start == ' ' || (*start == '\t' && mark_ != '\t'))) ++start;
  if (start == end || *start != '"') {
    const char* const stop = findDelimiter(at, end);
    text = {at, static_cast<std::size_t>(stop - at)};
    if (!text.empty() && !(isPlain(text.front()) && isPlain(text.back()))) text = trimmed(text);
    at = stop;
    return true;
  }
  const char* const first = ++start;
  bool doubled = false;
  for (;;) {
    start = std::find(start, end, '"');
    if (start == end) return false;
    if (start + 1 == end || start[1] != '"') break;
    doubled = true;
    start += 2;
  }
  text = {first, static_cast<std::size_t>(start - first)};
  if (doubled) {
    std::string& whole = unquoted_.emplace_back();
    for (std::size_t i = 0; i < text.size(); ++i) {
      whole += text[i];
      i += text[i] == '"' ? 1 : 0;
    }
    text = whole;
  }
  at = findDelimiter(start + 1, end);
  return trimmed({start + 1, static_cast<std::size_t>(at - start - 1)}).empty();
}

LineReader::Outcome LineReader::readNumber(std::size_t column, std::string_view text) {
  const NumberCell number = readNumberCell(text, layout_.decimal);
  const ColumnLayout& plan = layout_.columns[column];
  const bool price = plan.role != Role::Other;
  cells_[column] = {text, number.kind == CellKind::Number ? number.value : none, number.kind};
  if (number.kind == CellKind::Number && !layout_.decimalProven && decimalEvidence(text) == DecimalEvidence::Either &&
      (number.grouped || layout_.splitter.delimiter() != ",")) {
    if (price) {
      return fail(shown(text) + " in column " + shown(plan.name) +
                      " may be a number with a fraction or one of thousands, and no other number of the file tells: "
                      "--decimal . or --decimal , settles it.",
                  column + 1);
    }
    cells_[column] = {text, none, CellKind::Text};
  }
  if (number.kind == CellKind::Text && price) {
    std::string why = shown(text) + " in column " + shown(plan.name) + " is no number that fits a double";
    const bool otherSign = readNumberCell(text, layout_.decimal == '.' ? ',' : '.').kind == CellKind::Number;
    if (otherSign) {
      why += std::string(", with '") + layout_.decimal +
             "' for the decimal sign as in the rest of the file; --decimal tells another";
    }
    return fail(why + '.', column + 1);
  }
  return Outcome::Record;
}

LineReader::Outcome LineReader::readDate() {
  dateText_ = {};
  if (dateColumn_ == cells_.size()) return Outcome::Record;
  dateText_ = cells_[dateColumn_].text;
  const std::string_view dayText = dateText_;
  const bool hasTime = timeColumn_ != cells_.size();
  if (hasTime && !cells_[timeColumn_].text.empty()) {
    joined_.assign(dateText_);
    joined_ += ' ';
    joined_ += cells_[timeColumn_].text;
    dateText_ = joined_;
  }
  if (!layout_.hasDates) return Outcome::Record;
  if (!plainDates_.read(dayText, date_)) {
    const auto date = readDateCell(dayText);
    if (!date || date->shape != layout_.dates) {
      return fail(shown(dayText) + " in column " + shown(layout_.columns[dateColumn_].name) + " is no date like " +
                      shown(layout_.dateSample) + '.',
                  dateColumn_ + 1);
    }
    date_ = *date;
  }
  if (hasTime) {
    const auto time = readTimeCell(cells_[timeColumn_].text);
    if (!time) {
      return fail(shown(cells_[timeColumn_].text) + " in column " + shown(layout_.columns[timeColumn_].name) +
                      " is no time of the day.",
                  timeColumn_ + 1);
    }
    date_.time += *time;
    if (date_.monthFirst) *date_.monthFirst += *time;
  }
  return Outcome::Record;
}

LineReader::Outcome LineReader::read(std::string_view line, const char* textEnd) {
  if (!unquoted_.empty()) unquoted_.clear();
  if (layout_.splitter.byBlanks()) line = trimmed(line);
  const char* at = line.data();
  const char* const end = at + line.size();
  const std::size_t delimiterSize = layout_.splitter.delimiter().size();
  const std::size_t count = cells_.size();
  std::size_t filled = 0;
  bool anything = false;
  Outcome outcome = Outcome::Record;
  for (std::size_t i = 0;; ++i) {
    if (fast_ && i < count) {
      const std::size_t behind = takePlainCells(at, end, textEnd, i);
      if (behind > i) {
        anything = true;
        filled = i = behind;
        if (at == end) break;
        ++at;
      }
    }
    std::string_view text;
    if (!nextCell(at, end, text)) return fail(std::string(UnclosedQuote), i + 1);
    if (i < count) {
      anything = anything || !text.empty();
      filled = i + 1;
      if (numeric_[i] != 0 && outcome == Outcome::Record) {
        outcome = readNumber(i, text);
      } else {
        cells_[i] = {text, none, text.empty() ? CellKind::Missing : CellKind::Text};
      }
    } else if (!text.empty()) {
      return fail("It has more than the " + counted(count, "value") +
                      (layout_.headerLine != 0 ? " that line " + std::to_string(layout_.headerLine) + " names."
                                               : " of line " + std::to_string(layout_.firstRecordLine) + '.'),
                  i + 1);
    }
    if (at == end) break;
    at += delimiterSize;
    if (layout_.splitter.byBlanks()) {
      while (at != end && (*at == ' ' || *at == '\t')) ++at;
    }
  }
  if (!anything) return Outcome::Blank;
  if (filled < count) {
    return fail("It has " + counted(filled, "value") + " where " +
                    (layout_.headerLine != 0 ? "line " + std::to_string(layout_.headerLine) + " names "
                                             : "line " + std::to_string(layout_.firstRecordLine) + " has ") +
                    std::to_string(count) + ", the first one being " + shown(cells_[0].text) + '.',
                0, true);
  }
  if (outcome == Outcome::Problem) return outcome;
  return readDate();
}

}  // namespace orvex::inline ORVEX_COUNTS::prices
