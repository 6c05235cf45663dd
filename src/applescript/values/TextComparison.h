#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::applescript {

/// The rules by which texts are compared: set by `considering` and `ignoring` around the comparison. By themselves case
/// doesn't count, everything else does, and digits are characters like others. Characters that aren't considered are
/// left out of both texts.
struct TextAttributes {
  bool considersCase = false;
  /// Non-spacing marks, also those composed with their letter.
  bool considersDiacriticals = true;
  /// Dashes of any kind, and the soft hyphen; they don't count as punctuation.
  bool considersHyphens = true;
  bool considersPunctuation = true;
  /// All that Unicode calls white space.
  bool considersWhiteSpace = true;
  bool considersNumericStrings = false; ///< runs of digits compare by their number

  bool operator==(const TextAttributes&) const = default;
};

/// All texts are UTF-8; ill-formed bytes count as U+FFFD. Canonically equivalent texts are equal. None of these fails.
[[nodiscard]] bool textEquals(std::string_view left, std::string_view right, const TextAttributes& attributes);
/// Negative, 0 or positive, by the Unicode collation order of the root locale, whatever the language of the system. 0
/// only for texts that `textEquals` says are equal.
[[nodiscard]] int compareText(std::string_view left, std::string_view right, const TextAttributes& attributes);

/// By code points, not by the characters that people see. Every text contains, begins and ends with the empty one.
[[nodiscard]] bool textContains(std::string_view text, std::string_view part, const TextAttributes& attributes);
[[nodiscard]] bool textBeginsWith(std::string_view text, std::string_view part, const TextAttributes& attributes);
[[nodiscard]] bool textEndsWith(std::string_view text, std::string_view part, const TextAttributes& attributes);

/// A place in a text, in bytes.
struct TextMatch {
  std::size_t offset = 0;
  std::size_t length = 0;
};

/// Finds parts in one text, one after the other. Of the attributes only case counts here, so that a match has a length
/// in the text; canonically equivalent texts match. What the search needs to know of the text is found out once, so
/// that to split a text costs a pass over it however many parts it has. The text must outlive the search.
///
///     TextSearch search(text, {});
///     for (auto match = search.find(", ", 0); match; match = search.find(", ", match->offset + match->length))
///       …
class TextSearch {
public:
  TextSearch(std::string_view text, const TextAttributes& attributes);
  /// The first place at or after `from`, in bytes, where `part` stands; nothing when it doesn't, or is empty. A place
  /// never begins or ends inside of a stretch that composes, such as a letter and its accent.
  [[nodiscard]] std::optional<TextMatch> find(std::string_view part, std::size_t from);

private:
  struct Folded {
    std::u32string codePoints;
    std::vector<std::size_t> offsets; ///< of each code point, the same for those composed of one stretch; and the end
  };
  static Folded fold(std::string_view text, const TextAttributes& attributes);

  std::string_view text_;
  TextAttributes attributes_;
  bool isASCII_;
  std::optional<Folded> folded_; ///< made when it is first needed
};

} // namespace tabwright::applescript
