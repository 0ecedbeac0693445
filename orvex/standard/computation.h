#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "orvex/data/continuation.h"
#include "orvex/data/database.h"
#include "orvex/data/field.h"
#include "orvex/data/head_of_series.h"
#include "orvex/data/integer.h"
#include "orvex/data/kernel_rows.h"
#include "orvex/data/real.h"
#include "orvex/data/record_set.h"
#include "orvex/data/walk.h"
#include "orvex/kernels/standard.h"
#include "orvex/standard/formulas.h"
#include "orvex/standard/numbers.h"

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

/// A column, and how many records before the record its row is taken from.
struct Input {
  Input(const Series& x, int before = 0) : series(&x), lag(before) {}

  const Series* series;
  int lag;
};

/// What a column is made by that has no kernel.
inline constexpr auto noRows = [](kernels::Records, double*) { return std::size_t{0}; };

/// Reads columns as numbers of one type.
template <class T>
struct At {
  using Number = T;

  T operator()(const Series& series, int record) const { return series.rows[record - 1]; }
};

/// One call: the series that it is made for, and the columns that it makes. Columns of the caller's are as long as the
/// series and hold finite values only, or the call fails. A call does not yield to the host, so rows stay in place.
///
/// Kernels look at what they read. So a column is looked at by itself only where no kernel has proven it: before the
/// first step that is not a kernel's, and before a result is given.
class Call {
 public:
  explicit Call(const Database& data) : count_(data.getRecordCount()) {
    // As many as most methods have: a change of a live series costs little more than such lists.
    unproven_.reserve(8);
    taken_.reserve(8);
  }

  int count() const { return count_.value(); }

  /// A column of the caller's. Errors 91 for none, 9 for one that is not as long as the series, 6 at the first value
  /// that is not finite.
  Series take(const std::shared_ptr<Field>& column);
  Series take(const std::shared_ptr<RecordSet>& set, std::string_view name);

  /// The column of which row r is the formula's of the rows r - lag of its inputs.
  template <class Formula>
  Series of(Place first, const std::array<Input, Formula::columns>& inputs, const Parameters& parameters = {}) {
    const Series made = make(first);
    return fill(
        made, [&](kernels::Records records, double* rows) { return ran<Formula>(inputs, parameters, records, rows); },
        [&]<class T>(At<T> at, int record) { return value<Formula>(at, inputs, parameters, record); });
  }

  /// Fails as the call would, if a column of the caller's has a value that is not finite.
  void check();

