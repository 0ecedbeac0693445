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
      row<&LineStudy::Fibonacci>(LineStudy::FibonacciName, "Fibonacci numbers as marks in time.",
                                 {Source, StartPeriod, EndPeriod, aliasOr(LineStudy::FibonacciName)},
                                 {aliasedColumn("StartPeriod", "EndPeriod - 1")}, {LineStudy::FibonacciFault}),
      row<&LineStudy::TironeLevel>("TironeLevel", "The thirds and the middle of a span's range.",
                                   {Data, OHLCV, StartPeriod, EndPeriod},
                                   {drawnColumn(LineStudy::TironeTopName), drawnColumn(LineStudy::TironeMedianName),
                                    drawnColumn(LineStudy::TironeBottomName)},
                                   {LineStudy::TironeLevelFault}),
      row<&LineStudy::QuadrantLines>("QuadrantLines", "The quarters of a span's range.",
                                     {Data, Source, StartPeriod, EndPeriod},
                                     {drawnColumn(LineStudy::QuadrantHighName), drawnColumn(LineStudy::Quadrant75Name),
                                      drawnColumn(LineStudy::Quadrant50Name), drawnColumn(LineStudy::Quadrant25Name),
                                      drawnColumn(LineStudy::QuadrantLowName)},
                                     {faults::ObjectNotSet, LineStudy::QuadrantLinesStartFault,
                                      LineStudy::QuadrantLinesEndFault, LineStudy::QuadrantLinesFault}),
      row<&LineStudy::SpeedResistanceLines>(
          "SpeedResistanceLines", "A line through a span's extremes, and two that move slower.",
          {Data, OHLCV, StartPeriod, EndPeriod},
          {drawnColumn(LineStudy::SpeedLineName), drawnColumn(LineStudy::SpeedTwoThirdsName),
           drawnColumn(LineStudy::SpeedOneThirdName)},
          {faults::ObjectNotSet, LineStudy::SpeedResistanceLinesStartFault, LineStudy::SpeedResistanceLinesEndFault,
           LineStudy::SpeedResistanceLinesFault}),
      row<&LineStudy::TrendLinePenetration>(LineStudy::TrendLinePenetrationName,
                                            "1 where a column breaks through a line upwards, -1 downwards.",
                                            {Data,
                                             {"TrendLine", "The line: 0 where it is not drawn."},
                                             Source,
                                             aliasOr(LineStudy::TrendLinePenetrationName)},
                                            {aliasedColumn("2")}, {LineStudy::TrendLinePenetrationFault}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
