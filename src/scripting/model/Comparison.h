#pragma once

#include "applescript/values/ObjectSpecifier.h"
#include "applescript/values/Value.h"

#include <string_view>

namespace tabwright::scripting {

/// `considered` inside `considering case`; AppleScript ignores it otherwise.
enum class TextCase { ignored, considered };

/// The comparison of a `whose` test as the language makes it, on values without specifiers; an order between kinds that
/// have none, and holding by what holds nothing, are false.
[[nodiscard]] bool compare(applescript::TestOperator comparison, const applescript::Value& left,
                           const applescript::Value& right, TextCase textCase);

/// True when two UTF-8 texts are the same but for case, as the language's `is` has it.
[[nodiscard]] bool sameIgnoringCase(std::string_view left, std::string_view right);

} // namespace tabwright::scripting
