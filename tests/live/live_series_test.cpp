// What holds for every method that is kept on a live series: whatever is appended and revised, its result is that of a
// fresh call on the same prices.
#include "orvex/live/live_series.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "orvex/catalogue/call_on_values.h"
#include "orvex/catalogue/usual.h"
#include "orvex/kernels/kernels.h"
#include "tests/support/series.h"
#include "tests/support/times.h"

namespace orvex::test {
namespace {

using catalogue::Class;
using catalogue::Method;
using catalogue::RowRange;
using catalogue::Type;
using catalogue::Value;
using kernels::Level;

int sequencesOfEach() {
  return timesOfEach("ORVEX_SEQUENCES", 1000);
}

struct Named {
  const Class* owner;
  const Method* method;

  std::string name() const { return std::string(owner->name).append(".").append(method->name); }
};

void PrintTo(const Named& named, std::ostream* out) {
  *out << named.name();
}

/// The methods that return columns.
std::vector<Named> columnMethods() {
  std::vector<Named> all;
  for (const Class* owner : catalogue::classes()) {
    for (const Method* method : owner->methods) {
      if (catalogue::isCalculation(*owner, *method) && method->result == Type::RecordSet) {
        all.push_back({owner, method});
      }
    }
  }
  return all;
}

/// The prices as a caller has them, to compare with.
struct Prices {
  std::vector<Bar> bars;

  std::shared_ptr<Database> database() const {
    std::array<std::vector<double>, 5> columns;
    for (const Bar& bar : bars) {
      const double values[] = {bar.open, bar.high, bar.low, bar.close, bar.volume};
      for (std::size_t i = 0; i < columns.size(); ++i) columns[i].push_back(values[i]);
    }
    auto data = std::make_shared<Database>();
    const auto rows = [](const std::vector<double>& column) { return Rows<double>{column, nullptr}; };
    data->OpenDatabaseByRows({.open = rows(columns[0]),
                              .high = rows(columns[1]),
                              .low = rows(columns[2]),
                              .close = rows(columns[3]),
                              .volume = rows(columns[4])});
    return data;
  }

  Prices firstOnes(std::size_t count) const {
    return {{bars.begin(), bars.begin() + static_cast<std::ptrdiff_t>(count)}};
  }

  void appendTo(LiveSeries& series, std::size_t first) const {
    const Prices added{{bars.begin() + static_cast<std::ptrdiff_t>(first), bars.end()}};
    const auto set = added.database()->getRecordset();
    const auto rows = [&](std::string_view name) { return set->getField(name)->rows(); };
    series.append({.open = rows(Database::OpenName),
                   .high = rows(Database::HighName),
                   .low = rows(Database::LowName),
                   .close = rows(Database::CloseName),
                   .volume = rows(Database::VolumeName)});
  }
};

PriceRecord recordOf(const Bar& bar) {
  return {bar.open, bar.high, bar.low, bar.close, bar.volume};
}

/// What a call has given.
struct Given {
  std::optional<Error> error;
  std::vector<std::string> names;
  std::vector<std::vector<double>> rows;
  std::vector<RowRange> computed;
  std::size_t count = 0;

  /// What was given of the first records.
  Given asOf(std::size_t records) const {
    Given given = *this;
    given.count = records;
    for (std::vector<double>& column : given.rows) column.resize(records);
    for (RowRange& range : given.computed) range.last -= static_cast<int>(count - records);
    return given;
  }
};

/// A call by the texts and numbers of its arguments, which may take the first column of another.
struct Call {
  Named method;
  std::vector<Value> values;  // one for each argument: a number, a text, the name of a price column, or `Missing`
  const Call* source = nullptr;

  std::shared_ptr<const LiveResult> keep(LiveSeries& series, const std::shared_ptr<const LiveResult>& taken) const {
    std::vector<LiveSeries::Argument> arguments;
    for (std::size_t i = 0; i < values.size(); ++i) {
      const std::string_view name = method.method->arguments[i].name;
      if (const auto* whole = std::get_if<Integer>(&values[i])) arguments.emplace_back(name, whole->value());
      if (const auto* real = std::get_if<double>(&values[i])) arguments.emplace_back(name, *real);
      if (const auto* text = std::get_if<std::string>(&values[i])) {
        if (*text == "taken") {
          arguments.emplace_back(name, taken);
        } else {
          arguments.emplace_back(name, *text);
        }
      }
    }
    return series.keep(method.name(), arguments);
  }

