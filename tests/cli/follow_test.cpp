// Follows records as they come, as users of the built program do.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "tests/cli/program.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

struct Ended {
  int status;
  std::string out;
  std::string err;
};

/// The program while it runs: what is written to it and what it has printed so far.
class Follower {
 public:
  explicit Follower(std::vector<std::string> words) {
    words.insert(words.begin(), {command_line::program(), "follow"});
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    for (auto* ends : {&in_, &out_, &err_}) EXPECT_EQ(pipe2(ends->data(), O_CLOEXEC), 0);
    process_ = fork();
    if (process_ == 0) {
      dup2(in_[0], 0);
      dup2(out_[1], 1);
      dup2(err_[1], 2);
      execv(arguments.front(), arguments.data());
      _exit(127);
    }
    close(in_[0]);
    close(out_[1]);
    close(err_[1]);
  }
  ~Follower() {
    if (process_ > 0) end();
  }
  Follower(const Follower&) = delete;
  Follower& operator=(const Follower&) = delete;

  void write(const std::string& text) const {
    EXPECT_EQ(::write(in_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  /// The next line that it prints; waits for it.
  std::string line() const {
    std::string text;
    for (char c = 0; read(out_[0], &c, 1) == 1 && c != '\n';) text += c;
    return text;
  }
  void interrupt() const { kill(process_, SIGINT); }
  void closeOutput() {
    close(out_[0]);
    out_[0] = -1;
  }
  /// Ends its input and waits for it.
  Ended end() {
    close(in_[1]);
    Ended ended{};
    if (out_[0] >= 0) ended.out = rest(out_[0]);
    ended.err = rest(err_[0]);
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = 0;
    ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return ended;
  }

 private:
  static std::string rest(int from) {
    std::string text;
    for (char c = 0; read(from, &c, 1) == 1;) text += c;
    close(from);
    return text;
  }

  std::array<int, 2> in_{}, out_{}, err_{};
  pid_t process_ = 0;
};

const std::string header = "Date,Open,High,Low,Close,Volume\n";

TEST(Follow, PrintsEachRowAsItsRecordComesAndAgainWhenItIsRevised) {
  Follower follower({"SimpleMovingAverage", "Periods=2", "Alias=Mean", "--", "General.HighMinusLow", "Alias=Range"});
  follower.write(header + "2020-01-01,1,3,1,2,10\n");
  EXPECT_EQ(follower.line(), "Date,Mean,Range");
  EXPECT_EQ(follower.line(), "2020-01-01,,2");
  follower.write("2020-01-02,1,4,1,4,10\n2020-01-03,1,5,1,6,10\n");
  EXPECT_EQ(follower.line(), "2020-01-02,,3");
  EXPECT_EQ(follower.line(), "2020-01-03,5,4");
  follower.write("2020-01-03,1,9,1,7,10\n");
  EXPECT_EQ(follower.line(), "2020-01-03,5.5,8");
  // The last line need not be ended.
  follower.write("2020-01-04,1,9,1,8,10");
  const Ended ended = follower.end();
  EXPECT_EQ(ended.out, "2020-01-04,7.5,8\n");
  EXPECT_EQ(ended.status, 0) << ended.err;
}

TEST(Follow, PrintsTheSameForLinesThatComeTogether) {
  std::vector<std::string> lines;
  const auto add = [&](int day, double close) {
    const auto text = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    lines.push_back("2020-" + text(day / 28 + 1) + '-' + text(day % 28 + 1) + ",2," + std::to_string(close + 2) +
                    ",0.5," + std::to_string(close) + ",10\n");
  };
  for (int day = 0; day < 300; ++day) {
    add(day, 10 + day % 7 + day % 3);
    if (day % 100 != 50) continue;
    // One that has no logarithm, mended at once, and one that is revised twice.
    add(day + 1, 0);
    add(day + 1, 12);
    add(++day, 13);
  }
  lines.emplace_back("2021-01-01,2,x,1,3,10\n");
  const std::vector<std::string> calls[] = {
      {"Standard.HV", "Periods=5", "--", "WilliamsPctR", "Periods=4", "--", "MACD", "--", "Bands.FractalChaosBands"},
      {"RelativeStrengthIndex", "Periods=30", "Alias=Rsi", "--", "SimpleMovingAverage", "Source=Rsi", "Periods=9"},
      {"MassIndex", "Periods=3", "--", "General.PriceROC", "Source=Volume", "Periods=40", "--format", "json"},
  };
  for (const std::vector<std::string>& words : calls) {
    std::string all = header;
    for (const std::string& line : lines) all += line;
    Follower together(words), single(words);
    together.write(all);
    const Ended expected = together.end();
    EXPECT_NE(expected.err.find("line " + std::to_string(lines.size() + 1) + ": "), std::string::npos) << expected.err;
    std::string rows;
    single.write(header);
    for (const std::string& line : lines) {
      single.write(line);
      if (&line == &lines.back()) break;
      if (rows.empty() && words.back() != "json") rows = single.line() + '\n';
      rows += single.line() + '\n';
    }
    const Ended ended = single.end();
    EXPECT_EQ(rows + ended.out, expected.out);
    EXPECT_EQ(ended.err, expected.err);
  }
}

TEST(Follow, MakesSessionsOfTheDatesAndDecodesItsLines) {
  Follower months({"Standard.VWAP", "Session=Month"});
  // The euro sign of Windows-1252.
  months.write("Date;High;Low;Close;Volume\n2020-01-30;1;1;1;1\n2020-01-31;4;4;4 \x80;3\n2020-02-01;10;10;10;1\n");
  const Ended ended = months.end();
  EXPECT_EQ(ended.out, "Date,VWAP\n2020-01-30,1\n2020-01-31,3.25\n2020-02-01,10\n") << ended.err;
  // What would be no text as a file is a line that cannot be read, as any other.
  Follower damaged({"SimpleMovingAverage", "Periods=1"});
  damaged.write(std::string("Date,Close\n2020-01-01,1\n2020-01-02,\xE9\0\n", 38));
  EXPECT_NE(damaged.end().err.find("line 3: "), std::string::npos);
}

TEST(Follow, PrintsJsonAndTakesTheColumnOfAMethodBefore) {
  Follower follower({"SimpleMovingAverage", "Periods=1", "Alias=Mean", "--", "General.PriceROC", "Source=mean",
                     "Periods=1", "--format", "json"});
  follower.write(header);
  const std::vector<std::pair<int, json>> rows = {{2, nullptr}, {4, nullptr}, {5, 25.0}, {10, 100.0}};
  int day = 0;
  for (const auto& [close, rate] : rows) {
    follower.write("2020-01-0" + std::to_string(++day) + ",1,1,1," + std::to_string(close) + ",1\n");
    const json row = json::parse(follower.line());
    EXPECT_EQ(row["Date"], "2020-01-0" + std::to_string(day));
    EXPECT_EQ(row["PriceROC"], rate) << row;
  }
  EXPECT_EQ(follower.end().status, 0);
}

TEST(Follow, WatchesAFileUntilItIsInterrupted) {
  const fs::path path = fs::path(testing::TempDir()) / ("orvex_follow_" + std::to_string(getpid()) + ".csv");
  std::ofstream(path) << header << "2020-01-01,1,3,1,2,10\n";
  Follower follower({"General.HighMinusLow", path.string()});
  EXPECT_EQ(follower.line(), "Date,HighMinusLow");
  EXPECT_EQ(follower.line(), "2020-01-01,2");
  std::ofstream(path, std::ios::app) << "2020-01-02,1,9,";
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  std::ofstream(path, std::ios::app) << "1,2,10\n";
  EXPECT_EQ(follower.line(), "2020-01-02,8");
  follower.interrupt();
  const Ended ended = follower.end();
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out + ended.err, "");
  fs::remove(path);
}

TEST(Follow, PrintsARowWithinTenMilliseconds) {
  using Clock = std::chrono::steady_clock;
  const fs::path path = fs::path(testing::TempDir()) / ("orvex_follow_soon_" + std::to_string(getpid()) + ".csv");
  std::ofstream(path) << header;
  for (const bool isFile : {false, true}) {
    Follower follower(isFile ? std::vector<std::string>{"General.HighMinusLow", path.string()}
                             : std::vector<std::string>{"General.HighMinusLow"});
    const auto write = [&](const std::string& text) {
      if (isFile) {
        std::ofstream(path, std::ios::app) << text;
      } else {
        follower.write(text);
      }
    };
    if (!isFile) write(header);
    write("2020-01-01,1,3,1,2,10\n");
    EXPECT_EQ(follower.line(), "Date,HighMinusLow");
    EXPECT_EQ(follower.line(), "2020-01-01,2");
    // The other processes of the machine have their turns as well, so one row in two is enough.
    std::vector<Clock::duration> waits;
    for (int i = 0; i < 21; ++i) {
      const auto start = Clock::now();
      write("2020-01-01,1,4,1,2,10\n");
      EXPECT_EQ(follower.line(), "2020-01-01,3");
      waits.push_back(Clock::now() - start);
    }
    std::nth_element(waits.begin(), waits.begin() + 10, waits.end());
    EXPECT_LT(std::chrono::duration_cast<std::chrono::microseconds>(waits[10]).count(), 10'000) << isFile;
    follower.interrupt();
    EXPECT_EQ(follower.end().status, 0);
  }
  fs::remove(path);
}

TEST(Follow, ReadsALineOfAnyLength) {
  Follower follower({"General.HighMinusLow"});
  std::thread writer([&] {
    follower.write("Date,Open,High,Low,Close,Volume,Note\n2020-01-01,1,3,1,2,10," + std::string(3'000'000, 'x') + "\n");
  });
  EXPECT_EQ(follower.line(), "Date,HighMinusLow");
  EXPECT_EQ(follower.line(), "2020-01-01,2");
  writer.join();
  EXPECT_EQ(follower.end().status, 0);
}

TEST(Follow, EndsQuietlyWhereNobodyReads) {
  Follower follower({"General.HighMinusLow"});
  follower.write(header + "2020-01-01,1,3,1,2,10\n");
  EXPECT_EQ(follower.line(), "Date,HighMinusLow");
  follower.closeOutput();
  follower.write("2020-01-02,1,3,1,2,10\n");
  const Ended ended = follower.end();
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");
}

TEST(Follow, TellsWhatIsNoCallAndWhatIsNoRecord) {
  const std::string record = "2020-01-02,1,3,1,2,10\n";
  const struct {
    std::vector<std::string> words;
    std::string input;
    int status;
    std::string told;
  } cases[] = {
      {{"Cycle.Analyze"}, "", 2, "returns no columns"},
      {{"General.HHV", "--"}, "", 2, "no method"},
      {{"General.HHV", "Perids=3"}, "", 2, "Periods"},
      {{"General.HHV", "--", "General.HHV"}, "", 2, "two columns called \"HHV\""},
      {{"General.HHV", "a.csv", "--", "General.LLV", "b.csv"}, "", 2, "second file"},
      {{"General.HHV", "High=Hihg"}, header + record, 1, "Did you mean High"},
      {{"General.HighMinusLow"}, header + record + "2020-01-03,1,x,1,2,10\n", 1, "line 3: "},
      {{"General.HighMinusLow"}, header + record + "2020-01-01,1,3,1,2,10\n", 1, "the oldest first"},
      {{"General.PriceROC", "Periods=1"},
       header + "2020-01-01,1,3,1,0,10\n2020-01-02,1,3,1,2,10\n",
       1,
       "Division by zero in record 2"},
      {{"General.HighMinusLow"}, "", 0, ""},
  };
  for (const auto& one : cases) {
    Follower follower(one.words);
    follower.write(one.input);
    const Ended ended = follower.end();
    EXPECT_EQ(ended.status, one.status) << one.words.front() << '\n' << ended.err;
    EXPECT_NE(ended.err.find(one.told), std::string::npos) << ended.err;
  }
}

}  // namespace
