#pragma once

#include <tuple>

#include "orvex/catalogue/classes/standard_rows.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

/// Wilder's book, from which most of these are.
inline constexpr std::string_view NewConcepts = "J. Welles Wilder, New Concepts in Technical Trading Systems, 1978.";

inline constexpr auto standardDirection = std::tuple{
    entry<"ADX", &Standard::ADX>(
        {.help = "How strong a trend is, whichever way it goes.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "2 * Periods", "The index.", PercentUnit, Percents)},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "Oscillator.DirectionalMovementSystem", .talib = "ADX", .tulip = "adx"},
         .guide = {.formula =
                       "row 2 x Periods = the mean of the first Periods DX; then ((Periods - 1) x ADX before + DX) "
                       "/ Periods; a record without movement keeps the index",
                   .reading = "Above 25 there is a trend, below 20 there is none; rising, it gains strength.",
                   .origin = NewConcepts},
         .levels = {20, 25}}),
    entry<"ADXR", &Standard::ADXR>(
        {.help = "The mean of the ADX and of what it was Periods - 1 records before.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "3 * Periods - 1", "The rating.", PercentUnit, Percents)},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "Oscillator.DirectionalMovementSystem", .talib = "ADXR", .tulip = "adxr"},
         .guide = {.formula = "(ADX(r) + ADX(r - (Periods - 1))) / 2",
                   .reading = "A calmer ADX, to compare markets by.",
                   .origin = NewConcepts}}),
    entry<"DX", &Standard::DX>(
        {.help = "How far rises and falls differ, as a share of both.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "Periods + 1", "The index.", PercentUnit, Percents)},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "Oscillator.DirectionalMovementSystem", .talib = "DX", .tulip = "dx"},
         .guide = {.formula = "100 x |+DI - -DI| / (+DI + -DI); without movement that of the record before, at first 0",
                   .reading = "The restless part that the ADX is the average of.",
                   .origin = NewConcepts}}),
    entry<"PLUS_DI", &Standard::PLUS_DI>(
        {.help = "The rises as a share of the true range.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "Periods + 1", "The indicator.", PercentUnit)},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "Oscillator.DirectionalMovementSystem", .talib = "PLUS_DI", .tulip = "di"},
         .guide = {.formula = "100 x Wilder's sum of the rises / his sum of the true range; 0 without a range. Of 1 "
                              "record: the share itself, not in percent",
                   .reading = "Above MINUS_DI the trend is up.",
                   .origin = NewConcepts}}),
    entry<"MINUS_DI", &Standard::MINUS_DI>(
        {.help = "The falls as a share of the true range.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "Periods + 1", "The indicator.", PercentUnit)},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "Oscillator.DirectionalMovementSystem", .talib = "MINUS_DI", .tulip = "di"},
         .guide = {.formula = "100 x Wilder's sum of the falls / his sum of the true range; 0 without a range. Of 1 "
                              "record: the share itself, not in percent",
                   .reading = "Above PLUS_DI the trend is down.",
                   .origin = NewConcepts}}),
    entry<"PLUS_DM", &Standard::PLUS_DM>(
        {.help = "Wilder's sum of the rises of the highs.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "max(Periods, 2)", "The sum.", PriceUnit)},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "PLUS_DM", .tulip = "dm"},
         .guide = {.formula =
                       "rise = High(r) - High(r - 1) where it is above 0 and above the fall, otherwise 0; the sum of "
                       "the Periods - 1 rises up to row Periods, then sum - sum / Periods + rise",
                   .reading = "A part of the directional system; PLUS_DI puts it in proportion.",
                   .origin = NewConcepts}}),
    entry<"MINUS_DM", &Standard::MINUS_DM>(
        {.help = "Wilder's sum of the falls of the lows.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "max(Periods, 2)", "The sum.", PriceUnit)},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "MINUS_DM", .tulip = "dm"},
         .guide = {.formula =
                       "fall = Low(r - 1) - Low(r) where it is above 0 and above the rise, otherwise 0; the sum of "
                       "the Periods - 1 falls up to row Periods, then sum - sum / Periods + fall",
                   .reading = "A part of the directional system; MINUS_DI puts it in proportion.",
                   .origin = NewConcepts}}),
    entry<"Aroon", &Standard::Aroon>(
        {.help = "How long ago the highest high and the lowest low of the last records stand.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below(Standard::DownSuffix, "Periods + 1", "100 at a new low, 0 Periods records after.",
                           PercentUnit, Percents),
                     below(Standard::UpSuffix, "Periods + 1", "100 at a new high, 0 Periods records after.",
                           PercentUnit, Percents)},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "Oscillator.Aroon", .talib = "AROON", .tulip = "aroon"},
         .guide = {.formula = "100 x (Periods - records since the extreme) / Periods, over this record and the Periods "
                              "before it; of equal extremes the newest counts",
                   .reading = "Up above 70 and Down below 30 is a rising trend, the other way a falling one.",
                   .origin = "Tushar Chande, Stocks & Commodities, September 1995."},
         .levels = {30, 70}}),
    entry<"AROONOSC", &Standard::AROONOSC>(
        {.help = "Aroon Up less Aroon Down.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "Periods + 1", "The difference.", PercentUnit, {-100, 100})},
         .purpose = Purpose::Trend,
         .elsewhere = {.house = "Oscillator.Aroon", .talib = "AROONOSC", .tulip = "aroonosc"},
         .guide = {.formula = "Aroon Up - Aroon Down",
                   .reading = "Above 0 the newer extreme is a high.",
                   .origin = "Tushar Chande, Stocks & Commodities, September 1995."},
         .levels = {0}}),
    entry<"VORTEX", &Standard::VORTEX>(
        {.help = "The ways from low to next high and from high to next low, as shares of the true range.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below(Standard::PlusSuffix, "Periods + 1", "The upward movement."),
                     below(Standard::MinusSuffix, "Periods + 1", "The downward movement.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "VORTEX"},
         .guide = {.formula = "Plus = the sum of |High(j) - Low(j - 1)| / the sum of the true range, Minus = that of "
                              "|Low(j) - High(j - 1)|, over Periods records; 0 without a range",
                   .reading = "A cross of the two lines is a change of trend.",
                   .origin = "Etienne Botes and Douglas Siepman, Stocks & Commodities, January 2010."},
         .levels = {1}}),
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
