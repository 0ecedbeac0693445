// Times every method of the catalogue on 32,765 records, the making of its result included, and prints the medians
// beside two yardsticks that run among them: a plain running sum over 20 records, which waits for itself, and a copy of
// a column, which is bound by what memory gives. Beside the output of an earlier build it prints the ratio to that, for
// one machine. With any --benchmark_... option it is an ordinary Google Benchmark program instead.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "bench/cases.h"
#include "bench/prepared_call.h"
#include "bench/series.h"
#include "orvex/data/rows.h"
#include "orvex/kernels/kernels.h"
#include "orvex/prices/price_reader.h"

namespace orvex::bench {
namespace {

constexpr const char* yardstickLabel = "a running sum";
constexpr const char* copyLabel = "a copy of a column";
constexpr const char* countLinesLabel = "counting lines";
constexpr const char* loadLabel = "Database.OpenDataBase";
constexpr const char* readLabel = "the reader of price files";

void yardstick(benchmark::State& state) {
  const auto close = series(Prices::Ordinary)->getRecordset()->getField("Close");
  const auto x = close->values();
  std::vector<double> out(x.size());
  for (auto _ : state) {
    double total = 0.0;
    for (std::size_t i = 0; i < 20; ++i) total += x[i];
    for (std::size_t i = 20; i < x.size(); ++i) {
      total += x[i];
      total -= x[i - 20];
      out[i] = total / 20;
    }
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
}

void copy(benchmark::State& state) {
  const auto close = series(Prices::Ordinary)->getRecordset()->getField("Close");
  for (auto _ : state) {
    const OwnRows rows = newRows(close->values().size());
    std::memcpy(rows.values.data(), close->values().data(), close->values().size_bytes());
    benchmark::DoNotOptimize(rows.values.data());
    benchmark::ClobberMemory();
  }
}

void indicator(benchmark::State& state, const Case& one) {
  const PreparedCall call(one, series(one.prices));
  try {
    for (auto _ : state) benchmark::DoNotOptimize(call.run());
  } catch (const Error& error) {
    state.SkipWithError(error.what());
  }
}

const std::string& priceFile() {
  static const std::string path = [] {
    std::string name = (std::filesystem::temp_directory_path() / "orvex-bench-prices.csv").string();
    writePriceFile(name);
    return name;
  }();
  return path;
}

void countLines(benchmark::State& state) {
  std::ifstream file(priceFile(), std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  for (auto _ : state) {
    std::size_t count = 0;
    const char* at = text.data();
    const char* const end = at + text.size();
    while ((at = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)))) != nullptr) {
      ++count;
      if (++at == end) break;
    }
    benchmark::DoNotOptimize(count);
  }
}

void load(benchmark::State& state) {
  for (auto _ : state) {
    Database data;
    data.OpenDataBase(priceFile(), ",");
    benchmark::DoNotOptimize(data.getRecordCount());
  }
}

void read(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(prices::readFile(priceFile()).count);
}

/// Keeps the median of every benchmark, and prints nothing on the way.
class Medians : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.error_occurred) failures[run.run_name.function_name] = run.error_message;
      if (run.aggregate_name == "median") nanoseconds[run.run_name.function_name] = run.GetAdjustedRealTime();
    }
  }

  std::map<std::string, double> nanoseconds;
  std::map<std::string, std::string> failures;
};

constexpr std::size_t labelWidth = 52;

/// The nanoseconds of every line of an earlier output, by label.
std::map<std::string, double> readBase(const std::string& path) {
  std::map<std::string, double> base;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.size() <= labelWidth) continue;
    const std::size_t end = line.find_last_not_of(' ', labelWidth - 1);
    const double nanoseconds = std::strtod(line.c_str() + labelWidth, nullptr);
    if (end != std::string::npos && nanoseconds > 0.0) base[line.substr(0, end + 1)] = nanoseconds;
  }
  return base;
}

