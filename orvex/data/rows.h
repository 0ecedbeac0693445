#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS {

/// Rows that stand in somebody's memory, to be looked at there: valid for as long as `owner` is held. Without an owner
/// nothing keeps them, so whoever is handed them copies them.
template <class T>
struct Rows {
  std::span<const T> values;
  std::shared_ptr<const void> owner;

  Rows part(std::size_t first, std::size_t count) const { return {values.subspan(first, count), owner}; }
};

/// Rows that their holder may write as well, and that nobody else has.
struct OwnRows {
  std::span<double> values;
  std::shared_ptr<void> owner;
};

/// Memory for `count` numbers with nothing written in it, from the beginning of a cache line on, in one allocation.
OwnRows newRows(std::size_t count);

}  // namespace orvex::inline ORVEX_COUNTS
