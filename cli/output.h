#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/sink.h"
#include "orvex/catalogue/computed_rows.h"
#include "orvex/catalogue/value.h"
#include "orvex/data/field.h"
#include "orvex/data/note.h"

/// What a call gave, in each of the formats.
namespace orvex::cli {

enum class Format { Table, Csv, Json };

/// An argument that the call has changed.
struct Written {
  std::string name;
  catalogue::Value value;
  bool given;  // the caller had named it
};

struct ShownColumn {
  std::shared_ptr<Field> field;
  bool texts;
  catalogue::RowRange filled;                                  // the rows outside it are left empty
  std::optional<catalogue::RowRange> computed = std::nullopt;  // of a column of the result
};

struct ShownColumns {
  std::vector<ShownColumn> columns;
  std::shared_ptr<Field> dates;  // where no column shows them
  catalogue::RowRange records;
  std::vector<Written> written;
  std::optional<Integer> position;  // where the call left the cursor of the price series
};

/// A text as a cell of CSV, and a line of them.
std::string csvCell(const std::string& text);
std::string csvLine(const std::vector<std::string>& cells);

struct PriceFile;

/// All columns of a price file, rows without a value left empty.
std::vector<ShownColumn> columnsOf(const PriceFile& file);

/// The table is rounded to be read by people, and alone shows the numbers of the records. The other formats have every
/// digit that matters.
void showColumns(Sink& sink, const ShownColumns& result, Format format);
std::string showNote(const Note& note, const std::vector<Written>& written, Format format);
std::string showValue(const catalogue::Value& value, const std::vector<Written>& written, Format format);
/// An error as JSON, in the library's words and in a reader's, with the line and the cell of a file that it lies in.
std::string showError(const Failure& failure);
/// The members of such an object that tell the error in the library's words: what was reported and, where that is more,
/// what was met first and in which record.
std::string errorMembers(const Error& error);

}  // namespace orvex::cli
