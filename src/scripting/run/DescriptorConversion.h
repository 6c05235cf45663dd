#pragma once

#include "applescript/values/Value.h"
#include "platform/AppleEvent.h"

namespace tabwright::scripting {

/// A parameter of an event as a value of the language; null becomes `missing value`, and what has no form there a text
/// that describes it.
[[nodiscard]] applescript::Value valueOf(const platform::AppleEventDescriptor& descriptor);

/// A value as a descriptor. Integers beyond 32 bits become reals; what has no form of its own, `null` and `missing
/// value` included, becomes its source form. Throws ScriptError for a list that is nested too deeply or holds itself.
[[nodiscard]] platform::AppleEventDescriptor descriptorOf(const applescript::Value& value);

} // namespace tabwright::scripting
