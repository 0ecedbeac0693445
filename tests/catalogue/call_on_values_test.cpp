// Calls over columns that begin and end without values.
#include "orvex/catalogue/call_on_values.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orvex/catalogue/description.h"
#include "orvex/data/note.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

using catalogue::Type;
using catalogue::Value;

constexpr int lead = 5;
constexpr int records = 60;
constexpr int trail = 2;

/// Price columns of `records` values each, and as many rows before and behind them that have none.
std::shared_ptr<RecordSet> prices(int before, int behind) {
  std::vector<std::vector<double>> rows(Database::PriceNames.size(),
                                        std::vector<double>(static_cast<std::size_t>(before), notANumber));
  for (int i = 0; i < records; ++i) {
    const double close = 100 + i % 7 + i % 5;
    const double bar[] = {close - 1, close + 2 + i % 3, close - 3, close, 1000.0 + i % 11};
    for (std::size_t column = 0; column < rows.size(); ++column) rows[column].push_back(bar[column]);
  }
  auto set = std::make_shared<RecordSet>();
  for (std::size_t column = 0; column < rows.size(); ++column) {
    rows[column].resize(rows[column].size() + static_cast<std::size_t>(behind), notANumber);
    set->addField(field(rows[column], std::string(Database::PriceNames[column])));
  }
  return set;
}

std::vector<Value> argumentsOf(const catalogue::Method& method, int before, int behind) {
  const auto set = prices(before, behind);
  const int count = before + records + behind;
  std::vector<Value> arguments;
  for (const catalogue::Argument& argument : method.arguments) {
    Value value = catalogue::Missing{};
    if (argument.type == Type::Database) value = test::records(static_cast<std::size_t>(count));
    if (argument.type == Type::RecordSet) value = set;
    if (argument.type == Type::Field) value = set->getField(argument.name == "Source2" ? "High" : "Close");
    if (argument.type == Type::Integer && !argument.optional) value = Integer(argument.name == "MA_Type" ? 1 : 3);
    if (argument.type == Type::Double && !argument.optional) value = 0.5;
    if (argument.record) value = Integer(before + (argument.name == "StartPeriod" ? 20 : 40));
    arguments.push_back(value);
  }
  return arguments;
}

Integer positionOf(const std::vector<Value>& arguments) {
  for (const Value& argument : arguments) {
    if (const auto* data = std::get_if<std::shared_ptr<Database>>(&argument)) return (*data)->getPosition();
  }
  return 0;
}

/// What a call gave, one record less each for `before` records that the part has before it.
struct Outcome {
  int error = 0;
  std::vector<double> rows;
  std::vector<int> computed;
  std::vector<std::string> names;
  int period = 0;
  int position = 0;

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

Outcome outcomeOf(const catalogue::Class& owner, const catalogue::Method& method, int before, int behind) {
  Outcome outcome;
  std::vector<Value> arguments = argumentsOf(method, before, behind);
  const auto object = owner.create();
  try {
    const auto called = catalogue::callOnValues(method, object.get(), arguments);
    if (const auto* set = std::get_if<std::shared_ptr<RecordSet>>(&called.result)) {
      EXPECT_EQ((*set)->fields().size(), called.computed.size());
      for (std::size_t i = 0; i < called.computed.size(); ++i) {
        const auto& column = (*set)->fields()[i];
        EXPECT_EQ(column->getRecordCount(), before + records + behind);
        outcome.names.push_back(column->getName());
        for (int row = 1; row <= column->getRecordCount(); ++row) {
          const bool outside = row <= before || row > before + records;
          if (outside) {
            EXPECT_EQ(column->getValue(row), 0.0);
          } else {
            // 0 names no record.
            const bool shifted = method.columns[i].record && column->getValue(row) != 0.0;
            outcome.rows.push_back(column->getValue(row) - (shifted ? before : 0));
          }
        }
        outcome.computed.push_back(called.computed[i].first - before);
        outcome.computed.push_back(called.computed[i].last - before);
      }
    } else if (const auto* note = std::get_if<std::shared_ptr<Note>>(&called.result)) {
      // 0 names no record.
      outcome.period = (*note)->getPeriod() == 0 ? 0 : (*note)->getPeriod().value() - before;
      outcome.rows.push_back((*note)->getValue());
    } else {
      outcome.rows.push_back(std::get<double>(catalogue::coerce(called.result, Type::Double)));
    }
  } catch (const Error& error) {
    outcome.error = error.number();
  }
  outcome.position = positionOf(arguments).value() == 0 ? 0 : positionOf(arguments).value() - before;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (method.arguments[i].record) {
      EXPECT_EQ(std::get<Integer>(arguments[i]), before + (method.arguments[i].name == "StartPeriod" ? 20 : 40));
    }
  }
  return outcome;
}

