#include "orvex/patterns/cycle.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/data/walk.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

/// The least of the places that were put at each rank, for the ranks of any range: a tree over ranks, in which the
/// places must come in falling order.
class LeastPlaces {
 public:
  explicit LeastPlaces(std::size_t ranks) : ranks_(ranks), least_(2 * ranks, none) {}

  static constexpr std::uint32_t none = 0;

  void put(std::size_t rank, std::uint32_t place) {
    for (std::size_t node = ranks_ + rank; node > 0; node /= 2) least_[node] = place;
  }

  /// The least place at the ranks `from` to `to` - 1, or none.
  std::uint32_t leastOf(std::size_t from, std::size_t to) const {
    std::uint32_t found = none;
    const auto take = [&](std::size_t node) {
      const std::uint32_t place = least_[node];
      if (place != none && (found == none || place < found)) found = place;
    };
    for (from += ranks_, to += ranks_; from < to; from /= 2, to /= 2) {
      if (from % 2 == 1) take(from++);
      if (to % 2 == 1) take(--to);
    }
    return found;
  }

 private:
  std::size_t ranks_;
  std::vector<std::uint32_t> least_;
};

/// For each record i, in its own place: the first record after i + 1 whose value lies between those of i + 1 and of
/// i - 1, the first below it and the last above, or 0. From the last record back the values behind i + 1 are put into a
/// tree by their rank, so that all searches together take N log N steps.
std::vector<std::uint32_t> firstBetween(std::span<const double> values) {
  const auto count = static_cast<std::uint32_t>(values.size());
  std::vector<std::uint32_t> order(count), rank(count), found(std::size_t{count} + 1, LeastPlaces::none);
  for (std::uint32_t row = 0; row < count; ++row) order[row] = row;
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return values[a] < values[b]; });
  std::uint32_t ranks = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (i > 0 && values[order[i - 1]] < values[order[i]]) ++ranks;
    rank[order[i]] = ranks;
  }
  LeastPlaces places(std::size_t{ranks} + 1);
  for (std::uint32_t record = count; record > 2;) {
    --record;
    // Rows count from 0: the record before stands in row record - 2, the one after in row record.
    if (record + 2 <= count) places.put(rank[record + 1], record + 2);
    if (values[record] < values[record - 2]) {
      found[record] = places.leastOf(std::size_t{rank[record]} + 1, rank[record - 2]);
    }
  }
  return found;
}

}  // namespace

Integer Cycle::Analyze(std::shared_ptr<Field> Source) {
  return trap(AnalyzeFault, [&] {
    const Integer count = object(Source).getRecordCount();
    const std::span<const double> values = Source->values();
    // A search fails at the first value that is not finite, and behind the last row.
    const auto isNoNumber = [](double value) { return !std::isfinite(value); };
    const auto numbers = std::find_if(values.begin(), values.end(), isNoNumber) - values.begin();
    const std::vector<std::uint32_t> found = firstBetween(values.first(static_cast<std::size_t>(numbers)));
    std::int64_t total = 0;
    eachRecord(2, count - 1, noKernel, [&](Integer i) {
      Real a = at(Source, i - 1);
      std::int64_t j = count.value() + std::int64_t{1};
      const auto record = static_cast<std::size_t>(i.value());
      if (record < found.size() && found[record] != LeastPlaces::none) {
        a = 0;
        j = found[record];
      } else if (numbers < count.value()) {
        // The search as it is defined. It fails here or, where the value of its own record is the one, at the next.
        const double b = Source->getValue(i + 1);
        for (j = i.value() + std::int64_t{2}; j <= count.value(); ++j) {
          const Real value = at(Source, j);
          if (value > Real(b) && value < a) {
            a = 0;
            break;
          }
        }
      }
      // The 0 stands for a hit, and a price of 0 before the record is taken for one. Kept: it is how the measure is
      // defined.
      if (a == 0) total += j - i.value() - 1;
      // Counts of 16 bits overflow with it; a long series of 32 bits passes what they can tell, and is to have its
      // mean.
      if (ORVEX_COUNT_BITS == 16 && total > Integer::Greatest) raise(faults::Overflow);
    });
    const Real sum = static_cast<double>(total);
    return Integer::rounded((sum / (count - 2)).value());
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