bool printTable(const std::vector<Case>& all, const Medians& medians, const std::map<std::string, double>& base) {
  fmt::print("{:<{}} {:>10} {:>10}\n", "", labelWidth, "ns/record", base.empty() ? "" : "of base");
  std::vector<std::string> labels = {yardstickLabel, copyLabel};
  for (const Case& one : all) labels.push_back(one.label());
  for (const std::string& label : labels) {
    const auto found = medians.nanoseconds.find(label);
    if (found == medians.nanoseconds.end()) continue;
    const double nanoseconds = found->second / RecordCount;
    const auto before = base.find(label);
    fmt::print("{:<{}} {:>10.3f} {:>10}\n", label, labelWidth, nanoseconds,
               before == base.end() ? "" : fmt::format("{:.2f}", nanoseconds / before->second));
  }
  const double count = medians.nanoseconds.at(countLinesLabel);
  const double loading = medians.nanoseconds.at(loadLabel);
  fmt::print("\nloading {} lines: {:.0f} us, {:.1f} times what counting them with memchr takes\n", RecordCount,
             loading / 1000, loading / count);
  const double reading = medians.nanoseconds.at(readLabel);
  fmt::print("reading them with every check: {:.0f} us, {:.2f} times the loading\n", reading / 1000, reading / loading);
  for (const auto& [name, message] : medians.failures) fmt::print(stderr, "{} failed: {}\n", name, message);
  return medians.failures.empty();
}

int run(int argc, char** argv) {
#ifdef __GLIBC__
  // A process that has been running for a while has memory at hand. Without this the table would show how often the
  // allocator gives pages back to the system and takes them again.
  mallopt(M_MMAP_THRESHOLD, 1 << 26);
  mallopt(M_TRIM_THRESHOLD, 1 << 28);
#endif
  const std::map<std::string_view, kernels::Level> levels = {{"--level=off", kernels::Level::Off},
                                                             {"--level=baseline", kernels::Level::Baseline},
                                                             {"--level=avx2", kernels::Level::Avx2},
                                                             {"--level=avx2-fma", kernels::Level::Avx2Fma},
                                                             {"--level=avx512", kernels::Level::Avx512}};
  bool table = true;
  std::map<std::string, double> base;
  std::vector<char*> options;
  for (int i = 0; i < argc; ++i) {
    const auto level = levels.find(argv[i]);
    if (level != levels.end()) {
      kernels::setLevel(level->second);
    } else if (std::string_view(argv[i]).starts_with("--base=")) {
      const std::string path = argv[i] + std::strlen("--base=");
      base = readBase(path);
      if (base.empty()) {
        fmt::print(stderr, "orvex_bench: \"{}\" is no output of this program\n", path);
        return 2;
      }
    } else {
      options.push_back(argv[i]);
    }
    if (std::string_view(argv[i]).starts_with("--benchmark_")) table = false;
  }
  std::string repetitions = "--benchmark_repetitions=15";
  std::string interleaving = "--benchmark_enable_random_interleaving=true";
  std::string shortest = "--benchmark_min_time=0.02";
  if (table) options.insert(options.end(), {repetitions.data(), interleaving.data(), shortest.data()});

  const std::vector<Case> all = cases();
  benchmark::RegisterBenchmark(yardstickLabel, yardstick);
  benchmark::RegisterBenchmark(copyLabel, copy);
  for (const Case& one : all) {
    benchmark::RegisterBenchmark(one.label().c_str(), [&one](benchmark::State& state) { indicator(state, one); });
  }
  benchmark::RegisterBenchmark(countLinesLabel, countLines);
  benchmark::RegisterBenchmark(loadLabel, load);
  benchmark::RegisterBenchmark(readLabel, read);
  int count = static_cast<int>(options.size());
  benchmark::Initialize(&count, options.data());
  if (benchmark::ReportUnrecognizedArguments(count, options.data())) {
    fmt::print(
        stderr,
        "usage: orvex_bench [--level=off|baseline|avx2|avx2-fma|avx512] [--base=FILE] [--benchmark_... options]\n");
    return 2;
  }
  if (!table) {
    benchmark::RunSpecifiedBenchmarks();
    return 0;
  }
  Medians medians;
  benchmark::RunSpecifiedBenchmarks(&medians);
  return printTable(all, medians, base) ? 0 : 1;
}

}  // namespace
}  // namespace orvex::bench

int main(int argc, char** argv) {
  return orvex::bench::run(argc, argv);
}
