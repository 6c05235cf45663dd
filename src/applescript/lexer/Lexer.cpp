#include "applescript/lexer/Lexer.h"

#include "applescript/lexer/SyntaxErrors.h"
#include "applescript/terminology/FoldedWords.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>

// The source is walked once, byte by byte, decoding only what lies outside of ASCII. Every word is looked up in a table
// of the names seen so far, so that a name carries the spelling it had first. No mistake ends the walk: it is noted,
// and its token stands in the list all the same, so that the parser finds the mistakes of other lines too. A
// dictionary's words aren't told from names here: which of them hold depends on the `tell` around.
namespace tabwright::applescript {

namespace {

bool isDigit(char32_t character) {
  return character >= '0' && character <= '9';
}
bool startsName(char32_t character) {
  if (character < 0x80)
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == '_';
  // Letters by Unicode's general category L. A combining mark is none, so a decomposed letter ends the name.
  return u_isalpha(static_cast<UChar32>(character));
}
bool continuesName(char32_t character) {
  return startsName(character) || isDigit(character) ||
         (character >= 0x80 && u_isdigit(static_cast<UChar32>(character)));
}
bool isApostrophe(char32_t character) {
  return character == '\'' || character == U'’';
}

struct Sign {
  std::string_view text;
  Symbol symbol;
};
/// Those that others begin with stand behind them.
constexpr auto signs = std::to_array<Sign>({
    {"(", Symbol::openParenthesis},
    {")", Symbol::closeParenthesis},
    {"{", Symbol::openBrace},
    {"}", Symbol::closeBrace},
    {",", Symbol::comma},
    {":", Symbol::colon},
    {"&", Symbol::ampersand},
    {"+", Symbol::plus},
    {"-", Symbol::minus},
    {"*", Symbol::times},
    {"×", Symbol::times},
    {"/=", Symbol::notEqual},
    {"/", Symbol::divide},
    {"÷", Symbol::divide},
    {"^", Symbol::power},
    {"=", Symbol::equal},
    {"≠", Symbol::notEqual},
    {"<=", Symbol::lessOrEqual},
    {"<", Symbol::less},
    {"≤", Symbol::lessOrEqual},
    {">=", Symbol::greaterOrEqual},
    {">", Symbol::greater},
    {"≥", Symbol::greaterOrEqual},
});

class Lexer {
public:
  explicit Lexer(std::string_view source) : source_(source) {}

  TokenList run() {
    list_.tokens.reserve(source_.size() / 5 + 16);
    // A byte order mark.
    if (source_.starts_with("\xEF\xBB\xBF"))
      position_ = 3;
    while (skipBlanks())
      lexToken();
    start_ = position_;
    add(Token::Kind::scriptEnd);
    return std::move(list_);
  }

private:
  /// Above all code points, so that no test for a kind of character holds for it.
  static constexpr char32_t none = 0xFFFFFFFF;

  /// The byte at an offset, 0 behind the end: looking ahead needs no check of its own.
  [[nodiscard]] char at(std::size_t offset) const { return offset < source_.size() ? source_[offset] : '\0'; }
  [[nodiscard]] bool startsWith(std::string_view text) const { return source_.substr(position_).starts_with(text); }

  /// The character at an offset and its length in bytes; `none` at the end and for bytes that are no UTF-8.
  [[nodiscard]] std::pair<char32_t, std::size_t> decode(std::size_t offset) const {
    if (offset >= source_.size())
      return {none, 0};
    if (static_cast<unsigned char>(source_[offset]) < 0x80)
      return {static_cast<unsigned char>(source_[offset]), 1};
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(source_.data());
    auto next = static_cast<std::int64_t>(offset);
    UChar32 character = 0;
    U8_NEXT(bytes, next, static_cast<std::int64_t>(source_.size()), character);
    return {character < 0 ? none : static_cast<char32_t>(character), static_cast<std::size_t>(next) - offset};
  }

  Token& add(Token::Kind kind) {
    Token token;
    token.kind = kind;
    token.spaceBefore = spaceBefore_;
    token.range = {start_, position_ - start_};
    token.text = source_.substr(start_, position_ - start_);
    spaceBefore_ = false;
    list_.tokens.push_back(token);
    // The next token is the first of its line: a mention of an application is noted with it.
    if (kind == Token::Kind::lineEnd)
      firstOfLine_ = list_.tokens.size();
    return list_.tokens.back();
  }

  void fail(int number, std::string sentence, SourceRange range) {
    list_.errors.push_back(syntaxError(number, std::move(sentence), range));
  }

  // ------------------------------------------------------------------ blanks

  /// Skips blanks, comments and continued line ends. False at the end of the source.
  bool skipBlanks() {
    while (position_ < source_.size()) {
      const char character = source_[position_];
      if (character == ' ' || character == '\t' || character == '\f' || character == '\v') {
        ++position_;
      } else if (startsWith("\xC2\xA0")) { // no-break space
        position_ += 2;
      } else if (character == '#' || startsWith("--") || startsWith("(*")) {
        const std::size_t start = position_;
        if (character == '(')
          skipComment();
        else
          skipToLineEnd();
        list_.comments.push_back({start, position_ - start});
      } else if (startsWith("\xC2\xAC")) { // ¬
        if (!skipContinuation())
          return true;
      } else {
        return true;
      }
      spaceBefore_ = true;
    }
    return false;
  }

