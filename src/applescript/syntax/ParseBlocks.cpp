#include "applescript/syntax/ScriptParser.h"
#include "applescript/values/Errors.h"

#include <fmt/core.h>

#include <array>
#include <utility>

// Statements that hold others. A block whose header is wrong is still read to its `end`, so that one mistake in a
// header isn't reported again at every line of the body.
namespace tabwright::applescript {

namespace {

/// The words behind `end` for a kind of block.
std::string_view closingWords(Keyword kind) {
  return kind == Keyword::using_ ? "using terms from" : spelling(kind);
}

constexpr auto blockKinds = std::to_array<Keyword>({Keyword::if_, Keyword::repeat, Keyword::tell, Keyword::try_,
                                                    Keyword::considering, Keyword::ignoring, Keyword::timeout,
                                                    Keyword::transaction, Keyword::using_, Keyword::script});

bool isBlockKind(const Token& token) {
  return token.kind == Token::Kind::word && std::ranges::find(blockKinds, token.keyword) != blockKinds.end();
}

} // namespace

Block ScriptParser::parseStatements() {
  Block block;
  while (true) {
    while (token().kind == Token::Kind::lineEnd)
      advance();
    if (isEndOfBlock())
      return block;
    startLine();
    try {
      block.push_back(parseStatement());
      requireLineEnd();
    } catch (ScriptError& error) {
      report(std::move(error));
      skipLine();
    }
  }
}

bool ScriptParser::isEndOfBlock() const {
  if (token().kind == Token::Kind::scriptEnd || token().is(Keyword::else_))
    return true;
  if (token().is(Keyword::end)) // but `end of xs` is an expression
    return !token(1).is(Keyword::of) && !token(1).is(Keyword::in) && token(1).kind != Token::Kind::possessive;
  // A handler can't begin inside of a block: an `end` is missing above it.
  return token().is(Keyword::on);
}

Block ScriptParser::parseBody(Keyword kind) {
  openBlocks_.push_back(kind);
  Block body = parseStatements();
  finishBlock(kind);
  openBlocks_.pop_back();
  return body;
}

void ScriptParser::finishBlock(Keyword kind) {
  const std::string expected = fmt::format("“end” or “end {}”", closingWords(kind));
  if (!token().is(Keyword::end)) {
    report(expectedError(expected, describeFound(), token()));
    return;
  }

  const Token& word = token(1);
  if (word.endsLine() || word.is(kind)) {
    advance(word.endsLine() ? 1 : 2);
    if (kind == Keyword::using_ && accept(Keyword::terms))
      accept(Keyword::from);
    if (kind == Keyword::script && !token().endsLine())
      advance(); // its name
    return;
  }

  // The wrong word: another block's `end`, which then closes that one, or a slip.
  const std::string found = fmt::format("“end {}”", isBlockKind(word) ? closingWords(word.keyword) : word.text);
  report(syntaxError(errorNumber::syntaxError, fmt::format("Expected {} but found {}.", expected, found),
                     token().range.joinedWith(word.range)));
  const bool closesOuter =
      std::ranges::find(openBlocks_, isBlockKind(word) ? word.keyword : Keyword::on) != openBlocks_.end();
  if (!closesOuter)
    skipLine();
}

void ScriptParser::startLine() {
  activeCommands_.clear(); // an error may have left some
  std::vector<const Terminology*> mentioned;
  while (nextMention_ < list_.mentions.size() && list_.mentions[nextMention_].firstOfLine <= position()) {
    const TokenList::Mention& mention = list_.mentions[nextMention_++];
    const std::string_view name = all()[mention.name].text;
    const Terminology* terminology =
        mention.isID ? directory_.terminologyByID(name) : directory_.terminologyByName(name);
    if (terminology && mention.firstOfLine == position())
      mentioned.push_back(terminology);
    if (terminology && std::ranges::find(tree_.terminologies, terminology) == tree_.terminologies.end())
      tree_.terminologies.push_back(terminology);
  }
  scope_.startLine(std::move(mentioned));
}

bool ScriptParser::lineHas(std::size_t first, Keyword keyword) const {
  return std::ranges::any_of(since(first), [keyword](const Token& token) { return token.is(keyword); });
}

// ------------------------------------------------------------------------- if

bool ScriptParser::parseCondition(ExpressionPointer& condition, bool& onOneLine) {
  const std::size_t start = position();
  const bool isFine = parseHeader([&] {
    condition = parseExpression();
    if (!accept(Keyword::then) && !token().endsLine())
      fail("“then”");
    onOneLine = !token().endsLine();
  });
  if (!isFine) // `then` in the middle of the line is what a one-line form has
    onOneLine = lineHas(start, Keyword::then) && !previous().is(Keyword::then);
  return isFine;
}

StatementPointer ScriptParser::parseIf() {
  const std::size_t start = offset();
  auto statement = std::make_unique<If>();
  advance();
  auto& first = statement->branches.emplace_back();
  const bool isFine = parseCondition(first.condition, statement->onOneLine);

  if (statement->onOneLine) {
    if (!isFine)
      return statement;
    first.body.push_back(parseStatement());
    while (token().is(Keyword::else_) && token(1).is(Keyword::if_)) {
      advance(2);
      auto& branch = statement->branches.emplace_back();
      branch.condition = parseExpression();
      require(Keyword::then);
      branch.body.push_back(parseStatement());
    }
    if (accept(Keyword::else_))
      statement->otherwise.emplace().push_back(parseStatement());
    return finish(std::move(statement), start);
  }

  openBlocks_.push_back(Keyword::if_);
  first.body = parseStatements();
  while (token().is(Keyword::else_) && !statement->otherwise) {
    startLine();
    advance();
    if (accept(Keyword::if_)) {
      auto& branch = statement->branches.emplace_back();
      bool onOneLine = false;
      if (parseCondition(branch.condition, onOneLine))
        parseHeader([&] { requireLineEnd(); });
      branch.body = parseStatements();
    } else {
      parseHeader([&] { requireLineEnd(); });
      statement->otherwise = parseStatements();
    }
  }
  finishBlock(Keyword::if_);
  openBlocks_.pop_back();
  return finish(std::move(statement), start);
}

// --------------------------------------------------------------------- repeat

StatementPointer ScriptParser::parseRepeat() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Repeat>();
  advance();
  parseHeader([&] {
    parseRepeatHeader(*statement);
    requireLineEnd();
  });
  ++repeats_;
  statement->body = parseBody(Keyword::repeat);
  --repeats_;
  return finish(std::move(statement), start);
}

