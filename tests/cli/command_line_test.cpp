// Runs the built program as its users do.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "orvex/averages/moving_average.h"
#include "orvex/bands/bands.h"
#include "orvex/catalogue/description.h"
#include "tests/cli/program.h"
#include "tests/support/series.h"

namespace orvex::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

std::string contentsOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The text of a file of prices that rise, with closes that swing.
std::string series(int count) {
  std::string lines;
  for (int i = 1; i <= count; ++i) {
    const std::string month = std::to_string(101 + (i - 1) / 28), day = std::to_string(101 + (i - 1) % 28);
    lines += "2020-" + month.substr(1) + '-' + day.substr(1) + ',' + std::to_string(20 + i) + ',' +
             std::to_string(25 + i) + ',' + std::to_string(15 + i) + ',' + std::to_string(16 + i + i * 7 % 9) +
             ",100\n";
  }
  return lines;
}

const std::string mean = "MovingAverage.SimpleMovingAverage ";

struct Ended {
  int status;
  std::string out;
  std::string err;
};

class CommandLine : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::path(testing::TempDir()) / ("orvex_cli_" + std::to_string(getpid()));
    fs::create_directories(folder_);
    write("plain.csv",
          "2020-01-01,0,9,0,1,10\n2020-01-02,1,9,0,2,10\n2020-01-03,2,9,0,3,10\n2020-01-04,3,9,0,4,10\n"
          "2020-01-05,4,9,0,5,10\n");
  }
  void TearDown() override { fs::remove_all(folder_); }

  void write(const std::string& name, const std::string& text) {
    std::ofstream(folder_ / name, std::ios::binary) << text;
  }

  /// Runs the program in the folder of the files, one of which may be its standard input.
  Ended orvex(const std::string& arguments, const std::string& input = "/dev/null") const {
    const std::string command =
        "cd '" + folder_.string() + "' && '" + command_line::program() + "' " + arguments + " 2>stderr <" + input;
    std::FILE* pipe = popen(command.c_str(), "r");
    Ended ended{};
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) ended.out += static_cast<char>(c);
    const int status = pclose(pipe);
    ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    ended.err = contentsOf(folder_ / "stderr");
    return ended;
  }

  /// The columns of a result as JSON, by name.
  json columnsOf(const std::string& arguments) const {
    const Ended ended = orvex("run " + arguments + " --format json");
    EXPECT_EQ(ended.status, 0) << arguments << '\n' << ended.err;
    const json result = json::parse(ended.out);
    json columns;
    for (const json& column : result["columns"]) columns[column["name"]] = column["values"];
    return columns;
  }

  fs::path folder_;
};

TEST_F(CommandLine, PrintsAResultInEveryFormat) {
  const struct {
    const char* arguments;
    const char* printed;
  } cases[] = {
      {"--format json",
       R"({"records":{"first":1,"last":5},"dates":["2020-01-01","2020-01-02","2020-01-03",)"
       R"("2020-01-04","2020-01-05"],"columns":[{"name":"SimpleMovingAverage","values":[0,0,0,3,4],"computed":{"first":4,"last":5}}],)"
       R"("written":{"Alias":"SimpleMovingAverage"},"position":1})"
       "\n"},
      {"--format json --warmup blank --last 2 alias=a",
       R"({"records":{"first":4,"last":5},"dates":["2020-01-04","2020-01-05"],"columns":[{"name":"a","values":[3,4],"computed":{"first":4,"last":5}}],)"
       R"("written":{},"position":1})"
       "\n"},
      {"--format json --append --last 1 'Alias=\"'",
       R"({"records":{"first":5,"last":5},"columns":[{"name":"Date","values":["2020-01-05"]},{"name":"Open","values":[4]},{"name":"High","values":[9]},)"
       R"({"name":"Low","values":[0]},{"name":"Close","values":[5]},{"name":"Volume","values":[10]},)"
       R"({"name":"\"","values":[4],"computed":{"first":4,"last":5}}],"written":{},"position":1})"
       "\n"},
      {"--last 99999999999 --warmup zero",
       "Date,SimpleMovingAverage\n2020-01-01,0\n2020-01-02,0\n2020-01-03,0\n2020-01-04,3\n"
       "2020-01-05,4\n"},
      {"--last 3", "Date,SimpleMovingAverage\n2020-01-03,\n2020-01-04,3\n2020-01-05,4\n"},
      {"--last 1 --append 'Alias=a,\"b\"'",
       "Date,Open,High,Low,Close,Volume,\"a,\"\"b\"\"\"\n2020-01-05,4,9,0,5,10,4\n"},
      {"--format table --last 3 Alias=",
       "Record  Date        SimpleMovingAverage\n"
       "     3  2020-01-03\n"
       "     4  2020-01-04                    3\n"
       "     5  2020-01-05                    4\n"
       "Alias is now \"SimpleMovingAverage\"\n"},
  };
  for (const auto& [arguments, printed] : cases) {
    const Ended ended =
        orvex(std::string("run movingaverage.SIMPLEMOVINGAVERAGE plain.csv Source=close Periods=3 ") + arguments);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_EQ(ended.out, printed) << arguments;
    EXPECT_EQ(ended.err, "");
  }
}

