#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/names.h"
#include "cli/price_file.h"
#include "orvex/catalogue/description.h"

/// From the words of a command line to the values of a call.
namespace orvex::cli {

/// NAME=VALUE.
struct NamedText {
  std::string name;
  std::string value;
};

/// The words behind CLASS.METHOD.
struct CallWords {
  std::optional<std::string> file;
  std::vector<NamedText> arguments;
};

/// What stands between two calls of the words, where the command line has "--": the reader of options keeps that to
/// itself.
inline constexpr std::string_view NextCall = "\x1F";

/// The words of each call.
std::vector<std::vector<std::string>> splitCalls(const std::vector<std::string>& words);

/// Tells the file from the arguments. UsageError for a second file.
CallWords readWords(const std::vector<std::string>& words);

/// The method that a target names, to be run by itself. UsageError for a class, a property and an object's method.
const catalogue::Method& findRunnable(const Target& target);

/// A number or a text as the value of an argument, or the name of one of its codes. Failure 13 for what is none and 6
/// for a number that does not fit.
catalogue::Value bindText(const catalogue::Argument& argument, const std::string& text);

/// Tells whether a method computes from a price file.
bool needsFile(const catalogue::Method& method);

/// UsageError for an argument that the method does not have, that is given twice, or that only a file can supply.
void checkNames(const catalogue::Class& owner, const catalogue::Method& method, const std::vector<NamedText>& given);

/// A call that is bound: the values of the method's arguments, each of its type or left out, and the usual values among
/// them, NAME=VALUE after NAME=VALUE.
struct BoundCall {
  std::vector<catalogue::Value> values;
  std::string usual;
};

/// Binds the words of a call. `file` may be missing only where none is needed.
///   Database, RecordSet  from the file
///   Field                the column that the text names; if it is left out, the column that bears the argument's name
///   codes                a number, or the name of a choice
///   numbers, texts       converted as automation converts them, but no fraction becomes a whole number
/// What is left out and not optional has its usual value. UsageError for what is missing still; Failure 1110 for an
/// unknown column, 13 for a column or text that is no number, 6 for a number that does not fit.
BoundCall bindArguments(const catalogue::Class& owner, const catalogue::Method& method,
                        const std::vector<NamedText>& given, const PriceFile* file);

/// A call as the caller would write it, with the usual value of each argument that must be given, or what stands for
/// it.
std::string exampleCall(const catalogue::Class& owner, const catalogue::Method& method);

}  // namespace orvex::cli
