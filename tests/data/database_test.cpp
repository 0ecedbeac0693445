#include "orvex/data/database.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "orvex/data/host_events.h"
#include "tests/support/file.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

/// A record as it was loaded: the date and the five numbers.
struct Loaded {
  std::string date;
  std::vector<double> numbers;

  friend bool operator==(const Loaded&, const Loaded&) = default;
};

void PrintTo(const Loaded& record, std::ostream* out) {
  *out << '"' << record.date << '"';
  for (const double number : record.numbers) *out << ' ' << number;
}

std::vector<Loaded> contents(const Database& data) {
  std::vector<Loaded> all;
  const auto set = data.getRecordset();
  for (int row = 1; row <= data.getRecordCount(); ++row) {
    all.push_back({set->getField("Date")->getStrValue(row), {}});
    for (const char* name : {"Open", "High", "Low", "Close", "Volume"}) {
      all.back().numbers.push_back(set->getValue(name, row));
    }
  }
  return all;
}

std::vector<Loaded> load(const std::string& text, const std::string& delimiter = ",") {
  const File file(text);
  Database data;
  data.OpenDataBase(file.path(), delimiter);
  EXPECT_EQ(data.getPosition(), 1);
  return contents(data);
}

TEST(Database, LoadsLinesWhateverEndsThem) {
  const std::vector<Loaded> expected = {{"01/02/2003", {10.5, 11, 10, 10.75, 12000}}, {"b", {1, 2, 3, 4, 5}}};
  const std::string first = "01/02/2003,10.5,11,10,10.75,12000";
  const std::string second = "b,1,2,3,4,5";
  for (const std::string end : {"\r\n", "\n", "\r"}) {
    EXPECT_EQ(load(first + end + second), expected);
    EXPECT_EQ(load(first + end + second + end), expected);
    EXPECT_EQ(load("\xEF\xBB\xBF" + first + end + second), expected);
  }
  EXPECT_EQ(load("\n\r\n\r" + second).size(), 4u) << "blank lines are records";
  EXPECT_EQ(load("a\r\r\nb\n\rc").size(), 5u);
}

TEST(Database, CountsTheEndsOfLinesThatComeApartWhenAFileIsRead) {
  // What is read at once: the end of a line may be its last byte.
  constexpr std::size_t part = std::size_t{1} << 22;
  const std::string line(part - 1, 'x');
  for (const auto& [end, lines] :
       {std::pair("\r\nb", 2), {"\rb", 2}, {"\r\rb", 3}, {"\n\rb", 3}, {"\r", 1}, {"\n", 1}}) {
    EXPECT_EQ(load(line + end).size(), static_cast<std::size_t>(lines));
  }
}

TEST(Database, TakesALineApartAtItsDelimiters) {
  struct {
    const char* line;
    const char* delimiter;
    Loaded expected;
  } const cases[] = {
      // What is left of a line that has too few parts moves on to the next column.
      {"7 and more", ",", {"", {0, 0, 0, 0, 7}}},
      {"d,5", ",", {"d", {0, 0, 0, 0, 5}}},
      {"d,1,2", ",", {"d", {1, 0, 0, 0, 2}}},
      {"d,1,2,3,4,5,6", ",", {"d", {1, 2, 3, 4, 5}}},
      {"d,1,2,3,4,", ",", {"d", {1, 2, 3, 4, 0}}},
      {",, x,- 1,1e2x,+5", ",", {"", {0, 0, 0, 100, 5}}},
      // One character is cut behind the beginning of a delimiter, however long it is.
      {"d;;1;;2;;3;;4;;5", ";;", {"d", {0, 0, 0, 0, 0}}},
      {"dxy1xy2xy3xy4xy5", "xy", {"d", {0, 0, 0, 0, 0}}},
      {"d€1€2€3€4€5", "€", {"d", {1, 2, 3, 4, 5}}},
      {"d\t1\t2\t3\t4\t5", "\t", {"d", {1, 2, 3, 4, 5}}},
      {"d 1 2 3 4 5", " ", {"d", {1, 2, 3, 4, 5}}},
      {"d.1.2.3.4.5", ".", {"d", {1, 2, 3, 4, 5}}},
      {"de1e2e3e4e5", "e", {"d", {1, 2, 3, 4, 5}}},
      {"dX1x2X3X4X5X6", "X", {"d", {1, 3, 4, 5, 6}}},
      // An empty delimiter stands in front of every character.
      {"123456789", "", {"", {0, 0, 0, 0, 6789}}},
      {"ä€3456", "", {"", {0, 0, 0, 0, 6}}},
  };
  for (const auto& [line, delimiter, expected] : cases) {
    EXPECT_EQ(load(line, delimiter), std::vector<Loaded>{expected}) << line;
    EXPECT_EQ(load(std::string("\n") + line + "\n", delimiter)[1], expected) << line;
  }
}