TEST_F(CommandLine, RoundsTheTableButNotTheOthers) {
  write("fractions.csv", "date,x,tiny\nä,1000.123456789,0.00000000001\nbc,-2.5,0\n");
  const std::string call = "run " + mean + "fractions.csv Source=x Periods=1 --append --format ";
  EXPECT_EQ(orvex(call + "table").out,
            "Record  Date          x   tiny  SimpleMovingAverage\n"
            "     1  ä     1000.1235  1e-11\n"
            "     2  bc      -2.5000      0                 -2.5\n");
  EXPECT_EQ(orvex(call + "csv").out, "Date,x,tiny,SimpleMovingAverage\nä,1000.123456789,1e-11,\nbc,-2.5,0,-2.5\n");
}

TEST_F(CommandLine, ReportsErrorsOfTheLibrary) {
  write("text.csv", "date,close,symbol\n1,2,\n2,3,AB\n");
  write("huge.csv", "date,close\n1,1e999\n");
  write("empty.csv", "");
  write("names.csv", "date,close\n");
  write("gap.csv", "date,fast\n2020-01-01,1\n2020-01-02,\n2020-01-03,3\n2020-01-04,4\n");
  write("quote.csv", "date,close\n1,\"2\n");
  write("wide.csv", "\n\ndate,close\n1,2,3\n");
  const struct {
    std::string arguments;
    Fault fault;
    const char* told;  // part of what stands on the standard error
  } cases[] = {
      {mean + "plain.csv Source=Close Periods=0", MovingAverage::SimpleMovingAverageFault,
       "orvex describe MovingAverage.SimpleMovingAverage"},
      {"MovingAverage.TriangularMovingAverage plain.csv Source=Close Periods=4",
       MovingAverage::TriangularMovingAverageFault, "in record 9, and \"plain.csv\" has 5 records"},
      {mean + "plain.csv Source=Close Periods=2147483648", faults::Overflow, "from -2147483648 to 2147483647"},
      {mean + "plain.csv Source=Close Periods=abc", faults::TypeMismatch, "Periods=abc"},
      {mean + "plain.csv Source=Close Periods=1.5", faults::TypeMismatch, "it must be a whole number"},
      {"Bands.BollingerBands plain.csv Periods=2 MA_Type=smple", faults::TypeMismatch,
       "one of 1 Simple, 2 Exponential"},
      {"Bands.BollingerBands plain.csv Periods=2 MA_Type=8", Bands::BollingerBandsTypeFault,
       "MA_Type is one of 1 Simple"},
      {"Standard.CANDLE plain.csv Pattern=99",
       {1106, "Standard.CANDLE", "Invalid Choice"},
       "Pattern is one of 1 TwoCrows"},
      {mean + "plain.csv Source=Clsoe Periods=2", RecordSet::getIndexFault,
       "it has Date, Open, High, Low, Close and Volume. Did you mean Close?"},
      {mean + "text.csv Source=Symbol Periods=1", faults::TypeMismatch,
       "no number, or none that fits a double, in line 3"},
      {mean + "huge.csv Source=Close Periods=1", Database::loadFault("Type mismatch"),
       "line 2 of \"huge.csv\": \"1e999\" in column \"Close\" is no number that fits a double"},
      {mean + "none.csv Source=Close Periods=2", Database::loadFault("File not found"), "none.csv"},
      {mean + ". Source=Close Periods=2", Database::loadFault("Path/File access error"), "\".\""},
      {mean + "empty.csv Source=Close Periods=2", Database::loadFault("Subscript out of range"), "no records"},
      {mean + "names.csv Source=Close Periods=2", Database::loadFault("Subscript out of range"), "no records"},
      {mean + "quote.csv Source=Close Periods=2", Database::loadFault("Type mismatch"), "line 2"},
      {mean + "wide.csv Source=Close Periods=2", Database::loadFault("Type mismatch"),
       "line 4 of \"wide.csv\": It has more than the 2 values that line 3 names"},
      {mean + "plain.csv Source=Close Periods=2 --from 2021-01", Database::loadFault("Subscript out of range"),
       "the file has 2020-01-01 to 2020-01-05"},
      {mean + "gap.csv Source=Fast Periods=1", MovingAverage::SimpleMovingAverageFault,
       "fast has no value in record 2, and values before and behind it"},
  };
  for (const auto& [arguments, fault, told] : cases) {
    const json error = {{"number", fault.number}, {"source", fault.source}, {"description", fault.description}};
    const Ended asJson = orvex("run --format json " + arguments);
    EXPECT_EQ(asJson.status, 1) << arguments;
    const json found = json::parse(asJson.out)["error"];
    for (const auto& [key, value] : error.items()) EXPECT_EQ(found[key], value) << arguments;
    EXPECT_NE(found["explanation"].get<std::string>().find(told), std::string::npos) << arguments;
    const Ended asCsv = orvex("run " + arguments);
    EXPECT_EQ(asCsv.status, 1) << arguments;
    EXPECT_EQ(asCsv.out, "") << arguments;
    EXPECT_NE(asCsv.err.find(told), std::string::npos) << arguments << '\n' << asCsv.err;
    EXPECT_NE(asCsv.err.find(fault.description), std::string::npos) << asCsv.err;
  }
  // Where a file is at fault, programs are told the place as numbers.
  const json wide = json::parse(orvex("run --format json " + mean + "wide.csv Source=Close Periods=2").out)["error"];
  EXPECT_EQ(wide["line"], 4);
  EXPECT_EQ(wide["cell"], 3);
  EXPECT_FALSE(wide.contains("record"));
}

