// Long windows go through the column in stretches, short ones many together. Around every length at which that begins
// or ends, on columns with and without a remainder: the bits of the definition, evaluated record by record.
#include <gtest/gtest.h>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "orvex/kernels/kernels.h"

namespace orvex::test {
namespace {

using kernels::Level;
using kernels::Records;
using kernels::Table;

constexpr int lag = 1;
constexpr double factor = 2.0;

/// The four definitions, each of the row at `end`, counted from 0.
double meanAt(const std::vector<double>& x, const std::vector<double>&, int window, int end) {
  double sum = 0;
  for (int i = end; i > end - window; --i) sum += x[static_cast<std::size_t>(i)];
  return sum / window;
}

double weightedMeanAt(const std::vector<double>& x, const std::vector<double>&, int window, int end) {
  double sum = 0;
  double total = 0;
  for (int weight = window; weight >= 1; --weight) {
    const int place = end - window + weight;
    sum += weight * x[static_cast<std::size_t>(place)];
    total += weight;
  }
  return sum / total;
}

double deviationAt(const std::vector<double>& x, const std::vector<double>& center, int window, int end) {
  double sum = 0;
  for (int i = end - lag; i > end - lag - window; --i) {
    const double distance = x[static_cast<std::size_t>(i)] - center[static_cast<std::size_t>(end)];
    sum += distance * distance;
  }
  return factor * std::sqrt(sum / window);
}

double sumOfRatiosAt(const std::vector<double>& x, const std::vector<double>& center, int window, int end) {
  double sum = 0;
  for (int i = end - window + 1; i <= end; ++i)
    sum += x[static_cast<std::size_t>(i)] / center[static_cast<std::size_t>(i)];
  return sum;
}

TEST(Sliding, StretchesAndRecordsSideBySideAreTheDefinition) {
  using At = double(const std::vector<double>&, const std::vector<double>&, int, int);
  const struct {
    const char* name;
    At* at;
    std::function<std::size_t(kernels::Source, kernels::Source, int, Records, double*)> fill;
  } definitions[] = {
      {"mean", meanAt,
       [](auto x, auto, int window, Records records, double* out) {
         return kernels::run(&Table::mean, x, window, records, out);
       }},
      {"weighted mean", weightedMeanAt,
       [](auto x, auto, int window, Records records, double* out) {
         return kernels::run(&Table::weightedMean, x, window, records, out);
       }},
      {"deviation", deviationAt,
       [](auto x, auto center, int window, Records records, double* out) {
         return kernels::run(&Table::deviation, x, center, window, lag, factor, records, out);
       }},
      {"sum of ratios", sumOfRatiosAt,
       [](auto x, auto center, int window, Records records, double* out) {
         std::vector<double> terms(x.count);
         return kernels::run(&Table::ratioSum, x, center, window, records, terms.data(), out);
       }},
  };
  std::mt19937 random(7);
  std::vector<double> x, center;
  for (int i = 0; i < 6011; ++i) {
    x.push_back(static_cast<double>(random()) / 3.0 - 5e8);
    center.push_back(static_cast<double>(random()) / 7.0);
  }
  x[900] = 1e59;
  x[901] = -0.0;
  const Level widest = kernels::widestLevel();
  for (const Level level : kernels::allLevels) {
    if (level == Level::Off || level > widest) continue;
    kernels::setLevel(level);
    for (const auto& [name, at, fill] : definitions) {
      for (const int window :
           {1, 4, 5, 7, 8, 9, 16, 17, 20, 21, 24, 25, 32, 33, 39, 40, 41, 59, 60, 61, 79, 80, 200, 255, 256, 257}) {
        for (const int count : {window + 5, 700, 1280, 4103, 6011}) {
          // The first window begins with the column.
          const int first = window + lag;
          std::vector<double> out(static_cast<std::size_t>(count) + 1, 0.5);
          const kernels::Source source = {x.data(), static_cast<std::size_t>(count)};
          const kernels::Source centers = {center.data(), static_cast<std::size_t>(count)};
          const std::size_t filled = fill(source, centers, window, Records{first, count}, out.data());
          SCOPED_TRACE(testing::Message()
                       << name << " of " << window << " in " << count << " rows, level " << static_cast<int>(level));
          ASSERT_EQ(filled, static_cast<std::size_t>(count - first + 1));
          EXPECT_EQ(out[static_cast<std::size_t>(first) - 2], 0.5);
          EXPECT_EQ(out.back(), 0.5);
          for (int row = first - 1; row < count; ++row) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(out[static_cast<std::size_t>(row)]),
                      std::bit_cast<std::uint64_t>(at(x, center, window, row)))
                << row;
          }
        }
      }
    }
  }
  kernels::setLevel(widest);
}

TEST(Sliding, EndsBeforeTheFirstWindowWithAnInfinity) {
  const Level widest = kernels::widestLevel();
  for (const Level level : kernels::allLevels) {
    if (level == Level::Off || level > widest) continue;
    kernels::setLevel(level);
    for (const int window : {2, 9, 20, 40, 60}) {
      for (const int place : {100, 2000, 2999}) {
        std::vector<double> x(3000, 1.0);
        x[static_cast<std::size_t>(place)] = HUGE_VAL;
        std::vector<double> out(x.size());
        const std::size_t filled =
            kernels::run(&Table::mean, kernels::Source{x.data(), x.size()}, window, Records{window, 3000}, out.data());
        EXPECT_EQ(filled, static_cast<std::size_t>(place - window + 1))
            << "a window of " << window << ", level " << static_cast<int>(level);
      }
    }
  }
  kernels::setLevel(widest);
}

}  // namespace
}  // namespace orvex::test
