#include "applescript/syntax/ScriptParser.h"

#include <cmath>
#include <utility>

// Operators by precedence climbing over the table of Operators.h; `not` and the signs, which stand in front, aren't in
// it. A type ends what is to be coerced, so `a as text & b` goes on with the text though `&` binds tighter.
namespace tabwright::applescript {

ExpressionPointer ScriptParser::parseExpression() {
  const Nesting nesting(*this);
  return parseBinary(Precedence::lowest);
}

ExpressionPointer ScriptParser::parseBinary(Precedence lowest) {
  ExpressionPointer left = parseOperand(lowest);
  const std::size_t start = left->range.offset;
  while (!isStopped()) {
    const bool isSimple = left->kind != Expression::Kind::binary && left->kind != Expression::Kind::unary;
    const OperatorMatch match = matchOperator(rest(), isSimple ? OperatorRows::all : OperatorRows::withoutStates);
    if (!match.row || match.row->precedence < lowest)
      break;
    if (match.row->form != OperatorRow::Form::binary) {
      left = parseSuffix(std::move(left), match);
      continue;
    }
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

ExpressionPointer ScriptParser::parseSuffix(ExpressionPointer operand, OperatorMatch match) {
  using RowForm = OperatorRow::Form;
  const std::size_t start = operand->range.offset;
  advance(match.tokens);
  switch (match.row->form) {
  case RowForm::coercion: {
    auto coercion = std::make_unique<Coercion>();
    coercion->operand = std::move(operand);
    coercion->type = parseType();
    return finish(std::move(coercion), start);
  }
  case RowForm::existence:
  case RowForm::nonexistence: { // the command `exists x`, with its object in
                                // front
    auto command = std::make_unique<Command>();
    command->term = scope_.findCommand(events::exists);
    command->direct = std::move(operand);
    command->form = Command::Form::objectFirst;
    operand = finish(std::move(command), start);
    break;
  }
  case RowForm::running:
  case RowForm::notRunning: { // reads the property `running`
    auto property = std::make_unique<PropertyAccess>();
    property->property = {fourCharCode("prun"), "running"};
    property->container = std::move(operand);
    operand = finish(std::move(property), start);
    break;
  }
  case RowForm::binary:
    break;
  }
  if (match.row->form == RowForm::existence || match.row->form == RowForm::running)
    return operand;
  // `x does not exist` is `x exists is false`.
  const SourceRange range = operand->range;
  auto denial = std::make_unique<Binary>();
  denial->op = Binary::Operator::equal;
  denial->left = std::move(operand);
  denial->right = std::make_unique<Literal>(Value(false));
  denial->right->range = range;
  return finish(std::move(denial), range.offset);
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

  const Argument argument = ruleFor(next.keyword).argument;
  if (argument == Argument::always)
    return true;
  if (argument == Argument::beforeOf)
    return token(1).is(Keyword::of);
  if (isLabel())
    return false;
  return !isReserved(next.keyword) ? !matchOperator(rest()).row : !scope_.match(rest()).empty();
}

} // namespace tabwright::applescript
