#include "applescript/syntax/ScriptParser.h"

#include <cmath>
#include <utility>

// Operators by precedence climbing over the table of Operators.h. `not`, the signs and `as` aren't in that table: the
// first two stand in front, the last has a type on its right.
namespace tabwright::applescript {

ExpressionPointer ScriptParser::parseExpression() {
  const Nesting nesting(*this);
  return parseBinary(Precedence::lowest);
}

ExpressionPointer ScriptParser::parseBinary(Precedence lowest) {
  ExpressionPointer left = parseOperand(lowest);
  const std::size_t start = left->range.offset;
  while (!isStopped()) {
    // A type ends what is to be coerced, so `a as text & b` goes on with the text though `&` binds tighter.
    if (token().is(Keyword::as)) {
      if (lowest > Precedence::coercion)
        break;
      left = parseCoercion(std::move(left));
      continue;
    }
    if (lowest <= Precedence::equality) {
      const bool isNegated = (token().is(Keyword::does) && token(1).is(Keyword::not_)) || token().is(Keyword::doesnt);
      const std::size_t verb = isNegated ? (token().is(Keyword::does) ? 2 : 1) : 0;
      if (token(verb).is(Keyword::exists) || token(verb).is(Keyword::exist)) {
        left = parseExistence(std::move(left), verb + 1, isNegated);
        continue;
      }
      const bool isNot = token(1).is(Keyword::not_) || token().is(Keyword::isnt);
      const std::size_t state = token().is(Keyword::isnt) ? 1 : isNot ? 2 : 1;
      if ((token().is(Keyword::is) || token().is(Keyword::isnt)) && token(state).is(Keyword::running) &&
          left->kind != Expression::Kind::binary && left->kind != Expression::Kind::unary) {
        left = parseRunning(std::move(left), state + 1, isNot);
        continue;
      }
    }

    const OperatorMatch match = matchOperator(rest());
    if (!match.row || match.row->precedence < lowest)
      break;
    advance(match.tokens);
    auto binary = std::make_unique<Binary>();
    binary->op = match.row->op;
    binary->left = std::move(left);
    if (match.row->op == Binary::Operator::power) { // from right to left
      const Nesting nesting(*this);
      binary->right = parseBinary(Precedence::power);
    } else {
      binary->right = parseBinary(static_cast<Precedence>(static_cast<int>(match.row->precedence) + 1));
    }
    left = finish(std::move(binary), start);
  }
  return left;
}

ExpressionPointer ScriptParser::parseOperand(Precedence lowest) {
  if (token().is(Keyword::not_)) {
    const Nesting nesting(*this);
    const std::size_t start = offset();
    auto unary = std::make_unique<Unary>();
    unary->op = Unary::Operator::logicalNot;
    advance();
    unary->operand = parseBinary(std::max(lowest, Precedence::logicalNot));
    return finish(std::move(unary), start);
  }
  if (token().is(Symbol::minus) || token().is(Symbol::plus))
    return parseSigned();
  return parseChain();
}

// `-1` is a literal, so that it can stand where only literals do; `-x` is an operation.
ExpressionPointer ScriptParser::parseSigned() {
  const Nesting nesting(*this);
  const std::size_t start = offset();
  const bool isMinus = accept(Symbol::minus);
  if (!isMinus)
    accept(Symbol::plus);
  ExpressionPointer operand = token().is(Symbol::minus) || token().is(Symbol::plus) ? parseSigned() : parseChain();
  if (isMinus && operand->kind == Expression::Kind::literal) {
    const Value& value = static_cast<const Literal&>(*operand).value;
    const auto* integer = value.get<std::int64_t>();
    const auto* real = value.get<double>();
    const bool isSigned = (integer && *integer < 0) || (real && std::signbit(*real));
    if ((integer || real) && !isSigned && static_cast<const Literal&>(*operand).words.empty())
      return finish(std::make_unique<Literal>(integer ? Value(-*integer) : Value(-*real)), start);
  }
  auto unary = std::make_unique<Unary>();
  unary->op = isMinus ? Unary::Operator::negate : Unary::Operator::plus;
  unary->operand = std::move(operand);
  return finish(std::move(unary), start);
}

ExpressionPointer ScriptParser::parseCoercion(ExpressionPointer operand) {
  const std::size_t start = operand->range.offset;
  auto coercion = std::make_unique<Coercion>();
  coercion->operand = std::move(operand);
  advance();
  coercion->type = parseType();
  return finish(std::move(coercion), start);
}

ExpressionPointer ScriptParser::parseType() {
  const Nesting nesting(*this);
  const std::size_t start = offset();
  while (token().is(Keyword::the))
    advance();
  if (accept(Symbol::openBrace)) {
    auto types = std::make_unique<ListLiteral>();
    do
      types->items.push_back(parseType());
    while (accept(Symbol::comma));
    require(Symbol::closeBrace, "“,” or “}”");
    return finish(std::move(types), start);
  }
  // `reference` and `script` are reserved, and classes too.
  if (token().is(Keyword::reference) || token().is(Keyword::script)) {
    const bool isScript = token().is(Keyword::script);
    return makeLiteral(
        Value(ClassName{isScript ? fourCharCode("scpt") : fourCharCode("obj "), isScript ? "script" : "reference"}), 1);
  }
  if (auto found = acceptClass())
    return finish(std::make_unique<Literal>(Value(std::move(found->name))), start);
  return parseChain();
}

// `x exists` is the command `exists x`, with its object in front.
ExpressionPointer ScriptParser::parseExistence(ExpressionPointer operand, std::size_t tokens, bool isNegated) {
  const std::size_t start = operand->range.offset;
  advance(tokens);
  auto command = std::make_unique<Command>();
  command->term = scope_.findCommand(events::exists);
  command->direct = std::move(operand);
  command->form = Command::Form::objectFirst;
  ExpressionPointer result = finish(std::move(command), start);
  return isNegated ? makeDenial(std::move(result)) : std::move(result);
}

// `application "X" is running` reads the property `running`.
ExpressionPointer ScriptParser::parseRunning(ExpressionPointer operand, std::size_t tokens, bool isNegated) {
  const std::size_t start = operand->range.offset;
  advance(tokens);
  auto property = std::make_unique<PropertyAccess>();
  property->property = {fourCharCode("prun"), "running"};
  property->container = std::move(operand);
  ExpressionPointer result = finish(std::move(property), start);
  return isNegated ? makeDenial(std::move(result)) : std::move(result);
}

// `x does not exist` is `x exists is false`.
ExpressionPointer ScriptParser::makeDenial(ExpressionPointer statement) {
  const SourceRange range = statement->range;
  auto denial = std::make_unique<Binary>();
  denial->op = Binary::Operator::equal;
  denial->left = std::move(statement);
  denial->right = std::make_unique<Literal>(Value(false));
  denial->right->range = range;
  return finish(std::move(denial), range.offset);
}

bool ScriptParser::isStopped() const {
  const Token& next = token();
  if (next.kind == Token::Kind::symbol)
    return false;
  if (next.kind != Token::Kind::word || isLabel()) // the next part of a message
    return true;
  return isStoppedAt(0);
}

bool ScriptParser::canStartExpression() const {
  const Token& next = token();
  switch (next.kind) {
  case Token::Kind::number:
  case Token::Kind::ordinal:
  case Token::Kind::text:
  case Token::Kind::raw:
    return true;
  case Token::Kind::quotedName:
    return !isLabel();
  case Token::Kind::symbol:
    return next.is(Symbol::openParenthesis) || next.is(Symbol::openBrace) ||
           // `delay -1`, but `random number - 1`
           (next.is(Symbol::minus) && next.spaceBefore && !token(1).spaceBefore);
  case Token::Kind::word:
    break;
  case Token::Kind::possessive:
  case Token::Kind::lineEnd:
  case Token::Kind::scriptEnd:
  case Token::Kind::unknown:
    return false;
  }

  switch (next.keyword) {
  case Keyword::the:
  case Keyword::my:
  case Keyword::its:
  case Keyword::it:
  case Keyword::me:
  case Keyword::every:
  case Keyword::some:
  case Keyword::first:
  case Keyword::second:
  case Keyword::third:
  case Keyword::fourth:
  case Keyword::fifth:
  case Keyword::sixth:
  case Keyword::seventh:
  case Keyword::eighth:
  case Keyword::ninth:
  case Keyword::tenth:
  case Keyword::last:
  case Keyword::front:
  case Keyword::back:
  case Keyword::middle:
  case Keyword::true_:
  case Keyword::false_:
  case Keyword::not_:
  case Keyword::get:
  case Keyword::return_:
  case Keyword::ref:
  case Keyword::reference:
    return true;
  case Keyword::beginning:
  case Keyword::end:
    return token(1).is(Keyword::of);
  default:
    break;
  }
  if (isLabel() || token().is(Keyword::exists))
    return false;
  return !isReserved(next.keyword) ? !matchOperator(rest()).row : !scope_.match(rest()).empty();
}

} // namespace tabwright::applescript