TEST_F(CommandLine, TakesUsualValuesForWhatIsLeftOut) {
  write("series.csv", series(60));
  const struct {
    const char* call;
    const char* whole;
    const char* told;
  } cases[] = {
      {"macd series.csv", "Oscillator.MACD series.csv Source=Close ShortCycle=12 LongCycle=26 SignalPeriods=9",
       "with the usual Source=Close ShortCycle=12 LongCycle=26 SignalPeriods=9\n"},
      {"RelativeStrengthIndex series.csv Periods=5", "Index.RelativeStrengthIndex series.csv Source=Close Periods=5",
       "with the usual Source=Close\n"},
      {"Bands.BollingerBands series.csv MA_Type=weighted",
       "Bands.BollingerBands series.csv Source=Close Periods=20 StandardDeviations=2 MA_Type=6",
       "with the usual Source=Close Periods=20 StandardDeviations=2\n"},
      {"QuadrantLines series.csv", "LineStudy.QuadrantLines series.csv Source=Close StartPeriod=2 EndPeriod=60",
       "with the usual Source=Close StartPeriod=2 EndPeriod=60\n"},
      {"General.HHV series.csv Periods=2.0", "General.HHV series.csv High=High Periods=2",
       "with the usual High=High\n"},
  };
  for (const auto& [call, whole, told] : cases) {
    const Ended usual = orvex(std::string("run ") + call);
    const Ended explicitly = orvex(std::string("run ") + whole);
    EXPECT_EQ(explicitly.status, 0) << explicitly.err;
    EXPECT_EQ(explicitly.err, "");
    EXPECT_EQ(usual.out, explicitly.out) << call;
    EXPECT_EQ(usual.err, std::string("orvex: ") + told);
  }
}

