#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "orvex/data/database.h"
#include "orvex/data/error.h"
#include "orvex/data/field.h"
#include "orvex/data/in_out.h"
#include "orvex/data/integer.h"
#include "orvex/data/record_set.h"

namespace orvex::inline ORVEX_COUNTS {

/// Lines and marks that an analyst draws over a span of records, as columns: 0 outside what is drawn. N is the record
/// count of `data`. Methods that take `data` leave its cursor on record 1; each yields to the host once a record.
/// Faults that no check names are error 1105 "LineStudy.(method).UnexpectedError".
///
/// Who published a method, how it is read and how it departs from what was published:
/// orvex/catalogue/classes/line_study.h.
class LineStudy {
 public:
  static constexpr std::string_view FibonacciName = "Fibonacci";
  static constexpr std::string_view TironeTopName = "TironeTop";
  static constexpr std::string_view TironeMedianName = "TironeMedian";
  static constexpr std::string_view TironeBottomName = "TironeBottom";
  static constexpr std::string_view QuadrantHighName = "Quadrant High";
  static constexpr std::string_view Quadrant75Name = "Quadrant 75";
  static constexpr std::string_view Quadrant50Name = "Quadrant 50";
  static constexpr std::string_view Quadrant25Name = "Quadrant 25";
  static constexpr std::string_view QuadrantLowName = "Quadrant Low";
  static constexpr std::string_view SpeedLineName = "Speed Line";
  static constexpr std::string_view SpeedTwoThirdsName = "Speed 2/3";
  static constexpr std::string_view SpeedOneThirdName = "Speed 1/3";
  static constexpr std::string_view TrendLinePenetrationName = "TrendLinePenetration";

  static constexpr Fault FibonacciFault = unexpectedError("LineStudy.Fibonacci.UnexpectedError");
  /// Raised inside the trap, which makes 1105 of them.
  static constexpr Fault TironeLevelStartFault = invalidStartPeriod("TironeLevel");
  static constexpr Fault TironeLevelEndFault = invalidEndPeriod("TironeLevel");
  static constexpr Fault TironeLevelFault = unexpectedError("LineStudy.TironeLevel.UnexpectedError");
  static constexpr Fault QuadrantLinesStartFault = invalidStartPeriod("LineStudy.QuadrantLines");
  static constexpr Fault QuadrantLinesEndFault = invalidEndPeriod("LineStudy.QuadrantLines");
  /// The spelling is the published one.
  static constexpr Fault QuadrantLinesFault = unexpectedError("LineStuday.QuadrantLines.UnexpectedError");
  static constexpr Fault SpeedResistanceLinesStartFault = invalidStartPeriod("LineStudy.SpeedResistanceLines");
  static constexpr Fault SpeedResistanceLinesEndFault = invalidEndPeriod("LineStudy.SpeedResistanceLines");
  static constexpr Fault SpeedResistanceLinesFault = unexpectedError("LineStudy.SpeedResistanceLines.UnexpectedError");
  static constexpr Fault TrendLinePenetrationFault = unexpectedError("LineStudy.TrendLinePenetration.UnexpectedError");

  /// The Fibonacci numbers 1, 2, 3, 5, 8,... as marks in time, one column named `Alias` ("Fibonacci" when empty) of as
  /// many rows as `Source` has: the n-th number f stands in row `StartPeriod` + n - 1 + f - 1. Rows before `EndPeriod`
  /// are marked, that row itself never; all other rows are 0, and so is the whole column where the span is empty.
  /// Values of `Source` are not read. Yields once a mark and moves no cursor. Error 1105 for a mark outside the column
  /// (a span that leaves it), a null source.
  std::shared_ptr<RecordSet> Fibonacci(std::shared_ptr<Field> Source, Integer StartPeriod, Integer EndPeriod,
                                       InOut<std::string> Alias = {});

  /// Levels in price units: with hh and ll the `General::MaxValue` of "High" and the `MinValue` of "Low" over the span
  /// (so hh is 0 where no high is above 0),
  ///   "TironeTop" = hh - (hh - ll) / 3, "TironeMedian" = ll + (hh - ll) / 2, "TironeBottom" = ll + (hh - ll) / 3
  /// on records `StartPeriod` to `EndPeriod`. Error 1105 for any fault, a span that is not within 2 .. N included: the
  /// cursor is first set one record before the span, so a span that begins at record 1 fails.
  std::shared_ptr<RecordSet> TironeLevel(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                         Integer StartPeriod, Integer EndPeriod);

  /// The quarters of a span's range, in the unit of `Source`: with high and low its highest and lowest value, "Quadrant
  /// High" = high, "Quadrant 75", "Quadrant 50" and "Quadrant 25" = low + (high - low) x 0.75, x 0.5, x 0.25, and
  /// "Quadrant Low" = low, on records `StartPeriod` to `EndPeriod`. Errors: 1010 "Invalid start period" for a start
  /// outside 1..N, then "Invalid end period" for an end outside start..N, both directly; 1105 for any other fault.
  std::shared_ptr<RecordSet> QuadrantLines(std::shared_ptr<Database> data, std::shared_ptr<Field> Source,
                                           Integer StartPeriod, Integer EndPeriod);

  /// Speed resistance lines, in price units: from the first of the span's two extremes (the highest "High", the lowest
  /// "Low", of equal ones the first) a line through the second, and two lines that rise or fall two thirds and one
  /// third as fast. With a and b the records of the earlier and the later extreme, origin the extreme at a and move =
  /// the extreme at b - origin,
  ///   "Speed Line" = origin + move x (r - a) / (b - a)
  ///   "Speed 2/3"  = origin + move x 2 / 3 x (r - a) / (b - a)
  ///   "Speed 1/3"  = origin + move / 3 x (r - a) / (b - a)
  /// on records a to `EndPeriod`; 0 before a too. Errors: 1010 as `QuadrantLines`; 1105 for any other fault, both
  /// extremes on one record included.
  std::shared_ptr<RecordSet> SpeedResistanceLines(std::shared_ptr<Database> data, std::shared_ptr<RecordSet> OHLCV,
                                                  Integer StartPeriod, Integer EndPeriod);

  /// Where `Source` crosses a line, in a column named `Alias` ("TrendLinePenetration" when empty): 1 where Source(r -
  /// 1) <= line(r - 1) and Source(r) > line(r), -1 where Source(r - 1) >= line(r - 1) and Source(r) < line(r),
  /// otherwise 0. Only where the line is drawn, that is not 0, at both records. Computed rows: 2 to N. Error 1105 for
  /// any fault.
  std::shared_ptr<RecordSet> TrendLinePenetration(std::shared_ptr<Database> data, std::shared_ptr<Field> TrendLine,
                                                  std::shared_ptr<Field> Source, InOut<std::string> Alias = {});
};

}  // namespace orvex::inline ORVEX_COUNTS
