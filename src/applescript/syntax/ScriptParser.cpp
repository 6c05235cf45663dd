#include "applescript/syntax/ScriptParser.h"

#include "applescript/syntax/Children.h"
#include "applescript/syntax/ParseExpressions.h"
#include "applescript/syntax/ParseStatements.h"

#include <fmt/core.h>

#include <utility>

// Tools that the constructs share: lines, errors, ranges, the words of a `tell`. A mistake is thrown to the nearest
// `parseLine`, which skips to the end of the line: statements end there, so the next line most likely makes sense
// again. Only what makes all that follows senseless, or too much of it, ends the whole parse (EnoughErrors).
namespace tabwright::applescript {

ParseResult parse(std::string source, const ApplicationDirectory& directory, const ParserLimits& limits) {
  ParseResult result;
  if (source.size() > limits.sourceBytes) {
    result.errors.push_back(syntaxError(errorNumber::outOfMemory, "The script is too large.", {}));
    return result;
  }
  auto tree = std::make_unique<SyntaxTree>();
  tree->source = std::move(source);
  TokenList tokens = tokenize(tree->source);
  // No parse function sees comments: only the printer asks for them.
  tree->comments = std::move(tokens.comments);
  ScriptParser parser(*tree, tokens, directory, limits);
  result.errors = parser.run();
  if (result.errors.empty())
    result.tree = std::move(tree);
  return result;
}

ScriptParser::ScriptParser(SyntaxTree& tree, TokenList& tokens, const ApplicationDirectory& directory,
                           const ParserLimits& limits)
    : TokenCursor(tokens.tokens), tree(tree), directory(directory), list_(tokens), limits_(limits) {
  tree.terminologies.push_back(&languageTerminology());
}

std::vector<ScriptError> ScriptParser::run() {
  // The lexer's come first and have no order with the parser's, so all are sorted, and cut to the limit only then.
  errors = std::move(list_.errors);
  try {
    tree.body = parseScriptBody(*this);
  } catch (const EnoughErrors&) {
    // Those found so far stand in `errors`.
  }
  std::ranges::sort(errors, {}, [](const ScriptError& error) {
    return std::pair<std::size_t, std::string>(error.range()->offset, error.sentence());
  });
  if (errors.size() > limits_.errors)
    errors.erase(errors.begin() + static_cast<std::ptrdiff_t>(limits_.errors), errors.end());
  return std::move(errors);
}

ScriptParser::Nesting::Nesting(ScriptParser& parser) : parser_(parser) {
  if (parser_.depth_ >= parser_.limits_.nesting) {
    // Going on at the next line would only find `end`s without their blocks.
    parser_.report(syntaxError(errorNumber::syntaxError, "The script is nested too deeply.", parser_.token().range));
    throw EnoughErrors();
  }
  ++parser_.depth_;
}

ScriptParser::Inside::Inside(ScriptParser& parser, const Expression* target) : scope_(parser.scope) {
  if (target && (as<Me>(*target) || as<CurrentApplication>(*target)))
    scope_.enterOwnTell();
  else
    scope_.enterTell(parser.terminologyOf(target));
}

Block ScriptParser::parseLines(bool (*isEnd)(const ScriptParser&), StatementPointer (*parse)(ScriptParser&)) {
  Block block;
  while (true) {
    // Empty lines, and the line end that each statement leaves.
    while (token().kind == Token::Kind::lineEnd)
      advance();
    if (isEnd(*this))
      return block;
    startLine();
    parseLine([&] {
      block.push_back(parse(*this));
      requireLineEnd();
    });
  }
}

void ScriptParser::startLine() {
  activeCommands.clear(); // an error may have left some, and the middle of a list
  isTakingListApart = false;
  // Mentions of lines that no startLine saw, such as those behind an `end`, only join the tree's dictionaries.
  std::vector<const Terminology*> mentioned;
  while (nextMention_ < list_.mentions.size() && list_.mentions[nextMention_].firstOfLine <= position()) {
    const TokenList::Mention& mention = list_.mentions[nextMention_++];
    const std::string_view name = all()[mention.name].text;
    const Terminology* terminology = mention.isID ? directory.terminologyByID(name) : directory.terminologyByName(name);
    // A dictionary of the line; and one of the tree, whose printer must know every word that may be a term.
    if (terminology && mention.firstOfLine == position())
      mentioned.push_back(terminology);
    if (terminology && std::ranges::find(tree.terminologies, terminology) == tree.terminologies.end())
      tree.terminologies.push_back(terminology);
  }
  scope.startLine(std::move(mentioned));
}

const Terminology* ScriptParser::terminologyOf(const Expression* expression) const {
  if (!expression)
    return nullptr;
  // Down to the root: `tell window 1 of application "X"` speaks X's words.
  if (const auto* property = as<PropertyAccess>(*expression))
    return terminologyOf(property->container.get());
  if (const auto* element = as<ElementAccess>(*expression))
    return terminologyOf(element->container.get());
  if (const auto* brackets = as<Parenthesized>(*expression))
    return terminologyOf(brackets->inner.get());
  const auto* application = as<ApplicationReference>(*expression);
  const auto* literal = application ? as<Literal>(*application->designation) : nullptr;
  const std::string* name = literal ? literal->value.text() : nullptr;
  if (!name)
    return nullptr; // a target that only the run knows
  return application->by == ApplicationReference::By::id ? directory.terminologyByID(*name)
                                                         : directory.terminologyByName(*name);
}

void ScriptParser::require(Keyword keyword) {
  if (!accept(keyword))
    fail(fmt::format("“{}”", spelling(keyword)));
}

void ScriptParser::require(Symbol symbol, std::string_view expected) {
  if (!accept(symbol))
    fail(expected);
}

void ScriptParser::requireLineEnd() {
  // A block that lacks its `end` stops in front of a line that is not its own.
  const bool isAtLineStart = position() > 0 && previous().kind == Token::Kind::lineEnd;
  if (!token().endsLine() && !isAtLineStart)
    fail("end of line");
}

std::string ScriptParser::describeFound() const {
  if (const auto matches = scope.match(rest()); !matches.empty() && !isVariableDespite(*this, matches))
    return std::string(describe(matches.front()));
  return describe(token());
}

void ScriptParser::fail(std::string_view expected) const {
  throw expectedError(expected, describeFound(), token());
}

void ScriptParser::report(ScriptError error) {
  const std::size_t place = error.range()->offset;
  if (place == lastErrorAt_) // one mistake shows in several ways
    return;
  lastErrorAt_ = place;
  errors.push_back(std::move(error));
  if (errors.size() >= limits_.errors)
    throw EnoughErrors();
}

void ScriptParser::setRange(Expression& node, std::size_t startOffset) {
  node.range = rangeFrom(startOffset);
  updateHeight(node);
}

void ScriptParser::updateHeight(Expression& node) const {
  std::uint32_t below = 0;
  forEachChild(node, [&](const Expression& child) { below = std::max(below, child.height); });
  node.height = below + 1;
  if (node.height > limits_.height)
    throw syntaxError(errorNumber::syntaxError, "The expression is too complex.", node.range);
}

} // namespace tabwright::applescript
