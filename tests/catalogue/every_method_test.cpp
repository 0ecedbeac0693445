// What holds for every method of the catalogue, on thousands of series and arguments, awkward ones first of all.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "orvex/catalogue/computed_rows.h"
#include "orvex/data/host_events.h"
#include "orvex/kernels/kernels.h"
#include "tests/support/calls.h"
#include "tests/support/series.h"
#include "tests/support/times.h"

namespace orvex::test {
namespace {

using catalogue::Class;
using catalogue::Method;
using kernels::Level;

int callsOfEach() {
  return timesOfEach("ORVEX_CALLS", 600);
}

struct Named {
  const Class* owner;
  const Method* method;
};

void PrintTo(const Named& named, std::ostream* out) {
  *out << named.owner->name << '.' << named.method->name;
}

/// The methods of the calculators.
std::vector<Named> calculations() {
  std::vector<Named> all;
  for (const Class* owner : catalogue::classes()) {
    for (const Method* method : owner->methods) {
      if (!owner->holdsState && method->kind == catalogue::Kind::Method) all.push_back({owner, method});
    }
  }
  return all;
}

std::string nameOf(const testing::TestParamInfo<Named>& info) {
  return std::string(info.param.owner->name) + "_" + std::string(info.param.method->name);
}

class EveryMethod : public testing::TestWithParam<Named> {
 protected:
  void TearDown() override {
    kernels::setLevel(kernels::widestLevel());
    setYieldHook({});
  }

  const Method& method() const { return *GetParam().method; }
  const Class& owner() const { return *GetParam().owner; }
  /// Whether the catalogue has that error among the method's.
  bool names(const Fault& fault) const {
    return std::find(method().faults.begin(), method().faults.end(), fault) != method().faults.end();
  }

  /// Runs `check(bytes)` for as many random calls as are worth their time.
  template <class Check>
  void forRandomCalls(Check check) {
    std::mt19937 generator(20);
    for (int i = 0; i < callsOfEach() && !HasFailure(); ++i) {
      check(randomBytes(generator));
    }
  }
};

/// Whether the cursor stays where it is, as all methods of `Standard` leave it. Most others walk it and end on the
/// first record.
bool leavesTheCursor(const Class& owner, const Method& method) {
  static const std::set<std::string_view> still = {"ChaikinMoneyFlow",
                                                   "ChaosFractalOscillator",
                                                   "IdentifyPattern",
                                                   "PercentRetracement",
                                                   "PrimeNumberBands",
                                                   "PrimeNumberOscillator",
                                                   "WilliamsAccumulationDistribution"};
  return owner.name == "Standard" || still.contains(method.name) || method.arguments.empty() ||
         method.arguments[0].type != catalogue::Type::Database;
}

class EveryCausalMethod : public EveryMethod {};

/// Lines through a span that the caller names are drawn over all of it, a network has seen what it has learnt from, and
/// a displaced close is drawn back.
std::vector<Named> causalCalculations() {
  const std::set<std::string_view> others = {"TironeLevel", "QuadrantLines", "SpeedResistanceLines", "NeuralIndicator",
                                             "ICHIMOKU"};
  std::vector<Named> all = calculations();
  std::erase_if(
      all, [&](const Named& named) { return named.method->columns.empty() || others.contains(named.method->name); });
  return all;
}

/// The positions at which a computation yielded.
struct Positions {
  const Database* data;
  std::vector<int> seen;

