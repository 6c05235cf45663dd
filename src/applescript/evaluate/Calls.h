#pragma once

#include "applescript/evaluate/Evaluator.h"
#include "applescript/evaluate/ScriptMembers.h"

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

/// Calls of handlers, commands, and messages through the bridge; script objects and their run handlers.
namespace tabwright::applescript {

/// The values that a handler is called with, evaluated; `direct` is `nothing` where none was given.
struct Arguments {
  std::vector<Value> positional = {};
  Value direct = Value::nothing();
  /// Labels as written, views into the tree.
  std::vector<std::pair<std::string_view, Value>> labelled = {};
  /// The call has labels or a direct parameter instead of brackets.
  bool isLabelled = false;
};

/// The arguments are evaluated once the handler is found. −1708 when there is none; a call to an object behind the
/// bridge is a message to it. May come to `nothing`, as `continueCall`, `invoke` and `runScript` may.
Value callHandler(Evaluator& run, const HandlerCall& call);
/// The parent's handler, run for the script that continues; −1708 when the parent has none. The parent is that of the
/// script in whose text the statement stands.
Value continueCall(Evaluator& run, const ContinueStatement& statement);
/// Commands of the language are answered here, others sent to the application in question. May come to `nothing`.
Value evaluateCommand(Evaluator& run, const Command& command);
/// The answer of a scripting addition: a command that comes with every system. No value for any other command; −10004
/// for one that scripts may not use here.
std::optional<Value> answerOfAddition(Evaluator& run, const Command& command);
/// A message in the bridge's form, to a foreign object or a script with a handler of that selector; −1708 for any other
/// receiver.
Value evaluateMessage(Evaluator& run, const ObjectiveCMessage& message);

/// Runs a handler in a frame of its own with `self` as `me`. `name` is for errors: −1721 and −1715 for arguments that
/// don't fit, −2706 for calls nested too deeply.
Value invoke(Evaluator& run, const FoundHandler& handler, std::shared_ptr<ScriptObject> self, Arguments&& arguments,
             std::string_view name);
/// The run handler, explicit or implicit; `on run argv` gets all arguments as one list. An implicit one, or one without
/// parameters, takes any number and drops them.
Value runScript(Evaluator& run, const std::shared_ptr<ScriptObject>& script, std::vector<Value> arguments);

/// A script object with its properties initialised, as reaching its text makes one.
std::shared_ptr<ScriptObject> instantiate(Evaluator& run, const ScriptLayout& layout,
                                          std::shared_ptr<ScriptObject> enclosing);
/// Gives the properties of a script object their first values, and its scripts their script objects. Needs a frame,
/// whose `me` the script object is while that lasts.
void initialize(Evaluator& run, const std::shared_ptr<ScriptObject>& script);

} // namespace tabwright::applescript
