// Price files of every kind that people have: what is read, what is remarked on, what is refused.
#include "orvex/prices/price_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "orvex/data/integer.h"
#include "tests/support/file.h"

namespace orvex::test {
namespace {

using prices::Missing;
using prices::Options;
using prices::Order;
using prices::PriceTable;
using prices::ReadError;
using prices::Role;

/// A text in UTF-16.
std::string utf16(const std::string& ascii, bool bigEndian, bool mark) {
  std::string bytes = !mark ? "" : bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char c : ascii) bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return bytes;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += text + '\n';
  return all;
}

/// The dates and closes of a table: "2020-01-01=1.5 ...".
std::string closesOf(const PriceTable& table) {
  std::string text;
  const auto* dates = table.find(Role::Date);
  const auto* closes = table.find(Role::Close);
  for (std::size_t i = 0; i < table.count; ++i) {
    text += (i == 0 ? "" : " ");
    if (!table.times.empty()) {
      text += prices::dateText(table.times[i]);
    } else if (dates != nullptr) {
      text += dates->texts[i];
    }
    const double close = closes == nullptr ? std::numeric_limits<double>::quiet_NaN() : closes->numbers[i];
    std::string number = std::isnan(close) ? "" : std::to_string(close);
    if (!number.empty()) number.erase(std::max(number.find_last_not_of("0"), number.find('.') + 1) + 1);
    text += '=' + number;
  }
  return text;
}

struct Kind {
  const char* what;
  std::string text;
  const char* closes;
  std::string remark;  // part of what is remarked; empty where nothing is
  Options options{};
};

constexpr const char* usual = "2020-01-01=1.5 2020-01-02=2.0 2020-01-03=4.0";

void expectRead(const Kind& kind) {
  SCOPED_TRACE(kind.what);
  try {
    const PriceTable table = prices::read(kind.text, kind.options);
    EXPECT_EQ(closesOf(table), kind.closes);
    const std::string remarks = joined(table.remarks);
    if (kind.remark.empty()) {
      EXPECT_EQ(remarks, "");
    } else {
      EXPECT_NE(remarks.find(kind.remark), std::string::npos) << remarks;
    }
  } catch (const ReadError& error) {
    ADD_FAILURE() << "line " << error.line() << ", cell " << error.cell() << ": " << error.what();
  }
}

TEST(PriceReader, ReadsTheSameSeriesFromManyLayouts) {
  const std::string lines = "2020-01-01,1,2,1,1.5,10\n2020-01-02,1,2,1,2,10\n2020-01-03,4,4,4,4,10\n";
  const Kind kinds[] = {
      {"without a header", lines, usual, ""},
      {"no end of the last line", lines.substr(0, lines.size() - 1), usual, ""},
      {"blank lines and lines of delimiters", "\n" + lines + "\n,,,,,\n\n", usual, ""},
      {"carriage returns alone", "Date,Close\r2020-01-01,1.5\r2020-01-02,2\r2020-01-03,4\r", usual, ""},
      {"byte-order mark and CR LF",
       "\xEF\xBB\xBF"
       "Close\tDate\r\n1.5\t2020-01-01\r\n2\t2020-01-02\r\n4\t2020-01-03\r\n",
       usual, ""},
      {"UTF-16, little-endian", utf16(lines, false, true), usual, ""},
      {"UTF-16, big-endian, without a mark", utf16(lines, true, false), usual, ""},
      {"Windows-1252", "Date;Sch\xE4tzung;Close\n2020-01-01;a;1,5\n2020-01-02;;2,0\n2020-01-03;b;4,0\n", usual, ""},
      {"semicolons and decimal commas",
       "Datum;Er\xC3\xB6"
       "ffnung;Hoch;Tief;Schluss;Volumen\n01.01.2020;1;2;1;1,5;1.000\n02.01.2020;1;2;1;2;1.000\n03.01.2020;4;4;4;4;1."
       "000\n",
       usual, ""},
      {"French words, a plain blank for thousands",
       "Date;Ouv.;Plus Haut;Plus Bas;Dernier;Vol.\n31/12/2019;1,0;1,0;1,0;1,0;1 000\n01/01/2020;1,5;1,5;1,5;1,5;1,2M\n",
       "2019-12-31=1.0 2020-01-01=1.5", "\"Dernier\" is taken for Close"},
      {"Spanish words",
       "Fecha;Apertura;M\xC3\xA1ximo;M\xC3\xADnimo;Cierre\n31/12/2019;1;1;1;1\n01/01/2020;1,5;1,5;1,5;1,5\n",
       "2019-12-31=1.0 2020-01-01=1.5", ""},
      {"tabs", "Date\tClose\tx;;;\n2020-01-01\t1.5\ta\n2020-01-02\t2\tb\n2020-01-03\t4\tc\n", usual, ""},
      {"pipes", "2020-01-01|1|2|1|1.5|10\n2020-01-02|1|2|1|2|10\n2020-01-03|4|4|4|4|10\n", usual, ""},
      {"blanks, several of them", "Date  Close\n2020-01-01   1.5\n2020-01-02  2\n2020-01-03   4\n", usual, ""},
      {"a delimiter that is told",
       "2020-01-01\xC2\xA7"
       "1.5\n2020-01-02\xC2\xA7"
       "2\n2020-01-03\xC2\xA7"
       "4\n",
       usual,
       "taken for Date and Close",
       {.delimiter = "\xC2\xA7"}},
      {"sep=", "sep=;\nDate;Close\n2020-01-01;1.5\n2020-01-02;2.0\n2020-01-03;4\n", usual, ""},
      {"quoted cells, currency, thousands",
       "\"Date\",\"Close/Last\",\"Volume\",\"Open\",\"say \"\"x\"\", "
       "y\"\n\"01/02/2020\",\"$1,002.50\",\"1,234,567\",\"$2\",\"a "
       "\"\"b\"\"\"\n\"01/13/2020\",\"$999.25\",\"8,000\",\"$2\",\"\"\n",
       "2020-01-02=1002.5 2020-01-13=999.25", ""},
      {"numbered words", "timestamp,1. open,2. high,3. low,4. close,5. volume\n2020-01-01,1,2,1,1.5,10\n",
       "2020-01-01=1.5", ""},
      {"date and time apart",
       "<DATE>\t<TIME>\t<OPEN>\t<HIGH>\t<LOW>\t<CLOSE>\t<TICKVOL>\t<VOL>\t<SPREAD>\n2020.01.01\t09:30:00\t1\t2\t1\t1."
       "5\t3\t0\t5\n2020.01.01\t09:31:00\t1\t3\t1\t2.5\t3\t0\t5\n",
       "2020-01-01 09:30:00=1.5 2020-01-01 09:31:00=2.5", ""},
      {"date and time apart without a header", "2020.01.01,09:30,1,2,1,1.5,3\n2020.01.01,09:31,1,3,1,2.5,3\n",
       "2020-01-01 09:30:00=1.5 2020-01-01 09:31:00=2.5", ""},
      {"compact dates with a time", "20200101 093000;1;2;1;1.5;0\n20200101 093100;1;3;1;2.5;0\n",
       "2020-01-01 09:30:00=1.5 2020-01-01 09:31:00=2.5", ""},
      {"epoch milliseconds", "1577836800000,1,2,1,1.5,3\n1577923200000,1,2,1,2,3\n", "2020-01-01=1.5 2020-01-02=2.0",
       ""},
      {"no volume", "2020-01-01,1,2,1,1.5\n2020-01-02,1,2,1,2\n", "2020-01-01=1.5 2020-01-02=2.0",
       "no header line and no volume"},
      {"a name that is a number", "date,20,close\n2020-01-01,7,1.5\n2020-01-02,7,2\n2020-01-03,7,4\n", usual, ""},
      {"identifiers like huge numbers",
       "date,7e9999,close\n2020-01-01,12e4567,1.5\n2020-01-02,9e999ab,2\n2020-01-03,1,4\n", usual, ""},
      {"Adj Close beside Close", "Date,Adj Close,Close\n2020-01-01,9,1.5\n2020-01-02,9,2\n2020-01-03,9,4\n", usual, ""},
      {"doubled names", "Date,Close,close\n2020-01-01,1.5,9\n2020-01-02,2,9\n2020-01-03,4,9\n", usual,
       "More than one column could be Close: \"Close\" is taken"},
      {"columns that are chosen",
       "day,first,last\n2020-01-01,9,1.5\n2020-01-02,9,2\n2020-01-03,9,4\n",
       usual,
       "",
       {.columns = {{Role::Open, "First"}, {Role::Close, "last"}}}},
      {"columns that are chosen by number",
       "x,1.5,2020-01-01\ny,2,2020-01-02\nz,4,2020-01-03\n",
       usual,
       "",
       {.columns = {{Role::Date, "3"}, {Role::Close, "2"}}}},
      {"a decimal comma that is told",
       "2020-01-01;1,500;0;0;1,500;0\n2020-01-02;2,000;0;0;2,000;0\n",
       "2020-01-01=1.5 2020-01-02=2.0",
       "outside the range",
       {.decimal = ','}},
      {"a later line shows the decimal sign", "date;close\n2020-01-01;1.234\n2020-01-02;1.25\n",
       "2020-01-01=1.234 2020-01-02=1.25", ""},
      {"points between commas are decimal", "date,close\n2020-01-01,1.234\n", "2020-01-01=1.234", ""},
      {"newest first", "Date,Close\n2020-01-03,4\n2020-01-02,2\n2020-01-01,1.5\n", usual, "newest record comes first"},
      {"newest first, kept",
       "Date,Close\n2020-01-03,4\n2020-01-02,2\n",
       "2020-01-03=4.0 2020-01-02=2.0",
       "",
       {.order = Order::Keep}},
      {"doubled dates, kept",
       "Date,Close\n2020-01-02,4\n2020-01-02,2\n",
       "2020-01-02=4.0 2020-01-02=2.0",
       "",
       {.order = Order::Keep}},
      {"the day first, as a later line shows", "Date,Close\n1/2/2020,1\n13/2/2020,2\n", "2020-02-01=1.0 2020-02-13=2.0",
       ""},
      {"the month first, as a later line shows", "Date,Close\n1/2/2020,1\n1/13/2020,2\n",
       "2020-01-02=1.0 2020-01-13=2.0", ""},
      {"the month first, once a line has shown it, however the later dates are written",
       "Date,Close\n1/2/2020,1\n1/13/2020,2\n2/1/2020,3\n2/3/20,4\n",
       "2020-01-02=1.0 2020-01-13=2.0 2020-02-01=3.0 2020-02-03=4.0", ""},
      {"the day first, once a line has shown it, however the later dates are written",
       "Date,Close\n1/2/2020,1\n13/2/2020,2\n1/3/2020,3\n2/3/20,4\n",
       "2020-02-01=1.0 2020-02-13=2.0 2020-03-01=3.0 2020-03-02=4.0", ""},
      {"the day first, as the order shows", "Date,Close\n1/2/2020,1\n3/2/2020,2\n2/3/2020,3\n",
       "2020-02-01=1.0 2020-02-03=2.0 2020-03-02=3.0", "with the day first: only so are they in order"},
      {"dates that are in order either way", "Date,Close\n1/3/2020,2\n1/2/2020,1\n", "1/2/2020=1.0 1/3/2020=2.0",
       "whether the day or the month comes first in dates such as \"1/3/2020\""},
      {"dates that are in order neither way, as they are",
       "Date,Close\n1/2/2020,1\n1/1/2020,2\n1/3/2020,3\n",
       "1/2/2020=1.0 1/1/2020=2.0 1/3/2020=3.0",
       "so they stay texts",
       {.order = Order::Keep}},
      {"a day of 0", "Date,Close\n0 Jan 31 2020,1\n", "0 Jan 31 2020=1.0", "is no date"},
      {"spreadsheet dates", "Date,Close\n43831,1.5\n43832,2\n", "43831=1.5 43832=2.0",
       "\"43831\" in line 2 is no date"},
      {"texts for dates", "Date,Close\nb,1.5\na,2\n", "b=1.5 a=2.0", "the order of the records is unchecked"},
      {"no dates", "Close\n1.5\n2\n", "=1.5 =2.0", "no column of dates"},
      {"missing at both ends", "Date,Close\n2020-01-01,\n2020-01-02,2\n2020-01-03,null\n",
       "2020-01-01= 2020-01-02=2.0 2020-01-03=", "no values before line 3 and behind line 3"},
      {"missing, left out",
       "Date,Open,Close\n2020-01-01,1,1.5\n2020-01-02,-,2\n2020-01-03,1,N/A\n2020-01-04,1,4\nfooter\n",
       "2020-01-01=1.5 2020-01-04=4.0",
       "3 records without all prices left out: lines 3, 4, 6",
       {.missing = Missing::Skip}},
      {"missing, from the record before",
       "Date,Open,Close\n2020-01-01,1,1.5\n2020-01-02,1,nan\n2020-01-03,1,\n2020-01-04,1,4\n",
       "2020-01-01=1.5 2020-01-02=1.5 2020-01-03=1.5 2020-01-04=4.0",
       "2 missing prices taken from the record before: lines 3, 4",
       {.missing = Missing::Previous}},
      {"a column without values", "Date,Close,Volume\n2020-01-01,1.5,-\n2020-01-02,2,-\n2020-01-03,4,-\n", usual,
       "Volume has no values at all"},
      {"gaps in further columns", "Date,Close,Dividend\n2020-01-01,1.5,\n2020-01-02,2,0.1\n2020-01-03,4,\n", usual, ""},
      {"bars that contradict themselves", "Date,High,Low,Close\n2020-01-01,2,1,1.5\n2020-01-02,2,1,2.5\n",
       "2020-01-01=1.5 2020-01-02=2.5",
       "1 record has an open or a close outside the range from low to high, in line 3"},
      {"from a date", lines, "2020-01-02=2.0 2020-01-03=4.0", "", {.from = "2020-01-02"}},
      {"to a date", lines, "2020-01-01=1.5 2020-01-02=2.0", "", {.to = "2020-01-02"}},
      {"a month", lines, usual, "", {.from = "2020-01", .to = "2020-01"}},
      {"records", lines, "2020-01-02=2.0", "", {.from = "2", .to = "2"}},
      {"the last ones of these", lines, "2020-01-02=2.0", "", {.to = "2020-01-02", .tail = 1}},
      {"more than there are", lines, usual, "", {.to = "99", .tail = 99}},
  };
  for (const Kind& kind : kinds) expectRead(kind);
}

TEST(PriceReader, RefusesWhatIsNotCertain) {
  const std::string head = "Date,Open,High,Low,Close,Volume\n2020-01-01,1,2,1,1.5,10\n";
  const struct {
    const char* what;
    std::string text;
    std::size_t line;
    std::size_t cell;
    const char* told;
    Options options{};
  } cases[] = {
      {"nothing", "", 0, 0, "no records"},
      {"blank lines alone", "\n \n", 0, 0, "no records"},
      {"a header alone", "Date,Close\n", 0, 0, "no records"},
      {"an archive", "PK\x03\x04zzzz", 0, 0, "save the sheet"},
      {"a compressed file", "\x1F\x8B zzzz", 0, 0, "unpack it"},
      {"a web page", "<!DOCTYPE html>", 0, 0, "web page"},
      {"binary", head + std::string("a\0b", 3), 0, 0, "bytes of 0"},
      {"UTF-16 cut off", utf16(head, false, true) + "x", 0, 0, "middle of a character"},
      {"a missing price", head + "2020-01-02,1,2,1,,10\n2020-01-03,1,2,1,1,10\n", 3, 5, "--missing skip"},
      {"a missing price named", head + "2020-01-02,1,2,null,1,10\n2020-01-03,1,2,1,1,10\n", 3, 4, "\"Low\""},
      {"a short row", head + "2020-01-02,1,2,1\n2020-01-03,1,2,1,1,10\n", 3, 0, "4 values where line 1 names 6"},
      {"a footer", head + "Source: somewhere\n", 3, 0, "\"Source: somewhere\""},
      {"a long row", head + "2020-01-02,1,2,1,1,10,5\n", 3, 7, "more than the 6 values"},
      {"a text for a price", head + "2020-01-02,1,abc,1,1,10\n", 3, 3, "\"abc\" in column \"High\" is no number"},
      {"a number beyond a double", head + "2020-01-02,1,1e999,1,1,10\n", 3, 3, "no number that fits a double"},
      {"control characters are not printed", head + "2020-01-02,1,\x1B[2J\x9F,1,1,10\n", 3, 3, "\\x1B[2J"},
      {"a quotation mark", head + "2020-01-02,\"1,2,1,1,10\n", 3, 2, "not closed"},
      {"a quotation mark in the first line", "\"Date,Close\n2020-01-01,1\n", 1, 0, "not closed"},
      {"a text behind a quotation mark", head + "2020-01-02,\"1\"x,2,1,1,10\n", 3, 2, "not closed"},
      {"a decimal comma among points", "Date;Close\n2020-01-01;1.5\n2020-01-02;1,5\n", 3, 2, "decimal sign"},
      {"an unquoted decimal comma", "Date,Close\n2020-01-01,1,5\n", 2, 3, "more than the 2 values"},
      {"a point that may be either", "Date;Close\n2020-01-01;1.234\n2020-01-02;2.345\n", 2, 2, "--decimal"},
      {"a quoted comma that may be either", "Date,Close\n2020-01-01,\"1,234\"\n", 2, 2, "--decimal"},
      {"a date that is none", head + "2020-02-30,1,2,1,1,10\n", 3, 1, "no date like \"2020-01-01\""},
      {"a date of another kind", head + "2.1.2020,1,2,1,1,10\n", 3, 1, "no date like"},
      {"no date", head + ",1,2,1,1,10\n", 3, 1, "no date like"},
      {"a time that is none", "Date,Time,Close\n2020-01-01,09:30,1\n2020-01-01,09:70,1\n", 3, 2, "no time of the day"},
      {"unsorted", head + "2020-01-03,1,2,1,1,10\n2020-01-02,1,2,1,1,10\n2020-01-04,1,2,1,1,10\n", 4, 1,
       "rising order. --order keep"},
      {"doubled", head + "2020-01-01,1,2,1,1,10\n2020-01-02,1,2,1,1,10\n", 3, 1, "date of line 2 again"},
      {"unsorted, newest first", "Date,Close\n2020-01-05,1\n2020-01-04,1\n2020-01-06,1\n2020-01-03,1\n", 4, 1,
       "falling order"},
      {"day and month in turn", "Date,Close\n13/1/2020,1\n1/14/2020,1\n", 3, 1, "month first, that of line 2 the day"},
      {"seven columns without a header", "2020-01-01,1,2,1,1.5,10,3\n", 1, 0, "--columns Date=1,Close=2"},
      {"a column that is not there", head, 0, 0, "there are \"Date\", \"Open\"", {.columns = {{Role::Close, "last"}}}},
      {"a column chosen for two", head, 0, 0, "chosen twice", {.columns = {{Role::Open, "1"}, {Role::Close, "1"}}}},
      {"two columns chosen for one",
       head,
       0,
       0,
       "Two columns are chosen to be Close",
       {.columns = {{Role::Close, "1"}, {Role::Close, "2"}}}},
      {"no delimiter at all", head, 0, 0, "The delimiter is empty", {.delimiter = ""}},
      {"a year that there is not", head, 0, 0, "neither the number of a record nor a date", {.from = "0000-01"}},
      {"nothing left",
       head,
       0,
       0,
       "2020-01-01 to 2020-01-01",
       {.from = "2021"
                "-01"}},
      {"a bound that is none", head, 0, 0, "neither the number of a record nor a date", {.from = "soon"}},
      {"record 0", head, 0, 0, "counted from 1", {.from = "0"}},
      {"a date where there are none", "Date,Close\na,1\n", 0, 0, "by their numbers", {.to = "2020-01-01"}},
  };
  for (const auto& [what, text, line, cell, told, options] : cases) {
    SCOPED_TRACE(what);
    try {
      const PriceTable table = prices::read(text, options);
      ADD_FAILURE() << closesOf(table) << joined(table.remarks);
    } catch (const ReadError& error) {
      EXPECT_EQ(error.line(), line) << error.what();
      EXPECT_EQ(error.cell(), cell) << error.what();
      EXPECT_NE(std::string(error.what()).find(told), std::string::npos) << error.what();
      EXPECT_EQ(error.fault().number, 1012);
      EXPECT_EQ(std::string(error.what()).find('\x1B'), std::string::npos);
    }
  }
}

TEST(PriceReader, KeepsFurtherColumnsAsTheyAre) {
  const PriceTable table = prices::read("Date,symbol,Fast,Close\n2020-01-01,\"A \"\"x\"\"\",,1\n2020-01-02,B,0.5,2\n");
  const auto* symbol = table.find("Symbol");
  const auto* fast = table.find("fast");
  ASSERT_TRUE(symbol != nullptr && fast != nullptr);
  EXPECT_EQ(symbol->textLine, 2u);
  EXPECT_EQ(symbol->texts[0], "A \"x\"");
  EXPECT_EQ(symbol->texts[1], "B");
  EXPECT_FALSE(fast->isText());
  EXPECT_TRUE(std::isnan(fast->numbers[0]));
  EXPECT_EQ(fast->numbers[1], 0.5);
  EXPECT_EQ(table.lines, (std::vector<std::size_t>{2, 3}));
  EXPECT_EQ(table.find("volume"), nullptr);
}

TEST(PriceReader, HandsItsPricesToADatabase) {
  Database data;
  data.OpenDatabaseByRows(
      prices::rowsOf(prices::read("Close;Note;Low;Date;Volume\n1,5;a;1;2020-01-02;\n2,5;b;2;2020-01-03;\n")));
  const auto set = data.getRecordset();
  // Neither what is no price nor a price without any value.
  ASSERT_EQ(set->getFieldCount(), 3);
  EXPECT_EQ(data.getRecordCount(), 2);
  EXPECT_EQ(set->getField("Date")->getStrValue(2), "2020-01-03");
  EXPECT_EQ(set->getValue("Low", 2), 2.0);
  EXPECT_EQ(set->getValue("Close", 2), 2.5);
}

TEST(PriceReader, ReadsFilesByTheirPaths) {
  const File file("Date,Close\n2020-01-01,1.5\n");
  EXPECT_EQ(closesOf(prices::readFile(file.path())), "2020-01-01=1.5");
  try {
    prices::readFile(file.path() + ".none");
    ADD_FAILURE();
  } catch (const ReadError& error) {
    EXPECT_EQ(error.fault(), Database::loadFault("File not found"));
  }
}

// A file of 2^31 records is too large for a test.
#if ORVEX_COUNT_BITS == 16
TEST(PriceReader, TakesAsManyRecordsAsCountsCanTell) {
  std::string text = "x,Close\n";
  for (int i = 0; i < 32767; ++i) text += "d,1\n";
  EXPECT_EQ(prices::read(text).count, 32767u);
  text += "d,1\n";
  try {
    prices::read(text);
    ADD_FAILURE();
  } catch (const ReadError& error) {
    EXPECT_NE(std::string(error.what()).find("32768 records"), std::string::npos) << error.what();
    EXPECT_NE(std::string(error.what()).find("--tail 32767"), std::string::npos) << error.what();
    EXPECT_EQ(error.fault().description, "Overflow");
  }
  EXPECT_EQ(prices::read(text, {.tail = 32767}).count, 32767u);
}
#endif

/// A good file of one of several kinds, as its lines.
struct GoodFile {
  std::vector<std::string> lines;
  std::string delimiter;
};

GoodFile makeGoodFile(std::mt19937& random) {
  const bool comma = random() % 3 == 0;
  const std::string delimiter = comma ? ";" : std::vector<std::string>{",", ";", "\t", "|"}[random() % 4];
  const bool header = random() % 2 == 0;
  const auto decimal = [&](double number) {
    std::string text = std::to_string(number);
    text.resize(text.find('.') + 3);
    if (comma) text[text.find('.')] = ',';
    return text;
  };
  GoodFile file{{}, delimiter};
  if (header) {
    std::string line = "Date";
    for (const char* name : {"Open", "High", "Low", "Close", "Volume"}) line += delimiter + name;
    file.lines.push_back(line);
  }
  double price = 50.0 + static_cast<double>(random() % 100);
  for (int i = 0; i < 20; ++i) {
    const double open = price;
    price += (static_cast<int>(random() % 200) - 100) / 50.0;
    const double high = std::max(open, price) + 0.25;
    const double low = std::min(open, price) - 0.25;
    std::string line = prices::dateText((18262 + i) * prices::dayLength);
    for (const double value : {open, high, low, price}) line += delimiter + decimal(value);
    file.lines.push_back(line + delimiter + std::to_string(1000 + random() % 9000));
  }
  return file;
}

/// The figures of a table, in one text of bits.
std::string figuresOf(const PriceTable& table) {
  std::string text = closesOf(table);
  for (const auto& column : table.columns) {
    for (const double number : column.numbers) text += ' ' + std::to_string(number);
  }
  return text;
}

TEST(PriceReader, NeverTakesADamagedFileForAnother) {
  std::mt19937 random(20);
  int refused = 0;
  int unharmed = 0;
  int remarked = 0;
  for (int round = 0; round < 2000; ++round) {
    const GoodFile good = makeGoodFile(random);
    const std::string figures = figuresOf(prices::read(joined(good.lines)));
    std::vector<std::string> lines = good.lines;
    const std::size_t at = random() % lines.size();
    std::string& line = lines[at];
    const auto place = [&](auto&& holds) {
      std::vector<std::size_t> places;
      for (std::size_t i = 0; i < line.size(); ++i) {
        if (holds(line[i])) places.push_back(i);
      }
      return places.empty() ? std::string::npos : places[random() % places.size()];
    };
    const auto cell = [&] {  // of a price or the volume
      std::size_t from = line.find(good.delimiter);
      for (auto skip = random() % 5; skip > 0; --skip) from = line.find(good.delimiter, from + 1);
      return std::pair(from + 1, std::min(line.find(good.delimiter, from + 1), line.size()));
    };
    const bool isHeader = line.starts_with("Date");
    switch (random() % 12) {
      case 0:  // a digit becomes another character
        if (const auto i = place([](char c) { return c >= '0' && c <= '9'; }); i != std::string::npos) {
          line[i] = "OlSx?\x01"[random() % 6];
        }
        break;
      case 1:  // a delimiter is lost
        line.erase(place([&](char c) { return c == good.delimiter[0]; }), 1);
        break;
      case 2:  // or doubled
        line.insert(place([&](char c) { return c == good.delimiter[0]; }), good.delimiter);
        break;
      case 3:  // or becomes another
        line[place([&](char c) { return c == good.delimiter[0]; })] = ":~#/"[random() % 4];
        break;
      case 4:  // a cell is lost
        if (const auto [from, to] = cell(); !isHeader)
          line.replace(from, to - from, std::vector<std::string>{"", "null", "N/A", "-"}[random() % 4]);
        break;
      case 5:  // or is a text
        if (const auto [from, to] = cell(); !isHeader) line.replace(from, to - from, "abc");
        break;
      case 6:  // a line is cut off
        line.resize(1 + random() % (line.find_last_of(good.delimiter[0]) - 1));
        break;
      case 7:  // or stands twice
        if (const std::string copy = line; !isHeader)
          lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), copy);
        break;
      case 8:  // or changes places with the next
        if (at + 1 < lines.size() && !isHeader) std::swap(lines[at], lines[at + 1]);
        break;
      case 9:  // or runs into the next
        if (at + 1 < lines.size()) {
          line += lines[at + 1];
          lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(at) + 1);
        }
        break;
      case 10:  // or is somebody's remark
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at) + (isHeader ? 1 : 0), "total of the page");
        break;
      default:  // a byte of another encoding
        line.insert(random() % (line.size() + 1), 1, static_cast<char>(0x80 + random() % 0x80));
    }
    try {
      const PriceTable table = prices::read(joined(lines));
      if (figuresOf(table) == figures) {
        ++unharmed;
      } else {
        const std::string remarks = joined(table.remarks);
        // A heading that is no longer known leaves its column out, which then cannot be taken for anything.
        const bool leftOut = isHeader && (table.find(Role::Date) == nullptr || table.find(Role::Close) == nullptr ||
                                          table.find(Role::Open) == nullptr || table.find(Role::High) == nullptr ||
                                          table.find(Role::Low) == nullptr || table.find(Role::Volume) == nullptr);
        EXPECT_TRUE(leftOut || remarks.find("line ") != std::string::npos) << joined(lines) << remarks;
        ++remarked;
      }
    } catch (const ReadError& error) {
      // The damage is in that line, or between it and the one before.
      const bool named = error.line() == 0 || std::max(error.line(), at + 1) - std::min(error.line(), at + 1) <= 2 ||
                         at == 0 ||
                         std::string(error.what()).find("line " + std::to_string(at + 1)) != std::string::npos;
      EXPECT_TRUE(named) << "damaged in line " << at + 1 << ", told of line " << error.line() << ": " << error.what()
                         << '\n'
                         << joined(lines);
      ++refused;
    }
  }
  EXPECT_GT(refused, 1200);
  EXPECT_GT(unharmed, 30);
  RecordProperty("refused", refused);
  RecordProperty("remarked", remarked);
}

}  // namespace
}  // namespace orvex::test
