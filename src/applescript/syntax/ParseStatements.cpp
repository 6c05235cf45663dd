#include "applescript/syntax/ScriptParser.h"

#include <utility>

// Statements without a body. What a statement is, its first word tells; all else is an expression.
namespace tabwright::applescript {

StatementPointer ScriptParser::parseStatement() {
  const Nesting nesting(*this);
  const Token& first = token();
  if (first.kind != Token::Kind::word)
    return parseExpressionStatement();

  // A command of several words may begin with a reserved one: `set the clipboard to`.
  if (isReserved(first.keyword) && scope_.match(rest(), Term::Kind::command))
    return parseExpressionStatement();

  if (const auto parse = ruleFor(first.keyword).statement) {
    if (StatementPointer parsed = (this->*parse)())
      return parsed;
  }
  return parseExpressionStatement();
}

StatementPointer ScriptParser::parseExpressionStatement() {
  const std::size_t start = offset();
  auto statement = std::make_unique<ExpressionStatement>();
  statement->expression = parseExpression();
  return finish(std::move(statement), start);
}

// ----------------------------------------------------------------- assignment

StatementPointer ScriptParser::parseSet() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Assignment>();
  advance();
  statement->target = parseTarget();
  require(Keyword::to);
  statement->value = parseExpression();
  return finish(std::move(statement), start);
}

StatementPointer ScriptParser::parseCopy() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Assignment>();
  statement->form = Assignment::Form::copy;
  advance();
  statement->value = parseExpression();
  require(Keyword::to);
  statement->target = parseTarget();
  return finish(std::move(statement), start);
}

ExpressionPointer ScriptParser::parseTarget() {
  const Nesting nesting(*this);
  const std::size_t start = offset();
  const Token& first = token();
  if (accept(Symbol::openBrace)) {
    if (isLabelAhead()) {
      auto record = std::make_unique<RecordLiteral>();
      do {
        Label label = parseLabel();
        require(Symbol::colon, "“:”");
        record->fields.emplace_back(std::move(label), parseTarget());
      } while (accept(Symbol::comma));
      require(Symbol::closeBrace, "“,” or “}”");
      return finish(std::move(record), start);
    }
    auto list = std::make_unique<ListLiteral>();
    do
      list->items.push_back(parseTarget());
    while (accept(Symbol::comma));
    require(Symbol::closeBrace, "“,” or “}”");
    return finish(std::move(list), start);
  }

  while (token().is(Keyword::the))
    advance();
  const Token& next = token(1);
  const bool isAlone = next.is(Keyword::to) || next.is(Symbol::comma) || next.is(Symbol::closeBrace) || next.endsLine();
  const bool isWord = token().kind == Token::Kind::word && !isReserved(token().keyword);
  if (isAlone && isWord && canBind())
    return parseBinding();

  ExpressionPointer target = parseChain();
  while (target->kind == Expression::Kind::parenthesized)
    target = std::move(static_cast<Parenthesized&>(*target).inner);
  requireTarget(*target, first);
  const Token& last = previous(); // its text lives as long as the parse; the node's may not
  if (target->kind == Expression::Kind::variable && last.kind != Token::Kind::symbol)
    scope_.bind(last.text);
  return target;
}

void ScriptParser::requireTarget(const Expression& target, const Token& first) const {
  switch (target.kind) {
  case Expression::Kind::variable:
  case Expression::Kind::property:
  case Expression::Kind::element:
  case Expression::Kind::insertionPoint:
    return;
  default: {
    const auto matches = scope_.match(std::span(&first, 1));
    throw expectedError("variable name or property",
                        matches.empty() ? describe(first) : std::string(describe(matches.front())), first);
  }
  }
}

// A bare name that the inner-most dictionaries have can only be bound where no `tell` makes it theirs.
bool ScriptParser::canBind() const {
  const auto matches = scope_.match(rest());
  return matches.empty() || isVariableDespite(matches) ||
         (!scope_.isInTell() && matches.front().words == 1 && matches.front().term->kind != Term::Kind::command);
}

std::unique_ptr<Variable> ScriptParser::parseBinding() {
  while (token().is(Keyword::the))
    advance();
  const Token& name = token();
  const bool isName = name.kind == Token::Kind::quotedName ||
                      (name.kind == Token::Kind::word && !isReserved(name.keyword) && canBind());
  if (!isName)
    fail("variable name");
  auto variable = std::make_unique<Variable>(std::string(name.text));
  scope_.bind(name.text);
  const std::size_t start = offset();
  advance();
  return finish(std::move(variable), start);
}

StatementPointer ScriptParser::parseDeclaration() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Declare>();
  statement->scope = token().is(Keyword::global) ? Declare::Scope::global : Declare::Scope::local;
  advance();
  do
    statement->variables.push_back(parseBinding());
  while (accept(Symbol::comma));
  return finish(std::move(statement), start);
}

// ----------------------------------------------------------------- the others

StatementPointer ScriptParser::parseReturn() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Return>();
  advance();
  if (!token().endsLine() && !token().is(Keyword::else_))
    statement->value = parseExpression();
  return finish(std::move(statement), start);
}

StatementPointer ScriptParser::parseError() {
  const std::size_t start = offset();
  auto statement = std::make_unique<RaiseError>();
  advance();
  const auto isDetail = [this] {
    return token().endsLine() || token().is(Keyword::number) || token().is(Keyword::from) || token().is(Keyword::to) ||
           (token().is(Keyword::partial) && token(1).is(Keyword::result)) || token().is(Keyword::else_);
  };
  if (!isDetail())
    statement->message = parseExpression();
  while (!token().endsLine()) {
    if (accept(Keyword::number)) {
      statement->number = parseExpression();
    } else if (accept(Keyword::from)) {
      statement->from = parseExpression();
    } else if (token().is(Keyword::partial) && token(1).is(Keyword::result)) {
      advance(2);
      statement->partialResult = parseExpression();
    } else if (accept(Keyword::to)) {
      statement->to = parseExpression();
    } else {
      break;
    }
  }
  return finish(std::move(statement), start);
}

StatementPointer ScriptParser::parseExit() {
  const std::size_t start = offset();
  auto statement = std::make_unique<SimpleStatement>(Statement::Kind::exitRepeat);
  if (repeats_ == 0)
    throw syntaxError(errorNumber::syntaxError, "Can’t exit from a repeat here: there is none around.", token().range);
  advance();
  accept(Keyword::repeat);
  return finish(std::move(statement), start);
}

StatementPointer ScriptParser::parseContinue() {
  const std::size_t start = offset();
  auto statement = std::make_unique<ContinueStatement>();
  advance();
  const Token& first = token();
  statement->call = parseExpression();
  if (statement->call->kind == Expression::Kind::variable) {
    // `continue idle`-like calls of a handler without parameters.
    auto call = std::make_unique<HandlerCall>();
    call->name = static_cast<const Variable&>(*statement->call).name;
    statement->call = finish(std::move(call), first.range.offset);
  } else if (statement->call->kind != Expression::Kind::handlerCall &&
             statement->call->kind != Expression::Kind::command && statement->call->kind != Expression::Kind::message) {
    throw expectedError("identifier or command name", describe(first), first);
  }
  return finish(std::move(statement), start);
}

} // namespace tabwright::applescript
