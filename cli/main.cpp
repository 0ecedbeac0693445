#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "cli/binding.h"
#include "cli/catalogue_pages.h"
#include "cli/chart.h"
#include "cli/complete.h"
#include "cli/failure.h"
#include "cli/follow.h"
#include "cli/names.h"
#include "cli/output.h"
#include "cli/platform.h"
#include "cli/reference.h"
#include "cli/run.h"
#include "cli/sink.h"
#include "orvex/automation/interface_definition.h"
#include "orvex/data/integer.h"
#include "orvex/data/text.h"

namespace orvex::cli {
namespace {

using namespace std::string_literals;

constexpr int failed = 1;
constexpr int misused = 2;

/// The command line: its commands, and what each of them was given.
class Program {
 public:
  Program() {
    app_.set_version_flag("--version", "orvex " ORVEX_VERSION);
    app_.require_subcommand(1);
    // A word that begins with "/" is a file on each system.
    app_.allow_windows_style_options(false);
    app_.get_formatter()->label("SUBCOMMAND", "COMMAND");
    addList();
    addDescribe();
    addRun();
    addFollow();
    addChart();
    addPage("idl", "Print the interface definition of the automation server.", automation::interfaceDefinition);
    addPage("manifest", "Print the manifest that makes the automation server usable without registration.",
            automation::registrationFreeManifest);
    addPage("interfaces", "Print the entries of the automation server's interfaces, as released ones are kept.",
            automation::interfaceContract);
    addPage("reference", "Print the description of every class and method in Markdown, with examples.",
            [this] { return referencePage(target_); });
    app_.get_subcommand("reference")
        ->add_option("FILE", target_, "The price file that the examples are computed from.")
        ->required()
        ->option_text(" ");
  }

  int main(const std::vector<std::string>& words) {
    // Asked by shells, of words that are not whole yet: no option among them is meant.
    if (!words.empty() && words.front() == "complete") {
      command_ = [&](Sink& sink) {
        for (const std::string& word : complete(commands(), {words.begin() + 1, words.end()})) sink.print(word + '\n');
      };
      return runCommand();
    }
    try {
      parse(words);
    } catch (const CLI::Success& asked) {
      std::ostringstream text;
      app_.exit(asked, text);
      command_ = [&text](Sink& sink) { sink.print(text.str()); };
      return runCommand();
    } catch (const CLI::ParseError& error) {
      return refuse(explain(error), asksForJson(words));
    }
    return runCommand();
  }

 private:
  void parse(std::vector<std::string> words) {
    // What ends the options elsewhere stands between two calls there.
    if (!words.empty() && (words.front() == "follow" || words.front() == "chart"))
      std::replace(words.begin(), words.end(), "--"s, std::string(NextCall));
    std::reverse(words.begin(), words.end());
    app_.parse(std::move(words));
  }

  int runCommand() {
    try {
      Sink sink;
      command_(sink);
      sink.flush();
      return 0;
    } catch (const UsageError& mistake) {
      return refuse(mistake.what(), format_ == "json");
    } catch (const WriteError& error) {
      complain(error.what());
      return failed;
    } catch (const Failure& failure) {
      return report(failure);
    } catch (...) {
      return report(Failure(currentFault(), "the command could not be completed."));
    }
  }

  void addCommand(const std::string& name, const std::string& help, std::function<void(Sink&)> command) {
    CLI::App* added = app_.add_subcommand(name, help);
    added->group("Commands");
    added->callback([this, command] { command_ = command; });
  }
  /// One that gives a page.
  void addPage(const std::string& name, const std::string& help, std::function<std::string()> page) {
    addCommand(name, help, [page](Sink& sink) { sink.print(page()); });
  }

  void addList() {
    addPage("list", "List the classes and their methods.", [this] { return listPage(pageFormat()); });
    addPageFormat("list");
  }

  void addDescribe() {
    addPage("describe", "Tell what a class or a method does, takes and returns.",
            [this] { return describePage(findTarget(target_), pageFormat()); });
    app_.get_subcommand("describe")
        ->add_option("CLASS[.METHOD]", target_,
                     "What to describe; upper and lower case are the same, and a calculator's class may be left out.")
        ->required()
        ->option_text(" ");
    addPageFormat("describe");
  }

