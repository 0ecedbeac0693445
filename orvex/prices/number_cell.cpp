#include "orvex/prices/number_cell.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "orvex/data/error.h"
#include "orvex/data/number_text.h"
#include "orvex/data/text.h"

namespace orvex::inline ORVEX_COUNTS::prices {

namespace {

// No-break, thin and narrow no-break space, and the byte-order mark where it stands inside a text.
constexpr std::string_view blanks[] = {" ", "\t", "\xC2\xA0", "\xE2\x80\x89", "\xE2\x80\xAF", "\xEF\xBB\xBF"};
constexpr std::string_view currencies[] = {"$", "\xE2\x82\xAC", "\xC2\xA3", "\xC2\xA5", "\xE2\x82\xB9", "\xE2\x82\xBF"};
constexpr std::string_view missing[] = {"null", "nil", "none", "n/a", "#n/a",         "na",
                                        "n.a.", "nan", "-",    "--",  "\xE2\x80\x93", "\xE2\x80\x94"};

/// Takes one of the texts from the beginning or the end.
template <std::size_t N>
bool takeFront(std::string_view& text, const std::string_view (&of)[N]) {
  for (const std::string_view one : of) {
    if (text.starts_with(one)) {
      text.remove_prefix(one.size());
      return true;
    }
  }
  return false;
}
template <std::size_t N>
bool takeBack(std::string_view& text, const std::string_view (&of)[N]) {
  for (const std::string_view one : of) {
    if (text.ends_with(one)) {
      text.remove_suffix(one.size());
      return true;
    }
  }
  return false;
}

/// The parts of a number's text around its digits.
struct Parts {
  bool negative = false;
  std::string_view digits;  // with separators, and an exponent if there is one
  int power = 0;            // of ten, for K, M, B or T
};

/// Nothing in `digits` where the text is no number.
Parts partsOf(std::string_view cell) {
  Parts parts;
  std::string_view text = trimmed(cell);
  const auto sign = [&] {
    constexpr std::string_view minus[] = {"-", "\xE2\x88\x92"};
    constexpr std::string_view plus[] = {"+"};
    if (takeFront(text, minus)) {
      parts.negative = true;
      return true;
    }
    return takeFront(text, plus);
  };
  const bool hasSign = sign();
  const bool currency = takeFront(text, currencies);
  if (currency) {
    text = trimmed(text);
    if (!hasSign) sign();
  } else if (takeBack(text, currencies)) {
    text = trimmed(text);
  }
  constexpr std::pair<char, int> powers[] = {{'K', 3}, {'M', 6}, {'B', 9}, {'T', 12}};
  for (const auto& [letter, power] : powers) {
    if (!text.empty() && (text.back() == letter || text.back() == letter - 'A' + 'a')) {
      parts.power = power;
      text = trimmed(text.substr(0, text.size() - 1));
      break;
    }
  }
  const bool begins = !text.empty() && (isDigit(text.front()) || text.front() == '.' || text.front() == ',');
  const bool ends = !text.empty() && (isDigit(text.back()) || text.back() == '.' || text.back() == ',');
  if (begins && ends) parts.digits = text;
  return parts;
}

/// Takes the digits that a text begins with.
std::string_view takeDigits(std::string_view& text) {
  const auto* const end = std::find_if_not(text.data(), text.data() + text.size(), isDigit);
  const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.data()));
  text.remove_prefix(digits.size());
  return digits;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  while (takeFront(text, blanks)) {
  }
  while (takeBack(text, blanks)) {
  }
  return text;
}

NumberCell readNumberCell(std::string_view cell, char decimal) {
  const std::string_view text = trimmed(cell);
  const auto isText = [&](std::string_view word) { return equalNames(word, text); };
  const bool mayBeWord = text.empty() || !isDigit(text.front());
  if (mayBeWord && (text.empty() || std::any_of(std::begin(missing), std::end(missing), isText))) {
    return {CellKind::Missing, 0.0, false};
  }
  const Parts parts = partsOf(text);
  std::string_view rest = parts.digits;
  if (rest.empty()) return {};

  NumberCell result;
  std::string plain = parts.negative ? "-" : "";
  std::string_view digits = takeDigits(rest);
  plain += digits;
  const std::string_view whole = digits;
  const std::string_view other = decimal == ',' ? "." : ",";
  const std::string_view separators[] = {other, "'", "\xE2\x80\x99", " ", "\xC2\xA0", "\xE2\x80\x89", "\xE2\x80\xAF"};
  bool separated = false;
  for (const std::string_view separator : separators) {
    if (!rest.starts_with(separator)) continue;
    separated = true;
    if (whole.empty() || whole.size() > 3 || whole.front() == '0') return {};
    while (rest.starts_with(separator)) {
      rest.remove_prefix(separator.size());
      digits = takeDigits(rest);
      if (digits.size() != 3) return {};
      plain += digits;
    }
    result.grouped = separator == other;
    break;
  }
  if (!rest.empty() && rest.front() == decimal) {
    rest.remove_prefix(1);
    const std::string_view fraction = takeDigits(rest);
    if (whole.empty() && fraction.empty()) return {};
    plain += '.';
    plain += fraction;
  }
  if (parts.power != 0) plain += "e" + std::to_string(parts.power);
  if (!rest.empty()) {
    // Only an exponent is left to come, which goes with no other way of telling thousands.
    if (rest.front() != 'e' && rest.front() != 'E') return {};
    if (parts.power != 0 || separated) return {};
    plain += rest;
  }
  try {
    const NumberText number = readNumber(plain);
    if (number.length != plain.size()) return {};
    result.kind = CellKind::Number;
    result.value = number.value;
    return result;
  } catch (const Error&) {
    return {};
  }
}

DecimalEvidence decimalEvidence(std::string_view cell) {
  const Parts parts = partsOf(cell);
  const std::string_view digits = parts.digits;
  const auto points = std::count(digits.begin(), digits.end(), '.');
  const auto commas = std::count(digits.begin(), digits.end(), ',');
  if (points + commas == 0) return DecimalEvidence::None;
  const bool asPoint = readNumberCell(cell, '.').kind == CellKind::Number;
  const bool asComma = readNumberCell(cell, ',').kind == CellKind::Number;
  if (asPoint && asComma) return DecimalEvidence::Either;
  return asPoint ? DecimalEvidence::Point : asComma ? DecimalEvidence::Comma : DecimalEvidence::None;
}

}  // namespace orvex::inline ORVEX_COUNTS::prices
