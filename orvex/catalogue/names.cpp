#include "orvex/catalogue/names.h"

#include <cstddef>

namespace orvex::inline ORVEX_COUNTS::catalogue {

namespace {

bool isUpper(char c) {
  return c >= 'A' && c <= 'Z';
}

bool isLower(char c) {
  return c >= 'a' && c <= 'z';
}

/// Whether a word of the name begins at a letter: a capital after what is none, or the last of several before a small
/// letter.
bool beginsWord(std::string_view name, std::size_t i) {
  if (i == 0 || !isUpper(name[i]) || name[i - 1] == '_') return false;
  return !isUpper(name[i - 1]) || (i + 1 < name.size() && isLower(name[i + 1]));
}

}  // namespace

std::string snakeCase(std::string_view name) {
  std::string result;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (beginsWord(name, i)) result += '_';
    result += isUpper(name[i]) ? static_cast<char>(name[i] - 'A' + 'a') : name[i];
  }
  return result;
}

}  // namespace orvex::inline ORVEX_COUNTS::catalogue
