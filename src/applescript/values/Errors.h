#pragma once

#include "applescript/ScriptError.h"
#include "applescript/values/Value.h"

#include <string>
#include <string_view>

/// The errors that the language itself raises, each with its number and its one sentence.
namespace tabwright::applescript::errors {

[[nodiscard]] ScriptError of(int number, std::string sentence);

/// −1728 `Can’t get WHAT.` with `what` in source form, such as `item 9 of {1}`.
[[nodiscard]] ScriptError cannotGet(const std::string& what);
/// −10006 `Can’t set WHAT to VALUE.`
[[nodiscard]] ScriptError cannotSet(const std::string& what, const Value& value);
/// −1700 `Can’t make VALUE into type TYPE.`; the value is its offending object.
[[nodiscard]] ScriptError cannotMake(const Value& value, std::string_view type);
/// −2753 `The variable NAME is not defined.`
[[nodiscard]] ScriptError undefinedVariable(std::string_view name);
/// −2763: an expression that needs a value came to none.
[[nodiscard]] ScriptError noResult();
/// −1708 `SUBJECT doesn’t understand the “MESSAGE” message.`
[[nodiscard]] ScriptError notUnderstood(const std::string& subject, std::string_view message);
[[nodiscard]] ScriptError userCancelled();
[[nodiscard]] ScriptError divisionByZero();
[[nodiscard]] ScriptError numericOverflow();
[[nodiscard]] ScriptError stackOverflow();
[[nodiscard]] ScriptError outOfMemory();

} // namespace tabwright::applescript::errors
