#include "cli/chart_page.h"

#include <fmt/format.h>

#include "cli/values.h"
#include "orvex/data/error.h"

namespace orvex::cli {

namespace {

std::string studyJson(const ChartStudy& study) {
  std::string arguments;
  for (const auto& [name, value] : study.arguments) {
    arguments += fmt::format("{}{}:{}", arguments.empty() ? "" : ",", jsonText(name), value);
  }
  return fmt::format(R"({{"method":{},"arguments":{{{}}}}})", jsonText(study.method), arguments);
}

std::string chartJson(const ChartData& data) {
  std::string studies;
  for (const ChartStudy& study : data.studies) {
    if (!studies.empty()) studies += ',';
    studies += studyJson(study);
  }
  return fmt::format(R"({{"name":{},"prices":{},"studies":[{}]}})", jsonText(data.name), jsonText(data.prices),
                     studies);
}

}  // namespace

std::string chartPage(std::string_view studio, const ChartData& data) {
  constexpr std::string_view place = R"(<script type="application/json" id="orvex-chart">null</script>)";
  constexpr std::string_view nothing = "null</script>";
  const std::size_t found = studio.find(place);
  if (found == std::string_view::npos) raise(faults::Internal);
  const std::size_t begin = found + place.size() - nothing.size();
  std::string page(studio.substr(0, begin));
  for (const char c : chartJson(data)) {
    if (c == '<') {
      page += "\\u003c";
    } else {
      page += c;
    }
  }
  page += studio.substr(begin + std::string_view("null").size());
  return page;
}

}  // namespace orvex::cli
