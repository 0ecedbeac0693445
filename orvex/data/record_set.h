#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "orvex/data/binding_slot.h"
#include "orvex/data/error.h"
#include "orvex/data/field.h"
#include "orvex/data/integer.h"

namespace orvex::inline ORVEX_COUNTS {

class Database;

/// An ordered collection of fields, found by name without regard to case; of two that bear one name the earlier is
/// found. It refers to its fields and does not copy them: a change made through any holder is seen by all. Threads may
/// share a set to which nobody adds and whose columns nobody writes.
class RecordSet {
 public:
  static constexpr Fault getIndexFault{1110, "Recordset.getIndex.InvalidFieldName", "Invalid FieldName"};
  static constexpr Fault renameFieldFault = outOfBounds("Recordset.renameField.ArrayOutOfBounds");
  static constexpr Fault removeFieldFault = outOfBounds("Recordset.removeFields.ArrayOutOfBounds");
  static constexpr Fault getValueFault = outOfBounds("Recordset.getValue.ArrayOutOfBounds");
  static constexpr Fault setValueFault = outOfBounds("Recordset.setValue.ArrayOutOfBounds");
  static constexpr Fault getFieldFault = outOfBounds("Recordset.getField.ArrayOutOfBounds");
  static constexpr Fault getNameFault = outOfBounds("Recordset.getName.ArrayOutOfBounds");

  RecordSet() = default;
  /// A set of these fields, in this order.
  explicit RecordSet(std::vector<std::shared_ptr<Field>> fields) : fields_(std::move(fields)) {}
  RecordSet(const RecordSet&) = delete;
  RecordSet& operator=(const RecordSet&) = delete;

  /// Keeps a reference to `NewDatabase`, which the set itself never uses. A database that holds this set in turn makes
  /// a circle that only setting one of the two to nothing opens.
  void setDatabase(std::shared_ptr<Database> NewDatabase) { database_ = std::move(NewDatabase); }
  std::shared_ptr<Database> getDatabase() const { return database_; }

  /// Appends the field itself, whatever its name, a null object too. Error 6 for more fields than counts can tell.
  void addField(std::shared_ptr<Field> NewField);
  /// Renames the first field of the old name; the new name is not compared with the others. 1105 for an unknown name.
  void renameField(std::string_view OldFieldName, std::string_view NewFieldName);
  /// Removes the first field of that name; the others keep their order. 1105 for an unknown name.
  void removeField(std::string_view FieldName);

  /// The number in a row of the named field; 1105 for an unknown name or a row outside it.
  double getValue(std::string_view FieldName, Integer RowIndex) const;
  void setValue(std::string_view FieldName, Integer RowIndex, double Value);

  /// The first field of that name, the object itself; 1105 for an unknown name.
  std::shared_ptr<Field> getField(std::string_view FieldName) const;
  /// Its position, from 1; error 1110 for an unknown name. Error 91 where a null object stands before it.
  Integer getIndex(std::string_view FieldName) const;
  /// The name of the field at a position from 1; 1105 outside the positions.
  std::string getName(Integer FieldIndex) const;
  Integer getFieldCount() const { return static_cast<int>(fields_.size()); }
  /// All of them, by their places: two may bear one name, and one may be a null object.
  std::span<const std::shared_ptr<Field>> fields() const noexcept { return fields_; }
  /// Tells whether a field of that name is there. Never raises.
  bool isValidField(std::string_view FieldName) const;

  BindingSlot binding;

 private:
  std::vector<std::shared_ptr<Field>> fields_;
  std::shared_ptr<Database> database_;
};

}  // namespace orvex::inline ORVEX_COUNTS
