#include "orvex/studies/chart_pattern.h"

#include <string>

#include "orvex/data/columns.h"
#include "orvex/data/object.h"
#include "orvex/data/real.h"
#include "orvex/general/general.h"

namespace orvex::inline ORVEX_COUNTS {

std::shared_ptr<Note> ChartPattern::PercentRetracement(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                                       Integer StartPeriod, Integer EndPeriod) {
  const Integer count = object(data).getRecordCount();
  if (EndPeriod > count) raise(PercentRetracementEndFault);
  if (StartPeriod < 1) raise(PercentRetracementStartFault);
  // Before the trap, so what these two report of the span reaches the caller as it is.
  General general;
  const auto maximum = general.MaxValue(Source, StartPeriod, EndPeriod);
  auto minimum = general.MinValue(Source, StartPeriod, EndPeriod);
  return trap(PercentRetracementFault, [&] {
    const Real max = maximum->getValue();
    const Real min = minimum->getValue();
    const Integer maxPeriod = maximum->getPeriod();
    const Integer minPeriod = minimum->getPeriod();
    const Real last = at(Source, EndPeriod);
    const Real range = max - min;
    if (minPeriod == maxPeriod) return minimum;

    const bool declining = minPeriod > maxPeriod;
    // Asked for its note alone, and for the fault where it meets one.
    auto result =
        declining ? general.MaxValue(Source, minPeriod, EndPeriod) : general.MinValue(Source, maxPeriod, EndPeriod);
    const Real retraced = (declining ? max - last : last - min) / range * 100;
    result->setNote(std::string(declining ? Declining : Advancing));
    result->setPeriod(0);
    result->setValue(100 - retraced);
    return result;
  });
}

}  // namespace orvex::inline ORVEX_COUNTS
