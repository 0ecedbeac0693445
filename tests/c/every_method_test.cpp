// What the C interface gives of every method: what the catalogue does, down to the bits, and no more when memory runs
// out.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <string>
#include <vector>

#include "orvex/c/orvex.h"
#include "orvex/catalogue/call_on_values.h"
#include "orvex/catalogue/usual.h"
#include "tests/support/allocations.h"

namespace orvex::test {
namespace {

using catalogue::Class;
using catalogue::Method;
using catalogue::Type;
using catalogue::Value;

/// Prices that neither rest nor repeat.
struct Prices {
  static constexpr int Count = 120;

  Prices() {
    for (int row = 0; row < Count; ++row) {
      const double middle = 100.0 + row * 7 % 11 - row * 5 % 13 + 0.25 * row;
      open.push_back(middle - 0.5);
      high.push_back(middle + 1.0 + 0.125 * (row % 3));
      low.push_back(middle - 1.0 - 0.125 * (row % 5));
      close.push_back(middle);
      volume.push_back(1000.0 + row * 37 % 101);
      const int day = 1 + row / 10;
      session.push_back(day);
    }
  }

  orvex_prices columns() const { return {open.data(), high.data(), low.data(), close.data(), volume.data()}; }

  std::vector<double> open, high, low, close, volume;
  std::vector<double> session;  // the column of dates, of which only changes matter
};

/// A call of each calculation: arguments without a usual value are 14.
template <class Check>
void forEveryCalculation(Check check) {
  const Prices prices;
  const orvex_prices columns = prices.columns();
  orvex_series* series = nullptr;
  ASSERT_EQ(orvex_open(&columns, Prices::Count, &series, nullptr), 0);
  ASSERT_EQ(orvex_add_column(series, "Date", prices.session.data(), nullptr), 0);
  for (const Class* owner : catalogue::classes()) {
    for (const Method* method : owner->methods) {
      if (!catalogue::isCalculation(*owner, *method)) continue;
      const std::string name = std::string(owner->name) + '.' + std::string(method->name);
      SCOPED_TRACE(name);
      std::vector<std::string> names;
      for (const catalogue::Argument& argument : method->arguments) {
        const bool number =
            argument.type == Type::Integer || argument.type == Type::Long || argument.type == Type::Double;
        if (number && !argument.optional && !argument.usual.given) names.emplace_back(argument.name);
      }
      std::vector<orvex_argument> arguments;
      for (const std::string& one : names) arguments.push_back({one.c_str(), 14.0, nullptr});
      check(prices, series, *owner, *method, name, arguments);
    }
  }
  orvex_close(series);
}

/// The same call without the C interface; its arguments are all named by the catalogue.
catalogue::ValuedCall callDirectly(const Prices& prices, const Class& owner, const Method& method) {
  const auto data = std::make_shared<Database>();
  data->OpenDatabaseByRows({.open = {prices.open, nullptr},
                            .high = {prices.high, nullptr},
                            .low = {prices.low, nullptr},
                            .close = {prices.close, nullptr},
                            .volume = {prices.volume, nullptr}});
  const auto session = std::make_shared<Field>();
  session->view({prices.session, nullptr}, "Date");
  data->getRecordset()->addField(session);
  std::vector<Value> arguments(method.arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const catalogue::Argument& argument = method.arguments[i];
    const bool number = argument.type == Type::Integer || argument.type == Type::Long || argument.type == Type::Double;
    if (number && !argument.optional && !argument.usual.given) arguments[i] = 14.0;
    if (argument.type == Type::Field && data->getRecordset()->isValidField(argument.name)) {
      arguments[i] = data->getRecordset()->getField(argument.name);
    }
  }
  catalogue::takeUsual(method, arguments, data);
  return catalogue::callOnValues(method, owner.create().get(), arguments);
}

/// A result that is no set: number, text and record of a note, otherwise the one thing that it is.
void expectValue(const orvex_result* result, const catalogue::Value& expected) {
  orvex_value value;
  ASSERT_EQ(orvex_get_value(result, &value), 0);
  double number = 0.0;
  std::string text;
  int record = 0;
  if (const auto* note = std::get_if<std::shared_ptr<Note>>(&expected)) {
    number = (*note)->getValue();
    text = (*note)->getNote();
    record = (*note)->getPeriod().value();
  } else if (const auto* told = std::get_if<std::string>(&expected)) {
    text = *told;
  } else if (const auto* truth = std::get_if<bool>(&expected)) {
    number = *truth ? 1.0 : 0.0;
  } else {
    number = std::get<double>(catalogue::coerce(expected, catalogue::Type::Double));
  }
  EXPECT_EQ(std::bit_cast<std::uint64_t>(value.number), std::bit_cast<std::uint64_t>(number));
  EXPECT_EQ(value.text, text);
  EXPECT_EQ(value.record, record);
}

TEST(CInterface, GivesWhatTheCatalogueGives) {
  forEveryCalculation([](const Prices& prices, const orvex_series* series, const Class& owner, const Method& method,
                         const std::string& name, const std::vector<orvex_argument>& arguments) {
    orvex_result* result = nullptr;
    orvex_error error;
    const std::int32_t number = orvex_call(series, name.c_str(), arguments.data(),
                                           static_cast<std::int32_t>(arguments.size()), &result, &error);
    try {
      const catalogue::ValuedCall expected = callDirectly(prices, owner, method);
      ASSERT_EQ(number, 0) << error.message;
      const auto* const set = std::get_if<std::shared_ptr<RecordSet>>(&expected.result);
      ASSERT_EQ(orvex_column_count(result), set == nullptr ? 0 : (*set)->getFieldCount().value());
      if (set == nullptr) expectValue(result, expected.result);
      for (int place = 0; place < orvex_column_count(result); ++place) {
        const auto index = static_cast<std::size_t>(place);
        const Field& wanted = *(*set)->fields()[index];
        orvex_column column;
        ASSERT_EQ(orvex_get_column(result, place, &column), 0);
        EXPECT_EQ(column.name, wanted.name());
        EXPECT_EQ(column.first, expected.computed[index].first);
        EXPECT_EQ(column.last, expected.computed[index].last);
        for (int row = 1; row <= column.count; ++row) {
          const double value = column.values[row - 1];
          if (expected.computed[index].contains(row)) {
            EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(wanted.getValue(row))) << row;
          } else {
            EXPECT_TRUE(std::isnan(value)) << row;
          }
        }
      }
    } catch (const Error& failure) {
      EXPECT_EQ(number, failure.number());
      EXPECT_EQ(error.source, failure.source());
      EXPECT_EQ(error.cause_number, failure.cause().number);
      EXPECT_EQ(error.record, failure.record());
    }
    orvex_release(result);
  });
}

TEST(CInterface, TellsOfMemoryThatRunsOutAndLeavesNothing) {
  forEveryCalculation([](const Prices&, const orvex_series* series, const Class&, const Method&,
                         const std::string& name, const std::vector<orvex_argument>& arguments) {
    const auto call = [&](orvex_result** result) {
      return orvex_call(series, name.c_str(), arguments.data(), static_cast<std::int32_t>(arguments.size()), result,
                        nullptr);
    };
    orvex_result* result = nullptr;
    if (call(&result) != 0) return;
    orvex_release(result);
    const std::size_t before = allocations::inUse;
    std::int32_t number = 7;
    for (long count = 0; number != 0; ++count) {
      ASSERT_LT(count, 1000);
      allocations::left = count;
      number = call(&result);
      allocations::left = allocations::unlimited;
      if (number == 0) break;
      EXPECT_EQ(result, nullptr);
      EXPECT_EQ(allocations::inUse, before) << "with memory for " << count << " allocations";
    }
    orvex_release(result);
    EXPECT_EQ(allocations::inUse, before);
  });
}

}  // namespace
}  // namespace orvex::test
