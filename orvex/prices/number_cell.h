#pragma once

#include <string_view>

#include "orvex/data/counts.h"

namespace orvex::inline ORVEX_COUNTS::prices {

enum class CellKind { Number, Missing, Text };

/// A cell of a price file read as a number.
struct NumberCell {
  CellKind kind = CellKind::Text;
  double value = 0.0;
  bool grouped = false;  // with thousands separators that the other decimal sign would be
};

/// Reads a whole cell as people and programs write numbers: blanks around it, a sign, a currency sign on either side,
/// digits with or without thousands separators in groups of three (the sign of ',' and '.' that is not `decimal`, an
/// apostrophe, a blank), a fraction behind `decimal`, an exponent, or K, M, B or T for thousands and up. "", null, nil,
/// none, N/A, NA, nan, "-" and the like are missing. Anything else, and a number beyond a double, is a text.
NumberCell readNumberCell(std::string_view cell, char decimal);

/// What a cell tells of the decimal sign of its file.
enum class DecimalEvidence { None, Point, Comma, Either };

/// "12.5", "0.125", "1,234.5" and "1,234,567" are evidence for the point, the same the other way round for the comma.
/// "1.234" may be either.
DecimalEvidence decimalEvidence(std::string_view cell);

/// Without the blanks at both ends, those that break no line included.
std::string_view trimmed(std::string_view text);

}  // namespace orvex::inline ORVEX_COUNTS::prices
