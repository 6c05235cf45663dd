// A text is escaped word by word, as addresses in it are linked by GitHub's rules and would take a backslash for a part
// of themselves: a word that holds an address and needs one is kept from being linked. Behind that the line's beginning
// is looked at, where blocks begin.
#include "browserdata/pagetext/MarkdownEscapes.h"

#include <fmt/core.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cctype>

namespace tabwright::browserdata {

namespace {

constexpr std::size_t longestRun = 64; // of equal characters that anybody would write

bool isAsciiPunctuation(char32_t c) {
  return (c >= '!' && c <= '/') || (c >= ':' && c <= '@') || (c >= '[' && c <= '`') || (c >= '{' && c <= '~');
}

bool isAsciiLetterOrDigit(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 && static_cast<unsigned char>(c) < 0x80;
}

// “&amp;”, “&#8230;”: as long as references get.
bool beginsReference(std::string_view text) {
  std::size_t at = 1;
  if (at < text.size() && text[at] == '#')
    ++at;
  const std::size_t begin = at;
  while (at < text.size() && at - begin < 32 && isAsciiLetterOrDigit(text[at]))
    ++at;
  return at > begin && at < text.size() && text[at] == ';';
}

// A text and the places in it: the characters beside it count as its own.
class TextEscaping {
public:
  TextEscaping(std::string_view text, const EscapeContext& context) : text_(text), context_(context) {}

  std::string escaped() {
    std::string out;
    out.reserve(text_.size() + 8);
    for (std::size_t at = 0; at < text_.size();) {
      if (text_[at] == ' ') {
        out += ' ';
        ++at;
        continue;
      }
      const std::size_t end = std::min(text_.find(' ', at), text_.size());
      appendWord(out, at, end);
      at = end;
    }
    return out;
  }

private:
  void appendWord(std::string& out, std::size_t begin, std::size_t end) const {
    const std::string_view word = text_.substr(begin, end - begin);
    std::string plain = escapedPart(begin, end);
    const bool touchesMark = (end == text_.size() && !context_.endsLine && !isSpaceOrEnd(context_.after)) ||
                             (begin == 0 && !isSpaceOrEnd(context_.before));
    if (context_.isInBrackets || !mayBeLinked(word) || (plain == word && !touchesMark)) {
      out += plain;
      return;
    }
    for (std::size_t at = 0; at < plain.size(); ++at) {
      const std::string_view rest = std::string_view(plain).substr(at);
      const bool isBehindW = at >= 3 && (plain[at - 1] == 'w' || plain[at - 1] == 'W');
      if (rest.starts_with("://") || (isBehindW && rest.starts_with('.')))
        out += '\\';
      out += plain[at];
    }
  }

  [[nodiscard]] std::string escapedPart(std::size_t begin, std::size_t end) const {
    std::string out;
    for (std::size_t at = begin; at < end; ++at) {
      const char c = text_[at];
      if (c == '&' && beginsReference(text_.substr(at)))
        out += "&amp;";
      else {
        if (marksUp(at))
          out += '\\';
        out += c;
      }
    }
    return out;
  }

  [[nodiscard]] char32_t next(std::size_t at) const {
    return at + 1 < text_.size() ? firstCharacter(text_.substr(at + 1)) : context_.after;
  }

  [[nodiscard]] bool marksUp(std::size_t at) const {
    switch (text_[at]) {
    case '\\':
      return isAsciiPunctuation(next(at)) || (at + 1 == text_.size());
    case '`':
      return context_.counts.backticks > 1;
    case '*':
      return context_.counts.asterisks > 1 && !standsAlone(at);
    case '_':
      return context_.counts.underscores > 1 && !standsAlone(at) && !isInWord(at);
    case '~':
      return context_.counts.tildes > 1 && !standsAlone(at);
    case '[':
      return context_.isInBrackets;
    case ']':
      return context_.isInBrackets || next(at) == '(' || next(at) == '[';
    case '<': {
      // A tag, or an address of mail, which begins with almost anything.
      const char32_t after = next(at);
      return (after < 0x80 && std::isalpha(static_cast<int>(after)) != 0) || after == '/' || after == '!' ||
             after == '?' || text_.substr(at, text_.find(' ', at) - at).contains('@');
    }
    case '|':
      return context_.isInCell;
    case '!':
      return at + 1 == text_.size() ? context_.isBeforeLink : text_[at + 1] == '[' && context_.isInBrackets;
    default:
      return false;
    }
  }

