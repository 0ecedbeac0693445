#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/prices/date_cell.h"
#include "orvex/prices/options.h"

namespace orvex::inline ORVEX_COUNTS::prices {

/// Takes the lines of a text one by one. They end with CR LF or LF; with CR where the text has no LF at all. A last
/// line without an end counts.
class Lines {
 public:
  explicit Lines(std::string_view text);

  /// False after the last line.
  bool next(std::string_view& line) noexcept;
  /// The number of the line that was taken last, from 1.
  std::size_t number() const noexcept { return number_; }

 private:
  std::string_view rest_;
  char end_;
  std::size_t number_ = 0;
};

/// A part of a line between delimiters, without the blanks around it, or what stands in its quotation marks.
struct CellText {
  std::string text;
  bool quoted = false;
};

inline constexpr std::string_view UnclosedQuote =
    "A quotation mark is opened and not closed before the end of the cell.";

/// Splits lines of text. Several blanks count as one where the delimiter is a blank.
class Splitter {
 public:
  explicit Splitter(std::string delimiter) : delimiter_(std::move(delimiter)) {}

  const std::string& delimiter() const noexcept { return delimiter_; }
  bool byBlanks() const noexcept { return delimiter_ == " "; }

  /// False for a quotation mark that is not closed, or has something else than the delimiter behind it.
  bool split(std::string_view line, std::vector<CellText>& cells) const;

 private:
  std::string delimiter_;
};

struct ColumnLayout {
  std::string name;     // that of its role, or the file's own
  std::string heading;  // the file's own; empty without a header line
  Role role = Role::Other;
};

/// How the lines of a file are to be read: found from its beginning, and then the same for every line.
struct Layout {
  Splitter splitter{","};
  std::vector<ColumnLayout> columns;
  std::size_t headerLine = 0;       // 0 where there is none
  std::size_t firstRecordLine = 0;  // the lines before it are no records
  char decimal = '.';
  bool decimalProven = false;  // some number can be read in one way only
  bool hasDates = false;       // otherwise the column of role Date, if there is one, holds texts
  DateShape dates = DateShape::YearFirst;
  std::string dateSample;  // one of them
  std::vector<std::string> remarks;

  /// The place of the column of a role, or the number of columns.
  std::size_t find(Role role) const noexcept;
};

/// Finds the layout of a text. ReadError where it has no lines, or where nothing that it could be is certain; the text
/// of the error then tells which option would settle it.
Layout findLayout(std::string_view text, const Options& options);

}  // namespace orvex::inline ORVEX_COUNTS::prices