TEST(Database, ReadsWindows1252WhereTheFileIsNotUtf8) {
  EXPECT_EQ(load("M\xE4rz,1,2,3,4,5")[0].date, "März");
  EXPECT_EQ(load("\xEF\xBB\xBFMärz,1,2,3,4,5")[0].date, "März");
  std::string line = "x,1,2,3,4,5";
  std::replace(line.begin(), line.end(), ',', '\xA7');
  EXPECT_EQ(load(line, "§")[0], (Loaded{"x", {1, 2, 3, 4, 5}}));
}

TEST(Database, HoldsAsManyRecordsAsA16BitCount) {
  std::string lines;
  for (int i = 0; i < 32767; ++i) lines += std::string(150, 'd') + ",1,2,3,4,5\r\n";
  const File file(lines);
  Database data;
  data.OpenDataBase(file.path(), ",");
  EXPECT_EQ(data.getRecordCount(), 32767);
  data.MoveLast();
  EXPECT_FAULT(faults::Overflow, data.MoveNext());
  EXPECT_EQ(data.getPosition(), 32767);
  EXPECT_EQ(contents(data).back(), (Loaded{std::string(150, 'd'), {1, 2, 3, 4, 5}}));

  const File longer(lines + "e");
  EXPECT_FAULT(Database::loadFault("Overflow"), data.OpenDataBase(longer.path(), ","));
  EXPECT_EQ(data.getRecordset()->getFieldCount(), 0) << "the new set has no fields yet, and the old series is gone";
  EXPECT_EQ(data.getRecordCount(), 32767);
}

TEST(Database, TellsWhyAFileDoesNotLoad) {
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  const File empty("");
  const File big("d,1,1e999,3,4,5");
  struct {
    std::string path;
    const char* description;
  } const cases[] = {
      {(folder / "orvex-no-such-file.csv").string(), "File not found"},
      {"", "File not found"},
      {(folder / "orvex-no-such-folder" / "a.csv").string(), "Path not found"},
      {folder.string(), "Path/File access error"},
      {empty.path(), "Subscript out of range"},
      {big.path(), "Overflow"},
  };
  for (const auto& one : cases) {
    Database data;
    EXPECT_FAULT(Database::loadFault(one.description), data.OpenDataBase(one.path, ",")) << one.path;
    EXPECT_EQ(data.getRecordset()->getFieldCount(), 0);
    EXPECT_EQ(data.getPosition(), 0);
  }
}

TEST(Database, YieldsOnceALineAndSurvivesAHostThatLoadsAgain) {
  struct Host {
    Database& data;
    const File& other;
    int yields = 0;
  };
  const File three("a,1,1,1,1,1\nb,2,2,2,2,2\nc,3,3,3,3,3\n");
  const File one("z,9,9,9,9,9\n");
  Database data;
  Host host{data, one};
  setYieldHook({[](void* context) {
                  auto& self = *static_cast<Host*>(context);
                  if (++self.yields == 2) self.data.OpenDataBase(self.other.path(), ",");
                },
                &host});
  data.OpenDataBase(three.path(), ",");
  setYieldHook({});
  EXPECT_EQ(host.yields, 4) << "three lines, and the one of the load inside";
  EXPECT_EQ(contents(data), (std::vector<Loaded>{{"z", {9, 9, 9, 9, 9}}}));
}

