#pragma once

#include <memory>
#include <vector>

#include "tests/support/calls.h"

namespace orvex::test {

/// Calls all methods, one after the other on shared objects, and does what a host must not from inside a yield: it
/// moves the cursor, re-initialises, destroys, renames, removes and lets go of the objects in use, and calls again.
/// Ends the program where a call gives what none may.
class MisbehavingHost {
 public:
  explicit MisbehavingHost(Choices choices);
  ~MisbehavingHost();
  MisbehavingHost(const MisbehavingHost&) = delete;
  MisbehavingHost& operator=(const MisbehavingHost&) = delete;

  /// How many calls it has made.
  int run();

 private:
  void callOne();
  void misbehave();

  Choices choices_;
  World world_;
  std::vector<std::shared_ptr<RecordSet>> sets_;
  int depth_ = 0;
  int calls_ = 0;
};

}  // namespace orvex::test