  void addRun() {
    addCommand("run", "Compute a method.", [this](Sink& sink) { runMethod(sink); });
    CLI::App* run = app_.get_subcommand("run");
    run->add_option("CLASS.METHOD", run_.target, "What to compute, for example MovingAverage.SimpleMovingAverage.")
        ->required()
        ->option_text(" ");
    run->add_option("ARGUMENTS", run_.words,
                    "FILE, where the method computes from prices, and NAME=VALUE for each argument.")
        ->option_text(" ");
    run->add_option("--format", format_, "How to print: a table (on a terminal), csv (otherwise) or json.")
        ->check(CLI::IsMember({"table", "csv", "json"}))
        ->option_text("table|csv|json");
    run->add_option("--warmup", warmup_,
                    "What stands in rows that are not computed: blank (in tables and CSV) or zero, as in the library "
                    "(in JSON).")
        ->check(CLI::IsMember({"zero", "blank"}))
        ->option_text("zero|blank");
    run->add_flag("--append", run_.append, "Print the columns of the file and the result together.");
    run->add_option("--last", run_.last, "Print the last N records only.")->transform(countOf)->option_text("N");
    run->add_flag("--timings", run_.timings,
                  "Tell on the standard error how long reading, computing and printing took.");
    addReading(*run);
    run->footer(
        "A price file has one record a line: date, open, high, low, close and volume without a header line, or any\n"
        "columns with one. How it is written is found out; \"-\" is the standard input, and gzip is unpacked.\n\n"
        "An argument that is a field is given as a column's name, Source=Close; where it is left out and the file has\n"
        "a column of the argument's own name, such as Volume, that is taken. What a method takes is told by:\n"
        "orvex describe CLASS.METHOD\n\n"
        "A file whose name looks like an option or an argument is written with its folder: ./-x.csv, ./a=b.csv.");
  }

  void addFollow() {
    addCommand("follow", "Compute methods on records as they come.", [this](Sink& sink) {
      follow_.format = format_ == "json" ? Format::Json : Format::Csv;
      follow(follow_, sink);
    });
    CLI::App* command = app_.get_subcommand("follow");
    command
        ->add_option("METHOD [NAME=VALUE ...] [-- METHOD ...]", follow_.words,
                     "The methods, each with its arguments behind it, and FILE, if it is not the standard input.")
        ->required()
        ->option_text(" ");
    command->add_option("--format", format_, "How to print: csv or json, a line for each record.")
        ->check(CLI::IsMember({"csv", "json"}))
        ->option_text("csv|json");
    addLayout(*command, follow_.reading);
    command->footer(
        "Each record that comes makes a row. A record with the date of the last one is that one revised, and its row\n"
        "is printed again. A method takes a column of one before it by name: SimpleMovingAverage Alias=Mean --\n"
        "Momentum Source=Mean. A file is watched until Ctrl-C. What needs all records before the first row, such as\n"
        "newest first, is refused.");
  }

  void addChart() {
    addPage("chart", "Write a page with a chart of prices and studies.", [this] {
      chart_.reading = run_.reading;
      return chart(chart_);
    });
    CLI::App* command = app_.get_subcommand("chart");
    command
        ->add_option("FILE", chart_.words,
                     "A price file, then a method with its NAME=VALUE arguments, and \"--\" before each further one.")
        ->required()
        ->option_text("[METHOD [NAME=VALUE ...]] [-- METHOD ...]");
    command
        ->add_option("-o,--output", chart_.output,
                     "The page; FILE with the ending .html in this folder if it is not told, \"-\" to print it.")
        ->option_text("PAGE");
    command->add_flag("--open", chart_.open, "Show the page in the browser.");
    addReading(*command);
    command->footer(
        "The page is one file with everything in it: it works without a network, and what is in it stays in it.\n"
        "A method is computed from columns of the file, or from those of a method before it:\n\n"
        "  orvex chart prices.csv Bands.BollingerBands Periods=20 -- Oscillator.MACD\n"
        "  orvex chart prices.csv Index.RelativeStrengthIndex -- \\\n"
        "    MovingAverage.SimpleMovingAverage Source=RelativeStrengthIndex Periods=9");
  }

