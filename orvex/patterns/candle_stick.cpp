#include "orvex/patterns/candle_stick.h"

#include <algorithm>
#include <array>
#include <string>

#include "orvex/data/object.h"
#include "orvex/data/price_column.h"
#include "orvex/data/real.h"

namespace orvex::inline ORVEX_COUNTS {

namespace {

/// The bodies and shadows of one record.
struct Candle {
  Real open, high, low, close;

  bool isWhite() const { return close > open; }
  bool isBlack() const { return close < open; }
  Real top() const { return std::max<double>(open, close); }
  Real bottom() const { return std::min<double>(open, close); }
  Real body() const { return top() - bottom(); }
  Real middle() const { return (open + close) / 2; }
  Real upperShadow() const { return high - top(); }
  Real lowerShadow() const { return bottom() - low; }
};

constexpr int Up = 1, Down = -1;

/// The records of a pattern and what they are measured against.
struct Formation {
  std::array<Candle, 3> candles;
  Real meanBody;
  int trend;

  const Candle& a() const { return candles[0]; }
  const Candle& b() const { return candles[1]; }
  const Candle& c() const { return candles[2]; }

  bool isDoji(const Candle& candle) const { return candle.body() <= 0.1 * meanBody; }
  bool isSmall(const Candle& candle) const { return candle.body() <= 0.5 * meanBody && !isDoji(candle); }
  bool isLong(const Candle& candle) const { return candle.body() >= 1.5 * meanBody; }
  bool isNone(Real shadow) const { return shadow <= 0.1 * meanBody; }
  bool isHalf(Real shadow) const { return shadow >= 0.5 * meanBody; }
  /// At least twice a small body.
  bool isWhole(Real shadow) const { return shadow >= meanBody; }