void ScriptParser::parseRepeatHeader(Repeat& repeat) {
  if (token().endsLine())
    return;
  if (accept(Keyword::while_) || token().is(Keyword::until)) {
    repeat.form = accept(Keyword::until) ? Repeat::Form::untilTrue : Repeat::Form::whileTrue;
    repeat.condition = parseExpression();
  } else if (accept(Keyword::with)) {
    repeat.variable = parseBinding();
    if (accept(Keyword::in)) {
      repeat.form = Repeat::Form::items;
      repeat.items = parseExpression();
    } else if (accept(Keyword::from)) {
      repeat.form = Repeat::Form::range;
      repeat.from = parseExpression();
      require(Keyword::to);
      repeat.to = parseExpression();
      if (accept(Keyword::by))
        repeat.by = parseExpression();
    } else {
      fail("“from” or “in”");
    }
  } else {
    repeat.form = Repeat::Form::times;
    repeat.condition = parseExpression();
    require(Keyword::times);
  }
}

// ----------------------------------------------------------------------- tell

StatementPointer ScriptParser::parseTell() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Tell>();
  advance();
  const std::size_t first = position();
  const bool isFine = parseHeader([&] {
    statement->target = parseExpression();
    if (!token().endsLine() && !token().is(Keyword::to))
      fail("end of line or “to”");
  });
  if (!isFine && lineHas(first, Keyword::to))
    return statement;
  statement->onOneLine = accept(Keyword::to);
  const std::size_t errorsBefore = errors_.size();
  insideTell(statement->target.get(), [&] {
    if (statement->onOneLine)
      statement->body.push_back(parseStatement());
    else
      statement->body = parseBody(Keyword::tell);
  });
  if (errors_.size() > errorsBefore)
    explainByUnknownApplication(statement->target.get(), errorsBefore);
  return finish(std::move(statement), start);
}

