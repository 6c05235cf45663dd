#pragma once

#include "applescript/evaluate/Evaluator.h"
#include "applescript/evaluate/ScriptMembers.h"

#include <optional>
#include <string_view>
#include <utility>
#include <vector>

/// Calls of handlers, commands, and messages through the bridge; script objects and their run handlers.
namespace tabwright::applescript {

struct Arguments {
  std::vector<Value> positional = {};
  Value direct = Value::nothing();
  std::vector<std::pair<std::string_view, Value>> labelled = {};
  bool isLabelled = false;
};

Value callHandler(Evaluator& run, const HandlerCall& call);
Value continueCall(Evaluator& run, const ContinueStatement& statement);
Value evaluateCommand(Evaluator& run, const Command& command);
/// No value for a command that is none of the scripting additions.
std::optional<Value> answerOfAddition(Evaluator& run, const Command& command);
Value evaluateMessage(Evaluator& run, const ObjectiveCMessage& message);

Value invoke(Evaluator& run, const FoundHandler& handler, std::shared_ptr<ScriptObject> self, Arguments&& arguments,
             std::string_view name);
Value runScript(Evaluator& run, const std::shared_ptr<ScriptObject>& script, std::vector<Value> arguments);

std::shared_ptr<ScriptObject> instantiate(Evaluator& run, const ScriptLayout& layout,
                                          std::shared_ptr<ScriptObject> enclosing);
/// Gives the properties of a script object their first values.
void initialize(Evaluator& run, const std::shared_ptr<ScriptObject>& script);

} // namespace tabwright::applescript
