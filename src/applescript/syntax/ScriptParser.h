#pragma once

#include "applescript/lexer/Lexer.h"
#include "applescript/lexer/SyntaxErrors.h"
#include "applescript/syntax/Parser.h"
#include "applescript/syntax/TokenCursor.h"
#include "applescript/syntax/Tree.h"
#include "applescript/syntax/WordScope.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::applescript {

/// The parser behind `parse`: recursive descent over the tokens. It holds what the constructs have in common: the
/// place in the text, the words that mean something there, the errors found so far.
///
/// The constructs are functions over it, one each, in files by kind; `p` is the parser in all of them. A parse function
/// starts at the construct's first token and leaves the cursor behind its last. It throws the ScriptError of the first
/// thing that doesn't fit; `parseLine` catches, notes the error, and goes on at the next line. A function that several
/// files call is declared in ParseExpressions.h, ParseReferences.h, ParseCommands.h or ParseStatements.h. The words
/// that begin a construct stand in WordRules.cpp, the operators in Operators.cpp.
class ScriptParser : public TokenCursor {
public:
  /// Fills in `tree.body` and the tables of `tree`, whose `source` is set and was cut into `tokens`. All must outlive
  /// the parser, which takes the errors out of `tokens`.
  ScriptParser(SyntaxTree& tree, TokenList& tokens, const ApplicationDirectory& directory, const ParserLimits& limits);

  /// Once per object.
  std::vector<ScriptError> run();

  /// Counts how deep the parser is inside the script, and gives up beyond the limit.
  class Nesting {
  public:
    explicit Nesting(ScriptParser& parser);
    ~Nesting() { --parser_.depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

  private:
    ScriptParser& parser_;
  };

  /// The inside of a `tell`, with the words that its target brings; null for a target that only the run knows.
  class Inside {
  public:
    Inside(ScriptParser& parser, const Expression* target);
    ~Inside() { scope_.leaveTell(); }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

  private:
    WordScope& scope_;
  };

  void require(Keyword keyword);
  void require(Symbol symbol, std::string_view expected);
  void requireLineEnd();
  /// Parses `item, item, …` up to the closing sign, which is taken too.
  template <class Parse>
  void parseItems(Symbol closing, Parse parse);

  /// Runs `parse`. An error is noted and the rest of the line skipped; then false.
  template <class Parse>
  bool parseLine(Parse parse);
  /// The lines up to one that `isEnd` sees, each read by `parse`.
  Block parseLines(bool (*isEnd)(const ScriptParser&), StatementPointer (*parse)(ScriptParser&));
  /// At a line's first token: forgets what belonged to the line before.
  void startLine();

  [[noreturn]] void fail(std::string_view expected) const;
  void report(ScriptError error);
  [[nodiscard]] std::string describeFound() const;

  /// Sets the range, from the start to the last token taken, and the height. Throws when the tree gets too high.
  template <class Node>
  std::unique_ptr<Node> finish(std::unique_ptr<Node> node, std::size_t startOffset) {
    setRange(*node, startOffset);
    return node;
  }
  void setRange(Expression& node, std::size_t startOffset);
  void setRange(Statement& node, std::size_t startOffset) const { node.range = rangeFrom(startOffset); }
  void updateHeight(Expression& node) const;

  /// The dictionary of the application that an expression names literally; null for any other.
  [[nodiscard]] const Terminology* terminologyOf(const Expression* expression) const;

  SyntaxTree& tree;
  const ApplicationDirectory& directory;
  WordScope scope;
  std::vector<ScriptError> errors;
  std::vector<Keyword> openBlocks;
  std::size_t repeats = 0; ///< `repeat` blocks around the cursor, within the handler
  /// Commands whose arguments are being read, since the last bracket: their parameters' words end an expression.
  std::vector<const Command*> activeCommands;
  bool isTakingListApart = false; ///< the container of `{a, b} of c` is being read
  FoldedNames labelledHandlers;   ///< `on f of x from a`, found before the parse

private:
  /// Ends the whole parse: enough errors have been found.
  struct EnoughErrors {};

  TokenList& list_;
  const ParserLimits limits_;
  std::size_t depth_ = 0;
  std::size_t nextMention_ = 0;
  std::size_t lastErrorAt_ = std::string::npos;
};

template <class Parse>
void ScriptParser::parseItems(Symbol closing, Parse parse) {
  do
    parse();
  while (accept(Symbol::comma));
  require(closing, closing == Symbol::closeBrace ? "“,” or “}”" : "“,” or “)”");
}

template <class Parse>
bool ScriptParser::parseLine(Parse parse) {
  try {
    parse();
    return true;
  } catch (ScriptError& error) {
    report(std::move(error));
    skipLine();
    return false;
  }
}

} // namespace tabwright::applescript
