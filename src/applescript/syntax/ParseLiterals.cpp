#include "applescript/syntax/ScriptParser.h"

#include <charconv>
#include <utility>

// Literals, constants of the dictionaries, and what stands in brackets and braces.
namespace tabwright::applescript {

ExpressionPointer ScriptParser::makeLiteral(Value value, std::size_t tokens, std::string words) {
  const std::size_t start = offset();
  advance(tokens);
  auto literal = std::make_unique<Literal>(std::move(value));
  literal->words = std::move(words);
  return finish(std::move(literal), start);
}

ExpressionPointer ScriptParser::parseNumber() {
  const std::string_view digits = token().text;
  if (digits.find_first_of(".eE") == std::string_view::npos) {
    std::int64_t integer = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), integer).ec == std::errc())
      return makeLiteral(Value(integer), 1);
  }
  std::string plain(digits); // from_chars takes no sign in front of an exponent's digits but a minus
  std::erase(plain, '+');
  double real = 0; // stays when the number is too small
  const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), real);
  const auto exponent = plain.find_first_of("eE");
  const bool isLarge = exponent == std::string::npos ? plain.find('.') > 300 : plain[exponent + 1] != '-';
  if (error == std::errc::result_out_of_range && isLarge)
    throw syntaxError(errorNumber::numericOverflow, "The number is too large.", token().range);
  return makeLiteral(Value(real), 1);
}

ExpressionPointer ScriptParser::parseParenthesized() {
  const std::size_t start = offset();
  const auto commandsAround = std::exchange(activeCommands_, {}); // a bracket shields what it holds
  auto node = std::make_unique<Parenthesized>();
  advance();
  node->inner = parseExpression();
  require(Symbol::closeParenthesis, "“)”");
  activeCommands_ = commandsAround;
  return finish(std::move(node), start);
}

bool ScriptParser::isLabelAhead() const {
  if (isLabel())
    return true;
  const auto matches = scope_.match(rest());
  return !matches.empty() && token(matches.front().words).is(Symbol::colon) &&
         (matches.front().term->kind == Term::Kind::property || matches.front().term->kind == Term::Kind::className);
}

Label ScriptParser::parseLabel() {
  const Token& word = token();
  const auto matches = scope_.match(rest());
  const auto* match = matches.find(Term::Kind::property);
  if (!match)
    match = matches.find(Term::Kind::className);
  if (match && token(match->words).is(Symbol::colon)) {
    advance(match->words);
    return {match->term->code, std::string(match->term->words)};
  }
  if (word.kind == Token::Kind::word && isReserved(word.keyword))
    fail("identifier");
  advance();
  return {0, std::string(word.text)};
}

ExpressionPointer ScriptParser::parseBraces() {
  const std::size_t start = offset();
  const auto commandsAround = std::exchange(activeCommands_, {});
  advance();
  ExpressionPointer result;
  if (isLabelAhead()) {
    auto record = std::make_unique<RecordLiteral>();
    do {
      if (!isLabelAhead())
        fail("identifier");
      Label label = parseLabel();
      require(Symbol::colon, "“:”");
      record->fields.emplace_back(std::move(label), parseExpression());
    } while (accept(Symbol::comma));
    require(Symbol::closeBrace, "“,” or “}”");
    result = finish(std::move(record), start);
  } else {
    auto list = std::make_unique<ListLiteral>();
    if (!accept(Symbol::closeBrace)) {
      do
        list->items.push_back(parseExpression());
      while (accept(Symbol::comma));
      require(Symbol::closeBrace, "“,” or “}”");
    }
    result = finish(std::move(list), start);
  }
  activeCommands_ = commandsAround;
  return result;
}

ExpressionPointer ScriptParser::parseConstant(const Term& term) {
  struct Row {
    FourCharCode code;
    Value value;
    bool isNamed; ///< the value alone doesn't say what was written
  };
  static const std::vector<Row> rows = {
      {fourCharCode("msng"), Value::missing(), false},
      {fourCharCode("null"), Value::null(), false},
      {fourCharCode("pi  "), 3.14159265358979323846, true},
      {fourCharCode("lnfd"), "\n", true},
      {fourCharCode("tab "), "\t", true},
      {fourCharCode("spac"), " ", true},
      {fourCharCode("quot"), "\"", true},
      {fourCharCode("min "), 60, true},
      {fourCharCode("hour"), 3600, true},
      {fourCharCode("days"), 86400, true},
      {fourCharCode("week"), 604800, true},
  };
  const auto isLanguages =
      std::ranges::any_of(languageTerminology().rows(), [&](const Term& candidate) { return &candidate == &term; });
  const std::size_t words = 1 + static_cast<std::size_t>(std::ranges::count(term.words, ' '));
  if (isLanguages) {
    const auto row = std::ranges::find(rows, term.code, &Row::code);
    if (row != rows.end())
      return makeLiteral(row->value, words, row->isNamed ? std::string(term.words) : std::string());
  }
  return makeLiteral(Value(Enumerator{term.code, std::string(term.words)}), words);
}

} // namespace tabwright::applescript
