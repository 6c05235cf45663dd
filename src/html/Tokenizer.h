#pragma once

#include "html/Arena.h"
#include "html/CharacterReferences.h"
#include "html/Node.h"
#include "html/Tags.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabwright::html {

/// A piece of a page. Its texts hold until the next one is read; those of attributes as long as the arena.
struct Token {
  /// `characterData` is text of a "CDATA" section, whose references don't count.
  enum class Kind { text, characterData, startTag, endTag, doctype, end };
  Kind kind = Kind::end;
  std::string_view
      text;         ///< of a text, in which references are yet to be replaced (but in `characterData`); of a doctype
  std::string name; ///< of a tag, in lower case
  TagTraits traits; ///< of a tag
  /// The tag ends in "/>", which counts for foreign elements alone.
  bool isSelfClosing = false;
  std::vector<Attribute> attributes; ///< of a start tag: the first of each name, `Document::maximumAttributes` at most
};

/// Reads a page as the HTML standard's section 13.2.5, "Tokenization", says. Comments are passed over, and text is told
/// apart from tags only; the tree's builder takes the content of elements that hold nothing else by `takeContent`.
class Tokenizer {
public:
  /// Both must outlive it. `page` is UTF-8.
  Tokenizer(std::string_view page, Arena& texts) : page_(page), texts_(texts) {}

  /// The next piece, of kind `end` behind the last one. `isForeign`: the text belongs to a drawing or formula, where
  /// "<![CDATA[" begins text. Throws `ParseFault` for a page with more tags and attributes than `Document` takes.
  const Token& next(bool isForeign);

  /// The text before the end tag of the element whose start tag was read last, and goes behind that. Nothing ends
  /// `plaintext`.
  std::string_view takeContent();
  /// Passes over it, and over what a script in it writes inside a comment.
  void skipContent();

private:
  /// NUL behind the end, which begins and ends nothing.
  [[nodiscard]] char at(std::size_t place) const { return place < page_.size() ? page_[place] : '\0'; }
  bool readMarkup(bool isForeign);
  [[nodiscard]] bool isMarkup(std::size_t place) const;
  void skipComment();
  bool readTag(std::size_t nameBegin);
  void readAttributes(std::size_t& place);
  [[nodiscard]] std::string_view readValue(std::size_t& place);
  [[nodiscard]] std::string_view lowercasedName(std::string_view name);

  std::string_view page_;
  /// The begin of the next piece, in bytes.
  std::size_t place_ = 0;
  Arena& texts_;
  Token token_;
  /// For names and values on their way to the token or the arena.
  std::string room_;
  bool endsInValue_ = false; // the tag's last attribute has a value without quotes, so "/" is part of it
  /// So far, against `Document::maximumMarkup`.
  std::size_t tagsAndAttributes_ = 0;
};

} // namespace tabwright::html