  // The characters beside the run of equal characters that `at` is in; of a long one two that leave its marks escaped,
  // so that each place costs no more than a look at some neighbours.
  [[nodiscard]] std::pair<char32_t, char32_t> besideRun(std::size_t at) const {
    std::size_t begin = at;
    while (begin > 0 && text_[begin - 1] == text_[at] && at - begin < longestRun)
      --begin;
    std::size_t end = at;
    while (end < text_.size() && text_[end] == text_[at] && end - at < longestRun)
      ++end;
    if (at - begin == longestRun || end - at == longestRun)
      return {U'.', U'.'};
    return {begin > 0 ? lastCharacter(text_.substr(0, begin)) : context_.before,
            end < text_.size() ? firstCharacter(text_.substr(end)) : context_.after};
  }
  [[nodiscard]] bool standsAlone(std::size_t at) const {
    const auto [before, after] = besideRun(at);
    return isSpaceOrEnd(before) && isSpaceOrEnd(after);
  }
  [[nodiscard]] bool isInWord(std::size_t at) const {
    const auto [before, after] = besideRun(at);
    return isSurelyOfAWord(before) && isSurelyOfAWord(after);
  }

  std::string_view text_;
  const EscapeContext& context_;
};

bool consistsOf(std::string_view text, std::string_view characters) {
  return !text.empty() && text.find_first_not_of(characters) == std::string_view::npos;
}

// The place of the character that must be escaped at the begin of a block; else `npos`. `isWhole` says that the text
// is all of its line.
std::size_t placeOfBlock(std::string_view text, bool isWhole, bool isFirstLine) {
  constexpr std::size_t none = std::string_view::npos;
  if (text.empty())
    return none;
  const auto endsAt = [&](std::size_t at) { return at < text.size() ? text[at] == ' ' : isWhole; };
  switch (text[0]) {
  case '#': {
    const std::size_t count = std::min(text.find_first_not_of('#'), text.size());
    return count <= 6 && endsAt(count) ? 0 : none;
  }
  case '>':
    return 0;
  case '-':
  case '*':
  case '+':
    if (endsAt(1))
      return 0;
    break;
  case '`':
  case '~':
    return text.starts_with("```") || text.starts_with("~~~") ? 0 : none;
  case '[': {
    const bool isBox = text.size() > 2 && text[2] == ']' && std::string_view(" xX").contains(text[1]);
    return isBox || text.contains("]:") ? 0 : none;
  }
  default:
    break;
  }
  if (const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
      digits > 0 && digits <= 9 && digits < text.size() && (text[digits] == '.' || text[digits] == ')') &&
      endsAt(digits + 1))
    return digits;
  if (!isWhole)
    return none;
  const std::size_t marks = text.size() - static_cast<std::size_t>(std::ranges::count(text, ' '));
  for (const std::string_view rule : {"- ", "* ", "_ "})
    if (consistsOf(text, rule) && marks >= 3)
      return 0;
  // Beneath a line these would make a heading or a table of it.
  if (!isFirstLine && (consistsOf(text, "=") || (consistsOf(text, "-:| ") && text.contains('-'))))
    return 0;
  return none;
}

} // namespace

std::string escapedText(std::string_view text, const EscapeContext& context) {
  std::string out = TextEscaping(text, context).escaped();
  if (!context.beginsLine)
    return out;
  std::size_t place = placeOfBlock(out, context.endsLine, context.isFirstLine);
  if (place >= out.size())
    return out;
  // The rest of a run could be a mark itself.
  const char mark = out[place];
  do {
    out.insert(place, 1, '\\');
    place += 2;
  } while (place < out.size() && out[place] == mark && std::string_view("*_~`").contains(mark));
  return out;
}

std::string escapedAddress(std::string_view address, bool isInCell) {
  // Parentheses that match may stand; a single one would end the address, or not let it end.
  int depth = 0;
  int deepest = 0;
  bool areMatched = true;
  for (const char c : address) {
    depth += c == '(' ? 1 : c == ')' ? -1 : 0;
    deepest = std::max(deepest, depth);
    areMatched &= depth >= 0;
  }
  areMatched &= depth == 0 && deepest < 8;
  std::string out;
  for (std::size_t at = 0; at < address.size(); ++at) {
    const char c = address[at];
    const auto byte = static_cast<unsigned char>(c);
    if (byte <= 0x20 || byte == 0x7F || std::string_view("<>\\`\"").contains(c) || (c == '|' && isInCell) ||
        (!areMatched && (c == '(' || c == ')')))
      out += fmt::format("%{:02X}", byte);
    else if (c == '&' && beginsReference(address.substr(at)))
      out += "&amp;";
    else
      out += c;
  }
  return out;
}

std::string quotedTitle(std::string_view title, bool isInCell) {
  if (title.empty())
    return {};
  std::string out = " \"";
  for (std::size_t at = 0; at < title.size(); ++at) {
    const char c = title[at];
    if (c == '&' && beginsReference(title.substr(at))) {
      out += "&amp;";
      continue;
    }
    // A backtick would begin code, and a “<” a tag, before the link is read.
    if (c == '"' || c == '\\' || (c == '|' && isInCell) || c == '`' || c == '<')
      out += '\\';
    out += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
  }
  return out + "\"";
}

std::string codeSpan(std::string_view code, bool isInCell) {
  std::string content;
  for (const char c : code) {
    if (c == '|' && isInCell)
      content += '\\';
    content += c;
  }
  const std::string fence(longestRunOfBackticks(code) == 0 ? 1 : longestRunOfBackticks(code) + 1, '`');
  const bool needsBlanks = code.starts_with('`') || code.ends_with('`');
  const char* const blank = needsBlanks ? " " : "";
  return fence + blank + content + blank + fence;
}

bool mayBeLinked(std::string_view word) {
  return word.contains("://") || word.contains("www.") || word.contains("WWW.");
}

std::size_t longestRunOfBackticks(std::string_view text) {
  std::size_t longest = 0;
  std::size_t length = 0;
  for (const char c : text) {
    length = c == '`' ? length + 1 : 0;
    longest = std::max(longest, length);
  }
  return longest;
}

bool isSurelyPunctuation(char32_t character) {
  return isAsciiPunctuation(character) || (character >= 0x80 && u_ispunct(static_cast<UChar32>(character)));
}

bool isSurelyOfAWord(char32_t character) {
  const auto c = static_cast<UChar32>(character);
  return !isSpaceOrEnd(character) && !isSurelyPunctuation(character) && (U_GET_GC_MASK(c) & U_GC_S_MASK) == 0;
}

bool isSpaceOrEnd(char32_t character) {
  return character == 0 || u_isUWhiteSpace(static_cast<UChar32>(character));
}

char32_t firstCharacter(std::string_view text) {
  if (text.empty())
    return 0;
  int32_t at = 0;
  UChar32 character = 0;
  U8_NEXT(text.data(), at, static_cast<int32_t>(text.size()), character);
  return character < 0 ? 0xFFFD : static_cast<char32_t>(character);
}

char32_t lastCharacter(std::string_view text) {
  if (text.empty())
    return 0;
  auto at = static_cast<int32_t>(text.size());
  UChar32 character = 0;
  U8_PREV(text.data(), 0, at, character);
  return character < 0 ? 0xFFFD : static_cast<char32_t>(character);
}

} // namespace tabwright::browserdata
