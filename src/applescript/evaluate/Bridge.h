#pragma once

#include "applescript/values/ForeignObject.h"
#include "applescript/values/Value.h"

#include <string>

namespace tabwright::applescript {

/// `NAME of current application`. Throws ScriptError −1728 when there is no bridge, or it doesn't know the name.
[[nodiscard]] Value findInBridge(const ObjectiveCBridge* bridge, const std::string& name);

} // namespace tabwright::applescript
