#pragma once

#include <tuple>

#include "orvex/catalogue/classes/standard_rows.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

inline constexpr auto standardPrices = std::tuple{
    entry<"AVGPRICE", &Standard::AVGPRICE>({.help = "The mean of a bar's four prices.",
                                            .arguments = {OHLCV},
                                            .columns = {over("", "1", "The mean.")},
                                            .purpose = Purpose::Price,
                                            .elsewhere = {.talib = "AVGPRICE", .tulip = "avgprice"},
                                            .guide = {.formula = "(High + Low + Close + Open) / 4",
                                                      .reading = "A bar in one number.",
                                                      .origin = "Common."}}),
    entry<"MEDPRICE", &Standard::MEDPRICE>(
        {.help = "The middle of a bar.",
         .arguments = {OHLCV},
         .columns = {over("", "1", "The middle.")},
         .purpose = Purpose::Price,
         .elsewhere = {.house = "General.MedianPrice", .talib = "MEDPRICE", .tulip = "medprice"},
         .guide = {.formula = "(High + Low) / 2",
                   .reading = "A bar in one number, without its close.",
                   .origin = "Common."}}),
    entry<"TYPPRICE", &Standard::TYPPRICE>(
        {.help = "The mean of high, low and close.",
         .arguments = {OHLCV},
         .columns = {over("", "1", "The mean.")},
         .purpose = Purpose::Price,
         .elsewhere = {.house = "General.TypicalPrice", .talib = "TYPPRICE", .tulip = "typprice"},
         .guide = {.formula = "(High + Low + Close) / 3",
                   .reading = "What was paid in the bar, about.",
                   .origin = "Common."}}),
    entry<"WCLPRICE", &Standard::WCLPRICE>(
        {.help = "The mean of high, low and close, the close twice.",
         .arguments = {OHLCV},
         .columns = {over("", "1", "The mean.")},
         .purpose = Purpose::Price,
         .elsewhere = {.house = "General.WeightedClose", .talib = "WCLPRICE", .tulip = "wcprice"},
         .guide = {.formula = "(High + Low + 2 x Close) / 4",
                   .reading = "As the typical price, nearer to the close.",
                   .origin = "Common."}}),
    entry<"HEIKIN_ASHI", &Standard::HEIKIN_ASHI>(
        {.help = "Averaged bars, in which a trend is one colour.",
         .arguments = {OHLCV},
         .columns = {over(Standard::OpenSuffix, "1", "The middle of the averaged bar before."),
                     over(Standard::HighSuffix, "1", "The highest of the high, open and close."),
                     over(Standard::LowSuffix, "1", "The lowest of the low, open and close."),
                     over(Standard::CloseSuffix, "1", "The mean of the bar's four prices.")},
         .purpose = Purpose::Price,
         .elsewhere = {.talib = "HA"},
         .guide =
             {.formula = "Close = (Open + High + Low + Close) / 4; Open = the mean of the averaged open and close "
                         "before, at first of the bar's own; High and Low = the extremes of the bar's and both",
              .reading = "Bars without a lower shadow are a strong rise, without an upper one a strong fall.",
              .origin = "Munehisa Homma, 18th century, as told; Dan Valcu, Stocks & Commodities, February 2004."}}),
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
