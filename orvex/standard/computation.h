#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <type_traits>
#include <vector>

#include "orvex/data/database.h"
#include "orvex/data/field.h"
#include "orvex/data/integer.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/real.h"
#include "orvex/data/record_set.h"
#include "orvex/data/walk.h"
#include "orvex/kernels/kernels.h"

/// How the methods of `Standard` compute: columns out of columns, each by a step that tells one record's value.
///
/// A step is written once, for any type of number. With `Real` every operation is checked; that is what runs wherever
/// anything is unusual. Where all inputs are of a size with which nothing can overflow, plain doubles give the same
/// bits, and a division by zero shows in the result, which is then computed again with `Real` to meet the fault.
namespace orvex::inline ORVEX_COUNTS::standard {

/// A record number that need not lie in the series: periods may add up to more than a count holds.
using Place = std::int64_t;

/// A column of a computation: rows `first` to N are computed, those before are 0.
struct Series {
  Place first = 1;
  const double* rows = nullptr;  // of record 1
  std::shared_ptr<Field> column{};

  /// The same column, of which nothing before row `record` is looked at.
  Series from(Place record) const { return {std::max(first, record), rows, column}; }
};

/// The state of a step that carries nothing.
struct Nothing {};

/// A result's column, and what its name adds to the alias.
struct Named {
  std::string_view suffix;
  Series series;
};

/// What a column is made by that has no kernel.
inline constexpr auto noRows = [](kernels::Records, double*) { return std::size_t{0}; };

/// Reads columns as numbers of one type.
template <class T>
struct At {
  using Number = T;

  T operator()(const Series& series, int record) const { return series.rows[record - 1]; }
};

inline double magnitude(double x) {
  return std::fabs(x);
}
inline Real magnitude(Real x) {
  return abs(x);
}
inline double root(double x) {
  return std::sqrt(x);
}
inline Real root(Real x) {
  return sqrt(x);
}
template <class T>
T larger(T a, T b) {
  return a > b ? a : b;
}
template <class T>
T smaller(T a, T b) {
  return a < b ? a : b;
}
/// The quotient; `otherwise` where the divisor is 0.
template <class T>
T quotient(T a, T b, T otherwise = 0) {
  return b == T(0) ? otherwise : a / b;
}

/// One call: the series that it is made for, and the columns that it makes. Columns of the caller's are as long as the
/// series and hold finite values only, or the call fails. A call does not yield to the host, so rows stay in place.
class Call {
 public:
  explicit Call(const Database& data) : count_(data.getRecordCount()) {}

  int count() const { return count_.value(); }

  /// A column of the caller's. Errors 91 for none, 9 for one that is not as long as the series, 6 at the first value
  /// that is not finite.
  Series take(const std::shared_ptr<Field>& column);
  Series take(const std::shared_ptr<RecordSet>& set, std::string_view name);

  /// The column of which row r is `step(at, r)`, from row `first` on.
  template <class Step>
  Series each(Place first, Step step) {
    return fill(make(first), noRows, step);
  }
  /// The same where a kernel, handed the records and the rows to fill, does what it can first.
  template <class Kernel, class Step>
  Series by(Place first, Kernel kernel, Step step) {
    return fill(make(first), kernel, step);
  }
  /// The column of which row r is `step(at, own, r)`, `own` being the column so far.
  template <class Step>
  Series recursion(Place first, Step step) {
    return recursion(first, noRows, step);
  }
  /// The same with a kernel.
  template <class Kernel, class Step>
  Series recursion(Place first, Kernel kernel, Step step) {
    const Series own = make(first);
    return fill(own, kernel, [&](auto at, int record) { return step(at, own, record); });
  }
  /// The column of which row r is `step(at, state, r)`. The state is all that the step carries from record to record.
  template <class State, class Step>
  Series carried(Place first, State state, Step step) {
    return columns<1>(first, state, [&](auto at, State& now, int record) { return std::array{step(at, now, record)}; })
        .front();
  }
  /// Several such columns at once, of which `step` gives an array.
  template <int Columns, class State, class Step>
  std::array<Series, Columns> columns(Place first, State state, Step step) {
    std::array<Series, Columns> made;
    double* rows[Columns];
    for (int i = 0; i < Columns; ++i) {
      made[i] = make(first);
      rows[i] = made[i].column->writableValues().data();
    }
    const auto put = [&](const auto& values, int record) {
      for (int i = 0; i < Columns; ++i) rows[i][record - 1] = values[i];
    };
    eachComputed(
        first,
        [&](kernels::Records records) -> std::size_t {
          if (!isPlain()) return 0;
          State trial = state;
          for (int record = records.first; record <= records.last; ++record)
            put(step(At<double>(), trial, record), record);
          for (int i = 0; i < Columns; ++i)
            if (!areFinite(records, rows[i])) return 0;
          state = trial;
          return static_cast<std::size_t>(records.last - records.first) + 1;
        },
        [&](int record) { put(step(At<Real>(), state, record), record); }, Carried(state));
    for (Series& one : made) one = done(one);
    return made;
  }

  /// The column with its rows before `first` hidden.
  Series shown(const Series& series, Place first);

  std::shared_ptr<RecordSet> result(std::string_view alias, const Series& column) {
    return result(alias, std::vector<Named>{{"", column}});
  }
  std::shared_ptr<RecordSet> result(std::string_view alias, const std::vector<Named>& columns);

 private:
  /// A new column, 0 before `first` and with nothing in its rows from there on.
  Series make(Place first) const;
  /// Takes note of how large the values are that a column came to hold.
  Series done(const Series& made);
  /// Whether plain doubles may be tried.
  bool isPlain() const { return plain_ && kernels::active() != nullptr; }
  bool areFinite(kernels::Records records, const double* rows) const;

  /// Writes the rows of a column that `make` has made: what the kernel leaves is tried with plain doubles.
  template <class Kernel, class Step>
  Series fill(const Series& made, Kernel kernel, Step step) {
    double* const rows = made.column->writableValues().data();
    eachComputed(
        made.first,
        [&](kernels::Records records) {
          const std::size_t handled = kernel(records, rows);
          records.first += static_cast<int>(handled);
          if (records.first > records.last || !isPlain()) return handled;
          for (int record = records.first; record <= records.last; ++record) {
            rows[record - 1] = step(At<double>(), record);
          }
          return areFinite(records, rows) ? handled + static_cast<std::size_t>(records.last - records.first) + 1
                                          : handled;
        },
        [&](int record) { rows[record - 1] = step(At<Real>(), record); });
    return done(made);
  }

  template <class Kernel, class Step>
  void eachComputed(Place first, Kernel kernel, Step step, const Carried& carried = Carried()) {
    eachRecord(
        first, count_, kernel, [&](Integer record) { step(record.value()); }, noYield, carried);
  }

  Integer count_;
  bool plain_ = true;
  std::vector<std::shared_ptr<Field>> taken_;
};

}  // namespace orvex::inline ORVEX_COUNTS::standard
