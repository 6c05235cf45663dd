#include "applescript/syntax/Operators.h"
#include "applescript/syntax/ParseCommands.h"
#include "applescript/syntax/ParseExpressions.h"
#include "applescript/syntax/ParseReferences.h"

#include <utility>

// Elements: a class and what picks from all that are of it, in front of the class (`first tab`, `some tab`, `every
// tab`) or behind it (`tab 3`, `tab id 5`, `tabs 1 thru 3`, `tab after tab 3`). With nothing that picks, a plural is
// all of them and a singular the class itself. Their container, behind `of` or in front of `'s`, is hung in by
// ParseReferences.cpp.
namespace tabwright::applescript {

namespace {

using Form = ElementAccess::Form;

FoundClass requireClass(ScriptParser& p) {
  auto found = acceptClass(p);
  if (!found)
    p.fail("class name");
  return std::move(*found);
}

std::unique_ptr<ElementAccess> makeElement(Form form, FoundClass found) {
  auto element = std::make_unique<ElementAccess>();
  element->form = form;
  element->elementClass = std::move(found.name);
  return element;
}

/// Without `of`, which belongs to the range as a whole: `text from word 1 to word 3 of t`.
ExpressionPointer parseRangeEnd(ScriptParser& p) {
  const ScriptParser::Nesting nesting(p);
  const bool isPlace = p.at(Keyword::beginning) || p.at(Keyword::end);
  return isPlace || p.at(Symbol::minus) ? parseKey(p) : parsePossessives(p, parsePrimary(p));
}

} // namespace

std::optional<FoundClass> acceptClass(ScriptParser& p) {
  if (p.token().kind == Token::Kind::raw && p.token().text.starts_with("«class ")) {
    // Read with what picks from it, and given back if something does: then it is no bare class.
    const std::size_t before = p.position();
    ExpressionPointer literal = parseRaw(p);
    const auto* found = as<Literal>(*literal);
    if (const auto* name = found ? found->value.get<Value::ClassPointer>() : nullptr)
      return FoundClass{**name, false};
    p.moveTo(before);
    return std::nullopt;
  }
  if (const auto match = p.scope.match(p.rest(), Term::Kind::className)) {
    FoundClass found{{match->term->code, std::string(match->term->words)}, match->isPlural};
    p.advance(match->words);
    return found;
  }
  if (p.at(Keyword::script)) {
    p.advance();
    return FoundClass{{fourCharCode("scpt"), "script"}, false};
  }
  return std::nullopt;
}

bool startsElementKey(const ScriptParser& p, std::size_t words) {
  const Token& next = p.token(words);
  if (next.is(Keyword::id) || next.is(Keyword::index) || next.is(Keyword::named))
    return canStartKey(p, words + 1);
  if (next.is(Keyword::from))
    // `from` may be a parameter of the command around.
    return !isStoppedAt(p, words);
  return next.is(Keyword::before) || next.is(Keyword::after) || next.is(Keyword::thru) || canStartKey(p, words);
}

ExpressionPointer parseElement(ScriptParser& p, FoundClass found, std::size_t startOffset) {
  const auto keyed = [&](Form form, std::size_t words) {
    p.advance(words);
    auto element = makeElement(form, std::move(found));
    element->key = parseKey(p);
    return element;
  };
  const Token& next = p.token();
  if (next.is(Keyword::id) && (canStartKey(p, 1) || p.token(1).is(Symbol::openBrace))) // `string id {72, 105}`
    return p.finish(keyed(Form::id, 1), startOffset);
  if (next.is(Keyword::index) && canStartKey(p, 1)) {
    auto element = keyed(Form::index, 1);
    element->isIndexWritten = true;
    return p.finish(std::move(element), startOffset);
  }
  if (next.is(Keyword::named) && canStartKey(p, 1))
    return p.finish(keyed(Form::name, 1), startOffset);

  if (next.is(Keyword::from) && !isStoppedAt(p, 0)) { // `text from word 1 to word 3`
    p.advance();
    auto element = makeElement(Form::range, std::move(found));
    element->key = parseRangeEnd(p);
    p.require(Keyword::to);
    element->rangeEnd = parseRangeEnd(p);
    return p.finish(std::move(element), startOffset);
  }
  if (canStartKey(p)) {
    // By index or by name: the value of the key decides, when the script runs.
    auto element = keyed(Form::index, 0);
    // `tabs 1 thru 3`: the key was the start of a range.
    if (p.accept(Keyword::thru) || p.accept(Keyword::through)) {
      element->form = Form::range;
      element->rangeEnd = parseKey(p);
    }
    return p.finish(std::move(element), startOffset);
  }
  if (!found.isPlural && (next.is(Keyword::before) || next.is(Keyword::after))) { // `tab after tab 3`
    const ScriptParser::Nesting nesting(p);
    auto element = makeElement(next.is(Keyword::before) ? Form::before : Form::after, std::move(found));
    p.advance();
    element->container = parseChain(p);
    return p.finish(std::move(element), startOffset);
  }
  if (found.isPlural)
    return p.finish(makeElement(Form::every, std::move(found)), startOffset);
  return p.finish(std::make_unique<Literal>(Value(std::move(found.name))), startOffset);
}

ExpressionPointer parseEvery(ScriptParser& p) {
  const std::size_t start = p.offset();
  p.advance();
  FoundClass found = requireClass(p);
  found.isPlural = true;
  // `every word from a to b` is a range; no other key may follow `every`.
  return p.at(Keyword::from) && !isStoppedAt(p, 0) ? parseElement(p, std::move(found), start)
                                                   : p.finish(makeElement(Form::every, std::move(found)), start);
}

ExpressionPointer parsePicked(ScriptParser& p, Form form) {
  const std::size_t start = p.offset();
  p.advance();
  return p.finish(makeElement(form, requireClass(p)), start);
}

ExpressionPointer parseOrdinal(ScriptParser& p, std::int64_t number) {
  const std::size_t start = p.offset();
  ExpressionPointer key = makeLiteral(p, Value(number), 1);
  auto element = makeElement(Form::index, requireClass(p));
  element->key = std::move(key);
  element->isOrdinal = true;
  return p.finish(std::move(element), start);
}

ExpressionPointer parseInsertionPoint(ScriptParser& p, InsertionPoint::Form form, std::size_t words) {
  const ScriptParser::Nesting nesting(p);
  const std::size_t start = p.offset();
  auto point = std::make_unique<InsertionPoint>();
  point->form = form;
  p.advance(words);
  // The other two get theirs from the chain, like any access.
  if (form == Form::before || form == Form::after)
    point->container = parseChain(p);
  return p.finish(std::move(point), start);
}

bool canStartKey(const ScriptParser& p, std::size_t ahead) {
  const Token& next = p.token(ahead);
  switch (next.kind) {
  case Token::Kind::number:
  case Token::Kind::text:
    return true;
  case Token::Kind::quotedName:
    return !p.isLabel(ahead);
  case Token::Kind::symbol: // `item -1`, but `length - 1`
    return next.is(Symbol::openParenthesis) ||
           (next.is(Symbol::minus) && next.spaceBefore && !p.token(ahead + 1).spaceBefore);
  case Token::Kind::word: {
    if (p.isLabel(ahead) || isStoppedAt(p, ahead))
      return false;
    if (isReserved(next.keyword))
      return next.is(Keyword::my) || next.is(Keyword::its);
    if (matchOperator(p.rest(ahead)).row)
      return false;
    const auto matches = p.scope.match(p.rest(ahead));
    // A dictionary's word isn't a key, unless the script has bound it where it may: `item index of xs`.
    return matches.empty() || (!p.scope.isInTell() && matches.front().words == 1 && p.scope.isBound(next.text) &&
                               matches.front().term->kind != Term::Kind::command);
  }
  default:
    return false;
  }
}

ExpressionPointer parseKey(ScriptParser& p) {
  const ScriptParser::Nesting nesting(p);
  const Token& first = p.token();
  if (first.is(Keyword::beginning) || first.is(Keyword::end))
    return parseInsertionPoint(p, first.is(Keyword::end) ? Form::end : Form::beginning, 1);
  if (first.is(Symbol::minus)) {
    const std::size_t start = p.offset();
    if (p.token(1).kind == Token::Kind::number) {
      p.advance();
      ExpressionPointer number = parseNumber(p);
      const Value& value = static_cast<const Literal&>(*number).value;
      const auto* integer = value.get<std::int64_t>();
      return p.finish(std::make_unique<Literal>(integer ? Value(-*integer) : Value(-*value.get<double>())), start);
    }
    auto unary = std::make_unique<Unary>();
    p.advance();
    unary->operand = parseKey(p);
    return p.finish(std::move(unary), start);
  }
  // A word that begins a key is a name, never a dictionary's term: canStartKey.
  if (first.kind == Token::Kind::word && !isReserved(first.keyword))
    return parseName(p);
  return parsePrimary(p);
}

} // namespace tabwright::applescript