  /// The options that tell how the lines of a price file are to be read.
  static void addLayout(CLI::App& command, prices::Options& reading) {
    command
        .add_option("--delimiter", reading.delimiter,
                    "What stands between the columns of the file, if it is to be told.")
        ->transform([](const std::string& text) -> std::string {
          if (text == "tab" || text == "\\t") return "\t";
          if (!text.empty() && firstCharacterLength(text) == text.size()) return text;
          throw CLI::ValidationError(fmt::format("\"{}\" is not one character, nor \"tab\"", text));
        })
        ->option_text("CHARACTER|tab");
    command
        .add_option_function<std::string>(
            "--decimal", [&reading](const std::string& sign) { reading.decimal = sign.front(); },
            "The decimal sign of the file, if it is to be told.")
        ->check(CLI::IsMember({".", ","}))
        ->option_text(".|,");
    command
        .add_option_function<std::string>(
            "--columns", [&reading](const std::string& text) { reading.columns = columnsOf(text); },
            "Which columns of the file are Date, Time, Open, High, Low, Close or Volume, by their names or numbers.")
        ->option_text("Close=NAME,...");
  }

  /// The options that tell how a price file is to be read, and which of its records.
  void addReading(CLI::App& command) {
    prices::Options& reading = run_.reading;
    addLayout(command, reading);
    command
        .add_option_function<std::string>(
            "--order",
            [&reading](const std::string& order) {
              reading.order = order == "keep" ? prices::Order::Keep : prices::Order::Check;
            },
            "Whether the order of the dates is checked (newest first is reversed) or kept as it is.")
        ->check(CLI::IsMember({"check", "keep"}))
        ->option_text("check|keep");
    command
        .add_option_function<std::string>(
            "--missing",
            [&reading](const std::string& missing) {
              reading.missing = missing == "skip"       ? prices::Missing::Skip
                                : missing == "previous" ? prices::Missing::Previous
                                                        : prices::Missing::Refuse;
            },
            "What is done with a record that lacks a price: an error, left out, or the price of the record before.")
        ->check(CLI::IsMember({"error", "skip", "previous"}))
        ->option_text("error|skip|previous");
    command.add_option("--from", reading.from, "The first record to compute from: a date, or its number from 1.")
        ->option_text("DATE|N");
    command.add_option("--to", reading.to, "The last one.")->option_text("DATE|N");
    command.add_option("--tail", reading.tail, "Compute from the last N of these records only.")
        ->transform(countOf)
        ->option_text("N");
  }

  /// A whole number from 1. One that is too long to be read asks for all records, like every other that is beyond the
  /// longest series.
  static std::string countOf(const std::string& text) {
    const std::size_t first = text.find_first_not_of('0');
    if (first == std::string::npos || text.find_first_not_of("0123456789") != std::string::npos) {
      throw CLI::ValidationError(fmt::format("\"{}\" is not a whole number from 1", text));
    }
    const std::string all = fmt::to_string(Integer::Greatest);
    const std::string digits = text.substr(first);
    return digits.size() > all.size() ? all : digits;
  }

  /// Open=first,Close=last.
  static std::vector<prices::ColumnChoice> columnsOf(const std::string& text) {
    std::vector<prices::ColumnChoice> choices;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ',');) {
      const std::size_t equals = part.find('=');
      const auto role = prices::roleNamed(std::string_view(part).substr(0, equals));
      if (!role || equals == std::string::npos || equals + 1 == part.size()) {
        throw CLI::ValidationError(fmt::format(
            "\"{}\" is not like Close=NAME, with Date, Time, Open, High, Low, Close or Volume before the sign", part));
      }
      choices.push_back({*role, part.substr(equals + 1)});
    }
    return choices;
  }

