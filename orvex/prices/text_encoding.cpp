#include "orvex/prices/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "orvex/data/database.h"
#include "orvex/data/text.h"
#include "orvex/prices/read_error.h"

namespace orvex::inline ORVEX_COUNTS::prices {

namespace {

[[noreturn]] void refuse(const std::string& why) {
  throw ReadError(Database::loadFault(faults::TypeMismatch.description), why);
}

/// What is known by its first bytes and is no price file.
struct Known {
  std::string_view begin;
  std::string_view what;
};
constexpr Known known[] = {
    {"\x1F\x8B", "It is compressed with gzip: unpack it first."},
    {"PK\x03\x04", "It is an archive or a workbook: save the sheet with the prices as CSV."},
    {"\xD0\xCF\x11\xE0", "It is a workbook: save the sheet with the prices as CSV."},
    {"%PDF", "It is a PDF document; prices are read from text, as CSV."},
    {"<!", "It is a web page; prices are read from text, as CSV."},
    {"<html", "It is a web page; prices are read from text, as CSV."},
    {"<HTML", "It is a web page; prices are read from text, as CSV."},
};

struct Seen {
  bool ascii;
  bool zeros;
};

/// A look at all bytes, which compilers and libraries turn into vector code.
Seen survey(std::string_view bytes) noexcept {
  unsigned high = 0;
  for (const char c : bytes) high |= static_cast<unsigned char>(c);
  return {high < 0x80, !bytes.empty() && std::memchr(bytes.data(), '\0', bytes.size()) != nullptr};
}

enum class Order { None, LittleEndian, BigEndian };

Order utf16Order(std::string_view bytes) noexcept {
  if (bytes.starts_with("\xFF\xFE")) return Order::LittleEndian;
  if (bytes.starts_with("\xFE\xFF")) return Order::BigEndian;
  // Without a mark, the digits and letters of a first line tell: one half of each is 0.
  constexpr std::size_t enough = 16;
  if (bytes.size() < enough) return Order::None;
  std::array<int, 2> zeros{};
  for (std::size_t i = 0; i < enough; ++i) zeros[i % 2] += bytes[i] == '\0';
  if (zeros[0] == 0 && zeros[1] == enough / 2) return Order::LittleEndian;
  if (zeros[1] == 0 && zeros[0] == enough / 2) return Order::BigEndian;
  return Order::None;
}

std::string fromUtf16(std::string_view bytes, Order order) {
  if (bytes.size() % 2 != 0) refuse("It is UTF-16 and ends in the middle of a character.");
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto first = static_cast<unsigned char>(bytes[2 * i]);
    const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
    units[i] = static_cast<char16_t>(order == Order::LittleEndian ? second << 8 | first : first << 8 | second);
  }
  if (units.starts_with(u'\uFEFF')) units.erase(0, 1);
  return utf8FromUtf16(units);
}

}  // namespace

std::string textOf(std::string bytes) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  for (const auto& [begin, what] : known) {
    if (bytes.starts_with(begin)) refuse(std::string(what));
  }
  Seen seen = survey(bytes);
  if (seen.zeros || bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    if (const Order order = utf16Order(bytes); order != Order::None) {
      bytes = fromUtf16(bytes, order);
      seen = survey(bytes);
    }
  }
  if (seen.zeros) refuse("It is no text: it has bytes of 0.");
  if (bytes.starts_with(byteOrderMark)) bytes.erase(0, byteOrderMark.size());
  if (!seen.ascii && !isUtf8(bytes)) return utf8FromWindows1252(bytes);
  return bytes;
}

std::string shown(std::string_view text) {
  constexpr std::size_t longest = 40;
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result = "\"";
  std::size_t characters = 0;
  while (!text.empty()) {
    if (++characters > longest) {
      result += "...";
      break;
    }
    const std::size_t length = firstCharacterLength(text);
    const auto byte = static_cast<unsigned char>(text.front());
    // The control characters of both sets, and what begins no character.
    const bool raw =
        length == 1 ? byte >= 0x20 && byte < 0x7F : byte != 0xC2 || static_cast<unsigned char>(text[1]) >= 0xA0;
    if (raw) {
      result += text.substr(0, length);
    } else {
      for (const char c : text.substr(0, length)) {
        result += "\\x";
        result += digits[static_cast<unsigned char>(c) >> 4];
        result += digits[static_cast<unsigned char>(c) & 15];
      }
    }
    text.remove_prefix(length);
  }
  return result + '"';
}

}  // namespace orvex::inline ORVEX_COUNTS::prices
