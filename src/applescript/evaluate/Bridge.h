#pragma once

#include "applescript/syntax/Tree.h"
#include "applescript/values/ForeignObject.h"
#include "applescript/values/Value.h"

#include <string>
#include <string_view>
#include <vector>

namespace tabwright::applescript {

/// `NAME of current application`: a class or a constant. Throws ScriptError −1728 when there is no bridge, which null
/// stands for, or it doesn't know the name.
[[nodiscard]] Value findInBridge(const ObjectiveCBridge* bridge, const std::string& name);

/// Sends a message: references among the arguments are looked through, foreign objects passed as they are. The
/// receiver's ScriptErrors come through as they are (−1708 for a selector that it doesn't know); a failure of the
/// bridge's own becomes ScriptError −10000. The selector is complete, with its colons.
[[nodiscard]] Value sendToForeign(const Value::ForeignPointer& receiver, std::string_view selector,
                                  std::vector<Value> arguments);

/// The selector that a call in the language's own form stands for: `alloc()` is `alloc`; `f_(x)` and `f(x)` both are
/// `f:`, `a_b_(x, y)` is `a:b:`.
[[nodiscard]] std::string selectorOf(const HandlerCall& call);

} // namespace tabwright::applescript
