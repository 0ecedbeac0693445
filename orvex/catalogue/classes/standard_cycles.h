#pragma once

#include <tuple>

#include "orvex/catalogue/classes/standard_rows.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

inline constexpr std::string_view RocketScience = "John Ehlers, Rocket Science for Traders, 2001.";
inline constexpr std::string_view FlatCycle =
    "In a stretch of equal prices the cycle is that of its last moves, where running sums leave their own rounding to "
    "be "
    "measured.";

inline constexpr auto standardCycles = std::tuple{
    entry<"HT_DCPERIOD", &Standard::HT_DCPERIOD>(
        {.help = "The length of the dominant cycle.",
         .arguments = {Source},
         .columns = {below("", "33", "The length.", RecordsUnit, {0, 50})},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "HT_DCPERIOD"},
         .guide = {.formula =
                       "the smoothed price is split into two parts a quarter cycle apart by Hilbert's transform; the "
                       "angle by which they turn in a record gives the length, held within 6 and 50 and smoothed",
                   .reading = "How many records the swings of the market take now; half of it suits other indicators.",
                   .origin = RocketScience,
                   .difference = FlatCycle}}),
    entry<"HT_DCPHASE", &Standard::HT_DCPHASE>(
        {.help = "The phase of the dominant cycle.",
         .arguments = {Source},
         .columns = {below("", "64", "The phase in degrees.", {}, {-45, 315})},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "HT_DCPHASE"},
         .guide = {.formula =
                       "the angle of the smoothed prices of one cycle against sine and cosine of its length, + 90 + "
                       "360 / length",
                   .reading = "It turns evenly in a cycle and stands still in a trend.",
                   .origin = RocketScience,
                   .difference = FlatCycle}}),
    entry<"HT_PHASOR", &Standard::HT_PHASOR>(
        {.help = "The two parts of the cycle, a quarter apart.",
         .arguments = {Source},
         .columns = {below(Standard::InPhaseSuffix, "33", "The part in phase.", SourceUnit),
                     below(Standard::QuadratureSuffix, "33", "The part a quarter cycle ahead.", SourceUnit)},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "HT_PHASOR"},
         .guide = {.formula =
                       "InPhase = the detrended price of three records before; Quadrature = its Hilbert transform",
                   .reading = "Drawn one against the other they circle in a cycle.",
                   .origin = RocketScience,
                   .difference = FlatCycle}}),
    entry<"HT_SINE", &Standard::HT_SINE>(
        {.help = "The sine of the cycle's phase, and of the phase an eighth further on.",
         .arguments = {Source},
         .columns = {below("", "64", "The sine.", {}, {-1, 1}),
                     below(Standard::LeadSuffix, "64", "The sine 45 degrees ahead.", {}, {-1, 1})},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "HT_SINE"},
         .guide = {.formula = "sin(phase) and sin(phase + 45 degrees) of HT_DCPHASE",
                   .reading = "In a cycle the lines cross just before its turns; in a trend they run side by side.",
                   .origin = RocketScience,
                   .difference = FlatCycle}}),
    entry<"HT_TRENDMODE", &Standard::HT_TRENDMODE>(
        {.help = "1 in a trend, 0 in a cycle.",
         .arguments = {Source},
         .columns = {below("", "64", "The mode.", {}, {0, 1})},
         .purpose = Purpose::Statistics,
         .elsewhere = {.talib = "HT_TRENDMODE"},
         .guide = {.formula =
                       "0 for half a cycle after the lines of HT_SINE have crossed, and while the phase moves on at "
                       "0.67 to 1.5 times the pace of the cycle; 1 otherwise, and where the smoothed price is 1.5 "
                       "percent or more away from HT_TRENDLINE",
                   .reading = "Follow the price in a trend, trade its swings in a cycle.",
                   .origin = RocketScience,
                   .difference = FlatCycle}}),
    entry<"HT_TRENDLINE", &Standard::HT_TRENDLINE>(
        {.help = "The mean price of one cycle, smoothed.",
         .arguments = {Source},
         .columns = {over("", "64", "The line.")},
         .purpose = Purpose::Trend,
         .elsewhere = {.talib = "HT_TRENDLINE"},
         .guide = {.formula =
                       "(4 m(r) + 3 m(r - 1) + 2 m(r - 2) + m(r - 3)) / 10, m = the mean of the last prices of one "
                       "dominant cycle",
                   .reading = "The price without its cycle: what is left is the trend.",
                   .origin = RocketScience}}),
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
