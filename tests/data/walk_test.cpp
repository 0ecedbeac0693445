// How long a series may be: the counter of every loop over records is stepped after its last pass too.
#include "orvex/data/walk.h"

#include <vector>

#include "orvex/averages/moving_average.h"
#include "orvex/general/general.h"
#include "orvex/indices/index.h"
#include "orvex/kernels/kernels.h"
#include "orvex/oscillators/oscillator.h"
#include "orvex/standard/standard.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

using kernels::Level;

/// A database of `count` bars that no method has a fault with.
std::shared_ptr<Database> longSeries(int count) {
  std::vector<Bar> series;
  for (int i = 0; i < count; ++i) {
    const double close = 100 + i * 7 % 13 + i % 5;
    series.push_back({close - 1, close + 2 + i % 3, close - 3, close, 1000.0 + i % 11});
  }
  return bars(series);
}

struct LongestCase {
  const char* name;
  std::function<void(const std::shared_ptr<Database>&)> call;
  Fault fault;
  int longest;   // the most records that it takes
  int position;  // where one record more leaves the cursor
};

const std::vector<LongestCase>& longestCases() {
  using Data = const std::shared_ptr<Database>&;
  const auto prices = [](Data data) { return data->getRecordset(); };
  const auto close = [](Data data) { return data->getRecordset()->getField("Close"); };
  static const std::vector<LongestCase> cases = {
      {"a counter of records", [=](Data data) { MovingAverage().SimpleMovingAverage(data, close(data), 3); },
       MovingAverage::SimpleMovingAverageFault, 32766, 32767},
      {"without the cursor", [=](Data data) { Index().ChaikinMoneyFlow(data, prices(data), 3); },
       Index::ChaikinMoneyFlowFault, 32766, 1},
      {"%K", [=](Data data) { Oscillator().StochasticOscillator(data, prices(data), 5, 3, 3, 1); },
       Oscillator::StochasticOscillatorFault, 32765, 32766},
      {"%R", [=](Data data) { Oscillator().WilliamsPctR(data, prices(data), 5); }, Oscillator::WilliamsPctRFault, 32766,
       32766},
      {"StochRSI", [=](Data data) { Oscillator().StochRSI(data, close(data), 5); }, Oscillator::StochRSIFault, 32765,
       32766},
      {"ultimate", [=](Data data) { Oscillator().UltimateOscillator(data, prices(data), 2, 3, 4); },
       Oscillator::UltimateOscillatorFault, 32765, 32767},
      {"CMO", [=](Data data) { Oscillator().CMO(data, close(data), 5); }, Oscillator::CMOFault, 32765, 32767},
      {"VHF", [=](Data data) { Oscillator().VerticalHorizontalFilter(data, close(data), 5); },
       Oscillator::VerticalHorizontalFilterFault, 32765, 32767},
      {"on a CMO", [=](Data data) { Oscillator().LinearMomentumOscillator(data, close(data), 5); },
       Oscillator::LinearMomentumOscillatorFault, 32765, 32767},
      {"on an average of a CMO", [=](Data data) { General().StandardDeviation(data, close(data), 5, 2, 4); },
       General::StandardDeviationAverageFault, 32765, 32767},
      {"mass index", [=](Data data) { Index().MassIndex(data, prices(data), 5); }, Index::MassIndexFault, 32765, 32767},
      {"in stretches", [=](Data data) { Standard().EMA(data, close(data), 5); },
       unexpectedError("Standard.EMA.UnexpectedError"), 32766, 1},
      {"in one pass", [=](Data data) { Standard().MIDPOINT(data, close(data), 14); },
       unexpectedError("Standard.MIDPOINT.UnexpectedError"), 32766, 1},
      {"without a row", [=](Data data) { Standard().MOM(data, close(data), 32767); },
       unexpectedError("Standard.MOM.UnexpectedError"), 32766, 1},
  };
  return cases;
}

TEST(Walk, StepsItsCounterAfterTheLastRecord) {
  const auto series = [](int first, int last) {
    std::vector<std::shared_ptr<Database>> all;
    for (int count = first; count <= last; ++count) all.push_back(longSeries(count));
    return all;
  }(32765, 32767);
  const auto recordOf = [](const LongestCase& one, const std::shared_ptr<Database>& data) {
    try {
      one.call(data);
    } catch (const Error& error) {
      return error.record();
    }
    return -1;
  };
  for (const auto& one : longestCases()) {
    SCOPED_TRACE(one.name);
    const auto& fits = series[static_cast<std::size_t>(one.longest - 32765)];
    const auto& tooLong = series[static_cast<std::size_t>(one.longest - 32764)];
    std::vector<int> records;
    for (const Level level : {Level::Off, kernels::widestLevel()}) {
      kernels::setLevel(level);
      expectFaults(*fits, {{[&] { one.call(fits); }, std::nullopt, 1}});
      expectFaults(*tooLong, {{[&] { one.call(tooLong); }, one.fault, one.position}});
      records.push_back(recordOf(one, tooLong));
    }
    EXPECT_EQ(records.front(), records.back()) << "the record of the error without kernels, and with them";
  }
  kernels::setLevel(kernels::widestLevel());
}

TEST(Walk, YieldsAsOftenOnTheLongestSeriesWithKernelsAndWithout) {
  const auto data = longSeries(32767);
  const auto prices = data->getRecordset();
  const auto yieldsOf = [](const std::function<void()>& call) {
    int yields = 0;
    setYieldHook({[](void* count) { ++*static_cast<int*>(count); }, &yields});
    EXPECT_NE(faultOf(call), std::nullopt);
    setYieldHook({});
    return yields;
  };
  for (const Level level : {Level::Off, kernels::widestLevel()}) {
    kernels::setLevel(level);
    EXPECT_EQ(yieldsOf([&] { Index().MoneyFlowIndex(data, prices, 3); }), 32764);
    EXPECT_EQ(yieldsOf([&] { Oscillator().ChaosFractalOscillator(data, prices, 5); }), 0)
        << "the rows before the others are counted past the series first";
  }
  kernels::setLevel(kernels::widestLevel());
}

}  // namespace
}  // namespace orvex::test