TEST_F(CommandLine, MakesSessionsOfTheDates) {
  const std::string records =
      "High,Low,Close,Volume,Shift,Date\n1,1,1,1,1,2020-01-30 10:00\n4,4,4,3,2,2020-01-30 12:00\n"
      "7,7,7,1,2,2020-01-31 10:00\n10,10,10,1,3,2020-02-01 10:00\n";
  write("hours.csv", records);
  const std::string call = "Standard.VWAP hours.csv";
  EXPECT_EQ(columnsOf(call)["VWAP"], json({1, 3.25, 7, 10}));
  EXPECT_EQ(columnsOf(call + " Session=date")["VWAP"], json({1, 3.25, 7, 10}));
  EXPECT_EQ(columnsOf(call + " Session=Month")["VWAP"], json({1, 3.25, 4, 10}));
  EXPECT_EQ(columnsOf(call + " Session=year")["VWAP"], json({1, 3.25, 4, 5}));
  EXPECT_EQ(columnsOf(call + " Session=Shift")["VWAP"], json({1, 4, 4.75, 10}));
  write("undated.csv", "High,Low,Close,Volume\n1,1,1,1\n");
  EXPECT_NE(orvex("run Standard.VWAP undated.csv Session=Week").err.find("has no dates that could be read"),
            std::string::npos);
}

TEST_F(CommandLine, NamesTheFaultAndItsRecord) {
  std::string flat = series(30);
  for (int i = 0; i < 6; ++i) flat += "2021-01-0" + std::to_string(i + 1) + ",5,5,5,5,100\n";
  write("flat.csv", flat);
  // Records 31 to 33 are the first three of one price.
  const std::string call = "run Oscillator.StochasticOscillator flat.csv KPeriods=3 --format json";
  const Ended ended = orvex(call);
  const json error = json::parse(ended.out)["error"];
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(error["number"], 1105);
  EXPECT_EQ(error["cause"]["description"], "Division by zero");
  EXPECT_EQ(error["record"], 33);
  EXPECT_NE(
      ended.err.find("division by zero in record 33 (2021-01-03). Fails where the highest and the lowest price of "
                     "a span are equal"),
      std::string::npos)
      << ended.err;
}

TEST_F(CommandLine, IdentifiesThePatternsOfAllRecords) {
  write("series.csv", series(40));
  const json all = columnsOf("CandleStick.IdentifyPattern series.csv Period=all");
  ASSERT_EQ(all["Text"].size(), 40u);
  for (int record : {1, 12, 27, 40}) {
    const Ended one =
        orvex("run CandleStick.IdentifyPattern series.csv --format json Period=" + std::to_string(record));
    const json note = json::parse(one.out)["note"];
    EXPECT_EQ(all["Text"][record - 1], note["text"]);
    EXPECT_EQ(all["Value"][record - 1], note["value"]);
  }
  // A column that begins late and ends early takes its records out, and no others.
  std::string partly = series(40);
  for (const std::size_t end : {partly.size() - 1, partly.find('\n')}) {
    const std::size_t volume = partly.rfind(',', end) + 1;
    partly.erase(volume, end - volume);
  }
  write("partly.csv", partly);
  json shorter = columnsOf("CandleStick.IdentifyPattern partly.csv Period=all");
  EXPECT_EQ(shorter["Value"][0], nullptr);
  EXPECT_EQ(shorter["Value"][39], nullptr);
  for (int record = 15; record < 40; ++record)
    EXPECT_EQ(shorter["Text"][record - 1], all["Text"][record - 1]) << record;
}

TEST_F(CommandLine, CountsBeyond16Bits) {
  std::string lines = "close,date\n";
  for (int i = 1; i <= 40000; ++i) lines += std::to_string(i) + ",d\n";
  write("long.csv", lines);
  const std::string call = " long.csv Source=close --last 1 --format json";
  // The mean of the last 39,999 whole numbers up to 40,000.
  EXPECT_EQ(json::parse(orvex("run " + mean + "Periods=39999" + call).out)["columns"][0]["values"][0], 20001);
  EXPECT_EQ(json::parse(orvex("run " + mean + "Periods=40001" + call).out)["error"]["number"], 1105);
}

