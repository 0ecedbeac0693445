#include "orvex/data/record_set.h"

#include <string>
#include <vector>

#include "tests/support/series.h"

namespace orvex::test {
namespace {

RecordSet& fill(RecordSet& set, const std::vector<std::string>& names) {
  for (const std::string& name : names) set.addField(field({1, 2, 3}, name));
  return set;
}

std::vector<std::string> names(const RecordSet& set) {
  std::vector<std::string> all;
  for (int i = 1; i <= set.getFieldCount(); ++i) all.push_back(set.getName(i));
  return all;
}

TEST(RecordSet, FindsNamesWithoutRegardToCaseAndTheFirstOfTwo) {
  RecordSet set;
  fill(set, {"Open", "Close", "CLOSE"});
  EXPECT_EQ(set.getIndex("close"), 2);
  set.getField("cLOSE")->setValue(1, 7);
  EXPECT_EQ(set.getValue("Close", 1), 7) << "the set refers to the field itself";
  EXPECT_TRUE(set.isValidField("OPEN"));
  EXPECT_FALSE(set.isValidField("Open "));
}

TEST(RecordSet, RemovesTheFirstOfANameAndKeepsTheOrder) {
  struct {
    std::vector<std::string> before;
    std::string removed;
    std::vector<std::string> after;
  } const cases[] = {{{"A", "B", "C"}, "b", {"A", "C"}}, {{"A", "x", "a"}, "A", {"x", "a"}}, {{"A"}, "A", {}}};
  for (const auto& [before, removed, after] : cases) {
    RecordSet set;
    fill(set, before).removeField(removed);
    EXPECT_EQ(names(set), after);
    set.addField(field({1}, "again"));
    EXPECT_EQ(set.getName(set.getFieldCount()), "again");
  }
}

TEST(RecordSet, ReportsWhereTheNameOrRowIsUnknown) {
  RecordSet empty;
  RecordSet set;
  fill(set, {"A"});
  EXPECT_FAULT(RecordSet::getIndexFault, set.getIndex("B"));
  EXPECT_FAULT(RecordSet::getFieldFault, empty.getField("A"));
  EXPECT_FAULT(RecordSet::removeFieldFault, empty.removeField("A"));
  EXPECT_FAULT(RecordSet::removeFieldFault, set.removeField("B"));
  EXPECT_FAULT(RecordSet::renameFieldFault, set.renameField("B", "C"));
  EXPECT_FAULT(RecordSet::getValueFault, set.getValue("A", 4));
  EXPECT_FAULT(RecordSet::setValueFault, set.setValue("B", 1, 1));
  EXPECT_FAULT(RecordSet::getNameFault, set.getName(0));
  EXPECT_FAULT(RecordSet::getNameFault, set.getName(2));
}

TEST(RecordSet, KeepsANullFieldAndStumblesOverItOnlyWhenItMustAskItsName) {
  RecordSet set;
  fill(set, {"A"}).addField(nullptr);
  fill(set, {"B"});
  EXPECT_EQ(set.getFieldCount(), 3);
  EXPECT_EQ(set.getIndex("A"), 1);
  EXPECT_TRUE(set.isValidField("B"));
  EXPECT_FAULT(faults::ObjectNotSet, set.getIndex("B"));
  EXPECT_FAULT(RecordSet::getFieldFault, set.getField("B"));
}

TEST(RecordSet, TakesAsManyFieldsAsA16BitCount) {
  RecordSet set;
  const auto one = field({1}, "A");
  for (int i = 0; i < 32767; ++i) set.addField(one);
  EXPECT_FAULT(faults::Overflow, set.addField(one));
  EXPECT_EQ(set.getFieldCount(), 32767);
}

}  // namespace
}  // namespace orvex::test
