#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/data/database.h"
#include "orvex/prices/date_cell.h"
#include "orvex/prices/options.h"
#include "orvex/prices/read_error.h"

/// Price files as people have them: one reader that finds out encoding, delimiter, decimal sign, header, column names
/// and date format, checks every line, and never turns what it did not understand into a number. What is certain it
/// does silently; what it decided it remarks on; everything else is an error that names line and cell.
namespace orvex::inline ORVEX_COUNTS::prices {

/// A column of a file: numbers, or texts where one of its cells is no number.
struct PriceColumn {
  std::string name;     // that of its role, or the file's own
  std::string heading;  // the file's own; empty without a header line
  Role role = Role::Other;
  /// One a record, NaN where there is no value; none of a column of texts.
  std::vector<double> numbers;
  /// One a record, of a column of texts; valid as long as the table's `storage`.
  std::vector<std::string_view> texts;
  /// Of a column of texts the first line with one that is no number.
  std::size_t textLine = 0;

  bool isText() const noexcept { return textLine != 0; }
  /// Tells whether any record has a number.
  bool hasValues() const noexcept;
};

/// What a price file holds: records, the oldest first.
struct PriceTable {
  std::size_t count = 0;
  /// In the order of the file. The column of role Date has texts, with the time of the day in them.
  std::vector<PriceColumn> columns;
  /// The dates to compare; none where they were not read as dates.
  std::vector<Time> times;
  /// The line of each record.
  std::vector<std::size_t> lines;
  /// What was decided and is not certain, in sentences.
  std::vector<std::string> remarks;
  /// What the texts are parts of.
  std::shared_ptr<const void> storage;

  /// The column of a role; nothing where the file has none, or one of prices without any value.
  const PriceColumn* find(Role role) const noexcept;
  /// The first column of that name or heading, without regard to case; nothing where there is none.
  const PriceColumn* find(std::string_view name) const noexcept;
};

/// Reads the bytes of a file. ReadError for what is no price file, has no record that was asked for, or more records
/// than counts of this width can tell.
PriceTable read(std::string bytes, const Options& options = {});

/// Reads the file at a UTF-8 path. ReadError also where there is no such file, or it cannot be read.
PriceTable readFile(const std::string& path, const Options& options = {});

/// The dates and those price columns that have values, for `Database::OpenDatabaseByRows`. They are looked at where
/// they stand; the table is kept with them.
PriceRows rowsOf(PriceTable table);

}  // namespace orvex::inline ORVEX_COUNTS::prices
