#include "orvex/data/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>

namespace orvex::inline ORVEX_COUNTS {

namespace {

/// Capital letters first..last, every `stride`-th, whose small letter lies `toSmall` further on: those beyond ASCII.
struct Capitals {
  std::uint16_t first;
  std::uint16_t last;
  std::uint16_t stride;
  std::int32_t toSmall;
};

// The simple one-to-one case foldings of the Latin, Greek and Cyrillic blocks of the Unicode character database.
constexpr Capitals capitals[] = {
    {0x00B5, 0x00B5, 1, 775},    {0x00C0, 0x00D6, 1, 32},     {0x00D8, 0x00DE, 1, 32},     {0x0100, 0x012E, 2, 1},
    {0x0132, 0x0136, 2, 1},      {0x0139, 0x0147, 2, 1},      {0x014A, 0x0176, 2, 1},      {0x0178, 0x0178, 1, -121},
    {0x0179, 0x017D, 2, 1},      {0x017F, 0x017F, 1, -268},   {0x0181, 0x0181, 1, 210},    {0x0182, 0x0184, 2, 1},
    {0x0186, 0x0186, 1, 206},    {0x0187, 0x0187, 1, 1},      {0x0189, 0x018A, 1, 205},    {0x018B, 0x018B, 1, 1},
    {0x018E, 0x018E, 1, 79},     {0x018F, 0x018F, 1, 202},    {0x0190, 0x0190, 1, 203},    {0x0191, 0x0191, 1, 1},
    {0x0193, 0x0193, 1, 205},    {0x0194, 0x0194, 1, 207},    {0x0196, 0x0196, 1, 211},    {0x0197, 0x0197, 1, 209},
    {0x0198, 0x0198, 1, 1},      {0x019C, 0x019C, 1, 211},    {0x019D, 0x019D, 1, 213},    {0x019F, 0x019F, 1, 214},
    {0x01A0, 0x01A4, 2, 1},      {0x01A6, 0x01A6, 1, 218},    {0x01A7, 0x01A7, 1, 1},      {0x01A9, 0x01A9, 1, 218},
    {0x01AC, 0x01AC, 1, 1},      {0x01AE, 0x01AE, 1, 218},    {0x01AF, 0x01AF, 1, 1},      {0x01B1, 0x01B2, 1, 217},
    {0x01B3, 0x01B5, 2, 1},      {0x01B7, 0x01B7, 1, 219},    {0x01B8, 0x01B8, 1, 1},      {0x01BC, 0x01BC, 1, 1},
    {0x01C4, 0x01C4, 1, 2},      {0x01C5, 0x01C5, 1, 1},      {0x01C7, 0x01C7, 1, 2},      {0x01C8, 0x01C8, 1, 1},
    {0x01CA, 0x01CA, 1, 2},      {0x01CB, 0x01DB, 2, 1},      {0x01DE, 0x01EE, 2, 1},      {0x01F1, 0x01F1, 1, 2},
    {0x01F2, 0x01F4, 2, 1},      {0x01F6, 0x01F6, 1, -97},    {0x01F7, 0x01F7, 1, -56},    {0x01F8, 0x021E, 2, 1},
    {0x0220, 0x0220, 1, -130},   {0x0222, 0x0232, 2, 1},      {0x023A, 0x023A, 1, 10795},  {0x023B, 0x023B, 1, 1},
    {0x023D, 0x023D, 1, -163},   {0x023E, 0x023E, 1, 10792},  {0x0241, 0x0241, 1, 1},      {0x0243, 0x0243, 1, -195},
    {0x0244, 0x0244, 1, 69},     {0x0245, 0x0245, 1, 71},     {0x0246, 0x024E, 2, 1},      {0x0370, 0x0372, 2, 1},
    {0x0376, 0x0376, 1, 1},      {0x037F, 0x037F, 1, 116},    {0x0386, 0x0386, 1, 38},     {0x0388, 0x038A, 1, 37},
    {0x038C, 0x038C, 1, 64},     {0x038E, 0x038F, 1, 63},     {0x0391, 0x03A1, 1, 32},     {0x03A3, 0x03AB, 1, 32},
    {0x03C2, 0x03C2, 1, 1},      {0x03CF, 0x03CF, 1, 8},      {0x03D0, 0x03D0, 1, -30},    {0x03D1, 0x03D1, 1, -25},
    {0x03D5, 0x03D5, 1, -15},    {0x03D6, 0x03D6, 1, -22},    {0x03D8, 0x03EE, 2, 1},      {0x03F0, 0x03F0, 1, -54},
    {0x03F1, 0x03F1, 1, -48},    {0x03F4, 0x03F4, 1, -60},    {0x03F5, 0x03F5, 1, -64},    {0x03F7, 0x03F7, 1, 1},
    {0x03F9, 0x03F9, 1, -7},     {0x03FA, 0x03FA, 1, 1},      {0x03FD, 0x03FF, 1, -130},   {0x0400, 0x040F, 1, 80},
    {0x0410, 0x042F, 1, 32},     {0x0460, 0x0480, 2, 1},      {0x048A, 0x04BE, 2, 1},      {0x04C0, 0x04C0, 1, 15},
    {0x04C1, 0x04CD, 2, 1},      {0x04D0, 0x052E, 2, 1},      {0x1C80, 0x1C80, 1, -6222},  {0x1C81, 0x1C81, 1, -6221},
    {0x1C82, 0x1C82, 1, -6212},  {0x1C83, 0x1C84, 1, -6210},  {0x1C85, 0x1C85, 1, -6211},  {0x1C86, 0x1C86, 1, -6204},
    {0x1C87, 0x1C87, 1, -6180},  {0x1C88, 0x1C88, 1, 35267},  {0x1E00, 0x1E94, 2, 1},      {0x1E9B, 0x1E9B, 1, -58},
    {0x1E9E, 0x1E9E, 1, -7615},  {0x1EA0, 0x1EFE, 2, 1},      {0x1F08, 0x1F0F, 1, -8},     {0x1F18, 0x1F1D, 1, -8},
    {0x1F28, 0x1F2F, 1, -8},     {0x1F38, 0x1F3F, 1, -8},     {0x1F48, 0x1F4D, 1, -8},     {0x1F59, 0x1F5F, 2, -8},
    {0x1F68, 0x1F6F, 1, -8},     {0x1F88, 0x1F8F, 1, -8},     {0x1F98, 0x1F9F, 1, -8},     {0x1FA8, 0x1FAF, 1, -8},
    {0x1FB8, 0x1FB9, 1, -8},     {0x1FBA, 0x1FBB, 1, -74},    {0x1FBC, 0x1FBC, 1, -9},     {0x1FBE, 0x1FBE, 1, -7173},
    {0x1FC8, 0x1FCB, 1, -86},    {0x1FCC, 0x1FCC, 1, -9},     {0x1FD8, 0x1FD9, 1, -8},     {0x1FDA, 0x1FDB, 1, -100},
    {0x1FE8, 0x1FE9, 1, -8},     {0x1FEA, 0x1FEB, 1, -112},   {0x1FEC, 0x1FEC, 1, -7},     {0x1FF8, 0x1FF9, 1, -128},
    {0x1FFA, 0x1FFB, 1, -126},   {0x1FFC, 0x1FFC, 1, -9},     {0x2C60, 0x2C60, 1, 1},      {0x2C62, 0x2C62, 1, -10743},
    {0x2C63, 0x2C63, 1, -3814},  {0x2C64, 0x2C64, 1, -10727}, {0x2C67, 0x2C6B, 2, 1},      {0x2C6D, 0x2C6D, 1, -10780},
    {0x2C6E, 0x2C6E, 1, -10749}, {0x2C6F, 0x2C6F, 1, -10783}, {0x2C70, 0x2C70, 1, -10782}, {0x2C72, 0x2C72, 1, 1},
    {0x2C75, 0x2C75, 1, 1},      {0x2C7E, 0x2C7F, 1, -10815}, {0xA640, 0xA66C, 2, 1},      {0xA680, 0xA69A, 2, 1},
    {0xA722, 0xA72E, 2, 1},      {0xA732, 0xA76E, 2, 1},      {0xA779, 0xA77B, 2, 1},      {0xA77D, 0xA77D, 1, -35332},
    {0xA77E, 0xA786, 2, 1},      {0xA78B, 0xA78B, 1, 1},      {0xA78D, 0xA78D, 1, -42280}, {0xA790, 0xA792, 2, 1},
    {0xA796, 0xA7A8, 2, 1},      {0xA7AA, 0xA7AA, 1, -42308}, {0xA7AB, 0xA7AB, 1, -42319}, {0xA7AC, 0xA7AC, 1, -42315},
    {0xA7AD, 0xA7AD, 1, -42305}, {0xA7AE, 0xA7AE, 1, -42308}, {0xA7B0, 0xA7B0, 1, -42258}, {0xA7B1, 0xA7B1, 1, -42282},
    {0xA7B2, 0xA7B2, 1, -42261}, {0xA7B3, 0xA7B3, 1, 928},    {0xA7B4, 0xA7C2, 2, 1},      {0xA7C4, 0xA7C4, 1, -48},
    {0xA7C5, 0xA7C5, 1, -42307}, {0xA7C6, 0xA7C6, 1, -35384}, {0xA7C7, 0xA7C9, 2, 1},      {0xA7D0, 0xA7D0, 1, 1},
    {0xA7D6, 0xA7D8, 2, 1},      {0xA7F5, 0xA7F5, 1, 1},
};

char32_t smallLetter(char32_t character) noexcept {
  if (character < 0x80) return character >= 'A' && character <= 'Z' ? character + ('a' - 'A') : character;
  const auto* range =
      std::lower_bound(std::begin(capitals), std::end(capitals), character,
                       [](const Capitals& candidate, char32_t wanted) { return candidate.last < wanted; });
  if (range == std::end(capitals) || character < range->first || (character - range->first) % range->stride != 0) {
    return character;
  }
  return static_cast<char32_t>(static_cast<std::int32_t>(character) + range->toSmall);
}

struct Decoded {
  char32_t character;
  std::size_t length;
  bool valid;
};

/// The first character of a text that is not empty.
Decoded decode(std::string_view text) noexcept {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const auto continues = [&](std::size_t i) { return i < text.size() && (byte(i) & 0xC0) == 0x80; };
  const char32_t lead = byte(0);
  // A byte that begins no character must not compare equal to the letter of its number.
  const Decoded stray{0x110000 + lead, 1, false};
  if (lead < 0x80) return {lead, 1, true};
  if (lead >= 0xC2 && lead <= 0xDF && continues(1)) return {(lead & 0x1F) << 6 | (byte(1) & 0x3F), 2, true};
  if (lead >= 0xE0 && lead <= 0xEF && continues(1) && continues(2)) {
    const char32_t character = (lead & 0x0F) << 12 | (byte(1) & 0x3Fu) << 6 | (byte(2) & 0x3F);
    if (character < 0x800) return stray;
    // Half of a surrogate pair is no character, but a binding may keep one so.
    return {character, 3, character < 0xD800 || character > 0xDFFF};
  }
  if (lead >= 0xF0 && lead <= 0xF4 && continues(1) && continues(2) && continues(3)) {
    const char32_t character =
        (lead & 0x07) << 18 | (byte(1) & 0x3Fu) << 12 | (byte(2) & 0x3Fu) << 6 | (byte(3) & 0x3F);
    if (character >= 0x10000 && character <= 0x10FFFF) return {character, 4, true};
  }
  return stray;
}

void append(std::string& text, char32_t character) {
  const auto continued = [&](int shift) { return static_cast<char>(0x80 | (character >> shift & 0x3F)); };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6);
    text += continued(0);
  } else if (character < 0x10000) {
    text += static_cast<char>(0xE0 | character >> 12);
    text += continued(6);
    text += continued(0);
  } else {
    text += static_cast<char>(0xF0 | character >> 18);
    text += continued(12);
    text += continued(6);
    text += continued(0);
  }
}

