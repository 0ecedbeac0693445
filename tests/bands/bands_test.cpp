#include "orvex/bands/bands.h"

#include "tests/support/series.h"

namespace orvex::test {
namespace {

constexpr int Simple = 1, Exponential = 2;

TEST(Bands, BollingerMeasuresTheRecordsBefore) {
  const auto data = records(5);
  // Record 3: average 5; 4 and 12 lie 1 and 7 away, whose root mean square is 5. Then 1 and 1; 1/4 and 7/4.
  expectColumns(*Bands().BollingerBands(data, field({12, 4, 6, 4, 4.5}), 2, 2, Simple),
                {{"BollingerBandsMedian", {0, 0, 5, 5, 4.25}},
                 {"BollingerBandsTop", {0, 0, 15, 7, 6.75}},
                 {"BollingerBandsBottom", {0, 0, -5, 3, 1.75}}});
  expectColumns(*Bands().BollingerBands(data, field({12, 4, 6, 4, 4.5}), 2, 0, Simple),
                {{"BollingerBandsMedian", {0, 0, 5, 5, 4.25}},
                 {"BollingerBandsTop", {0, 0, 5, 5, 4.25}},
                 {"BollingerBandsBottom", {0, 0, 5, 5, 4.25}}});
  // With as many periods as records nothing is left to compute.
  expectColumns(*Bands().BollingerBands(records(2), field({1, 2}), 2, 2, Simple),
                {{"BollingerBandsMedian", {0, 0}}, {"BollingerBandsTop", {0, 0}}, {"BollingerBandsBottom", {0, 0}}});
}

TEST(Bands, BollingerErrors) {
  const auto data = records(4);
  const auto source = field({1, 2, 3, 4});
  const struct {
    std::shared_ptr<Field> source;
    int periods, deviations, type;
    Fault fault;
  } cases[] = {
      {source, 0, -1, 0, Bands::BollingerBandsTypeFault},
      {source, 0, -1, 8, Bands::BollingerBandsTypeFault},
      {source, 0, -1, 7, Bands::BollingerBandsPeriodsFault},
      {source, 5, -1, 1, Bands::BollingerBandsPeriodsFault},
      {source, 4, -1, 1, Bands::BollingerBandsDeviationsFault},
      {source, 1, 101, 1, Bands::BollingerBandsDeviationsFault},
      // The exponential average needs one record more than its periods.
      {source, 4, 2, Exponential, Bands::BollingerBandsAverageFault},
      {nullptr, 2, 2, 1, Bands::BollingerBandsAverageFault},
      // The square of the distance from the average overflows, the average does not.
      {field({0, 1e200, 0, 0}), 1, 2, 1, Bands::BollingerBandsFault},
  };
  for (const auto& c : cases) {
    EXPECT_FAULT(c.fault, Bands().BollingerBands(data, c.source, c.periods, c.deviations, c.type));
  }
}

TEST(Bands, EnvelopeTurnsItsShiftIntoAFraction) {
  const auto data = records(4);
  const auto source = field({8, 16, 32, 64});
  double shift = 25;
  expectColumns(*Bands().MovingAverageEnvelope(data, source, 1, Simple, shift),
                {{"EnvelopeTop", {0, 0, 40, 80}}, {"EnvelopeBottom", {0, 0, 24, 48}}});
  EXPECT_EQ(shift, 0.25);
  shift = 100;
  expectColumns(*Bands().MovingAverageEnvelope(data, source, 1, Simple, shift),
                {{"EnvelopeTop", {0, 0, 64, 128}}, {"EnvelopeBottom", {0, 0, 0, 0}}});
  EXPECT_EQ(shift, 1);
  expectColumns(*Bands().MovingAverageEnvelope(data, source, 2, Simple, 0.0),
                {{"EnvelopeTop", {0, 0, 0, 0}}, {"EnvelopeBottom", {0, 0, 0, 0}}});
}

TEST(Bands, EnvelopeErrors) {
  const auto data = records(4);
  const auto source = field({8, 16, 32, 64});
  const struct {
    int periods, type;
    double shift;
    Fault fault;
    double shiftAfterwards;
  } cases[] = {
      {0, 0, -1, Bands::MovingAverageEnvelopeTypeFault, -1},
      {5, 1, -1, Bands::MovingAverageEnvelopePeriodsFault, -1},
      {1, 1, -0.5, Bands::MovingAverageEnvelopeShiftFault, -0.5},
      {1, 1, 100.5, Bands::MovingAverageEnvelopeShiftFault, 100.5},
      {4, Exponential, 50, Bands::MovingAverageEnvelopeAverageFault, 50},
      // Twice the period leaves the column; by then the shift is written back.
      {3, 1, 50, Bands::MovingAverageEnvelopeFault, 0.5},
  };
  for (const auto& c : cases) {
    double shift = c.shift;
    EXPECT_FAULT(c.fault, Bands().MovingAverageEnvelope(data, source, c.periods, c.type, shift));
    EXPECT_EQ(shift, c.shiftAfterwards);
  }
  EXPECT_FAULT(Bands::MovingAverageEnvelopeFault, Bands().MovingAverageEnvelope(data, source, 1, 1, notANumber));
}

/// `count` rows: `value` from row `first` on, 0 before.
std::vector<double> from(int first, double value, int count) {
  std::vector<double> rows(static_cast<std::size_t>(count), value);
  for (int row = 1; row < first && row <= count; ++row) rows[static_cast<std::size_t>(row) - 1] = 0;
  return rows;
}

TEST(Bands, HighLowBandsHalveThePeriodOfTheClose) {
  // A flat series has no r-squared, so each curve is the value before: what remains to see is where it begins.
  const struct {
    int count, periods, firstTop, firstMedian;
  } cases[] = {{14, 6, 13, 7}, {14, 7, 15, 9}, {18, 9, 19, 10}, {21, 10, 21, 11}};
  for (const auto& c : cases) {
    const auto flat = [&](double value) { return field(from(1, value, c.count)); };
    expectColumns(
        *Bands().HighLowBands(records(static_cast<std::size_t>(c.count)), flat(30), flat(10), flat(20), c.periods),
        {{"HighLowBandsTop", from(c.firstTop, 30, c.count)},
         {"HighLowBandsMedian", from(c.firstMedian, 20, c.count)},
         {"HighLowBandsBottom", from(c.firstTop, 10, c.count)}});
  }
  // On a straight line r-squared is 1 and each curve takes 0.8 of the way.
  std::vector<double> line;
  for (int i = 1; i <= 13; ++i) line.push_back(10 * i);
  const auto result = Bands().HighLowBands(records(13), field(line), field(line), field(line), 6);
  EXPECT_EQ(result->getValue("HighLowBandsTop", 13), (1 - 0.8) * 120 + 0.8 * 130);
  EXPECT_EQ(result->getValue("HighLowBandsMedian", 7), (1 - 0.8) * 60 + 0.8 * 70);
}

TEST(Bands, HighLowBandsErrors) {
  const auto data = records(13);
  const auto flat = field(from(1, 1, 13));
  const Fault periods{1102, "Bands.HighLowBands", "Invalid Periods"};
  const Fault average{1104, "Bands.HighLowBands.MAError", "Error calculating moving average"};
  const auto fault = [&](const std::shared_ptr<Field>& low, int p) {
    return faultOf([&] { Bands().HighLowBands(data, flat, low, flat, p); });
  };
  EXPECT_EQ(fault(flat, 5), periods);
  EXPECT_EQ(fault(flat, 14), periods);
  EXPECT_EQ(fault(flat, 7), average);
  EXPECT_EQ(fault(nullptr, 6), average);
}

TEST(Bands, KeltnerTakesTheRangeOfFourteenRecords) {
  const std::vector<Bar> flat(17, Bar{10, 12, 8, 10, 0});
  const auto data = bars(flat);
  // The median begins at record 5; the average true range, which is 4, at record 15.
  auto top = from(5, 10, 17), bottom = from(5, 10, 17);
  for (std::size_t row = 14; row < 17; ++row) {
    top[row] = 16;
    bottom[row] = 4;
  }
  expectColumns(*Bands().Keltner(data, data->getRecordset(), 2, 1.5),
                {{"Keltner Median", from(5, 10, 17)}, {"Keltner Top", top}, {"Keltner Bottom", bottom}});
  expectColumns(*Bands().Keltner(data, data->getRecordset(), 2, -1.5),
                {{"Keltner Median", from(5, 10, 17)}, {"Keltner Top", bottom}, {"Keltner Bottom", top}});

  const auto fault = [&](int periods, double factor) {
    return faultOf([&] { Bands().Keltner(data, data->getRecordset(), periods, factor); });
  };
  EXPECT_EQ(fault(0, 1), Bands::KeltnerFault);
  EXPECT_EQ(fault(9, 1), Bands::KeltnerFault);
  EXPECT_EQ(fault(2, infinity), Bands::KeltnerFault);
}

TEST(Bands, PrimesAroundABar) {
  const struct {
    double high, low, top, bottom;
  } cases[] = {
      {10.9, 10.9, 11, 7},
      {13, 13, 13, 13},
      {2.5, 2.5, 23, 19},
      {9.99, 1.5, 97, 7},
      {0.99, 0.09, 0, 0},
      {-3, -3, 0, 0},
      // 2^30 + 3 and the prime 2^31 - 1.
      {1073741823, 2147483647.9, 1073741827, 2147483647},
  };
  for (const auto& c : cases) {
    const auto data = bars({{0, c.high, c.low, 0, 0}, {0, 20, 20, 0, 0}});
    expectColumns(*Bands().PrimeNumberBands(data, data->getRecordset()),
                  {{"Prime Bands Top", {c.top, 23}}, {"Prime Bands Bottom", {c.bottom, 19}}});
  }
}

TEST(Bands, PrimesOfPricesBeyond32Bits) {
  // Twice the high, or the price itself, does not fit.
  const struct { double high, low; } cases[] = {{1073741824, 10}, {10, 2147483648.0}, {10, -214748365}, {-1e9, 10}};
  for (const auto& c : cases) {
    const auto data = bars({{0, c.high, c.low, 0, 0}});
    EXPECT_FAULT(Bands::PrimeNumberBandsFault, Bands().PrimeNumberBands(data, data->getRecordset()));
  }
  EXPECT_FAULT(Bands::PrimeNumberBandsFault, Bands().PrimeNumberBands(records(1), std::make_shared<RecordSet>()));
}

TEST(Bands, FractalsShowWhenTheirLastNeighbourHasCome) {
  const struct {
    int periods;
    std::vector<double> highs, lows, fractalHighs, fractalLows;
  } cases[] = {
      // Neighbours that are as high or as low make no fractal.
      {1, {1, 3, 2, 2, 5, 5, 4}, {5, 4, 4, 3, 6, 2, 7}, {0, 0, 3, 3, 3, 3, 3}, {0, 0, 0, 0, 3, 3, 2}},
      {2, {1, 2, 9, 3, 4, 8, 5, 5}, {9, 8, 1, 2, 1, 0, 5, 6}, {0, 0, 0, 0, 9, 9, 9, 8}, {0, 0, 0, 0, 0, 0, 0, 0}},
      {3, {1, 2, 3, 2, 1}, {0, 0, -1, 0, 0}, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}},
      {5, {1, 2, 3, 2, 1}, {0, 0, -1, 0, 0}, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}},
  };
  for (const auto& c : cases) {
    const auto data = ranges(c.highs, c.lows);
    expectColumns(*Bands().FractalChaosBands(data, data->getRecordset(), c.periods),
                  {{"Fractal High", c.fractalHighs}, {"Fractal Low", c.fractalLows}});
  }
  const auto data = records(5);
  const Fault periods{1101, "Bands.FractalChaosBands", "Invalid Periods"};
  EXPECT_FAULT(periods, Bands().FractalChaosBands(data, nullptr, 0));
  EXPECT_FAULT(periods, Bands().FractalChaosBands(data, nullptr, 6));
  // The columns are needed even where no window fits.
  EXPECT_FAULT(Bands::FractalChaosBandsFault, Bands().FractalChaosBands(data, nullptr, 5));
}

}  // namespace
}  // namespace orvex::test
