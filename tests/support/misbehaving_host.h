#pragma once

#include "tests/support/calls.h"

namespace orvex::inline ORVEX_COUNTS::test {

/// Calls all methods, one after the other on shared objects, and does what a host must not from inside a yield: it
/// moves the cursor, re-initialises, destroys, renames, removes and lets go of the objects in use, and calls again.
/// Ends the program where a call gives what none may. Returns how many calls it has made.
int runMisbehavingHost(const Choices& choices);

}  // namespace orvex::inline ORVEX_COUNTS::test
