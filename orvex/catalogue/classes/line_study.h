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
      .header = "orvex/studies/line_study.h",
      .classId = Guid("c140b993-6f63-4d27-8e51-fddecb6d76a8"),
      .interfaceId = Guid("18aac915-03f1-4ccd-a4b9-d06c65f95a14"),
  };

  static constexpr auto rows = std::tuple{
      row<&LineStudy::Fibonacci>(
          {.name = LineStudy::FibonacciName,
           .help = "Fibonacci numbers as marks in time.",
           .arguments = {Source, StartPeriod, EndPeriod, aliasOr(LineStudy::FibonacciName)},
           .columns = {{.firstRow = "StartPeriod",
                        .aliased = true,
                        .lastRow = "EndPeriod - 1",
                        .help = "The Fibonacci number, 0 between the marks.",
                        .bounds = {.low = 0},
                        .place = Place::Over,
                        .style = Style::Marks}},
           .faults = {LineStudy::FibonacciFault},
           .purpose = Purpose::Pattern,
           .abbreviations = {"FIB"},
           .guide = {.formula = "row StartPeriod + n - 1 + f - 1 = f, the n-th of the numbers 1, 2, 3, 5, 8, ...",
                     .reading = "Records at which a turn is looked for, counted from a high or a low.",
                     .origin = "The numbers: Leonardo of Pisa, Liber Abaci, 1202. The marks are Orvex's own.",
                     .difference = "Fibonacci time zones stand f records after the start. Here the index moves the "
                                   "mark on too: 0, 2, 4, 7, 11, 17, 26, ... records after it.",
                     .fails = "where the span leaves the column"},
           .recomputed = true}),
      row<&LineStudy::TironeLevel>(
          {.name = "TironeLevel",
           .help = "The thirds and the middle of a span's range.",
           .arguments = {Data, OHLCV, StartPeriod, EndPeriod},
           .columns = {{.name = LineStudy::TironeTopName,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "A third below the top.",
                        .unit = PriceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge},
                       {.name = LineStudy::TironeMedianName,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "The middle.",
                        .unit = PriceUnit,
                        .place = Place::Over},
                       {.name = LineStudy::TironeBottomName,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "A third above the bottom.",
                        .unit = PriceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge}},
           .faults = {LineStudy::TironeLevelFault},
           .purpose = Purpose::Pattern,
           .guide = {.formula = "with hh the highest High and ll the lowest Low of the span: Top = hh - (hh - ll) / 3, "
                                "Median = ll + (hh - ll) / 2, Bottom = ll + (hh - ll) / 3",
                     .reading = "Support and resistance at the thirds and the middle of a move.",
                     .origin = "John C. Tirone.",
                     .difference = "The levels are those of the whole span at each of its records, the later ones "
                                   "included: a study of what was, no signal.",
                     .fails = "where the span is not within 2 .. N"},
           .recomputed = true}),
      row<&LineStudy::QuadrantLines>(
          {.name = "QuadrantLines",
           .help = "The quarters of a span's range.",
           .arguments = {Data, Source, StartPeriod, EndPeriod},
           .columns = {{.name = LineStudy::QuadrantHighName,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "The highest value.",
                        .unit = SourceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge},
                       {.name = LineStudy::Quadrant75Name,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "Three quarters up.",
                        .unit = SourceUnit,
                        .place = Place::Over},
                       {.name = LineStudy::Quadrant50Name,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "The middle.",
                        .unit = SourceUnit,
                        .place = Place::Over},
                       {.name = LineStudy::Quadrant25Name,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "A quarter up.",
                        .unit = SourceUnit,
                        .place = Place::Over},
                       {.name = LineStudy::QuadrantLowName,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "The lowest value.",
                        .unit = SourceUnit,
                        .place = Place::Over,
                        .style = Style::BandEdge}},
           .faults = {faults::ObjectNotSet, LineStudy::QuadrantLinesStartFault, LineStudy::QuadrantLinesEndFault,
                      LineStudy::QuadrantLinesFault},
           .purpose = Purpose::Pattern,
           .guide =
               {.formula = "with high and low of the span: low + (high - low) x 1, 0.75, 0.5, 0.25 and 0",
                .reading =
                    "Whether a price keeps the upper or the lower quarter of its move: how much of it was given back.",
                .origin = "The field's common form; no single author.",
                .difference = "The lines are those of the whole span at each of its records, the later ones included: "
                              "a study of what was, no signal.",
                .fails = "where a value is not finite"},
           .recomputed = true}),
      row<&LineStudy::SpeedResistanceLines>(
          {.name = "SpeedResistanceLines",
           .help = "A line through a span's extremes, and two that move slower.",
           .arguments = {Data, OHLCV, StartPeriod, EndPeriod},
           .columns = {{.name = LineStudy::SpeedLineName,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "The line through both extremes.",
                        .unit = PriceUnit,
                        .place = Place::Over},
                       {.name = LineStudy::SpeedTwoThirdsName,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "Two thirds as fast.",
                        .unit = PriceUnit,
                        .place = Place::Over},
                       {.name = LineStudy::SpeedOneThirdName,
                        .firstRow = "StartPeriod",
                        .lastRow = "EndPeriod",
                        .help = "A third as fast.",
                        .unit = PriceUnit,
                        .place = Place::Over}},
           .faults = {faults::ObjectNotSet, LineStudy::SpeedResistanceLinesStartFault,
                      LineStudy::SpeedResistanceLinesEndFault, LineStudy::SpeedResistanceLinesFault},
           .purpose = Purpose::Pattern,
           .guide = {.formula = "from the earlier extreme of the span (record a, the highest High or the lowest Low) a "
                                "line through the later one, at record b: origin + move x (r - a) / (b - a), and the "
                                "same with move x 2 / 3 and move / 3",
                     .reading =
                         "A correction is expected to end at the two-thirds line; one that breaks it, at the "
                         "one-third line; below that a rise is over. Of a fall the lines lie the other way round. "
                         "Rows before the later extreme use it too: a study of what was, no signal.",
                     .origin = "Edson Gould, 1960s.",
                     .fails = "where both extremes stand on one record, and where a price is missing or not finite"},
           .recomputed = true}),
      row<&LineStudy::TrendLinePenetration>(
          {.name = LineStudy::TrendLinePenetrationName,
           .help = "1 where a column breaks through a line upwards, -1 downwards.",
           .arguments =
               {Data,
                {.name = "TrendLine", .help = "The line: 0 where it is not drawn.", .usual = asExample("Open")},
                Source,
                aliasOr(LineStudy::TrendLinePenetrationName)},
           .columns = {{.firstRow = "2",
                        .aliased = true,
                        .help = "The crossing.",
                        .bounds = {-1, 1},
                        .place = Place::Over,
                        .style = Style::Marks}},
           .faults = {LineStudy::TrendLinePenetrationFault},
           .purpose = Purpose::Pattern,
           .guide = {.formula = "1 where Source(r - 1) <= TrendLine(r - 1) and Source(r) > TrendLine(r), -1 the other "
                                "way round, else 0; only where the line is not 0 at both records",
                     .reading = "A break of a trendline, as a signal. Any column can be the line: an average, a band, "
                                "a speed line.",
                     .origin = "Orvex's own form of the common signal.",
                     .fails = "where TrendLine or Source is shorter than the series"}}),
  };
};

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
