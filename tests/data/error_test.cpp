// What an error keeps beside the fault that its caller is told.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "orvex/averages/moving_average.h"
#include "orvex/bands/bands.h"
#include "orvex/catalogue/call_on_values.h"
#include "orvex/general/general.h"
#include "orvex/indices/index.h"
#include "orvex/oscillators/oscillator.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

template <class Call>
Error errorOf(Call&& call) {
  try {
    call();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing is raised";
  return Error(faults::Internal);
}

TEST(Error, KeepsTheInnermostFaultAndItsRecord) {
  std::vector<double> values(60, 2.0);
  for (std::size_t i = 0; i < values.size(); ++i) values[i] += static_cast<double>(i % 5);
  values[40] = infinity;  // record 41
  const auto data = records(values.size());
  const auto source = field(values);
  const auto zeros = field(std::vector<double>(values.size(), 0.0));
  const auto flat = levels(std::vector<double>(20, 3.0));
  const struct {
    const char* what;
    std::function<void()> call;
    Fault fault, cause;
    int record;
  } cases[] = {
      {"in its own walk", [&] { MovingAverage().SimpleMovingAverage(data, source, 5); },
       MovingAverage::SimpleMovingAverageFault, faults::Overflow, 41},
      {"in an inner method's walk", [&] { Bands().BollingerBands(data, source, 5, 2, 1); },
       Bands::BollingerBandsAverageFault, faults::Overflow, 41},
      {"of a division", [&] { Index().PriceVolumeTrend(data, zeros, source); }, Index::PriceVolumeTrendFault,
       faults::DivisionByZero, 2},
      {"in a walk one record late", [&] { Oscillator().WilliamsPctR(flat, flat->getRecordset(), 5); },
       Oscillator::WilliamsPctRFault, faults::DivisionByZero, 6},
      {"outside all records", [&] { MovingAverage().SimpleMovingAverage(data, source, 61); },
       MovingAverage::SimpleMovingAverageFault, Database::EndOfFile, 0},
      {"without a trap", [&] { General().IsPrime(-1); }, faults::InvalidCall, faults::InvalidCall, 0},
  };
  for (const auto& [what, call, fault, cause, record] : cases) {
    data->MoveFirst();
    const Error error = errorOf(call);
    EXPECT_EQ(error.fault(), fault) << what;
    EXPECT_EQ(error.cause(), cause) << what;
    EXPECT_EQ(error.record(), record) << what;
  }
}

TEST(Error, TellsTheCallersRecordOfACallOnAPart) {
  const Error moved = errorOf([&] {
    onPart(5, [&] {
      trap(faults::Internal,
           [&] { MovingAverage().SimpleMovingAverage(records(20), field(std::vector(20, infinity)), 3); });
    });
  });
  // Record 4 of the part is the first that is computed.
  EXPECT_EQ(moved.record(), 8);

  const auto* method = catalogue::findCalculation("SimpleMovingAverage")->method;
  std::vector<double> lead(30, notANumber);
  std::fill(lead.begin() + 10, lead.end(), 1.0);
  lead[20] = infinity;  // record 21
  std::vector<catalogue::Value> arguments(method->arguments.size());
  arguments[0] = records(30);
  arguments[1] = field(lead);
  arguments[2] = Integer(4);
  MovingAverage object;
  EXPECT_EQ(errorOf([&] { catalogue::callOnValues(*method, &object, arguments); }).record(), 21);
}

TEST(Error, SaysItInOneText) {
  EXPECT_STREQ(Error(faults::Overflow).what(), "Overflow");
  Error error(MovingAverage::SimpleMovingAverageFault, faults::DivisionByZero, 214);
  EXPECT_STREQ(error.what(), "An unexpected error has occured (Division by zero in record 214)");
  error.setRecord(3);
  EXPECT_EQ(error.record(), 214);
  Error direct(faults::DivisionByZero);
  direct.moveRecord(5);
  EXPECT_EQ(direct.record(), 0);
  direct.setRecord(7);
  direct.moveRecord(5);
  EXPECT_STREQ(direct.what(), "Division by zero (in record 12)");
  const std::string endless(1000, 'x');
  EXPECT_EQ(std::string(Error({1, "s", endless}).what()).size(), 159u);
}

}  // namespace
}  // namespace orvex::test
