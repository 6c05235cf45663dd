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
/// that begin a construct stand in WordRules.cpp, the operators in Operators.cpp. The shape of nearly all of them:
///
///     StatementPointer parseReturn(ScriptParser& p) {
///       const std::size_t start = p.offset();
///       auto statement = std::make_unique<Return>();
///       p.advance();
///       if (!p.token().endsLine() && !p.at(Keyword::else_))
///         statement->value = parseExpression(p);
///       return p.finish(std::move(statement), start);
///     }
///
/// Every circle of calls holds a Nesting somewhere, so that no text takes the parser deeper than its limit.
class ScriptParser : public TokenCursor {
public:
  /// Fills in `tree.body` and the tables of `tree`, whose `source` is set and was cut into `tokens`. All must outlive
  /// the parser, which takes the errors out of `tokens`.
  ScriptParser(SyntaxTree& tree, TokenList& tokens, const ApplicationDirectory& directory, const ParserLimits& limits);

  /// Parses the whole script: the errors found, in source order, no more than the limit; with none of them `tree` is
  /// complete. Once per object.
  std::vector<ScriptError> run();

  /// Counts how deep the parser is inside the script while it lives, and beyond the limit ends the whole parse:
  /// recursion on a text of only brackets would else end the stack.
  class Nesting {
  public:
    explicit Nesting(ScriptParser& parser);
    ~Nesting() { --parser_.depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

  private:
    ScriptParser& parser_;
  };

  /// The inside of a `tell`, with the words that its target brings, while it lives; null for a target that only the run
  /// knows. `me` and `current application` bring none, and leave the script its names.
  class Inside {
  public:
    Inside(ScriptParser& parser, const Expression* target);
    ~Inside() { scope_.leaveTell(); }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

  private:
    WordScope& scope_;
  };

  /// Takes what must stand here, or throws what was expected and found. `expected` is how the sentence names it.
  void require(Keyword keyword);
  void require(Symbol symbol, std::string_view expected);
  /// At the end of the line, which isn't taken; or throws.
  void requireLineEnd();
  /// Parses `item, item, …` up to the closing sign, which is taken too.
  template <class Parse>
  void parseItems(Symbol closing, Parse parse);

  /// Runs `parse`. An error is noted and the rest of the line skipped, but not its end; then false.
  template <class Parse>
  bool parseLine(Parse parse);
  /// The lines up to one that `isEnd` sees, each read by `parse`.
  Block parseLines(bool (*isEnd)(const ScriptParser&), StatementPointer (*parse)(ScriptParser&));
  /// At a line's first token: forgets what belonged to the line before, and brings in the dictionaries of the
  /// applications that this one names.
  void startLine();

  /// Throws "Expected … but found …" for the token at the cursor.
  [[noreturn]] void fail(std::string_view expected) const;
  /// Notes an error, but a second one at the place of the last. Ends the whole parse when there are enough.
  void report(ScriptError error);
  /// The token at the cursor in words, as a dictionary's word where it is one.
  [[nodiscard]] std::string describeFound() const;

  /// Sets the range, from the start to the last token taken, and the height. Throws when the tree gets too high.
  template <class Node>
  std::unique_ptr<Node> finish(std::unique_ptr<Node> node, std::size_t startOffset) {
    setRange(*node, startOffset);
    return node;
  }
  void setRange(Expression& node, std::size_t startOffset);
  void setRange(Statement& node, std::size_t startOffset) const { node.range = rangeFrom(startOffset); }
  /// Sets the height from those of the children: called again for each node above when something is hung in below.
  void updateHeight(Expression& node) const;

  /// The dictionary of the application that an expression, or the root of its reference, names literally; null for any
  /// other, for one that isn't known, and for a null expression. It lives as long as the directory.
  [[nodiscard]] const Terminology* terminologyOf(const Expression* expression) const;

  /// The rest is open to the parse functions.
  SyntaxTree& tree;
  const ApplicationDirectory& directory;
  WordScope scope;
  std::vector<ScriptError> errors;
  /// The kinds of the blocks around the cursor, the innermost last; Keyword::on for a handler. An `end` that fits none
  /// of them is a slip.
  std::vector<Keyword> openBlocks;
  std::size_t repeats = 0; ///< `repeat` blocks around the cursor, within the handler
  /// Commands whose arguments are being read, since the last bracket: their parameters' words end an expression. They
  /// point to nodes under construction, so `startLine` clears what an error left.
  std::vector<const Command*> activeCommands;
  bool isTakingListApart = false; ///< the container of `{a, b} of c` is being read
  FoldedNames labelledHandlers;   ///< `on f of x from a`, found before the parse

private:
  /// Ends the whole parse: enough errors have been found.
  struct EnoughErrors {};

  TokenList& list_;
  const ParserLimits limits_;
  std::size_t depth_ = 0;
  /// The first of the token list's mentions that no line has taken yet.
  std::size_t nextMention_ = 0;
  /// The offset of the error noted last, in bytes.
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
