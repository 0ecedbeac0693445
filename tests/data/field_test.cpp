#include "orvex/data/field.h"

#include "tests/support/series.h"

namespace orvex {
namespace {

TEST(Field, RowsOutsideTheColumnAreAnError) {
  Field column;
  EXPECT_EQ(test::faultOf([&] { column.getValue(1); }), Field::getValueFault);
  column.initialize(5, "X");
  EXPECT_EQ(column.getValue(5), 0.0);
  EXPECT_EQ(test::faultOf([&] { column.getValue(6); }), Field::getValueFault);
  EXPECT_EQ(test::faultOf([&] { column.setStrValue(0, ""); }), Field::setStrValueFault);
  column.destroy();
  EXPECT_EQ(column.getRecordCount(), 5);
  EXPECT_EQ(test::faultOf([&] { column.setValue(1, 1); }), Field::setValueFault);
}

}  // namespace
}  // namespace orvex
