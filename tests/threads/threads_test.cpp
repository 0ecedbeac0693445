// Four threads compute from one set of columns at a time, each with a database of its own over it. scripts/test threads
// runs it under the thread sanitizer.
#include <gtest/gtest.h>

#include <random>
#include <thread>
#include <vector>

#include "tests/support/calls.h"

namespace orvex::test {
namespace {

/// The same columns, and a cursor of its own.
World withOwnCursor(const World& shared) {
  World own = shared;
  own.data = std::make_shared<Database>(shared.data->getRecordCount());
  own.data->MoveFirst();
  return own;
}

Outcome outcomeOf(Choices choices, const World& shared, const catalogue::Class& owner,
                  const catalogue::Method& method) {
  const World own = withOwnCursor(shared);
  const Call call = makeCall(choices, own, owner, method);
  return run(own, call, owner.create().get());
}

TEST(Threads, MayShareColumnsThatNobodyWritesTo) {
  std::mt19937 generator(4);
  for (int round = 0; round < 5; ++round) {
    const std::vector<std::uint8_t> worldBytes = randomBytes(generator);
    Choices worldChoices(worldBytes);
    const World shared = makeWorld(worldChoices, 500);
    std::vector<std::vector<std::uint8_t>> bytes(4);
    for (auto& each : bytes) each = randomBytes(generator);
    for (const catalogue::Class* owner : catalogue::classes()) {
      if (owner->holdsState) continue;
      for (const catalogue::Method* method : owner->methods) {
        if (method->kind != catalogue::Kind::Method) continue;
        std::vector<Outcome> outcomes(bytes.size());
        {
          std::vector<std::jthread> threads;
          for (std::size_t i = 0; i < bytes.size(); ++i) {
            threads.emplace_back([&, i] { outcomes[i] = outcomeOf(Choices(bytes[i]), shared, *owner, *method); });
          }
        }
        for (std::size_t i = 0; i < bytes.size(); ++i) {
          EXPECT_EQ(outcomes[i], outcomeOf(Choices(bytes[i]), shared, *owner, *method)) << method->name;
        }
      }
    }
  }
}

TEST(Threads, GetTheSameNoteOfAColumnWhichIsMadeWhenItIsAskedFor) {
  for (int round = 0; round < 200; ++round) {
    Field column;
    column.initialize(1, "X");
    std::vector<std::shared_ptr<Note>> notes(4);
    {
      std::vector<std::jthread> threads;
      for (auto& note : notes) {
        threads.emplace_back([&] { note = column.getNote(); });
      }
    }
    for (const auto& note : notes) {
      ASSERT_NE(note, nullptr);
      EXPECT_EQ(note, notes.front());
    }
  }
}

}  // namespace
}  // namespace orvex::test
