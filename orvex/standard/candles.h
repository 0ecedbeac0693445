#pragma once

#include <array>
#include <string_view>

#include "orvex/data/counts.h"

/// The candlestick patterns that TA-Lib knows, in its order.
namespace orvex::inline ORVEX_COUNTS::standard {

/// A pattern, and how many records it needs before the one that completes it.
struct CandlePattern {
  std::string_view name;
  int lookback;
};

inline constexpr std::array CandlePatterns = {
    CandlePattern{"TwoCrows", 12},
    CandlePattern{"ThreeBlackCrows", 13},
    CandlePattern{"ThreeInside", 12},
    CandlePattern{"ThreeLineStrike", 8},
    CandlePattern{"ThreeOutside", 3},
    CandlePattern{"ThreeStarsInSouth", 12},
    CandlePattern{"ThreeWhiteSoldiers", 12},
    CandlePattern{"AbandonedBaby", 12},
    CandlePattern{"AdvanceBlock", 12},
    CandlePattern{"BeltHold", 10},
    CandlePattern{"Breakaway", 14},
    CandlePattern{"ClosingMarubozu", 10},
    CandlePattern{"ConcealingBabySwallow", 13},
    CandlePattern{"Counterattack", 11},
    CandlePattern{"DarkCloudCover", 11},
    CandlePattern{"Doji", 10},
    CandlePattern{"DojiStar", 11},
    CandlePattern{"DragonflyDoji", 10},
    CandlePattern{"Engulfing", 2},
    CandlePattern{"EveningDojiStar", 12},
    CandlePattern{"EveningStar", 12},
    CandlePattern{"GapSideSideWhite", 7},
    CandlePattern{"GravestoneDoji", 10},
    CandlePattern{"Hammer", 11},
    CandlePattern{"HangingMan", 11},
    CandlePattern{"Harami", 11},
    CandlePattern{"HaramiCross", 11},
    CandlePattern{"HighWave", 10},
    CandlePattern{"Hikkake", 5},
    CandlePattern{"HikkakeModified", 10},
    CandlePattern{"HomingPigeon", 11},
    CandlePattern{"IdenticalThreeCrows", 12},
    CandlePattern{"InNeck", 11},
    CandlePattern{"InvertedHammer", 11},
    CandlePattern{"Kicking", 11},
    CandlePattern{"KickingByLength", 11},
    CandlePattern{"LadderBottom", 14},
    CandlePattern{"LongLeggedDoji", 10},
    CandlePattern{"LongLine", 10},
    CandlePattern{"Marubozu", 10},
    CandlePattern{"MatchingLow", 6},
    CandlePattern{"MatHold", 14},
    CandlePattern{"MorningDojiStar", 12},
    CandlePattern{"MorningStar", 12},
    CandlePattern{"OnNeck", 11},
    CandlePattern{"Piercing", 11},
    CandlePattern{"RickshawMan", 10},
    CandlePattern{"RiseFallThreeMethods", 14},
    CandlePattern{"SeparatingLines", 11},
    CandlePattern{"ShootingStar", 11},
    CandlePattern{"ShortLine", 10},
    CandlePattern{"SpinningTop", 10},
    CandlePattern{"StalledPattern", 12},
    CandlePattern{"StickSandwich", 7},
    CandlePattern{"Takuri", 10},
    CandlePattern{"TasukiGap", 7},
    CandlePattern{"Thrusting", 11},
    CandlePattern{"Tristar", 12},
    CandlePattern{"UniqueThreeRiver", 12},
    CandlePattern{"UpsideGapTwoCrows", 12},
    CandlePattern{"GapThreeMethods", 2},
};

}  // namespace orvex::inline ORVEX_COUNTS::standard
