#include "cli/chart.h"

#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>

#include "cli/binding.h"
#include "cli/chart_page.h"
#include "cli/failure.h"
#include "cli/names.h"
#include "cli/output.h"
#include "cli/price_file.h"
#include "cli/values.h"
#include "orvex/catalogue/call_on_values.h"
#include "orvex/data/object.h"
#include "orvex/data/text.h"

extern char** environ;

namespace orvex::cli {

namespace {

namespace fs = std::filesystem;

std::optional<std::string> contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  return std::string(std::istreambuf_iterator<char>(file), {});
}

/// The studio: beside the program, where packages put it, or where it is built.
std::string findStudio() {
  constexpr const char* name = "orvex-studio.html";
  std::error_code unknown;
  const fs::path program = fs::read_symlink("/proc/self/exe", unknown).parent_path();
  for (const fs::path& place : {program / name, program / "../share/orvex" / name, program / "../../web" / name}) {
    if (const auto found = contentOf(place)) return *found;
  }
  throw Failure(faults::FileNotFound,
                fmt::format("the studio, {0}, is neither beside the program nor in share/orvex. scripts/site builds it "
                            "as build/web/{0}: put that beside the program.",
                            name));
}

std::vector<std::vector<std::string>> splitStudies(const std::vector<std::string>& words) {
  std::vector<std::vector<std::string>> parts(1);
  for (const std::string& word : words) {
    if (word == NextStudy) {
      parts.emplace_back();
    } else {
      parts.back().push_back(word);
    }
  }
  return parts;
}

const catalogue::Method& methodOf(const Target& target, const std::string& word) {
  for (const catalogue::Method* method : target.methods) {
    if (catalogue::isCalculation(*target.owner, *method)) return *method;
  }
  throw UsageError(fmt::format("\"{}\" is no method that computes something; name one as CLASS.METHOD.", word));
}

/// Puts the columns of a result behind those of the file, so that later studies can be computed from them.
void appendColumns(PriceFile& file, const RecordSet& result, const std::vector<catalogue::RowRange>& computed) {
  for (std::size_t i = 0; i < computed.size(); ++i) {
    const auto& field = result.fields()[i];
    const auto rows = field->writableValues();
    for (int row = 1; row <= static_cast<int>(rows.size()); ++row) {
      if (!computed[i].contains(row)) {
        rows[static_cast<std::size_t>(row - 1)] = std::numeric_limits<double>::quiet_NaN();
      }
    }
    file.columns.push_back({field, "", std::nullopt});
  }
}

/// Computes a study, and says it as a page has it.
ChartStudy makeStudy(const std::vector<std::string>& words, PriceFile& file) {
  if (words.empty()) throw UsageError("between two \"--\" stands no method.");
  const Target target = findTarget(words.front());
  const catalogue::Method& method = methodOf(target, words.front());
  const std::string name = fullName(*target.owner, method);
  const CallWords call = readWords({words.begin() + 1, words.end()});
  if (call.file) {
    throw UsageError(
        fmt::format("\"{}\" behind {} is no argument: they are written NAME=VALUE, and \"--\" stands between methods.",
                    *call.file, name));
  }
  checkNames(*target.owner, method, call.arguments);
  std::vector<NamedText> given = call.arguments;
  // A page shows what is found in every record, so the one that such a method asks for is not told.
  const auto asked = std::find_if(method.arguments.begin(), method.arguments.end(),
                                  [](const catalogue::Argument& argument) { return argument.record; });
  const bool everyRecord = method.result == catalogue::Type::Note && asked != method.arguments.end() && given.empty();
  if (everyRecord) given.push_back({std::string(asked->name), "1"});
  std::vector<catalogue::Value> arguments = bindArguments(*target.owner, method, given, &file);
  ChartStudy study{name, {}};
  for (const NamedText& one : call.arguments) {
    const auto argument = std::find_if(method.arguments.begin(), method.arguments.end(),
                                       [&](const auto& each) { return equalNames(each.name, one.name); });
    const auto& value = arguments[static_cast<std::size_t>(argument - method.arguments.begin())];
    const bool isColumn = argument->type == catalogue::Type::Field;
    study.arguments.emplace_back(argument->name, isColumn ? jsonText(one.value) : jsonValue(value));
  }
  try {
    const auto called = catalogue::callOnValues(method, target.owner->create().get(), arguments);
    if (const auto* columns = std::get_if<std::shared_ptr<RecordSet>>(&called.result)) {
      appendColumns(file, object(*columns), called.computed);
    }
  } catch (const Error& error) {
    throw Failure(error.fault(), fmt::format("{0} could not be computed; \"orvex run {0}\" tells more.", name));
  }
  return study;
}

std::string pricesOf(const PriceFile& file) {
  ShownColumns shown;
  const int count = file.data->getRecordCount().value();
  for (const FileColumn& column : file.columns) {
    const bool texts = column.textLine.has_value();
    const catalogue::RowRange all{1, count};
    shown.columns.push_back({column.field, texts, texts ? all : catalogue::valuedRows(column.field->values())});
  }
  shown.records = {1, count};
  Sink sink = Sink::keeping();
  showColumns(sink, shown, Format::Csv);
  return std::move(sink.text());
}

/// Where the page goes if that is not told: never over a file that is no such page.
fs::path pageBeside(const std::string& file) {
  const fs::path stem = file == "-" ? "chart" : fs::path(file).stem();
  fs::path path = stem;
  path += ".html";
  const auto old = contentOf(path);
  if (old && old->find(R"(id="orvex-chart")") == std::string::npos) {
    throw UsageError(fmt::format("{} is there, and is no chart: name another file with -o.", path.string()));
  }
  return path;
}

void showInBrowser(const fs::path& page) {
#ifdef __APPLE__
  std::string program = "open";
#else
  std::string program = "xdg-open";
#endif
  std::string path = fs::absolute(page).string();
  char* words[] = {program.data(), path.data(), nullptr};
  pid_t child = 0;
  int status = 0;
  if (posix_spawnp(&child, program.c_str(), nullptr, nullptr, words, environ) != 0 ||
      waitpid(child, &status, 0) != child || status != 0) {
    complain(fmt::format("no browser could be opened; open {} by hand.", path));
  }
}

}  // namespace

std::string chart(const ChartOptions& options) {
  auto parts = splitStudies(options.words);
  auto& first = parts.front();
  if (first.empty()) throw UsageError("name a price file: orvex chart FILE [METHOD [NAME=VALUE ...]] [-- METHOD ...]");
  const std::string path = first.front();
  first.erase(first.begin());
  if (first.empty() && parts.size() == 1) parts.clear();

  const std::string studio = findStudio();
  PriceFile file = readPriceFile(path, options.reading);
  std::for_each(file.remarks.begin(), file.remarks.end(), complain);
  ChartData data{path == "-" ? "prices.csv" : fs::path(path).filename().string(), pricesOf(file), {}};
  for (const auto& words : parts) data.studies.push_back(makeStudy(words, file));
  std::string page = chartPage(studio, data);
  if (options.output == "-") return page;

  const fs::path target = options.output ? fs::path(*options.output) : pageBeside(path);
  std::ofstream out(target, std::ios::binary);
  out.write(page.data(), static_cast<std::streamsize>(page.size()));
  out.close();
  if (!out) throw Failure(faults::FileAccess, fmt::format("{} could not be written.", target.string()));
  if (options.open) showInBrowser(target);
  return fmt::format("{}\n", target.string());
}

}  // namespace orvex::cli
