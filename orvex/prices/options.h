#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "orvex/prices/column_words.h"

namespace orvex::inline ORVEX_COUNTS::prices {

/// What is done with records that are not in the order of their dates, oldest first.
enum class Order {
  Check,  // newest first is reversed, anything else an error
  Keep,
};

/// What is done with a record in which a price is missing between records that have it.
enum class Missing {
  Refuse,    // an error
  Skip,      // it is left out, like a line that is too short for a record
  Previous,  // it takes the price of the record before
};

/// A column that stands for one of the six: its name in the header line or its number from 1.
struct ColumnChoice {
  Role role;
  std::string column;
};

/// What the reader is told instead of finding it out, and which records it is to give.
struct Options {
  std::optional<std::string> delimiter{};  // one character
  std::optional<char> decimal{};           // '.' or ','
  Order order = Order::Check;
  Missing missing = Missing::Refuse;
  std::vector<ColumnChoice> columns{};
  /// The first and the last record: a number from 1, or a date or the beginning of one ("2020-06").
  std::optional<std::string> from{};
  std::optional<std::string> to{};
  std::optional<std::size_t> tail{};  // of those, only the last ones
};

}  // namespace orvex::inline ORVEX_COUNTS::prices
