#include "applescript/syntax/ConsideringWords.h"
#include "applescript/syntax/ParseExpressions.h"
#include "applescript/syntax/ParseStatements.h"

#include <utility>

// Blocks that change how the statements inside are run or read: comparison of texts, time limits, dictionaries. A
// header is a line of its own, so a mistake in it is reported and the body parsed all the same; the words `with` and
// `using` begin other things too, for which null is answered before any token is taken.
namespace tabwright::applescript {

namespace {

/// `case, white space and hyphens`.
void parseAttributes(ScriptParser& p, std::vector<Considering::Attribute>& attributes) {
  do {
    p.accept(Keyword::and_); // `case, hyphens, and punctuation`
    const auto row = std::ranges::find_if(consideringTable, [&](const ConsideringRow& candidate) {
      return p.at(candidate.first) && (candidate.second == Keyword::none || p.token(1).is(candidate.second));
    });
    if (row == consideringTable.end())
      p.fail("application constant or consideration");
    p.advance(row->second == Keyword::none ? 1 : 2);
    attributes.push_back(row->attribute);
  } while (p.accept(Symbol::comma) || p.at(Keyword::and_));
}

/// `with timeout of n seconds … end timeout`.
StatementPointer parseTimeout(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Timeout>();
  p.advance(2);
  p.parseLine([&] {
    p.accept(Keyword::of);
    statement->seconds = parseExpression(p);
    // The unit may be left out; `second` goes with 1.
    if (!p.accept(Keyword::seconds) && p.at(Keyword::second))
      p.advance();
    p.requireLineEnd();
  });
  statement->body = parseBody(p, Keyword::timeout);
  return p.finish(std::move(statement), start);
}

/// `with transaction x … end transaction`; x may be left out.
StatementPointer parseTransaction(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Transaction>();
  p.advance(2);
  p.parseLine([&] {
    if (!p.token().endsLine())
      statement->session = parseExpression(p);
    p.requireLineEnd();
  });
  statement->body = parseBody(p, Keyword::transaction);
  return p.finish(std::move(statement), start);
}

} // namespace

// `considering a but ignoring b`, `ignoring a but considering b`, each closed by its own word.
StatementPointer parseConsidering(ScriptParser& p) {
  const std::size_t start = p.offset();
  auto statement = std::make_unique<Considering>();
  const Keyword kind = p.token().keyword;
  const bool considers = kind == Keyword::considering;
  p.advance();
  p.parseLine([&] {
    parseAttributes(p, considers ? statement->considered : statement->ignored);
    if (p.accept(Keyword::but)) {
      p.require(considers ? Keyword::ignoring : Keyword::considering);
      parseAttributes(p, considers ? statement->ignored : statement->considered);
    }
    p.requireLineEnd();
  });
  statement->body = parseBody(p, kind);
  return p.finish(std::move(statement), start);
}

StatementPointer parseWith(ScriptParser& p) {
  return p.token(1).is(Keyword::timeout)       ? parseTimeout(p)
         : p.token(1).is(Keyword::transaction) ? parseTransaction(p)
                                               : nullptr;
}

StatementPointer parseUsingTerms(ScriptParser& p) {
  if (!p.token(1).is(Keyword::terms))
    return nullptr;
  const std::size_t start = p.offset();
  auto statement = std::make_unique<UsingTerms>();
  p.advance(2);
  p.parseLine([&] {
    p.require(Keyword::from);
    statement->application = parseExpression(p);
    p.requireLineEnd();
  });
  // Behind the header, whose own words are those of the place around.
  const ScriptParser::Inside inside(p, statement->application.get());
  statement->body = parseBody(p, Keyword::using_);
  return p.finish(std::move(statement), start);
}

} // namespace tabwright::applescript
