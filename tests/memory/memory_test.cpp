// What every method does with memory: how much it takes, and what happens when there is none.
#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <random>

#include "tests/support/allocations.h"
#include "tests/support/calls.h"
#include "tests/support/file.h"

namespace orvex::test {
namespace {

using catalogue::Class;
using catalogue::Method;
using catalogue::Value;
using namespace allocations;

/// Runs `body` with memory for so many allocations only. Tells whether it ended in an error.
template <class Body>
bool fails(long count, Body body) {
  bool failed = false;
  left = count;
  try {
    body();
  } catch (const Error&) {
    failed = true;
  } catch (const std::bad_alloc&) {
    failed = true;
  }
  left = unlimited;
  return failed;
}

/// `check(bytes, owner, method)` with random calls of each method, until as many as are asked for were of use to it.
template <class Check>
void forEveryMethod(int wanted, Check check) {
  for (const Class* owner : catalogue::classes()) {
    for (const Method* method : owner->methods) {
      // It takes a file, and has a test of its own.
      if (method->name == "OpenDataBase") continue;
      SCOPED_TRACE(std::string(owner->name) + '.' + std::string(method->name));
      std::mt19937 generator(20);
      int used = 0;
      for (int i = 0; i < 400 && used < wanted; ++i) {
        if (check(randomBytes(generator), *owner, *method)) ++used;
      }
      EXPECT_EQ(used, wanted) << "calls of use";
    }
  }
}

TEST(Memory, ThatRunsOutFailsTheCallAndNothingElse) {
  forEveryMethod(3, [](const std::vector<std::uint8_t>& bytes, const Class& owner, const Method& method) {
    const Outcome expected = RandomCall(bytes, owner, method, 60).run();
    if (expected.fault) return false;
    bool failed = true;
    for (long count = 0; failed && !testing::Test::HasFailure(); ++count) {
      SCOPED_TRACE("with memory for " + std::to_string(count) + " allocations");
      const std::size_t before = inUse;
      {
        RandomCall starved(bytes, owner, method, 60);
        const auto inputs = contents(starved.world);
        const Integer position = starved.world.data->getPosition();
        {
          std::vector<Value> arguments = starved.call.arguments;
          failed = fails(count, [&] { catalogue::call(method, starved.object.get(), arguments); });
        }
        if (!owner.holdsState) {
          EXPECT_EQ(contents(starved.world), inputs);
        }
        if (failed) {
          starved.world.data->setPosition(position);
          EXPECT_EQ(starved.run(), expected) << "the same call again";
        }
      }
      EXPECT_EQ(inUse, before) << "a leak";
    }
    return true;
  });
}

TEST(Memory, ThatRunsOutFailsTheLoadOfAFile) {
  const File file("a date that is longer than a short string,1,2,3,4,5\n\x80,6,7,8,9,10\n");
  int failures = 0;
  for (bool failed = true; failed && !HasFailure();) {
    const std::size_t before = inUse;
    {
      Database data;
      failed = fails(failures, [&] { data.OpenDataBase(file.path(), ","); });
      if (failed) data.OpenDataBase(file.path(), ",");
      EXPECT_EQ(data.getRecordset()->getValue("Volume", 2), 10);
    }
    EXPECT_EQ(inUse, before) << "a leak";
    if (failed) ++failures;
  }
  EXPECT_GT(failures, 10);
}

TEST(Memory, OfAFileThatIsTooLongIsThatOfTheRecordsThatASeriesHolds) {
  for (const std::string end : {"\n", "\r", "\r\n"}) {
    std::string lines;
    for (int i = 0; i < 8'000'000; ++i) lines += end;
    const File file(lines);
    Database data;
    const std::size_t before = mostInUse = inUse;
    std::string description;
    try {
      data.OpenDataBase(file.path(), ",");
    } catch (const Error& error) {
      description = error.description();
    }
    EXPECT_EQ(description, faults::Overflow.description);
    EXPECT_LE(mostInUse - before, (std::size_t{1} << 22) + 65536);
  }
}

TEST(Memory, OfACallIsItsResultAndEightColumnsAtMost) {
  // Long periods of many records take too much time, and the network grows with the square of its period.
  for (const int count : {32765, 3000}) {
    const std::size_t most = 8 * static_cast<std::size_t>(count) * sizeof(double) + 65536;
    forEveryMethod(count > 3000 ? 1 : 3,
                   [&](const std::vector<std::uint8_t>& bytes, const Class& owner, const Method& method) {
                     const int longest = count > 3000 || method.name == "NeuralIndicator" ? 20 : 32767;
                     RandomCall prepared(bytes, owner, method, count);
                     std::vector<Value>& arguments = prepared.call.arguments;
                     for (const Value& argument : arguments) {
                       if (const auto* whole = std::get_if<Integer>(&argument); whole != nullptr && *whole > longest)
                         return false;
                     }
                     const std::size_t before = mostInUse = inUse;
                     Value result;
                     if (fails(unlimited, [&] { result = catalogue::call(method, prepared.object.get(), arguments); }))
                       return false;
                     EXPECT_LE(mostInUse, std::max(inUse, before) + most) << prepared.describe();
                     return true;
                   });
  }
}

}  // namespace
}  // namespace orvex::test
