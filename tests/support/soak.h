#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Random calls for as long as one likes, and whether anything has grown meanwhile.
namespace orvex::inline ORVEX_COUNTS::test {

/// Something that may not grow, by more than `slack` for what settles late.
struct Gauge {
  std::string name;
  std::int64_t slack;
  std::function<std::int64_t()> read;
};

class Soak {
 public:
  /// `words` are those of the command line: [SECONDS [SEED]].
  Soak(int count, char** words, std::vector<Gauge> gauges)
      : seconds_(count > 1 ? std::atof(words[1]) : 600.0),
        seed_(count > 2 ? static_cast<std::uint32_t>(std::atoll(words[2])) : 1),
        gauges_(std::move(gauges)),
        rows_(samples + 1, std::vector<std::int64_t>(gauges_.size())) {}

  /// Runs rounds until the time is up; each gets a seed, so that it can be run again, and returns how many calls it
  /// made. Returns the exit status of the program.
  int run(const std::function<int(std::uint32_t seed)>& round) {
    std::printf("%8s %10s %10s", "seconds", "seed", "calls");
    for (const Gauge& gauge : gauges_) std::printf(" %16s", gauge.name.c_str());
    std::puts("");
    std::int64_t calls = 0;
    for (int i = 0; i < samples; ++i) {
      measure(i, calls);
      do {
        calls += round(seed_++);
      } while (passed() < seconds_ * (i + 1) / samples);
    }
    measure(samples, calls);
    return judge();
  }

 private:
  static constexpr int samples = 30;
  using Clock = std::chrono::steady_clock;

  double passed() const { return std::chrono::duration<double>(Clock::now() - start_).count(); }

  void measure(int sample, std::int64_t calls) {
    std::printf("%8.1f %10u %10lld", passed(), seed_, static_cast<long long>(calls));
    for (std::size_t i = 0; i < gauges_.size(); ++i) {
      auto& value = rows_[static_cast<std::size_t>(sample)][i];
      value = gauges_[i].read();
      std::printf(" %16lld", static_cast<long long>(value));
    }
    std::puts("");
    std::fflush(stdout);
  }

  /// Compares the last sixth of the time with the second: the first fills caches. What is lost in one round of many is
  /// lost in many rounds, so the lowest value later is above the highest one before.
  int judge() const {
    int status = 0;
    const auto sixth = [&](int i) { return rows_.begin() + i * samples / 6; };
    for (std::size_t i = 0; i < gauges_.size(); ++i) {
      const auto less = [i](const auto& a, const auto& b) { return a[i] < b[i]; };
      const std::int64_t before = (*std::max_element(sixth(1), sixth(2), less))[i];
      const std::int64_t after = (*std::min_element(sixth(5) + 1, rows_.end(), less))[i];
      const bool flat = after <= before + gauges_[i].slack;
      std::printf("%s: %lld, then %lld: %s\n", gauges_[i].name.c_str(), static_cast<long long>(before),
                  static_cast<long long>(after), flat ? "flat" : "GROWS");
      if (!flat) status = 1;
    }
    return status;
  }

  double seconds_;
  std::uint32_t seed_;
  std::vector<Gauge> gauges_;
  std::vector<std::vector<std::int64_t>> rows_;  // made beforehand, so that they are no growth
  Clock::time_point start_ = Clock::now();
};

}  // namespace orvex::inline ORVEX_COUNTS::test
