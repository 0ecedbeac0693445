// A live series when memory runs out in a change: everything is as it was.
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "orvex/live/live_series.h"
#include "tests/support/allocations.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

using namespace allocations;

PriceRecord record(int number) {
  const double close = 100 + number % 7 + number % 3;
  return {close - 1, close + 2, close - 3, close, 1000.0 + number % 5, "a date that takes memory of its own"};
}

/// Everything that a series shows, as numbers and names.
std::vector<std::pair<std::string, std::vector<double>>> shown(
    const LiveSeries& series, const std::vector<std::shared_ptr<const LiveResult>>& all) {
  std::vector<std::pair<std::string, std::vector<double>>> columns;
  const auto add = [&](const Field& field) {
    columns.emplace_back(field.getName(), std::vector<double>(field.values().begin(), field.values().end()));
  };
  for (const auto& field : series.prices()->fields()) add(*field);
  for (const auto& result : all) {
    for (const auto& field : result->columns()) add(*field);
    columns.push_back({result->error() ? result->error()->what() : "", {static_cast<double>(result->count())}});
  }
  return columns;
}

/// Keeps every method of columns on a series, by its usual arguments.
std::vector<std::shared_ptr<const LiveResult>> keepAll(LiveSeries& series) {
  std::vector<std::shared_ptr<const LiveResult>> all;
  for (const catalogue::Class* owner : catalogue::classes()) {
    for (const catalogue::Method* method : owner->methods) {
      if (!catalogue::isCalculation(*owner, *method) || method->result != catalogue::Type::RecordSet) continue;
      all.push_back(series.keep(std::string(owner->name).append(".").append(method->name)));
    }
  }
  all.push_back(series.keep("Index.RelativeStrengthIndex", {{"Source", all.front()}}));
  return all;
}

TEST(LiveMemory, ThatRunsOutLeavesEverythingAsItWas) {
  // At 64 records the columns have room for no more.
  LiveSeries series, expected;
  const auto all = keepAll(series), others = keepAll(expected);
  for (int number = 1; number <= 64; ++number) {
    series.append(record(number));
    expected.append(record(number));
  }
  const auto changes = {+[](LiveSeries& changed) { changed.append(record(65)); },
                        +[](LiveSeries& changed) { changed.revise(record(70)); }};
  for (const auto change : changes) {
    const auto before = shown(series, all);
    int failures = 0;
    for (bool failed = true; failed && !HasFailure();) {
      failed = false;
      left = failures;
      try {
        change(series);
      } catch (const std::bad_alloc&) {
        failed = true;
      }
      left = unlimited;
      if (!failed) break;
      ++failures;
      ASSERT_EQ(shown(series, all), before) << failures;
    }
    EXPECT_GT(failures, 100);
    change(expected);
    EXPECT_EQ(shown(series, all), shown(expected, others));
  }
}

}  // namespace
}  // namespace orvex::test
