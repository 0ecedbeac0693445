#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "orvex/data/field.h"
#include "orvex/data/in_out.h"
#include "orvex/data/integer.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/record_set.h"

/// What every series method does with its arguments and its result.
namespace orvex::inline ORVEX_COUNTS {

/// A row of a column as a number to compute with. Error 91 for a null field, 1105 for a row outside it, 6 for a value
/// that is not finite.
inline Real at(const std::shared_ptr<Field>& column, Integer record) {
  return object(column).getValue(record);
}

/// Replaces an empty alias by the method's default name, in the caller's variable too.
inline void applyDefault(InOut<std::string>& Alias, std::string_view name) {
  if (Alias.get().empty()) Alias.set(std::string(name));
}

/// Raises `fault` for a period below `least` or above the record count.
inline void checkPeriods(Integer periods, int least, Integer count, const Fault& fault) {
  if (periods < least || periods > count) raise(fault);
}

/// A new column of `count` rows, all 0. Error 9 for a count below 1. In a call that goes on with an earlier one it is
/// that call's, with its rows as far as they stand (continuation.h).
std::shared_ptr<Field> makeColumn(Integer count, std::string_view name);

/// The same with nothing in rows `first` to `last`, each of which its maker then writes.
std::shared_ptr<Field> makeColumn(Integer count, std::string_view name, std::int64_t first, std::int64_t last);
inline std::shared_ptr<Field> makeColumn(Integer count, std::string_view name, std::int64_t first) {
  return makeColumn(count, name, first, count.value());
}

/// A new set of the given columns, in this order.
std::shared_ptr<RecordSet> makeRecordSet(std::initializer_list<std::shared_ptr<Field>> columns);

/// Writes 0 into rows 1 to `last`, or into those of them that may not be 0 already; a column that is shorter fails at
/// its end.
void blank(Field& column, Integer last);

}  // namespace orvex::inline ORVEX_COUNTS
