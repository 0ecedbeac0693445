#include "orvex/patterns/candle_stick.h"

#include "tests/support/series.h"

namespace orvex::test {
namespace {

/// Eleven records with bodies of 10 that rise to a close of 0: the trend before a pattern.
std::vector<Bar> advance() {
  std::vector<Bar> series;
  for (int i = 0; i < 11; ++i) series.push_back({10.0 * i - 110, 10.0 * i - 100, 10.0 * i - 110, 10.0 * i - 100, 0});
  return series;
}

/// The same upside down.
std::vector<Bar> mirrored(std::vector<Bar> series) {
  for (Bar& bar : series) bar = {-bar.open, -bar.low, -bar.high, -bar.close, 0};
  return series;
}

std::string identify(const std::vector<Bar>& series) {
  const auto data = bars(series);
  const auto period = static_cast<int>(series.size());
  const auto note = CandleStick().IdentifyPattern(data, data->getRecordset(), period);
  EXPECT_EQ(note->getPeriod(), period);
  return note->getNote() + " " + std::to_string(static_cast<int>(note->getValue()));
}

/// A record without shadows.
Bar body(double open, double close) {
  return {open, std::max(open, close), std::min(open, close), close, 0};
}

TEST(CandleStick, EachPatternAndItsNearestMiss) {
  // Against a mean body of 10: a doji up to 1, small up to 5, long from 15 on; no shadow up to 1, half from 5 on, whole
  // from 10 on.
  const std::string none = "NO PATTERN 0";
  const Bar strong = body(0, 15);
  const struct {
    std::vector<Bar> pattern;
    std::string afterAdvance, upsideDown;
  } cases[] = {
      {{body(0, 15)}, "Long Body 1", "Long Body -1"},
      {{body(15, 0)}, "Long Body -1", "Long Body 1"},
      {{body(0, 14.5)}, none, none},
      {{{0, 20, -20, 1, 0}}, "Doji 0", "Doji 0"},
      {{{0, 20, -20, 1.5, 0}}, "Spinning Tops 0", "Spinning Tops 0"},
      {{{0, 10, -5, 5, 0}}, "Spinning Tops 0", "Spinning Tops 0"},
      {{{0, 10, -4.5, 5, 0}}, none, none},
      {{{0, 9.5, -5, 5, 0}}, none, none},
      {{{0, 11, -5, 5.5, 0}}, none, none},
      {{{0, 6, -10, 5, 0}}, "Hanging Man -1", none},
      {{{0, 6, -9.5, 5, 0}}, none, none},
      {{{0, 6.5, -10, 5, 0}}, none, none},
      {{{0, 6, -10, 5.5, 0}}, none, none},
      {{{0, 1, -10, 1, 0}}, "Doji 0", "Doji 0"},
      {{{0, 15, -1, 5, 0}}, "Shooting Star -1", "Hammer 1"},
      {{{5, 15, -1, 0, 0}}, "Shooting Star -1", "Hammer 1"},
      {{{0, 14.5, -1, 5, 0}}, none, none},
      {{{0, 15, -1.5, 5, 0}}, none, none},

      {{{0, 16, 0, 15, 0}, body(16.5, 7)}, "Dark Cloud Cover -1", "Piercing Line 1"},
      {{{0, 16, 0, 15, 0}, body(16, 7)}, none, none},
      {{{0, 16, 0, 15, 0}, body(16.5, 7.5)}, none, none},
      {{{0, 16, 0, 15, 0}, body(16.5, 0)}, "Engulfing Line -1", "Engulfing Line 1"},
      {{{0, 16, 0, 14.5, 0}, body(16.5, 7)}, none, none},
      {{body(0, 4), body(4, -1)}, "Engulfing Line -1", "Engulfing Line 1"},
      {{body(0, 4), body(4, 0)}, none, none},
      {{body(0, 4), body(3.5, -1)}, none, none},
      {{body(0, 4), body(6, 0.5)}, none, none},
      {{body(4, 0), body(-1, 5)}, none, none},
      {{body(4, 0), body(5, -1)}, none, none},
      {{strong, body(7, 8)}, "Harami Cross -1", "Harami Cross 1"},
      {{strong, body(15, 15)}, "Harami Cross -1", "Harami Cross 1"},
      {{strong, body(7, 8.5)}, "Harami -1", "Harami 1"},
      {{strong, body(15, 10)}, "Harami -1", "Harami 1"},
      {{strong, body(5, 0)}, "Harami -1", "Harami 1"},
      {{strong, body(15, 9.5)}, none, none},
      {{strong, body(15.5, 11)}, none, none},
      {{strong, body(4, -0.5)}, none, none},
      {{body(0, 14.5), body(7, 8.5)}, none, none},
      {{body(15, 0), body(7, 8.5)}, none, none},
      {{strong, body(15.5, 16.5)}, "Doji Star -1", "Doji Star 1"},
      {{strong, body(15, 15.5)}, "Doji 0", "Doji 0"},
      {{strong, body(15.5, 17)}, "Star -1", "Star 1"},
      {{strong, body(15.5, 20.5)}, "Star -1", "Star 1"},
      {{strong, body(15, 20)}, none, none},
      {{strong, body(15.5, 21)}, none, none},
      {{body(0, 14.5), body(15.5, 17)}, none, none},
      {{body(15, 0), body(-0.5, -2)}, none, none},

      {{strong, body(15.5, 18), body(12, 7)}, "Evening Star -1", "Morning Star 1"},
      {{strong, body(15.5, 15.5), body(12, 7)}, "Evening Star -1", "Morning Star 1"},
      {{strong, body(15.5, 18), body(12, 7.5)}, none, none},
      {{strong, body(15.5, 18), body(3, 7)}, none, none},
      {{strong, body(15, 18), body(12, 7)}, none, none},
      {{strong, body(15.5, 21), body(12, 7)}, none, none},
      {{body(0, 14.5), body(15.5, 18), body(11, 7)}, none, none},
      // Three records go before the two that end them.
      {{strong, body(15.5, 18), body(19, 7)}, "Evening Star -1", "Morning Star 1"},
      {{body(0, 14.5), body(15.5, 18), body(19, 7)}, "Engulfing Line -1", "Engulfing Line 1"},
  };
  for (const auto& c : cases) {
    auto series = advance();
    series.insert(series.end(), c.pattern.begin(), c.pattern.end());
    SCOPED_TRACE(testing::Message() << "case " << &c - cases);
    EXPECT_EQ(identify(series), c.afterAdvance);
    EXPECT_EQ(identify(mirrored(series)), c.upsideDown);
  }
}

TEST(CandleStick, NeedsATrendAndBodiesBefore) {
  const Bar hangingMan{0, 6, -10, 5, 0}, longBody = body(0, 15);
  std::vector<Bar> sideways(11, body(-10, 0)), bodiless(11, body(0, 0)), tooFew = advance();
  tooFew.erase(tooFew.begin());
  const struct {
    std::vector<Bar> before;
    Bar last;
    std::string note;
  } cases[] = {{sideways, hangingMan, "NO PATTERN 0"},
               {sideways, longBody, "Long Body 1"},
               {bodiless, longBody, "NO PATTERN 0"},
               {tooFew, longBody, "NO PATTERN 0"}};
  for (auto c : cases) {
    c.before.push_back(c.last);
    EXPECT_EQ(identify(c.before), c.note);
  }
}

TEST(CandleStick, Errors) {
  auto series = advance();
  series.push_back(body(0, 15));
  const auto data = bars(series);
  CandleStick candles;
  EXPECT_FAULT(CandleStick::IdentifyPatternPeriodFault, candles.IdentifyPattern(data, nullptr, 0));
  EXPECT_FAULT(CandleStick::IdentifyPatternPeriodFault, candles.IdentifyPattern(data, nullptr, 13));
  EXPECT_FAULT(CandleStick::IdentifyPatternFault, candles.IdentifyPattern(data, nullptr, 12));
  data->getRecordset()->removeField("Low");
  EXPECT_FAULT(CandleStick::IdentifyPatternFault, candles.IdentifyPattern(data, data->getRecordset(), 12));
}

}  // namespace
}  // namespace orvex::test