  /// Whether records that are new are all that is computed.
  bool continues() const {
    const auto& columns = method.method->columns;
    const bool hasRecords =
        std::any_of(columns.begin(), columns.end(), [](const auto& column) { return column.record; });
    for (std::size_t i = 0; i < values.size(); ++i) {
      const auto* number = std::get_if<Integer>(&values[i]);
      if (number != nullptr && *number < 1 && method.method->arguments[i].choices.empty()) return false;
    }
    return !method.method->recomputed && (source == nullptr || (source->continues() && !hasRecords));
  }

  /// The result of a fresh call, on what its source gives or on part of what that `gave` on more records.
  Given on(const Prices& prices, const std::optional<Given>& gave = std::nullopt) const {
    Given given;
    std::optional<Given> taken;
    if (source != nullptr) {
      taken = gave ? gave->asOf(prices.bars.size()) : source->on(prices);
      if (taken->error) {
        given.error = taken->error;
        return given;
      }
    }
    given.count = prices.bars.size();
    const int count = static_cast<int>(given.count);
    const auto data = count == 0 ? std::make_shared<Database>(0) : prices.database();
    if (count == 0) data->MoveFirst();
    std::vector<Value> arguments = values;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      const catalogue::Argument& argument = method.method->arguments[i];
      if (argument.type == Type::Database) arguments[i] = data;
      if (argument.type == Type::RecordSet) arguments[i] = count == 0 ? empty() : data->getRecordset();
      if (argument.type == Type::Field) arguments[i] = column(std::get<std::string>(values[i]), data, taken);
      if (std::holds_alternative<catalogue::Missing>(arguments[i])) {
        arguments[i] = catalogue::usualOf(argument, count);
      }
    }
    try {
      const auto object = method.owner->create();
      Value result;
      if (taken) {
        catalogue::ValuedCall called = catalogue::callOnValues(*method.method, object.get(), arguments);
        result = called.result;
        given.computed = called.computed;
      } else {
        result = catalogue::call(*method.method, object.get(), arguments);
        for (const catalogue::Column& one : method.method->columns) {
          given.computed.push_back(catalogue::computedRows(*method.method, one, count, arguments));
        }
      }
      for (const auto& field : std::get<std::shared_ptr<RecordSet>>(result)->fields()) {
        given.names.push_back(field->getName());
        given.rows.emplace_back(field->values().begin(), field->values().end());
      }
    } catch (const Error& error) {
      given.error = error;
    }
    return given;
  }

 private:
  static std::shared_ptr<RecordSet> empty() {
    auto set = std::make_shared<RecordSet>();
    for (const std::string_view name : Database::PriceNames) set->addField(none(name));
    return set;
  }
  static std::shared_ptr<Field> none(std::string_view name) {
    auto field = std::make_shared<Field>();
    field->setName(name);
    return field;
  }

  /// A price column, or the first one that was taken, without values where it is not computed.
  static std::shared_ptr<Field> column(const std::string& name, const std::shared_ptr<Database>& data,
                                       const std::optional<Given>& taken) {
    if (data->getRecordCount() == 0) return none(name);
    if (name != "taken") return data->getRecordset()->getField(name);
    auto made = field(taken->rows[0], taken->names[0]);
    for (int row = 1; row <= data->getRecordCount(); ++row) {
      if (!taken->computed[0].contains(row)) made->setValue(row, notANumber);
    }
    return made;
  }
};

class Chance {
 public:
  explicit Chance(unsigned seed) : generator_(seed) {}

  int below(int count) { return static_cast<int>(generator_() % static_cast<unsigned>(count)); }
  bool once(int in) { return below(in) == 0; }
  template <class T>
  T of(std::initializer_list<T> options) {
    return options.begin()[below(static_cast<int>(options.size()))];
  }

 private:
  std::mt19937 generator_;
};

/// Bars of one kind: a walk in cents, few different values, one value, nothing, and now and then what is no price.
class Bars {
 public:
  /// What is not a number at the beginning or the end of a column has another meaning to a call on a kept column.
  Bars(Chance& chance, bool undefined)
      : chance_(chance), kind_(chance.below(8)), odd_(chance.of({0, 0, 0, 40, 10})), undefined_(undefined) {}

