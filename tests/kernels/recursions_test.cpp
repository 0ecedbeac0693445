// Rows that follow from the row before are computed in stretches side by side, others piece by piece. Here are series
// that are long enough for it, those among them on which the stretches do not meet of themselves.
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "orvex/kernels/kernels.h"
#include "tests/support/calls.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

using kernels::Level;

std::vector<double> repeated(double value, std::size_t count) {
  return std::vector<double>(count, value);
}

std::vector<std::vector<double>> longSeries() {
  std::mt19937 random(4);
  std::vector<double> walk;
  double price = 100.0;
  for (int i = 0; i < 3001; ++i) walk.push_back(price += (static_cast<double>(random() % 201) - 100.0) / 100.0);
  // A tail of zeros of the other sign than the values fade with, which take long to become zero too.
  std::vector<double> fading = repeated(-0.0, 3000);
  fading[0] = 1.0;
  fading[1] = 3.0;
  // Averages come to rest beside a price that stays, on the side from which they come.
  std::vector<double> resting = repeated(0.1, 3000);
  for (int i = 0; i < 30; ++i) resting[static_cast<std::size_t>(i)] = i;
  // What a stretch begins with is far from what it should be.
  std::vector<double> leap = walk;
  for (std::size_t i = 1000; i < 1040; ++i) leap[i] = 1e58;
  std::vector<double> broken = walk;
  broken[2500] = std::numeric_limits<double>::infinity();
  // Its averages are numbers, and so are their differences, but not all differences of those.
  std::vector<double> vast = repeated(9.75e307, 3000);
  for (std::size_t i = 0; i < 400; ++i) vast[i] = 0.0;
  for (std::size_t i = 1500; i < 1560; ++i) vast[i] = -9.75e307;
  return {walk, fading, resting, leap, broken, vast};
}

/// What a call makes with kernels of every level is what its steps make. Whether that is columns.
bool expectTheSameOnAllLevels(const World& world, const catalogue::Class& owner, const Call& call) {
  const auto outcome = [&](Level level) {
    kernels::setLevel(level);
    world.data->MoveFirst();
    return run(world, call, owner.create().get());
  };
  const Outcome expected = outcome(Level::Off);
  for (const Level level : kernels::allLevels) {
    EXPECT_EQ(outcome(level), expected) << "level " << static_cast<int>(level);
  }
  return !expected.columns.empty();
}

TEST(Recursions, StretchesSideBySideAreOneChain) {
  const struct {
    const char* owner;
    const char* method;
  } recursions[] = {{"MovingAverage", "ExponentialMovingAverage"},
                    {"MovingAverage", "WellesWilderSmoothing"},
                    {"Index", "RelativeStrengthIndex"},
                    {"Oscillator", "TRIX"}};
  for (const std::vector<double>& series : longSeries()) {
    const World world{records(series.size()), {}, {}, static_cast<int>(series.size())};
    for (const auto& [className, methodName] : recursions) {
      const catalogue::Class& owner = *catalogue::findClass(className);
      const catalogue::Method& method = *catalogue::findMethod(owner, methodName);
      for (const int periods : {1, 2, 3, 9, 14, 40, 300, 1400}) {
        Call call{&owner, &method, {field(series), Integer(periods), catalogue::Missing{}}};
        if (method.arguments.size() == 4) call.arguments.insert(call.arguments.begin(), world.data);
        SCOPED_TRACE(testing::Message() << methodName << " over " << periods << " from " << series[0]);
        expectTheSameOnAllLevels(world, owner, call);
      }
    }
  }
}

TEST(Recursions, AChainOfAveragesIsItsWalks) {
  const catalogue::Class& owner = *catalogue::findClass("Oscillator");
  const catalogue::Method& method = *catalogue::findMethod(owner, "MACD");
  const struct {
    int shorter, longer, signal;
  } cycles[] = {{12, 26, 9}, {1, 1, 1}, {40, 3, 2}, {5, 35, 300}, {400, 500, 9}, {2, 100, 100}};
  for (const std::vector<double>& series : longSeries()) {
    const World world{records(series.size()), {}, {}, static_cast<int>(series.size())};
    for (const auto& [shorter, longer, signal] : cycles) {
      SCOPED_TRACE(testing::Message() << shorter << ", " << longer << ", " << signal << " from " << series[0]);
      expectTheSameOnAllLevels(
          world, owner,
          {&owner,
           &method,
           {world.data, field(series), Integer(shorter), Integer(longer), Integer(signal), catalogue::Missing{}}});
    }
  }
}

TEST(Recursions, StretchesOfTrendsAreOneChain) {
  const catalogue::Class& owner = *catalogue::findClass("Oscillator");
  const catalogue::Method& method = *catalogue::findMethod(owner, "ParabolicSAR");
  std::vector<std::vector<double>> all = longSeries();
  // A trend that never turns, and so never forgets by turning.
  std::vector<double> rising;
  for (int i = 0; i < 3000; ++i) rising.push_back(100.0 + i);
  all.push_back(rising);
  for (const std::vector<double>& lows : all) {
    std::vector<double> highs = lows;
    for (double& high : highs) high += 0.5;
    const World world{records(lows.size()), {}, {}, static_cast<int>(lows.size())};
    for (const auto& [least, most] : {std::pair(0.02, 0.2), std::pair(0.001, 0.002), std::pair(0.5, 1.0)}) {
      SCOPED_TRACE(testing::Message() << least << " up to " << most << " from " << lows[0]);
      expectTheSameOnAllLevels(
          world, owner, {&owner, &method, {world.data, field(highs), field(lows), least, most, catalogue::Missing{}}});
    }
  }
}

