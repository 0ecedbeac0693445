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
      .header = "orvex/bands/bands.h",
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
                        .help = "The average, as the middle band.",
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
           .columns = {{.name = Bands::EnvelopeTopName,
                        .firstRow = "max(average(MA_Type, Periods), 2 * Periods + 1)",
                        .help = "The average and Shift percent of it.",
                        .unit = SourceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge},
                       {.name = Bands::EnvelopeBottomName,
                        .firstRow = "max(average(MA_Type, Periods), 2 * Periods + 1)",
                        .help = "The average less the same.",
                        .unit = SourceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge}},
           .faults = {faults::ObjectNotSet, Bands::MovingAverageEnvelopeTypeFault,
                      Bands::MovingAverageEnvelopePeriodsFault, Bands::MovingAverageEnvelopeShiftFault,
                      Bands::MovingAverageEnvelopeAverageFault, Bands::MovingAverageEnvelopeFault},
           .purpose = Purpose::Volatility,
           .abbreviations = {"ENV"},
           .guide = {.formula =
                         "EnvelopeTop = m + m x Shift / 100, EnvelopeBottom = m - m x Shift / 100, m = the average",
                     .reading = "Outside the envelope a price is called stretched; in a trend it runs along one side. "
                                "Shift is chosen so that nine closes in ten lie inside.",
                     .origin = "The field's common form; no single author.",
                     .difference = "Rows 1 to 2 x Periods are left 0, though the average is there after Periods + 1.",
                     .fails = "where Periods is above N / 2, and where a value is not finite"}}),
      row<&Bands::HighLowBands>(
          {.name = "HighLowBands",
           .help = "Adaptive averages of the highs, the closes and the lows.",
           .arguments = {Data,
                         {.name = "HighPrice", .help = "The highs.", .usual = "High"},
                         {.name = "LowPrice", .help = "The lows.", .usual = "Low"},
                         {.name = "ClosePrice", .help = "The closes.", .usual = "Close"},
                         Periods.usually(14)},
           .columns = {{.name = Bands::HighLowTopName,
                        .firstRow = "2 * Periods + 1",
                        .help = "The curve of HighPrice.",
                        .unit = SourceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge},
                       {.name = Bands::HighLowMedianName,
                        .firstRow = "max(Periods, (Periods + 1) \\ 4 * 4) + 1",
                        .help = "The curve of ClosePrice.",
                        .unit = SourceUnit,
                        .place = Place::Over},
                       {.name = Bands::HighLowBottomName,
                        .firstRow = "2 * Periods + 1",
                        .help = "The curve of LowPrice.",
                        .unit = SourceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge}},
           .faults = {faults::ObjectNotSet, Bands::HighLowBandsPeriodsFault, Bands::HighLowBandsAverageFault,
                      Bands::HighLowBandsFault},
           .purpose = Purpose::Volatility,
           .guide = {.formula = "MovingAverage.VIDYA with an R2Scale of 0.8 of HighPrice and of LowPrice over Periods "
                                "records, of ClosePrice over half as many",
                     .reading = "A close outside the bands has left the usual path of the last records.",
                     .origin = "Orvex's own.",
                     .fails = "where Periods is above N / 2, and where a value is not finite"}}),
      row<&Bands::Keltner>(
          {.name = "Keltner",
           .help = "An adaptive average, and multiples of the average true range above and below it.",
           .arguments = {Data,
                         OHLCV,
                         Periods.usually(20),
                         {.name = "Factor", .help = "How many average true ranges.", .usual = 2}},
           .columns = {{.name = Bands::KeltnerMedianName,
                        .firstRow = "2 * Periods + 1",
                        .help = "The adaptive average of the closes.",
                        .unit = PriceUnit,
                        .place = Place::Over},
                       {.name = Bands::KeltnerTopName,
                        .firstRow = "max(2 * Periods, 14) + 1",
                        .help = "Factor ranges above it.",
                        .unit = PriceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge},
                       {.name = Bands::KeltnerBottomName,
                        .firstRow = "max(2 * Periods, 14) + 1",
                        .help = "Factor ranges below it.",
                        .unit = PriceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge}},
           .faults = {Bands::KeltnerFault},
           .purpose = Purpose::Volatility,
           .abbreviations = {"KC"},
           .guide =
               {.formula = "Median = MovingAverage.VIDYA of Close over Periods records with an R2Scale of 0.65; Top "
                           "and Bottom = Median + and - Factor x the average true range of 14 records",
                .reading = "A close outside the channel tells of a strong move, to follow rather than to fade.",
                .origin = "After Chester Keltner, How To Make Money in Commodities, 1960.",
                .difference =
                    "Keltner takes the simple averages of 10 typical prices and of 10 daily ranges. Here the middle is "
                    "the house's VIDYA, which stays close to the price, and the range always that of 14 records.",
                .fails = "where Periods is below 2 or above N / 2, and where a price is missing or not finite"}}),
      row<&Bands::PrimeNumberBands>(
          {.name = "PrimeNumberBands",
           .help = "The prime numbers next above the high and below the low.",
           .arguments = {Data, OHLCV},
           .columns = {{.name = Bands::PrimeTopName,
                        .firstRow = "1",
                        .help = "The prime above.",
                        .unit = PriceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge},
                       {.name = Bands::PrimeBottomName,
                        .firstRow = "1",
                        .help = "The prime below.",
                        .unit = PriceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge}},
           .faults = {Bands::PrimeNumberBandsFault},
           .purpose = Purpose::Price,
           .guide = {.formula = "Top = the first prime at or above High, Bottom = the first at or below Low, of the "
                                "prices cut to whole numbers, and 10 times them below 10",
                     .reading = "Lines that prices are said to turn at. For play: no study supports it.",
                     .origin = "Orvex's own.",
                     .fails = "where High is above 1,073,741,823, and where a price is missing or not finite"}}),
      row<&Bands::FractalChaosBands>(
          {.name = "FractalChaosBands",
           .help = "The latest high above, and low below, its neighbours.",
           .arguments = {Data, OHLCV, {.name = "Periods", .help = "How many neighbours on either side.", .usual = 2}},
           .columns = {{.name = Bands::FractalHighName,
                        .firstRow = "2 * Periods + 1",
                        .help = "The latest high above its neighbours.",
                        .unit = PriceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge},
                       {.name = Bands::FractalLowName,
                        .firstRow = "2 * Periods + 1",
                        .help = "The latest low below its neighbours.",
                        .unit = PriceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge}},
           .faults = {faults::ObjectNotSet, Bands::FractalChaosBandsPeriodsFault, Bands::FractalChaosBandsFault},
           .purpose = Purpose::Price,
           .abbreviations = {"FCB"},
           .guide =
               {.formula =
                    "Fractal High = High(c) of the latest record c with c + Periods <= r that is above the highs of "
                    "the Periods records on either side of it; Fractal Low likewise; 0 before the first",
                .reading = "The last turning points: a close beyond one is Williams's breakout. Flat bands tell of a "
                           "market without a trend.",
                .origin = "After Bill Williams, Trading Chaos, 1995, whose fractals have two records on either side.",
                .difference =
                    "None at Periods of 2. A fractal shows when its last neighbour has come, so nothing looks ahead.",
                .fails = "where a price is missing or not finite"}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