  Bar next() {
    Bar bar{value(), value(), value(), value(), chance_.once(kind_ < 3 ? 4 : 50) ? 0.0 : 100.0 * chance_.below(50)};
    if (kind_ != 7) {
      bar.high = std::max({bar.open, bar.high, bar.low, bar.close});
      bar.low = std::min({bar.open, bar.high, bar.low, bar.close});
    }
    if (odd_ > 0 && chance_.once(odd_)) {
      double* const values[] = {&bar.open, &bar.high, &bar.low, &bar.close, &bar.volume};
      double gap = infinity;
      if (undefined_) gap = notANumber;
      *values[chance_.below(5)] = chance_.of({infinity, -infinity, gap, 1e300, 0.0, -0.0, -3.0});
    }
    return bar;
  }

 private:
  double value() {
    walk_ += chance_.below(201) - 100;
    switch (kind_) {
      case 0:
        return chance_.below(4);
      case 1:
        return chance_.once(4) ? 8.25 : 8.0;
      case 2:
        return chance_.once(30) ? 1.0 : 0.0;
      default:
        return walk_ / 100.0;
    }
  }

  Chance& chance_;
  int kind_;
  int odd_;
  bool undefined_;
  int walk_ = 9000;
};

Call randomCall(Chance& chance, const Named& named, bool takes) {
  Call call{named, {}};
  for (const catalogue::Argument& argument : named.method->arguments) {
    Value value = catalogue::Missing{};
    switch (argument.type) {
      case Type::Field:
        value =
            takes && chance.once(2) ? std::string("taken") : chance.of<std::string>({"Close", "High", "Low", "Volume"});
        break;
      case Type::Integer:
        value = Integer(chance.once(6) ? chance.of({-3, -1, 0, 25, 60, 1000}) : chance.of({1, 2, 3, 4, 5, 7, 9, 14}));
        if (!argument.choices.empty() && !chance.once(4)) {
          value = Integer(
              argument.choices[static_cast<std::size_t>(chance.below(static_cast<int>(argument.choices.size())))].code);
        }
        if (argument.name == "Epochs") value = Integer(chance.of({0, 1, 2}));
        if (argument.usual.given && chance.once(4)) value = catalogue::Missing{};
        break;
      case Type::Double:
        value = chance.of({0.02, 0.2, 0.5, 0.65, 1.0, 2.0, 5.0, 0.0, -1.0, 150.0});
        break;
      case Type::String:
        value = chance.of<std::string>({"", "x", "Close", "CMO", "Slope", "RSquared", "Forecast", "Temp", "MA", "EMA"});
        break;
      default:
        break;
    }
    call.values.push_back(value);
  }
  return call;
}

bool sameBits(std::span<const double> a, std::span<const double> b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](double x, double y) {
    return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y);
  });
}

/// What is there where a call fails at a record: what it gives on the most records for which it does not, of those that
/// are more than it had `before`; else what it had. Its source may need more records than those to give anything.
Given beforeTheFault(const Call& call, const Prices& prices, const Error& error, const Given& before) {
  if (error.record() <= static_cast<int>(before.count)) return before;
  std::size_t most = prices.bars.size() - 1;
  std::optional<Given> gave;
  if (call.source != nullptr) {
    gave = call.source->on(prices);
    if (gave->error) gave = beforeTheFault(*call.source, prices, *gave->error, {});
    most = std::min(most, gave->count);
  }
  for (std::size_t count = most; count > before.count; --count) {
    Given given = call.on(prices.firstOnes(count), gave);
    if (!given.error) return given;
  }
  return before;
}

/// Whether a change left a call with the fault that it had, which records that follow leave it with.
bool sameFault(const Error& a, const Error& b) {
  return a.record() == b.record() && a.fault() == b.fault() && std::string_view(a.what()) == b.what();
}

