#include "cli/chart.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>

#include "cli/binding.h"
#include "cli/call.h"
#include "cli/chart_page.h"
#include "cli/failure.h"
#include "cli/names.h"
#include "cli/output.h"
#include "cli/platform.h"
#include "cli/price_file.h"
#include "cli/values.h"
#include "orvex/data/object.h"
#include "orvex/data/text.h"

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
  const fs::path program = platform::programFolder();
  for (const fs::path& place : {program / name, program / "../share/orvex" / name, program / "../../web" / name}) {
    if (const auto found = contentOf(place)) return *found;
  }
  throw Failure(faults::FileNotFound,
                fmt::format("the studio, {0}, is neither beside the program nor in share/orvex. scripts/site builds it "
                            "as build/web/{0}: put that beside the program.",
                            name));
}

/// Puts the columns of a result behind the file's own, so that later studies can be computed from them: of those that
/// bear one name, the latest.
void addColumns(PriceFile& file, std::size_t own, const RecordSet& result,
                const std::vector<catalogue::RowRange>& computed) {
  for (std::size_t i = 0; i < computed.size(); ++i) {
    const auto& field = result.fields()[i];
    const auto rows = field->writableValues();
    for (int row = 1; row <= static_cast<int>(rows.size()); ++row) {
      if (!computed[i].contains(row)) {
        rows[static_cast<std::size_t>(row - 1)] = std::numeric_limits<double>::quiet_NaN();
      }
    }
    file.columns.insert(file.columns.begin() + static_cast<std::ptrdiff_t>(own), FileColumn{field, "", {}});
  }
}

/// Computes a study, and says it as a page has it. `own`: how many columns the file has of its own.
ChartStudy makeStudy(const std::vector<std::string>& words, PriceFile& file, std::size_t own) {
  if (words.empty()) throw UsageError("between two \"--\" stands no method.");
  const Target target = findTarget(words.front());
  const catalogue::Method& method = findRunnable(target);
  const std::string name = fullName(*target.owner, method);
  const CallWords call = readWords({words.begin() + 1, words.end()});
  if (call.file) {
    throw UsageError(
        fmt::format("\"{}\" behind {} is no argument: they are written NAME=VALUE, and \"--\" stands between methods.",
                    *call.file, name));
  }
  checkNames(*target.owner, method, call.arguments);
  std::vector<NamedText> given = call.arguments;
  // A page shows what is found in every record, so the one that such a method asks for need not be told.
  const catalogue::Argument* const asked = askedRecord(method);
  if (asked != nullptr) {
    std::erase_if(given, [&](const NamedText& one) { return equalNames(one.name, asked->name); });
    given.push_back({std::string(asked->name), "1"});
  }
  std::vector<catalogue::Value> arguments = bindArguments(*target.owner, method, given, &file).values;
  if (asked != nullptr) {
    // The first record that there is where the prices begin late.
    arguments[static_cast<std::size_t>(asked - method.arguments.begin())] =
        Integer(catalogue::partWithValues(arguments).first);
  }
  ChartStudy study{name, {}};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const catalogue::Argument& argument = method.arguments[i];
    const auto told = std::find_if(call.arguments.begin(), call.arguments.end(),
                                   [&](const NamedText& one) { return equalNames(one.name, argument.name); });
    if (told == call.arguments.end() || &argument == asked) continue;
    const bool isColumn = argument.type == catalogue::Type::Field;
    study.arguments.emplace_back(argument.name, isColumn ? jsonText(told->value) : jsonValue(arguments[i]));
  }
  const catalogue::ValuedCall called = Call{*target.owner, method, name, &file}(arguments);
  if (const auto* columns = std::get_if<std::shared_ptr<RecordSet>>(&called.result)) {
    addColumns(file, own, object(*columns), called.computed);
  }
  return study;
}

std::string pricesOf(const PriceFile& file) {
  ShownColumns shown;
  shown.columns = columnsOf(file);
  shown.records = {1, file.data->getRecordCount().value()};
  Sink sink = Sink::keeping();
  showColumns(sink, shown, Format::Csv);
  return std::move(sink.text());
}

/// Where the page goes if that is not told: never over a file that is no such page.
fs::path pageBeside(const std::string& file) {
  const fs::path stem = file == "-" ? "chart" : platform::pathOf(file).stem();
  fs::path path = stem;
  path += ".html";
  const auto old = contentOf(path);
  if (old && old->find(R"(id="orvex-chart")") == std::string::npos) {
    throw UsageError(fmt::format("{} is there, and is no chart: name another file with -o.", platform::textOf(path)));
  }
  return path;
}

void showInBrowser(const fs::path& page) {
  const fs::path path = fs::absolute(page);
  if (!platform::showInBrowser(path)) {
    complain(fmt::format("no browser could be opened; open {} by hand.", platform::textOf(path)));
  }
}

}  // namespace

std::string chart(const ChartOptions& options) {
  auto parts = splitCalls(options.words);
  auto& first = parts.front();
  if (first.empty()) throw UsageError("name a price file: orvex chart FILE [METHOD [NAME=VALUE ...]] [-- METHOD ...]");
  const std::string path = first.front();
  first.erase(first.begin());
  if (first.empty() && parts.size() == 1) parts.clear();

  const std::string studio = findStudio();
  PriceFile file = readPriceFile(path, options.reading);
  std::for_each(file.remarks.begin(), file.remarks.end(), complain);
  ChartData data{path == "-" ? "prices.csv" : platform::textOf(platform::pathOf(path).filename()), pricesOf(file), {}};
  const std::size_t own = file.columns.size();
  for (const auto& words : parts) data.studies.push_back(makeStudy(words, file, own));
  std::string page = chartPage(studio, data);
  if (options.output == "-") return page;

  const fs::path target = options.output ? platform::pathOf(*options.output) : pageBeside(path);
  std::ofstream out(target, std::ios::binary);
  out.write(page.data(), static_cast<std::streamsize>(page.size()));
  out.close();
  if (!out) throw Failure(faults::FileAccess, fmt::format("{} could not be written.", platform::textOf(target)));
  if (options.open) showInBrowser(target);
  return fmt::format("{}\n", platform::textOf(target));
}

}  // namespace orvex::cli
