#include "bench/series.h"

#include <fmt/os.h>
#include <algorithm>
#include <cstdint>
#include <map>

namespace orvex::bench {

namespace {

/// Whole numbers that look random and are the same everywhere.
class Draws {
 public:
  int below(int limit) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<int>((state_ >> 33) % static_cast<std::uint64_t>(limit));
  }

 private:
  std::uint64_t state_ = 20;
};

}  // namespace

std::shared_ptr<Database> makeSeries(Prices prices, int count) {
  auto data = std::make_shared<Database>();
  data->OpenDatabaseByArray(std::vector<double>(static_cast<std::size_t>(count)));
  data->MoveFirst();
  const auto column = [&](std::string_view name) { return data->getRecordset()->getField(name)->writableValues(); };
  const auto open = column(Database::OpenName);
  const auto high = column(Database::HighName);
  const auto low = column(Database::LowName);
  const auto close = column(Database::CloseName);
  const auto volume = column(Database::VolumeName);
  const bool ordinary = prices == Prices::Ordinary;
  const int base = ordinary ? 10000 : prices == Prices::NearTwo31 ? 2'000'000'000 : 1'000'000'000;
  const double unit = ordinary ? 100.0 : 1.0;
  // A walk without a bound would get to other prices in a longer series, and of larger ones a search for primes takes
  // longer.
  const int least = base / 10, most = std::min(base, 700'000'000) * 3;
  Draws draws;
  int last = base;
  for (std::size_t i = 0; i < close.size(); ++i) {
    const int first = last;
    last = std::clamp(last + draws.below(201) - 100, least, most);
    open[i] = first / unit;
    close[i] = last / unit;
    high[i] = (std::max(first, last) + draws.below(60)) / unit;
    low[i] = (std::min(first, last) - draws.below(60)) / unit;
    volume[i] = 100000 + draws.below(900000);
  }
  return data;
}

const std::shared_ptr<Database>& series(Prices prices) {
  static std::map<Prices, std::shared_ptr<Database>> made;
  auto& one = made[prices];
  if (one == nullptr) one = makeSeries(prices, RecordCount);
  return one;
}

void writePriceFile(const std::string& path) {
  const auto prices = series(Prices::Ordinary)->getRecordset();
  auto file = fmt::output_file(path);
  for (int row = 1; row <= RecordCount; ++row) {
    // The reader wants dates in order: months of 28 days.
    const int day = row - 1;
    file.print("{}/{}/{},{},{},{},{},{}\n", day / 28 % 12 + 1, day % 28 + 1, 1900 + day / 336,
               prices->getValue("Open", row), prices->getValue("High", row), prices->getValue("Low", row),
               prices->getValue("Close", row), prices->getValue("Volume", row));
  }
}

}  // namespace orvex::bench
