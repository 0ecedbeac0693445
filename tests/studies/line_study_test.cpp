#include "orvex/studies/line_study.h"

#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(LineStudy, FibonacciMarks) {
  const struct {
    int start, end;
    std::vector<double> marks;
  } cases[] = {
      {1, 20, {1, 0, 2, 0, 3, 0, 0, 5, 0, 0, 0, 8, 0, 0, 0, 0, 0, 13, 0, 0}},
      // A mark would stand on record 18 itself, the last of the span.
      {1, 18, {1, 0, 2, 0, 3, 0, 0, 5, 0, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0}},
      {3, 6, {0, 0, 1, 0, 2, 0}},
      {5, 5, {0, 0, 0, 0, 0}},
      {1, 2, {1, 0, 0}},
      {3, 1, {0, 0, 0}},
      // The span may reach beyond the column as long as no mark does.
      {1, 5, {1, 0, 2}},
  };
  for (const auto& c : cases) {
    expectColumns(*LineStudy().Fibonacci(field(std::vector<double>(c.marks.size())), c.start, c.end),
                  {{"Fibonacci", c.marks}});
  }
}

TEST(LineStudy, FibonacciFaults) {
  const auto source = field({0, 0, 0});
  EXPECT_FAULT(LineStudy::FibonacciFault, LineStudy().Fibonacci(nullptr, 1, 3));
  EXPECT_FAULT(LineStudy::FibonacciFault, LineStudy().Fibonacci(source, 0, 3));
  EXPECT_FAULT(LineStudy::FibonacciFault, LineStudy().Fibonacci(source, 1, 6));
}

TEST(LineStudy, TironeLevelsOfASpan) {
  const auto data = bars({{0, 90, 1, 0, 0}, {0, 30, 6, 0, 0}, {0, 24, 0, 0, 0}, {0, 90, -1, 0, 0}});
  expectColumns(*LineStudy().TironeLevel(data, data->getRecordset(), 2, 3),
                {{"TironeTop", {0, 20, 20, 0}}, {"TironeMedian", {0, 15, 15, 0}}, {"TironeBottom", {0, 10, 10, 0}}});
  // Below 0 the high counts as 0.
  const auto below = bars({{0, 0, 0, 0, 0}, {0, -3, -6, 0, 0}});
  expectColumns(*LineStudy().TironeLevel(below, below->getRecordset(), 2, 2),
                {{"TironeTop", {0, -2}}, {"TironeMedian", {0, -3}}, {"TironeBottom", {0, -4}}});
}

TEST(LineStudy, TironeReportsItsChecksAsUnexpected) {
  const auto data = records(4);
  const struct { int start, end; } spans[] = {{2, 5}, {0, 3}, {3, 2}, {1, 3}};
  for (const auto& span : spans) {
    EXPECT_FAULT(LineStudy::TironeLevelFault,
                 LineStudy().TironeLevel(data, data->getRecordset(), span.start, span.end));
  }
}

TEST(LineStudy, QuadrantLinesOfASpan) {
  expectColumns(*LineStudy().QuadrantLines(records(5), field({99, -4, -12, -8, 99}), 2, 4),
                {{"Quadrant High", {0, -4, -4, -4, 0}},
                 {"Quadrant 75", {0, -6, -6, -6, 0}},
                 {"Quadrant 50", {0, -8, -8, -8, 0}},
                 {"Quadrant 25", {0, -10, -10, -10, 0}},
                 {"Quadrant Low", {0, -12, -12, -12, 0}}});
}

TEST(LineStudy, SpeedResistanceLinesFromTheEarlierExtreme) {
  // The lowest low stands on records 2 and 4, the highest high on 5 and 6: the first of each counts.
  const auto rising =
      bars({{0, 9, 1, 0, 0}, {0, 9, 3, 0, 0}, {0, 9, 5, 0, 0}, {0, 9, 3, 0, 0}, {0, 12, 5, 0, 0}, {0, 12, 5, 0, 0}});
  expectColumns(
      *LineStudy().SpeedResistanceLines(rising, rising->getRecordset(), 2, 6),
      {{"Speed Line", {0, 3, 6, 9, 12, 15}}, {"Speed 2/3", {0, 3, 5, 7, 9, 11}}, {"Speed 1/3", {0, 3, 4, 5, 6, 7}}});
  const auto falling = bars({{0, 9, 8, 0, 0}, {0, 12, 8, 0, 0}, {0, 9, 6, 0, 0}, {0, 9, 7, 0, 0}, {0, 99, 0, 0, 0}});
  expectColumns(*LineStudy().SpeedResistanceLines(falling, falling->getRecordset(), 1, 4),
                {{"Speed Line", {0, 12, 6, 0, 0}}, {"Speed 2/3", {0, 12, 8, 4, 0}}, {"Speed 1/3", {0, 12, 10, 8, 0}}});
  EXPECT_FAULT(LineStudy::SpeedResistanceLinesFault,
               LineStudy().SpeedResistanceLines(falling, falling->getRecordset(), 5, 5));
}

TEST(LineStudy, SpansAreCheckedBeforeAnythingElse) {
  const auto data = records(4);
  const struct {
    int start, end;
    std::string_view description;
  } cases[] = {{0, 9, "Invalid start period"},
               {5, 5, "Invalid start period"},
               {3, 2, "Invalid end period"},
               {1, 5, "Invalid end period"}};
  for (const auto& c : cases) {
    EXPECT_FAULT((Fault{1010, "LineStudy.QuadrantLines", c.description}),
                 LineStudy().QuadrantLines(data, nullptr, c.start, c.end));
    EXPECT_FAULT((Fault{1010, "LineStudy.SpeedResistanceLines", c.description}),
                 LineStudy().SpeedResistanceLines(data, nullptr, c.start, c.end));
  }
  EXPECT_FAULT((Fault{1105, "LineStuday.QuadrantLines.UnexpectedError", "An unexpected error has occured"}),
               LineStudy().QuadrantLines(data, nullptr, 1, 4));
  EXPECT_FAULT(LineStudy::SpeedResistanceLinesFault, LineStudy().SpeedResistanceLines(data, nullptr, 1, 4));
}

TEST(LineStudy, PenetrationOfADrawnLine) {
  const auto data = records(9);
  // Up from below, stays, touches, up from the touch, down, touches, down from the touch; the line ends at record 8.
  const auto source = field({1, 6, 7, 5, 6, 4, 5, 4, 9});
  const auto line = field({5, 5, 5, 5, 5, 5, 5, 5, 0});
  expectColumns(*LineStudy().TrendLinePenetration(data, line, source),
                {{"TrendLinePenetration", {0, 1, 0, 0, 1, -1, 0, -1, 0}}});
  expectColumns(*LineStudy().TrendLinePenetration(records(3), field({0, 5, 5}), field({1, 9, 1}), "x"),
                {{"x", {0, 0, -1}}});
  EXPECT_FAULT(LineStudy::TrendLinePenetrationFault, LineStudy().TrendLinePenetration(data, line, field({1, 2})));
}

}  // namespace
}  // namespace orvex::test
