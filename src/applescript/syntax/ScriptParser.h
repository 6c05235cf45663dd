#pragma once

#include "applescript/lexer/Lexer.h"
#include "applescript/lexer/SyntaxErrors.h"
#include "applescript/syntax/Operators.h"
#include "applescript/syntax/Parser.h"
#include "applescript/syntax/TokenCursor.h"
#include "applescript/syntax/Tree.h"
#include "applescript/syntax/WordScope.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tabwright::applescript {

/// The parser behind `parse`: recursive descent over the tokens, one function per construct, spread over files by kind
/// of construct (ParseBlocks, ParseStatements, ParseExpressions, ParseReferences, …). What a word of the grammar begins
/// stands in WordRules.cpp, the operators in Operators.cpp.
///
/// A parse function starts at the construct's first token and leaves the cursor behind its last. It throws the
/// ScriptError of the first thing that doesn't fit; `parseStatements` and `parseHeader` catch, note the error, and go
/// on at the next line.
class ScriptParser : private TokenCursor {
public:
  /// Fills in `tree.body` and the tables of `tree`, whose `source` is set and was cut into `tokens`. All must outlive
  /// the parser, which takes the errors out of `tokens`.
  ScriptParser(SyntaxTree& tree, TokenList& tokens, const ApplicationDirectory& directory, const ParserLimits& limits);

  /// Once per object.
  std::vector<ScriptError> run();

private:
  /// Ends the whole parse: enough errors have been found.
  struct EnoughErrors {};

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

  // ---- Words of the grammar (WordRules.cpp)
  /// A word behind a command, as the beginning of its argument.
  enum class Argument {
    asTerm,   ///< only as a dictionary's word, or a name of the script's own
    always,   ///< begins one
    beforeOf, ///< begins one with `of` behind it
  };
  /// The constructs that a word of the grammar begins. Null for none; the functions answer null where what follows
  /// doesn't fit.
  struct WordRule {
    Keyword word = Keyword::none;
    Argument argument = Argument::asTerm;
    ExpressionPointer (*expression)(ScriptParser&) = nullptr;
    StatementPointer (ScriptParser::*statement)() = nullptr;
  };
  [[nodiscard]] static const WordRule& ruleFor(Keyword word);

  // ---- Tools (ScriptParser.cpp)
  void require(Keyword keyword);
  void require(Symbol symbol, std::string_view expected);
  void requireLineEnd();

  // ---- Errors (ScriptParser.cpp)
  [[noreturn]] void fail(std::string_view expected) const;
  void report(ScriptError error);
  [[nodiscard]] std::string describeFound() const;

  // ---- Nodes (ScriptParser.cpp)
  /// Sets the range, from the start to the last token taken, and the height. Throws when the tree gets too high.
  template <class Node>
  std::unique_ptr<Node> finish(std::unique_ptr<Node> node, std::size_t startOffset) {
    setRange(*node, startOffset);
    return node;
  }
  void setRange(Expression& node, std::size_t startOffset);
  void setRange(Statement& node, std::size_t startOffset) const;
  void updateHeight(Expression& node);

  // ---- Blocks (ParseBlocks.cpp)
  Block parseStatements();
  /// Parses the body of a block of that kind and its `end`.
  Block parseBody(Keyword kind);
  void finishBlock(Keyword kind);
  [[nodiscard]] bool isEndOfBlock() const;
  /// Runs `parse` and expects the line to end there. An error is noted and the rest of the line skipped; then false.
  template <class Parse>
  bool parseHeader(Parse parse);
  /// Parses a `tell`'s inside, with the words that its target brings.
  template <class Parse>
  void insideTell(const Expression* target, Parse parse);
  void explainByUnknownApplication(const Expression* target, std::size_t firstError);
  [[nodiscard]] const Terminology* terminologyOf(const Expression* expression) const;
  void startLine();
  /// Whether a keyword stands between a token and the cursor.
  [[nodiscard]] bool lineHas(std::size_t first, Keyword keyword) const;

