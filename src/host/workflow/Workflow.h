#pragma once

#include "host/workflow/Expression.h"
#include "host/workflow/Problem.h"
#include "intents/Parameter.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

/// A workflow as it stands in its file: a list of steps that run one after the other. docs/workflows.md describes the
/// file for those who write one.
namespace tabwright::host::workflow {

struct Step;
using Steps = std::vector<Step>;

/// A name that the file gives: of a variable, a parameter, an action.
struct Name {
  std::string text;
  Place place;
};

/// A key of the file and its value.
struct NamedExpression {
  Name name;
  Expression value;
};

/// Performs an action of the catalogue; its result becomes a variable.
struct ActionStep {
  /// In any case, short or with its type's prefix, as the catalogue finds it.
  Name action;
  /// Names as the file writes them; the check finds them in any case.
  std::vector<NamedExpression> parameters;
  /// The variable that the result becomes; none where the file doesn't want it.
  std::optional<Name> result;
};

/// True when a parameter's value stands in a file, whose path the value tells behind an "@".
[[nodiscard]] inline bool readsFile(const intents::ParameterBase& parameter, const Expression& value) {
  const intents::ValueKind kind = parameter.declaration().type.kind;
  return (kind == intents::ValueKind::entity || kind == intents::ValueKind::file) && beginsWithAt(value);
}

/// Runs its steps once for each item of a list.
struct RepeatStep {
  /// A list, or a text that holds one as JSON.
  Expression list;
  /// The variable of the item. It keeps the last one behind the step, as variables have no scopes.
  Name item;
  Steps steps;
};

/// A question to values that is answered yes or no.
struct Condition {
  enum class Kind {
    isTrue,   ///< `value` is none of null, false, 0, "" and what is empty
    equals,   ///< `value` is `other`; a number and a text that reads alike count as equal
    contains, ///< the text `value` holds the text `other`, or the list `value` the item `other`
    no,       ///< the only one of `parts` is answered no
    all,
    any
  };
  Kind kind = Kind::isTrue;
  Expression value;
  /// Of `equals` and `contains` alone.
  Expression other;
  /// Of `no`, `all` and `any`, which use no values. No parts: `all` holds, `any` doesn't.
  std::vector<Condition> parts;
};

/// Runs one of two lists of steps; `otherwise` may be empty.
struct IfStep {
  Condition condition;
  /// The branch that isn't taken counts as if it weren't there, though the check looks at both.
  Steps then;
  Steps otherwise;
};

/// Runs steps, and when one of them fails the others, for which `error` says why; the workflow goes on then. The steps
/// that ran before the failure stay done. A failure in `otherwise` is the step's own.
struct TryStep {
  Steps steps;
  Steps otherwise;
};

/// Gives variables values, one after the other, so that a later one may use an earlier one.
struct SetStep {
  std::vector<NamedExpression> values;
};

/// Adds a value to a list, which is there before: the name is that of its variable.
struct AppendStep {
  NamedExpression value;
};

/// Prints a value on a line of its own: a text as it is, else JSON.
struct PrintStep {
  Expression value;
};

/// A step of the file: its work, and where it stands.
struct Step {
  std::variant<ActionStep, RepeatStep, IfStep, TryStep, SetStep, AppendStep, PrintStep> work;
  std::optional<Expression> title; ///< as the file names it
  Place place;                     ///< of the key that says what the step does
};

/// The variable of a try step's `otherwise`: an object with type, case, number and message.
inline constexpr const char* errorVariable = "error";

/// The variable of what the last action had to tell beside its result: a list of sentences.
inline constexpr const char* noticesVariable = "notices";

struct Workflow {
  /// Empty for a file without one.
  std::string title;
  std::vector<NamedExpression> variables; ///< values without paths; null where one must be given from outside
  Steps steps;
};

} // namespace tabwright::host::workflow
