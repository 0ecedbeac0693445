#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "orvex/standard/candles.h"
#include "orvex/standard/method.h"
#include "orvex/standard/parts.h"
#include "orvex/standard/standard.h"

// Candlestick patterns, each a rule over the last candles. What is long, short or near is told by the mean of the
// candles before the one that is measured.
namespace orvex::inline ORVEX_COUNTS {

namespace standard {

namespace {

/// The candles, and the means that they are measured by: of ten bodies, of ten shadows, of ten and of five ranges, each
/// in the row of the last of them.
struct Chart {
  Chart(Call& call, Prices& prices)
      : open(prices.open()), high(prices.high()), low(prices.low()), close(prices.close()) {
    const Series bodies = call.of<formulas::Distance>(1, {close, open});
    const Series ranges = call.of<formulas::Difference>(1, {high, low});
    const Series shadows = call.of<formulas::Shadows>(1, {high, low, close, open});
    tenBodies = simple(call, bodies, 10);
    tenShadows = simple(call, shadows, 10);
    tenRanges = simple(call, ranges, 10);
    fiveRanges = simple(call, ranges, 5);
  }

  Series open, high, low, close;
  Series tenBodies, tenShadows, tenRanges, fiveRanges;
};

/// The last candles as a rule sees them: candle 0 is the record's own, candle 1 the one before, ...
template <class T>
class Candles {
 public:
  Candles(const Chart& chart, int record) : chart_(chart), record_(record) {}

  T open(int k) const { return at_(chart_.open, record_ - k); }
  T high(int k) const { return at_(chart_.high, record_ - k); }
  T low(int k) const { return at_(chart_.low, record_ - k); }
  T close(int k) const { return at_(chart_.close, record_ - k); }

  bool white(int k) const { return close(k) >= open(k); }
  bool black(int k) const { return !white(k); }
  int color(int k) const { return white(k) ? 1 : -1; }

  T top(int k) const { return larger(open(k), close(k)); }
  T bottom(int k) const { return smaller(open(k), close(k)); }
  T body(int k) const { return magnitude(close(k) - open(k)); }
  T upper(int k) const { return high(k) - top(k); }
  T lower(int k) const { return bottom(k) - low(k); }

  // Measures: the mean of the candles before candle k.
  T usualBody(int k) const { return at_(chart_.tenBodies, record_ - k - 1); }
  T dojiBody(int k) const { return 0.1 * at_(chart_.tenRanges, record_ - k - 1); }
  T shortShadow(int k) const { return at_(chart_.tenShadows, record_ - k - 1) / 2; }
  T tinyShadow(int k) const { return 0.1 * at_(chart_.tenRanges, record_ - k - 1); }
  T near(int k) const { return 0.2 * at_(chart_.fiveRanges, record_ - k - 1); }
  T far(int k) const { return 0.6 * at_(chart_.fiveRanges, record_ - k - 1); }
  T equal(int k) const { return 0.05 * at_(chart_.fiveRanges, record_ - k - 1); }

  bool isLong(int k) const { return body(k) > usualBody(k); }
  bool isShort(int k) const { return body(k) < usualBody(k); }
  bool isDoji(int k) const { return body(k) <= dojiBody(k); }
  bool hasNoUpper(int k) const { return upper(k) < tinyShadow(k); }
  bool hasNoLower(int k) const { return lower(k) < tinyShadow(k); }
  bool isBare(int k) const { return hasNoUpper(k) && hasNoLower(k); }

  /// Whether the body of candle a lies wholly above, or below, that of candle b.
  bool bodyAbove(int a, int b) const { return bottom(a) > top(b); }
  bool bodyBelow(int a, int b) const { return top(a) < bottom(b); }
  /// Whether the whole candle does, shadows and all.
  bool above(int a, int b) const { return low(a) > high(b); }
  bool below(int a, int b) const { return high(a) < low(b); }

  /// Whether `value` lies within `distance` of `level`.
  static bool within(T value, T level, T distance) { return value <= level + distance && value >= level - distance; }

  template <class... K>
  bool allWhite(K... k) const {
    return (white(k) && ...);
  }
  template <class... K>
  bool allBlack(K... k) const {
    return (black(k) && ...);
  }