TEST(CallOnValues, IsForEveryMethodTheCallOnThePartWithValues) {
  int compared = 0;
  for (const catalogue::Class* owner : catalogue::classes()) {
    if (owner->holdsState) continue;
    for (const catalogue::Method* method : owner->methods) {
      if (method->kind != catalogue::Kind::Method || method->name == "IsPrime") continue;
      SCOPED_TRACE(std::string(owner->name) + '.' + std::string(method->name));
      const Outcome plain = outcomeOf(*owner, *method, 0, 0);
      EXPECT_TRUE(outcomeOf(*owner, *method, lead, trail) == plain);
      EXPECT_TRUE(outcomeOf(*owner, *method, lead, 0) == plain);
      EXPECT_TRUE(outcomeOf(*owner, *method, 0, trail) == plain);
      compared += plain.error == 0;
    }
  }
  EXPECT_GT(compared, 60);
}

TEST(CallOnValues, StartsBehindTheLastToBeginAndEndsWithTheFirstToEnd) {
  const double none = notANumber;
  const catalogue::Class& owner = *catalogue::findClass("MovingAverage");
  const catalogue::Method& method = *catalogue::findMethod(owner, "SimpleMovingAverage");
  std::vector<Value> arguments = {test::records(7), field({none, none, 1, 2, 3, 4, none}), Integer(2),
                                  catalogue::Missing{}};
  const auto called = catalogue::callOnValues(method, owner.create().get(), arguments);
  const auto& column = std::get<std::shared_ptr<RecordSet>>(called.result)->fields()[0];
  EXPECT_EQ(std::vector<double>(column->values().begin(), column->values().end()),
            (std::vector<double>{0, 0, 0, 0, 2.5, 3.5, 0}));
  EXPECT_EQ(called.part.first, 3);
  EXPECT_EQ(called.part.last, 6);
  EXPECT_EQ(called.computed[0].first, 5);
  EXPECT_EQ(called.computed[0].last, 6);
  EXPECT_EQ(std::get<std::string>(arguments[3]), "SimpleMovingAverage");
}

TEST(CallOnValues, LeavesGapsAndColumnsWithoutAnyValueToTheMethod) {
  const double none = notANumber;
  const catalogue::Class& owner = *catalogue::findClass("MovingAverage");
  const catalogue::Method& method = *catalogue::findMethod(owner, "SimpleMovingAverage");
  for (const auto& rows : {std::vector<double>{none, 1, none, 2, 3}, std::vector<double>{none, none, none}}) {
    std::vector<Value> arguments = {test::records(rows.size()), field(rows, "Fast"), Integer(1), catalogue::Missing{}};
    EXPECT_THROW(catalogue::callOnValues(method, owner.create().get(), arguments), Error);
    const auto gap = catalogue::findGap(arguments);
    EXPECT_EQ(gap.has_value(), rows.size() == 5);
    if (gap) {
      EXPECT_EQ(gap->column + std::to_string(gap->row), "Fast3");
    }
  }
}

}  // namespace
}  // namespace orvex::test
