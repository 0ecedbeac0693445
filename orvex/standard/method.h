#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "orvex/data/columns.h"
#include "orvex/data/database.h"
#include "orvex/data/error.h"
#include "orvex/data/in_out.h"
#include "orvex/data/integer.h"
#include "orvex/data/object.h"
#include "orvex/standard/computation.h"

/// What every method of `Standard` does before and after it computes.
namespace orvex::inline ORVEX_COUNTS::standard {

/// A text as a template's argument.
template <std::size_t Size>
struct Text {
  consteval Text(const char (&text)[Size]) { std::copy_n(text, Size, characters); }

  char characters[Size];
};

/// The errors of the method of that name.
template <Text name>
class Reports {
  template <std::size_t Size>
  static consteval auto joined(const char (&end)[Size]) {
    constexpr std::string_view begin = "Standard.";
    std::array<char, begin.size() + sizeof name.characters + Size - 1> text{};
    auto at = std::copy(begin.begin(), begin.end(), text.begin());
    at = std::copy_n(name.characters, sizeof name.characters - 1, at);
    std::copy_n(end, Size, at);
    return text;
  }
  static constexpr auto sourceText = joined("");
  static constexpr auto unexpectedText = joined(".UnexpectedError");

 public:
  static constexpr std::string_view source{sourceText.data()};
  static constexpr Fault kind = invalidAverageType(source);
  static constexpr Fault periods = invalidPeriods(source);
  static constexpr Fault factor{1102, source, "Invalid Factor"};
  static constexpr Fault record{1103, source, "Invalid Record"};
  static constexpr Fault choice{1106, source, "Invalid Choice"};
  static constexpr Fault unexpected = unexpectedError(std::string_view(unexpectedText.data()));
};

/// The largest number of records that a period may be.
inline constexpr int LongestPeriods = 100000;

/// The largest number that a multiple or a level may be.
inline constexpr double LargestFactor = 3e37;

/// The numbers of the kinds of average.
inline constexpr int AverageKinds = 9;

/// One call of a method: writes the default name back, checks the arguments in their order, computes under one trap.
template <Text name>
class Method {
  using Raises = Reports<name>;

 public:
  /// Of a method without an alias.
  explicit Method(const std::shared_ptr<Database>& data) : data_(&object(data)) {}
  Method(const std::shared_ptr<Database>& data, InOut<std::string>& Alias) {
    applyDefault(Alias, name.characters);
    alias_ = Alias.get();
    data_ = &object(data);
  }

  /// 1101 for a number of records outside `least` to 100,000.
  const Method& periods(Integer value, int least = 1) const {
    if (value < least || value > LongestPeriods) raise(Raises::periods);
    return *this;
  }
  /// 1100 for a number outside the kinds of average.
  const Method& kind(Integer value) const {
    if (value < 0 || value >= AverageKinds) raise(Raises::kind);
    return *this;
  }
  /// 1102 for a number outside `least` to `greatest`.
  const Method& factor(double value, double least = -LargestFactor, double greatest = LargestFactor) const {
    if (!(value >= least && value <= greatest)) raise(Raises::factor);
    return *this;
  }
  /// 1103 for a number that no record has.
  const Method& record(Integer value) const {
    if (value < 1) raise(Raises::record);
    return *this;
  }
  /// 1106 for a number outside `least` to `greatest`.
  const Method& choice(Integer value, int least, std::size_t greatest) const {
    if (value < least || value > static_cast<int>(greatest)) raise(Raises::choice);
    return *this;
  }

  /// The columns that `body(call)` gives, under the alias and what each adds to it.
  template <class Body>
  std::shared_ptr<RecordSet> compute(Body body) const {
    return evaluate([&](Call& call) { return call.result(alias_, body(call)); });
  }
  /// What `body(call)` gives.
  template <class Body>
  auto evaluate(Body body) const {
    return trap(Raises::unexpected, [&] {
      Call call(*data_);
      return body(call);
    });
  }

 private:
  Database* data_;
  std::string alias_;
};

}  // namespace orvex::inline ORVEX_COUNTS::standard