  StatementPointer parseIf();
  bool parseCondition(ExpressionPointer& condition, bool& onOneLine);
  StatementPointer parseRepeat();
  void parseRepeatHeader(Repeat& repeat);
  StatementPointer parseTell();
  StatementPointer parseTry();
  void parseErrorHeader(Try& statement);

  // ---- More blocks (ParseScopes.cpp)
  StatementPointer parseConsidering();
  void parseAttributes(std::vector<Considering::Attribute>& attributes);
  StatementPointer parseWith();
  StatementPointer parseTimeout();
  StatementPointer parseTransaction();
  StatementPointer parseUsingTerms();

  // ---- Statements (ParseStatements.cpp)
  StatementPointer parseStatement();
  StatementPointer parseSet();
  StatementPointer parseCopy();
  StatementPointer parseReturn();
  StatementPointer parseError();
  StatementPointer parseExit();
  StatementPointer parseContinue();
  StatementPointer parseDeclaration();
  StatementPointer parseExpressionStatement();
  /// What `set` and `copy` may change.
  ExpressionPointer parseTarget();
  void requireTarget(const Expression& target, const Token& first) const;
  /// A name that becomes a variable here.
  std::unique_ptr<Variable> parseBinding();
  /// Whether the word at the cursor may become a variable here.
  [[nodiscard]] bool canBind() const;

  // ---- Definitions (ParseDefinitions.cpp)
  Block parseScriptBody(bool isWhole);
  StatementPointer parseDefinition();
  StatementPointer parsePropertyDefinition();
  StatementPointer parseHandler();
  void finishHandlerBadly(const std::string& name);
  void parseHandlerHeader(HandlerDefinition& handler);
  void parsePositionalParameters(HandlerDefinition& handler);
  void parseLabelledParameters(HandlerDefinition& handler);
  void parseMessageParameters(HandlerDefinition& handler);
  Parameter parseParameter();
  ExpressionPointer parsePattern();
  StatementPointer parseScript();
  StatementPointer parseUse();
  void checkDuplicates(const Block& body, bool isWhole);
  void findLabelledHandlers();
  [[nodiscard]] bool startsDefinition() const;
  [[nodiscard]] bool startsUse() const;

  // ---- Expressions (ParseExpressions.cpp)
  ExpressionPointer parseExpression();
  ExpressionPointer parseBinary(Precedence lowest);
  ExpressionPointer parseOperand(Precedence lowest);
  ExpressionPointer parseSigned();
  /// An operator that stands behind its operand.
  ExpressionPointer parseSuffix(ExpressionPointer operand, OperatorMatch match);
  ExpressionPointer parseType();
  /// Whether the cursor is at something that belongs to a construct around the expression.
  [[nodiscard]] bool isStopped() const;
  [[nodiscard]] bool canStartExpression() const;

  // ---- Primaries (ParsePrimaries.cpp, ParseLiterals.cpp, ParseRaw.cpp)
  ExpressionPointer parsePrimary();
  ExpressionPointer parseThe();
  ExpressionPointer parseTerm(const TermMatches& matches);
  ExpressionPointer parseName();
  ExpressionPointer parseNumber();
  ExpressionPointer parseParenthesized();
  ExpressionPointer parseBraces();
  ExpressionPointer parseApplication();
  ExpressionPointer parseReferenceTo(std::size_t words);
  ExpressionPointer parseConstant(const Term& term);
  Label parseLabel();
  [[nodiscard]] bool isLabelAhead() const;
  ExpressionPointer makeLiteral(Value value, std::size_t tokens, std::string words = {});
  ExpressionPointer parseRaw();
  ExpressionPointer parseSimple(Expression::Kind kind, std::size_t words);
  /// Takes one token and returns its offset.
  std::size_t consumeOne();
  /// Whether something that picks elements of a class stands behind its words: `3`, `id 5`, `before …`.
  [[nodiscard]] bool startsElementKey(std::size_t words) const;
  /// Whether a bare word is a variable although dictionaries have it.
  [[nodiscard]] bool isVariableDespite(const TermMatches& matches) const;

