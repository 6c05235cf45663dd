#pragma once

#include "applescript/values/Value.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tabwright::scripting {

/// Values as what a command or property wants, coerced as the language does it. Each throws ScriptError −1700 ("Can’t
/// make … into type …") for a value that has no such form; `missing value` and `null` have none.
///
///     requireInteger(Value("12")) // 12
[[nodiscard]] std::string requireText(const applescript::Value& value);
[[nodiscard]] std::int64_t requireInteger(const applescript::Value& value);
[[nodiscard]] bool requireBoolean(const applescript::Value& value);

/// The text by which ids and names are looked up: text as it is, whole numbers in digits, be they integers or reals
/// below 9·10¹⁵; nothing for other kinds. Throws nothing.
[[nodiscard]] std::optional<std::string> idText(const applescript::Value& value);

} // namespace tabwright::scripting
