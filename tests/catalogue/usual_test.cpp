// Names and usual values as the ways in of other languages take them.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "orvex/catalogue/computed_rows.h"
#include "orvex/catalogue/names.h"
#include "orvex/catalogue/usual.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

using catalogue::Method;
using catalogue::Type;
using catalogue::Value;

TEST(Names, AreWrittenWithoutCapitals) {
  const struct {
    const char* name;
    const char* snake;
  } cases[] = {
      {"SimpleMovingAverage", "simple_moving_average"},
      {"MACD", "macd"},
      {"StochRSI", "stoch_rsi"},
      {"WilliamsPctR", "williams_pct_r"},
      {"VolumeROC", "volume_roc"},
      {"MA_Type", "ma_type"},
      {"MAType", "ma_type"},
      {"R2Scale", "r2_scale"},
      {"KPeriods", "k_periods"},
      {"getRecordCount", "get_record_count"},
      {"", ""},
  };
  for (const auto& [name, snake] : cases) EXPECT_EQ(catalogue::snakeCase(name), snake);
}

TEST(Names, OfCalculationsStayDifferentWithoutTheirClass) {
  std::set<std::string> names;
  for (const catalogue::Class* owner : catalogue::classes()) {
    std::set<std::string> own;
    for (const Method* method : owner->methods) {
      if (!catalogue::isCalculation(*owner, *method)) continue;
      EXPECT_TRUE(own.insert(catalogue::snakeCase(method->name)).second) << method->name;
      if (owner->qualified) continue;
      const auto found = catalogue::findCalculation(catalogue::snakeCase(method->name));
      const auto same = catalogue::findCalculation(method->name);
      ASSERT_TRUE(same) << method->name;
      EXPECT_EQ(same->method->name, method->name);
      EXPECT_FALSE(found && found->method != same->method) << method->name;
    }
  }
}

TEST(Choices, AreReadFromTheirNames) {
  const Method& average = *catalogue::findCalculation("BollingerBands")->method;
  const catalogue::Argument& code = average.arguments[4];
  EXPECT_EQ(catalogue::readChoice(code, "simple"), 1);
  EXPECT_EQ(catalogue::readChoice(code, "TIMESERIES"), 3);
  EXPECT_EQ(catalogue::readChoice(code, "Vidya"), 7);
  EXPECT_EQ(catalogue::readChoice(code, "simpl"), std::nullopt);
  EXPECT_EQ(catalogue::readChoice(code, "1"), std::nullopt);
  EXPECT_EQ(catalogue::listChoices(code),
            "1 Simple, 2 Exponential, 3 TimeSeries, 4 Variable, 5 Triangular, 6 Weighted, 7 VIDYA");
  EXPECT_EQ(catalogue::listChoices(average.arguments[0]), "");
}

/// A series that swings, with volumes.
std::shared_ptr<Database> swings(int count) {
  std::vector<Bar> series;
  for (int i = 0; i < count; ++i) {
    const double close = 100 + 7 * (i % 11) - 3 * (i % 17);
    series.push_back({close - 1, close + 2, close - 3, close, 1000.0 + i % 5});
  }
  return bars(series);
}

