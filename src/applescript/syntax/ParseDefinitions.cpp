#include "applescript/syntax/ScriptParser.h"

#include <fmt/core.h>

#include <utility>

// What a script is made of at its outermost level: properties, handlers, script objects, and its imports.
namespace tabwright::applescript {

bool ScriptParser::startsDefinition() const {
  if (token().kind != Token::Kind::word)
    return false;
  switch (token().keyword) {
  case Keyword::on:
  case Keyword::to:
  case Keyword::property:
  case Keyword::prop:
    return true;
  default:
    return false;
  }
}

bool ScriptParser::startsUse() const {
  const Token& what = token(1);
  return token().is(Keyword::use) && (what.is(Keyword::appleScript) || what.is(Keyword::scripting) ||
                                      what.is(Keyword::framework) || what.is(Keyword::application) ||
                                      what.is(Keyword::app) || what.is(Keyword::script) || token(2).is(Symbol::colon));
}

Block ScriptParser::parseScriptBody(bool isWhole) {
  Block body;
  while (true) {
    while (token().kind == Token::Kind::lineEnd)
      advance();
    if (token().kind == Token::Kind::scriptEnd || (!isWhole && token().is(Keyword::end)))
      break;
    startLine();
    try {
      body.push_back(startsDefinition() || startsUse() ? parseDefinition() : parseStatement());
      requireLineEnd();
    } catch (ScriptError& error) {
      report(std::move(error));
      skipLine();
    }
  }
  checkDuplicates(body, isWhole);
  return body;
}

StatementPointer ScriptParser::parseDefinition() {
  if (token().is(Keyword::use))
    return parseUse();
  if (token().is(Keyword::property) || token().is(Keyword::prop))
    return parsePropertyDefinition();
  if (token(1).is(Keyword::error)) // `on error` without its `try`
    fail("expression");
  return parseHandler();
}

void ScriptParser::checkDuplicates(const Block& body, bool isWhole) {
  FoldedNames handlers;
  FoldedNames properties;
  const Statement* firstStatement = nullptr;
  for (const auto& statement : body) {
    if (statement->kind == Statement::Kind::handler) {
      const auto& name = static_cast<const HandlerDefinition&>(*statement).name;
      if (!name.empty() && !handlers.insert(name).second)
        report(syntaxError(errorNumber::duplicateHandler,
                           fmt::format("The handler {} is specified more than once.", name), statement->range));
    } else if (statement->kind == Statement::Kind::property) {
      const auto& name = static_cast<const PropertyDefinition&>(*statement).name.name;
      if (!name.empty() && !properties.insert(name).second)
        report(syntaxError(errorNumber::duplicateProperty,
                           fmt::format("The property {} is specified more than once.", name), statement->range));
    } else if (statement->kind != Statement::Kind::use && statement->kind != Statement::Kind::script &&
               statement->kind != Statement::Kind::declare && !firstStatement) {
      firstStatement = statement.get();
    }
  }
  if (isWhole && firstStatement && handlers.contains("run"))
    report(syntaxError(errorNumber::syntaxError,
                       "The script has a run handler, so no statement can "
                       "stand outside of handlers.",
                       firstStatement->range));
}

// ----------------------------------------------------------------- properties

StatementPointer ScriptParser::parsePropertyDefinition() {
  const std::size_t start = offset();
  auto statement = std::make_unique<PropertyDefinition>();
  advance();
  if (!isLabelAhead())
    fail("identifier");
  const Token& name = token();
  statement->name = parseLabel();
  require(Symbol::colon, "“:”");
  statement->value = parseExpression();
  scope_.bind(name.text);
  return finish(std::move(statement), start);
}

// ------------------------------------------------------------------- handlers

// The call `f of x from y` can't be told from the property `f of x` without knowing `f`, which may be defined below.
void ScriptParser::findLabelledHandlers() {
  const std::span<const Token> tokens = all();
  for (std::size_t i = 0; i + 2 < tokens.size(); ++i) {
    const bool isFirst = i == 0 || tokens[i - 1].kind == Token::Kind::lineEnd;
    if (!isFirst || !(tokens[i].is(Keyword::on) || tokens[i].is(Keyword::to)))
      continue;
    const Token& name = tokens[i + 1];
    const bool isName =
        name.kind == Token::Kind::quotedName || (name.kind == Token::Kind::word && !isReserved(name.keyword));
    moveTo(i + 2);
    if (isName && (token().is(Keyword::of) || token().is(Keyword::in) || token().is(Keyword::given) ||
                   findPreposition().second > 0))
      labelledHandlers_.insert(name.text);
  }
  moveTo(0);
}

StatementPointer ScriptParser::parseHandler() {
  const Nesting nesting(*this);
  const std::size_t start = offset();
  auto handler = std::make_unique<HandlerDefinition>();
  advance();
  scope_.enterBody();
  const std::size_t repeatsAround = std::exchange(repeats_, 0);
  parseHeader([&] {
    parseHandlerHeader(*handler);
    requireLineEnd();
  });

  openBlocks_.push_back(Keyword::on);
  handler->body = parseStatements();
  // `end` with any name closes a handler, but not `end tell`: there an `end` is missing above.
  const Token& word = token(1);
  if (token().is(Keyword::end) && !word.endsLine() && !isReserved(word.keyword) && !word.is(Keyword::using_)) {
    advance();
    while (token().kind == Token::Kind::word || token().kind == Token::Kind::quotedName ||
           token().is(Symbol::colon)) // `end setValue:forKey:`
      advance();
  } else if (token().is(Keyword::end) && word.endsLine()) {
    advance();
  } else {
    finishHandlerBadly(handler->name);
  }
  openBlocks_.pop_back();
  repeats_ = repeatsAround;
  scope_.leaveBody();
  return finish(std::move(handler), start);
}

void ScriptParser::finishHandlerBadly(const std::string& name) {
  const std::string expected = name.empty() ? "“end”" : fmt::format("“end” or “end {}”", name);
  if (token().is(Keyword::end))
    report(syntaxError(errorNumber::syntaxError,
                       fmt::format("Expected {} but found “end {}”.", expected, token(1).text),
                       token().range.joinedWith(token(1).range)));
  else
    report(expectedError(expected, describeFound(), token()));
  if (token().is(Keyword::end) || token().is(Keyword::else_))
    skipLine();
}

void ScriptParser::parseHandlerHeader(HandlerDefinition& handler) {
  const Token& name = token();
  const auto command = scope_.match(rest(), Term::Kind::command);
  const bool isName =
      name.kind == Token::Kind::quotedName || (name.kind == Token::Kind::word && !isReserved(name.keyword));
  if (!isName)
    fail("identifier");
  if (isLabel()) { // `on setValue:v forKey:k`
    parseMessageParameters(handler);
    return;
  }
  if (command && name.kind == Token::Kind::word) {
    handler.name = command->term->words;
    advance(command->words);
  } else {
    handler.name = name.text;
    advance();
  }

  if (token().is(Symbol::openParenthesis)) {
    parsePositionalParameters(handler);
  } else if (token().is(Keyword::of) || token().is(Keyword::in) || token().is(Keyword::given) ||
             findPreposition().second > 0) {
    handler.isLabelled = true;
    parseLabelledParameters(handler);
  } else if (!token().endsLine()) { // `on run argv`, `on open {first, second}`
    handler.direct = std::make_unique<Parameter>(parseParameter());
  }
}

void ScriptParser::parsePositionalParameters(HandlerDefinition& handler) {
  advance();
  if (accept(Symbol::closeParenthesis))
    return;
  do
    handler.positional.push_back(parseParameter());
  while (accept(Symbol::comma));
  require(Symbol::closeParenthesis, "“,” or “)”");
}

void ScriptParser::parseLabelledParameters(HandlerDefinition& handler) {
  if (accept(Keyword::of) || accept(Keyword::in))
    handler.direct = std::make_unique<Parameter>(parseParameter());
  while (true) {
    accept(Symbol::comma);
    const auto [preposition, tokens] = findPreposition();
    if (tokens == 0)
      break;
    advance(tokens);
    handler.labelled.emplace_back(preposition, parseParameter());
  }
  if (!accept(Keyword::given))
    return;
  do {
    if (!isLabel())
      fail("identifier");
    std::string label(token().text);
    advance(2);
    handler.labelled.emplace_back(std::move(label), parseParameter());
  } while (accept(Symbol::comma));
}

void ScriptParser::parseMessageParameters(HandlerDefinition& handler) {
  while (isLabel()) {
    handler.name += token().text;
    handler.name += ':';
    advance(2);
    handler.positional.push_back({parsePattern(), nullptr});
  }
}

Parameter ScriptParser::parseParameter() {
  Parameter parameter;
  parameter.pattern = parsePattern();
  if (accept(Symbol::colon))
    parameter.defaultValue = parseExpression();
  return parameter;
}

ExpressionPointer ScriptParser::parsePattern() {
  return token().is(Symbol::openBrace) ? parseTarget() : parseBinding();
}

// --------------------------------------------------------- scripts and imports

StatementPointer ScriptParser::parseScript() {
  const std::size_t start = offset();
  auto statement = std::make_unique<ScriptDefinition>();
  advance();
  parseHeader([&] {
    if (!token().endsLine())
      statement->name = parseBinding()->name;
    requireLineEnd();
  });
  scope_.enterBody();
  const std::size_t repeatsAround = std::exchange(repeats_, 0);
  openBlocks_.push_back(Keyword::script);
  statement->body = parseScriptBody(false);
  finishBlock(Keyword::script);
  openBlocks_.pop_back();
  repeats_ = repeatsAround;
  scope_.leaveBody();
  return finish(std::move(statement), start);
}

StatementPointer ScriptParser::parseUse() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Use>();
  advance();
  if (token(1).is(Symbol::colon)) {
    statement->alias = parseBinding()->name;
    advance();
  }

