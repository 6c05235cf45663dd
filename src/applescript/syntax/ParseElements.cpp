#include "applescript/syntax/ScriptParser.h"

#include <array>
#include <utility>

// Elements: a class and what picks from all that are of it.
namespace tabwright::applescript {

using Form = ElementAccess::Form;

std::optional<ScriptParser::FoundClass> ScriptParser::acceptClass() {
  if (token().kind == Token::Kind::raw && token().text.starts_with("«class ")) {
    const std::size_t before = position();
    ExpressionPointer literal = parseRaw();
    if (literal->kind == Expression::Kind::literal) {
      if (const auto* name = static_cast<const Literal&>(*literal).value.get<Value::ClassPointer>())
        return FoundClass{**name, false};
    }
    moveTo(before);
    return std::nullopt;
  }
  if (const auto match = scope_.match(rest(), Term::Kind::className)) {
    FoundClass found{{match->term->code, std::string(match->term->words)}, match->isPlural};
    advance(match->words);
    return found;
  }
  if (token().is(Keyword::script)) {
    advance();
    return FoundClass{{fourCharCode("scpt"), "script"}, false};
  }
  return std::nullopt;
}

ScriptParser::FoundClass ScriptParser::requireClass() {
  auto found = acceptClass();
  if (!found)
    fail("class name");
  return std::move(*found);
}

std::unique_ptr<ElementAccess> ScriptParser::makeElement(Form form, FoundClass found) {
  auto element = std::make_unique<ElementAccess>();
  element->form = form;
  element->elementClass = std::move(found.name);
  return element;
}

bool ScriptParser::startsElementKey(std::size_t words) const {
  const Token& next = token(words);
  if (next.is(Keyword::id) || next.is(Keyword::index) || next.is(Keyword::named))
    return canStartKey(words + 1);
  if (next.is(Keyword::from))
    return !isStoppedAt(words);
  return next.is(Keyword::before) || next.is(Keyword::after) || next.is(Keyword::thru) || canStartKey(words);
}

ExpressionPointer ScriptParser::parseElement(FoundClass found, std::size_t startOffset) {
  const auto keyed = [&](Form form, std::size_t words) {
    advance(words);
    auto element = makeElement(form, std::move(found));
    element->key = parseKey();
    return element;
  };
  const Token& next = token();
  if (next.is(Keyword::id) && (canStartKey(1) || token(1).is(Symbol::openBrace))) // `string id {72, 105}`
    return finish(keyed(Form::id, 1), startOffset);
  if (next.is(Keyword::index) && canStartKey(1)) {
    auto element = keyed(Form::index, 1);
    element->isIndexWritten = true;
    return finish(std::move(element), startOffset);
  }
  if (next.is(Keyword::named) && canStartKey(1))
    return finish(keyed(Form::name, 1), startOffset);

  if (next.is(Keyword::from) && !isStoppedAt(0)) { // `text from word 1 to word 3`
    advance();
    auto element = makeElement(Form::range, std::move(found));
    element->key = parseRangeEnd();
    require(Keyword::to);
    element->rangeEnd = parseRangeEnd();
    return finish(std::move(element), startOffset);
  }
  if (canStartKey()) {
    auto element = keyed(Form::index, 0);
    if (accept(Keyword::thru) || accept(Keyword::through)) {
      element->form = Form::range;
      element->rangeEnd = parseKey();
    }
    return finish(std::move(element), startOffset);
  }
  if (!found.isPlural && (next.is(Keyword::before) || next.is(Keyword::after))) { // `tab after tab 3`
    const Nesting nesting(*this);
    auto element = makeElement(next.is(Keyword::before) ? Form::before : Form::after, std::move(found));
    advance();
    element->container = parseChain();
    return finish(std::move(element), startOffset);
  }
  if (found.isPlural)
    return finish(makeElement(Form::every, std::move(found)), startOffset);
  return finish(std::make_unique<Literal>(Value(std::move(found.name))), startOffset);
}

ExpressionPointer ScriptParser::parseEvery() {
  const std::size_t start = offset();
  advance();
  FoundClass found = requireClass();
  found.isPlural = true;
  ExpressionPointer element = token().is(Keyword::from) && !isStoppedAt(0)
                                  ? parseElement(std::move(found), start)
                                  : finish(makeElement(Form::every, std::move(found)), start);
  return element;
}

ExpressionPointer ScriptParser::parsePicked(Form form) {
  const std::size_t start = offset();
  advance();
  return finish(makeElement(form, requireClass()), start);
}

ExpressionPointer ScriptParser::parseOrdinal(std::int64_t number) {
  const std::size_t start = offset();
  ExpressionPointer key = makeLiteral(Value(number), 1);
  auto element = makeElement(Form::index, requireClass());
  element->key = std::move(key);
  element->isOrdinal = true;
  return finish(std::move(element), start);
}

ExpressionPointer ScriptParser::parseInsertionPoint(InsertionPoint::Where where, std::size_t words) {
  const Nesting nesting(*this);
  const std::size_t start = offset();
  auto point = std::make_unique<InsertionPoint>();
  point->where = where;
  advance(words);
  if (where == InsertionPoint::Where::before || where == InsertionPoint::Where::after)
    point->container = parseChain();
  return finish(std::move(point), start);
}

// ----------------------------------------------------------------------- keys

bool ScriptParser::isStoppedAt(std::size_t ahead) const {
  return std::ranges::any_of(activeCommands_,
                             [&](const Command* command) { return findParameter(*command, ahead).term != nullptr; });
}

bool ScriptParser::canStartKey(std::size_t ahead) const {
  const Token& next = token(ahead);
  switch (next.kind) {
  case Token::Kind::number:
  case Token::Kind::text:
    return true;
  case Token::Kind::quotedName:
    return !isLabel(ahead);
  case Token::Kind::symbol: // `item -1`, but `length - 1`
    return next.is(Symbol::openParenthesis) ||
           (next.is(Symbol::minus) && next.spaceBefore && !token(ahead + 1).spaceBefore);
  case Token::Kind::word: {
    if (isLabel(ahead) || isStoppedAt(ahead))
      return false;
    if (isReserved(next.keyword))
      return next.is(Keyword::my) || next.is(Keyword::its);
    if (matchOperator(rest(ahead)).row)
      return false;
    const auto matches = scope_.match(rest(ahead));
    return matches.empty() || (!scope_.isInTell() && matches.front().words == 1 && scope_.isBound(next.text) &&
                               matches.front().term->kind != Term::Kind::command);
  }
  default:
    return false;
  }
}

ExpressionPointer ScriptParser::parseRangeEnd() {
  const Nesting nesting(*this);
  const bool isPlace = token().is(Keyword::beginning) || token().is(Keyword::end);
  return isPlace || token().is(Symbol::minus) ? parseKey() : parsePossessives(parsePrimary());
}

// A key is less than an expression: `item i of xs` is the item at `i`, not the item at `i of xs`.
ExpressionPointer ScriptParser::parseKey() {
  const Nesting nesting(*this);
  const Token& first = token();
  if (first.is(Keyword::beginning) || first.is(Keyword::end))
    return parseInsertionPoint(first.is(Keyword::end) ? InsertionPoint::Where::end : InsertionPoint::Where::beginning,
                               1);
  if (first.is(Symbol::minus)) {
    const std::size_t start = offset();
    if (token(1).kind == Token::Kind::number) {
      advance();
      ExpressionPointer number = parseNumber();
      const Value& value = static_cast<const Literal&>(*number).value;
      const auto* integer = value.get<std::int64_t>();
      return finish(std::make_unique<Literal>(integer ? Value(-*integer) : Value(-*value.get<double>())), start);
    }
    auto unary = std::make_unique<Unary>();
    advance();
    unary->operand = parseKey();
    return finish(std::move(unary), start);
  }
  if (first.kind == Token::Kind::word && !isReserved(first.keyword))
    return parseName();
  return parsePrimary();
}

} // namespace tabwright::applescript
