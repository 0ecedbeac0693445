#pragma once

#include <array>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "orvex/catalogue/catalogue.h"
#include "orvex/data/database.h"
#include "orvex/live/live_result.h"
#include "orvex/prices/sessions.h"

namespace orvex::inline ORVEX_COUNTS {

/// One record of prices.
struct PriceRecord {
  double open = 0.0, high = 0.0, low = 0.0, close = 0.0, volume = 0.0;
  std::string_view date{};
};

/// A column of a kept call.
struct LiveColumn {
  std::shared_ptr<const LiveResult> result;
  std::size_t column = 0;
};

/// An argument of a kept call: a number; a text, which is the name of a price column or of a code where it stands for
/// one; a column of another kept call, its first where a result is given. Where sessions are wanted, "Date" is one a
/// day, and "Week", "Month" and "Year" are as long as that.
class LiveValue {
 public:
  template <class T>
  requires std::is_arithmetic_v<T> LiveValue(T number) : value_(static_cast<double>(number)) {}
  template <class T>
  requires std::is_convertible_v<T, std::string_view> LiveValue(const T& text)
      : value_(std::string(std::string_view(text))) {}
  LiveValue(LiveColumn column) : value_(std::move(column)) {}
  LiveValue(std::shared_ptr<const LiveResult> result) : value_(LiveColumn{std::move(result)}) {}

  const auto& value() const noexcept { return value_; }

 private:
  std::variant<double, std::string, LiveColumn> value_;
};

/// A price series that grows, and calls that are kept on it. After each change the kept results have their rows up to
/// date, with the bits of a fresh call on the same prices; but only the records that are new or revised are computed
/// (after a change that failed, and on another kept column, the one before them too), so a change costs the same
/// however long the series is. Methods that the catalogue tells to be `recomputed` are computed anew. A call on a kept
/// column begins behind its rows that are not computed (call_on_values.h).
///
/// A record that a method cannot compute leaves its result as of the record before, with the error attached, whether it
/// comes alone or among others; one that is revised to be such leaves it as it was. The series and all other results go
/// on, and a revision that mends the record mends the result. Where memory runs out in a change, `std::bad_alloc` comes
/// through and everything is as it was before it.
///
/// One thread at a time may use a series and its results; two series have nothing in common. Changes do not yield to
/// the host.
class LiveSeries {
 public:
  /// An empty one, which has all price columns. In rows of results that are not computed there is 0, as in the
  /// library's own, or `notComputed`.
  explicit LiveSeries(double notComputed = 0.0);
  /// Begins with prices. A column that has no rows there is left out for good, as in `Database::OpenDatabaseByRows`;
  /// error 9 where there are none.
  explicit LiveSeries(const PriceRows& prices, double notComputed = 0.0);
  ~LiveSeries();
  LiveSeries(const LiveSeries&) = delete;
  LiveSeries& operator=(const LiveSeries&) = delete;

  int count() const noexcept { return count_; }
  /// The prices, to be read only. The columns grow as those of results do.
  const std::shared_ptr<RecordSet>& prices() const noexcept { return prices_; }

  /// Adds a record at the end. Error 6 past the greatest count.
  void append(const PriceRecord& record);
  /// Adds many at once, which costs less than one by one: one change. All columns that the series has must be of one
  /// length; error 9 where they are not.
  void append(const PriceRows& records);
  /// The same where it leaves all results without an error; otherwise it changes nothing, and gives false. For whoever
  /// is to tell what each record alone would have brought: where there are no errors, the rows show it.
  bool appendUnlessErrors(const PriceRows& records);
  /// Puts another record in the place of the last; error 9 where there is none.
  void revise(const PriceRecord& record);

  using Argument = std::pair<std::string_view, LiveValue>;

  /// Keeps a call of "Class.Method", or of a method by its bare name. Arguments that are not named take their usual
  /// values. The result is computed at once; an error of the call itself is attached to it and not raised. Error 5 for
  /// a method that is not known, that returns no columns or that has no argument of such a name, 13 for a value that is
  /// none of its argument, 449 for an argument left out that has no usual value, 1110 for a column that is not there.
  std::shared_ptr<const LiveResult> keep(std::string_view method, std::initializer_list<Argument> arguments = {}) {
    return keep(method, std::vector<Argument>(arguments));
  }
  std::shared_ptr<const LiveResult> keep(std::string_view method, const std::vector<Argument>& arguments);

  /// The same by its member function, `keep<&Index::RelativeStrengthIndex>("Close", 14)`: the arguments are those of
  /// the method in their order, without the database and the set of prices; those left out at the end take their usual
  /// values.
  template <auto Function, class... Arguments>
  std::shared_ptr<const LiveResult> keep(Arguments&&... arguments) {
    return keep(methodOf<Function>(), std::vector<LiveValue>{LiveValue(std::forward<Arguments>(arguments))...});
  }

  /// Lets go of a kept call, which is not computed any further. Error 5 for one that is not kept here, or that another
  /// one is kept on.
  void drop(const std::shared_ptr<const LiveResult>& result);

 private:
  class Kept;
  struct Found {
    const catalogue::Class* owner;
    const catalogue::Method* method;
  };

  template <auto Function>
  static Found methodOf() {
    using Owner = typename catalogue::Signature<decltype(Function)>::Owner;
    Found found{&catalogue::classOf<Owner>, nullptr};
    const auto look = [&](const auto& row) {
      using Row = std::remove_cvref_t<decltype(row)>;
      if constexpr (std::is_same_v<decltype(Row::function), const decltype(Function)>) {
        if (Row::function == Function) found.method = &row;
      }
    };
    std::apply([&](const auto&... rows) { (look(rows), ...); }, catalogue::Description<Owner>::rows);
    return found;
  }

  static Found find(std::string_view method);
  std::shared_ptr<const LiveResult> keep(Found found, const std::vector<LiveValue>& arguments);
  std::shared_ptr<const LiveResult> keep(Found found, const std::vector<const LiveValue*>& arguments);
  std::shared_ptr<Kept> findKept(const LiveResult* result) const;

  /// What is done with an error of a result: attached to it, or the whole change declined.
  enum class OnError { Attach, Decline };

  /// Makes the series `count` records, the last of which `write` puts into the columns, and brings all results up to
  /// it. Whatever leaves it has changed nothing, and so has one that is declined, of which it gives false.
  template <class Write>
  bool change(Integer count, OnError onError, Write&& write);
  bool append(const PriceRows& records, OnError onError);
  void setRecord(std::size_t row, const PriceRecord& record);

  struct PriceField {
    std::shared_ptr<Field> field;
    double PriceRecord::*value;
    Rows<double> PriceRows::*rows;
  };

  struct SessionField {
    prices::SessionLength length;
    std::shared_ptr<Field> field;
  };

  /// The price column of that name; for an argument that tells sessions, a column of those that the dates make.
  std::shared_ptr<Field> columnNamed(std::string_view name, const catalogue::Argument& argument);
  std::shared_ptr<Field> sessionsOf(prices::SessionLength length);
  void fillSessions(const SessionField& sessions, std::size_t from) const;
  /// All that have a row for each record.
  template <class Use>
  void forEachColumn(Use&& use) const;

  std::array<PriceField, 5> columns_;
  std::shared_ptr<Field> dates_;
  // Those that a call has been kept on.
  std::vector<SessionField> sessions_;
  std::shared_ptr<RecordSet> prices_;
  int count_ = 0;
  double notComputed_;
  // In the order in which they were kept: each after those that it takes columns of.
  std::vector<std::shared_ptr<Kept>> kept_;
};

}  // namespace orvex::inline ORVEX_COUNTS
