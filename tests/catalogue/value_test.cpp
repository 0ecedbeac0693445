#include "orvex/catalogue/value.h"

#include <gtest/gtest.h>

#include <concepts>
#include <limits>
#include <vector>

#include "orvex/catalogue/description.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

using catalogue::Type;
using catalogue::Value;

bool same(const Value& a, const Value& b) {
  const auto equals = [&]<class T>(const T& value) {
    if constexpr (std::equality_comparable<T>) return value == std::get<T>(b);
    return false;
  };
  return a.index() == b.index() && std::visit(equals, a);
}

TEST(Values, BecomeThoseOfAnArgumentsType) {
  const std::string words = "a word";
  struct {
    Value value;
    Type type;
    Value expected;
  } const cases[] = {
      {Empty{}, Type::Double, 0.0},
      {true, Type::Integer, Integer(-1)},
      {2.5, Type::Integer, Integer(2)},
      {-3.5, Type::Long, -4},
      {std::string("\t1e3 "), Type::Long, 1000},
      {2147483647.4, Type::Long, 2147483647},
      {-2147483648.5, Type::Long, std::numeric_limits<std::int32_t>::min()},
      {7, Type::Double, 7.0},
      {Integer(7), Type::Double, 7.0},
      {Empty{}, Type::String, std::string()},
      {false, Type::String, std::string("False")},
      {-7, Type::String, std::string("-7")},
      {0.1, Type::String, std::string("0.1")},
      {words, Type::String, words},
      {catalogue::Object(), Type::Note, std::shared_ptr<Note>()},
  };
  for (const auto& one : cases) {
    EXPECT_TRUE(same(catalogue::coerce(one.value, one.type), one.expected)) << &one - cases;
  }

  struct {
    Value value;
    Type type;
    Fault expected;
  } const errors[] = {
      {Null{}, Type::Double, faults::InvalidUseOfNull},
      {Null{}, Type::String, faults::InvalidUseOfNull},
      {words, Type::Double, faults::TypeMismatch},
      {std::string("1 2"), Type::Integer, faults::TypeMismatch},
      {Array<double>(), Type::String, faults::TypeMismatch},
      {std::make_shared<Note>(), Type::Double, faults::TypeMismatch},
      {std::make_shared<Note>(), Type::Field, faults::TypeMismatch},
      {32767.5, Type::Integer, faults::Overflow},
      {2147483647.5, Type::Long, faults::Overflow},
      {std::numeric_limits<double>::quiet_NaN(), Type::Long, faults::Overflow},
  };
  for (const auto& one : errors) {
    EXPECT_FAULT(one.expected, catalogue::coerce(one.value, one.type)) << &one - errors;
  }
}

TEST(Values, AreMissedWhereAnArgumentIsNotOptional) {
  const catalogue::Class& field = *catalogue::findClass("field");
  std::vector<Value> missing(1);
  const auto fault =
      faultOf([&] { catalogue::call(*catalogue::findMethod(field, "getvalue"), field.create().get(), missing); });
  ASSERT_TRUE(fault.has_value());
  EXPECT_EQ(fault->number, 449);
}

}  // namespace
}  // namespace orvex::test
