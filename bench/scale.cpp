// How the time of every method grows with the series: nanoseconds a record for 10^4 to 10^7 records, with counts of 32
// bits, the making of the result included. Of the two longest it tells how many times what 10^5 records take that is,
// less what it costs more to copy the columns that the call reads and writes: those no longer fit a cache.
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "bench/cases.h"
#include "bench/prepared_call.h"
#include "bench/series.h"
#include "orvex/data/rows.h"

namespace orvex::bench {
namespace {

constexpr int lengths[] = {10'000, 100'000, 1'000'000, 10'000'000};

/// The shortest of several runs, in nanoseconds a record.
template <class Run>
double nanosecondsOf(int count, Run run) {
  using Clock = std::chrono::steady_clock;
  double shortest = std::numeric_limits<double>::infinity();
  const int runs = std::clamp(20'000'000 / count, 6, 100);
  for (int i = 0; i < runs; ++i) {
    const Clock::time_point start = Clock::now();
    run();
    shortest = std::min(shortest, std::chrono::duration<double, std::nano>(Clock::now() - start).count());
  }
  return shortest / count;
}

/// A new column out of another.
double copying(const Database& data) {
  const auto close = data.getRecordset()->getField(Database::CloseName);
  return nanosecondsOf(data.getRecordCount().value(), [&] {
    const OwnRows copy = newRows(close->values().size());
    std::memcpy(copy.values.data(), close->values().data(), close->values().size_bytes());
  });
}

/// How many columns a call reads, or writes, whichever is more: a copy does both.
int columnsOf(const PreparedCall& call) {
  int read = 0;
  for (const catalogue::Value& argument : call.arguments()) {
    if (std::holds_alternative<std::shared_ptr<Field>>(argument)) ++read;
    if (std::holds_alternative<std::shared_ptr<RecordSet>>(argument)) read += 3;
  }
  return std::max(read, static_cast<int>(call.method().columns.size()));
}

int run() {
#ifdef __GLIBC__
  // Memory at hand, as in a process that has been running for a while.
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
#endif
  std::vector<Case> all;
  for (const Case& one : cases()) {
    // Of prices near 2^31 a search for primes takes longer, and grows no other way.
    if (one.prices == Prices::Ordinary) all.push_back(one);
  }
  all.push_back({"Cycle.Analyze", {}});
  all.push_back({"Oscillator.PrimeNumberOscillator", {}});
  all.push_back({"Bands.PrimeNumberBands", {}});
  std::vector<std::shared_ptr<Database>> series;
  std::vector<double> copies;
  for (const int count : lengths) {
    series.push_back(makeSeries(Prices::Ordinary, count));
    copies.push_back(copying(*series.back()));
  }
  fmt::print("{:<52} {:>9} {:>9} {:>9} {:>9} {:>7} {:>7}\n", "ns a record of", "10^4", "10^5", "10^6", "10^7", "10^6",
             "10^7");
  fmt::print("{:<52} {:>9.2f} {:>9.2f} {:>9.2f} {:>9.2f}\n", "a copy of a column", copies[0], copies[1], copies[2],
             copies[3]);
  for (const Case& one : all) {
    std::vector<double> ns;
    int columns = 0;
    for (const auto& data : series) {
      const PreparedCall call(one, data);
      columns = columnsOf(call);
      ns.push_back(nanosecondsOf(data->getRecordCount().value(), [&] { return call.run(); }));
    }
    const auto grown = [&](std::size_t length) {
      return (ns[length] - columns * std::max(0.0, copies[length] - copies[1])) / ns[1];
    };
    fmt::print("{:<52} {:>9.2f} {:>9.2f} {:>9.2f} {:>9.2f} {:>7.2f} {:>7.2f}\n", one.label(), ns[0], ns[1], ns[2],
               ns[3], grown(2), grown(3));
    std::fflush(stdout);
  }
  return 0;
}

}  // namespace
}  // namespace orvex::bench

int main() {
  return orvex::bench::run();
}
