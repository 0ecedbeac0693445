#include "cli/values.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>

namespace orvex::cli {

namespace {

struct ToJson {
  std::string operator()(bool truth) const { return truth ? "true" : "false"; }
  std::string operator()(Integer number) const { return fmt::to_string(number.value()); }
  std::string operator()(std::int32_t number) const { return fmt::to_string(number); }
  std::string operator()(double number) const { return jsonNumber(number); }
  std::string operator()(const std::string& text) const { return jsonText(text); }
  template <class Other>
  std::string operator()(const Other&) const {
    return "null";
  }
};

}  // namespace

void appendNumber(std::string& out, double number) {
  // Readers of JSON take "-0" for a whole number, which has no such sign.
  if (number == 0.0 && std::signbit(number)) {
    out += "-0.0";
  } else {
    fmt::format_to(std::back_inserter(out), FMT_COMPILE("{}"), number);
  }
}

std::string numberText(double number) {
  std::string text;
  appendNumber(text, number);
  return text;
}

std::string jsonText(const std::string& text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string jsonNumber(double number) {
  return std::isfinite(number) ? numberText(number) : "null";
}

std::string jsonValue(const catalogue::Value& value) {
  return std::visit(ToJson{}, value);
}

}  // namespace orvex::cli
