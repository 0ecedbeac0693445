// What single cells are read as.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

#include "orvex/prices/column_words.h"
#include "orvex/prices/date_cell.h"
#include "orvex/prices/number_cell.h"
#include "orvex/prices/plain_number.h"

namespace orvex::test {
namespace {

using prices::CellKind;
using prices::DateShape;
using prices::DecimalEvidence;
using prices::Role;

TEST(NumberCell, ReadsWhatPeopleWrite) {
  const struct {
    const char* cell;
    char decimal;
    double value;
  } cases[] = {
      {"12.5", '.', 12.5},
      {" -0.25\t", '.', -0.25},
      {"+3", '.', 3},
      {".5", '.', 0.5},
      {"5.", '.', 5},
      {"1e3", '.', 1000},
      {"1.5E-02", '.', 0.015},
      {"0.1234567890123456789", '.', 0.1234567890123456789},
      {"12,5", ',', 12.5},
      {"1,5e2", ',', 150},
      {"1,234.5", '.', 1234.5},
      {"1,234,567", '.', 1234567},
      {"1.234,5", ',', 1234.5},
      {"1.234.567", ',', 1234567},
      {"1'234.50", '.', 1234.5},
      {"1 234,50", ',', 1234.5},
      {"1\xC2\xA0"
       "234\xC2\xA0"
       "567,5",
       ',', 1234567.5},
      {"$12.50", '.', 12.5},
      {"-$1,234.50", '.', -1234.5},
      {"$-3", '.', -3},
      {"12,50 \xE2\x82\xAC", ',', 12.5},
      {"\xE2\x82\xAC 7", '.', 7},
      {"\xE2\x88\x92"
       "4",
       '.', -4},
      {"1.2M", '.', 1200000},
      {"3,4 k", ',', 3400},
      {"0.57B", '.', 570000000},
      {"2t", '.', 2e12},
  };
  for (const auto& [cell, decimal, value] : cases) {
    const auto read = prices::readNumberCell(cell, decimal);
    EXPECT_EQ(read.kind, CellKind::Number) << cell;
    EXPECT_EQ(read.value, value) << cell;
  }
}

TEST(NumberCell, TakesNothingElseForANumber) {
  const struct {
    const char* cell;
    char decimal;
  } cases[] = {
      {"1,5", '.'},   {"1.5", ','},        {"1,23,456", '.'}, {"0,123", '.'},  {"1234,567", '.'}, {"1,234.5.6", '.'},
      {"1.234", 'x'}, {"12 5", '.'},       {"1 2345", '.'},   {"0x10", '.'},   {"inf", '.'},      {"1e999", '.'},
      {"1e", '.'},    {"--5", '.'},        {"5-", '.'},       {"12%", '.'},    {"M", '.'},        {".", '.'},
      {"1.2.3", '.'}, {"2020-01-02", '.'}, {"1,234e5", '.'},  {"1.2Me3", '.'}, {"12O", '.'},      {"1\x01", '.'},
  };
  for (const auto& [cell, decimal] : cases) {
    EXPECT_EQ(prices::readNumberCell(cell, decimal).kind, CellKind::Text) << cell;
  }
  for (const char* cell : {"", "  ", "null", "NULL", "N/A", "#N/A", "NaN", "nan", "-", "--", "\xE2\x80\x93", "None"}) {
    EXPECT_EQ(prices::readNumberCell(cell, '.').kind, CellKind::Missing) << cell;
  }
}

TEST(NumberCell, TellsWhichDecimalSignItShows) {
  const struct {
    const char* cell;
    DecimalEvidence evidence;
  } cases[] = {
      {"12", DecimalEvidence::None},         {"abc.d", DecimalEvidence::None},
      {"1.5", DecimalEvidence::Point},       {"1,5", DecimalEvidence::Comma},
      {"1.234", DecimalEvidence::Either},    {"1,234", DecimalEvidence::Either},
      {"0.123", DecimalEvidence::Point},     {"0,123", DecimalEvidence::Comma},
      {"1234.567", DecimalEvidence::Point},  {"1,234,567", DecimalEvidence::Point},
      {"1.234.567", DecimalEvidence::Comma}, {"1,234.5", DecimalEvidence::Point},
      {"1.234,5", DecimalEvidence::Comma},   {"$1.234", DecimalEvidence::Either},
      {"1.2345", DecimalEvidence::Point},
  };
  for (const auto& [cell, evidence] : cases) EXPECT_EQ(prices::decimalEvidence(cell), evidence) << cell;
}

TEST(PlainNumber, IsWhatAnyNumberIs) {
  // All lengths of both parts, with what follows a cell near and far, as the decimal sign and as something else.
  for (std::size_t whole = 0; whole <= 12; ++whole) {
    for (std::size_t fraction = 0; fraction <= 12; ++fraction) {
      for (const char* behind : {"", ",", ",1", ",12345678", "\n98765432", ".5,12345678", "/00000000", ":00000000",
                                 "\xB1\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}) {
        for (const bool negative : {false, true}) {
          std::string number = (negative ? "-" : "") + std::string("908172635401").substr(0, whole);
          if (fraction > 0) number += '.' + std::string("102938475600").substr(0, fraction);
          const std::string text = number + behind;
          // A sign at once behind whole digits belongs to the number.
          const bool longer = fraction == 0 && behind[0] == '.';
          const char* from = text.data();
          double value = 0.0;
          const bool taken = prices::takePlainNumber(from, text.data() + text.size(), '.', value);
          EXPECT_EQ(taken, whole > 0 && whole + fraction + (longer ? 1 : 0) <= 15) << text;
          if (!taken) {
            EXPECT_EQ(from, text.data()) << text;
            continue;
          }
          const std::string cell = number + (longer ? ".5" : "");
          EXPECT_EQ(from - text.data(), static_cast<std::ptrdiff_t>(cell.size())) << text;
          EXPECT_EQ(value, std::strtod(cell.c_str(), nullptr)) << text;
        }
      }
    }
  }
}

TEST(DateCell, ReadsEveryShape) {
  const struct {
    const char* cell;
    DateShape shape;
    const char* date;
  } cases[] = {
      {"2020-01-31", DateShape::YearFirst, "2020-01-31"},
      {"2020-1-5", DateShape::YearFirst, "2020-01-05"},
      {"2020/01/31 9:30", DateShape::YearFirst, "2020-01-31 09:30:00"},
      {"2020.01.31", DateShape::YearFirst, "2020-01-31"},
      {"2020-01-31T09:30:15.250Z", DateShape::YearFirst, "2020-01-31 09:30:15"},
      {"2020-01-31 23:30:00-05:00", DateShape::YearFirst, "2020-02-01 04:30:00"},
      {"2020-01-31 04:00 +0530", DateShape::YearFirst, "2020-01-30 22:30:00"},
      {"2020-01-31 12:05 AM", DateShape::YearFirst, "2020-01-31 00:05:00"},
      {"2020-02-29", DateShape::YearFirst, "2020-02-29"},
      {"31.1.2020", DateShape::DayFirst, "2020-01-31"},
      {"31.01.20 17:35", DateShape::DayFirst, "2020-01-31 17:35:00"},
      {"20200131", DateShape::Compact, "2020-01-31"},
      {"20200131 093000", DateShape::Compact, "2020-01-31 09:30:00"},
      {"202001310930", DateShape::Compact, "2020-01-31 09:30:00"},
      {"20200131093005", DateShape::Compact, "2020-01-31 09:30:05"},
      {"31 Jan 2020", DateShape::MonthName, "2020-01-31"},
      {"Jan 31, 2020", DateShape::MonthName, "2020-01-31"},
      {"31-jan-20", DateShape::MonthName, "2020-01-31"},
      {"January 31 1999", DateShape::MonthName, "1999-01-31"},
      {"1580428800", DateShape::EpochSeconds, "2020-01-31"},
      {"1580428800.0", DateShape::EpochSeconds, "2020-01-31"},
      {"1580463000000", DateShape::EpochMillis, "2020-01-31 09:30:00"},
      {"1580463000000000", DateShape::EpochMicros, "2020-01-31 09:30:00"},
      {"31/1/2020", DateShape::DayOrMonth, "2020-01-31"},
      {"1/31/2020 4:00 PM", DateShape::DayOrMonth, "2020-01-31 16:00:00"},
      {"31-01-2020", DateShape::DayOrMonth, "2020-01-31"},
      {"1969-12-31 23:59:59", DateShape::YearFirst, "1969-12-31 23:59:59"},
  };
  for (const auto& [cell, shape, date] : cases) {
    const auto read = prices::readDateCell(cell);
    ASSERT_TRUE(read.has_value()) << cell;
    EXPECT_EQ(read->shape, shape) << cell;
    EXPECT_EQ(prices::dateText(read->time), date) << cell;
  }
  const auto either = prices::readDateCell("1/2/2020");
  ASSERT_TRUE(either && either->monthFirst);
  EXPECT_EQ(prices::dateText(either->time), "2020-02-01");
  EXPECT_EQ(prices::dateText(*either->monthFirst), "2020-01-02");
}

TEST(DateCell, ReadsPlainDatesAlike) {
  const struct {
    DateShape shape;
    std::vector<const char*> plain;  // read without the other's help
    std::vector<const char*> other;
  } cases[] = {
      {DateShape::YearFirst,
       {"2020-02-28", "2020-02-29", "2020/02/28", "2020.02.28", "2020-02-28 09:30", "2020-02-28T09:30:15", "1900-02-28",
        "2000-02-29 23:59:59", "2000-12-31", "0001-01-01"},
       {"2020-02-30", "2020-02-00", "2020-02-1x", "2019-02-29", "2020-13-01", "2020-00-01", "2020-02-28 24:00",
        "2020-02-28 09:60", "2020-02-28 0930", "202O-02-28", "1900-02-29", "2020-02/28", "2020-1-2", "0000-01-01", ""}},
      {DateShape::DayFirst,
       {"31.1.2020", "01.12.2020", "29.02.2020 09:30"},
       {"31.4.2020", "31/1/2020", "3.1.20", "1.1."}},
      {DateShape::DayOrMonth,
       {"1/2/2020", "01-02-2020", "13/2/2020", "2/13/2020", "2/29/2020 09:30:01", "12/31/1999"},
       {"13/13/2020", "2/30/2020", "1.2.2020", "1/2/20", "1/2-2020", "1/2/202O", "//1/2020", "111/2/2020"}},
      {DateShape::Compact, {"20200229", "18000101"}, {"20190229", "17991231", "22000101", "2020022", "202002291"}},
  };
  for (const auto& [shape, plain, other] : cases) {
    prices::PlainDates dates(shape);
    for (const char* cell : plain) {
      prices::DateCell date{};
      ASSERT_TRUE(dates.read(cell, date)) << cell;
      const auto expected = prices::readDateCell(cell);
      ASSERT_TRUE(expected.has_value()) << cell;
      EXPECT_EQ(date.shape, expected->shape) << cell;
      EXPECT_EQ(date.time, expected->time) << cell;
      EXPECT_EQ(date.monthFirst, expected->monthFirst) << cell;
      EXPECT_EQ(date.dayFirstHolds, expected->dayFirstHolds) << cell;
    }
    prices::DateCell date{};
    for (const char* cell : other) EXPECT_FALSE(dates.read(cell, date)) << cell;
  }
}

TEST(DateCell, TakesNothingElseForADate) {
  for (const char* cell : {"",
                           "43831",
                           "2020",
                           "2020-13-01",
                           "2020-02-30",
                           "2019-02-29",
                           "2020-01",
                           "32.1.2020",
                           "13/13/2020",
                           "1/2/3",
                           "2020-01-31x",
                           "2020-01-31 25:00",
                           "2020-01-31 9",
                           "20201301",
                           "Jax 3, 2020",
                           "12.5",
                           "1",
                           "abc",
                           "2020-0l-02",
                           "2020-01-02 09:61"}) {
    EXPECT_FALSE(prices::readDateCell(cell).has_value()) << cell;
  }
}

TEST(DateCell, ReadsTimesAndSpans) {
  const struct {
    const char* cell;
    int seconds;
  } times[] = {{"09:30", 34200}, {"9:30:01", 34201}, {"4:00 PM", 57600}, {"093000", 34200},
               {"93000", 34200}, {"0930", 34200},    {"000000", 0}};
  for (const auto& [cell, seconds] : times)
    EXPECT_EQ(prices::readTimeCell(cell), seconds * prices::secondLength) << cell;
  for (const char* cell : {"9", "25:00", "0999", "noon", ""}) EXPECT_FALSE(prices::readTimeCell(cell)) << cell;

  const struct {
    const char* text;
    const char* first;
    const char* last;
  } spans[] = {{"2020-02", "2020-02-01", "2020-02-29 23:59:59"},
               {"2020-12", "2020-12-01", "2020-12-31 23:59:59"},
               {"2020-01-31", "2020-01-31", "2020-01-31 23:59:59"},
               {"2020-01-31 09:30", "2020-01-31 09:30:00", "2020-01-31 09:30:59"}};
  for (const auto& [text, first, last] : spans) {
    const auto span = prices::readTimeSpan(text);
    ASSERT_TRUE(span.has_value()) << text;
    EXPECT_EQ(prices::dateText(span->first), first);
    EXPECT_EQ(prices::dateText(span->last), last);
  }
  EXPECT_FALSE(prices::readTimeSpan("1/2/2020").has_value());
}

TEST(ColumnWords, MeanTheSixColumns) {
  const struct {
    Role role;
    std::vector<const char*> names;
  } cases[] = {
      {Role::Date, {"Date", "timestamp", "<DATE>", "Datum", "Fecha", "Open Time"}},
      {Role::Clock, {"Time", "<TIME>", "Uhrzeit"}},
      {Role::Open,
       {"OPEN", "1. open", "<OPEN>",
        "Er\xC3\xB6"
        "ffnung",
        "er\xC3\x96"
        "ffn.",
        "Ouv.", "Apertura", "open_price"}},
      {Role::High, {"2. high", "Hoch", "Plus Haut", "M\xC3\xA1ximo"}},
      {Role::Low, {"3. low", "Tief", "Plus Bas", "M\xC3\xADnimo"}},
      {Role::Close,
       {"4. close", "Close/Last", "Schluss", "Cl\xC3\xB4ture", "Cierre", "Price", "Zuletzt", "Dernier", "\xC3\x9Altimo",
        "Adj Close", "adj_close"}},
      {Role::Volume, {"5. volume", "Vol.", "<VOL>", "Volumen"}},
      {Role::Other, {"", "symbol", "5. adjusted", "closed", "1."}},
  };
  for (const auto& [role, names] : cases) {
    for (const char* name : names) EXPECT_EQ(prices::meaningOf(name).role, role) << name;
  }
  EXPECT_EQ(prices::meaningsOf({"Date", "Adj Close", "Close"}).roles,
            (std::vector<Role>{Role::Date, Role::Other, Role::Close}));
  EXPECT_EQ(prices::meaningsOf({"Time", "Last", "Settle"}).roles,
            (std::vector<Role>{Role::Date, Role::Other, Role::Other}));
}

}  // namespace
}  // namespace orvex::test
