#pragma once

#include "applescript/values/Value.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::scripting {

/// Options of NSJSONSerialization, added together.
namespace jsonoptions {
inline constexpr std::int64_t prettyPrinted = 1;
inline constexpr std::int64_t sortedKeys = 2;
inline constexpr std::int64_t fragmentsAllowed = 4; ///< both for writing and for reading
inline constexpr std::int64_t withoutEscapingSlashes = 8;
} // namespace jsonoptions

/// A value as JSON (RFC 8259), UTF-8, in Foundation's layout: pretty printing has two blanks per level, `"key" :
/// value`, an empty list as `[`, an empty line and `]`. `/` is written `\/`, control characters are escaped, everything
/// else stands as it is. `missing value` is null; records keep their order unless keys are sorted, by their bytes.
///
/// Throws ScriptError −10000 for what JSON can't say: "Invalid type in JSON write (…)" for the constant `null`, dates,
/// classes, specifiers; "Invalid number value (NaN) in JSON write"; "Invalid top-level type in JSON write" for a single
/// value when fragments aren't allowed.
[[nodiscard]] std::string jsonText(const applescript::Value& value, std::int64_t options);

/// True when `jsonText` would write the value without options. Costs as much as writing it. Throws ScriptError for a
/// value that is nested too deeply or too large.
[[nodiscard]] bool isValidJSON(const applescript::Value& value);

/// The value of a JSON text, with dictionaries as foreign objects, since their keys differ when their case does.
/// Nothing for a text that is no JSON, is nested deeper than 512, or is a single value when fragments aren't allowed.
[[nodiscard]] std::optional<applescript::Value> valueOfJSON(std::string_view json, std::int64_t options);

} // namespace tabwright::scripting
