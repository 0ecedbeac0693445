#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What a shell offers to end the word that is being written: methods, their arguments and the values of those, from
/// the catalogue and from the price file that the line names.
namespace orvex::cli {

/// Stands among the words that are offered where the names of files fit as well.
inline constexpr std::string_view AnyFile = ":file";

/// A command, as far as its options go.
struct CommandOptions {
  std::string name;
  /// Each with what may stand behind it: words, ":file", or nothing. A flag has none.
  struct Option {
    std::string name;
    bool isFlag;
    std::vector<std::string> values;
  };
  std::vector<Option> options;
};

/// The words that may stand in place of the last of `words`, which is what there is of it; before it stand those behind
/// the program's name. Names are offered whatever the case of the letters written.
std::vector<std::string> complete(const std::vector<CommandOptions>& commands, const std::vector<std::string>& words);

}  // namespace orvex::cli