  static void record(void* context) {
    auto& self = *static_cast<Positions*>(context);
    self.seen.push_back(self.data->getPosition().value());
  }
};

/// Makes the call that the bytes choose, under one level of kernels, with or without a host that watches; on `count`
/// records or as many as they choose.
Outcome outcomeAt(Level level, const std::vector<std::uint8_t>& bytes, const Named& named,
                  std::vector<int>* positions = nullptr, int count = 0) {
  const RandomCall random(bytes, *named.owner, *named.method, count);
  kernels::setLevel(level);
  Positions watch{random.world.data.get(), {}};
  if (positions != nullptr) setYieldHook({&Positions::record, &watch});
  Outcome outcome = random.run();
  setYieldHook({});
  if (positions != nullptr) *positions = std::move(watch.seen);
  return outcome;
}

TEST_P(EveryMethod, HasOneResultAtEveryLevelAndUnderEveryHost) {
  forRandomCalls([&](const std::vector<std::uint8_t>& bytes) {
    std::vector<int> expectedPositions;
    const Outcome expected = outcomeAt(Level::Off, bytes, GetParam(), &expectedPositions);
    EXPECT_EQ(outcomeAt(Level::Off, bytes, GetParam()), expected);
    for (const Level level : kernels::allLevels) {
      std::vector<int> positions;
      EXPECT_EQ(outcomeAt(level, bytes, GetParam(), &positions), expected) << "level " << static_cast<int>(level);
      EXPECT_EQ(positions, expectedPositions);
      EXPECT_EQ(outcomeAt(level, bytes, GetParam()), expected) << "level " << static_cast<int>(level) << ", no hook";
    }
    if (HasFailure()) ADD_FAILURE() << RandomCall(bytes, owner(), method()).describe();
  });
}

TEST_P(EveryMethod, HasOneResultOfALongSeriesToo) {
  // Some kernels do by stretches, by pieces and in one pass what is too short for that in most calls.
  std::mt19937 generator(21);
  for (int i = 0; i < callsOfEach() / 50 && !HasFailure(); ++i) {
    const auto bytes = randomBytes(generator);
    const int count = 2048 + static_cast<int>(generator() % 3000);
    const Outcome expected = outcomeAt(Level::Off, bytes, GetParam(), nullptr, count);
    for (const Level level : kernels::allLevels) {
      EXPECT_EQ(outcomeAt(level, bytes, GetParam(), nullptr, count), expected) << "level " << static_cast<int>(level);
    }
    if (HasFailure()) ADD_FAILURE() << RandomCall(bytes, owner(), method(), count).describe();
  }
}

TEST_P(EveryMethod, ReturnsWhatItPromisesOrAnErrorThatItNames) {
  int returned = 0;
  forRandomCalls([&](const std::vector<std::uint8_t>& bytes) {
    RandomCall random(bytes, owner(), method());
    const World& world = random.world;
    for (std::size_t i = 0; i < method().arguments.size() && bytes[0] % 2 == 0; ++i) {
      if (method().arguments[i].name == "Alias") random.call.arguments[i] = std::string();
    }
    SCOPED_TRACE(random.describe());
    const auto inputs = contents(world);
    const int start = world.data->getPosition().value();
    const Outcome outcome = random.run();
    EXPECT_EQ(contents(world), inputs) << "an input was changed";
    std::string alias;
    for (std::size_t i = 0; i < method().arguments.size(); ++i) {
      const auto* data = std::get_if<std::shared_ptr<Database>>(&random.call.arguments[i]);
      if (data != nullptr && *data == nullptr) {
        ASSERT_TRUE(outcome.fault);
        EXPECT_EQ(*outcome.fault == faults::ObjectNotSet, names(faults::ObjectNotSet)) << "without a database";
      }
      if (method().arguments[i].name != "Alias") continue;
      alias = outcome.written.substr(0, outcome.written.rfind(';'));
      EXPECT_NE(alias, "") << "the default name is written back, whatever fails";
    }
    if (outcome.fault) {
      EXPECT_TRUE(names(*outcome.fault)) << outcome.fault->number << ' ' << outcome.fault->source << ": "
                                         << outcome.fault->description;
      EXPECT_TRUE(outcome.columns.empty());
      return;
    }
    ++returned;
    EXPECT_EQ(outcome.position, leavesTheCursor(owner(), method()) ? start : 1);
    world.data->MoveFirst();
    EXPECT_EQ(random.run().columns, outcome.columns) << "it depends on where the cursor stood";
    ASSERT_EQ(outcome.columns.size(), method().columns.size());
    for (std::size_t i = 0; i < outcome.columns.size(); ++i) {
      const auto& [name, bits] = outcome.columns[i];
      EXPECT_EQ(name, catalogue::columnName(method().columns[i], alias));
      for (const std::uint64_t value : bits) EXPECT_TRUE(std::isfinite(std::bit_cast<double>(value))) << name;
    }
  });
  EXPECT_GT(returned, callsOfEach() / 120) << "too few of the calls succeed to tell anything";
}

TEST_P(EveryCausalMethod, LooksAtNoLaterRecord) {
  forRandomCalls([&](const std::vector<std::uint8_t>& bytes) {
    const RandomCall random(bytes, owner(), method());
    const World& world = random.world;
    for (const catalogue::Value& argument : random.call.arguments) {
      // A negative period asks for later records.
      if (const auto* number = std::get_if<Integer>(&argument); number != nullptr && *number < 0) return;
    }
    const Integer start = world.data->getPosition();
    const Outcome expected = random.run();
    const auto last = static_cast<std::size_t>(world.count) - 1;
    const auto alter = [&](const std::shared_ptr<Field>& input) {
      if (input != nullptr && input->values().size() > last) input->writableValues()[last] = 17.5;
    };
    std::for_each(world.fields.begin(), world.fields.end(), alter);
    for (int i = 1; i <= world.prices->getFieldCount(); ++i) alter(world.prices->getField(world.prices->getName(i)));
    world.data->setPosition(start);
    const Outcome altered = random.run();
    if (expected.fault || altered.fault) return;
    for (std::size_t i = 0; i < expected.columns.size(); ++i) {
      const auto& [name, rows] = expected.columns[i];
      const auto earlier = static_cast<std::ptrdiff_t>(std::min(rows.size(), last));
      EXPECT_TRUE(std::equal(rows.begin(), rows.begin() + earlier, altered.columns[i].second.begin()))
          << name << " of " << random.describe();
    }
  });
}

TEST_P(EveryMethod, NamesComputedRowsThatCanBeEvaluated) {
  // Each number larger than the one before, so that a span ends after it begins.
  std::vector<catalogue::Value> arguments(method().arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (method().arguments[i].type == catalogue::Type::Integer) arguments[i] = Integer(3 * (i + 1));
  }
  for (const catalogue::Column& column : method().columns) {
    const auto rows = catalogue::computedRows(method(), column, 1000, arguments);
    EXPECT_GE(rows.first, 1) << column.firstRow;
    EXPECT_LE(rows.last, 1000) << column.lastRow;
    EXPECT_LE(rows.first, rows.last) << column.firstRow;
  }
}

INSTANTIATE_TEST_SUITE_P(Catalogue, EveryMethod, testing::ValuesIn(calculations()), nameOf);
INSTANTIATE_TEST_SUITE_P(Catalogue, EveryCausalMethod, testing::ValuesIn(causalCalculations()), nameOf);

TEST(Catalogue, NamesAndIdentifiersAreUnique) {
  std::set<std::array<std::uint8_t, 16>> identifiers;
  std::set<std::string_view> names;
  for (const Class* owner : catalogue::classes()) {
    EXPECT_TRUE(names.insert(owner->name).second) << owner->name;
    EXPECT_TRUE(identifiers.insert(owner->classId.bytes).second) << owner->name;
    EXPECT_TRUE(identifiers.insert(owner->interfaceId.bytes).second) << owner->name;
    EXPECT_FALSE(owner->help.empty()) << owner->name;
    std::set<std::pair<std::string_view, catalogue::Kind>> methods;
    for (const Method* method : owner->methods) {
      EXPECT_TRUE(methods.insert({method->name, method->kind}).second) << owner->name << '.' << method->name;
      EXPECT_FALSE(method->help.empty()) << owner->name << '.' << method->name;
      for (const catalogue::Argument& argument : method->arguments)
        EXPECT_FALSE(argument.help.empty()) << argument.name;
    }
  }
}

}  // namespace
}  // namespace orvex::test
