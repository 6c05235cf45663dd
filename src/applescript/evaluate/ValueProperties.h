#pragma once

#include "applescript/values/TextElements.h"
#include "applescript/values/Value.h"

#include <optional>

namespace tabwright::applescript {

/// A property that a value of the language has by itself: the field of a record, a property of a script object,
/// `length`, `reverse`, `year`, `class`, …; nothing for one that it doesn't have, also for `rest` of an empty list.
/// `characters` counts those of texts. Sends no events, and looks through nothing.
[[nodiscard]] std::optional<Value> propertyOfValue(const Value& value, const Label& property,
                                                   CharacterIndex& characters);

} // namespace tabwright::applescript
