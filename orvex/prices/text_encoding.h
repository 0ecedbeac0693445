#pragma once

#include <string>
#include <string_view>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS::prices {

/// The text of a file's bytes in UTF-8, without a byte-order mark: UTF-8, UTF-16 (with a mark, or where every other
/// byte at the beginning is 0), and Windows-1252 where the bytes are no UTF-8. ReadError for what is no text: a byte 0,
/// a character cut off at the end, and files that are known by their first bytes (archives, workbooks, web pages).
std::string textOf(std::string bytes);

/// A text of a file as a message shows it: in quotation marks, control characters as \xNN, cut where it is long.
std::string shown(std::string_view text);

}  // namespace orvex::inline ORVEX_COUNTS::prices
