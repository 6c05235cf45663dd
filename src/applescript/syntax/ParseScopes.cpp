#include "applescript/syntax/ConsideringWords.h"
#include "applescript/syntax/ScriptParser.h"

#include <utility>

// Blocks that change how the statements inside are run or read: comparison of texts, time limits, dictionaries.
namespace tabwright::applescript {

StatementPointer ScriptParser::parseConsidering() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Considering>();
  const Keyword kind = token().keyword;
  const bool considers = kind == Keyword::considering;
  advance();
  parseHeader([&] {
    parseAttributes(considers ? statement->considered : statement->ignored);
    if (accept(Keyword::but)) {
      require(considers ? Keyword::ignoring : Keyword::considering);
      parseAttributes(considers ? statement->ignored : statement->considered);
    }
    requireLineEnd();
  });
  statement->body = parseBody(kind);
  return finish(std::move(statement), start);
}

void ScriptParser::parseAttributes(std::vector<Considering::Attribute>& attributes) {
  do {
    accept(Keyword::and_); // `case, hyphens, and punctuation`
    const auto row = std::ranges::find_if(consideringTable, [&](const ConsideringRow& candidate) {
      return token().is(candidate.first) && (candidate.second == Keyword::none || token(1).is(candidate.second));
    });
    if (row == consideringTable.end())
      fail("application constant or consideration");
    advance(row->second == Keyword::none ? 1 : 2);
    attributes.push_back(row->attribute);
  } while (accept(Symbol::comma) || token().is(Keyword::and_));
}

StatementPointer ScriptParser::parseWith() {
  return token(1).is(Keyword::timeout)       ? parseTimeout()
         : token(1).is(Keyword::transaction) ? parseTransaction()
                                             : nullptr;
}

StatementPointer ScriptParser::parseTimeout() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Timeout>();
  advance(2);
  parseHeader([&] {
    accept(Keyword::of);
    statement->seconds = parseExpression();
    if (!accept(Keyword::seconds) && token().is(Keyword::second))
      advance();
    requireLineEnd();
  });
  statement->body = parseBody(Keyword::timeout);
  return finish(std::move(statement), start);
}

StatementPointer ScriptParser::parseTransaction() {
  const std::size_t start = offset();
  auto statement = std::make_unique<Transaction>();
  advance(2);
  parseHeader([&] {
    if (!token().endsLine())
      statement->session = parseExpression();
    requireLineEnd();
  });
  statement->body = parseBody(Keyword::transaction);
  return finish(std::move(statement), start);
}

StatementPointer ScriptParser::parseUsingTerms() {
  if (!token(1).is(Keyword::terms))
    return nullptr;
  const std::size_t start = offset();
  auto statement = std::make_unique<UsingTerms>();
  advance(2);
  parseHeader([&] {
    require(Keyword::from);
    statement->application = parseExpression();
    requireLineEnd();
  });
  insideTell(statement->application.get(), [&] { statement->body = parseBody(Keyword::using_); });
  return finish(std::move(statement), start);
}

} // namespace tabwright::applescript
