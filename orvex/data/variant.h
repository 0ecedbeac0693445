#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "orvex/data/error.h"

namespace orvex::inline ORVEX_COUNTS {

/// The value that is none: what a method returns that promises a value and has nothing to tell.
struct Empty {
  friend bool operator==(Empty, Empty) = default;
};

/// The marker of a value that is not known. It takes part in no computation: error 94.
struct Null {
  friend bool operator==(Null, Null) = default;
};

/// An element of an array that is no value, such as an array, an error or an object: what it raises where it is to be a
/// number.
struct NoValue {
  Fault fault = faults::TypeMismatch;
  friend bool operator==(const NoValue&, const NoValue&) = default;
};

/// A one-dimensional array with a lower bound of its own, or no array at all.
template <class T>
class Array {
 public:
  /// No array.
  Array() = default;
  explicit Array(std::vector<T> elements, int lowerBound = 1)
      : elements_(std::move(elements)), lowerBound_(lowerBound), exists_(true) {}

  bool exists() const noexcept { return exists_; }
  /// The bounds raise error 9 where there is no array, and error 6 where an int cannot tell them. An array without
  /// elements ends one below its beginning.
  int lowerBound() const {
    if (!exists_) raise(faults::SubscriptOutOfRange);
    return lowerBound_;
  }
  int upperBound() const {
    const std::int64_t bound = std::int64_t{lowerBound()} + static_cast<std::int64_t>(elements_.size()) - 1;
    if (!std::in_range<int>(bound)) raise(faults::Overflow);
    return static_cast<int>(bound);
  }
  /// The element at `index`, counted from the lower bound; error 9 outside the bounds.
  const T& at(int index) const {
    const std::int64_t place = std::int64_t{index} - lowerBound_;
    if (!exists_ || place < 0 || place >= static_cast<std::int64_t>(elements_.size())) {
      raise(faults::SubscriptOutOfRange);
    }
    return elements_[static_cast<std::size_t>(place)];
  }
  std::span<const T> elements() const noexcept { return elements_; }

 private:
  std::vector<T> elements_;
  int lowerBound_ = 1;
  bool exists_ = false;
};

/// One element of an array that a host hands in: a number, or whatever else the host has, as its text.
using Cell = std::variant<Empty, Null, double, std::string, NoValue>;

/// What a host hands in where an array of prices is expected: an array of numbers, of texts or of mixed elements with
/// any lower bound; or something else, which fails when it is used as an array.
class VariantArray {
 public:
  /// A value that is no array, or one that cannot be read: its bounds and its elements raise the fault.
  explicit VariantArray(const Fault& fault) : content_(fault) {}
  VariantArray() : VariantArray(faults::TypeMismatch) {}
  VariantArray(Array<double> numbers) : content_(std::move(numbers)) {}
  VariantArray(Array<Cell> cells) : content_(std::move(cells)) {}
  VariantArray(std::vector<double> numbers) : VariantArray(Array<double>(std::move(numbers))) {}

  /// An array of several dimensions: it tells the upper bound of its first one, and no single index reaches an element.
  static VariantArray ofSeveralDimensions(int upperBound) {
    VariantArray array;
    array.content_ = upperBound;
    return array;
  }

  int upperBound() const;
  /// Element `index` as a number: a number as it is, a text as far as it begins with one, `Empty` as 0, `Null` as
  /// error 94.
  double number(int index) const;

 private:
  std::variant<Fault, int, Array<double>, Array<Cell>> content_;
};

}  // namespace orvex::inline ORVEX_COUNTS
