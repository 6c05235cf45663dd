#pragma once

#include "applescript/syntax/StatementNodes.h"

#include <deque>
#include <string>
#include <type_traits>
#include <vector>

/// The syntax tree of a script: what the parser makes, the printer writes and the evaluator runs.
///
/// A node is a struct derived from Expression (ExpressionNodes.h) or Statement (StatementNodes.h) with its `kind` set;
/// whoever walks the tree switches over `kind` without a default, so that a new kind can't be forgotten. Nodes own
/// their children and never change after parsing, but for the fields marked "resolver", which the evaluator's first
/// pass fills in once.
///
/// A child that the form of its node has is never null: a tree with gaps doesn't leave the parser. Where it may be null
/// or is set by some forms only, the field says so.
namespace tabwright::applescript {

/// The node as one kind of expression or statement; null when it is of another. Const as the node is.
///
///     if (const auto* literal = as<Literal>(expression))
///       use(literal->value);
template <class Node, class Base>
[[nodiscard]] auto as(Base& node) {
  using Result = std::conditional_t<std::is_const_v<Base>, const Node, Node>;
  return node.kind == Node::ownKind ? static_cast<Result*>(&node) : nullptr;
}

/// The expression inside of any number of brackets; itself when there are none.
[[nodiscard]] inline const Expression& withoutParentheses(const Expression& expression) {
  const auto* brackets = as<Parenthesized>(expression);
  return brackets ? withoutParentheses(*brackets->inner) : expression;
}

/// A parsed script. The text and the tree live together: ranges point into `source`, and nodes into `rawCommands` and
/// the terminologies, which the ApplicationDirectory of the parse owns.
///
/// `body` holds, in the order written: uses, properties, handlers, scripts, and the statements of the implicit run
/// handler. Whether there is an explicit `on run` is for the evaluator to see; both at once are a syntax error.
struct SyntaxTree {
  /// As it was given, with whatever line ends it has.
  std::string source;
  Block body;
  /// In source order; no node knows of them.
  std::vector<SourceRange> comments;

  /// Dictionaries whose words the script may use somewhere, the language's own first; each once.
  std::vector<const Terminology*> terminologies;
  /// Rows for commands written as raw codes (`«event coregetd»`), which no dictionary has. A deque, so that rows stay
  /// in place while others are added.
  std::deque<Term> rawCommands;
};

} // namespace tabwright::applescript
