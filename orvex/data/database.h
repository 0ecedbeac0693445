#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "orvex/data/binding_slot.h"
#include "orvex/data/error.h"
#include "orvex/data/field.h"
#include "orvex/data/integer.h"
#include "orvex/data/record_set.h"
#include "orvex/data/rows.h"
#include "orvex/data/variant.h"

namespace orvex::inline ORVEX_COUNTS {

/// Price columns that stand in memory already: those that there are, all of one length.
struct PriceRows {
  Rows<double> open{}, high{}, low{}, close{}, volume{};
  Rows<std::string_view> dates{};
};

/// A price series: the fields "Date" (texts), "Open", "High", "Low", "Close" and "Volume" in one `RecordSet`, their
/// record count, and a cursor that stands on one record, or one past the last. Indicators take it as `data`. They move
/// the cursor, so no two threads may use one database at the same time: each has its own over the same set.
///
/// The loaders replace what was there. Each reports whatever goes wrong as error 1012 "OpenDatabase" with the
/// description of the fault; the database then holds what the failed load had made so far.
class Database : public std::enable_shared_from_this<Database> {
 public:
  static constexpr std::string_view DateName = "Date";
  static constexpr std::string_view OpenName = "Open";
  static constexpr std::string_view HighName = "High";
  static constexpr std::string_view LowName = "Low";
  static constexpr std::string_view CloseName = "Close";
  static constexpr std::string_view VolumeName = "Volume";
  static constexpr std::array PriceNames = {OpenName, HighName, LowName, CloseName, VolumeName};

  static constexpr Fault BeginOfFile{1001, "setPosition", "BOF"};
  static constexpr Fault EndOfFile{1001, "setPosition", "EOF"};
  static constexpr Fault loadFault(std::string_view description) { return {1012, "OpenDatabase", description}; }

  Database() = default;
  /// A series of `count` records without a set, for a computation that needs the record count and the cursor alone.
  explicit Database(Integer count) : recordCount_(count) {}
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  /// Adopts a set that holds the six fields, and the record count of its "Open". 1105 "Recordset.getField..." for a
  /// field that is missing; the set is adopted all the same.
  void RecordsetCache(std::shared_ptr<RecordSet> NewRecordset);
  /// The set itself, or nothing.
  std::shared_ptr<RecordSet> getRecordset() const { return recordset_; }

  Integer getRecordCount() const { return recordCount_; }

  /// Moves to record 1 .. record count + 1. Errors 1001 "BOF" and "EOF" outside it, which leave the cursor. The moves
  /// below go through it. All return 0.
  Integer setPosition(Integer Index);
  Integer getPosition() const { return position_; }
  Integer MoveNext() { return setPosition(position_ + 1); }
  Integer MovePrevious() { return setPosition(position_ - 1); }
  /// "EOF" where an array with an upper bound below 0 failed to load and left that bound as the record count.
  Integer MoveFirst() { return setPosition(1); }
  Integer MoveLast() { return setPosition(recordCount_); }

  /// Loads a text file of one record a line: date, open, high, low, close, volume, with `Delimiter` between them and no
  /// header line. The date stays a text. A part that is missing leaves its row 0 or "", and what is left of the line
  /// moves on to the next column. After a delimiter one character is cut, however long it is, so of a longer one the
  /// rest stays in front of the next part. Yields once a line; ends at record 1.
  void OpenDataBase(const std::string& filename, const std::string& Delimiter);
  /// Loads elements 1 to the upper bound of one array into all five price columns. The cursor stays.
  void OpenDatabaseByArray(const VariantArray& Ary);
  /// Loads elements 1 to the upper bound of `OpenAry` of four arrays; "Volume" gets those of `CloseAry`.
  void OpenDatabaseByFourArrays(const VariantArray& OpenAry, const VariantArray& HighAry, const VariantArray& LowAry,
                                const VariantArray& CloseAry);

  /// Loads columns at once. Those that have an owner are viewed and not copied, so loading them costs the same however
  /// long they are. A column without rows is left out of the set, and a method that needs it then fails as it does of
  /// any set without it. Ends at record 1. Fails, with the description of error 9, for columns that differ in length
  /// and where there are none.
  void OpenDatabaseByRows(const PriceRows& prices);

  /// Lets go of the set. Fields, record count and cursor stay.
  void CloseDatabase() { recordset_ = nullptr; }

  BindingSlot binding;

 private:
  struct Columns {
    std::shared_ptr<Field> date, open, high, low, close, volume;
  };

  void beginLoad();
  void initializeColumns(const Columns& columns, Integer count);
  void loadLines(const std::string& filename, const std::string& delimiter);
  template <class Fill>
  void loadElements(const VariantArray& longest, Fill&& fill);
  void loadRows(const PriceRows& prices);
  static void publish(RecordSet& recordset, const Columns& columns);

  Columns columns_;
  std::shared_ptr<RecordSet> recordset_;
  Integer position_;
  Integer recordCount_;
};

}  // namespace orvex::inline ORVEX_COUNTS