  /// The commands with their options, of which the texts tell what may stand behind them.
  std::vector<CommandOptions> commands() {
    std::vector<CommandOptions> all;
    for (const CLI::App* command : app_.get_subcommands({})) {
      CommandOptions& added = all.emplace_back(CommandOptions{command->get_name(), {}});
      for (const CLI::Option* option : command->get_options()) {
        if (option->get_positional()) continue;
        CommandOptions::Option& one = added.options.emplace_back();
        one.name = option->get_name();
        one.isFlag = option->get_items_expected_max() == 0;
        std::istringstream parts(option->get_option_text());
        for (std::string part; std::getline(parts, part, '|');) {
          if (part == "PAGE") one.values.emplace_back(AnyFile);
          if (std::none_of(part.begin(), part.end(), [](char c) { return c >= 'A' && c <= 'Z'; })) {
            one.values.push_back(part);
          }
        }
      }
    }
    return all;
  }

  void addPageFormat(const std::string& command) {
    app_.get_subcommand(command)
        ->add_option("--format", format_, "How to print: text or json.")
        ->check(CLI::IsMember({"text", "json"}))
        ->option_text("text|json");
  }

  PageFormat pageFormat() const { return format_ == "json" ? PageFormat::Json : PageFormat::Text; }

  void runMethod(Sink& sink) {
    run_.format = outputFormat();
    if (!warmup_.empty()) run_.blankWarmup = warmup_ == "blank";
    run(run_, sink);
  }

  Format outputFormat() const {
    if (format_.empty()) return platform::printsToTerminal() ? Format::Table : Format::Csv;
    return format_ == "json" ? Format::Json : format_ == "csv" ? Format::Csv : Format::Table;
  }

  /// What is wrong with the command line itself.
  std::string explain(const CLI::ParseError& error) const {
    const std::vector<CLI::App*> chosen = app_.get_subcommands();
    const std::vector<std::string> unknown = app_.remaining(true);
    const CLI::App& scope = chosen.empty() ? app_ : *chosen.front();
    const std::string help =
        fmt::format(" \"{} --help\" tells how it is called.", chosen.empty() ? "orvex" : "orvex " + scope.get_name());
    if (unknown.empty()) return fmt::format("{}.{}", chosen.empty() ? "no command is given" : error.what(), help);
    const std::string& word = unknown.front();
    std::vector<std::string> names;
    if (word.starts_with('-')) {
      for (const CLI::Option* option : scope.get_options()) {
        if (!option->get_positional()) names.push_back(option->get_name());
      }
      return fmt::format("there is no option \"{}\".{}{}", word, didYouMean(word, names), help);
    }
    if (!chosen.empty()) return fmt::format("\"{}\" is one word too many.{}", word, help);
    for (const CLI::App* command : app_.get_subcommands({})) names.push_back(command->get_name());
    return fmt::format("there is no command \"{}\".{}{}", word, didYouMean(word, names), help);
  }

  static bool asksForJson(const std::vector<std::string>& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
      if (words[i] == "--format=json" || (i > 0 && words[i] == "json" && words[i - 1] == "--format")) return true;
    }
    return false;
  }

  static void printError(const Failure& failure) {
    try {
      Sink sink;
      sink.print(showError(failure));
      sink.flush();
    } catch (const WriteError& unwritten) {
      complain(unwritten.what());
    }
  }

  /// A mistake in how the program was called, for people and, where they asked for it, for programs.
  static int refuse(const std::string& explanation, bool asJson) {
    complain(explanation);
    if (asJson) printError(Failure(faults::InvalidCall, explanation));
    return misused;
  }

  /// For people on the standard error, and for programs that asked for it on the standard output.
  int report(const Failure& failure) const {
    const Error& error = failure.error();
    complain(failure.explanation());
    complain(fmt::format("error {}, {}: {}", error.number(), error.source(), error.description()));
    if (format_ == "json") printError(failure);
    return failed;
  }

  CLI::App app_{"Technical analysis of price series.", "orvex"};
  std::function<void(Sink&)> command_;
  std::string target_;
  std::string format_;
  std::string warmup_;
  RunOptions run_;
  FollowOptions follow_;
  ChartOptions chart_;
};

}  // namespace
}  // namespace orvex::cli

int main(int argc, char** argv) {
  return orvex::cli::Program().main(orvex::cli::platform::start(argc, argv));
}
