#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orvex/data/database.h"
#include "orvex/data/field.h"
#include "orvex/data/record_set.h"

namespace orvex::cli {

struct FileColumn {
  std::shared_ptr<Field> field;
  /// The first line whose value is no number that fits a double, if there is one: then the column holds texts and
  /// nothing to compute with. The dates are such a column whatever they are made of.
  std::optional<std::size_t> textLine;
};

/// What a price file gives to the methods.
struct PriceFile {
  std::string name;
  /// All columns, in the order of the file.
  std::vector<FileColumn> columns;
  /// The dates; nothing where the file has none.
  std::shared_ptr<Field> dates;
  /// The record count and the cursor. It has all six price columns, whether the file has them or not.
  std::shared_ptr<Database> data;
  /// The file's own columns of numbers, and its dates: a price that is missing is not taken for 0.
  std::shared_ptr<RecordSet> prices;

  /// What is odd about the file and yet no error.
  std::vector<std::string> remarks;

  std::vector<std::string> columnNames() const;
};

/// Reads a file of one record a line: either date, open, high, low, close and volume without a header line, or any
/// columns with one. `delimiter` is found out where it is not given. Failure with the loader's error 1012 for a file
/// that cannot be read or is not such a file.
PriceFile readPriceFile(const std::string& path, const std::optional<std::string>& delimiter);

}  // namespace orvex::cli
