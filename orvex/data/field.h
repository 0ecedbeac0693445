#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvex/data/binding_slot.h"
#include "orvex/data/error.h"
#include "orvex/data/integer.h"
#include "orvex/data/note.h"
#include "orvex/data/variant.h"

namespace orvex::inline ORVEX_COUNTS {

/// One named column of a price series or of a result: rows 1 (the oldest record) to the record count, each with a
/// number and, beside it, a text, and one attached `Note`. A new field has no rows, no name and no note.
class Field {
 public:
  static constexpr Fault setValueFault = outOfBounds("Field.setValue.ArrayOutOfBounds");
  static constexpr Fault getValueFault = outOfBounds("Field.getValue.ArrayOutOfBounds");
  static constexpr Fault setStrValueFault = outOfBounds("Field.setStrValue.ArrayOutOfBounds");
  static constexpr Fault getStrValueFault = outOfBounds("Field.getStrValue.ArrayOutOfBounds");

  Field() = default;
  Field(const Field&) = delete;
  Field& operator=(const Field&) = delete;

  /// Attaches `NewNote` itself, not a copy.
  void setNote(std::shared_ptr<Note> NewNote) { note_ = std::move(NewNote); }
  /// The attached note, or nothing where `initialize` never ran and none was set.
  std::shared_ptr<Note> getNote() const { return note_; }

  /// The count that `initialize` was given last, after `destroy` too.
  Integer getRecordCount() const { return recordCount_; }

  /// Makes rows 1 to `RecordCount`, all 0.0 and "", in place of any earlier ones, and attaches a new note. Error 9
  /// for a count below 1, which changes nothing.
  Empty initialize(Integer RecordCount, std::string_view Name);
  /// Frees the rows. Name, count and note stay.
  Empty destroy();

  void setName(std::string_view NewFieldName) { name_ = NewFieldName; }
  std::string getName() const { return name_; }
  std::string_view name() const noexcept { return name_; }

  /// The row accessors raise 1105 "Field.(method).ArrayOutOfBounds" for a row that does not exist.
  void setValue(Integer RowIndex, double Value) {
    if (!hasRow(RowIndex)) raise(setValueFault);
    values_[index(RowIndex)] = Value;
  }
  double getValue(Integer RowIndex) const {
    if (!hasRow(RowIndex)) raise(getValueFault);
    return values_[index(RowIndex)];
  }
  void setStrValue(Integer RowIndex, std::string_view Value);
  std::string getStrValue(Integer RowIndex) const;

  /// Copies of the whole columns, lower bound 1; no array where there are no rows.
  Array<double> getDoubleArray() const;
  Array<std::string> getStringArray() const;

  /// The numbers of rows 1, 2, ... in place, for bulk access; empty where there are no rows. Valid until `initialize`
  /// or `destroy`, so never across a yield.
  std::span<double> values() noexcept { return values_; }
  std::span<const double> values() const noexcept { return values_; }

  BindingSlot binding;

 private:
  static std::size_t index(Integer row) noexcept { return static_cast<std::size_t>(row.value() - 1); }
  bool hasRow(Integer row) const noexcept { return row >= 1 && index(row) < values_.size(); }

  std::vector<double> values_;
  std::vector<std::string> texts_;  // made when the first text is written: most columns never have one
  std::string name_;
  Integer recordCount_;
  std::shared_ptr<Note> note_;
};

}  // namespace orvex::inline ORVEX_COUNTS