/// Expects of a kept result the error of a fresh call, if any, and what is `shown` beside it.
void expectSame(const LiveResult& kept, const Given& fresh, const Given& shown) {
  ASSERT_EQ(kept.error().has_value(), fresh.error.has_value())
      << (fresh.error ? fresh.error->what() : kept.error()->what());
  if (fresh.error) {
    EXPECT_EQ(kept.error()->fault(), fresh.error->fault());
    EXPECT_STREQ(kept.error()->what(), fresh.error->what());
    EXPECT_EQ(kept.error()->record(), fresh.error->record());
  }
  ASSERT_EQ(kept.columns().size(), shown.rows.size());
  for (std::size_t i = 0; i < shown.rows.size(); ++i) {
    const Field& column = *kept.columns()[i];
    EXPECT_EQ(column.getName(), shown.names[i]);
    EXPECT_EQ(kept.computed()[i].first, shown.computed[i].first) << shown.names[i];
    EXPECT_EQ(kept.computed()[i].last, shown.computed[i].last) << shown.names[i];
    EXPECT_EQ(static_cast<std::size_t>(kept.count()), shown.rows[i].size());
    if (sameBits(column.values(), shown.rows[i])) continue;
    const auto rows = column.values();
    ASSERT_EQ(rows.size(), shown.rows[i].size()) << shown.names[i];
    for (std::size_t row = 0; row < rows.size(); ++row) {
      EXPECT_EQ(std::bit_cast<std::uint64_t>(rows[row]), std::bit_cast<std::uint64_t>(shown.rows[i][row]))
          << shown.names[i] << ", record " << row + 1 << ": " << rows[row] << " instead of " << shown.rows[i][row];
      if (testing::Test::HasFailure()) return;
    }
  }
}

/// Expects computed rows of continued calls to stay as they are when records follow, so that whoever is given many at
/// once can tell what each alone would have brought.
void expectStanding(const Given& before, const Given& after) {
  const int added = static_cast<int>(after.count - before.count);
  for (std::size_t i = 0; i < before.rows.size(); ++i) {
    const auto [first, last] = before.computed[i];
    const int firstThen = std::min(after.computed[i].first, static_cast<int>(before.count) + 1);
    const int lastThen = std::max(after.computed[i].last - added, 0);
    if (first > last) {
      EXPECT_GT(firstThen, lastThen) << after.names[i];
      continue;
    }
    EXPECT_EQ(firstThen, first) << after.names[i];
    EXPECT_EQ(lastThen, last) << after.names[i];
    const auto from = static_cast<std::size_t>(first - 1), count = static_cast<std::size_t>(last) - from;
    EXPECT_TRUE(sameBits(std::span(before.rows[i]).subspan(from, count), std::span(after.rows[i]).subspan(from, count)))
        << after.names[i];
  }
}

std::string describe(const Call& call) {
  std::string text = call.method.name();
  for (std::size_t i = 0; i < call.values.size(); ++i) {
    const Value& value = call.values[i];
    text.append(" ").append(call.method.method->arguments[i].name).append("=");
    if (!std::holds_alternative<catalogue::Missing>(value)) {
      text += std::get<std::string>(catalogue::coerce(value, Type::String));
    }
  }
  return call.source == nullptr ? text : text + " of " + describe(*call.source);
}

class EveryKeptMethod : public testing::TestWithParam<Named> {
 protected:
  void TearDown() override { kernels::setLevel(kernels::widestLevel()); }
};

/// Makes a sequence of changes; tells how many of the results were no errors.
int followChanges(const Named& named, unsigned seed) {
  Chance chance(seed);
  static const std::vector<Named> sources = columnMethods();
  const Level level = chance.of({Level::Off, Level::Baseline, Level::Avx2, Level::Avx512});
  const Level freshLevel = chance.of({Level::Off, Level::Avx512});
  const bool takes = chance.once(3) && named.method->arguments.size() > 1;
  Call source =
      randomCall(chance, sources[static_cast<std::size_t>(chance.below(static_cast<int>(sources.size())))], false);
  Call call = randomCall(chance, named, takes);
  const bool taken = std::any_of(call.values.begin(), call.values.end(), [](const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr && *text == "taken";
  });
  if (taken) call.source = &source;

  Bars bars(chance, !taken);
  Prices prices;
  const int begin = chance.of({0, 0, 1, 2, 5, 20, 40, 70});
  for (int i = 0; i < begin; ++i) prices.bars.push_back(bars.next());
  kernels::setLevel(level);
  LiveSeries series;
  if (begin > 0) prices.appendTo(series, 0);
  const auto keptSource = taken ? source.keep(series, nullptr) : nullptr;
  const auto kept = call.keep(series, keptSource);
  Given shown;
  int succeeded = 0;
  bool revised = false;
  std::optional<Error> fault;
  std::string changes = "began with " + std::to_string(begin);
  for (int change = 0; change < 10; ++change) {
    kernels::setLevel(freshLevel);
    const Given fresh = call.on(prices);
    SCOPED_TRACE("sequence " + std::to_string(seed) + ": " + describe(call) + "; " + changes);
    if (!fresh.error) {
      if (call.continues() && !revised && !shown.rows.empty()) expectStanding(shown, fresh);
      shown = fresh;
      revised = false;
    } else if (call.continues() && !(fault && sameFault(*fault, *fresh.error))) {
      shown = beforeTheFault(call, prices, *fresh.error, shown);
    }
    fault = fresh.error;
    kernels::setLevel(level);
    expectSame(*kept, fresh, shown);
    if (testing::Test::HasFailure()) return 0;
    if (!fresh.error) ++succeeded;
    const int what = chance.below(6);
    if (what == 0) {
      const std::size_t first = prices.bars.size();
      const int added = chance.of({2, 3, 20, 45});
      for (int i = 0; i < added; ++i) prices.bars.push_back(bars.next());
      prices.appendTo(series, first);
      changes += ", added " + std::to_string(added);
    } else if (what <= 2 && !prices.bars.empty()) {
      prices.bars.back() = bars.next();
      series.revise(recordOf(prices.bars.back()));
      revised = true;
      changes += ", revised";
    } else {
      prices.bars.push_back(bars.next());
      series.append(recordOf(prices.bars.back()));
      changes += ", added 1";
    }
  }
  return succeeded;
}

