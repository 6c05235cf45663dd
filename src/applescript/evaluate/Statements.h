#pragma once

#include "applescript/evaluate/Evaluator.h"

#include <optional>

/// Statements that other kinds of node are made of.
namespace tabwright::applescript {

/// `set` and `copy`; leaves the value as `result`. The value is evaluated before the target's container and keys.
void assign(Evaluator& run, const Assignment& statement);
/// The target may be a pattern of several, which take their parts of a list by position, of a record by label; −1728
/// when it has too few. −10006 for what is no place. Lists and records are changed for all who share them.
void assignTo(Evaluator& run, const Expression& target, Value&& value);
/// −10006 for `result`, which has no place. A variable that references name doesn't come to hold itself: a copy is
/// stored instead.
void assignToVariable(Evaluator& run, const Variable& variable, Value&& value);
/// Never Flow::exitRepeat, which ends here.
Flow executeRepeat(Evaluator& run, const Repeat& repeat);
/// A `try` without the handling of what is thrown. Nothing where its body has failed without throwing: its handler,
/// which asks nothing about the error, is to run.
std::optional<Flow> executeTried(Evaluator& run, const Try& statement);

} // namespace tabwright::applescript
