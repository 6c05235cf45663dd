#include "applescript/syntax/ScriptParser.h"
#include "applescript/terminology/language/ValueClasses.h"

#include <array>
#include <charconv>
#include <utility>

// Expressions without operators and containers: what a single word, literal or bracket begins.
namespace tabwright::applescript {

ExpressionPointer ScriptParser::parsePrimary() {
  const Token& first = token();
  switch (first.kind) {
  case Token::Kind::number:
    return parseNumber();
  case Token::Kind::ordinal: {
    std::int64_t number = 0;
    std::from_chars(first.text.data(), first.text.data() + first.text.size(), number);
    return parseOrdinal(number);
  }
  case Token::Kind::text:
    return makeLiteral(Value(std::string(first.text)), 1);
  case Token::Kind::raw:
    return parseRaw();
  case Token::Kind::quotedName:
    return parseName();
  case Token::Kind::symbol:
    if (first.is(Symbol::openParenthesis))
      return parseParenthesized();
    if (first.is(Symbol::openBrace))
      return parseBraces();
    fail("expression");
  case Token::Kind::word:
    break;
  case Token::Kind::possessive:
  case Token::Kind::lineEnd:
  case Token::Kind::scriptEnd:
  case Token::Kind::unknown:
    fail("expression");
  }

  // A dictionary's term may begin with a word of the grammar: `given name`, `application process`.
  const auto matches = scope_.match(rest());
  if (!matches.empty() && matches.front().words > 1)
    return parseTerm(matches);
  if (const auto parse = ruleFor(first.keyword).expression) {
    if (ExpressionPointer parsed = parse(*this))
      return parsed;
  }
  if (isReserved(first.keyword))
    fail("expression");
  if (matches.empty() || isVariableDespite(matches))
    return parseName();
  return parseTerm(matches);
}

ExpressionPointer ScriptParser::parseThe() {
  while (accept(Keyword::the)) {
  }
  return parsePrimary();
}

ExpressionPointer ScriptParser::parseSimple(Expression::Kind kind, std::size_t words) {
  const std::size_t start = offset();
  advance(words);
  return finish(std::make_unique<SimpleExpression>(kind), start);
}

std::size_t ScriptParser::consumeOne() {
  const std::size_t start = offset();
  advance();
  return start;
}

// ---------------------------------------------------------------------- words

namespace {

/// A class of the language's own values, as against elements of texts and applications.
bool isLanguageValueClass(const Term& term) {
  const auto inTable =
      std::ranges::any_of(language::valueClasses, [&](const Term& row) { return row.words == term.words; });
  constexpr auto elements = std::to_array<FourCharCode>(
      {fourCharCode("cobj"), fourCharCode("cha "), fourCharCode("cwor"), fourCharCode("cpar"), fourCharCode("citm")});
  return inTable && std::ranges::find(elements, term.code) == elements.end();
}

} // namespace

// Outside of a `tell`, a word that the script has bound is its variable unless what follows needs the dictionary's
// word. The plural of a class of values (`numbers`, `lists`) is a variable anywhere unless something is picked from.
bool ScriptParser::isVariableDespite(const TermMatches& matches) const {
  const Terminology::Match& first = matches.front();
  if (first.words != 1 || token().kind != Token::Kind::word)
    return false;
  const Token& next = token(1);
  const bool isOfSomething = next.is(Keyword::of) || (next.is(Keyword::in) && !token(2).is(Keyword::front));
  if (isOfSomething || next.is(Keyword::whose) || next.is(Keyword::where))
    return false;
  if (first.isPlural && isLanguageValueClass(*first.term))
    return !canStartKey(1);
  if (scope_.isInTell() || first.term->kind == Term::Kind::command || !scope_.isBound(token().text))
    return false;
  return !matches.find(Term::Kind::className) || !canStartKey(1);
}

ExpressionPointer ScriptParser::parseTerm(const TermMatches& matches) {
  const std::size_t start = offset();
  const Token& next = token(matches.front().words);
  const bool isOfSomething = next.is(Keyword::of) || next.is(Keyword::in);

  const auto* property = matches.find(Term::Kind::property);
  const auto* className = matches.find(Term::Kind::className);
  const auto* command = matches.find(Term::Kind::command);
  const auto* constant = matches.find(Term::Kind::enumerator);
  if (command && !(isOfSomething && (property || className))) {
    if (command->term->event == events::count && next.is(Keyword::of))
      return parseCount(command->words);
    return parseCommand(*command->term, command->words);
  }
  if (constant && !className && !(property && isOfSomething) && matches.front().term == constant->term)
    return parseConstant(*constant->term);
  if (className) {
    const bool isKeyed = className->isPlural || startsElementKey(className->words);
    if (!property || isKeyed) {
      advance(className->words);
      return parseElement({{className->term->code, std::string(className->term->words)}, className->isPlural}, start);
    }
  }
  if (constant && !isOfSomething && !className)
    return parseConstant(*constant->term);
  auto access = std::make_unique<PropertyAccess>();
  access->property = {property->term->code, std::string(property->term->words)};
  advance(property->words);
  return finish(std::move(access), start);
}

ExpressionPointer ScriptParser::parseName() {
  const Token& name = token();
  const std::size_t start = offset();
  if (token(1).is(Symbol::openParenthesis)) {
    advance();
    return parseCall(std::string(name.text), start);
  }
  if (startsLabelledArguments(name.text)) {
    advance();
    return parseLabelledCall(std::string(name.text), start);
  }
  advance();
  return finish(std::make_unique<Variable>(std::string(name.text)), start);
}

// ---------------------------------------------------- applications, references

ExpressionPointer ScriptParser::parseApplication() {
  const std::size_t start = offset();
  const std::size_t keyAt = token(1).is(Keyword::id) ? 2 : 1;
  if (!canStartKey(keyAt)) { // the class
    if (!token().is(Keyword::application))
      return parseName();
    return makeLiteral(Value(ClassName{fourCharCode("capp"), "application"}), 1);
  }
  auto reference = std::make_unique<ApplicationReference>();
  reference->by = keyAt == 2 ? ApplicationReference::By::id : ApplicationReference::By::name;
  advance(keyAt);
  reference->designation = parseKey();
  return finish(std::move(reference), start);
}

ExpressionPointer ScriptParser::parseReferenceTo(std::size_t words) {
  const Nesting nesting(*this);
  const std::size_t start = offset();
  auto reference = std::make_unique<ReferenceTo>();
  advance(words);
  reference->operand = parseChain();
  return finish(std::move(reference), start);
}

} // namespace tabwright::applescript
