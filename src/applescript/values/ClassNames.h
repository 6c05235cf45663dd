#pragma once

#include "applescript/terminology/Codes.h"
#include "applescript/values/Value.h"

namespace tabwright::applescript {

/// The class of a value, as `class of x` answers it. References are looked through and foreign objects stand for what
/// they unwrap to. The class of an object is its application's business: here a specifier is a `reference`, and that of
/// an application `application`. `missing value`, `null` and `nothing` are of the class `class`. Never null.
[[nodiscard]] Value::ClassPointer classOf(const Value& value);

/// `class of value` is that class or a special case of it: `integer` and `real` are kinds of `number`, anything
/// is an `item`. Element access by class (`integers of xs`) goes by this.
[[nodiscard]] bool isKindOf(const Value& value, FourCharCode classCode);

/// `string`, `text` and `Unicode text` are one class by three codes.
[[nodiscard]] bool isTextClass(FourCharCode code);
/// The two codes name one class: the same code, two of the three of text, or the two of `class`.
[[nodiscard]] bool sameClass(FourCharCode left, FourCharCode right);

} // namespace tabwright::applescript
