#pragma once

#include "applescript/values/ObjectSpecifier.h"

namespace tabwright::applescript {

/// Thrown inside the evaluator, and caught there, when the condition of a `whose` computes with a property of the
/// object under test: the application can't be asked that, so the condition is evaluated here, object by object. No
/// ScriptError, so that no `try` of the script takes it.
struct TestNeedsValues {};

/// The specifier hangs from the object under test of a `whose`.
[[nodiscard]] inline bool isRootedInTest(const ObjectSpecifier& specifier) {
  return !specifier.application && rootOf(specifier).form == ObjectSpecifier::Form::tested;
}

/// Throws TestNeedsValues for a specifier that hangs from the object under test.
inline void requireValue(const Value& value) {
  if (const auto* specifier = value.get<Value::SpecifierPointer>(); specifier && isRootedInTest(**specifier))
    throw TestNeedsValues();
}

} // namespace tabwright::applescript
