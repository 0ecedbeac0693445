#include "orvex/data/field.h"

#include <gtest/gtest.h>

#include <limits>

#include "orvex/data/mod_globals.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

TEST(Field, RowsOutsideTheColumnAreAnError) {
  Field column;
  EXPECT_FAULT(Field::getValueFault, column.getValue(1));
  column.initialize(5, "X");
  EXPECT_EQ(column.getValue(5), 0.0);
  EXPECT_EQ(column.getStrValue(5), "");
  EXPECT_FAULT(Field::getValueFault, column.getValue(6));
  EXPECT_FAULT(Field::setStrValueFault, column.setStrValue(0, ""));
  EXPECT_FAULT(Field::getStrValueFault, column.getStrValue(-1));
  column.destroy();
  EXPECT_EQ(column.getRecordCount(), 5);
  EXPECT_EQ(column.getName(), "X");
  EXPECT_FAULT(Field::setValueFault, column.setValue(1, 1));
}

TEST(Field, StartsOverWhenInitialisedAgain) {
  Field column;
  column.initialize(2, "X");
  column.setValue(2, 7);
  column.setStrValue(2, "seven");
  const auto note = column.getNote();
  EXPECT_EQ(note->getPeriod(), 0);
  EXPECT_EQ(note->getValue(), 0.0);
  EXPECT_EQ(note->getNote(), "");

  EXPECT_FAULT(faults::SubscriptOutOfRange, column.initialize(0, "Y"));
  EXPECT_EQ(column.getValue(2), 7) << "a count that cannot be changes nothing";

  column.initialize(3, "Y");
  EXPECT_EQ(column.getValue(2), 0);
  EXPECT_EQ(column.getStrValue(2), "");
  EXPECT_NE(column.getNote(), note);
  column.setNote(note);
  EXPECT_EQ(column.getNote(), note);
}

TEST(Field, HandsOutCopiesFrom1On) {
  Field column;
  EXPECT_FALSE(column.getDoubleArray().exists());
  EXPECT_FALSE(column.getStringArray().exists());
  column.initialize(3, "X");
  column.setValue(3, 7);
  const Array<double> numbers = column.getDoubleArray();
  column.setValue(3, 8);
  EXPECT_EQ(numbers.lowerBound(), 1);
  EXPECT_EQ(numbers.upperBound(), 3);
  EXPECT_EQ(numbers.at(3), 7);
  EXPECT_EQ(column.getStringArray().upperBound(), 3) << "rows without a text have an empty one";
  column.setStrValue(1, "a");
  EXPECT_EQ(column.getStringArray().at(1), "a");
  column.destroy();
  EXPECT_FALSE(column.getDoubleArray().exists());
}

TEST(Array, BoundsAtTheEndsOfAnInt) {
  constexpr int least = std::numeric_limits<int>::min();
  constexpr int greatest = std::numeric_limits<int>::max();
  EXPECT_EQ(Array<double>({1, 2}, least).at(least + 1), 2);
  EXPECT_FAULT(faults::SubscriptOutOfRange, Array<double>({1, 2}, least).at(greatest));
  EXPECT_FAULT(faults::Overflow, Array<double>({1, 2}, greatest).upperBound());
  EXPECT_FAULT(faults::Overflow, Array<double>({}, least).upperBound());
}

TEST(ModGlobals, EqualValuesHaveNoLargerAndNoSmaller) {
  using namespace modGlobals;
  EXPECT_EQ(MaxOf(1, 2), 2);
  EXPECT_EQ(MaxOf(2, -1), 2);
  EXPECT_EQ(MaxOf(3, 3), 0);
  EXPECT_EQ(MinOf(1, 2), 1);
  EXPECT_EQ(MinOf(2, -1), -1);
  EXPECT_EQ(MinOf(3, 3), 0);
  EXPECT_EQ(RatioOf(4, 2, 3), 0.5);
  EXPECT_EQ(RatioOf(2, 2, 3), 0);
  EXPECT_EQ(faultOf([] { RatioOf(1e308, -1e308, 0); }), faults::Overflow);
}

}  // namespace
}  // namespace orvex::test
