#pragma once

#include "applescript/values/Value.h"

#include <string>

namespace tabwright::applescript {

/// The part of a script that coercions depend on: the text between the items of a list that becomes text.
struct CoercionContext {
  std::string textItemDelimiter;
};

/// `value as type`. References are looked through and foreign objects unwrapped first; a list of one item stands for
/// that item where a single value is wanted. Throws ScriptError −1700 when the value has no such form.
[[nodiscard]] Value coerce(const Value& value, const ClassName& type, const CoercionContext& context);

/// The value behind references, and behind a foreign object that has a form in the language.
[[nodiscard]] Value plainValue(const Value& value);

/// `as text` of a value that isn't a list of several items.
[[nodiscard]] std::string textOf(const Value& value, const CoercionContext& context = {});
/// `as number`: an integer or a real.
[[nodiscard]] Value numberOf(const Value& value);
/// `as integer`; halves are rounded away from zero.
[[nodiscard]] std::int64_t integerOf(const Value& value);
[[nodiscard]] double realOf(const Value& value);
[[nodiscard]] bool booleanOf(const Value& value);
/// `as list`: a list as it is (shared), the values of a record, else the value in a list of its own.
[[nodiscard]] Value::ListPointer listOf(const Value& value);

} // namespace tabwright::applescript