TEST(Database, OutlivesAHostThatLetsGoOfItWhileItLoads) {
  const File file("a,1,1,1,1,1\nb,2,2,2,2,2\n");
  auto data = std::make_shared<Database>();
  const std::weak_ptr<Database> watch = data;
  setYieldHook({[](void* context) { static_cast<std::shared_ptr<Database>*>(context)->reset(); }, &data});
  Database& loading = *data;
  EXPECT_FAULT(std::nullopt, loading.OpenDataBase(file.path(), ","));
  setYieldHook({});
  EXPECT_TRUE(watch.expired());
}

TEST(Database, LoadsElementsFrom1On) {
  Database data;
  data.OpenDatabaseByArray(Array<double>({9, 1, 2, 3, 4}, 0));
  EXPECT_EQ(data.getPosition(), 0);
  EXPECT_EQ(contents(data)[0], (Loaded{"", {1, 1, 1, 1, 1}}));
  EXPECT_EQ(data.getRecordCount(), 4);

  const Array<Cell> mixed({Cell(Empty{}), Cell(std::string(" 2.5 apples")), Cell(std::string("True")), Cell(0.1)});
  data.OpenDatabaseByArray(mixed);
  EXPECT_EQ(data.getRecordset()->getField("Volume")->getDoubleArray().elements()[1], 2.5);
  EXPECT_EQ(data.getRecordset()->getValue("Open", 4), 0.1);

  data.OpenDatabaseByFourArrays(std::vector<double>{1, 2}, std::vector<double>{3, 4, 99}, std::vector<double>{5, 6},
                                std::vector<double>{7, 8});
  EXPECT_EQ(contents(data)[1], (Loaded{"", {2, 4, 6, 8, 8}}));
}

TEST(Database, TellsWhyAnArrayDoesNotLoad) {
  const struct {
    VariantArray array;
    const char* description;
    int count;
  } cases[] = {
      {VariantArray(), "Type mismatch", 2},
      {Array<double>(), "Subscript out of range", 2},
      {Array<double>({1, 2}, -1), "Subscript out of range", 0},
      {Array<double>({1, 2}, 2), "Subscript out of range", 3},
      {VariantArray::ofSeveralDimensions(5), "Subscript out of range", 5},
      {Array<Cell>({Cell(1.0), Cell(Null{})}), "Invalid use of Null", 2},
      {Array<Cell>({Cell(std::string("1e999"))}), "Overflow", 1},
      {NoValue{faults::InvalidCall}, "Invalid procedure call or argument", 2},
      {Array<Cell>({Cell(1.0), Cell(NoValue())}), "Type mismatch", 2},
      {Array<Cell>({Cell(1.0), Cell(NoValue{faults::Overflow}), Cell(NoValue())}), "Overflow", 3},
      {std::vector<double>(32768), "Overflow", 2},
  };
  for (const auto& one : cases) {
    Database data;
    data.OpenDatabaseByArray(std::vector<double>{1, 2});
    EXPECT_FAULT(Database::loadFault(one.description), data.OpenDatabaseByArray(one.array));
    EXPECT_EQ(data.getRecordCount(), one.count) << one.description;
    EXPECT_EQ(data.getRecordset()->getFieldCount(), 0);
  }
  Database data;
  data.OpenDatabaseByArray(std::vector<double>(32767, 1.0));
  EXPECT_EQ(data.getRecordset()->getValue("Low", 32767), 1.0);
  EXPECT_FAULT(Database::loadFault("Subscript out of range"),
               data.OpenDatabaseByFourArrays(std::vector<double>{1, 2}, std::vector<double>{1},
                                             std::vector<double>{1, 2}, std::vector<double>{1, 2}));
  EXPECT_FAULT(Database::loadFault("Type mismatch"), data.OpenDatabaseByFourArrays(std::vector<double>{1}, {}, {}, {}));
}

