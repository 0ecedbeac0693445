#include "orvex/data/double_digits.h"

#include <charconv>

#ifdef __cpp_lib_to_chars
#include <array>
#include <system_error>
#else
#include <cmath>
#include <cstdio>
#include <cstdlib>
#endif

namespace orvex::inline ORVEX_COUNTS {

#ifdef __cpp_lib_to_chars

bool nearestDouble(std::string_view number, double& value) {
  return std::from_chars(number.data(), number.data() + number.size(), value).ec == std::errc();
}

namespace {

template <class Float>
std::string shortest(Float value) {
  std::array<char, 32> buffer{};
  return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

}  // namespace

#else

namespace {

void read(const std::string& text, double& value) {
  value = std::strtod(text.c_str(), nullptr);
}
void read(const std::string& text, float& value) {
  value = std::strtof(text.c_str(), nullptr);
}

std::string print(const char* format, int precision, double value) {
  char buffer[512];  // the greatest double has 309 digits before the point
  const int length = std::snprintf(buffer, sizeof buffer, format, precision, value);
  return {buffer, static_cast<std::size_t>(length)};
}

template <class Float>
bool readsBack(const std::string& text, Float value) {
  Float again = 0;
  read(text, again);
  return again == value;
}

template <class Float>
std::string shortest(Float value) {
  if (!std::isfinite(value)) return print("%.*f", 0, static_cast<double>(value));
  int precision = 0;
  std::string scientific = print("%.*e", precision, static_cast<double>(value));
  while (!readsBack(scientific, value)) scientific = print("%.*e", ++precision, static_cast<double>(value));
  const int exponent = std::atoi(scientific.c_str() + scientific.find('e') + 1);
  // Whole numbers with more digits than that many are written out in full.
  const std::string fixed = print("%.*f", exponent >= precision ? 0 : precision - exponent, static_cast<double>(value));
  return fixed.size() <= scientific.size() ? fixed : scientific;
}

}  // namespace

bool nearestDouble(std::string_view number, double& value) {
  // Such a system's strtod rounds correctly and knows one locale. It gives subnormal numbers as they are.
  const double nearest = std::strtod(std::string(number).c_str(), nullptr);
  if (!std::isfinite(nearest)) return false;
  if (nearest == 0.0 && number.substr(0, number.find_first_of("eE")).find_first_of("123456789") != number.npos) {
    return false;
  }
  value = nearest;
  return true;
}

#endif

std::string shortestText(double value) {
  return shortest(value);
}

std::string shortestText(float value) {
  return shortest(value);
}

}  // namespace orvex::inline ORVEX_COUNTS
