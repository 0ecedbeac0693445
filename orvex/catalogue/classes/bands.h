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
          "BollingerBands", "An average, and standard deviations above and below it.",
          {Data, Source, Periods, {"StandardDeviations", "How many standard deviations, 0 to 100."}, MA_Type},
          {{Bands::BollingerMedianName, AverageRow},
           {Bands::BollingerTopName, AverageRow},
           {Bands::BollingerBottomName, AverageRow}},
          {faults::ObjectNotSet, Bands::BollingerBandsTypeFault, Bands::BollingerBandsPeriodsFault,
           Bands::BollingerBandsDeviationsFault, Bands::BollingerBandsAverageFault, Bands::BollingerBandsFault}),
      row<&Bands::MovingAverageEnvelope>(
          "MovingAverageEnvelope", "An average shifted up and down by a percentage.",
          {Data,
           Source,
           Periods,
           MA_Type,
           {"Shift", "In percent, 0 to 100; becomes the fraction, in the caller's variable too."}},
          {{Bands::EnvelopeTopName, "max(average(MA_Type, Periods), 2 * Periods + 1)"},
           {Bands::EnvelopeBottomName, "max(average(MA_Type, Periods), 2 * Periods + 1)"}},
          {faults::ObjectNotSet, Bands::MovingAverageEnvelopeTypeFault, Bands::MovingAverageEnvelopePeriodsFault,
           Bands::MovingAverageEnvelopeShiftFault, Bands::MovingAverageEnvelopeAverageFault,
           Bands::MovingAverageEnvelopeFault}),
      row<&Bands::HighLowBands>(
          "HighLowBands", "Adaptive averages of the highs, the closes and the lows.",
          {Data, {"HighPrice", "The highs."}, {"LowPrice", "The lows."}, {"ClosePrice", "The closes."}, Periods},
          {{Bands::HighLowTopName, "2 * Periods + 1"},
           {Bands::HighLowMedianName, "max(Periods, (Periods + 1) \\ 4 * 4) + 1"},
           {Bands::HighLowBottomName, "2 * Periods + 1"}},
          {faults::ObjectNotSet, Bands::HighLowBandsPeriodsFault, Bands::HighLowBandsAverageFault,
           Bands::HighLowBandsFault}),
      row<&Bands::Keltner>("Keltner",
                           "An adaptive average, and multiples of the average true range above and below it.",
                           {Data, OHLCV, Periods, {"Factor", "How many average true ranges."}},
                           {{Bands::KeltnerMedianName, "2 * Periods + 1"},
                            {Bands::KeltnerTopName, "max(2 * Periods, 14) + 1"},
                            {Bands::KeltnerBottomName, "max(2 * Periods, 14) + 1"}},
                           {Bands::KeltnerFault}),
      row<&Bands::PrimeNumberBands>("PrimeNumberBands", "The prime numbers next above the high and below the low.",
                                    {Data, OHLCV}, {{Bands::PrimeTopName, "1"}, {Bands::PrimeBottomName, "1"}},
                                    {Bands::PrimeNumberBandsFault}),
      row<&Bands::FractalChaosBands>(
          "FractalChaosBands", "The latest high above, and low below, its neighbours.",
          {Data, OHLCV, {"Periods", "How many neighbours on either side."}},
          {{Bands::FractalHighName, "2 * Periods + 1"}, {Bands::FractalLowName, "2 * Periods + 1"}},
          {faults::ObjectNotSet, Bands::FractalChaosBandsPeriodsFault, Bands::FractalChaosBandsFault}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
