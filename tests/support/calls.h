#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "orvex/catalogue/description.h"
#include "orvex/data/error.h"

/// Calls through the catalogue that a string of bytes chooses: which method, on what series, with which arguments. The
/// same bytes make the same call, so it can be made again under other circumstances.
namespace orvex::inline ORVEX_COUNTS::test {

/// Chooses by bytes, one after the other; 0 when they are used up.
class Choices {
 public:
  /// With the edges of counts beyond 16 bits among the numbers, or without them.
  explicit Choices(std::span<const std::uint8_t> bytes, bool wide = ORVEX_COUNT_BITS > 16)
      : bytes_(bytes), wide_(wide) {}

  std::uint8_t byte() {
    if (bytes_.empty()) return 0;
    const std::uint8_t first = bytes_.front();
    bytes_ = bytes_.subspan(1);
    return first;
  }
  /// A number from 0 to `count` - 1.
  std::size_t below(std::size_t count) { return (byte() * 256u + byte()) % count; }
  bool once(std::size_t in) { return below(in) == 0; }
  template <class T>
  const T& of(const std::vector<T>& options) {
    return options[below(options.size())];
  }
  bool exhausted() const { return bytes_.empty(); }
  bool wide() const { return wide_; }

 private:
  std::span<const std::uint8_t> bytes_;
  bool wide_;
};

/// A price series with odd columns beside it, and everything a call can be given.
struct World {
  std::shared_ptr<Database> data;
  std::shared_ptr<RecordSet> prices;
  std::vector<std::shared_ptr<Field>> fields;  // those that can be an argument, null and destroyed ones among them
  int count = 0;
};

/// One of few records, or of `count`.
World makeWorld(Choices& choices);
World makeWorld(Choices& choices, int count);

/// The rows of every field of a world, to see whether a call has changed its inputs.
std::vector<std::vector<std::uint64_t>> contents(const World& world);

/// A method with its arguments.
struct Call {
  const catalogue::Class* owner;
  const catalogue::Method* method;
  std::vector<catalogue::Value> arguments;
};

/// The object whose method is called: one of the world's where the class has any there, otherwise a new one.
std::shared_ptr<void> objectOf(Choices& choices, const World& world, const catalogue::Class& owner);

/// Arguments for a method, plain ones and awkward ones.
Call makeCall(Choices& choices, const World& world, const catalogue::Class& owner, const catalogue::Method& method);

/// What came of a call, down to the bits.
struct Outcome {
  std::optional<Fault> fault;
  int record = 0;  // where the fault was
  std::vector<std::pair<std::string, std::vector<std::uint64_t>>> columns;
  std::string other;    // a note or a plain value, as a text
  std::string written;  // the texts and numbers of the arguments afterwards
  int position = 0;

  bool operator==(const Outcome&) const = default;
};

Outcome run(const World& world, Call call, void* object);

std::ostream& operator<<(std::ostream& out, const Outcome& outcome);

/// A world, an object in it and a call of the object's method: the same for the same bytes.
struct RandomCall {
  /// In a world of `count` records, or of as many as the bytes choose.
  RandomCall(std::span<const std::uint8_t> bytes, const catalogue::Class& owner, const catalogue::Method& method,
             int count = 0)
      : RandomCall(Choices(bytes), owner, method, count) {}
  RandomCall(Choices choices, const catalogue::Class& owner, const catalogue::Method& method, int count = 0);
  ~RandomCall();
  RandomCall(const RandomCall&) = delete;
  RandomCall& operator=(const RandomCall&) = delete;

  Outcome run() const { return test::run(world, call, object.get()); }
  std::string describe() const;

  World world;
  Call call;
  std::shared_ptr<void> object;
};

/// Chosen by chance, enough of them for any call.
std::vector<std::uint8_t> randomBytes(std::mt19937& generator, std::size_t count = 160);

}  // namespace orvex::inline ORVEX_COUNTS::test
