#include "applescript/syntax/ParseExpressions.h"

#include "applescript/syntax/Operators.h"
#include "applescript/syntax/ParseCommands.h"
#include "applescript/syntax/ParseReferences.h"
#include "applescript/syntax/WordRules.h"

#include <cmath>
#include <utility>

// Operators by precedence climbing over the table of Operators.h; `not` and the signs, which stand in front, aren't in
// it. A type ends what is to be coerced, so `a as text & b` goes on with the text though `&` binds tighter. Signs bind
// tighter than any operator: `-2 ^ 2` is 4.
namespace tabwright::applescript {

namespace {

ExpressionPointer parseBinary(ScriptParser& p, Precedence lowest);

/// An operand of an operator, with `not` and signs in front.
ExpressionPointer parseOperand(ScriptParser& p, Precedence lowest) {
  if (p.at(Keyword::not_)) {
    const ScriptParser::Nesting nesting(p);
    const std::size_t start = p.offset();
    auto unary = std::make_unique<Unary>();
    unary->op = Unary::Operator::logicalNot;
    p.advance();
    // Looser than comparisons: `not a = b` denies the comparison. Behind a tighter operator it takes no more than that.
    unary->operand = parseBinary(p, std::max(lowest, Precedence::logicalNot));
    return p.finish(std::move(unary), start);
  }
  if (p.at(Symbol::minus) || p.at(Symbol::plus))
    return parseSigned(p);
  return parseChain(p);
}

/// Behind `as`: a class, several in braces, or a variable that holds one. No operators: they go on with the result.
ExpressionPointer parseType(ScriptParser& p) {
  const ScriptParser::Nesting nesting(p);
  const std::size_t start = p.offset();
  while (p.at(Keyword::the))
    p.advance();
  if (p.accept(Symbol::openBrace)) {
    auto types = std::make_unique<ListLiteral>();
    p.parseItems(Symbol::closeBrace, [&] { types->items.push_back(parseType(p)); });
    return p.finish(std::move(types), start);
  }
  // `reference` and `script` are reserved, and classes too.
  if (p.at(Keyword::reference) || p.at(Keyword::script)) {
    const bool isScript = p.at(Keyword::script);
    return makeLiteral(
        p, Value(ClassName{isScript ? fourCharCode("scpt") : fourCharCode("obj "), isScript ? "script" : "reference"}),
        1);
  }
  if (auto found = acceptClass(p))
    return p.finish(std::make_unique<Literal>(Value(std::move(found->name))), start);
  return parseChain(p);
}

/// An operator behind its only operand. All but `as` are short for something that has a node already.
ExpressionPointer parseSuffix(ScriptParser& p, ExpressionPointer operand, OperatorMatch match) {
  using RowForm = OperatorRow::Form;
  const std::size_t start = operand->range.offset;
  p.advance(match.tokens);
  switch (match.row->form) {
  case RowForm::coercion: {
    auto coercion = std::make_unique<Coercion>();
    coercion->operand = std::move(operand);
    coercion->type = parseType(p);
    return p.finish(std::move(coercion), start);
  }
  case RowForm::existence:
  case RowForm::nonexistence: { // the command `exists x`, with its object in front
    auto command = std::make_unique<Command>();
    command->term = p.scope.findCommand(events::exists);
    command->direct = std::move(operand);
    command->form = Command::Form::objectFirst;
    operand = p.finish(std::move(command), start);
    break;
  }
  case RowForm::running:
  case RowForm::notRunning: { // reads the property `running`
    auto property = std::make_unique<PropertyAccess>();
    property->property = {fourCharCode("prun"), "running"};
    property->container = std::move(operand);
    operand = p.finish(std::move(property), start);
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
  return p.finish(std::move(denial), range.offset);
}

/// Operators that bind at least as tightly as `lowest`, from left to right: the loop goes on with what it has read as
/// the left operand, so a row of equal operators needs no recursion.
ExpressionPointer parseBinary(ScriptParser& p, Precedence lowest) {
  ExpressionPointer left = parseOperand(p, lowest);
  const std::size_t start = left->range.offset;
  while (!isStopped(p)) {
    const bool isSimple = !as<Binary>(*left) && !as<Unary>(*left);
    const OperatorMatch match = matchOperator(p.rest(), isSimple ? OperatorRows::all : OperatorRows::withoutStates);
    if (!match.row || match.row->precedence < lowest)
      break;
    if (match.row->form != OperatorRow::Form::binary) {
      left = parseSuffix(p, std::move(left), match);
      continue;
    }
    p.advance(match.tokens);
    auto binary = std::make_unique<Binary>();
    binary->op = match.row->op;
    binary->left = std::move(left);
    if (match.row->op == Binary::Operator::power) { // from right to left
      const ScriptParser::Nesting nesting(p);
      // The one operator that recurses at its own level, so each of a row is counted as nesting.
      binary->right = parseBinary(p, Precedence::power);
    } else {
      binary->right = parseBinary(p, static_cast<Precedence>(static_cast<int>(match.row->precedence) + 1));
    }
    left = p.finish(std::move(binary), start);
  }
  return left;
}

} // namespace

ExpressionPointer parseExpression(ScriptParser& p) {
  const ScriptParser::Nesting nesting(p);
  return parseBinary(p, Precedence::lowest);
}

ExpressionPointer parseSigned(ScriptParser& p) {
  const ScriptParser::Nesting nesting(p);
  const std::size_t start = p.offset();
  const bool isMinus = p.accept(Symbol::minus);
  if (!isMinus)
    p.accept(Symbol::plus);
  ExpressionPointer operand = p.at(Symbol::minus) || p.at(Symbol::plus) ? parseSigned(p) : parseChain(p);
  if (const auto* literal = as<Literal>(*operand); literal && isMinus) {
    const auto* integer = literal->value.get<std::int64_t>();
    const auto* real = literal->value.get<double>();
    // `- -1` stays an operation on a literal, and is printed with both signs.
    const bool isSigned = (integer && *integer < 0) || (real && std::signbit(*real));
    if ((integer || real) && !isSigned && literal->words.empty())
      return p.finish(std::make_unique<Literal>(integer ? Value(-*integer) : Value(-*real)), start);
  }
  auto unary = std::make_unique<Unary>();
  unary->op = isMinus ? Unary::Operator::negate : Unary::Operator::plus;
  unary->operand = std::move(operand);
  return p.finish(std::move(unary), start);
}

bool isStopped(const ScriptParser& p) {
  const Token& next = p.token();
  if (next.kind == Token::Kind::symbol)
    return false;
  if (next.kind != Token::Kind::word || p.isLabel()) // the next part of a message
    return true;
  return isStoppedAt(p, 0);
}

bool canStartExpression(const ScriptParser& p) {
  const Token& next = p.token();
  switch (next.kind) {
  case Token::Kind::number:
  case Token::Kind::ordinal:
  case Token::Kind::text:
  case Token::Kind::raw:
    return true;
  case Token::Kind::quotedName:
    return !p.isLabel();
  case Token::Kind::symbol:
    return next.is(Symbol::openParenthesis) || next.is(Symbol::openBrace) ||
           // `delay -1`, but `random number - 1`
           (next.is(Symbol::minus) && next.spaceBefore && !p.token(1).spaceBefore);
  case Token::Kind::word:
    break;
  case Token::Kind::possessive:
  case Token::Kind::lineEnd:
  case Token::Kind::scriptEnd:
  case Token::Kind::unknown:
    return false;
  }

  const auto argument = ruleFor(next.keyword).argument;
  if (argument == WordRule::Argument::always)
    return true;
  if (argument == WordRule::Argument::beforeOf)
    return p.token(1).is(Keyword::of);
  if (p.isLabel())
    return false;
  // A reserved word begins an argument only as the first of a dictionary's several; any other unless it is an operator.
  return !isReserved(next.keyword) ? !matchOperator(p.rest()).row : !p.scope.match(p.rest()).empty();
}

} // namespace tabwright::applescript
