#pragma once

#include "applescript/ScriptError.h"
#include "applescript/events/AppleEventMessage.h"
#include "applescript/events/ObjectSpecifier.h"
#include "applescript/terminology/Terminology.h"
#include "applescript/values/Value.h"

#include <string>
#include <string_view>

namespace tabwright::scripting {

/// An error of execution with a number and a sentence. The others below are made of it.
[[nodiscard]] applescript::ScriptError eventError(int number, std::string sentence);

/// −1728 `Can’t get window 3.`
[[nodiscard]] applescript::ScriptError cannotGet(const applescript::ObjectSpecifier& specifier,
                                                 const applescript::Terminology& terminology);
/// −1719 `Can’t get window 0. Invalid index.`
[[nodiscard]] applescript::ScriptError invalidIndex(const applescript::ObjectSpecifier& specifier,
                                                    const applescript::Terminology& terminology);
/// −10006 `Can’t set loading of tab 1 of window 1 to true.`
[[nodiscard]] applescript::ScriptError cannotSet(const applescript::ObjectSpecifier& specifier,
                                                 const applescript::Value& value,
                                                 const applescript::Terminology& terminology);
/// −1708 `window 1 doesn’t understand the “reload” message.`
[[nodiscard]] applescript::ScriptError notUnderstood(const applescript::Value& subject, applescript::EventCode event,
                                                     const applescript::Terminology& terminology);
/// −1700 `Can’t make "x" into type integer.`
[[nodiscard]] applescript::ScriptError cannotMake(const applescript::Value& value, std::string_view type);
/// −1715 `Missing javascript parameter.`
[[nodiscard]] applescript::ScriptError missingParameter(std::string_view words);

} // namespace tabwright::scripting