// Windows-1252 differs from Latin-1 in these 32 places only.
constexpr std::array<char32_t, 32> windows1252From80 = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                        0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

}  // namespace

bool equalNames(std::string_view a, std::string_view b) noexcept {
  if (a == b) return true;
  while (!a.empty() && !b.empty()) {
    const auto x = static_cast<unsigned char>(a.front()), y = static_cast<unsigned char>(b.front());
    if (x < 0x80 && y < 0x80) {
      // What nearly all names are made of.
      if (x != y && smallLetter(x) != smallLetter(y)) return false;
      a.remove_prefix(1);
      b.remove_prefix(1);
      continue;
    }
    const Decoded first = decode(a);
    const Decoded second = decode(b);
    if (first.character != second.character && smallLetter(first.character) != smallLetter(second.character)) {
      return false;
    }
    a.remove_prefix(first.length);
    b.remove_prefix(second.length);
  }
  return a.empty() && b.empty();
}

std::size_t hashOfName(std::string_view name) {
  std::u32string letters;
  while (!name.empty()) {
    const Decoded first = decode(name);
    letters += smallLetter(first.character);
    name.remove_prefix(first.length);
  }
  return std::hash<std::u32string>()(letters);
}

bool isUtf8(std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const Decoded first = decode(bytes);
    if (!first.valid) return false;
    bytes.remove_prefix(first.length);
  }
  return true;
}

