#pragma once

#include "applescript/evaluate/ElementPicker.h"
#include "applescript/evaluate/EventSender.h"
#include "applescript/evaluate/Frame.h"
#include "applescript/evaluate/RunBudget.h"
#include "applescript/evaluate/Script.h"
#include "applescript/evaluate/StackGuard.h"
#include "applescript/evaluate/Surroundings.h"
#include "applescript/values/Coercion.h"
#include "applescript/values/Comparison.h"

#include <memory>
#include <stop_token>
#include <string_view>
#include <vector>

namespace tabwright::applescript {

/// An expression that names something in an application comes to its value, which the application is asked for, or to
/// the name itself, which a longer name or an event is made of.
enum class Mode { value, designation };
/// The way on from a statement within its block. With `returned` the value is in the frame.
enum class Flow { next, exitRepeat, returned };

/// One run of a script: walks its tree.
///
/// It holds the state of the run, and passes each node through `evaluate` or `execute`. The kinds of node are functions
/// over it, `run` in all of them, in files by kind: Statements, Attempts, Loops, Assignments (declared in
/// Statements.h); Handlers, Commands, ScriptingAdditions, Bridge (Calls.h); Properties, Elements, References,
/// Applications, Conditions (Accesses.h); Operators. What needs no tree is its parts': variables (Frame), limits
/// (RunBudget), events (EventSender), elements of values (ElementPicker).
///
/// An evaluator serves one run and one thread. It throws ScriptError, with the place in the source set.
class Evaluator {
public:
  /// All that is passed by reference must outlive the evaluator. `notices` may be null.
  Evaluator(const Surroundings& surroundings, const RunLimits& limits, Script& script, std::stop_token stop,
            std::shared_ptr<platform::Notices> notices);

  /// The run handler, or a handler of the script by its name (ignoring case): contracts as Interpreter::run and call.
  Value run(std::vector<Value> arguments);
  Value call(std::string_view handler, std::vector<Value> arguments);

  /// Throws −2763 when the expression comes to nothing; `evaluateOptional` answers `nothing` then.
  Value evaluate(const Expression& expression, Mode mode = Mode::value);
  Value evaluateOptional(const Expression& expression, Mode mode = Mode::value);
  /// The value for an operator: references and foreign objects looked through, properties of objects read. May send an
  /// event. Throws TestNeedsValues for a property of the object under test of a `whose`, as `plain` does.
  Value operand(const Expression& expression);
  /// The same of a value that has been evaluated.
  Value plain(const Value& value);
  /// `plain` would give the value back as it is: the common case, told without a copy.
  static bool isPlain(const Value& value);
  /// The expression as a boolean; −1700 for a value that is none and doesn't stand for one.
  bool condition(const Expression& expression);
  /// The container of an access, looked through: the one written, or the target of the `tell` around.
  Value containerOf(const ExpressionPointer& container);

  /// The first statement that doesn't go on ends the block. Each sets `result` where it has one.
  Flow execute(const Block& block);
  Flow execute(const Statement& statement);

  /// The text between the items of a list that becomes text: the first of the delimiters in force.
  [[nodiscard]] CoercionContext coercionContext() const;
  /// Throws −108 for a value that would be larger than the run may make.
  void checkSize(std::size_t bytes) const;

  const Surroundings& surroundings;
  const RunLimits& limits;
  Script& script;
  StackGuard stack;

  /// The call that is being run; null outside of all. Frames live on the stack of whoever runs a call.
  Frame* frame = nullptr;
  /// Calls of handlers that are going on, one inside the other.
  std::size_t depth = 0;
  /// The innermost expression or statement that the run is in, a range of the tree. Errors get their place in the
  /// source from it.
  const SourceRange* place = nullptr;

  /// The rules of comparison in force here: `considering` blocks hold for the handlers called from inside, too.
  TextAttributes attributes;

  RunBudget budget;
  /// These two refer to members above, which are made first.
  EventSender sender;
  ElementPicker picker;
};

} // namespace tabwright::applescript