TEST_F(CommandLine, ExplainsMistakes) {
  const struct {
    std::string arguments;
    const char* told;
  } cases[] = {
      {"", "no command is given"},
      {"lsit", "Did you mean list?"},
      {"run " + mean + "plain.csv --apend", "Did you mean --append?"},
      {"run MovingAvrage.SimpleMovingAverage", "Did you mean MovingAverage.SimpleMovingAverage?"},
      {"describe ema", "Did you mean MovingAverage.ExponentialMovingAverage or Standard.EMA?"},
      {"run rsi plain.csv", "Did you mean Index.RelativeStrengthIndex or Standard.RSI?"},
      {"run MovingAverage.SimpelMovingAverage", "Did you mean MovingAverage.SimpleMovingAverage?"},
      {"run MovingAverage.Wilder", "Did you mean MovingAverage.WellesWilderSmoothing?"},
      {"run MovingAverage.sma", "Did you mean MovingAverage.SimpleMovingAverage?"},
      {"run MovingAverage.RSI", "Did you mean Index.RelativeStrengthIndex or Standard.RSI?"},
      {"run MovingAverage", "It has SimpleMovingAverage, ExponentialMovingAverage"},
      {"run Field.getValue", "is not run"},
      {"run " + mean + "plain.csv Source=Close Period=3", "it has Source, Periods and Alias. Did you mean Periods?"},
      {"run General.IsPrime", "Number=NUMBER: The number, not below 0."},
      {"run " + mean + "plain.csv Alias=close Periods=2 --append", "two columns called \"close\""},
      {"run Cycle.Analyze plain.csv --append", "returns an Integer"},
      {"run " + mean + "Periods=3", "FILE: a price file"},
      {"run " + mean + "plain.csv plain.csv", "second file"},
      {"run " + mean + "plain.csv data=plain.csv", "taken from the price file"},
      {"run " + mean + "plain.csv Periods=1 periods=2", "given twice"},
      {"run " + mean + "plain.csv --last 0", "\"0\" is not a whole number from 1"},
      {"run " + mean + "plain.csv Source=Close Periods=1 --delimiter ab", "one character"},
      {"run " + mean + "plain.csv Source=Close Periods=1 --delimiter ''", "one character"},
      {"run " + mean + "plain.csv --format xml", "xml not in {table,csv,json}"},
  };
  for (const auto& [arguments, told] : cases) {
    const Ended ended = orvex(arguments);
    EXPECT_EQ(ended.status, 2) << arguments;
    EXPECT_EQ(ended.out, "") << arguments;
    EXPECT_NE(ended.err.find(told), std::string::npos) << arguments << '\n' << ended.err;
    if (std::string_view(arguments).starts_with("run ") &&
        std::string_view(told).find("xml") == std::string_view::npos) {
      const json error = json::parse(orvex(arguments + " --format json").out)["error"];
      EXPECT_EQ(error["number"], 5) << arguments;
    }
  }
}

TEST_F(CommandLine, ReadsFilesHoweverTheyCome) {
  write("series.csv", "day;first;last\n2020-01-01;7;1,500\n2020-01-02;7;\n2020-01-04;7;4,000\n2020-01-03;7;3,000\n");
  write("plain.txt", "2020-01-01,1,2,1,1.5,10\n2020-01-02,1,2,1,2,10\n2020-01-03,4,4,4,4,10\n");
  ASSERT_EQ(std::system(("cd '" + folder_.string() +
                         "' && gzip -k plain.txt && cat plain.txt.gz plain.txt.gz >two.gz && "
                         "head -c 40 plain.txt.gz >cut.gz")
                            .c_str()),
            0);
  const std::string call = "run " + mean + "Source=Close Periods=1 Alias=x ";
  const std::string whole = "Date,x\n2020-01-01,\n2020-01-02,2\n2020-01-03,4\n";
  const std::string odd = "series.csv --columns Open=first,close=3 --decimal , ";
  const struct {
    std::string arguments;
    const char* input;
    std::string out;
    const char* told;
  } cases[] = {
      {"plain.txt", "/dev/null", whole, ""},
      {"-", "plain.txt", whole, ""},
      {"plain.txt.gz", "/dev/null", whole, ""},
      {"-", "plain.txt.gz", whole, ""},
      {"two.gz --tail 2 --order keep", "/dev/null", "Date,x\n2020-01-02,\n2020-01-03,4\n", ""},
      {"cut.gz", "/dev/null", "", "damaged or cut off"},
      {"plain.txt --from 2 --to 2020-01-03", "/dev/null", "Date,x\n2020-01-02,\n2020-01-03,4\n", ""},
      {odd, "/dev/null", "", "line 3 of \"series.csv\": It has no value in column \"Close\""},
      {odd + "--missing skip", "/dev/null", "", "line 5 of \"series.csv\": Its date"},
      {odd + "--missing skip --order keep", "/dev/null", "Date,x\n2020-01-01,\n2020-01-04,4\n2020-01-03,3\n",
       "1 record without all prices left out: line 3"},
      {odd + "--missing previous --order keep --last 2", "/dev/null", "Date,x\n2020-01-04,4\n2020-01-03,3\n",
       "1 missing price taken from the record before: line 3"},
  };
  for (const auto& [arguments, input, out, told] : cases) {
    const Ended ended = orvex(call + arguments, input);
    EXPECT_EQ(ended.out, out) << arguments << '\n' << ended.err;
    EXPECT_EQ(ended.status, out.empty() ? 1 : 0) << arguments;
    EXPECT_NE(ended.err.find(told), std::string::npos) << arguments << '\n' << ended.err;
    EXPECT_EQ(ended.err.empty(), *told == '\0') << arguments << '\n' << ended.err;
  }
}

