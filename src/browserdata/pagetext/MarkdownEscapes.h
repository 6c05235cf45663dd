#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tabwright::browserdata {

/// Counts of what could be taken for the two ends of a mark within one block.
struct MarkCounts {
  std::size_t backticks = 0; ///< runs of them, in text and around code
  std::size_t asterisks = 0;
  std::size_t underscores = 0;
  std::size_t tildes = 0;
};

/// The surroundings of a text within its block. Characters are code points; 0 stands for the end of a line.
struct EscapeContext {
  MarkCounts counts;
  char32_t before = 0;
  char32_t after = 0;
  bool isBeforeLink = false; ///< a link's bracket follows at once
  bool isInBrackets = false; ///< of a link
  bool isInCell = false;     ///< of a table
  bool beginsLine = false;   ///< nothing stands before it on its line
  bool endsLine = false;     ///< nothing stands behind it on its line
  bool isFirstLine = true;   ///< of its block
};

/// The text so that Markdown reads it as text: with a backslash before each character that would mark up where it
/// stands, and before no other.
[[nodiscard]] std::string escapedText(std::string_view text, const EscapeContext& context);

/// A link's address between its parentheses: what would end it, or be read as markup before it, is percent-encoded.
[[nodiscard]] std::string escapedAddress(std::string_view address, bool isInCell);

/// A title with its quotes and a blank before them; empty for an empty one.
[[nodiscard]] std::string quotedTitle(std::string_view title, bool isInCell);

/// Code between as many backticks as it needs.
[[nodiscard]] std::string codeSpan(std::string_view code, bool isInCell);

/// True for a word that holds an address which GitHub links by itself.
[[nodiscard]] bool mayBeLinked(std::string_view word);

/// The greatest number of backticks that stand side by side.
[[nodiscard]] std::size_t longestRunOfBackticks(std::string_view text);

/// Characters of punctuation, as all versions of the rules of flanking count them.
[[nodiscard]] bool isSurelyPunctuation(char32_t character);
/// Neither white space nor anything that some version counts as punctuation.
[[nodiscard]] bool isSurelyOfAWord(char32_t character);
/// White space, or the end of a line.
[[nodiscard]] bool isSpaceOrEnd(char32_t character);

/// The first and the last code point of a text; 0 of the empty one.
[[nodiscard]] char32_t firstCharacter(std::string_view text);
[[nodiscard]] char32_t lastCharacter(std::string_view text);

} // namespace tabwright::browserdata
