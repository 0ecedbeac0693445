#pragma once

#include <tuple>

#include "orvex/catalogue/arguments.h"
#include "orvex/catalogue/describe.h"
#include "orvex/studies/line_study.h"

namespace orvex::inline ORVEX_COUNTS::catalogue {

template <>
struct Description<LineStudy> {
  static constexpr Identity identity{
      .name = "LineStudy",
      .help = "Lines and marks over a span of records.",
      .classId = Guid("c140b993-6f63-4d27-8e51-fddecb6d76a8"),
      .interfaceId = Guid("18aac915-03f1-4ccd-a4b9-d06c65f95a14"),
  };

  static constexpr auto rows = std::tuple{
      row<&LineStudy::Fibonacci>({.name = LineStudy::FibonacciName,
                                  .help = "Fibonacci numbers as marks in time.",
                                  .arguments = {Source, StartPeriod, EndPeriod, aliasOr(LineStudy::FibonacciName)},
                                  .columns = {aliasedColumn("StartPeriod", "EndPeriod - 1")},
                                  .faults = {LineStudy::FibonacciFault}}),
      row<&LineStudy::TironeLevel>(
          {.name = "TironeLevel",
           .help = "The thirds and the middle of a span's range.",
           .arguments = {Data, OHLCV, StartPeriod, EndPeriod},
           .columns = {drawnColumn(LineStudy::TironeTopName), drawnColumn(LineStudy::TironeMedianName),
                       drawnColumn(LineStudy::TironeBottomName)},
           .faults = {LineStudy::TironeLevelFault}}),
      row<&LineStudy::QuadrantLines>(
          {.name = "QuadrantLines",
           .help = "The quarters of a span's range.",
           .arguments = {Data, Source, StartPeriod, EndPeriod},
           .columns = {drawnColumn(LineStudy::QuadrantHighName), drawnColumn(LineStudy::Quadrant75Name),
                       drawnColumn(LineStudy::Quadrant50Name), drawnColumn(LineStudy::Quadrant25Name),
                       drawnColumn(LineStudy::QuadrantLowName)},
           .faults = {faults::ObjectNotSet, LineStudy::QuadrantLinesStartFault, LineStudy::QuadrantLinesEndFault,
                      LineStudy::QuadrantLinesFault}}),
      row<&LineStudy::SpeedResistanceLines>(
          {.name = "SpeedResistanceLines",
           .help = "A line through a span's extremes, and two that move slower.",
           .arguments = {Data, OHLCV, StartPeriod, EndPeriod},
           .columns = {drawnColumn(LineStudy::SpeedLineName), drawnColumn(LineStudy::SpeedTwoThirdsName),
                       drawnColumn(LineStudy::SpeedOneThirdName)},
           .faults = {faults::ObjectNotSet, LineStudy::SpeedResistanceLinesStartFault,
                      LineStudy::SpeedResistanceLinesEndFault, LineStudy::SpeedResistanceLinesFault}}),
      row<&LineStudy::TrendLinePenetration>(
          {.name = LineStudy::TrendLinePenetrationName,
           .help = "1 where a column breaks through a line upwards, -1 downwards.",
           .arguments = {Data,
                         {.name = "TrendLine", .help = "The line: 0 where it is not drawn.", .usual = "Open"},
                         Source,
                         aliasOr(LineStudy::TrendLinePenetrationName)},
           .columns = {aliasedColumn("2")},
           .faults = {LineStudy::TrendLinePenetrationFault}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
