#pragma once

#include "applescript/SourceRange.h"
#include "applescript/lexer/Keyword.h"

#include <cstdint>
#include <string_view>

namespace tabwright::applescript {

/// Signs of the language that are no words. Several spellings may be one sign: `*` and `×`, `/=` and `≠`, `<=` and `≤`.
enum class Symbol : std::uint8_t {
  none,
  openParenthesis,
  closeParenthesis,
  openBrace,
  closeBrace,
  comma,
  colon,
  ampersand,
  plus,
  minus,
  times,
  divide,
  power,
  equal,
  notEqual,
  less,
  lessOrEqual,
  greater,
  greaterOrEqual,
};

/// One piece of a script's text. Cheap to copy; its `text` belongs to the source or to the TokenList's storage.
struct Token {
  enum class Kind : std::uint8_t {
    word,       ///< a name, a keyword, or a word of a dictionary: which of them, the parser decides
    quotedName, ///< `|any text|`: always a name
    number,     ///< `5`, `0.5`, `1.0E+3`
    ordinal,    ///< `1st`, `22nd`
    text,       ///< `"…"`
    raw,        ///< `«class utf8»`
    possessive, ///< `'s`
    symbol,
    lineEnd,
    scriptEnd, ///< the last token
    unknown,   ///< a character that begins nothing
  };
  /// `keyword` and `symbol` are only set for their kinds: ask by `is`.
  Kind kind = Kind::unknown;
  Keyword keyword = Keyword::none; ///< of a word
  Symbol symbol = Symbol::none;    ///< of a symbol
  /// A blank, a comment or a continued line end stands in front of it: tells `item -1` from `length - 1`.
  bool spaceBefore = false;
  /// In bytes of the source, with quotes and bars.
  SourceRange range;
  /// Word that isn't reserved, and quoted name: as first spelled in the script, without bars. Text: its value, escapes
  /// resolved. Others: the source.
  std::string_view text;

  /// Only a word is a keyword: `|error|` and `"error"` are none.
  [[nodiscard]] bool is(Keyword other) const { return keyword == other && kind == Kind::word; }
  [[nodiscard]] bool is(Symbol other) const { return symbol == other && kind == Kind::symbol; }
  /// May name something of the script's own: a quoted name, or a word that isn't reserved. A dictionary may still claim
  /// it.
  [[nodiscard]] bool isName() const { return kind == Kind::quotedName || (kind == Kind::word && !isReserved(keyword)); }
  /// The end of the logical line.
  [[nodiscard]] bool endsLine() const { return kind == Kind::lineEnd || kind == Kind::scriptEnd; }
};

} // namespace tabwright::applescript