TEST_F(CommandLine, ReadsTheDeviceOfItsInput) {
  EXPECT_EQ(orvex("run " + mean + "Source=Close Periods=1 --last 1 /dev/stdin", "plain.csv").out,
            orvex("run " + mean + "Source=Close Periods=1 --last 1 plain.csv").out);
}

TEST_F(CommandLine, AppendedResultIsTheNextSource) {
  for (const std::string name : {"a;\"b\"", "a ", " a"}) {
    write("step.csv", orvex("run " + mean + "plain.csv Source=Close Periods=1 --append 'Alias=" + name + "'").out);
    // The first pass gives 2, 3, 4, 5 from record 2 on.
    EXPECT_EQ(columnsOf(mean + "step.csv Periods=2 'Source=" + name + "'"),
              json({{"SimpleMovingAverage", {0, 0, 0, 3.5, 4.5}}}));
    const Ended ended = orvex("run " + mean + "step.csv Periods=2 'Source=" + name + "'");
    EXPECT_EQ(ended.out,
              "Date,SimpleMovingAverage\n2020-01-01,\n2020-01-02,\n2020-01-03,\n2020-01-04,3.5\n2020-01-05,4.5\n");
    EXPECT_NE(ended.err.find("computed from the records 2 to 5 of 5"), std::string::npos) << ended.err;
  }
}

TEST_F(CommandLine, RemarksOnRecordsThatAreNotComputed) {
  const struct {
    std::string arguments;
    const char* told;
  } cases[] = {
      {mean + "plain.csv Source=Close Periods=5", "SimpleMovingAverage has no computed record"},
      {"Oscillator.WilliamsPctR plain.csv Periods=2", "is computed to record 4 only, not in the last one"},
  };
  for (const auto& [arguments, told] : cases) {
    const Ended ended = orvex("run " + arguments);
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_NE(ended.err.find(told), std::string::npos) << ended.err;
  }
}

TEST_F(CommandLine, NumbersReadBackToTheSameDouble) {
  std::mt19937_64 random(1);
  std::vector<double> values = {-0.0, 1e-310, 1e17, 123456789.123456789};
  std::uniform_real_distribution<double> exponent(-20.0, 20.0);
  while (values.size() < 2000) values.push_back(std::pow(10.0, exponent(random)) * (random() % 2 == 0 ? 1.0 : -1.0));
  std::string lines = "x\n";
  for (const double value : values) lines += json(value).dump() + '\n';
  write("random.csv", lines);
  const auto result =
      MovingAverage().SimpleMovingAverage(records(values.size()), field(values), 3)->getField("SimpleMovingAverage");

  const json printed = columnsOf(mean + "random.csv Source=x Periods=3 --append");
  ASSERT_EQ(printed["x"].size(), values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(printed["x"][i].get<double>()), std::bit_cast<std::uint64_t>(values[i]));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(printed["SimpleMovingAverage"][i].get<double>()),
              std::bit_cast<std::uint64_t>(result->values()[i]));
  }
  // The same once more by way of CSV.
  write("again.csv", orvex("run " + mean + "random.csv Source=x Periods=3 --append").out);
  EXPECT_EQ(columnsOf(mean + "again.csv Source=x Periods=3 Alias=y --append")["y"], printed["SimpleMovingAverage"]);
}

