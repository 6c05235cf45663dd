#pragma once

#include "applescript/evaluate/Evaluator.h"

#include <optional>

/// Statements that other kinds of node are made of.
namespace tabwright::applescript {

/// `set` and `copy`; leaves the value as `result`.
void assign(Evaluator& run, const Assignment& statement);
/// The target may be a pattern of several.
void assignTo(Evaluator& run, const Expression& target, Value&& value);
/// −10006 for `result`, which has no place. A list doesn't come to hold itself: a copy is stored instead.
void assignToVariable(Evaluator& run, const Variable& variable, Value&& value);
Flow executeRepeat(Evaluator& run, const Repeat& repeat);
/// A `try` without the handling of what is thrown. Nothing where its body has failed without throwing: its handler,
/// which asks nothing about the error, is to run.
std::optional<Flow> executeTried(Evaluator& run, const Try& statement);

} // namespace tabwright::applescript