 private:
  const Chart& chart_;
  int record_;
  At<T> at_;
};

int signal(bool found, int value) {
  return found ? value : 0;
}

/// How much of a body a star, a cloud or a hold goes into.
constexpr double StarShare = 0.3;
constexpr double Half = 0.5;

/// Three candles of which the middle one stands apart, at the end of a rise.
template <class T>
bool evening(const Candles<T>& c, bool isStar) {
  return c.isLong(2) && c.white(2) && isStar && c.bodyAbove(1, 2) && c.body(0) > c.usualBody(0) && c.black(0) &&
         c.close(0) < c.close(2) - c.body(2) * StarShare;
}
/// And at the end of a fall.
template <class T>
bool morning(const Candles<T>& c, bool isStar) {
  return c.isLong(2) && c.black(2) && isStar && c.bodyBelow(1, 2) && c.body(0) > c.usualBody(0) && c.white(0) &&
         c.close(0) > c.close(2) + c.body(2) * StarShare;
}

/// A body within the body of the long candle before it: 100, or 80 where they share an end.
template <class T>
int inside(const Candles<T>& c, bool isSmall) {
  if (!c.isLong(1) || !isSmall) return 0;
  if (c.top(0) < c.top(1) && c.bottom(0) > c.bottom(1)) return -c.color(1) * 100;
  return signal(c.top(0) <= c.top(1) && c.bottom(0) >= c.bottom(1), -c.color(1) * 80);
}

/// Two bare long candles of opposite colours with a gap between them.
template <class T>
bool kicks(const Candles<T>& c) {
  return c.color(1) == -c.color(0) && c.isLong(1) && c.isBare(1) && c.isLong(0) && c.isBare(0) &&
         (c.black(1) ? c.above(0, 1) : c.below(0, 1));
}

template <class T>
using Rule = int (*)(const Candles<T>&);

/// The rules, in the order of the patterns. Those of the two hikkakes are elsewhere: they wait for what follows.
template <class T>
constexpr std::array<Rule<T>, CandlePatterns.size()> rules = {
    // TwoCrows
    [](const Candles<T>& c) {
      return signal(c.white(2) && c.isLong(2) && c.black(1) && c.bodyAbove(1, 2) && c.black(0) &&
                        c.open(0) < c.open(1) && c.open(0) > c.close(1) && c.close(0) > c.open(2) &&
                        c.close(0) < c.close(2),
                    -100);
    },
    // ThreeBlackCrows
    [](const Candles<T>& c) {
      return signal(c.white(3) && c.allBlack(2, 1, 0) && c.hasNoLower(2) && c.hasNoLower(1) && c.hasNoLower(0) &&
                        c.open(1) < c.open(2) && c.open(1) > c.close(2) && c.open(0) < c.open(1) &&
                        c.open(0) > c.close(1) && c.high(3) > c.close(2) && c.close(2) > c.close(1) &&
                        c.close(1) > c.close(0),
                    -100);
    },
    // ThreeInside
    [](const Candles<T>& c) {
      return signal(c.isLong(2) && c.body(1) <= c.usualBody(1) && c.top(1) < c.top(2) && c.bottom(1) > c.bottom(2) &&
                        ((c.white(2) && c.black(0) && c.close(0) < c.open(2)) ||
                         (c.black(2) && c.white(0) && c.close(0) > c.open(2))),
                    -c.color(2) * 100);
    },
    // ThreeLineStrike
    [](const Candles<T>& c) {
      return signal(c.color(3) == c.color(2) && c.color(2) == c.color(1) && c.color(0) == -c.color(1) &&
                        c.open(2) >= c.bottom(3) - c.near(3) && c.open(2) <= c.top(3) + c.near(3) &&
                        c.open(1) >= c.bottom(2) - c.near(2) && c.open(1) <= c.top(2) + c.near(2) &&
                        ((c.white(1) && c.close(1) > c.close(2) && c.close(2) > c.close(3) && c.open(0) > c.close(1) &&
                          c.close(0) < c.open(3)) ||
                         (c.black(1) && c.close(1) < c.close(2) && c.close(2) < c.close(3) && c.open(0) < c.close(1) &&
                          c.close(0) > c.open(3))),
                    c.color(1) * 100);
    },
    // ThreeOutside
    [](const Candles<T>& c) {
      return signal(
          (c.white(1) && c.black(2) && c.close(1) > c.open(2) && c.open(1) < c.close(2) && c.close(0) > c.close(1)) ||
              (c.black(1) && c.white(2) && c.open(1) > c.close(2) && c.close(1) < c.open(2) && c.close(0) < c.close(1)),
          c.color(1) * 100);
    },
    // ThreeStarsInSouth
    [](const Candles<T>& c) {
      return signal(c.allBlack(2, 1, 0) && c.isLong(2) && c.lower(2) > c.body(2) && c.body(1) < c.body(2) &&
                        c.open(1) > c.close(2) && c.open(1) <= c.high(2) && c.low(1) < c.close(2) &&
                        c.low(1) >= c.low(2) && c.lower(1) > c.tinyShadow(1) && c.isShort(0) && c.isBare(0) &&
                        c.low(0) > c.low(1) && c.high(0) < c.high(1),
                    100);
    },
    // ThreeWhiteSoldiers
    [](const Candles<T>& c) {
      return signal(c.allWhite(2, 1, 0) && c.hasNoUpper(2) && c.hasNoUpper(1) && c.hasNoUpper(0) &&
                        c.close(0) > c.close(1) && c.close(1) > c.close(2) && c.open(1) > c.open(2) &&
                        c.open(1) <= c.close(2) + c.near(2) && c.open(0) > c.open(1) &&
                        c.open(0) <= c.close(1) + c.near(1) && c.body(1) > c.body(2) - c.far(2) &&
                        c.body(0) > c.body(1) - c.far(1) && c.body(0) > c.usualBody(0),
                    100);
    },
    // AbandonedBaby
    [](const Candles<T>& c) {
      return signal(c.isLong(2) && c.isDoji(1) && c.body(0) > c.usualBody(0) &&
                        ((c.white(2) && c.black(0) && c.close(0) < c.close(2) - c.body(2) * StarShare &&
                          c.above(1, 2) && c.below(0, 1)) ||
                         (c.black(2) && c.white(0) && c.close(0) > c.close(2) + c.body(2) * StarShare &&
                          c.below(1, 2) && c.above(0, 1))),
                    c.color(0) * 100);
    },
    // AdvanceBlock
    [](const Candles<T>& c) {
      return signal(c.allWhite(2, 1, 0) && c.close(0) > c.close(1) && c.close(1) > c.close(2) &&
                        c.open(1) > c.open(2) && c.open(1) <= c.close(2) + c.near(2) && c.open(0) > c.open(1) &&
                        c.open(0) <= c.close(1) + c.near(1) && c.isLong(2) && c.upper(2) < c.shortShadow(2) &&
                        ((c.body(1) < c.body(2) - c.far(2) && c.body(0) < c.body(1) + c.near(1)) ||
                         c.body(0) < c.body(1) - c.far(1) ||
                         (c.body(0) < c.body(1) && c.body(1) < c.body(2) &&
                          (c.upper(0) > c.shortShadow(0) || c.upper(1) > c.shortShadow(1))) ||
                         (c.body(0) < c.body(1) && c.upper(0) > c.body(0))),
                    -100);
    },
    // BeltHold
    [](const Candles<T>& c) {
      return signal(c.isLong(0) && (c.white(0) ? c.hasNoLower(0) : c.hasNoUpper(0)), c.color(0) * 100);
    },
    // Breakaway
    [](const Candles<T>& c) {
      return signal(
          c.isLong(4) && c.color(4) == c.color(3) && c.color(3) == c.color(1) && c.color(1) == -c.color(0) &&
              ((c.black(4) && c.bodyBelow(3, 4) && c.high(2) < c.high(3) && c.low(2) < c.low(3) &&
                c.high(1) < c.high(2) && c.low(1) < c.low(2) && c.close(0) > c.open(3) && c.close(0) < c.close(4)) ||
               (c.white(4) && c.bodyAbove(3, 4) && c.high(2) > c.high(3) && c.low(2) > c.low(3) &&
                c.high(1) > c.high(2) && c.low(1) > c.low(2) && c.close(0) < c.open(3) && c.close(0) > c.close(4))),
          c.color(0) * 100);
    },
    // ClosingMarubozu
    [](const Candles<T>& c) {
      return signal(c.isLong(0) && (c.white(0) ? c.hasNoUpper(0) : c.hasNoLower(0)), c.color(0) * 100);
    },
    // ConcealingBabySwallow
    [](const Candles<T>& c) {
      return signal(c.allBlack(3, 2, 1, 0) && c.isBare(3) && c.isBare(2) && c.bodyBelow(1, 2) &&
                        c.upper(1) > c.tinyShadow(1) && c.high(1) > c.close(2) && c.high(0) > c.high(1) &&
                        c.low(0) < c.low(1),
                    100);
    },
    // Counterattack
    [](const Candles<T>& c) {
      return signal(
          c.color(1) == -c.color(0) && c.isLong(1) && c.isLong(0) && c.within(c.close(0), c.close(1), c.equal(1)),
          c.color(0) * 100);
    },
    // DarkCloudCover
    [](const Candles<T>& c) {
      return signal(c.white(1) && c.isLong(1) && c.black(0) && c.open(0) > c.high(1) && c.close(0) > c.open(1) &&
                        c.close(0) < c.close(1) - c.body(1) * Half,
                    -100);
    },
    // Doji
    [](const Candles<T>& c) { return signal(c.isDoji(0), 100); },
    // DojiStar
    [](const Candles<T>& c) {
      return signal(c.isLong(1) && c.isDoji(0) && (c.white(1) ? c.bodyAbove(0, 1) : c.bodyBelow(0, 1)),
                    -c.color(1) * 100);
    },
    // DragonflyDoji
    [](const Candles<T>& c) { return signal(c.isDoji(0) && c.hasNoUpper(0) && c.lower(0) > c.tinyShadow(0), 100); },
    // Engulfing: 80 where the bodies share an end.
    [](const Candles<T>& c) {
      if (c.color(0) == c.color(1) || c.top(0) < c.top(1) || c.bottom(0) > c.bottom(1)) return 0;
      const bool sharesTop = c.top(0) == c.top(1), sharesBottom = c.bottom(0) == c.bottom(1);
      return signal(!sharesTop || !sharesBottom, c.color(0) * (sharesTop || sharesBottom ? 80 : 100));
    },
    // EveningDojiStar
    [](const Candles<T>& c) { return signal(evening(c, c.isDoji(1)), -100); },
    // EveningStar
    [](const Candles<T>& c) { return signal(evening(c, c.body(1) <= c.usualBody(1)), -100); },
    // GapSideSideWhite
    [](const Candles<T>& c) {
      const bool up = c.bodyAbove(1, 2) && c.bodyAbove(0, 2), down = c.bodyBelow(1, 2) && c.bodyBelow(0, 2);
      return signal((up || down) && c.allWhite(1, 0) && c.within(c.body(0), c.body(1), c.near(1)) &&
                        c.within(c.open(0), c.open(1), c.equal(1)),
                    up ? 100 : -100);
    },
    // GravestoneDoji
    [](const Candles<T>& c) { return signal(c.isDoji(0) && c.hasNoLower(0) && c.upper(0) > c.tinyShadow(0), 100); },
    // Hammer
    [](const Candles<T>& c) {
      return signal(c.isShort(0) && c.lower(0) > c.body(0) && c.hasNoUpper(0) && c.bottom(0) <= c.low(1) + c.near(1),
                    100);
    },
    // HangingMan
    [](const Candles<T>& c) {
      return signal(c.isShort(0) && c.lower(0) > c.body(0) && c.hasNoUpper(0) && c.bottom(0) >= c.high(1) - c.near(1),
                    -100);
    },
    // Harami
    [](const Candles<T>& c) { return inside(c, c.body(0) <= c.usualBody(0)); },
    // HaramiCross
    [](const Candles<T>& c) { return inside(c, c.isDoji(0)); },
    // HighWave
    [](const Candles<T>& c) {
      return signal(c.isShort(0) && c.upper(0) > 2 * c.body(0) && c.lower(0) > 2 * c.body(0), c.color(0) * 100);
    },
    // Hikkake, HikkakeModified
    nullptr,
    nullptr,
    // HomingPigeon
    [](const Candles<T>& c) {
      return signal(c.allBlack(1, 0) && c.isLong(1) && c.body(0) <= c.usualBody(0) && c.open(0) < c.open(1) &&
                        c.close(0) > c.close(1),
                    100);
    },
    // IdenticalThreeCrows
    [](const Candles<T>& c) {
      return signal(c.allBlack(2, 1, 0) && c.hasNoLower(2) && c.hasNoLower(1) && c.hasNoLower(0) &&
                        c.close(2) > c.close(1) && c.close(1) > c.close(0) &&
                        c.within(c.open(1), c.close(2), c.equal(2)) && c.within(c.open(0), c.close(1), c.equal(1)),
                    -100);
    },
    // InNeck
    [](const Candles<T>& c) {
      return signal(c.black(1) && c.isLong(1) && c.white(0) && c.open(0) < c.low(1) &&
                        c.close(0) <= c.close(1) + c.equal(1) && c.close(0) >= c.close(1),
                    -100);
    },
    // InvertedHammer
    [](const Candles<T>& c) {
      return signal(c.isShort(0) && c.upper(0) > c.body(0) && c.hasNoLower(0) && c.bodyBelow(0, 1), 100);
    },
    // Kicking
    [](const Candles<T>& c) { return signal(kicks(c), c.color(0) * 100); },
    // KickingByLength
    [](const Candles<T>& c) { return signal(kicks(c), c.color(c.body(0) > c.body(1) ? 0 : 1) * 100); },
    // LadderBottom
    [](const Candles<T>& c) {
      return signal(c.allBlack(4, 3, 2, 1) && c.open(4) > c.open(3) && c.open(3) > c.open(2) &&
                        c.close(4) > c.close(3) && c.close(3) > c.close(2) && c.upper(1) > c.tinyShadow(1) &&
                        c.white(0) && c.open(0) > c.open(1) && c.close(0) > c.high(1),
                    100);
    },
    // LongLeggedDoji
    [](const Candles<T>& c) { return signal(c.isDoji(0) && (c.lower(0) > c.body(0) || c.upper(0) > c.body(0)), 100); },
    // LongLine
    [](const Candles<T>& c) {
      return signal(c.isLong(0) && c.upper(0) < c.shortShadow(0) && c.lower(0) < c.shortShadow(0), c.color(0) * 100);
    },
    // Marubozu
    [](const Candles<T>& c) { return signal(c.isLong(0) && c.isBare(0), c.color(0) * 100); },
    // MatchingLow
    [](const Candles<T>& c) { return signal(c.allBlack(1, 0) && c.within(c.close(0), c.close(1), c.equal(1)), 100); },
    // MatHold
    [](const Candles<T>& c) {
      const T floor = c.close(4) - c.body(4) * Half;
      return signal(c.isLong(4) && c.isShort(3) && c.isShort(2) && c.isShort(1) && c.white(4) && c.black(3) &&
                        c.white(0) && c.bodyAbove(3, 4) && c.bottom(2) < c.close(4) && c.bottom(1) < c.close(4) &&
                        c.bottom(2) > floor && c.bottom(1) > floor && c.top(2) < c.open(3) && c.top(1) < c.top(2) &&
                        c.open(0) > c.close(1) && c.close(0) > larger(larger(c.high(3), c.high(2)), c.high(1)),
                    100);
    },
    // MorningDojiStar
    [](const Candles<T>& c) { return signal(morning(c, c.isDoji(1)), 100); },
    // MorningStar
    [](const Candles<T>& c) { return signal(morning(c, c.body(1) <= c.usualBody(1)), 100); },
    // OnNeck
    [](const Candles<T>& c) {
      return signal(
          c.black(1) && c.isLong(1) && c.white(0) && c.open(0) < c.low(1) && c.within(c.close(0), c.low(1), c.equal(1)),
          -100);
    },
    // Piercing
    [](const Candles<T>& c) {
      return signal(c.black(1) && c.isLong(1) && c.white(0) && c.isLong(0) && c.open(0) < c.low(1) &&
                        c.close(0) < c.open(1) && c.close(0) > c.close(1) + c.body(1) * Half,
                    100);
    },
    // RickshawMan
    [](const Candles<T>& c) {
      const T middle = c.low(0) + (c.high(0) - c.low(0)) / 2;
      return signal(c.isDoji(0) && c.lower(0) > c.body(0) && c.upper(0) > c.body(0) &&
                        c.bottom(0) <= middle + c.near(0) && c.top(0) >= middle - c.near(0),
                    100);
    },
    // RiseFallThreeMethods
    [](const Candles<T>& c) {
      const int way = c.color(4);
      const auto holds = [&](int k) { return c.isShort(k) && c.bottom(k) < c.high(4) && c.top(k) > c.low(4); };
      return signal(c.isLong(4) && holds(3) && holds(2) && holds(1) && c.isLong(0) && c.color(3) == -way &&
                        c.color(2) == -way && c.color(1) == -way && c.color(0) == way &&
                        c.close(2) * way < c.close(3) * way && c.close(1) * way < c.close(2) * way &&
                        c.open(0) * way > c.close(1) * way && c.close(0) * way > c.close(4) * way,
                    way * 100);
    },
    // SeparatingLines
    [](const Candles<T>& c) {
      return signal(c.color(1) == -c.color(0) && c.within(c.open(0), c.open(1), c.equal(1)) && c.isLong(0) &&
                        (c.white(0) ? c.hasNoLower(0) : c.hasNoUpper(0)),
                    c.color(0) * 100);
    },
    // ShootingStar
    [](const Candles<T>& c) {
      return signal(c.isShort(0) && c.upper(0) > c.body(0) && c.hasNoLower(0) && c.bodyAbove(0, 1), -100);
    },
    // ShortLine
    [](const Candles<T>& c) {
      return signal(c.isShort(0) && c.upper(0) < c.shortShadow(0) && c.lower(0) < c.shortShadow(0), c.color(0) * 100);
    },
    // SpinningTop
    [](const Candles<T>& c) {
      return signal(c.isShort(0) && c.upper(0) > c.body(0) && c.lower(0) > c.body(0), c.color(0) * 100);
    },
    // StalledPattern
    [](const Candles<T>& c) {
      return signal(c.allWhite(2, 1, 0) && c.close(0) > c.close(1) && c.close(1) > c.close(2) && c.isLong(2) &&
                        c.isLong(1) && c.hasNoUpper(1) && c.open(1) > c.open(2) &&
                        c.open(1) <= c.close(2) + c.near(2) && c.isShort(0) &&
                        c.open(0) >= c.close(1) - c.body(0) - c.near(1),
                    -100);
    },
    // StickSandwich
    [](const Candles<T>& c) {
      return signal(c.black(2) && c.white(1) && c.black(0) && c.low(1) > c.close(2) &&
                        c.within(c.close(0), c.close(2), c.equal(2)),
                    100);
    },
    // Takuri
    [](const Candles<T>& c) { return signal(c.isDoji(0) && c.hasNoUpper(0) && c.lower(0) > 2 * c.body(0), 100); },
    // TasukiGap
    [](const Candles<T>& c) {
      return signal(((c.bodyAbove(1, 2) && c.white(1) && c.black(0) && c.open(0) < c.close(1) &&
                      c.open(0) > c.open(1) && c.close(0) < c.open(1) && c.close(0) > c.top(2)) ||
                     (c.bodyBelow(1, 2) && c.black(1) && c.white(0) && c.open(0) < c.open(1) &&
                      c.open(0) > c.close(1) && c.close(0) > c.open(1) && c.close(0) < c.bottom(2))) &&
                        magnitude(c.body(1) - c.body(0)) < c.near(1),
                    c.color(1) * 100);
    },
    // Thrusting
    [](const Candles<T>& c) {
      return signal(c.black(1) && c.isLong(1) && c.white(0) && c.open(0) < c.low(1) &&
                        c.close(0) > c.close(1) + c.equal(1) && c.close(0) <= c.close(1) + c.body(1) * Half,
                    -100);
    },
    // Tristar: all three are measured by the candles before the first.
    [](const Candles<T>& c) {
      const T doji = c.dojiBody(2);
      if (!(c.body(2) <= doji && c.body(1) <= doji && c.body(0) <= doji)) return 0;
      if (c.bodyBelow(1, 2) && c.bottom(0) > c.bottom(1)) return 100;
      return signal(c.bodyAbove(1, 2) && c.top(0) < c.top(1), -100);
    },
    // UniqueThreeRiver
    [](const Candles<T>& c) {
      return signal(c.isLong(2) && c.allBlack(2, 1) && c.close(1) > c.close(2) && c.open(1) <= c.open(2) &&
                        c.low(1) < c.low(2) && c.isShort(0) && c.white(0) && c.open(0) > c.low(1),
                    100);
    },
    // UpsideGapTwoCrows
    [](const Candles<T>& c) {
      return signal(c.white(2) && c.isLong(2) && c.black(1) && c.body(1) <= c.usualBody(1) && c.bodyAbove(1, 2) &&
                        c.black(0) && c.open(0) > c.open(1) && c.close(0) < c.close(1) && c.close(0) > c.close(2),
                    -100);
    },
    // GapThreeMethods
    [](const Candles<T>& c) {
      return signal(c.color(2) == c.color(1) && c.color(1) == -c.color(0) && c.open(0) < c.top(1) &&
                        c.open(0) > c.bottom(1) && c.close(0) < c.top(2) && c.close(0) > c.bottom(2) &&
                        (c.white(2) ? c.bodyAbove(1, 2) : c.bodyBelow(1, 2)),
                    c.color(2) * 100);
    },
};

constexpr std::size_t HikkakeIndex = 28;
constexpr std::size_t HikkakeModifiedIndex = 29;
static_assert(CandlePatterns[HikkakeIndex].name == "Hikkake");
static_assert(CandlePatterns[HikkakeModifiedIndex].name == "HikkakeModified");

/// A false breakout that may still be confirmed.
struct Breakout {
  int record = 0;  // at which it was found; 0 for none
  int value = 0;
};

/// An inside candle that the next one leaves on one side; a modified one is inside of an inside candle, and closes at
/// the side that is left.
template <class T>
int breakout(const Candles<T>& c, bool isModified) {
  const bool isInside = c.high(1) < c.high(2) && c.low(1) > c.low(2);
  const bool falls = c.high(0) < c.high(1) && c.low(0) < c.low(1);
  const bool rises = c.high(0) > c.high(1) && c.low(0) > c.low(1);
  if (!isInside || !(falls || rises)) return 0;
  if (isModified) {
    if (!(c.high(2) < c.high(3) && c.low(2) > c.low(3))) return 0;
    if (!(falls ? c.close(2) <= c.low(2) + c.near(2) : c.close(2) >= c.high(2) - c.near(2))) return 0;
  }
  return falls ? 100 : -100;
}

/// 100 where a breakout is found, 200 where a close within three records confirms that it was false.
Series hikkake(Call& call, const Chart& chart, bool isModified, int lookback) {
  // Three records are watched before the first that is told.
  const Series all = call.carried(lookback - 2, Breakout(), [&]<class T>(At<T>, Breakout& last, int r) {
    const Candles<T> candles(chart, r);
    const int found = breakout(candles, isModified);
    if (found != 0) {
      last = {r, found};
      return T(found);
    }
    if (last.record == 0 || r > last.record + 3) return T(0);
    const int age = r - last.record + 1;
    const bool confirms = last.value > 0 ? candles.close(0) > candles.high(age) : candles.close(0) < candles.low(age);
    if (!confirms) return T(0);
    const int value = last.value;
    last.record = 0;
    return T(2 * value);
  });
  return call.shown(all, lookback + 1);
}

Series pattern(Call& call, const Chart& chart, std::size_t index) {
  const int lookback = CandlePatterns[index].lookback;
  if (index == HikkakeIndex || index == HikkakeModifiedIndex) {
    return hikkake(call, chart, index == HikkakeModifiedIndex, lookback);
  }
  return call.each(lookback + 1, [&]<class T>(At<T>, int r) { return T(rules<T>[index](Candles<T>(chart, r))); });
}

}  // namespace

}  // namespace standard

using namespace standard;

Standard::Result Standard::CANDLE(DataRef data, SetRef OHLCV, Integer Pattern, Name Alias) {
  return Method<"CANDLE">(data, Alias).choice(Pattern, 1, CandlePatterns.size()).compute([&](Call& call) {
    Prices prices(call, OHLCV);
    return pattern(call, Chart(call, prices), static_cast<std::size_t>(Pattern.value()) - 1);
  });
}

std::shared_ptr<Note> Standard::CANDLES(DataRef data, SetRef OHLCV, Integer Period) {
  return Method<"CANDLES">(data).record(Period).evaluate([&](Call& call) {
    if (Period > call.count()) raise(faults::SubscriptOutOfRange);
    Prices prices(call, OHLCV);
    const Chart chart(call, prices);
    call.check();
    std::string names;
    int found = 0;
    for (std::size_t i = 0; i < CandlePatterns.size(); ++i) {
      if (Period <= CandlePatterns[i].lookback) continue;
      const int value = rules<Real>[i] != nullptr
                            ? rules<Real>[i](Candles<Real>(chart, Period.value()))
                            : static_cast<int>(At<double>()(pattern(call, chart, i), Period.value()));
      if (value == 0) continue;
      ++found;
      names.append(names.empty() ? "" : ", ").append(CandlePatterns[i].name).append(" ").append(std::to_string(value));
    }
    auto note = std::make_shared<Note>();
    note->setPeriod(Period);
    note->setValue(found);
    note->setNote(names);
    return note;
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
