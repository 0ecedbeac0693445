#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/prices/layout.h"
#include "orvex/prices/number_cell.h"

namespace orvex::inline ORVEX_COUNTS::prices {

/// A cell of a record: its text, and as a number NaN where it is missing or a text.
struct Cell {
  std::string_view text;
  double number;
  CellKind kind;
};

/// Why a line is no record.
struct LineProblem {
  std::string text;  // what is wrong and what would work, to go behind the number of the line
  std::size_t cell;  // from 1; 0 where it lies in no single one
  bool tooShort;     // the line ends before its record does
};

/// Reads single lines by a layout. What it cannot read as the layout has it is told, never guessed.
class LineReader {
 public:
  explicit LineReader(Layout layout);

  const Layout& layout() const noexcept { return layout_; }

  enum class Outcome { Record, Blank, Problem };
  /// Reads a line into `cells` and `date`, which stand until the next one; the texts are parts of the line wherever
  /// that is possible. A line of blanks and delimiters alone is blank. A line that is part of a text
  /// is read faster with the end of that. REQUIRES: no character of a number follows the line.
  Outcome read(std::string_view line) { return read(line, line.data() + line.size()); }
  Outcome read(std::string_view line, const char* textEnd);

  /// One for each column of the layout. The prices are numbers or missing, never texts.
  std::span<const Cell> cells() const noexcept { return cells_; }
  /// The date with the time beside it; null where the layout has no dates.
  const DateCell* date() const noexcept { return layout_.hasDates ? &date_ : nullptr; }
  /// The text of both.
  std::string_view dateText() const noexcept { return dateText_; }
  const LineProblem& problem() const noexcept { return problem_; }

  /// Other dates have told which number of a date is the month.
  void settleDates(bool monthFirst) { plainDates_.settle(monthFirst); }

  /// A further column that had a text is not read for numbers any more.
  void keepTexts(std::size_t column) { numeric_[column] = 0; }

 private:
  Outcome fail(std::string text, std::size_t cell, bool tooShort = false);
  std::size_t takePlainCells(const char*& at, const char* end, const char* textEnd, std::size_t column);
  bool nextCell(const char*& at, const char* end, std::string_view& text);
  const char* findDelimiter(const char* at, const char* end) const;
  Outcome readNumber(std::size_t column, std::string_view text);
  Outcome readDate();

  Layout layout_;
  std::vector<char> numeric_;
  std::vector<Cell> cells_;
  std::deque<std::string> unquoted_;
  std::size_t dateColumn_;
  std::size_t timeColumn_;
  DateCell date_{};
  PlainDates plainDates_;
  std::string_view dateText_;
  std::string joined_;
  LineProblem problem_{};
  char mark_ = '\0';   // the delimiter, where it is one byte that is in no number
  bool fast_ = false;  // what looks like a number in full is one
};

}  // namespace orvex::inline ORVEX_COUNTS::prices
