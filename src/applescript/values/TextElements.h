#pragma once

#include "applescript/values/TextComparison.h"
#include "applescript/values/Value.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace tabwright::applescript {

/// A stretch of a text, in bytes. Never begins or ends inside of a character.
struct TextRange {
  std::size_t offset = 0;
  std::size_t length = 0;
};

/// Paragraphs end at LF, CR, CR LF, U+2028 or U+2029; the end itself belongs to none. A text that ends with one has an
/// empty last paragraph, and an empty text has none.
[[nodiscard]] std::vector<TextRange> paragraphsOf(const std::string& text);
/// The user-perceived characters: extended grapheme clusters of Unicode Standard Annex #29.
[[nodiscard]] std::vector<TextRange> charactersOf(const std::string& text);
/// Words by the rules of Unicode Standard Annex #29; blanks and punctuation between them belong to none.
[[nodiscard]] std::vector<TextRange> wordsOf(const std::string& text);
/// The stretches between delimiters, which may be empty; one more than there are delimiters in the text. An empty text
/// has none. Empty delimiters are passed over; with none left, each character is an item. Of several delimiters at one
/// place the first given counts; of the attributes only case does.
[[nodiscard]] std::vector<TextRange> textItemsOf(const std::string& text, const std::vector<std::string>& delimiters,
                                                 const TextAttributes& attributes);

/// The pieces of a text by position. The last text asked for is remembered for each kind, so that a loop over
/// `paragraph i of t` that takes each line apart again costs one pass over `t`. Texts are known again as copies of one
/// (Text::isSameObject), without a look at their bytes. Serves one thread.
class PieceIndex {
public:
  enum class Kind { characters, words, paragraphs, textItems };
  /// Valid until the next call for this kind. Text items are told apart by delimiters and attributes, too, which other
  /// kinds go without.
  [[nodiscard]] const std::vector<TextRange>& pieces(const Text& text, Kind kind);
  [[nodiscard]] const std::vector<TextRange>& pieces(const Text& text, Kind kind, std::vector<std::string> delimiters,
                                                     const TextAttributes& attributes);

private:
  struct Entry {
    bool isKnown = false;
    Text text;
    std::vector<std::string> delimiters;
    TextAttributes attributes;
    std::vector<TextRange> ranges;
  };
  std::array<Entry, 4> entries_;
};

/// The characters of a text by position, without a table of them for texts of single bytes.
///
/// Finding them takes a pass over the text, so the last text asked for is remembered: a loop over `character i of t`
/// takes one pass in all. Serves one thread.
class CharacterIndex {
public:
  /// In user-perceived characters, as charactersOf gives them.
  [[nodiscard]] std::size_t count(const Text& text);
  /// `position` is 0-based and below the count.
  [[nodiscard]] TextRange character(const Text& text, std::size_t position);
  /// The number of characters that begin before a byte: one that the byte lies inside of counts.
  [[nodiscard]] std::size_t charactersBefore(const Text& text, std::size_t offset);

private:
  void prepare(const Text& text);

  Text text_;
  bool isPrepared_ = false;
  bool isSingleBytes_ = false;          // each byte is a character: no boundaries are kept
  std::vector<std::size_t> boundaries_; // starts of the characters, and the end of the text
};

} // namespace tabwright::applescript
