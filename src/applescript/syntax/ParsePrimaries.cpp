#include "applescript/syntax/ParseCommands.h"
#include "applescript/syntax/ParseExpressions.h"
#include "applescript/syntax/ParseReferences.h"
#include "applescript/syntax/WordRules.h"
#include "applescript/terminology/language/ValueClasses.h"

#include <array>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

// Expressions without operators and containers: words, names, literals and constants, and all in brackets and braces.
// The kind of the first token tells nearly always. A word is, in this order: the first of a dictionary's term of
// several words, a word of the grammar (WordRules.cpp), a dictionary's word, a name; where the script has bound a
// dictionary's word, what follows decides (isVariableDespite).
namespace tabwright::applescript {

namespace {

/// A class of the language's own values, as against elements of texts and applications.
bool isLanguageValueClass(const Term& term) {
  const auto inTable =
      std::ranges::any_of(language::valueClasses, [&](const Term& row) { return row.words == term.words; });
  constexpr auto elements = std::to_array<FourCharCode>(
      {fourCharCode("cobj"), fourCharCode("cha "), fourCharCode("cwor"), fourCharCode("cpar"), fourCharCode("citm")});
  return inTable && std::ranges::find(elements, term.code) == elements.end();
}

/// `(x)`, kept as a node: the printer writes brackets where they were.
ExpressionPointer parseParenthesized(ScriptParser& p) {
  const std::size_t start = p.offset();
  const auto commandsAround = std::exchange(p.activeCommands, {}); // a bracket shields what it holds
  auto node = std::make_unique<Parenthesized>();
  p.advance();
  node->inner = parseExpression(p);
  p.require(Symbol::closeParenthesis, "“)”");
  p.activeCommands = commandsAround;
  return p.finish(std::move(node), start);
}

/// A constant that stands for a value (`pi`, `tab`) as that value; all others as enumerators.
ExpressionPointer parseConstant(ScriptParser& p, const Term& term) {
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
  // By the row itself: an application may use one of these codes for a constant of its own, which stays one.
  const auto isLanguages =
      std::ranges::any_of(languageTerminology().rows(), [&](const Term& candidate) { return &candidate == &term; });
  const std::size_t words = 1 + static_cast<std::size_t>(std::ranges::count(term.words, ' '));
  if (isLanguages) {
    const auto row = std::ranges::find(rows, term.code, &Row::code);
    if (row != rows.end())
      return makeLiteral(p, row->value, words, row->isNamed ? std::string(term.words) : std::string());
  }
  return makeLiteral(p, Value(Enumerator{term.code, std::string(term.words)}), words);
}

} // namespace

ExpressionPointer parsePrimary(ScriptParser& p) {
  const Token& first = p.token();
  switch (first.kind) {
  case Token::Kind::number:
    return parseNumber(p);
  case Token::Kind::ordinal: {
    std::int64_t number = 0;
    // One that is too large is past the end of every list, as the largest is.
    if (std::from_chars(first.text.data(), first.text.data() + first.text.size(), number).ec != std::errc())
      number = std::numeric_limits<std::int64_t>::max();
    return parseOrdinal(p, number);
  }
  case Token::Kind::text:
    return makeLiteral(p, Value(std::string(first.text)), 1);
  case Token::Kind::raw:
    return parseRaw(p);
  case Token::Kind::quotedName:
    return parseName(p);
  case Token::Kind::symbol:
    if (first.is(Symbol::openParenthesis))
      return parseParenthesized(p);
    if (first.is(Symbol::openBrace))
      return parseBraces(p, parseExpression);
    p.fail("expression");
  case Token::Kind::word:
    break;
  case Token::Kind::possessive:
  case Token::Kind::lineEnd:
  case Token::Kind::scriptEnd:
  case Token::Kind::unknown:
    p.fail("expression");
  }

  // A dictionary's term may begin with a word of the grammar: `given name`, `application process`.
  const auto matches = p.scope.match(p.rest());
  if (!matches.empty() && matches.front().words > 1)
    return parseTerm(p, matches);
  if (const auto parse = ruleFor(first.keyword).expression) {
    if (ExpressionPointer parsed = parse(p))
      return parsed;
  }
  if (isReserved(first.keyword))
    p.fail("expression");
  if (matches.empty() || isVariableDespite(p, matches))
    return parseName(p);
  return parseTerm(p, matches);
}

ExpressionPointer parseThe(ScriptParser& p) {
  while (p.accept(Keyword::the)) {
  }
  return parsePrimary(p);
}

// Outside of a `tell`, a word that the script has bound is its variable unless what follows needs the dictionary's
// word. The plural of a class of values (`numbers`, `lists`) is a variable anywhere unless something is picked from.
bool isVariableDespite(const ScriptParser& p, const TermMatches& matches) {
  const Terminology::Match& first = matches.front();
  if (first.words != 1 || p.token().kind != Token::Kind::word)
    return false;
  const Token& next = p.token(1);
  const bool isOfSomething = next.is(Keyword::of) || (next.is(Keyword::in) && !p.token(2).is(Keyword::front));
  if (isOfSomething || next.is(Keyword::whose) || next.is(Keyword::where))
    return false;
  if (first.isPlural && isLanguageValueClass(*first.term))
    return !canStartKey(p, 1);
  if (p.scope.isInTell() || first.term->kind == Term::Kind::command || !p.scope.isBound(p.token().text))
    return false;
  return !matches.find(Term::Kind::className) || !canStartKey(p, 1);
}

ExpressionPointer parseTerm(ScriptParser& p, const TermMatches& matches) {
  const std::size_t start = p.offset();
  const Token& next = p.token(matches.front().words);
  const bool isOfSomething = next.is(Keyword::of) || next.is(Keyword::in);

  // One word may stand for several kinds. A command yields to a property or class with `of` behind it; a constant does
  // to a property there; a class is a property where nothing picks from it (`window` alone, with a property of that
  // name).
  const auto* property = matches.find(Term::Kind::property);
  const auto* className = matches.find(Term::Kind::className);
  const auto* command = matches.find(Term::Kind::command);
  const auto* constant = matches.find(Term::Kind::enumerator);
  if (command && !(isOfSomething && (property || className))) {
    if (command->term->event == events::count && next.is(Keyword::of))
      return parseCount(p, command->words);
    return parseCommand(p, *command->term, command->words);
  }
  if (constant && !className && !(property && isOfSomething) && matches.front().term == constant->term)
    return parseConstant(p, *constant->term);
  if (className) {
    const bool isKeyed = className->isPlural || startsElementKey(p, className->words);
    if (!property || isKeyed) {
      p.advance(className->words);
      return parseElement(p, {{className->term->code, std::string(className->term->words)}, className->isPlural},
                          start);
    }
  }
  if (constant && !isOfSomething && !className)
    return parseConstant(p, *constant->term);
  return parseProperty(p, {property->term->code, std::string(property->term->words)}, property->words);
}

ExpressionPointer parseProperty(ScriptParser& p, Label property, std::size_t words) {
  const std::size_t start = p.offset();
  auto access = std::make_unique<PropertyAccess>();
  access->property = std::move(property);
  p.advance(words);
  return p.finish(std::move(access), start);
}

// Names of handlers and variables look alike: a bracket behind makes a call, and so do labels of a handler that has
// such.
ExpressionPointer parseName(ScriptParser& p) {
  const Token& name = p.token();
  const std::size_t start = p.offset();
  if (p.token(1).is(Symbol::openParenthesis)) {
    p.advance();
    return parseCall(p, std::string(name.text), start);
  }
  if (startsLabelledCall(p)) {
    p.advance();
    return parseLabelledCall(p, std::string(name.text), start);
  }
  p.advance();
  return p.finish(std::make_unique<Variable>(std::string(name.text)), start);
}

ExpressionPointer parseApplication(ScriptParser& p) {
  const std::size_t start = p.offset();
  const std::size_t keyAt = p.token(1).is(Keyword::id) ? 2 : 1;
  if (!canStartKey(p, keyAt)) { // the class
    if (!p.at(Keyword::application))
      return parseName(p);
    return makeLiteral(p, Value(ClassName{fourCharCode("capp"), "application"}), 1);
  }
  auto reference = std::make_unique<ApplicationReference>();
  reference->by = keyAt == 2 ? ApplicationReference::By::id : ApplicationReference::By::name;
  p.advance(keyAt);
  reference->designation = parseKey(p);
  return p.finish(std::move(reference), start);
}

ExpressionPointer parseReferenceTo(ScriptParser& p, std::size_t words) {
  const ScriptParser::Nesting nesting(p);
  const std::size_t start = p.offset();
  auto reference = std::make_unique<ReferenceTo>();
  p.advance(words);
  reference->operand = parseChain(p);
  return p.finish(std::move(reference), start);
}

ExpressionPointer parseBraces(ScriptParser& p, ExpressionPointer (*parse)(ScriptParser&)) {
  const std::size_t start = p.offset();
  const auto commandsAround = std::exchange(p.activeCommands, {});
  p.advance();
  ExpressionPointer result;
  if (isLabelAhead(p)) {
    auto record = std::make_unique<RecordLiteral>();
    p.parseItems(Symbol::closeBrace, [&] {
      if (!isLabelAhead(p))
        p.fail("identifier");
      Label label = parseLabel(p);
      p.require(Symbol::colon, "“:”");
      record->fields.emplace_back(std::move(label), parse(p));
    });
    result = p.finish(std::move(record), start);
  } else {
    auto list = std::make_unique<ListLiteral>();
    if (!p.accept(Symbol::closeBrace))
      p.parseItems(Symbol::closeBrace, [&] { list->items.push_back(parse(p)); });
    result = p.finish(std::move(list), start);
  }
  p.activeCommands = commandsAround;
  return result;
}

ExpressionPointer makeLiteral(ScriptParser& p, Value value, std::size_t tokens, std::string words) {
  const std::size_t start = p.offset();
  p.advance(tokens);
  auto literal = std::make_unique<Literal>(std::move(value));
  literal->words = std::move(words);
  return p.finish(std::move(literal), start);
}

ExpressionPointer parseNumber(ScriptParser& p) {
  const std::string_view digits = p.token().text;
  // An integer that 64 bits can't hold is read as a real.
  if (digits.find_first_of(".eE") == std::string_view::npos) {
    std::int64_t integer = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), integer).ec == std::errc())
      return makeLiteral(p, Value(integer), 1);
  }
  const std::string plain(digits);
  double real = 0; // stays when the number is too small
  const auto [end, error] = std::from_chars(plain.data(), plain.data() + plain.size(), real);
  // Too large and too small are one error of from_chars: the exponent's sign, or the number of digits, tells which.
  const auto exponent = plain.find_first_of("eE");
  const bool isLarge = exponent == std::string::npos ? plain.find('.') > 300 : plain[exponent + 1] != '-';
  if (error == std::errc::result_out_of_range && isLarge)
    throw syntaxError(errorNumber::numericOverflow, "The number is too large.", p.token().range);
  return makeLiteral(p, Value(real), 1);
}

bool isLabelAhead(const ScriptParser& p) {
  if (p.isLabel())
    return true;
  const auto matches = p.scope.match(p.rest());
  return !matches.empty() && p.token(matches.front().words).is(Symbol::colon) &&
         (matches.front().term->kind == Term::Kind::property || matches.front().term->kind == Term::Kind::className);
}

Label parseLabel(ScriptParser& p) {
  const Token& word = p.token();
  const auto matches = p.scope.match(p.rest());
  // A dictionary's label has its code, so that records fit the application's; all others are names.
  const auto* match = matches.find(Term::Kind::property);
  if (!match)
    match = matches.find(Term::Kind::className);
  if (match && p.token(match->words).is(Symbol::colon)) {
    p.advance(match->words);
    return {match->term->code, std::string(match->term->words)};
  }
  if (word.kind == Token::Kind::word && isReserved(word.keyword))
    p.fail("identifier");
  p.advance();
  return {0, std::string(word.text)};
}

} // namespace tabwright::applescript
