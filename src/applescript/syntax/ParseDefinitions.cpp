#include "applescript/syntax/ParseCommands.h"
#include "applescript/syntax/ParseExpressions.h"
#include "applescript/syntax/ParseStatements.h"

#include <fmt/core.h>

#include <utility>

// The outermost level of a script: properties, handlers, script objects, and its imports; a script object has such a
// level of its own. Handlers with labels are looked for in all tokens ahead of the parse, since a call may stand above
// the handler it calls. Two handlers or properties of one name are found afterwards, when all of a level is known.
namespace tabwright::applescript {

namespace {

/// `use` is an ordinary name unless something that can be used follows, or an alias with its colon.
bool startsUse(const ScriptParser& p) {
  const Token& what = p.token(1);
  return p.at(Keyword::use) && (what.is(Keyword::appleScript) || what.is(Keyword::scripting) ||
                                what.is(Keyword::framework) || what.is(Keyword::application) || what.is(Keyword::app) ||
                                what.is(Keyword::script) || p.token(2).is(Symbol::colon));
}

/// `property name : value`; `prop` is short for it.
StatementPointer parsePropertyDefinition(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<PropertyDefinition>();
  p.advance();
  if (!isLabelAhead(p))
    p.fail("identifier");
  const Token& name = p.token();
  statement->name = parseLabel(p);
  p.require(Symbol::colon, "“:”");
  statement->value = parseExpression(p);
  p.scope.bind(name.text);
  return p.finish(std::move(statement), start);
}

/// Reports that the handler isn't closed where it should be, and by what it was found instead.
void finishHandlerBadly(ScriptParser& p, const std::string& name) {
  const std::string expected = name.empty() ? "“end”" : fmt::format("“end” or “end {}”", name);
  if (p.at(Keyword::end))
    p.report(syntaxError(errorNumber::syntaxError,
                         fmt::format("Expected {} but found “end {}”.", expected, p.token(1).text),
                         p.token().range.joinedWith(p.token(1).range)));
  else
    p.report(expectedError(expected, p.describeFound(), p.token()));
  // An `on` stays: it begins the next handler.
  if (p.at(Keyword::end) || p.at(Keyword::else_))
    p.skipLine();
}

ExpressionPointer parsePattern(ScriptParser& p) {
  return p.at(Symbol::openBrace) ? parseTarget(p) : parseBinding(p);
}

Parameter parseParameter(ScriptParser& p) {
  Parameter parameter;
  parameter.pattern = parsePattern(p);
  if (p.accept(Symbol::colon))
    parameter.defaultValue = parseExpression(p);
  return parameter;
}

void parsePositionalParameters(ScriptParser& p, HandlerDefinition& handler) {
  p.advance();
  if (p.accept(Symbol::closeParenthesis))
    return;
  p.parseItems(Symbol::closeParenthesis, [&] { handler.positional.push_back(parseParameter(p)); });
}

/// `of x from a to b given c:d`: the direct parameter first, then prepositions, then labels.
void parseLabelledParameters(ScriptParser& p, HandlerDefinition& handler) {
  if (p.accept(Keyword::of) || p.accept(Keyword::in))
    handler.direct = std::make_unique<Parameter>(parseParameter(p));
  while (true) {
    p.accept(Symbol::comma);
    const auto [preposition, tokens] = findPreposition(p);
    if (tokens == 0)
      break;
    p.advance(tokens);
    handler.labelled.emplace_back(preposition, parseParameter(p));
  }
  if (!p.accept(Keyword::given))
    return;
  do {
    if (!p.isLabel())
      p.fail("identifier");
    std::string label(p.token().text);
    p.advance(2);
    handler.labelled.emplace_back(std::move(label), parseParameter(p));
  } while (p.accept(Symbol::comma));
}

/// `setValue:v forKey:k`, a handler that messages of the Objective-C bridge call. All its labels are its name.
void parseMessageParameters(ScriptParser& p, HandlerDefinition& handler) {
  while (p.isLabel()) {
    handler.name += p.token().text;
    handler.name += ':';
    p.advance(2);
    handler.positional.push_back({parsePattern(p), nullptr});
  }
}

/// Behind `on` or `to`: a name with parameters in brackets, with labels, with one of neither, or with none.
void parseHandlerHeader(ScriptParser& p, HandlerDefinition& handler) {
  const Token& name = p.token();
  const auto command = p.scope.match(p.rest(), Term::Kind::command);
  if (!name.isName())
    p.fail("identifier");
  if (p.isLabel()) { // `on setValue:v forKey:k`
    parseMessageParameters(p, handler);
    return;
  }
  // A handler may have a command's name, also one of several words (`on choose from list`).
  if (command && name.kind == Token::Kind::word) {
    handler.name = command->term->words;
    p.advance(command->words);
  } else {
    handler.name = name.text;
    p.advance();
  }

  if (p.at(Symbol::openParenthesis)) {
    parsePositionalParameters(p, handler);
  } else if (startsLabels(p)) {
    handler.isLabelled = true;
    parseLabelledParameters(p, handler);
  } else if (!p.token().endsLine()) { // `on run argv`, `on open {first, second}`
    handler.direct = std::make_unique<Parameter>(parseParameter(p));
  }
}

/// The body of a handler or a script: its names are forgotten at its end, and no loop around it can be left from it.
class Body {
public:
  Body(ScriptParser& p, Keyword kind) : p_(p), repeatsAround_(std::exchange(p.repeats, 0)) {
    p.scope.enterBody();
    p.openBlocks.push_back(kind);
  }
  ~Body() {
    p_.openBlocks.pop_back();
    p_.scope.leaveBody();
    p_.repeats = repeatsAround_;
  }
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;

private:
  ScriptParser& p_;
  std::size_t repeatsAround_;
};

StatementPointer parseHandler(ScriptParser& p) {
  const ScriptParser::Nesting nesting(p);
  const std::size_t start = p.offset();
  auto handler = std::make_unique<HandlerDefinition>();
  p.advance();
  // Ahead of the header, so that the parameters are names of the body.
  const Body body(p, Keyword::on);
  p.parseLine([&] {
    parseHandlerHeader(p, *handler);
    p.requireLineEnd();
  });

  handler->body = parseStatements(p);
  // `end` with any name closes a handler, but not `end tell`: there an `end` is missing above.
  const Token& word = p.token(1);
  if (p.at(Keyword::end) && !word.endsLine() && !isReserved(word.keyword) && !word.is(Keyword::using_)) {
    p.advance();
    while (p.token().kind == Token::Kind::word || p.token().kind == Token::Kind::quotedName ||
           p.at(Symbol::colon)) // `end setValue:forKey:`
      p.advance();
  } else if (p.at(Keyword::end) && word.endsLine()) {
    p.advance();
  } else {
    finishHandlerBadly(p, handler->name);
  }
  return p.finish(std::move(handler), start);
}

/// `use`, an alias perhaps, the thing that is used, and `version "…"` and `without importing` behind it.
StatementPointer parseUse(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Use>();
  p.advance();
  if (p.token(1).is(Symbol::colon)) {
    statement->alias = parseBinding(p)->name;
    p.advance();
  }

  const auto requireText = [&p] {
    if (p.token().kind != Token::Kind::text)
      p.fail("“\"”");
    std::string text(p.token().text);
    p.advance();
    return text;
  };
  if (p.accept(Keyword::appleScript)) {
    statement->what = Use::What::appleScript;
  } else if (p.accept(Keyword::scripting)) {
    p.require(Keyword::additions);
    statement->what = Use::What::scriptingAdditions;
  } else if (p.accept(Keyword::framework)) {
    statement->what = Use::What::framework;
    statement->name = requireText();
  } else if (p.accept(Keyword::script)) {
    statement->what = Use::What::script;
    statement->name = requireText();
  } else if (p.accept(Keyword::application) || p.accept(Keyword::app)) {
    statement->what = Use::What::application;
    statement->byID = p.accept(Keyword::id);
    const std::size_t nameStart = p.offset();
    statement->name = requireText();
    if (!statement->alias.empty()) {
      auto name = std::make_unique<Literal>(Value(statement->name));
      auto reference = std::make_unique<ApplicationReference>();
      reference->by = statement->byID ? ApplicationReference::By::id : ApplicationReference::By::name;
      reference->designation = p.finish(std::move(name), nameStart);
      statement->value = p.finish(std::move(reference), nameStart);
    }
    if (const auto* terminology = statement->byID ? p.directory.terminologyByID(statement->name)
                                                  : p.directory.terminologyByName(statement->name))
      p.scope.use(*terminology);
  } else {
    p.fail("“framework”, “application” or “script”");
  }

  if (p.accept(Keyword::version))
    statement->version = requireText();
  if ((p.at(Keyword::with) || p.at(Keyword::without)) && p.token(1).is(Keyword::importing)) {
    statement->imports = p.at(Keyword::with);
    p.advance(2);
  }
  return p.finish(std::move(statement), start);
}

/// A line of the outermost level: a definition, or any statement.
StatementPointer parseDefinition(ScriptParser& p) {
  if (startsUse(p))
    return parseUse(p);
  if (p.at(Keyword::property) || p.at(Keyword::prop))
    return parsePropertyDefinition(p);
  if (!p.at(Keyword::on) && !p.at(Keyword::to))
    return parseStatement(p);
  if (p.token(1).is(Keyword::error)) // `on error` without its `try`
    p.fail("expression");
  return parseHandler(p);
}

/// Reports what no line alone shows to be wrong. `isWhole`: the level of the whole script, which has a run handler.
void checkDuplicates(ScriptParser& p, const Block& body, bool isWhole) {
  FoldedNames handlers;
  FoldedNames properties;
  const Statement* firstStatement = nullptr;
  for (const auto& statement : body) {
    if (const auto* handler = as<HandlerDefinition>(*statement)) {
      const auto& name = handler->name;
      if (!name.empty() && !handlers.insert(name).second)
        p.report(syntaxError(errorNumber::duplicateHandler,
                             fmt::format("The handler {} is specified more than once.", name), statement->range));
    } else if (const auto* property = as<PropertyDefinition>(*statement)) {
      const auto& name = property->name.name;
      if (!name.empty() && !properties.insert(name).second)
        p.report(syntaxError(errorNumber::duplicateProperty,
                             fmt::format("The property {} is specified more than once.", name), statement->range));
    } else if (statement->kind != Statement::Kind::use && statement->kind != Statement::Kind::script &&
               statement->kind != Statement::Kind::declare && !firstStatement) {
      firstStatement = statement.get();
    }
  }
  if (isWhole && firstStatement && handlers.contains("run"))
    p.report(syntaxError(errorNumber::syntaxError,
                         "The script has a run handler, so no statement can stand outside of handlers.",
                         firstStatement->range));
}

// The call `f of x from y` can't be told from the property `f of x` without knowing `f`, which may be defined below.
void findLabelledHandlers(ScriptParser& p) {
  const std::span<const Token> tokens = p.all();
  // By the first two words of lines alone, without parsing; the cursor is only borrowed for startsLabels.
  for (std::size_t i = 0; i + 2 < tokens.size(); ++i) {
    const bool isFirst = i == 0 || tokens[i - 1].kind == Token::Kind::lineEnd;
    if (!isFirst || !(tokens[i].is(Keyword::on) || tokens[i].is(Keyword::to)))
      continue;
    p.moveTo(i + 2);
    if (tokens[i + 1].isName() && startsLabels(p))
      p.labelledHandlers.insert(tokens[i + 1].text);
  }
  p.moveTo(0);
}

} // namespace

Block parseScriptBody(ScriptParser& p) {
  findLabelledHandlers(p);
  Block body =
      p.parseLines([](const ScriptParser& at) { return at.token().kind == Token::Kind::scriptEnd; }, parseDefinition);
  checkDuplicates(p, body, true);
  return body;
}

// `script name … end script`. Its name is bound outside, and so ahead of its body.
StatementPointer parseScript(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<ScriptDefinition>();
  p.advance();
  p.parseLine([&] {
    if (!p.token().endsLine())
      statement->name = parseBinding(p)->name;
    p.requireLineEnd();
  });
  const Body body(p, Keyword::script);
  // Unlike in other blocks, an `on` begins a handler here, and goes on with the level.
  const auto isEnd = [](const ScriptParser& at) {
    return at.token().kind == Token::Kind::scriptEnd || at.at(Keyword::end);
  };
  statement->body = p.parseLines(isEnd, parseDefinition);
  checkDuplicates(p, statement->body, false);
  finishBlock(p, Keyword::script);
  return p.finish(std::move(statement), start);
}

} // namespace tabwright::applescript
