#include "applescript/syntax/ParseStatements.h"

#include "applescript/syntax/ParseExpressions.h"
#include "applescript/syntax/ParseReferences.h"
#include "applescript/syntax/WordRules.h"

#include <utility>

// Statements without a body. The first word tells which statement it is; all else is an expression, also where the
// word's rule finds that what follows doesn't fit (`using`, `with`). Targets of `set` and `copy` are parsed as
// references and looked at afterwards; only a bare name is told beforehand, since it is bound here and so is no
// dictionary's word.
namespace tabwright::applescript {

namespace {

StatementPointer parseExpressionStatement(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<ExpressionStatement>();
  statement->expression = parseExpression(p);
  return p.finish(std::move(statement), start);
}

/// Throws for an expression that nothing can be assigned to. The message names its first token, as a dictionary's word
/// where it is one.
void requireTarget(const ScriptParser& p, const Expression& target, const Token& first) {
  switch (target.kind) {
  case Expression::Kind::variable:
  case Expression::Kind::property:
  case Expression::Kind::element:
  case Expression::Kind::insertionPoint:
    return;
  default: {
    const auto matches = p.scope.match(std::span(&first, 1));
    throw expectedError("variable name or property",
                        matches.empty() ? describe(first) : std::string(describe(matches.front())), first);
  }
  }
}

// `{width, height} of r`, where the names are no variables: tokens are looked at up to the closing brace, since a list
// of targets would bind them.
bool isListOfParts(const ScriptParser& p) {
  std::size_t open = 0, ahead = 0;
  do {
    open += p.token(ahead).is(Symbol::openBrace) ? 1 : 0;
    open -= p.token(ahead).is(Symbol::closeBrace) ? 1 : 0;
    ++ahead;
  } while (open > 0 && !p.token(ahead).endsLine());
  return p.token(ahead).is(Keyword::of) || p.token(ahead).is(Keyword::in);
}

// A bare name that the inner-most dictionaries have can only be bound where no `tell` makes it theirs.
bool canBind(const ScriptParser& p) {
  const auto matches = p.scope.match(p.rest());
  return matches.empty() || isVariableDespite(p, matches) ||
         (!p.scope.isInTell() && matches.front().words == 1 && matches.front().term->kind != Term::Kind::command);
}

} // namespace

StatementPointer parseStatement(ScriptParser& p) {
  const ScriptParser::Nesting nesting(p);
  const Token& first = p.token();
  if (first.kind != Token::Kind::word)
    return parseExpressionStatement(p);

  // A command of several words may begin with a reserved one: `set the clipboard to`.
  if (isReserved(first.keyword) && p.scope.match(p.rest(), Term::Kind::command))
    return parseExpressionStatement(p);

  if (const auto parse = ruleFor(first.keyword).statement) {
    if (StatementPointer parsed = parse(p))
      return parsed;
  }
  return parseExpressionStatement(p);
}

StatementPointer parseSet(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Assignment>();
  p.advance();
  statement->target = parseTarget(p);
  p.require(Keyword::to);
  statement->value = parseExpression(p);
  return p.finish(std::move(statement), start);
}

// `copy v to x`: `set` the other way round, but of a copy; the evaluator makes it.
StatementPointer parseCopy(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Assignment>();
  statement->form = Assignment::Form::copy;
  p.advance();
  statement->value = parseExpression(p);
  p.require(Keyword::to);
  statement->target = parseTarget(p);
  return p.finish(std::move(statement), start);
}

ExpressionPointer parseTarget(ScriptParser& p) {
  const ScriptParser::Nesting nesting(p);
  const Token& first = p.token();
  if (p.at(Symbol::openBrace) && !p.token(1).is(Symbol::closeBrace)) {
    if (!isListOfParts(p))
      return parseBraces(p, parseTarget);
    // parseChain takes such a list apart: each item has its container then.
    ExpressionPointer list = parseChain(p);
    if (!as<ListLiteral>(*list))
      requireTarget(p, *list, first);
    return list;
  }

  while (p.at(Keyword::the))
    p.advance();
  const Token& next = p.token(1);
  const bool isAlone = next.is(Keyword::to) || next.is(Symbol::comma) || next.is(Symbol::closeBrace) || next.endsLine();
  // A word with something behind it may be a dictionary's: `set name of w to x`.
  if (isAlone && p.token().kind == Token::Kind::word && p.token().isName() && canBind(p))
    return parseBinding(p);

  ExpressionPointer target = parseChain(p);
  // `set (x) to 1` assigns to x; the brackets aren't kept.
  while (auto* brackets = as<Parenthesized>(*target))
    target = std::move(brackets->inner);
  requireTarget(p, *target, first);
  const Token& last = p.previous(); // its text lives as long as the parse; the node's may not
  if (as<Variable>(*target) && last.kind != Token::Kind::symbol)
    p.scope.bind(last.text);
  return target;
}

std::unique_ptr<Variable> parseBinding(ScriptParser& p) {
  while (p.at(Keyword::the))
    p.advance();
  const Token& name = p.token();
  if (!name.isName() || (name.kind == Token::Kind::word && !canBind(p)))
    p.fail("variable name");
  auto variable = std::make_unique<Variable>(std::string(name.text));
  p.scope.bind(name.text);
  const std::size_t start = p.offset();
  p.advance();
  return p.finish(std::move(variable), start);
}

// `global a, b`, `local a, b`.
StatementPointer parseDeclaration(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Declare>();
  statement->scope = p.at(Keyword::global) ? Declare::Scope::global : Declare::Scope::local;
  p.advance();
  do
    statement->variables.push_back(parseBinding(p));
  while (p.accept(Symbol::comma));
  return p.finish(std::move(statement), start);
}

StatementPointer parseReturn(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Return>();
  p.advance();
  // `if x then return else beep`.
  if (!p.token().endsLine() && !p.at(Keyword::else_))
    statement->value = parseExpression(p);
  return p.finish(std::move(statement), start);
}

StatementPointer parseExit(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<ExitRepeat>();
  // A loop around a handler or script doesn't count: Body in ParseDefinitions.cpp.
  if (p.repeats == 0)
    throw syntaxError(errorNumber::syntaxError, "Can’t exit from a repeat here: there is none around.",
                      p.token().range);
  p.advance();
  p.accept(Keyword::repeat);
  return p.finish(std::move(statement), start);
}

StatementPointer parseContinue(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<ContinueStatement>();
  p.advance();
  const Token& first = p.token();
  statement->call = parseExpression(p);
  if (const auto* name = as<Variable>(*statement->call)) {
    // `continue idle`-like calls of a handler without parameters.
    auto call = std::make_unique<HandlerCall>();
    call->name = name->name;
    statement->call = p.finish(std::move(call), first.range.offset);
  } else if (!as<HandlerCall>(*statement->call) && !as<Command>(*statement->call) &&
             !as<ObjectiveCMessage>(*statement->call)) {
    throw expectedError("identifier or command name", describe(first), first);
  }
  return p.finish(std::move(statement), start);
}

} // namespace tabwright::applescript