  void skipToLineEnd() {
    while (position_ < source_.size() && source_[position_] != '\n' && source_[position_] != '\r')
      ++position_;
  }

  /// Comments may hold comments. Their depth is counted, not recursed into: it is the script's to choose.
  void skipComment() {
    const std::size_t start = position_;
    std::size_t depth = 0;
    while (position_ < source_.size()) {
      if (startsWith("(*")) {
        ++depth;
        position_ += 2;
      } else if (startsWith("*)")) {
        position_ += 2;
        if (--depth == 0)
          return;
      } else {
        ++position_;
      }
    }
    fail(errorNumber::syntaxError, "Expected “*)” but found end of script.", {start, 2});
  }

  /// False when something else than a line end follows the sign, which then is an unknown token. The end of the script
  /// counts as a line end.
  bool skipContinuation() {
    std::size_t next = position_ + 2;
    while (at(next) == ' ' || at(next) == '\t')
      ++next;
    if (next < source_.size() && at(next) != '\n' && at(next) != '\r')
      return false;
    position_ = next + (at(next) == '\r' && at(next + 1) == '\n' ? 2 : next < source_.size() ? 1 : 0);
    return true;
  }

  // ------------------------------------------------------------------ tokens

  void lexToken() {
    start_ = position_;
    const auto [character, length] = decode(position_);
    if (character == '\n' || character == '\r') {
      position_ += character == '\r' && at(position_ + 1) == '\n' ? 2 : 1;
      add(Token::Kind::lineEnd);
    } else if (isDigit(character) || (character == '.' && isDigit(static_cast<unsigned char>(at(position_ + 1))))) {
      lexNumber();
    } else if (startsName(character)) {
      lexWord();
    } else if (character == '"') {
      lexText();
    } else if (character == '|') {
      lexQuotedName();
    } else if (character == U'«') {
      lexRaw();
    } else if (isApostrophe(character)) {
      lexPossessive(length);
    } else if (!lexSymbol()) {
      position_ += length == 0 ? 1 : length;
      add(Token::Kind::unknown);
    }
  }

  void lexNumber() {
    skipDigits();
    if (lexOrdinalEnding())
      return;
    if (at(position_) == '.' && !startsName(decode(position_ + 1).first)) {
      ++position_;
      skipDigits();
    }
    // An `e` without digits behind it begins a word.
    if (at(position_) == 'e' || at(position_) == 'E') {
      std::size_t exponent = position_ + 1;
      if (at(exponent) == '+' || at(exponent) == '-')
        ++exponent;
      if (isDigit(static_cast<unsigned char>(at(exponent)))) {
        position_ = exponent;
        skipDigits();
      }
    }
    add(Token::Kind::number);
  }

  void skipDigits() {
    while (isDigit(static_cast<unsigned char>(at(position_))))
      ++position_;
  }

  /// `1st`, `2nd`, `3rd`, `4th`; the ending needn't suit the number. Before the fraction is looked for: `1.5th` is
  /// none.
  bool lexOrdinalEnding() {
    const std::string_view ending = source_.substr(position_, 2);
    for (const std::string_view known : {"st", "nd", "rd", "th"}) {
      if (equalFolded(ending, known) && !continuesName(decode(position_ + 2).first)) {
        position_ += 2;
        add(Token::Kind::ordinal);
        return true;
      }
    }
    return false;
  }

  void lexWord() {
    bool isASCII = true;
    while (true) {
      const auto [character, length] = decode(position_);
      if (character == none || !continuesName(character))
        break;
      isASCII = isASCII && length == 1;
      position_ += length;
    }
    if (Keyword contracted = lexContraction(); contracted != Keyword::none) {
      add(Token::Kind::word).keyword = contracted;
      return;
    }
    Token& token = add(Token::Kind::word);
    if (isASCII)
      token.keyword = findKeyword(token.text);
    if (!isReserved(token.keyword))
      token.text = firstSpelling(token.text);
  }

  /// `isn't`, `doesn't`: the word in front of the apostrophe has been read. The only words with an apostrophe, so they
  /// are put together here instead of letting names have one.
  Keyword lexContraction() {
    const std::string_view word = source_.substr(start_, position_ - start_);
    const Keyword keyword = equalFolded(word, "isn")     ? Keyword::isnt
                            : equalFolded(word, "doesn") ? Keyword::doesnt
                                                         : Keyword::none;
    const auto [apostrophe, length] = decode(position_);
    if (keyword == Keyword::none || !isApostrophe(apostrophe) || foldedLetter(at(position_ + length)) != 't')
      return Keyword::none;
    position_ += length + 1;
    return keyword;
  }