TEST(Database, LeavesACountWithoutRecordsWhenAnArrayEndsBelow0) {
  Database data;
  EXPECT_FAULT(Database::loadFault("Subscript out of range"), data.OpenDatabaseByArray(Array<double>({1, 2}, -3)));
  EXPECT_EQ(data.getRecordCount(), -2);
  EXPECT_FAULT(Database::EndOfFile, data.MoveFirst());
  EXPECT_FAULT(Database::BeginOfFile, data.MoveLast());
}

TEST(Database, MovesItsCursorFromTheFirstRecordToOnePastTheLast) {
  Database data;
  EXPECT_EQ(data.getPosition(), 0);
  EXPECT_FAULT(Database::BeginOfFile, data.MoveLast());
  data.OpenDatabaseByArray(std::vector<double>{1, 2, 3});
  EXPECT_EQ(data.MoveLast(), 0);
  EXPECT_EQ(data.MoveNext(), 0);
  EXPECT_EQ(data.getPosition(), 4);
  EXPECT_FAULT(Database::EndOfFile, data.MoveNext());
  EXPECT_EQ(data.getPosition(), 4);
  data.MoveFirst();
  EXPECT_FAULT(Database::BeginOfFile, data.MovePrevious());
  EXPECT_FAULT(Database::EndOfFile, data.setPosition(5));
  EXPECT_EQ(data.getPosition(), 1);
  data.CloseDatabase();
  EXPECT_EQ(data.getRecordset(), nullptr);
  EXPECT_EQ(data.getRecordCount(), 3);
}

TEST(Database, AdoptsASetAndTheRecordCountOfItsOpens) {
  const auto set = std::make_shared<RecordSet>();
  Database data;
  for (const char* name : {"date", "OPEN", "high", "Low", "Close"}) set->addField(field({1, 2}, name));
  EXPECT_FAULT(RecordSet::getFieldFault, data.RecordsetCache(set));
  EXPECT_EQ(data.getRecordset(), set);
  EXPECT_EQ(data.getRecordCount(), 0);
  set->addField(field({1, 2, 3}, "Volume"));
  data.RecordsetCache(set);
  EXPECT_EQ(data.getRecordCount(), 2);
  EXPECT_FAULT(faults::ObjectNotSet, data.RecordsetCache(nullptr));
}

TEST(Database, LoadsColumnsThatAreThereAtOnce) {
  struct Columns {
    std::vector<double> open{1, 2}, high{3, 4}, low{5, 6}, close{7, 8}, volume{9, 10};
    std::vector<std::string_view> dates{"a", "b"};
  };
  const auto columns = std::make_shared<Columns>();
  Database data;
  data.OpenDatabaseByRows({.open = {columns->open, columns},
                           .high = {columns->high, columns},
                           .low = {columns->low, columns},
                           .close = {columns->close, columns},
                           .volume = {columns->volume, nullptr},
                           .dates = {columns->dates, columns}});
  EXPECT_EQ(contents(data), (std::vector<Loaded>{{"a", {1, 3, 5, 7, 9}}, {"b", {2, 4, 6, 8, 10}}}));
  EXPECT_EQ(data.getPosition(), 1);
  EXPECT_EQ(data.getRecordset()->getField("Close")->values().data(), columns->close.data());
  EXPECT_NE(data.getRecordset()->getField("Volume")->values().data(), columns->volume.data());

  data.OpenDatabaseByRows({.close = {columns->close, columns}});
  EXPECT_EQ(data.getRecordset()->getFieldCount(), 1);
  EXPECT_EQ(data.getRecordCount(), 2);

  const std::vector<double> three = {1, 2, 3};
  for (const PriceRows& odd : {PriceRows{}, PriceRows{.open = {three, {}}, .close = {columns->close, columns}},
                               PriceRows{.close = {three, {}}, .dates = {columns->dates, {}}}}) {
    EXPECT_FAULT(Database::loadFault(faults::SubscriptOutOfRange.description), data.OpenDatabaseByRows(odd));
    // The count is that of what was made, not of the series before.
    const auto made = data.getRecordset()->fields();
    EXPECT_EQ(data.getRecordCount(), made.empty() ? 0 : made.front()->getRecordCount().value());
  }
}

}  // namespace
}  // namespace orvex::test
