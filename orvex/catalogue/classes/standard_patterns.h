#pragma once

#include <array>
#include <cstddef>
#include <tuple>

#include "orvex/catalogue/classes/standard_rows.h"
#include "orvex/standard/candles.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

/// The patterns by name, numbered from 1.
inline constexpr auto CandleChoices = [] {
  std::array<Choice, standard::CandlePatterns.size()> choices{};
  for (std::size_t i = 0; i < choices.size(); ++i) {
    choices[i] = {static_cast<int>(i) + 1, standard::CandlePatterns[i].name};
  }
  return choices;
}();

inline constexpr std::string_view CandleOrigin =
    "Steve Nison, Japanese Candlestick Charting Techniques, 1991, and Gregory Morris, CandlePower, 1992; the measures "
    "of long, short and near are those of TA-Lib.";

inline constexpr auto standardPatterns = std::tuple{
    entry<"CANDLE", &Standard::CANDLE>(
        {.help = "Where a candlestick pattern ends.",
         .arguments = {OHLCV, {.name = "Pattern", .help = "The pattern.", .usual = 19, .choices = CandleChoices}},
         .columns = {below(
             "", "candle(Pattern) + 1",
             "100 or -100 where the pattern ends, 80 or -80 where bodies share an end, 200 or -200 where it is "
             "confirmed, otherwise 0.",
             {}, {-200, 200}, Style::Marks)},
         .purpose = Purpose::Pattern,
         .guide = {.formula =
                       "the pattern's rule over the last one to five candles. A body is long or short against the mean "
                       "of the ten bodies before, a doji's is at most a tenth of the mean of ten ranges; near, far "
                       "and equal are 0.2, 0.6 and 0.05 of the mean of five ranges",
                   .reading =
                       "Above 0 the pattern is bullish, below 0 bearish; patterns that are neither tell of doubt. "
                       "The trend that a pattern is said to end is not looked at.",
                   .origin = CandleOrigin}}),
    row<&Standard::CANDLES>(
        {.name = "CANDLES",
         .help = "All candlestick patterns that end at a record.",
         .arguments = {Data, OHLCV, recordNumber("Period", "The record.").usually("N")},
         .faults = {faults::ObjectNotSet, standard::Reports<"CANDLES">::record,
                    standard::Reports<"CANDLES">::unexpected},
         .purpose = Purpose::Pattern,
         .elsewhere = {.house = "CandleStick.IdentifyPattern"},
         .guide = {.formula =
                       "a note of the record, of how many patterns of CANDLE end there, and of their names, each with "
                       "its signal: \"Doji 100, Hammer 100\"",
                   .reading = "What a candle may mean; several at once are common.",
                   .origin = CandleOrigin,
                   .fails = "where Period is above N"}}),
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
