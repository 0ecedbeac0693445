#pragma once

#include <cstddef>
#include <limits>

/// The operator new of a test program that counts the bytes in use and refuses when it is told to. What it hands out
/// is full of numbers that are none, so that a row which nobody has written shows. For programs of one thread.
namespace allocations {

inline constexpr long unlimited = std::numeric_limits<long>::max();

/// How many allocations succeed from now on.
inline long left = unlimited;

inline std::size_t inUse = 0;
/// The most bytes in use since it was last set.
inline std::size_t mostInUse = 0;

}  // namespace allocations
