#include "applescript/syntax/ParseExpressions.h"
#include "applescript/syntax/ParseStatements.h"
#include "applescript/values/Errors.h"

#include <fmt/core.h>

#include <array>
#include <utility>

// Statements that hold others. A block whose header is wrong is still read to its `end`, so that one mistake in a
// header isn't reported again at every line of the body. The kinds of the blocks around are kept in `openBlocks`: an
// `end` that may be another one's is reported once and then closes that; one that can't is taken for a slip.
namespace tabwright::applescript {

namespace {

/// The words behind `end` for a kind of block.
std::string_view closingWords(Keyword kind) {
  return kind == Keyword::using_ ? "using terms from" : spelling(kind);
}

// Handlers are not among them: behind their `end` stands a name, no word of the grammar.
constexpr auto blockKinds = std::to_array<Keyword>({Keyword::if_, Keyword::repeat, Keyword::tell, Keyword::try_,
                                                    Keyword::considering, Keyword::ignoring, Keyword::timeout,
                                                    Keyword::transaction, Keyword::using_, Keyword::script});

bool isBlockKind(const Token& token) {
  return token.kind == Token::Kind::word && std::ranges::find(blockKinds, token.keyword) != blockKinds.end();
}

/// No statement of the block begins here; whether it is the right end, finishBlock sees.
bool isEndOfBlock(const ScriptParser& p) {
  if (p.token().kind == Token::Kind::scriptEnd || p.at(Keyword::else_))
    return true;
  if (p.at(Keyword::end)) // but `end of xs` is an expression
    return !p.token(1).is(Keyword::of) && !p.token(1).is(Keyword::in) && p.token(1).kind != Token::Kind::possessive;
  // A handler can't begin inside of a block: an `end` is missing above it.
  return p.at(Keyword::on);
}

/// A word of the line that a mistake cut short tells whether it was a one-line form, which has no `end`.
bool lineHas(const ScriptParser& p, std::size_t first, Keyword keyword) {
  return std::ranges::any_of(p.since(first), [keyword](const Token& token) { return token.is(keyword); });
}

/// False when there was a mistake, which is reported; `onOneLine` is set all the same.
bool parseCondition(ScriptParser& p, ExpressionPointer& condition, bool& onOneLine) {
  const std::size_t start = p.position();
  const bool isFine = p.parseLine([&] {
    condition = parseExpression(p);
    if (!p.accept(Keyword::then) && !p.token().endsLine())
      p.fail("“then”");
    onOneLine = !p.token().endsLine();
  });
  if (!isFine) // `then` in the middle of the line is what a one-line form has
    onOneLine = lineHas(p, start, Keyword::then) && !p.previous().is(Keyword::then);
  return isFine;
}

/// Behind `repeat`: nothing, `n times`, `while x`, `until x`, `with x in xs`, or `with i from a to b by c`.
void parseRepeatHeader(ScriptParser& p, Repeat& repeat) {
  if (p.token().endsLine())
    return;
  if (p.accept(Keyword::while_) || p.at(Keyword::until)) {
    repeat.form = p.accept(Keyword::until) ? Repeat::Form::untilTrue : Repeat::Form::whileTrue;
    repeat.condition = parseExpression(p);
  } else if (p.accept(Keyword::with)) {
    repeat.variable = parseBinding(p);
    if (p.accept(Keyword::in)) {
      repeat.form = Repeat::Form::items;
      repeat.items = parseExpression(p);
    } else if (p.accept(Keyword::from)) {
      repeat.form = Repeat::Form::range;
      repeat.from = parseExpression(p);
      p.require(Keyword::to);
      repeat.to = parseExpression(p);
      if (p.accept(Keyword::by))
        repeat.by = parseExpression(p);
    } else {
      p.fail("“from” or “in”");
    }
  } else {
    repeat.form = Repeat::Form::times;
    repeat.condition = parseExpression(p);
    p.require(Keyword::times);
  }
}

// Words of an application that isn't there can't be known: that is the mistake, ahead of those in the body.
void explainByUnknownApplication(ScriptParser& p, const Expression* target, std::size_t firstError) {
  const auto* application = target ? as<ApplicationReference>(*target) : nullptr;
  if (!application || !as<Literal>(*application->designation) || p.terminologyOf(target))
    return;
  const std::string_view words = std::string_view(p.tree.source).substr(target->range.offset, target->range.length);
  p.errors.insert(p.errors.begin() + static_cast<std::ptrdiff_t>(firstError),
                  syntaxError(errorNumber::noSuchObject, errors::cannotGet(words).sentence(), target->range));
}

/// The parts of an error, as `error` raises it and `on error` takes it apart.
template <class Node, class Number, class Part>
void parseErrorParts(ScriptParser& p, Node& node, Number parseNumber, Part parsePart) {
  const auto isPartialResult = [&p] { return p.at(Keyword::partial) && p.token(1).is(Keyword::result); };
  // `else` ends it too: `if x then error "y" else return 1`.
  if (!p.token().endsLine() && !p.at(Keyword::number) && !p.at(Keyword::from) && !p.at(Keyword::to) &&
      !p.at(Keyword::else_) && !isPartialResult())
    node.message = parsePart(p);
  while (!p.token().endsLine()) {
    if (p.accept(Keyword::number)) {
      parseNumber();
    } else if (p.accept(Keyword::from)) {
      node.from = parsePart(p);
    } else if (isPartialResult()) {
      p.advance(2);
      node.partialResult = parsePart(p);
    } else if (p.accept(Keyword::to)) {
      node.to = parsePart(p);
    } else {
      return;
    }
  }
}

} // namespace

Block parseStatements(ScriptParser& p) {
  return p.parseLines(isEndOfBlock, parseStatement);
}

Block parseBody(ScriptParser& p, Keyword kind) {
  p.openBlocks.push_back(kind);
  Block body = parseStatements(p);
  finishBlock(p, kind);
  p.openBlocks.pop_back();
  return body;
}

void finishBlock(ScriptParser& p, Keyword kind) {
  const std::string expected = fmt::format("“end” or “end {}”", closingWords(kind));
  if (!p.at(Keyword::end)) {
    p.report(expectedError(expected, p.describeFound(), p.token()));
    return;
  }

  const Token& word = p.token(1);
  if (word.endsLine() || word.is(kind)) {
    p.advance(word.endsLine() ? 1 : 2);
    if (kind == Keyword::using_ && p.accept(Keyword::terms))
      p.accept(Keyword::from);
    if (kind == Keyword::script && !p.token().endsLine())
      p.advance(); // its name
    return;
  }

  // The wrong word: another block's `end`, which then closes that one, or a slip.
  const std::string found = fmt::format("“end {}”", isBlockKind(word) ? closingWords(word.keyword) : word.text);
  p.report(syntaxError(errorNumber::syntaxError, fmt::format("Expected {} but found {}.", expected, found),
                       p.token().range.joinedWith(word.range)));
  // A word of no block may be the name of the handler around.
  const bool closesOuter =
      std::ranges::find(p.openBlocks, isBlockKind(word) ? word.keyword : Keyword::on) != p.openBlocks.end();
  if (!closesOuter)
    p.skipLine();
}

// `if x then`, a block, and any number of `else if`; or all on one line, with one statement each and no `end`. Which of
// the two it is shows only behind `then`.
StatementPointer parseIf(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<If>();
  p.advance();
  auto& first = statement->branches.emplace_back();
  const bool isFine = parseCondition(p, first.condition, statement->onOneLine);

  if (statement->onOneLine) {
    if (!isFine)
      return statement;
    first.body.push_back(parseStatement(p));
    while (p.at(Keyword::else_) && p.token(1).is(Keyword::if_)) {
      p.advance(2);
      auto& branch = statement->branches.emplace_back();
      branch.condition = parseExpression(p);
      p.require(Keyword::then);
      branch.body.push_back(parseStatement(p));
    }
    if (p.accept(Keyword::else_))
      statement->otherwise.emplace().push_back(parseStatement(p));
    return p.finish(std::move(statement), start);
  }

  p.openBlocks.push_back(Keyword::if_);
  first.body = parseStatements(p);
  // An `else` behind the last one is left for finishBlock to complain of.
  while (p.at(Keyword::else_) && !statement->otherwise) {
    p.startLine();
    p.advance();
    if (p.accept(Keyword::if_)) {
      auto& branch = statement->branches.emplace_back();
      bool onOneLine = false;
      // A mistake has taken the rest of the line with it.
      if (parseCondition(p, branch.condition, onOneLine))
        p.parseLine([&] { p.requireLineEnd(); });
      branch.body = parseStatements(p);
    } else {
      statement->otherwiseAt = p.previous().range.offset;
      p.parseLine([&] { p.requireLineEnd(); });
      statement->otherwise = parseStatements(p);
    }
  }
  finishBlock(p, Keyword::if_);
  p.openBlocks.pop_back();
  return p.finish(std::move(statement), start);
}

StatementPointer parseRepeat(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Repeat>();
  p.advance();
  p.parseLine([&] {
    parseRepeatHeader(p, *statement);
    p.requireLineEnd();
  });
  ++p.repeats;
  statement->body = parseBody(p, Keyword::repeat);
  --p.repeats;
  return p.finish(std::move(statement), start);
}

// `tell x` with a block, or `tell x to` with a statement. The target itself is read in the words of the place around.
StatementPointer parseTell(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Tell>();
  p.advance();
  const std::size_t first = p.position();
  const bool isFine = p.parseLine([&] {
    statement->target = parseExpression(p);
    if (!p.token().endsLine() && !p.at(Keyword::to))
      p.fail("end of line or “to”");
  });
  // The one-line form ends here: there is no body to look for.
  if (!isFine && lineHas(p, first, Keyword::to))
    return statement;
  statement->onOneLine = p.accept(Keyword::to);
  const std::size_t errorsBefore = p.errors.size();
  {
    const ScriptParser::Inside inside(p, statement->target.get());
    if (statement->onOneLine)
      statement->body.push_back(parseStatement(p));
    else
      statement->body = parseBody(p, Keyword::tell);
  }
  if (p.errors.size() > errorsBefore)
    explainByUnknownApplication(p, statement->target.get(), errorsBefore);
  return p.finish(std::move(statement), start);
}

// Not by parseBody: `on error` stands between two bodies of one block, and ends the first as any `on` does.
StatementPointer parseTry(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Try>();
  p.advance();
  p.parseLine([&] { p.requireLineEnd(); });
  p.openBlocks.push_back(Keyword::try_);
  statement->body = parseStatements(p);
  if (p.at(Keyword::on) && p.token(1).is(Keyword::error)) {
    p.startLine();
    statement->hasHandler = true;
    statement->handlerAt = p.offset();
    p.advance(2);
    p.parseLine([&] {
      const auto number = [&] {
        // `number -128` restricts the handler to that error, `number n` names its number.
        if (p.token().kind == Token::Kind::number || p.at(Symbol::minus))
          statement->onlyNumber = p.at(Symbol::minus) ? parseSigned(p) : parseNumber(p);
        else
          statement->number = parseBinding(p);
      };
      parseErrorParts(p, *statement, number, parseBinding);
      p.requireLineEnd();
    });
    statement->handler = parseStatements(p);
  }
  finishBlock(p, Keyword::try_);
  p.openBlocks.pop_back();
  return p.finish(std::move(statement), start);
}

// `error "text" number n from x partial result y to z`, all parts optional.
StatementPointer parseError(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<RaiseError>();
  p.advance();
  parseErrorParts(p, *statement, [&] { statement->number = parseExpression(p); }, parseExpression);
  return p.finish(std::move(statement), start);
}

} // namespace tabwright::applescript
