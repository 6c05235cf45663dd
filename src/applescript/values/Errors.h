#pragma once

#include "applescript/ScriptError.h"
#include "applescript/terminology/Terminology.h"
#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Value.h"

#include <string>
#include <string_view>

/// The errors that the language itself raises, each with its number and its one sentence. They are made here and thrown
/// by the caller, who may add to them (`throw errors::noResult().at(range)`). All are of Stage::execution, and have no
/// place yet.
namespace tabwright::applescript::errors {

/// For errors that carry a number of their own: those that a script or an application raises.
[[nodiscard]] ScriptError of(int number, std::string sentence);

/// −1728 `Can’t get WHAT.` with `what` in source form, such as `item 9 of {1}`.
[[nodiscard]] ScriptError cannotGet(std::string_view what);
/// −10006 `Can’t set WHAT to VALUE.`
[[nodiscard]] ScriptError cannotSet(std::string_view what, const Value& value);
/// −1700 `Can’t make VALUE into type TYPE.`; the value is its offending object. Put into words when it is asked for:
/// what a list holds by then is what the sentence shows (ScriptError::settle).
[[nodiscard]] ScriptError cannotMake(const Value& value, std::string_view type);
/// −2753 `The variable NAME is not defined.`
[[nodiscard]] ScriptError undefinedVariable(std::string_view name);
/// −2763: an expression that needs a value came to none.
[[nodiscard]] ScriptError noResult();
/// −1708 `SUBJECT doesn’t understand the “MESSAGE” message.`
[[nodiscard]] ScriptError notUnderstood(std::string_view subject, std::string_view message);
/// −1715 `The PARAMETER parameter is missing for COMMAND.`
[[nodiscard]] ScriptError missingParameter(std::string_view parameter, std::string_view command);
/// −1708 `Can’t continue NAME.`
[[nodiscard]] ScriptError cannotContinue(std::string_view name);
/// −1721 `WHAT for HANDLER.`, such as `{1, 2} doesn’t match the 1 parameters for f.`
[[nodiscard]] ScriptError wrongParameters(std::string_view what, std::string_view handler);
/// −30720 `Invalid date and time TEXT.`
[[nodiscard]] ScriptError invalidDate(const Value& text);
/// −10004: a command that scripts may not use here.
[[nodiscard]] ScriptError notAvailable(std::string_view command);
/// −128: a run was stopped, or has taken all its steps.
[[nodiscard]] ScriptError userCancelled();
/// −2701: a division by 0 or 0.0.
[[nodiscard]] ScriptError divisionByZero();
/// −2702: a real that isn't finite.
[[nodiscard]] ScriptError numericOverflow();
/// −2706: calls or values nested too deeply.
[[nodiscard]] ScriptError stackOverflow();
/// −108: a value too large to make or to walk, or no memory.
[[nodiscard]] ScriptError outOfMemory();

/// Errors that an application answers an event with, worded in its dictionary. The application's own name is left out,
/// since it comes in front of the sentence.

[[nodiscard]] ScriptError cannotGet(const ObjectSpecifier& specifier, const Terminology& dictionary);
/// −1719 `Can’t get window 0. Invalid index.`
[[nodiscard]] ScriptError invalidIndex(const ObjectSpecifier& specifier, const Terminology& dictionary);
[[nodiscard]] ScriptError cannotSet(const ObjectSpecifier& specifier, const Value& value,
                                    const Terminology& dictionary);
[[nodiscard]] ScriptError notUnderstood(const Value& subject, EventCode event, const Terminology& dictionary);
[[nodiscard]] ScriptError missingParameter(std::string_view parameter, EventCode event, const Terminology& dictionary);

} // namespace tabwright::applescript::errors
