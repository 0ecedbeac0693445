#include "orvex/averages/average_type.h"
#include "orvex/averages/moving_average.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

const std::vector<double> line{1, 2, 3, 4, 5, 6, 7, 8};

TEST(AdaptiveAverages, OfALineTheForecastIsTheLine) {
  expectColumns(*MovingAverage().TimeSeriesMovingAverage(records(8), field(line), 3),
                {{"TimeSeriesMovingAverage", {0, 0, 0, 0, 0, 0, 7, 8}}});
  // An alias that is the name of a column on the way is not taken for it.
  expectColumns(*MovingAverage().TimeSeriesMovingAverage(records(8), field(line), 4, "Slope"),
                {{"Slope", {0, 0, 0, 0, 0, 0, 0, 0}}});
}

TEST(AdaptiveAverages, VidyaBlendsWithTheValueBefore) {
  const struct {
    double scale, seventh, eighth;
  } cases[] = {{0, 6, 7}, {0.5, 6.5, 7.5}, {1, 7, 8}, {2, 8, 9}, {-1, 5, 6}};
  for (const auto& [scale, seventh, eighth] : cases) {
    expectColumns(*MovingAverage().VIDYA(records(8), field(line), 3, scale),
                  {{"VIDYA", {0, 0, 0, 0, 0, 0, seventh, eighth}}});
  }
}

TEST(AdaptiveAverages, TheVariableOneFollowsTheMomentumOfNineRecords) {
  // From record 10 on the rises of nine records are 9 and the falls 3: a factor of 1/2.
  const auto source = field({0, 1, 0, 1, 0, 1, 0, 2, 4, 6, 7, 6});
  const struct {
    int periods;
    std::vector<double> expected;
  } cases[] = {
      {-1, {0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 5, 5.5}},
      {3, {0, 0, 0, 0, 0, 0, 0, 0, 0, 3, 5, 5.5}},
      {4, std::vector<double>(12)},
  };
  for (const auto& [periods, expected] : cases) {
    expectColumns(*MovingAverage().VariableMovingAverage(records(12), source, periods, "CMO"), {{"CMO", expected}});
  }
}

TEST(AdaptiveAverages, FailWhereTheSeriesCannotCarryThem) {
  const auto data = records(400);
  const auto source = field(std::vector<double>(400, 1.0));
  MovingAverage average;
  for (const int periods : {-1, 0, 1, 182, 201, 16384}) {
    SCOPED_TRACE(periods);
    EXPECT_FAULT(MovingAverage::TimeSeriesMovingAverageFault, average.TimeSeriesMovingAverage(data, source, periods));
    EXPECT_FAULT(MovingAverage::VIDYAFault, average.VIDYA(data, source, periods, 1));
  }
  for (const int periods : {134, 10923, 32767}) {
    SCOPED_TRACE(periods);
    EXPECT_FAULT(MovingAverage::VariableMovingAverageFault, average.VariableMovingAverage(data, source, periods));
  }
  EXPECT_FAULT(MovingAverage::VariableMovingAverageFault, average.VariableMovingAverage(data, nullptr, 1));
}

TEST(AverageType, ChoosesByCode) {
  const auto data = records(30);
  std::vector<double> squares(30);
  for (int i = 0; i < 30; ++i) squares[static_cast<std::size_t>(i)] = i * i % 17;
  const auto source = field(squares);
  MovingAverage average;
  const std::shared_ptr<RecordSet> expected[] = {
      nullptr,
      average.SimpleMovingAverage(data, source, 4, "m"),
      average.ExponentialMovingAverage(data, source, 4, "m"),
      average.TimeSeriesMovingAverage(data, source, 4, "m"),
      average.VariableMovingAverage(data, source, 4, "m"),
      average.TriangularMovingAverage(data, source, 4, "m"),
      average.WeightedMovingAverage(data, source, 4, "m"),
      average.VIDYA(data, source, 4, 0.65, "m"),
  };
  for (int code = 1; code <= 7; ++code) {
    const auto values = expected[code]->getField("m")->values();
    SCOPED_TRACE(code);
    expectColumns(*averageOfType(code, data, source, 4, "m"), {{"m", {values.begin(), values.end()}}});
  }
  for (const int code : {0, 8, -1}) EXPECT_EQ(averageOfType(code, data, source, 4, "m"), nullptr);
}

}  // namespace
}  // namespace orvex::test
