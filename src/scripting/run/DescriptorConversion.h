#pragma once

#include "applescript/values/Value.h"
#include "platform/AppleEvent.h"

namespace tabwright::scripting {

/// A parameter of an event as a value of the language.
[[nodiscard]] applescript::Value valueOf(const platform::AppleEventDescriptor& descriptor);

/// A value as a descriptor. Integers beyond 32 bits become reals; what has no form of its own, `null` and `missing
/// value` included, becomes its source form.
[[nodiscard]] platform::AppleEventDescriptor descriptorOf(const applescript::Value& value);

} // namespace tabwright::scripting
