#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>

#include "native/functions.h"
#include "orvex/catalogue/call_on_values.h"
#include "orvex/data/rows.h"

/// A call of a function on columns in memory, without anything of Python: threads make it without the interpreter's
/// lock.
namespace orvex::python {

inline constexpr std::size_t MostArguments = decltype(catalogue::Method::arguments)::capacity;
inline constexpr std::size_t MostColumns = decltype(catalogue::Method::columns)::capacity;
inline constexpr std::size_t PriceCount = Database::PriceNames.size();

using Span = std::span<const double>;

/// What a function is called with. The columns are of one length and stand still until the call returns.
struct Request {
  explicit Request(const Function& called) : function(&called) {}

  const Function* function;
  std::size_t count = 0;
  std::array<Span, MostArguments> columns{};  // of the arguments that are columns
  std::array<std::optional<Span>, PriceCount> prices{};
  std::array<catalogue::Value, MostArguments> values{};  // of all others; `Missing` for the usual one
  bool keepWarmUp = false;  // leaves in rows that are not computed what the library has there, in place of NaN
};

/// The rows of a result column, whose name is its function's to tell.
struct ResultColumn {
  OwnRows rows;
  catalogue::RowRange computed{1, 0};
  bool keptWarmUp = false;  // rows that are not computed have values too
};

/// Columns, as many as the method has, or one value: a note, a number or a truth.
struct Result {
  std::array<ResultColumn, MostColumns> columns;
  catalogue::Value value;
};

/// Why a call has failed.
struct Refusal {
  Error error;
  std::optional<catalogue::Gap> gap;  // the row that has no value and is to blame
};

/// Makes the call, which uses the request up. Rows are skipped and told as `callOnValues` has it; where no row has
/// values, columns have none either. Throws a Refusal.
Result compute(Request&& request);

/// The prices without which the method of a function fails, found by trying: of a set it takes what it wants, and no
/// description says what that is.
std::array<bool, PriceCount> findPricesRead(const Function& function);

}  // namespace orvex::python