  bool goesWithTrend(const Candle& candle) const {
    return (trend == Up && candle.isWhite()) || (trend == Down && candle.isBlack());
  }
  bool hasPeg() const { return isSmall(a()) && isWhole(a().lowerShadow()) && isNone(a().upperShadow()); }
  /// The second body lies inside the first, which is long and in the direction of the trend.
  bool isInside() const {
    return goesWithTrend(a()) && isLong(a()) && b().top() <= a().top() && b().bottom() >= a().bottom();
  }
  /// The second body lies beyond the first, which is long and in the direction of the trend.
  bool isGap() const {
    return goesWithTrend(a()) && isLong(a()) && (trend == Up ? b().bottom() > a().top() : b().top() < a().bottom());
  }
  bool isStar() const { return isGap() && (isSmall(b()) || isDoji(b())); }
};

int bullish(const Formation&) {
  return 1;
}
int bearish(const Formation&) {
  return -1;
}
int neither(const Formation&) {
  return 0;
}
int againstTrend(const Formation& f) {
  return -f.trend;
}
int colour(const Formation& f) {
  return f.a().isWhite() ? 1 : -1;
}

struct Pattern {
  std::string_view name;
  int records;
  bool (*holds)(const Formation& f);
  int (*value)(const Formation& f);
};

/// In the order in which they are tried.
constexpr Pattern patterns[] = {
    {"Morning Star", 3,
     [](const Formation& f) {
       return f.trend == Down && f.isStar() && f.c().isWhite() && f.c().close > f.a().middle();
     },
     bullish},
    {"Evening Star", 3,
     [](const Formation& f) { return f.trend == Up && f.isStar() && f.c().isBlack() && f.c().close < f.a().middle(); },
     bearish},
    {"Piercing Line", 2,
     [](const Formation& f) {
       return f.trend == Down && f.a().isBlack() && f.isLong(f.a()) && f.b().open < f.a().low &&
              f.b().close > f.a().middle() && f.b().close < f.a().open;
     },
     bullish},
    {"Dark Cloud Cover", 2,
     [](const Formation& f) {
       return f.trend == Up && f.a().isWhite() && f.isLong(f.a()) && f.b().open > f.a().high &&
              f.b().close < f.a().middle() && f.b().close > f.a().open;
     },
     bearish},
    {"Engulfing Line", 2,
     [](const Formation& f) {
       return f.goesWithTrend(f.a()) && (f.trend == Up ? f.b().isBlack() : f.b().isWhite()) &&
              f.b().top() >= f.a().top() && f.b().bottom() <= f.a().bottom() && f.b().body() > f.a().body();
     },
     againstTrend},
    {"Harami Cross", 2, [](const Formation& f) { return f.isInside() && f.isDoji(f.b()); }, againstTrend},
    {"Harami", 2, [](const Formation& f) { return f.isInside() && f.isSmall(f.b()); }, againstTrend},
    {"Doji Star", 2, [](const Formation& f) { return f.isGap() && f.isDoji(f.b()); }, againstTrend},
    {"Star", 2, [](const Formation& f) { return f.isGap() && f.isSmall(f.b()); }, againstTrend},
    {"Hammer", 1, [](const Formation& f) { return f.trend == Down && f.hasPeg(); }, bullish},
    {"Hanging Man", 1, [](const Formation& f) { return f.trend == Up && f.hasPeg(); }, bearish},
    {"Shooting Star", 1,
     [](const Formation& f) {
       return f.trend == Up && f.isSmall(f.a()) && f.isWhole(f.a().upperShadow()) && f.isNone(f.a().lowerShadow());
     },
     bearish},
    {"Doji", 1, [](const Formation& f) { return f.isDoji(f.a()); }, neither},
    {"Spinning Tops", 1,
     [](const Formation& f) {
       return f.isSmall(f.a()) && f.isHalf(f.a().upperShadow()) && f.isHalf(f.a().lowerShadow());
     },
     neither},
    {"Long Body", 1, [](const Formation& f) { return f.isLong(f.a()); }, colour},
};

/// How many records the measures look back from a pattern's first one, and over how many they take their means.
constexpr int lookBack = 11;
constexpr int meanRecords = 10;

/// Reads the prices of an `OHLCV` set.
class Prices {
 public:
  explicit Prices(const std::shared_ptr<RecordSet>& set)
      : open_(set, Database::OpenName),
        high_(set, Database::HighName),
        low_(set, Database::LowName),
        close_(set, Database::CloseName) {}

  Formation formation(int first, int records) {
    Formation result{};
    Real bodies = 0, closes = 0;
    for (int record = first - meanRecords; record < first; ++record) {
      bodies += abs(close_(record) - open_(record));
      closes += close_(record - 1);
    }
    result.meanBody = bodies / meanRecords;
    const Real last = close_(first - 1), mean = closes / meanRecords;
    result.trend = last > mean ? Up : last < mean ? Down : 0;
    for (int i = 0; i < records; ++i) {
      const int record = first + i;
      result.candles[static_cast<std::size_t>(i)] = {open_(record), high_(record), low_(record), close_(record)};
    }
    return result;
  }

 private:
  PriceColumn open_, high_, low_, close_;
};

}  // namespace

std::shared_ptr<Note> CandleStick::IdentifyPattern(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                   Integer Period) {
  const Integer count = object(data).getRecordCount();
  checkPeriods(Period, 1, count, IdentifyPatternPeriodFault);
  return trap(IdentifyPatternFault, [&] {
    auto note = std::make_shared<Note>();
    note->setPeriod(Period);
    note->setNote(std::string(NoPattern));
    Prices prices(OHLCV);
    Formation formation{};
    int records = 0;
    for (const Pattern& pattern : patterns) {
      const int first = Period.value() - pattern.records + 1;
      if (first <= lookBack) continue;
      if (records != pattern.records) {
        records = pattern.records;
        formation = prices.formation(first, records);
      }
      if (formation.meanBody == 0 || !pattern.holds(formation)) continue;
      note->setNote(std::string(pattern.name));
      note->setValue(pattern.value(formation));
      break;
    }
    return note;
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
