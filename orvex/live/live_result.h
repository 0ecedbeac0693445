#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "orvex/catalogue/computed_rows.h"
#include "orvex/catalogue/description.h"
#include "orvex/data/error.h"
#include "orvex/data/field.h"

namespace orvex::inline ORVEX_COUNTS {

/// What a call that is kept on a live series has given so far.
class LiveResult {
 public:
  LiveResult(const LiveResult&) = delete;
  LiveResult& operator=(const LiveResult&) = delete;

  const catalogue::Method& method() const noexcept { return method_; }

  /// Of how many records it is: those of the series, or fewer where the last change has failed.
  int count() const noexcept { return count_; }
  /// How many rows, from the first on, the last change has left as they were: for whoever keeps a copy of the columns.
  int standing() const noexcept { return standing_; }
  /// The columns, to be read only; none until the call has succeeded once. They grow with the series, so what is looked
  /// at for longer is their `rows()`: those stay as many as they were, and a later change may show in the last of them.
  std::span<const std::shared_ptr<Field>> columns() const noexcept { return columns_; }
  /// The computed rows of each column.
  std::span<const catalogue::RowRange> computed() const noexcept { return computed_; }
  /// The last row of a column. REQUIRES: it has one.
  double last(std::size_t column = 0) const noexcept { return columns_[column]->values().back(); }
  /// How many columns the call makes, those on the way to its result included; 0 where it is computed anew.
  std::size_t columnsMade() const noexcept { return columnsMade_; }
  /// What the last change has failed with, that of a column which the call was given included; nothing where it has
  /// succeeded.
  const std::optional<Error>& error() const noexcept { return error_; }

 protected:
  explicit LiveResult(const catalogue::Method& method) : method_(method) {}
  ~LiveResult() = default;

  const catalogue::Method& method_;
  int count_ = 0;
  int standing_ = 0;
  std::size_t columnsMade_ = 0;
  std::vector<std::shared_ptr<Field>> columns_;
  std::vector<catalogue::RowRange> computed_;
  std::optional<Error> error_;
};

}  // namespace orvex::inline ORVEX_COUNTS
