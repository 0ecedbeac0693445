#pragma once

#include <memory>
#include <string_view>

#include "orvex/data/columns.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/object.h"
#include "orvex/data/record_set.h"

namespace orvex::inline ORVEX_COUNTS {

/// A column of a set, looked up by its name when the first row is read and kept from then on: a set without it
/// fails where a computation first needs it, and no record looks it up again. REQUIRES: set and name live as long.
class PriceColumn {
 public:
  PriceColumn(const std::shared_ptr<RecordSet>& set, std::string_view name) : set_(set), name_(name) {}

  const std::shared_ptr<Field>& field() {
    if (column_ == nullptr) column_ = object(set_).getField(name_);
    return column_;
  }

  Real operator()(Integer record) { return at(field(), record); }

  /// For a kernel; none where the column cannot be had, which the first step that needs it then reports.
  kernels::Source rows() {
    try {
      return rowsOf(field());
    } catch (const Error&) {
      return {};
    }
  }

 private:
  const std::shared_ptr<RecordSet>& set_;
  std::string_view name_;
  std::shared_ptr<Field> column_;
};

}  // namespace orvex::inline ORVEX_COUNTS
