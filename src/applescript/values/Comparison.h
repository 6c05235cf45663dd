#pragma once

#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/TextComparison.h"
#include "applescript/values/Value.h"

namespace tabwright::applescript {

/// Comparisons of values, with references and foreign objects inside lists and records looked through. Object
/// specifiers compare by what they say; no application is asked.

/// `left is right`. Text and number are never equal, `1` and `1.0` are; lists are equal item by item, records when they
/// have the same labels with equal values; `text`, `string` and `Unicode text` are one class. `left` and `right`
/// themselves must have been looked through: a reference isn't equal to anything here, nor is `nothing`. Throws
/// ScriptError −2706 or −108 for values nested too deeply or too large to walk.
[[nodiscard]] bool equalValues(const Value& left, const Value& right, const TextAttributes& attributes);

/// A comparison as operators and the condition of a `whose` name it. Throws ScriptError −1700 where it has no meaning.
///
/// The order is that of two numbers, texts or dates; a value of another kind on the right of a number or text is
/// coerced to that kind first, but only a date is compared with a date. Texts hold texts, lists hold rows of items (a
/// single value counts as a list of one), records hold fields. A number in a comparison with text counts as its text.
[[nodiscard]] bool compare(TestOperator comparison, const Value& left, const Value& right,
                           const TextAttributes& attributes);

} // namespace tabwright::applescript
