#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "orvex/catalogue/description.h"

/// Calls that name only what their caller wants otherwise than usual. Automation has no part in it: to its clients an
/// argument that is not optional stays one that must be given.
namespace orvex::inline ORVEX_COUNTS::catalogue {

/// Of an argument that was left out where nothing else stands for it.
inline constexpr Fault ArgumentNotOptional{449, faults::Library, "Argument not optional"};

/// The usual value of an argument on a series of `count` records: of its type, the column's name where it is a field,
/// the default where it is optional. `Missing` where there is none.
Value usualOf(const Argument& argument, int count);

/// An argument that was given its usual value, and the value as a text.
struct Taken {
  const Argument* argument;
  std::string value;
};

/// Makes a call whole that says only what differs from the usual: what is `Missing` becomes the database, its set of
/// prices, the column of the usual name in that set, or the usual value. Returns the arguments that were given a usual
/// value, in their order; optional ones are left to `call`, and so is what has no usual value. Errors: 1105, caused
/// by 1110, for a column that the database does not have. REQUIRES: as many values as the method has arguments.
std::vector<Taken> takeUsual(const Method& method, std::span<Value> arguments, const std::shared_ptr<Database>& data);

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
