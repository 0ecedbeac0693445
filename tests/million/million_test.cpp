// Every method on a million records: finite, the same bits at every level of kernels, and in 50 rows what the steps
// alone give on a series that ends there. Takes minutes; scripts/test million runs it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "orvex/catalogue/description.h"
#include "orvex/catalogue/usual.h"
#include "orvex/kernels/kernels.h"

namespace orvex::test {
namespace {

using catalogue::Class;
using catalogue::Method;
using catalogue::Type;
using catalogue::Value;
using kernels::Level;

constexpr int million = 1'000'000;

struct Named {
  const Class* owner;
  const Method* method;
};

void PrintTo(const Named& named, std::ostream* out) {
  *out << named.owner->name << '.' << named.method->name;
}

std::vector<Named> methodsWithColumns() {
  std::vector<Named> all;
  for (const Class* owner : catalogue::classes()) {
    for (const Method* method : owner->methods) {
      if (!owner->holdsState && !method->columns.empty()) all.push_back({owner, method});
    }
  }
  return all;
}

/// Open, high, low, close and volume of a random walk in cents.
struct Prices {
  std::vector<double> open, high, low, close, volume;

  Prices() {
    std::mt19937 random(6);
    const auto draw = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    int last = 10000;
    for (int i = 0; i < million; ++i) {
      const int first = last;
      last = std::max(last + draw(201) - 100, 1000);
      open.push_back(first / 100.0);
      close.push_back(last / 100.0);
      high.push_back((std::max(first, last) + draw(60)) / 100.0);
      low.push_back((std::min(first, last) - draw(60)) / 100.0);
      volume.push_back(100000 + draw(900000));
    }
  }
};

/// The first `count` records, none of them copied.
std::shared_ptr<Database> series(const std::shared_ptr<const Prices>& prices, std::size_t count) {
  const auto rows = [&](const std::vector<double>& column) { return Rows<double>{column, prices}.part(0, count); };
  auto data = std::make_shared<Database>();
  data->OpenDatabaseByRows({.open = rows(prices->open),
                            .high = rows(prices->high),
                            .low = rows(prices->low),
                            .close = rows(prices->close),
                            .volume = rows(prices->volume)});
  return data;
}

/// The usual arguments but those that say how much is computed, and the closes for a column that no file has.
std::vector<Value> argumentsOf(const Method& method, const std::shared_ptr<Database>& data) {
  const std::map<std::string_view, Value> given = {
      {"EndPeriod", data->getRecordCount()}, {"StartPeriod", Integer(2)}, {"Epochs", Integer(1)}};
  const auto prices = data->getRecordset();
  std::vector<Value> arguments;
  for (const catalogue::Argument& argument : method.arguments) {
    arguments.push_back(given.contains(argument.name) ? given.at(argument.name) : catalogue::Missing{});
    if (argument.type != Type::Field) continue;
    arguments.back() = prices->getField(prices->isValidField(argument.name) ? argument.name : Database::CloseName);
  }
  catalogue::takeUsual(method, arguments, data);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!std::holds_alternative<catalogue::Missing>(arguments[i]) || method.arguments[i].optional) continue;
    if (method.arguments[i].type == Type::Integer) arguments[i] = Integer(14);
  }
  return arguments;
}

std::shared_ptr<RecordSet> resultOf(const Named& named, const std::shared_ptr<Database>& data, Level level) {
  kernels::setLevel(level);
  std::vector<Value> arguments = argumentsOf(*named.method, data);
  return std::get<std::shared_ptr<RecordSet>>(catalogue::call(*named.method, named.owner->create().get(), arguments));
}

class Million : public testing::TestWithParam<Named> {
 protected:
  static void SetUpTestSuite() { prices = std::make_shared<const Prices>(); }
  static void TearDownTestSuite() { prices = nullptr; }
  void TearDown() override { kernels::setLevel(kernels::widestLevel()); }

  static inline std::shared_ptr<const Prices> prices;
};

TEST_P(Million, AreComputedAsEachIsAlone) {
  const auto plain = resultOf(GetParam(), series(prices, million), Level::Off);
  ASSERT_EQ(plain->getFieldCount(), static_cast<int>(GetParam().method->columns.size()));
  for (const Level level : kernels::allLevels) {
    if (level == Level::Off) continue;
    const auto result = resultOf(GetParam(), series(prices, million), level);
    for (int i = 0; i < plain->getFieldCount().value(); ++i) {
      const auto expected = plain->fields()[static_cast<std::size_t>(i)]->values();
      const auto got = result->fields()[static_cast<std::size_t>(i)]->values();
      ASSERT_EQ(got.size(), std::size_t{million});
      EXPECT_EQ(std::memcmp(got.data(), expected.data(), expected.size_bytes()), 0)
          << "level " << static_cast<int>(level) << ", column " << i + 1;
      EXPECT_TRUE(std::all_of(got.begin(), got.end(), [](double row) { return std::isfinite(row); }));
    }
  }
  const std::set<std::string_view> knowTheEnd = {"TironeLevel", "QuadrantLines", "SpeedResistanceLines",
                                                 "NeuralIndicator", "WilliamsPctR"};
  if (knowTheEnd.contains(GetParam().method->name)) return;
  std::mt19937 random(7);
  for (int i = 0; i < 50; ++i) {
    const std::size_t count = 1000 + random() % (million - 1000);
    const auto alone = resultOf(GetParam(), series(prices, count), Level::Off);
    for (int column = 0; column < plain->getFieldCount().value(); ++column) {
      const auto place = static_cast<std::size_t>(column);
      // A line that is drawn back ends before the series does.
      if (GetParam().method->columns[place].lastRow != "N") continue;
      EXPECT_EQ(alone->fields()[place]->values()[count - 1], plain->fields()[place]->values()[count - 1])
          << "record " << count << ", column " << column + 1;
    }
  }
}

std::string nameOf(const testing::TestParamInfo<Named>& info) {
  return std::string(info.param.owner->name) + "_" + std::string(info.param.method->name);
}

INSTANTIATE_TEST_SUITE_P(Catalogue, Million, testing::ValuesIn(methodsWithColumns()), nameOf);

}  // namespace
}  // namespace orvex::test
