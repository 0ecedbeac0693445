#include "tests/support/calls.h"

#include <algorithm>
#include <limits>
#include <ostream>
#include <sstream>

#include "orvex/data/columns.h"

namespace orvex::inline ORVEX_COUNTS::test {

namespace {

using catalogue::Type;
using catalogue::Value;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

std::uint64_t bitsOf(double value) {
  return __builtin_bit_cast(std::uint64_t, value);
}

/// Prices in cents, few different values, signed zeros, huge ones, ...
enum Kind { Walk, Walk2, FewWholes, Flat, Zero, SignedZeros, Negative, Huge, Tiny, Volumes, Kinds };

std::vector<double> series(Choices& choices, int count, std::size_t kind) {
  const int start = static_cast<int>(choices.below(4000));
  std::uint32_t state = static_cast<std::uint32_t>(choices.below(65536));
  const auto draw = [&](int limit) {
    state = state * 1664525u + 1013904223u;
    return static_cast<int>((state >> 8) % static_cast<unsigned>(limit));
  };
  int walk = 5000 + start;
  const auto next = [&]() -> double {
    walk += draw(201) - 100;
    switch (kind) {
      case FewWholes:
        return draw(4);
      case Flat:
        return start / 8.0;
      case Zero:
        return 0.0;
      case SignedZeros:
        return draw(2) == 0 ? -0.0 : draw(3) == 0 ? 1.0 : 0.0;
      case Negative:
        return -walk / 100.0;
      case Huge:
        return (draw(2000) - 1000) * 1e305;
      case Tiny:
        return draw(1000) * 5e-324;
      case Volumes:
        return draw(5) == 0 ? 0.0 : 1000.0 * draw(1000);
      default:
        return walk / 100.0;
    }
  };
  std::vector<double> values(static_cast<std::size_t>(count));
  std::generate(values.begin(), values.end(), next);
  if (choices.once(6))
    values[choices.below(values.size())] = choices.of<double>({infinity, -infinity, undefined, 1e300, 1e59});
  return values;
}

std::shared_ptr<Field> column(Choices& choices, int count, const std::string& name, std::size_t kind) {
  auto made = makeColumn(count, name);
  const std::vector<double> values = series(choices, count, kind);
  std::copy(values.begin(), values.end(), made->writableValues().begin());
  return made;
}

/// Prices that belong together: the low lowest, the high highest.
void order(RecordSet& prices) {
  const auto rows = [&](const char* name) { return prices.getField(name)->writableValues(); };
  const auto open = rows("Open"), high = rows("High"), low = rows("Low"), close = rows("Close");
  for (std::size_t i = 0; i < open.size(); ++i) {
    high[i] = std::max({high[i], open[i], close[i]});
    low[i] = std::min({low[i], open[i], close[i]});
  }
}

Value number(Choices& choices, const World& world) {
  const int n = world.count;
  const std::vector<int> plain = {1, 2, 3, 5, 8, 14, n / 4, n / 3};
  std::vector<int> awkward = {-32768, -1, 0, n / 2, n - 1, n, n + 1, 181, 182, 16384, 32767};
  // The first squares that 32 bits do not hold, and the first number that they cannot double.
  if (choices.wide() && choices.once(2)) awkward = {Integer::Least, Integer::Greatest, 46340, 46341, 1 << 30};
  return Integer(choices.of(choices.once(3) ? awkward : plain));
}

Value fraction(Choices& choices) {
  return choices.of<double>({0.02, 0.65, 0.2, 1.0, 5.0, 100.0, 0.0, -1.0, 101.0, 1e300, -1e-300, undefined, infinity});
}

Value text(Choices& choices) {
  return choices.of<std::string>(
      {"", "x", "Close", "CMO", "Slope", "RSquared", "Forecast", "Temp", "MA", "EMA", "\xCE\xA9"});
}

/// An array of prices as a host may hand it in.
VariantArray array(Choices& choices, const World& world) {
  if (choices.once(20)) return {};
  if (choices.once(20)) return VariantArray::ofSeveralDimensions(world.count);
  if (choices.once(3)) return series(choices, world.count, choices.below(Kinds));
  std::vector<Cell> cells(static_cast<std::size_t>(world.count), "1.25");
  cells.back() = choices.of<Cell>({Empty{}, Null{}, NoValue{}, 2.5, "\t-1e3x", "1e400"});
  return Array<Cell>(std::move(cells), choices.of<int>({1, 0, -3, 2}));
}

}  // namespace

World makeWorld(Choices& choices) {
  return makeWorld(choices, choices.of<int>({1, 2, 3, 7, 30, 60, 200, 600}));
}

World makeWorld(Choices& choices, int count) {
  World world;
  world.count = count;
  world.prices = std::make_shared<RecordSet>();
  const bool incomplete = choices.once(12);
  const std::size_t common = choices.below(std::size_t{3} * Kinds);
  const auto kind = [&] { return common < Kinds ? common : choices.below(Kinds); };
  for (const auto name : {Database::DateName, Database::OpenName, Database::HighName, Database::LowName,
                          Database::CloseName, Database::VolumeName}) {
    world.prices->addField(column(choices, world.count, std::string(name), kind()));
  }
  if (!choices.once(3)) order(*world.prices);
  world.data = std::make_shared<Database>();
  world.data->RecordsetCache(world.prices);
  world.data->setPosition(static_cast<int>(1 + choices.below(static_cast<std::size_t>(world.count) + 1)));
  world.fields = {world.prices->getField("Close"), world.prices->getField("Close"), world.prices->getField("High"),
                  world.prices->getField("Low"), world.prices->getField("Volume")};
  if (choices.once(3)) {
    auto destroyed = column(choices, world.count, "destroyed", kind());
    destroyed->destroy();
    world.fields = {nullptr,
                    std::make_shared<Field>(),
                    destroyed,
                    column(choices, world.count + 1, "longer", kind()),
                    column(choices, std::max(1, world.count - 2), "shorter", kind()),
                    world.fields[0]};
  }
  if (incomplete) world.prices->removeField(world.prices->getName(static_cast<int>(1 + choices.below(6))));
  if (choices.once(12)) world.prices->addField(column(choices, world.count, "Close", kind()));
  return world;
}

std::vector<std::vector<std::uint64_t>> contents(const World& world) {
  std::vector<std::shared_ptr<Field>> all = world.fields;
  for (int i = 1; i <= world.prices->getFieldCount(); ++i)
    all.push_back(world.prices->getField(world.prices->getName(i)));
  std::vector<std::vector<std::uint64_t>> rows;
  for (const auto& field : all) {
    rows.emplace_back();
    if (field == nullptr) continue;
    for (const double value : field->values()) rows.back().push_back(bitsOf(value));
  }
  return rows;
}

std::shared_ptr<void> objectOf(Choices& choices, const World& world, const catalogue::Class& owner) {
  std::shared_ptr<void> object;
  if (owner.name == "Database") object = world.data;
  if (owner.name == "RecordSet") object = world.prices;
  if (owner.name == "Field") object = choices.of(world.fields);
  return object != nullptr ? object : owner.create();
}

Call makeCall(Choices& choices, const World& world, const catalogue::Class& owner, const catalogue::Method& method) {
  const auto given = [&](const catalogue::Argument& argument) -> Value {
    switch (argument.type) {
      case Type::Database:
        return choices.once(40) ? nullptr : world.data;
      case Type::RecordSet:
        return choices.once(40) ? nullptr : world.prices;
      case Type::Field:
        return choices.of(world.fields);
      case Type::Integer:
        // Every epoch takes as long as the one before.
        return argument.name == "Epochs" ? Integer(choices.of<int>({-1, 0, 1, 2})) : number(choices, world);
      case Type::Long:
        return choices.of<std::int32_t>({0, 1, 4, 121, 2147483647, -7});
      case Type::Double:
        return fraction(choices);
      case Type::String:
        return text(choices);
      case Type::Note:
        return std::make_shared<Note>();
      case Type::VariantArray:
        return array(choices, world);
      default:
        return catalogue::Object();
    }
  };
  Call made{&owner, &method, {}};
  // Of many numbers each must be in its range for a call to get anywhere: most of them are the usual ones.
  const auto fractions = std::count_if(method.arguments.begin(), method.arguments.end(),
                                       [](const auto& argument) { return argument.type == Type::Double; });
  for (const catalogue::Argument& argument : method.arguments) {
    Value value = given(argument);
    if (fractions > 4 && argument.type == Type::Double && !choices.once(6)) value = argument.usual.number;
    if (argument.optional && choices.once(4)) value = catalogue::Missing{};
    made.arguments.push_back(value);
  }
  return made;
}

Outcome run(const World& world, Call call, void* object) {
  Outcome outcome;
  std::ostringstream other;
  try {
    const Value result = catalogue::call(*call.method, object, call.arguments);
    if (const auto* set = std::get_if<std::shared_ptr<RecordSet>>(&result); set != nullptr && *set != nullptr) {
      for (int i = 1; i <= (*set)->getFieldCount(); ++i) {
        auto& [name, bits] = outcome.columns.emplace_back();
        name = (*set)->getName(i);
        for (const double value : (*set)->getField(name)->values()) bits.push_back(bitsOf(value));
      }
    } else if (const auto* note = std::get_if<std::shared_ptr<Note>>(&result); note != nullptr && *note != nullptr) {
      other << (*note)->getPeriod().value() << ' ' << bitsOf((*note)->getValue()) << ' ' << (*note)->getNote();
    } else if (call.method->result == Type::Double) {
      other << bitsOf(std::get<double>(result));
    } else if (call.method->result == Type::Integer || call.method->result == Type::Boolean) {
      other << std::get<std::string>(catalogue::coerce(result, Type::String));
    }
  } catch (const Error& error) {
    outcome.fault = error.fault();
    outcome.record = error.record();
  }
  outcome.other = other.str();
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    if (!call.method->arguments[i].written) continue;
    outcome.written += std::get<std::string>(catalogue::coerce(call.arguments[i], Type::String)) + ';';
  }
  outcome.position = world.data->getPosition().value();
  return outcome;
}

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  out << "position " << outcome.position << ", written " << outcome.written << ' ' << outcome.other;
  if (outcome.fault)
    out << ", error " << outcome.fault->number << ' ' << outcome.fault->source << " at " << outcome.record;
  for (const auto& [name, bits] : outcome.columns) {
    out << "\n  " << name << ':';
    for (const std::uint64_t bit : bits) out << ' ' << __builtin_bit_cast(double, bit);
  }
  return out;
}

