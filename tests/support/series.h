#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "orvex/data/columns.h"
#include "orvex/data/database.h"

namespace orvex::inline ORVEX_COUNTS {

/// How a fault is shown where a test fails.
inline void PrintTo(const Fault& fault, std::ostream* out) {
  *out << fault.number << " " << fault.source << ": " << fault.description;
}

inline void PrintTo(Integer number, std::ostream* out) {
  *out << number.value();
}

}  // namespace orvex::inline ORVEX_COUNTS

/// Short series and what tests ask of the columns that come out.
namespace orvex::inline ORVEX_COUNTS::test {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// A field of these values; "Source" unless it is given a name.
inline std::shared_ptr<Field> field(const std::vector<double>& values, const std::string& name = "Source") {
  auto column = makeColumn(static_cast<int>(values.size()), name);
  for (std::size_t i = 0; i < values.size(); ++i) column->setValue(static_cast<int>(i) + 1, values[i]);
  return column;
}

/// A database of `count` records, all prices 0, for methods that only need its record count and cursor.
inline std::shared_ptr<Database> records(std::size_t count) {
  auto data = std::make_shared<Database>();
  data->OpenDatabaseByArray(std::vector<double>(count));
  data->MoveFirst();
  return data;
}

/// One record of prices.
struct Bar {
  double open, high, low, close, volume;
};

/// A database of these bars; the cursor stands on record 1.
inline std::shared_ptr<Database> bars(const std::vector<Bar>& series) {
  auto data = records(series.size());
  int row = 0;
  for (const auto& [open, high, low, close, volume] : series) {
    ++row;
    for (const auto& [name, value] :
         {std::pair("Open", open), {"High", high}, {"Low", low}, {"Close", close}, {"Volume", volume}}) {
      data->getRecordset()->setValue(name, row, value);
    }
  }
  return data;
}

/// Bars of these highs and lows alone.
inline std::shared_ptr<Database> ranges(const std::vector<double>& highs, const std::vector<double>& lows) {
  std::vector<Bar> series;
  for (std::size_t i = 0; i < highs.size(); ++i) series.push_back({0, highs[i], lows[i], 0, 0});
  return bars(series);
}

/// Bars whose four prices are one: a multiple of 3 is exactly its own mean.
inline std::shared_ptr<Database> levels(const std::vector<double>& prices, const std::vector<double>& volumes = {}) {
  std::vector<Bar> series;
  for (const double price : prices) series.push_back({price, price, price, price, 0});
  for (std::size_t i = 0; i < volumes.size(); ++i) series[i].volume = volumes[i];
  return bars(series);
}

/// Expects a set of exactly these columns, in this order and bit for bit.
inline void expectColumns(const RecordSet& got,
                          const std::vector<std::pair<std::string, std::vector<double>>>& expected) {
  ASSERT_EQ(got.getFieldCount(), static_cast<int>(expected.size()));
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const auto& [name, values] = expected[i];
    EXPECT_EQ(got.getName(static_cast<int>(i) + 1), name);
    const auto column = got.getField(name);
    ASSERT_EQ(column->getRecordCount(), static_cast<int>(values.size())) << name;
    for (std::size_t row = 0; row < values.size(); ++row) {
      EXPECT_EQ(column->values()[row], values[row]) << name << ", record " << row + 1;
    }
  }
}

/// The error that `action` raises, or nothing.
inline std::optional<Fault> faultOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.fault();
  }
  return std::nullopt;
}

/// A call, the error that it raises, and where it leaves the cursor.
struct FaultCase {
  std::function<void()> call;
  std::optional<Fault> fault;
  int position;
};

/// Expects as much of each call, made with the cursor on the first record.
inline void expectFaults(Database& data, const std::vector<FaultCase>& cases) {
  int number = 0;
  for (const auto& [call, fault, position] : cases) {
    SCOPED_TRACE(testing::Message() << "case " << ++number);
    data.MoveFirst();
    EXPECT_EQ(faultOf(call), fault);
    EXPECT_EQ(data.getPosition(), position);
  }
}

}  // namespace orvex::inline ORVEX_COUNTS::test

/// Expects a call to raise an error, or std::nullopt.
#define EXPECT_FAULT(expected, ...) EXPECT_EQ(::orvex::test::faultOf([&] { __VA_ARGS__; }), expected)
