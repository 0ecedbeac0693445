#include "orvex/patterns/cycle.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// For every record from 3 on, in rows counted from 0: the least value of a later record that is greater than its own,
/// or infinity. It tells whether a search will meet anything, so that only searches that do are made: their lengths add
/// up to what fits 16 bits, while searches in vain would make the whole quadratic. Where a value is not finite every
/// search is to be made, since the first to reach the value fails.
std::vector<double> leastLaterAbove(std::span<const double> values) {
  const std::size_t rows = values.size();
  if (!std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); })) {
    return std::vector<double>(rows, -infinity);
  }
  std::vector<double> above(rows, infinity);
  std::vector<std::size_t> order;
  for (std::size_t row = 2; row < rows; ++row) order.push_back(row);
  // Equal values in falling order of their records: behind a record in the chain then comes the next greater value.
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return values[a] < values[b] || (values[a] == values[b] && a > b); });
  // A chain of the rows by value, from which each row is taken out once the rows up to it are done.
  constexpr std::size_t none = 0;
  std::vector<std::size_t> next(rows, none), previous(rows, none);
  for (std::size_t i = 1; i < order.size(); ++i) {
    next[order[i - 1]] = order[i];
    previous[order[i]] = order[i - 1];
  }
  for (std::size_t row = 2; row < rows; ++row) {
    if (next[row] != none) above[row] = values[next[row]];
    if (previous[row] != none) next[previous[row]] = next[row];
    if (next[row] != none) previous[next[row]] = previous[row];
  }
  return above;
}

}  // namespace

Integer Cycle::Analyze(std::shared_ptr<Field> Source) {
  return trap(AnalyzeFault, [&] {
    const Integer count = object(Source).getRecordCount();
    const std::vector<double> above = leastLaterAbove(Source->values());
    Integer total = 0;
    eachRecord(2, count - 1, noKernel, [&](Integer i) {
      Real a = at(Source, i - 1);
      Integer j = i + 2;
      if (above[static_cast<std::size_t>(i.value())] < a) {
        // A number to compute with only where a search has a record to compare it with.
        const double b = object(Source).getValue(i + 1);
        for (; j <= count; ++j) {
          const Real value = at(Source, j);
          if (value > Real(b) && value < a) {
            a = 0;
            break;
          }
        }
      } else {
        j = count + 1;
      }
      // The 0 stands for a hit, and a price of 0 before the record is taken for one. Kept: it is how the measure is
      // defined.
      if (a == 0) total += j - i - 1;
    });
    return Integer::rounded((Real(total) / (count - 2)).value());
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