  const auto requireText = [this] {
    if (token().kind != Token::Kind::text)
      fail("“\"”");
    std::string text(token().text);
    advance();
    return text;
  };
  if (accept(Keyword::appleScript)) {
    statement->what = Use::What::appleScript;
  } else if (accept(Keyword::scripting)) {
    require(Keyword::additions);
    statement->what = Use::What::scriptingAdditions;
  } else if (accept(Keyword::framework)) {
    statement->what = Use::What::framework;
    statement->name = requireText();
  } else if (accept(Keyword::script)) {
    statement->what = Use::What::script;
    statement->name = requireText();
  } else if (accept(Keyword::application) || accept(Keyword::app)) {
    statement->what = Use::What::application;
    statement->byID = accept(Keyword::id);
    statement->name = requireText();
    if (const auto* terminology = statement->byID ? directory_.terminologyByID(statement->name)
                                                  : directory_.terminologyByName(statement->name))
      scope_.use(*terminology);
  } else {
    fail("“framework”, “application” or “script”");
  }

  if (accept(Keyword::version))
    statement->version = requireText();
  if ((token().is(Keyword::with) || token().is(Keyword::without)) && token(1).is(Keyword::importing)) {
    statement->imports = token().is(Keyword::with);
    advance(2);
  }
  return finish(std::move(statement), start);
}

} // namespace tabwright::applescript