TEST_F(CommandLine, EveryMethodIsDescribedAndEveryCalculationRun) {
  write("series.csv", series(60));
  const json list = json::parse(orvex("list --format json").out)["classes"];
  ASSERT_EQ(list.size(), catalogue::classes().size());
  for (const catalogue::Class* owner : catalogue::classes()) {
    for (const catalogue::Method* method : owner->methods) {
      const std::string name = std::string(owner->name) + '.' + std::string(method->name);
      SCOPED_TRACE(name);
      const json description = json::parse(orvex("describe " + name + " --format json").out);
      const json parts = description.is_array() ? description : json::array({description});
      EXPECT_TRUE(std::any_of(parts.begin(), parts.end(), [&](const json& part) {
        return part["help"] == method->help && part["arguments"].size() == method->arguments.size();
      }));
      EXPECT_NE(orvex("describe " + name).out.find(method->help), std::string::npos);
      if (owner->holdsState || method->kind != catalogue::Kind::Method) continue;

      std::string call = "run --format json " + name;
      bool series = false;
      for (const catalogue::Argument& argument : method->arguments) {
        const bool column = argument.type == catalogue::Type::Field;
        const bool whole = argument.type == catalogue::Type::Database || argument.type == catalogue::Type::RecordSet;
        series = series || column || whole;
        if (!whole && !argument.optional) call += ' ' + std::string(argument.name) + (column ? "=Close" : "=3");
      }
      const Ended ended = orvex(call + (series ? " series.csv" : ""));
      const json result = json::parse(ended.out);
      if (ended.status == 1) {
        EXPECT_TRUE(result["error"]["number"].is_number()) << ended.out;
        continue;
      }
      ASSERT_EQ(ended.status, 0) << ended.err;
      if (method->result == catalogue::Type::RecordSet) {
        EXPECT_EQ(result["columns"].size(), method->columns.size());
      } else {
        EXPECT_EQ(result.contains("note"), method->result == catalogue::Type::Note);
        EXPECT_EQ(result.contains("value"), method->result != catalogue::Type::Note);
      }
    }
  }
}

TEST_F(CommandLine, OffersWhatMayStandNext) {
  write("named.csv", "Date,Close,Adj Close\n2020-01-01,1,2\n2020-01-02,1,2\n");
  const struct {
    const char* words;
    const char* offered;
  } cases[] = {
      {"re", "reference\n"},
      {"run bolling", "BollingerBands\n"},
      {"run movingaverage.s", "MovingAverage.SimpleMovingAverage\n"},
      {"describe candles", "CandleStick\nCandleStick.\n"},
      {"run MACD named.csv s", "Source=\nShortCycle=\nSignalPeriods=\n"},
      {"run MACD source=Close named.csv s", "ShortCycle=\nSignalPeriods=\n"},
      {"run BollingerBands named.csv ma_type=v", "MA_Type=Variable\nMA_Type=VIDYA\n"},
      {"run MACD named.csv Source=", "Source=Close\nSource=Adj Close\n"},
      {"run MACD none.csv Source=", ""},
      {"run MACD named.csv --fo", "--format\n"},
      {"run MACD named.csv --format ''", "table\ncsv\njson\n"},
      {"chart named.csv mac", "MACD\n"},
      {"chart named.csv MACD -- BollingerBands named.csv MA_Type=exp", "MA_Type=Exponential\n"},
      {"follow HHV -- LLV p", "Periods=\n:file\n"},
      {"reference ''", ":file\n"},
      {"nonsense ''", ""},
  };
  for (const auto& [words, offered] : cases) {
    const Ended ended = orvex(std::string("complete ") + words);
    EXPECT_EQ(ended.status, 0) << words;
    EXPECT_EQ(ended.out, offered) << words;
  }
  // Every method can be written to its end, and every command.
  const std::string all = orvex("complete run ''").out;
  for (const catalogue::Class* owner : catalogue::classes()) {
    for (const catalogue::Method* method : owner->methods) {
      if (!catalogue::isCalculation(*owner, *method)) continue;
      const std::string name = (owner->qualified ? std::string(owner->name) + '.' : "") + std::string(method->name);
      EXPECT_NE(('\n' + all).find('\n' + name + '\n'), std::string::npos) << name;
    }
  }
}

