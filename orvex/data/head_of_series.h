#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <utility>

#include "orvex/data/database.h"
#include "orvex/data/error.h"
#include "orvex/data/field.h"
#include "orvex/data/integer.h"
#include "orvex/kernels/kernels.h"

/// Long series in one pass. A method that is a chain of walks (averages of averages, and what is computed from them)
/// makes a column in each of them, and each passes over all of its rows. A plain call over many records lets the walks
/// have the first ones alone, seeds and all, and one kernel that has all the stages goes on from there; it writes the
/// columns that the caller sees. Where it cannot, the walks do the whole.
namespace orvex::inline ORVEX_COUNTS {

/// Whether a call over `count` records may go so, of which the walks have the first `head`: not one that is continued,
/// whose walks go on by themselves, nor one that yields to the host; not without kernels, nor where there is little to
/// gain, nor where a loop's counter would overflow. All `sources` are columns of `count` rows then.
bool mayGoInOnePass(Integer count, std::int64_t head, std::initializer_list<const Field*> sources);

/// The first `count` rows of a column, as a column of its own. REQUIRES: there are as many.
std::shared_ptr<Field> headOf(const Field& column, std::int64_t count);

/// The last row of a column.
inline double lastOf(const Field& column) {
  return column.values().back();
}

/// The records behind the head.
inline kernels::Records restAfter(std::int64_t head, Integer count) {
  return {static_cast<int>(head) + 1, count.value()};
}

/// A new column of `count` rows that begins with those of `head`. The others are then written one and all.
std::shared_ptr<Field> lengthened(const Field& head, Integer count);

/// `make(data)` on a series of the first `head` records, which gives the columns of the whole one and how many records
/// the kernel has done behind the head. Nothing where it may not go so, or where a record is left or at fault: the
/// walks then do the whole and report what is to be reported.
template <class Columns, class Make>
std::optional<Columns> inOnePass(Integer count, std::int64_t head, std::initializer_list<const Field*> sources,
                                 Make&& make) {
  if (!mayGoInOnePass(count, head, sources)) return std::nullopt;
  try {
    auto [columns, done] = make(std::make_shared<Database>(Integer(head)));
    if (static_cast<std::int64_t>(done) == count.value() - head) return std::move(columns);
  } catch (const Error& error) {
    if (error.isOfMemory()) throw;
  }
  return std::nullopt;
}

}  // namespace orvex::inline ORVEX_COUNTS