  /// How many rows a kernel has done; of all `records`, whose rows and the `before` ahead of them it has looked at in
  /// x.
  std::size_t proves(std::size_t done, kernels::Records records, const Series& x, Place before = 0) {
    if (done > 0 && done == numberOf(records)) prove(x.rows, {records.first - before, records.last});
    return done;
  }

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
    const auto noKernel = [](kernels::Records, const std::array<double*, Columns>&, State&) { return std::size_t{0}; };
    return columns<Columns>(first, noKernel, state, step);
  }
  /// The same with a kernel, which leaves the state as of the last record that it fills.
  template <int Columns, class Kernel, class State, class Step>
  std::array<Series, Columns> columns(Place first, Kernel kernel, State state, Step step) {
    std::array<Series, Columns> made;
    std::array<double*, Columns> rows;
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
          const std::size_t handled = kernel(records, rows, state);
          records.first += static_cast<int>(handled);
          if (records.first > records.last || !isPlain()) return handled;
          State trial = state;
          for (int record = records.first; record <= records.last; ++record)
            put(step(At<double>(), trial, record), record);
          for (int i = 0; i < Columns; ++i)
            if (!areFinite(records, rows[i])) return handled;
          state = trial;
          return handled + numberOf(records);
        },
        [&](int record) { put(step(At<Real>(), state, record), record); }, Carried(state));
    for (Series& one : made) one = done(one);
    return made;
  }

  /// The column that the kernel, handed the records and the rows to fill, makes at once. Nothing where it leaves a
  /// record, and in a call that goes on with an earlier one: it is then to be made out of other columns, which that one
  /// has.
  template <class Kernel>
  std::optional<Series> atOnce(Place first, Kernel kernel) {
    if (Continuation::current() != nullptr || first > count() || count_ == Integer::Greatest) return std::nullopt;
    const Series made = make(first);
    const kernels::Records records{static_cast<int>(first), count()};
    if (kernel(records, made.column->writableValues().data()) != numberOf(records)) return std::nullopt;
    return done(made);
  }

  /// The columns that `compute(call, x)` makes out of the first records, which `kernel(records, rows)` goes on with up
  /// to the last one (head_of_series.h). Nothing where that cannot be: the whole is then to be computed as the first
  /// records are. REQUIRES: where x is not finite, no state of the kernel is either.
  template <std::size_t Columns, class Compute, class Kernel>
  std::optional<std::array<Series, Columns>> inOnePass(const Series& x, Place head, Compute compute, Kernel kernel) {
    auto made = orvex::inOnePass<std::array<Series, Columns>>(
        count_, head, {x.column.get()}, [&](const std::shared_ptr<Database>& data) {
          Call first(*data);
          std::array<Series, Columns> columns = compute(first, first.take(headOf(*x.column, head)).from(x.first));
          first.check();
          std::array<double*, Columns> rows;
          for (std::size_t i = 0; i < Columns; ++i) {
            columns[i].column = lengthened(*columns[i].column, count_);
            rows[i] = columns[i].column->writableValues().data();
            columns[i].rows = rows[i];
          }
          const std::size_t handled = kernel(restAfter(head, count_), rows);
          return std::pair(columns, handled);
        });
    if (!made) return std::nullopt;
    prove(x.rows, {1, count()});
    for (Series& one : *made) one = done(one);
    return made;
  }

  /// The column with its rows before `first` hidden: itself where it has none.
  Series shown(const Series& series, Place first) { return first <= series.first ? series : copied(series, first); }

  std::shared_ptr<RecordSet> result(std::string_view alias, const Series& column) {
    return result(alias, std::vector<Named>{{"", column}});
  }
  std::shared_ptr<RecordSet> result(std::string_view alias, const std::vector<Named>& columns);

 private:
  /// Rows of a column; none where the first is behind the last.
  struct Span {
    Place first, last;

    bool isEmpty() const { return first > last; }
    /// Without those at one of its ends.
    void drop(const Span& others) {
      if (others.first <= first) first = std::max(first, others.last + 1);
      if (others.last >= last) last = std::min(last, others.first - 1);
    }
  };

  /// A column that no kernel has looked at in these rows: whether they are finite, and whether they are of a size with
  /// which nothing can overflow. One that is gone matters to nobody.
  struct Unproven {
    std::weak_ptr<Field> column;
    const double* rows;
    Span finite, sized;
    bool taken;
  };

  static std::size_t numberOf(kernels::Records records) {
    return static_cast<std::size_t>(records.last - records.first) + 1;
  }

  /// What a formula's kernel does: fills rows.
  template <class Formula>
  std::size_t ran(const std::array<Input, Formula::columns>& inputs, const Parameters& parameters,
                  kernels::Records records, double* rows) {
    const kernels::StandardTable* const table = kernels::activeStandard();
    if (table == nullptr) return 0;
    std::array<kernels::Operand, Formula::columns> operands;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
      operands[i] = {rowsOf(inputs[i].series->column), inputs[i].lag};
    }
    const std::size_t done = table->pointwise[Formulas::index<Formula>()](operands.data(), parameters, records, rows);
    if (done == numberOf(records)) {
      for (const Input& input : inputs) {
        prove(input.series->rows, {Place{records.first} - input.lag, Place{records.last} - input.lag}, !Formula::tells);
      }
      proven_ = rows;
    }
    return done;
  }
  /// And one row of it.
  template <class Formula, class T>
  static T value(At<T> at, const std::array<Input, Formula::columns>& inputs, const Parameters& parameters,
                 int record) {
    T values[Formula::columns];
    for (std::size_t i = 0; i < inputs.size(); ++i) values[i] = at(*inputs[i].series, record - inputs[i].lag);
    return Formula::of(values, parameters, 0);
  }

  /// A new column, 0 before `first` and with nothing in its rows from there on.
  Series make(Place first) const;
  /// Takes note that a column is filled.
  Series done(const Series& made);
  /// Takes note that rows are finite and, mostly, of a size with which nothing can overflow.
  void prove(const double* rows, const Span& span, bool areSized = true);
  /// A new column of its rows from `first` on.
  Series copied(const Series& series, Place first);
  /// Looks at what is not proven yet.
  void settle();
  void checkTaken(Unproven& column);
  /// Whether plain doubles may be tried.
  bool isPlain() {
    settle();
    return plain_ && kernels::active() != nullptr;
  }
  /// Whether rows of a column that is being made are finite. `whole`, if these are all of its rows.
  bool areFinite(kernels::Records records, const double* rows, bool whole = false);

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
          return areFinite(records, rows, records.first == made.first) ? handled + numberOf(records) : handled;
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
  std::vector<Unproven> unproven_;
  const double* proven_ = nullptr;  // the column made last, if a kernel has proven it
  std::vector<std::shared_ptr<Field>> taken_;
};

}  // namespace orvex::inline ORVEX_COUNTS::standard