RandomCall::RandomCall(Choices choices, const catalogue::Class& owner, const catalogue::Method& method, int count) {
  world = count > 0 ? makeWorld(choices, count) : makeWorld(choices);
  call = makeCall(choices, world, owner, method);
  object = objectOf(choices, world, owner);
}

RandomCall::~RandomCall() {
  // A set and a database that hold each other are the host's to part.
  world.prices->setDatabase(nullptr);
}

std::string RandomCall::describe() const {
  std::ostringstream out;
  out << call.owner->name << '.' << call.method->name;
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    out << ' ' << call.method->arguments[i].name << '=';
    if (const auto* whole = std::get_if<Integer>(&call.arguments[i])) out << whole->value();
    if (const auto* real = std::get_if<double>(&call.arguments[i])) out << *real;
    if (const auto* words = std::get_if<std::string>(&call.arguments[i])) out << '"' << *words << '"';
    if (const auto* field = std::get_if<std::shared_ptr<Field>>(&call.arguments[i])) {
      out << (*field == nullptr ? "nothing" : (*field)->getName());
    }
  }
  out << " on " << world.count << " records";
  return out.str();
}

std::vector<std::uint8_t> randomBytes(std::mt19937& generator, std::size_t count) {
  std::vector<std::uint8_t> bytes(count);
  std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<std::uint8_t>(generator()); });
  return bytes;
}

}  // namespace orvex::inline ORVEX_COUNTS::test
