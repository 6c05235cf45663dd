#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::client {

/// A word that `tabwright run` takes for itself. It may stand before the action's name or among its parameters.
struct RunWord {
  std::string_view word;
  std::string_view value; ///< the name of the value that follows it, such as FOLDER; empty for a word that stands alone
  std::string_view meaning;
};

/// All of them: both programs read them, and help, completion and manual tell of them, by this table.
namespace runWords {
inline constexpr RunWord json{"--json", "", "Print the result, or the error, as JSON"};
inline constexpr RunWord each{"--each", "", "Run it for each item of a list given as a parameter, a result a line"};
inline constexpr RunWord noHost{"--no-host", "", "Run it in a process of its own, without the background host"};
inline constexpr RunWord saveFiles{"--save-files", "FOLDER",
                                   "Write the files of a result there, such as a selection’s rich text, and print "
                                   "their paths"};
inline constexpr RunWord element{"--element", "ELEMENT",
                                 "The element of the page to work on: a reference from GetPageOutline, a role and a "
                                 "“name”, or - for an element on standard input"};
inline constexpr std::array all{json, each, noHost, saveFiles, element};
} // namespace runWords

/// The place of the action's name among the words behind "run", that is, behind the command's own that precede it. The
/// number of words when there is no name.
[[nodiscard]] inline std::size_t placeOfAction(const std::vector<std::string>& words) {
  std::size_t place = 0;
  while (place < words.size()) {
    const auto* const own = std::ranges::find(runWords::all, std::string_view(words[place]), &RunWord::word);
    if (own == runWords::all.end())
      break;
    place += own->value.empty() ? 1 : 2;
  }
  return std::min(place, words.size());
}

} // namespace tabwright::client
