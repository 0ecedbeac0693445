#include "tests/support/levels.h"
#include "orvex/oscillators/oscillator.h"

namespace orvex {
namespace {

using test::below;

/// Bars out of random series: most often each around its close, as bars are, sometimes of four that know nothing of
/// each other.
std::shared_ptr<RecordSet> randomBars(std::mt19937& random, std::size_t count) {
  auto close = test::randomSeries(random, count), high = test::randomSeries(random, count);
  auto low = test::randomSeries(random, count), volume = test::randomSeries(random, count);
  if (below(random, 4) != 0) {
    for (std::size_t i = 0; i < count; ++i) {
      high[i] = close[i] + static_cast<double>(below(random, 5)) / 4;
      low[i] = close[i] - static_cast<double>(below(random, 5)) / 4;
      volume[i] = static_cast<double>(1 + below(random, 100000));
    }
  }
  return makeRecordSet(
      {test::field(high, "High"), test::field(low, "Low"), test::field(close, "Close"), test::field(volume, "Volume")});
}

TEST(Oscillators, AreTheSameAtAllLevels) {
  std::mt19937 random(4);
  Oscillator o;
  for (int i = 0; i < 250; ++i) {
    // Now and then longer than the windows that are computed by doubling.
    const std::size_t count = 1 + below(random, i % 25 == 0 ? 900 : 150);
    const auto data = test::records(count);
    const auto bars = randomBars(random, count);
    const auto source = bars->getField("Close");
    const auto high = bars->getField("High"), low = bars->getField("Low");
    const auto period = [&](std::size_t bound) { return static_cast<int>(below(random, bound)); };
    const int p = period(i % 3 == 0 ? count + 2 : 20), q = 1 + period(12), r = 1 + period(12), type = 1 + period(7);
    SCOPED_TRACE(testing::Message() << "series " << i << ", " << count << " records, periods " << p << ", " << q << ", "
                                    << r << ", average " << type);
    const std::function<std::shared_ptr<RecordSet>()> calls[] = {
        [&] { return o.TrueRange(data, bars); },
        [&] { return o.AverageTrueRange(data, bars, "", q); },
        [&] { return o.DirectionalMovementSystem(data, bars, q); },
        [&] { return o.Aroon(data, bars, p); },
        [&] { return o.StochasticOscillator(data, bars, p, q - 1, r, type); },
        [&] { return o.WilliamsPctR(data, bars, p); },
        [&] { return o.StochRSI(data, source, p); },
        [&] { return o.UltimateOscillator(data, bars, p, q, r); },
        [&] { return o.ParabolicSAR(data, high, low); },
        [&] { return o.ParabolicSAR(data, high, low, 0.25, 0.5); },
        [&] { return o.CMO(data, source, p); },
        [&] { return o.Momentum(data, source, p); },
        [&] { return o.VerticalHorizontalFilter(data, source, p); },
        [&] { return o.LinearMomentumOscillator(data, source, q); },
        [&] { return o.WilliamsAccumulationDistribution(data, bars); },
        [&] { return o.ChaikinVolatility(data, bars, q, r, type); },
        [&] { return o.EaseOfMovement(data, bars, q, type); },
        [&] { return o.ChaosFractalOscillator(data, bars, 1); },
        [&] { return o.PriceOscillator(data, source, q, r, type); },
        [&] { return o.MACD(data, source, q, r, q); },
        [&] { return o.DetrendedPriceOscillator(data, source, q, type); },
        [&] { return o.TRIX(data, source, q); },
        [&] { return o.GoldenDeathCross(data, source, q, r, type); },
        [&] { return o.RainbowOscillator(data, source, q, type); },
    };
    int number = 0;
    for (const auto& call : calls) {
      SCOPED_TRACE(number++);
      test::expectSameAtAllLevels(*data, call);
    }
  }
}

}  // namespace
}  // namespace orvex
