// What a change of a live series costs: nanoseconds for a record that is appended and for one that is revised, with
// each method kept by itself, less what they cost with nothing kept, after 10^3 records and after 10^6. Beside it what
// is allowed: half a microsecond, and a quarter for each column that the call makes, with windows of at most 20
// records.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "bench/series.h"
#include "orvex/catalogue/usual.h"
#include "orvex/data/continuation.h"
#include "orvex/live/live_series.h"

namespace orvex::bench {
namespace {

using Clock = std::chrono::steady_clock;

struct Cost {
  double append = std::numeric_limits<double>::infinity();
  double revise = std::numeric_limits<double>::infinity();
};

/// A method that is measured, and what it costs after 10^3 records and after 10^6.
struct Measured {
  std::string name;
  const catalogue::Method* method = nullptr;  // none for the series by itself
  std::size_t columns = 0;
  std::array<Cost, 2> costs{};
  std::string error{};
};

/// The dates of records that come once a minute; sessions begin by them.
std::vector<std::string> datesOf(int count) {
  std::vector<std::string> dates;
  for (int minute = 0; minute < count; ++minute) {
    const int day = minute / 1440;
    dates.push_back(fmt::format("{}-{:02}-{:02} {:02}:{:02}", 2000 + day / 336, day / 28 % 12 + 1, day % 28 + 1,
                                minute / 60 % 24, minute % 60));
  }
  return dates;
}

/// Prices to append, in the form of single records.
std::vector<PriceRecord> recordsOf(const Database& data, const std::vector<std::string>& dates) {
  const auto rows = [&](std::string_view name) { return data.getRecordset()->getField(name)->values(); };
  const auto open = rows(Database::OpenName), high = rows(Database::HighName), low = rows(Database::LowName),
             close = rows(Database::CloseName), volume = rows(Database::VolumeName);
  std::vector<PriceRecord> records;
  for (std::size_t i = 0; i < open.size(); ++i) {
    records.push_back({open[i], high[i], low[i], close[i], volume[i], dates[i]});
  }
  return records;
}

/// The fastest of some rounds, each of many changes, on each of the series: they take turns, so that a slow moment of
/// the machine meets them all.
void takeCosts(std::array<LiveSeries*, 2> all, const std::vector<PriceRecord>& records, std::array<Cost, 2>& costs) {
  constexpr int rounds = 20, changes = 200;
  std::size_t next = 0;
  const auto take = [&](double& fastest, auto change) {
    const auto start = Clock::now();
    for (int i = 0; i < changes; ++i) change(records[next++ % records.size()]);
    const double each = std::chrono::duration<double, std::nano>(Clock::now() - start).count() / changes;
    fastest = std::min(fastest, each);
  };
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < all.size(); ++i) {
      take(costs[i].append, [&](const PriceRecord& record) { all[i]->append(record); });
      take(costs[i].revise, [&](const PriceRecord& record) { all[i]->revise(record); });
    }
  }
}

PriceRows rowsOf(const Database& data, const std::vector<std::string_view>& dates) {
  const auto rows = [&](std::string_view name) { return data.getRecordset()->getField(name)->rows(); };
  return {.open = rows(Database::OpenName),
          .high = rows(Database::HighName),
          .low = rows(Database::LowName),
          .close = rows(Database::CloseName),
          .volume = rows(Database::VolumeName),
          .dates = {std::span(dates).first(static_cast<std::size_t>(data.getRecordCount().value())), nullptr}};
}

/// Usual values, with windows of at most 20 records.
std::vector<LiveSeries::Argument> argumentsOf(const catalogue::Method& method) {
  std::vector<LiveSeries::Argument> arguments;
  for (const catalogue::Argument& argument : method.arguments) {
    const bool isNumber = argument.usual.given && argument.usual.text.empty();
    if (argument.type == catalogue::Type::Integer && isNumber && argument.usual.number > 20) {
      arguments.emplace_back(argument.name, 20);
    }
  }
  return arguments;
}

std::vector<Measured> everything() {
  std::vector<Measured> all{{"the series' own"}};
  for (const catalogue::Class* owner : catalogue::classes()) {
    for (const catalogue::Method* method : owner->methods) {
      if (!catalogue::isCalculation(*owner, *method) || method->result != catalogue::Type::RecordSet) continue;
      all.push_back({std::string(owner->name).append(".").append(method->name), method});
    }
  }
  return all;
}

void print(const Measured& one, const std::array<Cost, 2>& own, int& over) {
  if (one.columns == 0) {
    fmt::print("{:<44} {}\n", one.name, one.error.empty() ? "computed anew" : one.error);
    return;
  }
  std::array<Cost, 2> cost = one.costs;
  for (std::size_t i = 0; i < cost.size(); ++i) {
    cost[i].append -= own[i].append;
    cost[i].revise -= own[i].revise;
  }
  const double allowed = 500.0 + 250.0 * static_cast<double>(one.columns);
  const double most = std::max(cost[1].append, cost[1].revise);
  const double grown = most / std::max(cost[0].append, cost[0].revise);
  const bool isOver = most > allowed || grown > 1.2;
  over += isOver ? 1 : 0;
  fmt::print("{:<44} {:>8} {:>9.0f} {:>9.0f} {:>9.0f} {:>9.0f} {:>7.2f} {:>8.0f}{}\n", one.name, one.columns,
             cost[0].append, cost[0].revise, cost[1].append, cost[1].revise, grown, allowed, isOver ? " over" : "");
}

int run() {
  const std::vector<std::string> dates = datesOf(1'000'000);
  const std::vector<std::string_view> dateTexts(dates.begin(), dates.end());
  const std::vector<PriceRecord> records = recordsOf(*makeSeries(Prices::Ordinary, 10'000), dates);
  const std::array prices = {makeSeries(Prices::Ordinary, 1'000), makeSeries(Prices::Ordinary, 1'000'000)};
  std::vector<Measured> all = everything();
  // Twice through them all, since a machine may be slow for seconds.
  for (int visit = 0; visit < 2; ++visit) {
    for (Measured& one : all) {
      if (one.method != nullptr && one.method->recomputed) continue;
      LiveSeries brief(rowsOf(*prices[0], dateTexts)), extended(rowsOf(*prices[1], dateTexts));
      for (LiveSeries* series : {&brief, &extended}) {
        if (one.method == nullptr) continue;
        const auto kept = series->keep(one.name, argumentsOf(*one.method));
        if (kept->error()) one.error = kept->error()->what();
        one.columns = kept->columnsMade();
      }
      takeCosts({&brief, &extended}, records, one.costs);
    }
  }
  const std::array<Cost, 2>& own = all.front().costs;
  fmt::print("{:<44} {:>8} {:>9} {:>9} {:>9} {:>9} {:>7} {:>8}\n", "ns a change, less the series' own", "columns",
             "append", "revise", "append", "revise", "grown", "allowed");
  fmt::print("{:<44} {:>8} {:>9} {:>9} {:>9} {:>9}\n", "", "", "10^3", "10^3", "10^6", "10^6");
  fmt::print("{:<44} {:>8} {:>9.0f} {:>9.0f} {:>9.0f} {:>9.0f}\n", all.front().name, "", own[0].append, own[0].revise,
             own[1].append, own[1].revise);
  int over = 0;
  for (std::size_t i = 1; i < all.size(); ++i) print(all[i], own, over);
  fmt::print("{} methods over what is allowed\n", over);
  return 0;
}

}  // namespace
}  // namespace orvex::bench

int main() {
  return orvex::bench::run();
}