TEST_F(CommandLine, CompletesInBash) {
  write("named prices.csv", "Date,Close,Adj Close\n2020-01-01,1,2\n2020-01-02,1,2\n");
  const struct {
    const char* words;  // as bash has taken them apart
    const char* reply;
  } cases[] = {
      {"run MACD named", "named\\ prices.csv\n"},
      {"run MACD 'named\\ prices.csv' Source = A", "Adj\\ Close\n"},
      {"run BollingerBands MA_Type =", "Simple\nExponential\nTimeSeries\nVariable\nTriangular\nWeighted\nVIDYA\n"},
  };
  for (const auto& [words, reply] : cases) {
    write("complete.sh", std::string("source '" ORVEX_SOURCE "/cli/orvex.bash'\nCOMP_WORDS=('") +
                             command_line::program() + "' " + words +
                             ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n_orvex\nprintf '%s\\n' \"${COMPREPLY[@]}\"\n");
    ASSERT_EQ(std::system(("cd '" + folder_.string() + "' && bash complete.sh >reply").c_str()), 0);
    EXPECT_EQ(contentsOf(folder_ / "reply"), reply) << words;
  }
}

TEST_F(CommandLine, HelpsAndTellsItsVersion) {
  for (const char* command : {"--help", "list --help", "describe --help", "run --help", "reference --help"}) {
    const Ended ended = orvex(command);
    EXPECT_EQ(ended.status, 0) << command;
    EXPECT_NE(ended.out.find("Usage: orvex"), std::string::npos) << command;
  }
  EXPECT_EQ(orvex("--version").out.rfind("orvex ", 0), 0u);
}

TEST_F(CommandLine, TellsWhenItCannotWrite) {
  write("prices.csv", "date,close\n1,2\n2,3\n");
  for (const char* command :
       {"list", "--help", "run --help", "--version", "run General.HHV prices.csv High=close Periods=1"}) {
    const Ended ended = orvex(std::string(command) + " >&-");
    EXPECT_EQ(ended.status, 1) << command;
    EXPECT_NE(ended.err.find("could not be written"), std::string::npos) << command << '\n' << ended.err;
  }
}

TEST_F(CommandLine, TellsWhatTookHowLong) {
  write("prices.csv", "date,close\n1,2\n2,3\n");
  const std::string call = "run General.HHV prices.csv High=close Periods=1";
  const Ended timed = orvex(call + " --timings");
  EXPECT_EQ(timed.out, orvex(call).out);
  for (const char* part : {"reading took", "computing took", "printing took"}) {
    EXPECT_NE(timed.err.find(part), std::string::npos) << timed.err;
  }
}

TEST_F(CommandLine, ReferencePageLeadsToWhatItHas) {
  std::ifstream page(fs::path(ORVEX_SOURCE) / "docs/reference.md");
  std::set<std::string> headings;
  std::vector<std::string> links, headers;
  std::string line, owner;
  while (std::getline(page, line)) {
    if (const std::size_t text = line.find_first_not_of('#'); text >= 1 && text <= 4 && line[text] == ' ') {
      std::string anchor;
      for (const char c : line.substr(text + 1)) {
        if (c == ' ') anchor += '-';
        if (std::isalnum(c) != 0 || c == '-' || c == '_') anchor += static_cast<char>(std::tolower(c));
      }
      headings.insert(anchor);
      owner = line.substr(text + 1);
    }
    const std::string include = "In C++ `#include \"";
    if (const std::size_t at = line.find(include); at != std::string::npos) {
      const std::size_t begin = at + include.size();
      headers.push_back(line.substr(begin, line.find('"', begin) - begin));
      EXPECT_NE(contentsOf(fs::path(ORVEX_SOURCE) / headers.back()).find("\nclass " + owner + " "), std::string::npos)
          << owner;
    }
    for (std::size_t at = line.find("](#"); at != std::string::npos; at = line.find("](#", at + 1)) {
      links.push_back(line.substr(at + 3, line.find(')', at) - at - 3));
    }
  }
  EXPECT_GT(headers.size(), 10U);
  EXPECT_GT(links.size(), 100U);
  for (const std::string& link : links) EXPECT_TRUE(headings.contains(link)) << link;
}

TEST_F(CommandLine, ReferencePageIsUpToDate) {
  fs::create_symlink(fs::path(ORVEX_SOURCE) / "examples", folder_ / "examples");
  const Ended page = orvex("reference examples/prices.csv");
  EXPECT_EQ(page.status, 0) << page.err;
  EXPECT_TRUE(page.out == contentsOf(fs::path(ORVEX_SOURCE) / "docs/reference.md")) << "run scripts/update-generated";
}

}  // namespace
}  // namespace orvex::test