  void lexPossessive(std::size_t length) {
    const bool isPossessive =
        foldedLetter(at(position_ + length)) == 's' && !continuesName(decode(position_ + length + 1).first);
    position_ += isPossessive ? length + 1 : length;
    add(isPossessive ? Token::Kind::possessive : Token::Kind::unknown);
  }

  /// Reads up to the closing sign, with escapes by backslash; over line ends too. `escapes` and `meanings` go pairwise.
  /// Nothing when there were no escapes: the source then holds the value as it is, and the token needs no copy.
  std::optional<std::string> lexEscaped(char closing, std::string_view escapes, std::string_view meanings) {
    std::string value;
    bool hasEscapes = false;
    std::size_t plain = ++position_;
    while (position_ < source_.size() && source_[position_] != closing) {
      if (source_[position_] != '\\') {
        ++position_;
        continue;
      }
      hasEscapes = true;
      value.append(source_, plain, position_ - plain);
      const auto which = position_ + 1 < source_.size() ? escapes.find(source_[position_ + 1]) : std::string_view::npos;
      if (which != std::string_view::npos) {
        value += meanings[which];
        position_ += 2;
      } else {
        fail(errorNumber::syntaxError, std::string("Expected “") + closing + "” but found unknown token.",
             {position_, 1 + decode(position_ + 1).second});
        ++position_;
      }
      plain = position_;
    }
    const std::size_t end = position_;
    if (position_ < source_.size()) {
      ++position_;
    } else {
      fail(errorNumber::syntaxError, std::string("Expected “") + closing + "” but found end of script.", {start_, 1});
    }
    if (!hasEscapes)
      return std::nullopt;
    value.append(source_, plain, end - plain);
    return value;
  }

  void lexText() {
    auto value = lexEscaped('"', "\"\\nrt", "\"\\\n\r\t");
    setQuoted(add(Token::Kind::text), std::move(value));
  }

  void lexQuotedName() {
    auto value = lexEscaped('|', "|\\nrt", "|\\\n\r\t");
    Token& token = add(Token::Kind::quotedName);
    setQuoted(token, std::move(value));
    token.text = firstSpelling(token.text);
  }

  void setQuoted(Token& token, std::optional<std::string> value) {
    if (value) {
      token.text = list_.storage.emplace_back(std::move(*value));
      return;
    }
    // A text that lacks its closing sign ends with the script.
    const bool isClosed = token.text.size() > 1 && token.text.back() == token.text.front();
    token.text = token.text.substr(1, token.text.size() - (isClosed ? 2 : 1));
    rememberMention();
  }

  /// `«…»` ends with its line at the latest, so that a missing sign costs no more than that.
  void lexRaw() {
    while (position_ < source_.size() && at(position_) != '\n' && at(position_) != '\r' && !startsWith("»"))
      ++position_;
    if (startsWith("»"))
      position_ += 2;
    else
      fail(errorNumber::syntaxError, "Expected “»” but found end of line.", {start_, 2});
    add(Token::Kind::raw);
  }

  bool lexSymbol() {
    const auto row = std::ranges::find_if(signs, [this](const Sign& sign) { return startsWith(sign.text); });
    if (row == signs.end())
      return false;
    position_ += row->text.size();
    add(Token::Kind::symbol).symbol = row->symbol;
    return true;
  }

  // ------------------------------------------------------------------- names

  /// The spelling in which the script first shows a name, so that the printer writes it the same everywhere. Names of
  /// ASCII, nearly all, are looked up without a folded copy; others by Unicode's full case folding.
  std::string_view firstSpelling(std::string_view name) {
    const bool isASCII = std::ranges::all_of(name, [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
    if (isASCII)
      return *spellings_.insert(name).first;
    std::string folded;
    icu::UnicodeString::fromUTF8({name.data(), static_cast<std::int32_t>(name.size())}).foldCase().toUTF8String(folded);
    return foreignSpellings_.try_emplace(std::move(folded), name).first->second;
  }

  /// The text just read may name an application: `application` or `application id` stands in front of it.
  void rememberMention() {
    const std::size_t index = list_.tokens.size() - 1;
    if (index == 0 || list_.tokens[index].kind != Token::Kind::text)
      return;
    const Token& before = list_.tokens[index - 1];
    const auto isApplication = [](const Token& token) {
      return token.is(Keyword::application) || token.is(Keyword::app);
    };
    if (isApplication(before))
      list_.mentions.push_back({firstOfLine_, index, false});
    else if (before.is(Keyword::id) && index >= 2 && isApplication(list_.tokens[index - 2]))
      list_.mentions.push_back({firstOfLine_, index, true});
  }

  std::string_view source_;
  std::size_t position_ = 0;
  std::size_t start_ = 0; ///< of the token being read
  std::size_t firstOfLine_ = 0;
  bool spaceBefore_ = false;
  TokenList list_;
  FoldedNames spellings_;
  std::unordered_map<std::string, std::string_view> foreignSpellings_; ///< names with letters outside of ASCII
};

} // namespace

TokenList tokenize(std::string_view source) {
  return Lexer(source).run();
}

} // namespace tabwright::applescript
