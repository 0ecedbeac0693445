// What a change of a live series costs: nanoseconds for a record that is appended and for one that is revised, with
// each method kept by itself, less what they cost with nothing kept, after 10^3 records and after 10^6. Beside it what
// is allowed: half a microsecond, and a quarter for each column that the call makes, with windows of at most 20
// records.
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <string>
#include <vector>

#include "bench/series.h"
#include "orvex/catalogue/usual.h"
#include "orvex/data/continuation.h"
#include "orvex/live/live_series.h"

namespace orvex::bench {
namespace {

using Clock = std::chrono::steady_clock;

struct Cost {
  double append, revise;
};

/// Prices to append, in the form of single records.
std::vector<PriceRecord> recordsOf(const Database& data) {
  const auto rows = [&](std::string_view name) { return data.getRecordset()->getField(name)->values(); };
  const auto open = rows(Database::OpenName), high = rows(Database::HighName), low = rows(Database::LowName),
             close = rows(Database::CloseName), volume = rows(Database::VolumeName);
  std::vector<PriceRecord> records;
  for (std::size_t i = 0; i < open.size(); ++i) records.push_back({open[i], high[i], low[i], close[i], volume[i]});
  return records;
}

/// Of the fastest of some rounds, each of many changes.
Cost costOf(LiveSeries& series, const std::vector<PriceRecord>& records) {
  constexpr int rounds = 7, changes = 200;
  Cost cost{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
  std::size_t next = 0;
  const auto nanosecondsOf = [&](auto change) {
    const auto start = Clock::now();
    for (int i = 0; i < changes; ++i) change(records[next++ % records.size()]);
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / changes;
  };
  for (int round = 0; round < rounds; ++round) {
    cost.append = std::min(cost.append, nanosecondsOf([&](const PriceRecord& record) { series.append(record); }));
    cost.revise = std::min(cost.revise, nanosecondsOf([&](const PriceRecord& record) { series.revise(record); }));
  }
  return cost;
}

PriceRows rowsOf(const Database& data) {
  const auto rows = [&](std::string_view name) { return data.getRecordset()->getField(name)->rows(); };
  return {.open = rows(Database::OpenName),
          .high = rows(Database::HighName),
          .low = rows(Database::LowName),
          .close = rows(Database::CloseName),
          .volume = rows(Database::VolumeName)};
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

int run() {
  constexpr int lengths[] = {1'000, 1'000'000};
  std::vector<PriceRecord> records = recordsOf(*makeSeries(Prices::Ordinary, 10'000));
  const std::shared_ptr<Database> prices[] = {makeSeries(Prices::Ordinary, lengths[0]),
                                              makeSeries(Prices::Ordinary, lengths[1])};
  Cost nothing[2];
  for (int i = 0; i < 2; ++i) {
    LiveSeries series(rowsOf(*prices[i]));
    nothing[i] = costOf(series, records);
  }
  fmt::print("{:<44} {:>8} {:>9} {:>9} {:>9} {:>9} {:>7} {:>8}\n", "ns a change, less the series' own", "columns",
             "append", "revise", "append", "revise", "grown", "allowed");
  fmt::print("{:<44} {:>8} {:>9} {:>9} {:>9} {:>9}\n", "", "", "10^3", "10^3", "10^6", "10^6");
  fmt::print("{:<44} {:>8} {:>9.0f} {:>9.0f} {:>9.0f} {:>9.0f}\n", "the series' own", "", nothing[0].append,
             nothing[0].revise, nothing[1].append, nothing[1].revise);
  int over = 0;
  for (const catalogue::Class* owner : catalogue::classes()) {
    for (const catalogue::Method* method : owner->methods) {
      if (!catalogue::isCalculation(*owner, *method) || method->result != catalogue::Type::RecordSet) continue;
      const std::string name = std::string(owner->name).append(".").append(method->name);
      if (method->recomputed) {
        fmt::print("{:<44} computed anew\n", name);
        continue;
      }
      Cost cost[2];
      std::size_t columns = 0;
      for (int i = 0; i < 2; ++i) {
        LiveSeries series(rowsOf(*prices[i]));
        const auto kept = series.keep(name, argumentsOf(*method));
        if (kept->error()) fmt::print("{}: {}\n", name, kept->error()->what());
        columns = kept->columnsMade();
        cost[i] = costOf(series, records);
        cost[i].append -= nothing[i].append;
        cost[i].revise -= nothing[i].revise;
      }
      const double allowed = 500.0 + 250.0 * static_cast<double>(columns);
      const double grown = std::max(cost[1].append, cost[1].revise) / std::max(cost[0].append, cost[0].revise);
      const bool isOver = std::max(cost[1].append, cost[1].revise) > allowed || grown > 1.2;
      over += isOver ? 1 : 0;
      fmt::print("{:<44} {:>8} {:>9.0f} {:>9.0f} {:>9.0f} {:>9.0f} {:>7.2f} {:>8.0f}{}\n", name, columns,
                 cost[0].append, cost[0].revise, cost[1].append, cost[1].revise, grown, allowed, isOver ? " over" : "");
    }
  }
  fmt::print("{} methods over what is allowed\n", over);
  return 0;
}

}  // namespace
}  // namespace orvex::bench

int main() {
  return orvex::bench::run();
}
