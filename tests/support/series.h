#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "orvex/data/columns.h"
#include "orvex/data/database.h"

/// Short series and what tests ask of the columns that come out.
namespace orvex::test {

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
  for (std::size_t i = 0; i < series.size(); ++i) {
    const Integer row = static_cast<int>(i) + 1;
    data->getRecordset()->setValue("Open", row, series[i].open);
    data->getRecordset()->setValue("High", row, series[i].high);
    data->getRecordset()->setValue("Low", row, series[i].low);
    data->getRecordset()->setValue("Close", row, series[i].close);
    data->getRecordset()->setValue("Volume", row, series[i].volume);
  }
  return data;
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

}  // namespace orvex::test

namespace orvex {

/// How a fault is shown where a test fails.
inline void PrintTo(const Fault& fault, std::ostream* out) {
  *out << fault.number << " " << fault.source << ": " << fault.description;
}

inline void PrintTo(Integer number, std::ostream* out) {
  *out << number.value();
}

}  // namespace orvex
