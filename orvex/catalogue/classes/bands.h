#pragma once

#include <tuple>

#include "orvex/bands/bands.h"
#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<Bands> {
  static constexpr Identity identity{
      .name = "Bands",
      .help = "Bands above and below a price.",
      .classId = Guid("99924e30-3f9c-4660-9149-6b87a0544420"),
      .interfaceId = Guid("79f7c917-5d5a-4a33-bb59-a569f44b3964"),
  };

  static constexpr auto rows = std::tuple{
      row<&Bands::BollingerBands>(
          {.name = "BollingerBands",
           .help = "An average, and standard deviations above and below it.",
           .arguments = {Data,
                         Source,
                         Periods.usually(20),
                         {.name = "StandardDeviations", .help = "How many standard deviations, 0 to 100.", .usual = 2},
                         MA_Type},
           .columns = {{.name = Bands::BollingerMedianName,
                        .firstRow = AverageRow,
                        .help = "The average.",
                        .unit = SourceUnit,
                        .place = Place::Over},
                       {.name = Bands::BollingerTopName,
                        .firstRow = AverageRow,
                        .help = "The band above it.",
                        .unit = SourceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge},
                       {.name = Bands::BollingerBottomName,
                        .firstRow = AverageRow,
                        .help = "The band below it.",
                        .unit = SourceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge}},
           .faults = {faults::ObjectNotSet, Bands::BollingerBandsTypeFault, Bands::BollingerBandsPeriodsFault,
                      Bands::BollingerBandsDeviationsFault, Bands::BollingerBandsAverageFault,
                      Bands::BollingerBandsFault},
           .purpose = Purpose::Volatility,
           .abbreviations = {"BBANDS", "BB"},
           .guide =
               {.formula = "Median = the average m; Top and Bottom = m(r) + and - StandardDeviations x the root of the "
                           "mean of (Source(j) - m(r)) squared, j = r - Periods .. r - 1",
                .reading = "The bands are wide while prices swing and narrow while they rest; a narrow passage is "
                           "often followed by a strong move. A touch of a band is no signal by itself: in a trend the "
                           "price walks along it.",
                .origin = "John Bollinger, who made them in the 1980s; Bollinger on Bollinger Bands, 2001.",
                .difference = "Bollinger measures the Periods records that end at r around their own mean. Here the "
                              "window ends one record earlier, at r - 1, and the distances are those from the average "
                              "at r.",
                .fails = "where a value is not finite"}}),
      row<&Bands::MovingAverageEnvelope>(
          {.name = "MovingAverageEnvelope",
           .help = "An average shifted up and down by a percentage.",
           .arguments = {Data,
                         Source,
                         Periods.usually(20),
                         MA_Type,
                         {.name = "Shift",
                          .help = "In percent, 0 to 100; becomes the fraction, in the caller's variable too.",
                          .usual = 2.5}},
           .columns = {{Bands::EnvelopeTopName, "max(average(MA_Type, Periods), 2 * Periods + 1)"},
                       {Bands::EnvelopeBottomName, "max(average(MA_Type, Periods), 2 * Periods + 1)"}},
           .faults = {faults::ObjectNotSet, Bands::MovingAverageEnvelopeTypeFault,
                      Bands::MovingAverageEnvelopePeriodsFault, Bands::MovingAverageEnvelopeShiftFault,
                      Bands::MovingAverageEnvelopeAverageFault, Bands::MovingAverageEnvelopeFault}}),
      row<&Bands::HighLowBands>({.name = "HighLowBands",
                                 .help = "Adaptive averages of the highs, the closes and the lows.",
                                 .arguments = {Data,
                                               {.name = "HighPrice", .help = "The highs.", .usual = "High"},
                                               {.name = "LowPrice", .help = "The lows.", .usual = "Low"},
                                               {.name = "ClosePrice", .help = "The closes.", .usual = "Close"},
                                               Periods.usually(14)},
                                 .columns = {{Bands::HighLowTopName, "2 * Periods + 1"},
                                             {Bands::HighLowMedianName, "max(Periods, (Periods + 1) \\ 4 * 4) + 1"},
                                             {Bands::HighLowBottomName, "2 * Periods + 1"}},
                                 .faults = {faults::ObjectNotSet, Bands::HighLowBandsPeriodsFault,
                                            Bands::HighLowBandsAverageFault, Bands::HighLowBandsFault}}),
      row<&Bands::Keltner>({.name = "Keltner",
                            .help = "An adaptive average, and multiples of the average true range above and below it.",
                            .arguments = {Data,
                                          OHLCV,
                                          Periods.usually(20),
                                          {.name = "Factor", .help = "How many average true ranges.", .usual = 2}},
                            .columns = {{Bands::KeltnerMedianName, "2 * Periods + 1"},
                                        {Bands::KeltnerTopName, "max(2 * Periods, 14) + 1"},
                                        {Bands::KeltnerBottomName, "max(2 * Periods, 14) + 1"}},
                            .faults = {Bands::KeltnerFault}}),
      row<&Bands::PrimeNumberBands>({.name = "PrimeNumberBands",
                                     .help = "The prime numbers next above the high and below the low.",
                                     .arguments = {Data, OHLCV},
                                     .columns = {{Bands::PrimeTopName, "1"}, {Bands::PrimeBottomName, "1"}},
                                     .faults = {Bands::PrimeNumberBandsFault}}),
      row<&Bands::FractalChaosBands>(
          {.name = "FractalChaosBands",
           .help = "The latest high above, and low below, its neighbours.",
           .arguments = {Data, OHLCV, {.name = "Periods", .help = "How many neighbours on either side.", .usual = 2}},
           .columns = {{Bands::FractalHighName, "2 * Periods + 1"}, {Bands::FractalLowName, "2 * Periods + 1"}},
           .faults = {faults::ObjectNotSet, Bands::FractalChaosBandsPeriodsFault, Bands::FractalChaosBandsFault}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
