#include "applescript/syntax/ParseExpressions.h"
#include "applescript/syntax/ParseReferences.h"

#include <unicode/unistr.h>

#include <charconv>
#include <utility>

// Codes in chevrons, which stand for terms that no dictionary at hand has: `«class utf8»`, `«property pnam»`,
// `«constant ****yes »`, `«event coregetd» x given «class kocl»:y`, `«data utxt0041»`.
namespace tabwright::applescript {

namespace {

constexpr std::string_view opening = "«";

constexpr std::string_view closing = "»";

/// The word behind the opening sign, and the rest.
std::pair<std::string_view, std::string_view> splitRaw(std::string_view text) {
  text.remove_prefix(std::min(opening.size(), text.size()));
  if (text.ends_with(closing))
    text.remove_suffix(closing.size());
  const auto blank = text.find(' ');
  if (blank == std::string_view::npos)
    return {text, {}};
  return {text.substr(0, blank), text.substr(blank + 1)};
}

/// Four bytes, taken as they are in UTF-8; nothing for any other number.
std::optional<FourCharCode> readCode(std::string_view text) {
  if (text.size() != 4)
    return std::nullopt;
  FourCharCode code = 0;
  for (const char character : text)
    code = code << 8 | static_cast<unsigned char>(character);
  return code;
}

/// The text of `utxt` (UTF-16, big-endian), `utf8` and `TEXT` data, given as the type's four characters and hexadecimal
/// digits; nothing for data of other types, which scripts have no value for.
std::optional<std::string> readTextData(std::string_view digits) {
  if (digits.size() < 4)
    return std::nullopt;
  const std::string_view type = digits.substr(0, 4);
  digits.remove_prefix(4);
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    unsigned byte = 0;
    const auto [end, error] = std::from_chars(digits.data() + i, digits.data() + i + 2, byte, 16);
    if (error != std::errc() || end != digits.data() + i + 2)
      return std::nullopt;
    bytes += static_cast<char>(byte);
  }
  if (digits.size() % 2 != 0)
    return std::nullopt;
  if (type == "utxt" && bytes.size() % 2 == 0) {
    // Unpaired surrogates become U+FFFD in UTF-8.
    icu::UnicodeString wide;
    for (std::size_t i = 0; i < bytes.size(); i += 2)
      wide +=
          static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) << 8 | static_cast<unsigned char>(bytes[i + 1]));
    std::string text;
    return wide.toUTF8String(text);
  }
  // Bytes that are no UTF-8 are replaced, since a text of the language is always valid.
  std::string text;
  icu::UnicodeString::fromUTF8({bytes.data(), static_cast<std::int32_t>(bytes.size())}).toUTF8String(text);
  return type == "utf8" || type == "TEXT" ? std::optional(text) : std::nullopt;
}

/// `«event coregetd» x given «class kocl»:y, «class insh»:z`: the class's and the event's four characters, the direct
/// parameter, and parameters by keyword.
ExpressionPointer parseRawEvent(ScriptParser& p, std::string_view codes) {
  const ScriptParser::Nesting nesting(p);
  const std::size_t start = p.offset();
  const auto event = splitRaw(codes).second;
  // Nodes of commands point to a row of a dictionary; this one gets a row that the tree owns.
  Term& term = p.tree.rawCommands.emplace_back();
  term.kind = Term::Kind::command;
  term.words = codes; // lies in the tree's source
  term.event = {*readCode(event.substr(0, 4)), *readCode(event.substr(4))};

  auto command = std::make_unique<Command>();
  command->term = &term;
  p.advance();
  if (canStartExpression(p))
    command->direct = parseExpression(p);
  if (p.accept(Keyword::given)) {
    do {
      const auto [kind, rest] = splitRaw(p.token().text);
      const auto code = readCode(rest);
      if (p.token().kind != Token::Kind::raw || kind != "class" || !code)
        p.fail("“«”");
      const ParameterTerm parameter{p.token().text, *code};
      p.advance();
      p.require(Symbol::colon, "“:”");
      command->parameters.emplace_back(parameter, parseExpression(p));
    } while (p.accept(Symbol::comma));
  }
  return p.finish(std::move(command), start);
}

} // namespace

ExpressionPointer parseRaw(ScriptParser& p) {
  const Token& first = p.token();
  const std::size_t start = p.offset();
  const auto [kind, rest] = splitRaw(first.text);
  const auto code = readCode(rest);
  // With `3` or the like behind it an element, else the class.
  if (kind == "class" && code) {
    p.advance();
    return parseElement(p, {{*code, std::string(first.text)}, false}, start);
  }
  if (kind == "property" && code)
    return parseProperty(p, {*code, std::string(first.text)}, 1);
  if (kind == "constant" && rest.size() == 8) // four characters for the enumeration, four for the constant
    return makeLiteral(p, Value(Enumerator{*readCode(rest.substr(4)), std::string(first.text)}), 1);
  if (kind == "data") {
    if (auto text = readTextData(rest))
      return makeLiteral(p, Value(std::move(*text)), 1, std::string(first.text));
  }
  if (kind == "event" && rest.size() == 8)
    return parseRawEvent(p, first.text);
  p.fail("expression");
}

} // namespace tabwright::applescript