TEST_P(EveryKeptMethod, GivesWhatAFreshCallGives) {
  std::mt19937 generator(16);
  int succeeded = 0;
  for (int i = 0; i < sequencesOfEach() && !HasFailure(); ++i) {
    succeeded += followChanges(GetParam(), static_cast<unsigned>(generator()));
  }
  EXPECT_GT(succeeded, sequencesOfEach() / 2) << "too few results to tell anything";
}

TEST(LiveFaults, LeaveNoRowOfARecordThatHasBeenRevised) {
  // The average keeps its row of the bar before the revision, which nothing new may be made of.
  LiveSeries series;
  for (const double price : {1.0, 2.0, 4.0}) series.append({price, price, price, price, 1, ""});
  const auto average = series.keep("Standard.SMA", {{"Periods", 2}});
  const auto volume = series.keep("Index.OnBalanceVolume", {{"Source", LiveColumn{average, 0}}});
  series.append({8, 8, 8, 8, infinity, ""});
  EXPECT_FALSE(average->error());
  EXPECT_EQ(volume->error()->record(), 4);
  EXPECT_EQ(volume->count(), 3);
  series.revise({8, 8, 8, infinity, 1, ""});
  EXPECT_EQ(average->error()->record(), 4);
  EXPECT_EQ(volume->error()->record(), 4);
  EXPECT_EQ(volume->count(), 3);
  series.append({8, 8, 8, 8, 1, ""});
  EXPECT_EQ(volume->count(), 3);
}

TEST(LiveSessions, BeginWhereTheDatesDo) {
  // Typical prices 1, 2, 4, 8, 16 with a volume of 1: the mean begins anew with each session.
  const struct {
    const char* length;
    std::vector<double> means;
  } cases[] = {{"Date", {1.0, 1.5, 4.0, 8.0, 16.0}}, {"month", {1.0, 1.5, 7.0 / 3.0, 8.0, 12.0}}};
  for (const auto& one : cases) {
    LiveSeries series;
    series.append({1, 1, 1, 1, 1, "2020-01-30 10:00"});
    const auto kept = series.keep("Standard.VWAP", {{"Session", one.length}});
    series.append({2, 2, 2, 2, 1, "2020-01-30 11:00"});
    series.append({4, 4, 4, 4, 1, "2020-01-31"});
    series.append({9, 9, 9, 9, 1, "no date"});
    EXPECT_EQ(kept->error()->record(), 4);
    series.revise({8, 8, 8, 8, 1, "2020-02-03"});
    series.append({16, 16, 16, 16, 1, "2020-02-04"});
    ASSERT_FALSE(kept->error());
    const auto rows = kept->columns()[0]->values();
    EXPECT_EQ(std::vector(rows.begin(), rows.end()), one.means) << one.length;
  }
}

std::string nameOf(const testing::TestParamInfo<Named>& info) {
  return std::string(info.param.owner->name) + "_" + std::string(info.param.method->name);
}

INSTANTIATE_TEST_SUITE_P(Catalogue, EveryKeptMethod, testing::ValuesIn(columnMethods()), nameOf);

}  // namespace
}  // namespace orvex::test
