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
  if (isReserved(first.keyword))
    return parseReservedWord();
  switch (first.keyword) {
  case Keyword::application:
  case Keyword::app:
    return parseApplication();
  case Keyword::current:
    if (token(1).is(Keyword::application))
      return parseSimple(Expression::Kind::currentApplication, 2);
    break;
  case Keyword::a:
    if ((token(1).is(Keyword::reference) || token(1).is(Keyword::ref)) && token(2).is(Keyword::to))
      return parseReferenceTo(3);
    break;
  case Keyword::number:
    if (token(1).is(Keyword::of)) // another way to say `count of`
      return parseCount(1);
    break;
  default:
    break;
  }
  if (matches.empty() || isVariableDespite(matches))
    return parseName();
  return parseTerm(matches);
}

ExpressionPointer ScriptParser::parseReservedWord() {
  using Form = ElementAccess::Form;
  using Where = InsertionPoint::Where;
  switch (token().keyword) {
  case Keyword::the:
    while (token().is(Keyword::the))
      advance();
    return parsePrimary();
  case Keyword::true_:
    return makeLiteral(Value(true), 1);
  case Keyword::false_:
    return makeLiteral(Value(false), 1);
  case Keyword::return_:
    return makeLiteral(Value("\r"), 1, "return");
  case Keyword::me:
    return parseSimple(Expression::Kind::me, 1);
  case Keyword::it:
    return parseSimple(Expression::Kind::it, 1);
  case Keyword::my:
    return parseMy();
  case Keyword::its:
    return parseIts();
  case Keyword::every:
    return parseEvery();
  case Keyword::some:
    return parsePicked(Form::some);
  case Keyword::middle:
    return parsePicked(Form::middle);
  case Keyword::last:
    return parsePicked(Form::last);
  case Keyword::back:
    return token(1).is(Keyword::of) ? parseInsertionPoint(Where::end, 1) : parsePicked(Form::last);
  case Keyword::front:
    return token(1).is(Keyword::of) ? parseInsertionPoint(Where::beginning, 1) : parsePicked(Form::first);
  case Keyword::first:
    return parsePicked(Form::first);
  case Keyword::second:
    return parseOrdinal(2);
  case Keyword::third:
    return parseOrdinal(3);
  case Keyword::fourth:
    return parseOrdinal(4);
  case Keyword::fifth:
    return parseOrdinal(5);
  case Keyword::sixth:
    return parseOrdinal(6);
  case Keyword::seventh:
    return parseOrdinal(7);
  case Keyword::eighth:
    return parseOrdinal(8);
  case Keyword::ninth:
    return parseOrdinal(9);
  case Keyword::tenth:
    return parseOrdinal(10);
  case Keyword::beginning:
  case Keyword::end: // alone only where a place is asked for: see parseArgumentValue, parseKey
    if (token(1).is(Keyword::of) || token(1).is(Keyword::in))
      return parseInsertionPoint(token().is(Keyword::end) ? Where::end : Where::beginning, 1);
    break;
  case Keyword::before:
    return parseInsertionPoint(Where::before, 1);
  case Keyword::after:
  case Keyword::behind:
    return parseInsertionPoint(Where::after, 1);
  case Keyword::in:
    if (token(1).is(Keyword::front) && token(2).is(Keyword::of))
      return parseInsertionPoint(Where::before, 3);
    if (token(1).is(Keyword::back) && token(2).is(Keyword::of))
      return parseInsertionPoint(Where::after, 3);
    break;
  case Keyword::ref:
  case Keyword::reference:
    if (token(1).is(Keyword::to))
      return parseReferenceTo(2);
    if (token().is(Keyword::reference)) // the class
      return makeLiteral(Value(ClassName{fourCharCode("obj "), "reference"}), 1);
    break;
  case Keyword::script:
    return parseElement({{fourCharCode("scpt"), "script"}, false}, consumeOne());
  case Keyword::get: {
    const Term* get = languageTerminology().findCommand(events::get);
    return parseCommand(*get, 1);
  }
  default:
    break;
  }
  fail("expression");
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

bool ScriptParser::isLanguageValueClass(const Term& term) {
  const auto inTable =
      std::ranges::any_of(language::valueClasses, [&](const Term& row) { return row.words == term.words; });
  constexpr auto elements = std::to_array<FourCharCode>(
      {fourCharCode("cobj"), fourCharCode("cha "), fourCharCode("cwor"), fourCharCode("cpar"), fourCharCode("citm")});
  return inTable && std::ranges::find(elements, term.code) == elements.end();
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