TEST(Recursions, StretchesOfBarsAreOneChain) {
  const catalogue::Class& owner = *catalogue::findClass("Standard");
  std::vector<std::vector<double>> all = longSeries();
  // Bands that no close crosses are held for ever.
  std::vector<double> rising;
  for (int i = 0; i < 5000; ++i) rising.push_back(100.0 + i);
  all.push_back(rising);
  for (const std::vector<double>& lows : all) {
    std::vector<Bar> series;
    std::vector<double> sessions;
    for (const double low : lows) {
      const auto i = static_cast<int>(series.size());
      // Long sessions and short ones, some of them without a trade.
      sessions.push_back(i % 2000 < 1000 ? i / 100 : i / 3);
      series.push_back({low, low + 0.5, low, low + 0.25, static_cast<double>(i % 300 < 290 ? i % 7 : 0)});
    }
    const auto data = bars(series);
    const World world{data, {}, {}, static_cast<int>(series.size())};
    const catalogue::Value set = data->getRecordset(), none = catalogue::Missing{};
    const struct {
      const char* method;
      std::vector<catalogue::Value> arguments;
    } calls[] = {
        {"SUPERTREND", {set, Integer(10), 3.0, none}},
        {"SUPERTREND", {set, Integer(300), 0.0, none}},
        {"SUPERTREND", {set, Integer(2), -1.0, none}},
        {"HEIKIN_ASHI", {set, none}},
        {"VWAP", {set, field(sessions), none}},
        {"AVWAP", {set, Integer(40), none}},
        {"ADOSC", {set, Integer(3), Integer(10), none}},
        {"TSI", {field(lows), Integer(25), Integer(13), none}},
        {"TSI", {field(lows), Integer(2), Integer(400), none}},
        {"MASS", {set, Integer(9), Integer(25), none}},
    };
    for (const auto& [name, arguments] : calls) {
      Call call{&owner, catalogue::findMethod(owner, name), arguments};
      call.arguments.insert(call.arguments.begin(), data);
      SCOPED_TRACE(testing::Message() << name << " from " << lows[0]);
      const bool isMade = expectTheSameOnAllLevels(world, owner, call);
      EXPECT_TRUE(isMade || (lows != all.front() && lows != rising));
    }
  }
}

TEST(Recursions, RowsThatOverflowAreFaultsOnAllLevels) {
  const catalogue::Class& owner = *catalogue::findClass("Standard");
  const std::vector<Bar> ordinary(20, {10, 12, 9, 11, 5});
  // The third record leaves next to nothing of the volumes before it.
  std::vector<Bar> cancelling = ordinary;
  cancelling[0] = {1e10, 1e10, 1e10, 1e10, 1};
  cancelling[1] = {1, 1, 1, 1, -1};
  cancelling[2] = {1e10, 1e10, 1e10, 1e10, 1e-300};
  // The close of the first record is a great many times as far from the low as the high is.
  std::vector<Bar> narrow = ordinary;
  narrow[0] = {0, 4e-306, 0, 100, 100};
  const auto sessions = field(repeated(1, ordinary.size()));
  const catalogue::Value none = catalogue::Missing{};
  const struct {
    const char* method;
    const std::vector<Bar>& series;
    std::vector<catalogue::Value> arguments;
    int record;
  } calls[] = {
      {"VWAP", cancelling, {sessions, none}, 3},
      {"AVWAP", cancelling, {Integer(1), none}, 3},
      {"AD", narrow, {none}, 1},
      {"ADOSC", narrow, {Integer(3), Integer(10), none}, 1},
  };
  for (const auto& [name, series, arguments, record] : calls) {
    SCOPED_TRACE(name);
    const auto data = bars(series);
    const World world{data, {}, {}, static_cast<int>(series.size())};
    Call call{&owner, catalogue::findMethod(owner, name), arguments};
    call.arguments.insert(call.arguments.begin(), {data, data->getRecordset()});
    for (const Level level : kernels::allLevels) {
      kernels::setLevel(level);
      EXPECT_EQ(run(world, call, owner.create().get()).record, record) << "level " << static_cast<int>(level);
    }
  }
  kernels::setLevel(kernels::widestLevel());
}

TEST(Pieces, OfALongColumnAreTheColumn) {
  const struct {
    const char* owner;
    const char* method;
  } inPieces[] = {{"Oscillator", "Aroon"}, {"Index", "MoneyFlowIndex"}};
  std::mt19937 random(5);
  std::vector<Bar> series;
  for (int i = 0; i < 3001; ++i) {
    const double close = 100.0 + static_cast<double>(random() % 64) / 4.0;
    series.push_back(
        {close, close + 1.0, close - static_cast<double>(random() % 3), close, static_cast<double>(random() % 100)});
  }
  const auto data = bars(series);
  const World world{data, {}, {}, static_cast<int>(series.size())};
  for (const auto& [className, methodName] : inPieces) {
    const catalogue::Class& owner = *catalogue::findClass(className);
    const catalogue::Method& method = *catalogue::findMethod(owner, methodName);
    for (const int periods : {1, 2, 14, 255, 256, 512, 513, 1400, 2999}) {
      Call call{&owner, &method, {data, data->getRecordset(), Integer(periods), catalogue::Missing{}}};
      call.arguments.resize(method.arguments.size());
      SCOPED_TRACE(testing::Message() << methodName << " over " << periods);
      expectTheSameOnAllLevels(world, owner, call);
    }
  }
}

}  // namespace
}  // namespace orvex::test
