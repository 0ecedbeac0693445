#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Pages with a chart in them.
///
/// The studio is one HTML file. It has one place for a chart,
///
///     <script type="application/json" id="orvex-chart">null</script>
///
/// in which whoever writes such a page puts, for `null`, one JSON object:
///
///     {"name": "prices.csv",                  what the page calls the prices
///      "prices": "Date,Open,High,...\n...",   comma-separated values with a header line, oldest first; a
///                                             cell without a value is empty
///      "studies": [{"method": "Oscillator.MACD",
///                   "arguments": {"Source": "Close", "ShortCycle": 12}}]}
///
/// Arguments are numbers, names of choices, or names of columns: one of the prices, or of a study before it. What is
/// left out is as usual. Every "<" of the JSON is written \u003c, so that nothing in a cell can end the element and
/// become part of the page; the page's policy lets no other script run than its own in any case.
namespace orvex::cli {

struct ChartStudy {
  std::string method;
  /// Names, and values in JSON.
  std::vector<std::pair<std::string, std::string>> arguments;
};

struct ChartData {
  std::string name;
  std::string prices;
  std::vector<ChartStudy> studies;
};

/// The studio with a chart in it. Error 51 where `studio` has no place for one.
std::string chartPage(std::string_view studio, const ChartData& data);

}  // namespace orvex::cli