  // ---- References (ParseReferences.cpp, ParseElements.cpp)
  ExpressionPointer parseChain();
  ExpressionPointer parseContained();
  ExpressionPointer parsePossessives(ExpressionPointer head);
  ExpressionPointer parseMember();
  ExpressionPointer parseMessage();
  ExpressionPointer parseMemberOf(Expression::Kind owner);
  /// Puts a container around the innermost end of a reference: `name of first tab` and `w` give `name of first tab of
  /// w`.
  void attach(ExpressionPointer& node, ExpressionPointer container, Joint joint);
  void parseTest(ExpressionPointer& node);
  [[nodiscard]] bool isOf() const;

  struct FoundClass {
    ClassName name;
    bool isPlural = false;
  };
  /// The class that stands at the cursor, which then is behind it; nothing, and the cursor stays.
  std::optional<FoundClass> acceptClass();
  FoundClass requireClass();
  ExpressionPointer parseElement(FoundClass found, std::size_t startOffset);
  ExpressionPointer parseEvery();
  ExpressionPointer parsePicked(ElementAccess::Form form);
  ExpressionPointer parseOrdinal(std::int64_t number);
  ExpressionPointer parseInsertionPoint(InsertionPoint::Where where, std::size_t words);
  ExpressionPointer parseKey();
  ExpressionPointer parseRangeEnd();
  [[nodiscard]] bool canStartKey(std::size_t ahead = 0) const;
  [[nodiscard]] bool isStoppedAt(std::size_t ahead) const;
  std::unique_ptr<ElementAccess> makeElement(ElementAccess::Form form, FoundClass found);

  // ---- Commands and calls (ParseCommands.cpp)
  ExpressionPointer parseCommand(const Term& term, std::size_t words);
  void parseArguments(Command& command);
  bool parseArgument(Command& command);
  ExpressionPointer parseArgumentValue(FourCharCode code);
  bool parseSwitches(Command& command);
  struct FoundParameter {
    const ParameterTerm* term = nullptr;
    std::size_t tokens = 0;
  };
  [[nodiscard]] FoundParameter findParameter(const Command& command, std::size_t ahead = 0) const;
  ExpressionPointer parseCount(std::size_t words);
  ExpressionPointer parseCall(std::string name, std::size_t startOffset);
  ExpressionPointer parseLabelledCall(std::string name, std::size_t startOffset);
  void parsePrepositions(HandlerCall& call);
  void parseGiven(HandlerCall& call);
  std::vector<ExpressionPointer> parseCallArguments();
  ExpressionPointer parseRawEvent(std::string_view codes);
  /// The preposition of a labelled parameter at the cursor and its tokens: `from`, `out of`.
  [[nodiscard]] std::pair<std::string_view, std::size_t> findPreposition(std::size_t ahead = 0) const;
  [[nodiscard]] bool startsLabelledArguments(std::string_view name) const;

  SyntaxTree& tree_;
  TokenList& list_;
  const ApplicationDirectory& directory_;
  const ParserLimits limits_;

  std::size_t depth_ = 0;
  std::size_t nextMention_ = 0;
  std::size_t repeats_ = 0; ///< `repeat` blocks around the cursor, within the handler
  std::size_t lastErrorAt_ = std::string::npos;
  std::vector<ScriptError> errors_;
  std::vector<Keyword> openBlocks_;
  WordScope scope_;
  /// Commands whose arguments are being read, since the last bracket: their parameters' words end an expression.
  std::vector<const Command*> activeCommands_;
  FoldedNames labelledHandlers_; ///< `on f of x from a`, found before the parse
};

template <class Parse>
bool ScriptParser::parseHeader(Parse parse) {
  try {
    parse();
    return true;
  } catch (ScriptError& error) {
    report(std::move(error));
    skipLine();
    return false;
  }
}

template <class Parse>
void ScriptParser::insideTell(const Expression* target, Parse parse) {
  if (target && (target->kind == Expression::Kind::me || target->kind == Expression::Kind::currentApplication))
    scope_.enterOwnTell();
  else
    scope_.enterTell(terminologyOf(target));
  try {
    parse();
  } catch (...) {
    scope_.leaveTell();
    throw;
  }
  scope_.leaveTell();
}

} // namespace tabwright::applescript
