#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "orvex/data/database.h"
#include "orvex/data/host_events.h"
#include "orvex/kernels/kernels.h"
#include "tests/support/series.h"

/// That a method gives the same with its kernels off and at every width, with a host's hook and without.
namespace orvex::test {

/// All that a caller sees of a call.
struct Outcome {
  std::optional<Fault> fault;
  std::vector<std::pair<std::string, std::vector<std::uint64_t>>> columns;  // the values' bits
  int position = 0;

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

inline void take(Outcome& outcome, const RecordSet& result) {
  for (int i = 1; i <= result.getFieldCount(); ++i) {
    const auto column = result.getField(result.getName(i));
    std::vector<std::uint64_t> bits;
    for (const double value : column->values()) bits.push_back(std::bit_cast<std::uint64_t>(value));
    outcome.columns.emplace_back(column->getName(), std::move(bits));
  }
}

inline void take(Outcome& outcome, const std::shared_ptr<RecordSet>& result) {
  take(outcome, *result);
}

inline void take(Outcome& outcome, double result) {
  outcome.columns.emplace_back("", std::vector{std::bit_cast<std::uint64_t>(result)});
}

inline void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << "cursor " << outcome.position << "\n";
  if (outcome.fault) PrintTo(*outcome.fault, out);
  for (const auto& [name, bits] : outcome.columns) {
    *out << name << ":";
    for (const std::uint64_t value : bits) *out << " " << std::bit_cast<double>(value);
    *out << "\n";
  }
}

/// Sets the level for as long as it lives.
class LevelScope {
 public:
  explicit LevelScope(kernels::Level level) { kernels::setLevel(level); }
  ~LevelScope() { kernels::setLevel(before_); }
  LevelScope(const LevelScope&) = delete;
  LevelScope& operator=(const LevelScope&) = delete;

 private:
  kernels::Level before_ = kernels::level();
};

/// Sets a hook for as long as it lives that notes where the cursor stands at each yield.
class YieldRecord {
 public:
  explicit YieldRecord(const Database& data) : data_(data) { setYieldHook({&note, this}); }
  ~YieldRecord() { setYieldHook(before_); }
  YieldRecord(const YieldRecord&) = delete;
  YieldRecord& operator=(const YieldRecord&) = delete;

  const std::vector<int>& positions() const { return positions_; }

 private:
  static void note(void* context) {
    auto& self = *static_cast<YieldRecord*>(context);
    self.positions_.push_back(self.data_.getPosition().value());
  }

  YieldHook before_ = yieldHook();
  const Database& data_;
  std::vector<int> positions_;
};

/// What `call` makes, begun with the cursor on record 1.
template <class Call>
Outcome outcomeOf(Database& data, Call&& call) {
  Outcome outcome;
  data.MoveFirst();
  outcome.fault = faultOf([&] { take(outcome, call()); });
  outcome.position = data.getPosition().value();
  return outcome;
}

/// Expects the same of `call` at every level, with a hook and without: values bit for bit, fault, the cursor in the
/// end and at each yield. Gives what that is.
template <class Call>
Outcome expectSameAtAllLevels(Database& data, Call&& call) {
  using kernels::Level;
  std::vector<int> yields;
  Outcome expected;
  {
    const LevelScope off(Level::Off);
    const YieldRecord record(data);
    expected = outcomeOf(data, call);
    yields = record.positions();
  }
  for (const Level level : {Level::Off, Level::Baseline, Level::Avx2, Level::Avx512}) {
    SCOPED_TRACE("level " + std::to_string(static_cast<int>(level)));
    const LevelScope scope(level);
    EXPECT_EQ(outcomeOf(data, call), expected);
    const YieldRecord record(data);
    EXPECT_EQ(outcomeOf(data, call), expected);
    EXPECT_EQ(record.positions(), yields);
  }
  return expected;
}

/// A whole number below `bound`, the same on every platform.
inline std::size_t below(std::mt19937& random, std::size_t bound) {
  return random() % bound;
}

/// Series of many kinds: a random walk in cents, few different values with flat stretches, zeros of both signs among
/// small numbers, all magnitudes. One in four also has a value that no computation or no kernel can take.
inline std::vector<double> randomSeries(std::mt19937& random, std::size_t count) {
  std::vector<double> series(count);
  double price = 100.0;
  const std::size_t kind = below(random, 4);
  for (double& value : series) {
    switch (kind) {
      case 0:
        value = price += (static_cast<double>(below(random, 201)) - 100.0) / 100.0;
        break;
      case 1:
        if (below(random, 3) == 0) price = static_cast<double>(below(random, 4)) - 1.0;
        value = price;
        break;
      case 2:
        value = (static_cast<double>(below(random, 3)) - 1.0) * 0.0 * static_cast<double>(below(random, 5));
        if (below(random, 3) == 0) value = static_cast<double>(below(random, 5)) - 2.0;
        break;
      default:
        value = std::ldexp(static_cast<double>(random()) - 2147483648.0, static_cast<int>(below(random, 400)) - 230);
    }
  }
  if (below(random, 4) == 0) {
    constexpr double odd[] = {std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN(),
                              -std::numeric_limits<double>::infinity(),
                              1e308,
                              -1e300,
                              5e-324};
    series[below(random, count)] = odd[below(random, std::size(odd))];
  }
  return series;
}

}  // namespace orvex::test
