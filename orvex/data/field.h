#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvex/data/attached_note.h"
#include "orvex/data/binding_slot.h"
#include "orvex/data/error.h"
#include "orvex/data/integer.h"
#include "orvex/data/note.h"
#include "orvex/data/rows.h"
#include "orvex/data/variant.h"

namespace orvex::inline ORVEX_COUNTS {

/// One named column of a price series or of a result: rows 1 (the oldest record) to the record count, each with a
/// number and, beside it, a text, and one attached `Note`. A new field has no rows, no name and no note.
///
/// The rows are the field's own, or somebody else's that it views: those are copied when they are first written, and
/// never changed. Threads may read one field at the same time while nobody writes to it.
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
  void setNote(std::shared_ptr<Note> NewNote) { note_.set(std::move(NewNote)); }
  /// The attached note, or nothing where `initialize` never ran and none was set.
  std::shared_ptr<Note> getNote() const { return note_.get(); }

  /// The count that `initialize` was given last, after `destroy` too.
  Integer getRecordCount() const { return recordCount_; }

  /// Makes rows 1 to `RecordCount`, all 0.0 and "", in place of any earlier ones, and attaches a new note. Error 9
  /// for a count below 1, which changes nothing.
  Empty initialize(Integer RecordCount, std::string_view Name);
  /// The same, with nothing in rows `first` to `last`: for whoever then writes each of them, and reads none before.
  void initializeToFill(Integer RecordCount, std::string_view Name, std::int64_t first, std::int64_t last);
  /// The same, with somebody else's rows, at no cost that grows with their number: their owner is held from then on.
  /// Rows without an owner are copied. Error 9 for no rows and 6 for more than counts can tell, which change nothing.
  void view(Rows<double> rows, std::string_view Name);
  /// Views texts for all rows likewise. Error 9 for another number of them.
  void viewTexts(Rows<std::string_view> texts);
  /// Makes the rows `RecordCount`, its own from then on: those that are new are 0 and "", the others stay. In a column
  /// that grows again and again a row costs the same on average. Rows that were handed out before stay as long as they
  /// were; what is written into the field may show in them.
  void resize(Integer RecordCount);
  /// Makes room for as many rows, so that `resize` to no more of them takes no memory.
  void reserve(Integer RecordCount);
  /// Frees the rows. Name, count and note stay.
  Empty destroy();

  void setName(std::string_view NewFieldName) { name_ = NewFieldName; }
  std::string getName() const { return name_; }
  std::string_view name() const noexcept { return name_; }

  /// The row accessors raise 1105 "Field.(method).ArrayOutOfBounds" for a row that does not exist.
  void setValue(Integer RowIndex, double Value) {
    if (!hasRow(RowIndex)) raise(setValueFault);
    if (own_ == nullptr) copyRows();
    own_[index(RowIndex)] = Value;
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

  /// The numbers of rows 1, 2, ... in place; none where there are no rows. Valid until the rows are written or are
  /// others, so never across a yield.
  std::span<const double> values() const noexcept { return values_; }
  /// The same with what keeps them, for whoever goes on looking at them: across a yield, or as a part of them that a
  /// field of its own views. What is written into the field's own rows shows there.
  Rows<double> rows() const noexcept { return {values_, owner_}; }
  /// The same, to be written: rows that the field views are copied first.
  std::span<double> writableValues() {
    if (own_ == nullptr) copyRows();
    return {own_, values_.size()};
  }
  /// Hands the rows over to whoever goes on with them, without a copy unless they are viewed. The field has none then,
  /// as after `destroy`.
  OwnRows releaseRows();

  BindingSlot binding;

 private:
  struct Texts {
    std::vector<std::string> own;
    Rows<std::string_view> viewed;  // in their place while nobody has written a text
  };

  static std::size_t index(Integer row) noexcept { return static_cast<std::size_t>(row.value() - 1); }
  bool hasRow(Integer row) const noexcept { return row >= 1 && index(row) < values_.size(); }
  std::string_view text(std::size_t row) const;
  void makeTextsOwn();
  void copyRows();
  void replace(OwnRows rows, std::string_view name);

  std::span<const double> values_;
  double* own_ = nullptr;  // the same rows, where they are the field's own
  std::size_t room_ = 0;   // for how many rows of its own there is memory
  std::shared_ptr<const void> owner_;
  std::unique_ptr<Texts> texts_;  // made with the first text: most columns never have one
  std::string name_;
  Integer recordCount_;
  AttachedNote note_;
};

}  // namespace orvex::inline ORVEX_COUNTS
