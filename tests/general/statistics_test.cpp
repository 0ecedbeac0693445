#include <cmath>

#include "orvex/general/general.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(StandardDeviation, HandComputedSeries) {
  const struct {
    std::vector<double> series;
    int periods, deviations, type;
    std::vector<double> expected;
  } cases[] = {
      {{7, 1, 3, 3, 9}, 2, 3, 1, {0, 0, 3, 0, 9}},
      {{7, 1, 3, 3, 9}, 2, -1, 1, {0, 0, -1, 0, -3}},
      {{1, 2, 3, 4, 5}, 3, 2, 1, {0, 0, 0, 2 * std::sqrt(2.0 / 3), 2 * std::sqrt(2.0 / 3)}},
      {{4, 4, 4, 4}, 2, 2, 6, {0, 0, 0, 0}},
      {{1, 2, 3}, 3, 2, 1, {0, 0, 0}},
      // The triangular average begins in row 5; until then the distance is that from 0.
      {{7, 1, 3, 3, 9}, 2, 3, 5, {0, 0, 3 * std::sqrt(5.0), 9, 9}},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(testing::PrintToString(one.expected));
    const auto data = records(one.series.size());
    // The average's own column bears this name while it lasts.
    expectColumns(*General().StandardDeviation(data, field(one.series), one.periods, one.deviations, one.type, "Temp"),
                  {{"Temp", one.expected}});
  }
}

TEST(StandardDeviation, TellsAFailedAverageFromOtherFaults) {
  const auto source = field({1, 2, 3, 4, 5, 6});
  const auto data = records(6);
  const struct {
    int periods, type;
    Fault fault;
  } cases[] = {
      {0, 1, General::StandardDeviationAverageFault}, {7, 6, General::StandardDeviationAverageFault},
      {6, 2, General::StandardDeviationAverageFault}, {4, 5, General::StandardDeviationAverageFault},
      {2, 0, General::StandardDeviationFault},        {2, 8, General::StandardDeviationFault},
      {0, 4, General::StandardDeviationFault},  // the average needs no period, the deviation does
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(testing::Message() << "periods " << one.periods << ", type " << one.type);
    EXPECT_FAULT(one.fault, General().StandardDeviation(data, source, one.periods, 1, one.type));
  }
  expectFaults(*data,
               {{[&] { General().StandardDeviation(data, source, 2, 1, 8); }, General::StandardDeviationFault, 3}});
}

TEST(CorrelationAnalysis, HandComputedColumns) {
  const auto steps = field({1, 3, 2, 2});
  General general;
  EXPECT_EQ(general.CorrelationAnalysis(steps, field({0, 1, 3, 4})), 1 - 4.0 / 2);
  EXPECT_EQ(general.CorrelationAnalysis(steps, steps), 1 - 5.0 / 2);
  EXPECT_EQ(general.CorrelationAnalysis(steps, field({7, 7, 7, 7, 9})), 1);
  EXPECT_EQ(general.CorrelationAnalysis(field({5}), nullptr), 1);
  EXPECT_EQ(general.CorrelationAnalysis(std::make_shared<Field>(), nullptr), 1);
  for (const auto& [a, b] :
       {std::pair{field({1, 2}), field({1, 2})}, {steps, field({1, 2, 3})}, {steps, nullptr}, {nullptr, steps}}) {
    EXPECT_EQ(faultOf([&, x = a, y = b] { General().CorrelationAnalysis(x, y); }), General::CorrelationAnalysisFault);
  }
}

}  // namespace
}  // namespace orvex::test
