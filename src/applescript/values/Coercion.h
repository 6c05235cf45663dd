#pragma once

#include "applescript/values/Value.h"

#include <string>

namespace tabwright::applescript {

/// The part of a script that coercions depend on: the text between the items of a list that becomes text. Empty outside
/// of a run.
struct CoercionContext {
  std::string textItemDelimiter;
};

/// `value as type`. References are looked through and foreign objects unwrapped first. A list of one item stands for
/// that item where a number, a boolean, or a value of a class without coercions is wanted. Throws ScriptError −1700
/// when the value has no such form, −2706 or −108 for one nested too deeply or too large to walk. Asks no application.
[[nodiscard]] Value coerce(const Value& value, const ClassName& type, const CoercionContext& context);

/// The value behind references, and behind a foreign object that has a form in the language; any other as it is. The
/// values inside of lists and records aren't looked at.
[[nodiscard]] Value plainValue(const Value& value);

/// `as text`, in UTF-8. Items of a list are joined by the context's delimiter, at every depth. −1700 for records,
/// objects and scripts, also inside of a list; −108 beyond 256 MB.
[[nodiscard]] std::string textOf(const Value& value, const CoercionContext& context = {});
/// `as number`: an integer or a real. Booleans are 1 and 0, months and weekdays their position in year and week, texts
/// what numberFromText reads.
[[nodiscard]] Value numberOf(const Value& value);
/// `as integer`; halves are rounded away from zero. −1700 beyond 64 bits.
[[nodiscard]] std::int64_t integerOf(const Value& value);
[[nodiscard]] double realOf(const Value& value);
/// `as boolean`: numbers are true but for 0; of texts only `true` and `false` stand for one, ignoring case.
[[nodiscard]] bool booleanOf(const Value& value);
/// `as list`: a list as it is (shared), the values of a record, else the value in a list of its own.
[[nodiscard]] Value::ListPointer listOf(const Value& value);

} // namespace tabwright::applescript