std::string utf8FromWindows1252(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 2);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    append(text, byte >= 0x80 && byte < 0xA0 ? windows1252From80[byte - 0x80u] : byte);
  }
  return text;
}

std::string utf8FromUtf16(std::u16string_view text) {
  const auto isIn = [](char32_t unit, char32_t first) { return unit >= first && unit < first + 0x400; };
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t character = text[i];
    if (isIn(character, 0xD800) && i + 1 < text.size() && isIn(text[i + 1], 0xDC00)) {
      character = 0x10000 + ((character - 0xD800) << 10) + (text[++i] - 0xDC00u);
    }
    append(result, character);
  }
  return result;
}

std::u16string utf16FromUtf8(std::string_view text) {
  constexpr char16_t replacement = 0xFFFD;
  std::u16string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Decoded first = decode(text);
    text.remove_prefix(first.length);
    if (first.character < 0x10000) {
      result += static_cast<char16_t>(first.character);
    } else if (first.character < 0x110000) {
      result += static_cast<char16_t>(0xD800 + ((first.character - 0x10000) >> 10));
      result += static_cast<char16_t>(0xDC00 + ((first.character - 0x10000) & 0x3FF));
    } else {
      result += replacement;
    }
  }
  return result;
}

std::string withinSentence(std::string_view description) {
  std::string text(description);
  const auto isCapital = [&](std::size_t at) { return at < text.size() && text[at] >= 'A' && text[at] <= 'Z'; };
  if (isCapital(0) && !isCapital(1)) text.front() = static_cast<char>(text.front() - 'A' + 'a');
  return text;
}

std::size_t firstCharacterLength(std::string_view text) noexcept {
  return text.empty() ? 0 : decode(text).length;
}

}  // namespace orvex::inline ORVEX_COUNTS
