#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace tabwright::applescript {

/// What counts when texts are compared: set by `considering` and `ignoring` around the comparison. As it stands: case
/// doesn't, everything else does, and digits are characters like others.
struct TextAttributes {
  bool considersCase = false;
  bool considersDiacriticals = true;
  bool considersHyphens = true;
  bool considersPunctuation = true;
  bool considersWhiteSpace = true;
  bool considersNumericStrings = false; ///< runs of digits compare by their number
};

/// All texts are UTF-8; ill-formed bytes count as U+FFFD. Canonically equivalent texts are equal.
[[nodiscard]] bool textEquals(std::string_view left, std::string_view right, const TextAttributes& attributes);
/// Negative, 0 or positive, by the Unicode collation order of the root locale.
[[nodiscard]] int compareText(std::string_view left, std::string_view right, const TextAttributes& attributes);

[[nodiscard]] bool textContains(std::string_view text, std::string_view part, const TextAttributes& attributes);
[[nodiscard]] bool textBeginsWith(std::string_view text, std::string_view part, const TextAttributes& attributes);
[[nodiscard]] bool textEndsWith(std::string_view text, std::string_view part, const TextAttributes& attributes);

/// A place in a text, in bytes.
struct TextMatch {
  std::size_t offset = 0;
  std::size_t length = 0;
};
/// The first place at or after `from` where `part` stands; nothing when it doesn't, or is empty. Of the attributes only
/// case counts here, so that the match has a length in the text.
[[nodiscard]] std::optional<TextMatch> findText(std::string_view text, std::string_view part, std::size_t from,
                                                const TextAttributes& attributes);

} // namespace tabwright::applescript
