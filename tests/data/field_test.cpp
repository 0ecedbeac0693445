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

TEST(Field, HasOneNoteHoweverOftenItIsAskedFor) {
  Field column;
  EXPECT_EQ(column.getNote(), nullptr);
  column.initialize(2, "X");
  const auto note = column.getNote();
  ASSERT_NE(note, nullptr);
  EXPECT_EQ(column.getNote(), note);
  column.destroy();
  EXPECT_EQ(column.getNote(), note);
  column.setNote(nullptr);
  EXPECT_EQ(column.getNote(), nullptr);
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

TEST(Field, ViewsRowsUntilTheyAreWritten) {
  auto rows = std::make_shared<std::vector<double>>(std::vector<double>{1, 2, 3});
  Field column;
  column.view({*rows, rows}, "X");
  EXPECT_EQ(column.values().data(), rows->data());
  EXPECT_EQ(column.getRecordCount(), 3);
  EXPECT_EQ(column.getNote()->getPeriod(), 0);
  EXPECT_EQ(rows.use_count(), 2);

  column.setValue(2, 7);
  EXPECT_EQ((std::vector<double>(column.values().begin(), column.values().end())), (std::vector<double>{1, 7, 3}));
  EXPECT_EQ(*rows, (std::vector<double>{1, 2, 3}));
  EXPECT_EQ(rows.use_count(), 1) << "the copy is the field's own";

  column.view({*rows, rows}, "X");
  column.writableValues()[0] = 8;
  EXPECT_EQ(rows->front(), 1);
  column.view({*rows, nullptr}, "X");
  EXPECT_NE(column.values().data(), rows->data()) << "rows that nothing keeps are copied";
  EXPECT_EQ(column.getValue(3), 3);

  EXPECT_FAULT(faults::SubscriptOutOfRange, column.view({}, "Y"));
  if constexpr (Integer::Greatest < 40000) {
    const std::vector<double> many(40000);
    EXPECT_FAULT(faults::Overflow, column.view({many, rows}, "Y"));
  }
  EXPECT_EQ(column.getName(), "X");
  column.view({*rows, rows}, "X");
  column.destroy();
  EXPECT_EQ(rows.use_count(), 1);
}

TEST(Field, HandsItsRowsOver) {
  Field column;
  EXPECT_TRUE(column.releaseRows().values.empty());
  column.initialize(2, "X");
  column.setValue(2, 7);
  const double* const own = column.values().data();
  const OwnRows taken = column.releaseRows();
  EXPECT_EQ(taken.values.data(), own);
  EXPECT_EQ(taken.values[1], 7);
  EXPECT_FAULT(Field::getValueFault, column.getValue(1));
  EXPECT_EQ(column.getRecordCount(), 2) << "as after destroy";

  auto rows = std::make_shared<std::vector<double>>(2);
  column.view({*rows, rows}, "X");
  EXPECT_NE(column.releaseRows().values.data(), rows->data()) << "what is viewed is not the taker's to write";
}

TEST(Field, ViewsTextsUntilTheyAreWritten) {
  auto texts = std::make_shared<std::vector<std::string_view>>(std::vector<std::string_view>{"a", "b"});
  for (const std::shared_ptr<const void>& owner : {std::shared_ptr<const void>(texts), {}}) {
    Field column;
    column.initialize(2, "X");
    column.viewTexts({*texts, owner});
    EXPECT_EQ(column.getStrValue(2), "b");
    EXPECT_EQ(column.getStringArray().at(2), "b");
    column.setStrValue(1, "c");
    EXPECT_EQ(column.getStrValue(1), "c");
    EXPECT_EQ(column.getStrValue(2), "b");
    EXPECT_EQ(texts->front(), "a");
    column.initialize(3, "X");
    EXPECT_EQ(column.getStrValue(1), "");
    EXPECT_FAULT(faults::SubscriptOutOfRange, column.viewTexts({*texts, owner}));
  }
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
