#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <string_view>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS {

/// What a failure tells its caller: a number, the place that reports it and a sentence. The texts are views of
/// literals, so a fault can be a constant, and raising one allocates nothing of its own.
struct Fault {
  std::int32_t number;
  std::string_view source;
  std::string_view description;

  friend bool operator==(const Fault&, const Fault&) = default;
};

/// What every method and object of the library throws; the price reader has its own (prices/read_error.h). Only where
/// memory runs out with no trap armed, the standard's own comes through: `currentFault` has a number for that too.
///
/// Beside the fault that its caller is told, an error keeps what went wrong inside and in which record. All of it is
/// held by value: raising one allocates nothing of its own.
class Error : public std::exception {
 public:
  explicit Error(const Fault& fault) noexcept : Error(fault, fault, 0) {}
  /// The report of a trap on another fault, that of a record where one is known.
  Error(const Fault& report, const Fault& cause, int record) noexcept;
  /// The same on another error.
  Error(const Fault& report, const Error& inner) noexcept : Error(report, inner.cause_, inner.record_) {
    isOfMemory_ = inner.isOfMemory_;
  }
  /// The report of a trap on memory that ran out.
  static Error ofMemory(const Fault& report) noexcept;

  const Fault& fault() const noexcept { return fault_; }
  std::int32_t number() const noexcept { return fault_.number; }
  std::string_view source() const noexcept { return fault_.source; }
  std::string_view description() const noexcept { return fault_.description; }

  /// The fault that was met first, inside all traps; where there was none, `fault` itself.
  const Fault& cause() const noexcept { return cause_; }
  /// The record of the caller's series that was being computed; 0 where it was none.
  int record() const noexcept { return record_; }
  /// Whether it was the system that had no memory: the same call may do another time.
  bool isOfMemory() const noexcept { return isOfMemory_; }
  /// The description, and in brackets the cause and the record as far as they tell more.
  const char* what() const noexcept override { return text_.data(); }

  /// For loops over records: the record, where the loop inside has not told it.
  void setRecord(int record) noexcept;
  /// For calls on a part of a series: what to add to the record to make it one of the whole.
  void moveRecord(int distance) noexcept;

 private:
  void writeText() noexcept;

  Fault fault_;
  Fault cause_;
  int record_;
  bool isOfMemory_ = false;
  std::array<char, 160> text_;
};

/// The ordinary run-time errors, which reach a caller only where no trap is armed.
namespace faults {
inline constexpr std::string_view Library = "Orvex";
inline constexpr Fault InvalidCall{5, Library, "Invalid procedure call or argument"};
inline constexpr Fault Overflow{6, Library, "Overflow"};
inline constexpr Fault OutOfMemory{7, Library, "Out of memory"};
inline constexpr Fault SubscriptOutOfRange{9, Library, "Subscript out of range"};
inline constexpr Fault DivisionByZero{11, Library, "Division by zero"};
inline constexpr Fault TypeMismatch{13, Library, "Type mismatch"};
inline constexpr Fault Internal{51, Library, "Internal error"};
inline constexpr Fault FileNotFound{53, Library, "File not found"};
inline constexpr Fault DeviceError{57, Library, "Device I/O error"};
inline constexpr Fault FileAccess{75, Library, "Path/File access error"};
inline constexpr Fault PathNotFound{76, Library, "Path not found"};
inline constexpr Fault ObjectNotSet{91, Library, "Object variable not set"};
inline constexpr Fault InvalidUseOfNull{94, Library, "Invalid use of Null"};
}  // namespace faults

/// The report that an indicator method's trap makes of any fault inside it. The spelling is the published one.
constexpr Fault unexpectedError(std::string_view source) {
  return {1105, source, "An unexpected error has occured"};
}

/// The reports of arguments that are checked before a method's trap is armed; the source is class and method.
constexpr Fault invalidAverageType(std::string_view source) {
  return {1100, source, "Invalid Moving Average Type"};
}
constexpr Fault invalidPeriods(std::string_view source) {
  return {1101, source, "Invalid Periods"};
}
constexpr Fault invalidStartPeriod(std::string_view source) {
  return {1010, source, "Invalid start period"};
}
constexpr Fault invalidEndPeriod(std::string_view source) {
  return {1010, source, "Invalid end period"};
}
constexpr Fault invalidPeriod(std::string_view source) {
  return {1010, source, "Invalid period"};
}

/// The report that an indicator makes of a fault of the moving average that it builds on.
constexpr Fault averageError(std::string_view source) {
  return {1104, source, "Error calculating moving average"};
}

/// The report of a row accessor for a row outside its column. The spelling is the published one.
constexpr Fault outOfBounds(std::string_view source) {
  return {1105, source, "An unexpected out of bounds error has occured"};
}

[[noreturn]] void raise(const Fault& fault);

/// Tells what the exception being handled is: an `Error`'s own fault, or the run-time error that stands for it.
/// REQUIRES: called from inside a catch clause.
Fault currentFault() noexcept;

/// Raises the report on the exception being handled. REQUIRES: called from inside a catch clause.
[[noreturn]] void raiseReport(const Fault& report);

/// The one error trap: runs `body` and turns whatever fault leaves it into `report`.
template <class Body>
decltype(auto) trap(const Fault& report, Body&& body) {
  try {
    return body();
  } catch (...) {
    raiseReport(report);
  }
}

/// Runs `body` on the part of a series that begins with the record `first`: an error tells the record of the series.
template <class Body>
decltype(auto) onPart(int first, Body&& body) {
  try {
    return body();
  } catch (Error& error) {
    error.moveRecord(first - 1);
    throw;
  }
}

}  // namespace orvex::inline ORVEX_COUNTS
