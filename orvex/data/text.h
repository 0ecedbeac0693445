#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS {

/// Tells whether two names are the same but for the case of Latin, Greek and Cyrillic letters. Both are UTF-8; bytes
/// that are not stand for themselves.
bool equalNames(std::string_view a, std::string_view b) noexcept;

/// A number that equal names share, for tables of names.
std::size_t hashOfName(std::string_view name);

bool isUtf8(std::string_view bytes) noexcept;

/// The UTF-8 of a text in Windows-1252. The five bytes that stand for nothing there become the control characters of
/// the same number.
std::string utf8FromWindows1252(std::string_view bytes);

/// UTF-16 into UTF-8 and back, for hosts whose texts are UTF-16. Half of a surrogate pair alone is kept, in the three
/// bytes that its number takes, and comes back as it was. Bytes that are not UTF-8 become the replacement character.
std::string utf8FromUtf16(std::u16string_view text);
std::u16string utf16FromUtf8(std::string_view text);

/// A description as a sentence goes on with it: its first letter small, unless it begins with capitals as EOF does.
std::string withinSentence(std::string_view description);

/// How many bytes the first character of a UTF-8 text takes; 1 for a byte that begins none, 0 for an empty text.
std::size_t firstCharacterLength(std::string_view text) noexcept;

}  // namespace orvex::inline ORVEX_COUNTS