TEST(UsualValues, MakeACallOfEveryCalculationThatTakesPrices) {
  constexpr int count = 300;
  for (const catalogue::Class* owner : catalogue::classes()) {
    for (const Method* method : owner->methods) {
      if (!catalogue::isCalculation(*owner, *method)) continue;
      SCOPED_TRACE(method->name);
      const auto data = swings(count);
      std::vector<Value> arguments(method->arguments.size());
      const auto taken = catalogue::takeUsual(*method, arguments, data);
      for (std::size_t i = 0; i < arguments.size(); ++i) {
        const catalogue::Argument& argument = method->arguments[i];
        const bool filled = !std::holds_alternative<catalogue::Missing>(arguments[i]);
        const bool told =
            std::any_of(taken.begin(), taken.end(), [&](const auto& one) { return one.argument == &argument; });
        const bool prices = argument.type == Type::Database || argument.type == Type::RecordSet;
        EXPECT_EQ(told, filled && !prices) << argument.name;
        EXPECT_FALSE(filled && argument.optional) << argument.name;
      }
      const bool complete = method->name != "IsPrime";
      std::shared_ptr<void> object = owner->create();
      Value result;
      EXPECT_FAULT(complete ? std::nullopt : std::optional<Fault>({449, "Orvex", "Argument not optional"}),
                   result = catalogue::call(*method, object.get(), arguments));
      if (method->columns.empty() || !complete) continue;
      // What is usual is of use: a call of it computes something.
      const auto columns = std::get<std::shared_ptr<RecordSet>>(result)->fields();
      for (std::size_t i = 0; i < columns.size(); ++i) {
        const catalogue::Column& column = method->columns[i];
        const auto rows = catalogue::computedRows(*method, column, count, arguments);
        EXPECT_LE(rows.first, rows.last) << column.name;
        const auto& [low, high] = column.bounds;
        for (int row = rows.first; row <= rows.last; ++row) {
          const double value = columns[i]->getValue(row);
          // Quotients of sums may round to just beyond a bound.
          EXPECT_TRUE(value >= low - 1e-9 && value <= high + 1e-9) << column.name << ", row " << row << ": " << value;
        }
      }
    }
  }
}

TEST(Guides, AnswerWhatPeopleAskOfEveryCalculation) {
  for (const catalogue::Class* owner : catalogue::classes()) {
    for (const Method* method : owner->methods) {
      if (!catalogue::isCalculation(*owner, *method)) continue;
      SCOPED_TRACE(method->name);
      EXPECT_NE(method->purpose, catalogue::Purpose::None);
      EXPECT_FALSE(method->guide.formula.empty());
      EXPECT_FALSE(method->guide.reading.empty());
      EXPECT_FALSE(method->guide.origin.empty());
      // It goes on from "Fails".
      EXPECT_TRUE(method->guide.fails.starts_with("where ")) << method->guide.fails;
      EXPECT_FALSE(method->guide.fails.ends_with('.'));
      if (const auto house = method->elsewhere.house; !house.empty()) {
        const std::size_t point = house.find('.');
        ASSERT_NE(point, std::string_view::npos);
        const catalogue::Class* other = catalogue::findClass(house.substr(0, point));
        EXPECT_TRUE(other != nullptr && catalogue::findMethod(*other, house.substr(point + 1)) != nullptr) << house;
      }
      bool pane = method->levels.empty();
      for (const catalogue::Column& column : method->columns) {
        EXPECT_FALSE(column.help.empty()) << column.name;
        pane = pane || column.place == catalogue::Place::Pane;
        for (const double level : method->levels) {
          const bool shared = column.place == catalogue::Place::Pane;
          EXPECT_TRUE(!shared || (level >= column.bounds.low && level <= column.bounds.high)) << column.name;
        }
      }
      EXPECT_TRUE(pane) << "lines that guide the eye have no pane";
    }
  }
}

TEST(UsualValues, LeaveWhatIsGiven) {
  const Method& method = *catalogue::findCalculation("MACD")->method;
  const auto data = swings(40);
  std::vector<Value> arguments(method.arguments.size());
  arguments[1] = std::shared_ptr<Field>(data->getRecordset()->getField("High"));
  arguments[3] = Integer(20);
  const auto taken = catalogue::takeUsual(method, arguments, data);
  std::string text;
  for (const auto& one : taken) text += std::string(one.argument->name) + '=' + one.value + ' ';
  EXPECT_EQ(text, "ShortCycle=12 SignalPeriods=9 ");
  EXPECT_EQ(std::get<std::shared_ptr<Field>>(arguments[1])->name(), "High");
  EXPECT_EQ(std::get<Integer>(arguments[3]), 20);
}

TEST(UsualValues, FollowTheLengthOfTheSeries) {
  const Method& method = *catalogue::findCalculation("QuadrantLines")->method;
  EXPECT_EQ(std::get<Integer>(catalogue::usualOf(method.arguments[3], 77)), 77);
  EXPECT_EQ(std::get<std::string>(catalogue::usualOf(method.arguments[1], 77)), "Close");
  EXPECT_TRUE(std::holds_alternative<catalogue::Missing>(catalogue::usualOf(method.arguments[0], 77)));
}

}  // namespace
}  // namespace orvex::test
