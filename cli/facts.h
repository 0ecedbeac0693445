#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvex/catalogue/description.h"

/// The facts of a description in the words of every page that shows them.
namespace orvex::cli {

/// "Name(data: Database, Periods: Integer = 14) -> RecordSet".
std::string signatureOf(const catalogue::Method& method);

/// What an argument means, what it is when left out, and whether the method changes it.
std::string meaningOf(const catalogue::Argument& argument);

/// The name of a result column; of one that is named after the alias, how.
std::string titleOf(const catalogue::Column& column);

/// "Periods + 1 to N".
std::string rowsOf(const catalogue::Column& column);

/// The computed rows of a call with the usual arguments: "from row 21 on".
std::string usualRowsOf(const catalogue::Method& method, const catalogue::Column& column);

/// "0 to 100", "0 and more"; empty where there are no bounds.
std::string boundsOf(const catalogue::Column& column);

/// Where a chart shows a column: "bars by itself".
std::string drawnOf(const catalogue::Column& column);

/// What a method's guide says, under titles: formula, reading, origin, difference, when it fails, where else there is
/// such an indicator.
std::vector<std::pair<std::string_view, std::string>> guideOf(const catalogue::Class& owner,
                                                              const catalogue::Method& method);

/// "RSI", "PPO or APO"; empty where the field has no short name.
std::string abbreviationsOf(const catalogue::Method& method);

/// What a live series computes of it when a record is added or revised; empty for a method that it does not keep.
std::string_view liveOf(const catalogue::Method& method);

/// What the functions in such rows mean.
inline constexpr std::string_view RowFunctions =
    R"(average(code, P) is the first computed row of the moving average of that code: P + 1 for 1, 2 and 6, 2 * P + 1 for
3, 5 and 7, 3 * P + 1 and at least 10 for 4. A third number is the row from which the averaged column is computed:
average(code, P, F) is not below F + P - 1, for 2 not below F + P, for 4 not below F + 9. lookback(kind, P) is how many
records an average of the class Standard needs before its first: P - 1 for 0, 1, 2 and 5, 2 * P - 2 for 3, 3 * P - 3 for
4, P for 6, 32 for 7, 6 * P - 6 for 8, always 0 for 1 record. candle(pattern) is how many a candlestick pattern needs,
root(a) the whole part of the square root. choose(a < b, x, y) is x where a < b and y elsewhere; \ divides without a rest.
)";

/// What a fault says; some say what went wrong inside.
std::string descriptionOf(const Fault& fault);

/// The same in rows of a table: name, type, usual value, meaning; name, meaning, unit, bounds, where it is drawn,
/// computed rows, the same in the usual case; number, source, description.
using TableRows = std::vector<std::vector<std::string>>;
TableRows argumentRows(const catalogue::Method& method);
TableRows columnRows(const catalogue::Method& method);
TableRows faultRows(const catalogue::Method& method);

/// Under which names the methods of a class are known elsewhere: its own name, the house's, TA-Lib's, that of Tulip
/// Indicators, and the first computed row of the first column. None where nothing is told.
TableRows nameRows(const catalogue::Class& owner);

/// "method", "property, read", ...
std::string_view kindOf(const catalogue::Method& method);

/// What a method is for; of a part of a property, which part it is.
std::string helpOf(const catalogue::Method& method);

}  // namespace orvex::cli
