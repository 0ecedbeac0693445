#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orvex/data/database.h"
#include "orvex/data/field.h"
#include "orvex/data/record_set.h"
#include "orvex/prices/date_cell.h"
#include "orvex/prices/options.h"

namespace orvex::cli {

struct FileColumn {
  /// NaN where the file has no value.
  std::shared_ptr<Field> field;
  /// Its name in the file, where that is another.
  std::string heading;
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
  /// The same to compute with; none where they were not read as dates.
  std::vector<prices::Time> times;
  /// The record count and the cursor.
  std::shared_ptr<Database> data;
  /// The file's columns of numbers that have any value: a price that is missing is not taken for 0.
  std::shared_ptr<RecordSet> prices;

  /// What was decided about the file and is not certain.
  std::vector<std::string> remarks;

  std::vector<std::string> columnNames() const;
};

/// Reads a price file, plain or compressed by gzip; "-" is the standard input. Failure with the loader's error 1012 for
/// one that cannot be read or is no price file.
PriceFile readPriceFile(const std::string& path, const prices::Options& options);

}  // namespace orvex::cli
