#pragma once

#include "applescript/terminology/Codes.h"
#include "applescript/values/Value.h"

namespace tabwright::applescript {

/// The class of a value, as `class of x` answers it. References are looked through and foreign objects stand for what
/// they unwrap to. An object specifier's class is its application's business; here it is the class it names.
[[nodiscard]] Value::ClassPointer classOf(const Value& value);

/// `class of value` is that class or a special case of it: `integer` and `real` are kinds of `number`, anything
/// is an `item`. Element access by class (`integers of xs`) goes by this.
[[nodiscard]] bool isKindOf(const Value& value, FourCharCode classCode);

/// `string`, `text` and `Unicode text` are one class.
[[nodiscard]] bool isTextClass(FourCharCode code);
[[nodiscard]] bool sameClass(FourCharCode left, FourCharCode right);

} // namespace tabwright::applescript
