#include "applescript/syntax/ScriptParser.h"

#include "applescript/syntax/Children.h"

#include <fmt/core.h>

#include <utility>

// The parser's own tools: cursor, errors, ranges. What is parsed where: see ScriptParser.h.
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
  ScriptParser parser(*tree, tokens, directory, limits);
  result.errors = parser.run();
  if (result.errors.empty())
    result.tree = std::move(tree);
  return result;
}

ScriptParser::ScriptParser(SyntaxTree& tree, TokenList& tokens, const ApplicationDirectory& directory,
                           const ParserLimits& limits)
    : TokenCursor(tokens.tokens), tree_(tree), list_(tokens), directory_(directory), limits_(limits) {
  tree_.terminologies.push_back(&languageTerminology());
}

std::vector<ScriptError> ScriptParser::run() {
  errors_ = std::move(list_.errors);
  findLabelledHandlers();
  try {
    tree_.body = parseScriptBody(true);
  } catch (const EnoughErrors&) {
    // What has been found is in errors_.
  }
  std::ranges::sort(errors_, {}, [](const ScriptError& error) {
    return std::pair<std::size_t, std::string>(error.range()->offset, error.sentence());
  });
  if (errors_.size() > limits_.errors)
    errors_.erase(errors_.begin() + static_cast<std::ptrdiff_t>(limits_.errors), errors_.end());
  return std::move(errors_);
}

ScriptParser::Nesting::Nesting(ScriptParser& parser) : parser_(parser) {
  if (parser_.depth_ >= parser_.limits_.nesting) {
    // Going on at the next line would only find `end`s without their blocks.
    parser_.report(syntaxError(errorNumber::syntaxError, "The script is nested too deeply.", parser_.token().range));
    throw EnoughErrors();
  }
  ++parser_.depth_;
}

// --------------------------------------------------------------------- cursor

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

// --------------------------------------------------------------------- errors

std::string ScriptParser::describeFound() const {
  if (const auto matches = scope_.match(rest()); !matches.empty() && !isVariableDespite(matches))
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
  errors_.push_back(std::move(error));
  if (errors_.size() >= limits_.errors)
    throw EnoughErrors();
}

// ---------------------------------------------------------------------- nodes

void ScriptParser::setRange(Expression& node, std::size_t startOffset) {
  node.range = rangeFrom(startOffset);
  updateHeight(node);
}

void ScriptParser::setRange(Statement& node, std::size_t startOffset) const {
  node.range = rangeFrom(startOffset);
}

void ScriptParser::updateHeight(Expression& node) {
  std::uint32_t below = 0;
  forEachChild(node, [&](const Expression& child) { below = std::max(below, child.height); });
  node.height = below + 1;
  if (node.height > limits_.height)
    throw syntaxError(errorNumber::syntaxError, "The expression is too complex.", node.range);
}

} // namespace tabwright::applescript
