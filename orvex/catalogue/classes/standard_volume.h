#pragma once

#include <tuple>

#include "orvex/catalogue/classes/standard_rows.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

inline constexpr auto standardVolume = std::tuple{
    entry<"MFI", &Standard::MFI>(
        {.help = "The traded money of rising bars as a share of that of all moving bars.",
         .arguments = {OHLCV, Periods.usually(14)},
         .columns = {below("", "Periods + 1", "The index.", PercentUnit, Percents)},
         .purpose = Purpose::Volume,
         .elsewhere = {.house = "Index.MoneyFlowIndex", .talib = "MFI", .tulip = "mfi"},
         .guide = {.formula = "100 x rising / (rising + falling), sums of p x Volume by the way that p = (High + Low + "
                              "Close) / 3 went; 0 without a flow",
                   .reading = "An RSI with volume: above 80 or below 20 a move is far gone.",
                   .origin = "Gene Quong and Avrum Soudack, Stocks & Commodities, March 1989."},
         .levels = {20, 80}}),
    entry<"FORCE", &Standard::FORCE>({.help = "The average of the moves times their volumes.",
                                      .arguments = {OHLCV, Periods.usually(13)},
                                      .columns = {below("", "Periods + 1", "The index.")},
                                      .purpose = Purpose::Volume,
                                      .elsewhere = {.talib = "EFI"},
                                      .abbreviations = {"EFI"},
                                      .guide = {.formula = "EMA of (Close(r) - Close(r - 1)) x Volume(r)",
                                                .reading = "Above 0 the volume drives the price up.",
                                                .origin = "Alexander Elder, Trading for a Living, 1993."},
                                      .levels = {0}}),
    entry<"AD", &Standard::AD>(
        {.help = "The volumes added up, each by the place of the close in its bar.",
         .arguments = {OHLCV},
         .columns = {below("", "1", "The line.", VolumeUnit)},
         .purpose = Purpose::Volume,
         .elsewhere = {.talib = "AD", .tulip = "ad"},
         .guide = {.formula = "the sum from record 1 on of ((Close - Low) - (High - Close)) / (High - Low) x Volume, 0 "
                              "without a range",
                   .reading = "A price that rises while the line falls is sold into.",
                   .origin = "Marc Chaikin, 1970s."}}),
    entry<"ADOSC", &Standard::ADOSC>(
        {.help = "The difference of two exponential averages of the accumulation line.",
         .arguments = {OHLCV, fastPeriods(3), slowPeriods(10)},
         .columns = {below("", "max(FastPeriods, SlowPeriods)", "The difference.", VolumeUnit)},
         .purpose = Purpose::Volume,
         .elsewhere = {.talib = "ADOSC", .tulip = "adosc"},
         .guide = {.formula = "fast - slow average of AD, each begun with its first value",
                   .reading = "A cross of 0 in the direction of the trend is a signal.",
                   .origin = "Marc Chaikin, 1980s."},
         .levels = {0}}),
    entry<"OBV", &Standard::OBV>(
        {.help = "The volumes added where the price rose and taken away where it fell.",
         .arguments = {Source, Volumes},
         .columns = {below("", "1", "The line.", VolumeUnit)},
         .purpose = Purpose::Volume,
         .elsewhere = {.house = "Index.OnBalanceVolume", .talib = "OBV", .tulip = "obv"},
         .guide = {.formula =
                       "row 1 = Volume(1); then the row before + Volume where Source rose, - Volume where it fell",
                   .reading = "The line leads the price where volume comes first; its direction counts, not its level.",
                   .origin = "Joseph Granville, New Key to Stock Market Profits, 1963."}}),
    entry<"CMF", &Standard::CMF>(
        {.help = "The place of the closes in their bars, weighed by volume.",
         .arguments = {OHLCV, Periods.usually(20)},
         .columns = {below("", "Periods", "The flow.", {}, {-1, 1})},
         .purpose = Purpose::Volume,
         .elsewhere = {.house = "Index.ChaikinMoneyFlow", .talib = "CMF"},
         .guide = {.formula =
                       "the sum of ((Close - Low) - (High - Close)) / (High - Low) x Volume / the sum of Volume, over "
                       "Periods records; 0 without volume, a bar without a range counts 0",
                   .reading = "Above 0.05 money flows in, below -0.05 out.",
                   .origin = "Marc Chaikin, 1980s."},
         .levels = {-0.05, 0.05}}),
    entry<"EMV", &Standard::EMV>(
        {.help = "The move of the bar's middle for the volume that it took.",
         .arguments = {OHLCV},
         .columns = {below("", "2", "The ease.")},
         .purpose = Purpose::Volume,
         .elsewhere = {.house = "Oscillator.EaseOfMovement", .tulip = "emv"},
         .guide = {.formula = "(p(r) - p(r - 1)) x (High - Low) / (Volume / 10000), p = (High + Low) / 2",
                   .reading = "Far above 0 the price rises on little volume; it is read through an average of it.",
                   .origin = "Richard Arms, Volume Cycles in the Stock Market, 1983.",
                   .fails = "where a volume is 0"},
         .levels = {0}}),
    entry<"KVO", &Standard::KVO>(
        {.help = "The difference of two averages of the volume's force along the trend.",
         .arguments = {OHLCV, fastPeriods(34), slowPeriods(55)},
         .columns = {below("", "2", "The oscillator.", VolumeUnit)},
         .purpose = Purpose::Volume,
         .elsewhere = {.tulip = "kvo"},
         .guide = {.formula =
                       "EMA(FastPeriods) - EMA(SlowPeriods) of the force, each begun with its first value; force = "
                       "100 x Volume x |2 x range / path - 1|, below 0 unless High + Low + Close rose last; path = "
                       "the ranges since the trend turned, with that of the record before",
                   .reading = "A cross of 0, and of an average of it, are signals.",
                   .origin = "Stephen Klinger, Stocks & Commodities, December 1997; as Tulip Indicators has it.",
                   .fails = "where a trend has had no range yet"},
         .levels = {0}}),
    entry<"NVI", &Standard::NVI>(
        {.help = "The moves of the records whose volume fell, chained from 1000 on.",
         .arguments = {Source, Volumes},
         .columns = {below("", "1", "The index.")},
         .purpose = Purpose::Volume,
         .elsewhere = {.house = "Index.NegativeVolumeIndex", .talib = "NVI", .tulip = "nvi"},
         .guide = {.formula =
                       "row 1 = 1000; then the row before x Source(r) / Source(r - 1) where Volume fell, otherwise "
                       "the row before",
                   .reading = "What the quiet days do: above its average of a year a bull market is likely.",
                   .origin = "Paul Dysart, 1936; Norman Fosback, Stock Market Logic, 1976."}}),
    entry<"PVI", &Standard::PVI>(
        {.help = "The moves of the records whose volume rose, chained from 1000 on.",
         .arguments = {Source, Volumes},
         .columns = {below("", "1", "The index.")},
         .purpose = Purpose::Volume,
         .elsewhere = {.house = "Index.PositiveVolumeIndex", .talib = "PVI", .tulip = "pvi"},
         .guide = {.formula =
                       "row 1 = 1000; then the row before x Source(r) / Source(r - 1) where Volume rose, otherwise "
                       "the row before",
                   .reading = "What the busy days do: below its average of a year a bear market is likely.",
                   .origin = "Paul Dysart, 1936; Norman Fosback, Stock Market Logic, 1976."}}),
    entry<"VOSC", &Standard::VOSC>(
        {.help = "The difference of two averages of the volume in percent of the slower.",
         .arguments = {Volumes, fastPeriods(5), slowPeriods(10)},
         .columns = {below("", "max(FastPeriods, SlowPeriods)", "The difference.", PercentUnit)},
         .purpose = Purpose::Volume,
         .elsewhere = {.house = "Oscillator.VolumeOscillator", .talib = "PVO", .tulip = "vosc"},
         .guide = {.formula = "100 x (SMA(FastPeriods) - SMA(SlowPeriods)) / SMA(SlowPeriods), 0 without volume",
                   .reading = "A move with a rising volume is believed.",
                   .origin = "Common to the field."},
         .levels = {0}}),
    entry<"PVT", &Standard::PVT>(
        {.help = "The volumes added up, each times the price's rate of change.",
         .arguments = {Source, Volumes},
         .columns = {below("", "1", "The line.", VolumeUnit)},
         .purpose = Purpose::Volume,
         .elsewhere = {.house = "Index.PriceVolumeTrend", .talib = "PVT"},
         .guide = {.formula =
                       "row 1 = 0; then the row before + (Source(r) - Source(r - 1)) / Source(r - 1) x Volume(r)",
                   .reading = "As OBV, but a small move counts little.",
                   .origin = "Common to the field."}}),
    entry<"VWAP", &Standard::VWAP>(
        {.help = "The mean price of what was traded since the session began.",
         .arguments = {OHLCV, Sessions},
         .columns = {over("", "1", "The mean price.")},
         .purpose = Purpose::Volume,
         .guide = {.formula =
                       "the sum of (High + Low + Close) / 3 x Volume / the sum of Volume, since the session's first "
                       "record; 0 before any trade",
                   .reading = "What the day's buyers paid on average: above it they are in profit.",
                   .origin = "Common to the field; a measure of execution since the 1980s."},
         .example = "Session=Month"}),
    entry<"AVWAP", &Standard::AVWAP>(
        {.help = "The mean price of what was traded since a record.",
         .arguments = {OHLCV, recordNumber("Anchor", "The record from which on trades count.").usually(1)},
         .columns = {over("", "Anchor", "The mean price.")},
         .purpose = Purpose::Volume,
         .elsewhere = {.talib = "VWAP"},
         .guide = {.formula =
                       "the sum of (High + Low + Close) / 3 x Volume / the sum of Volume, from record Anchor on; 0 "
                       "before any trade",
                   .reading = "Anchored at a turn or an event, it tells where those who traded since then stand.",
                   .origin = "Paul Levine, 1990s; Brian Shannon."}}),
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