// Words of an application that isn't there can't be known: that is the mistake, ahead of those in the body.
void ScriptParser::explainByUnknownApplication(const Expression* target, std::size_t firstError) {
  if (!target || target->kind != Expression::Kind::application || terminologyOf(target) ||
      static_cast<const ApplicationReference&>(*target).designation->kind != Expression::Kind::literal)
    return;
  const std::string_view words = std::string_view(tree_.source).substr(target->range.offset, target->range.length);
  errors_.insert(errors_.begin() + static_cast<std::ptrdiff_t>(firstError),
                 syntaxError(errorNumber::noSuchObject, errors::cannotGet(words).sentence(), target->range));
}

const Terminology* ScriptParser::terminologyOf(const Expression* expression) const {
  while (expression) {
    switch (expression->kind) {
    case Expression::Kind::property:
      expression = static_cast<const PropertyAccess*>(expression)->container.get();
      break;
    case Expression::Kind::element:
      expression = static_cast<const ElementAccess*>(expression)->container.get();
      break;
    case Expression::Kind::parenthesized:
      expression = static_cast<const Parenthesized*>(expression)->inner.get();
      break;
    case Expression::Kind::application: {
      const auto& reference = static_cast<const ApplicationReference&>(*expression);
      if (reference.designation->kind != Expression::Kind::literal)
        return nullptr;
      const auto* name = static_cast<const Literal&>(*reference.designation).value.text();
      if (!name)
        return nullptr;
      return reference.by == ApplicationReference::By::id ? directory_.terminologyByID(*name)
                                                          : directory_.terminologyByName(*name);
    }
    default: // a target that only the run knows
      return nullptr;
    }
  }
  return nullptr;
}

// ------------------------------------------------------------------------ try

StatementPointer ScriptParser::parseTry() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Try>();
  advance();
  parseHeader([&] { requireLineEnd(); });
  openBlocks_.push_back(Keyword::try_);
  statement->body = parseStatements();
  if (token().is(Keyword::on) && token(1).is(Keyword::error)) {
    startLine();
    statement->hasHandler = true;
    advance(2);
    parseHeader([&] {
      parseErrorHeader(*statement);
      requireLineEnd();
    });
    statement->handler = parseStatements();
  }
  finishBlock(Keyword::try_);
  openBlocks_.pop_back();
  return finish(std::move(statement), start);
}

void ScriptParser::parseErrorHeader(Try& statement) {
  if (!token().endsLine() && !token().is(Keyword::number) && !token().is(Keyword::from) && !token().is(Keyword::to) &&
      !token().is(Keyword::partial))
    statement.message = parseBinding();
  while (!token().endsLine()) {
    if (accept(Keyword::number)) {
      if (token().kind == Token::Kind::number || token().is(Symbol::minus))
        statement.onlyNumber = parseSigned();
      else
        statement.number = parseBinding();
    } else if (accept(Keyword::from)) {
      statement.from = parseBinding();
    } else if (token().is(Keyword::partial) && token(1).is(Keyword::result)) {
      advance(2);
      statement.partialResult = parseBinding();
    } else if (accept(Keyword::to)) {
      statement.to = parseBinding();
    } else {
      return;
    }
  }
}

} // namespace tabwright::applescript
