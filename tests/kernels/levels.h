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
struct Seen {
  std::optional<Fault> fault;
  std::vector<std::pair<std::string, std::vector<std::uint64_t>>> columns;  // the values' bits
  int position = 0;

  friend bool operator==(const Seen&, const Seen&) = default;
};

inline void take(Seen& seen, const RecordSet& result) {
  for (int i = 1; i <= result.getFieldCount(); ++i) {
    const auto column = result.getField(result.getName(i));
    std::vector<std::uint64_t> bits;
    for (const double value : column->values()) bits.push_back(std::bit_cast<std::uint64_t>(value));
    seen.columns.emplace_back(column->getName(), std::move(bits));
  }
}

inline void take(Seen& seen, const std::shared_ptr<RecordSet>& result) {
  take(seen, *result);
}

inline void take(Seen& seen, double result) {
  seen.columns.emplace_back("", std::vector{std::bit_cast<std::uint64_t>(result)});
}

inline void PrintTo(const Seen& seen, std::ostream* out) {
  *out << "cursor " << seen.position << "\n";
  if (seen.fault) PrintTo(*seen.fault, out);
  for (const auto& [name, bits] : seen.columns) {
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
Seen seenOf(Database& data, Call&& call) {
  Seen seen;
  data.MoveFirst();
  seen.fault = faultOf([&] { take(seen, call()); });
  seen.position = data.getPosition().value();
  return seen;
}

/// Expects the same of `call` at every level, with a hook and without: values bit for bit, fault, the cursor in the
/// end and at each yield. Gives what that is.
template <class Call>
Seen expectSameAtAllLevels(Database& data, Call&& call) {
  using kernels::Level;
  std::vector<int> yields;
  Seen expected;
  {
    const LevelScope off(Level::Off);
    const YieldRecord record(data);
    expected = seenOf(data, call);
    yields = record.positions();
  }
  for (const Level level : {Level::Off, Level::Baseline, Level::Avx2, Level::Avx512}) {
    SCOPED_TRACE("level " + std::to_string(static_cast<int>(level)));
    const LevelScope scope(level);
    EXPECT_EQ(seenOf(data, call), expected);
    const YieldRecord record(data);
    EXPECT_EQ(seenOf(data, call), expected);
    EXPECT_EQ(record.positions(), yields);
  }
  return expected;
}

}  // namespace orvex::test
