#pragma once

#include "applescript/ScriptError.h"
#include "applescript/lexer/Token.h"
#include "applescript/terminology/Terminology.h"

#include <string>
#include <string_view>

/// The wording of what is wrong with a script's text, in one place: "Expected A but found B.".
namespace tabwright::applescript {

/// An error of Stage::syntax with its range, which may be empty: a place where something is missing. `number` is one of
/// errorNumber, `sentence` ends with its full stop.
[[nodiscard]] ScriptError syntaxError(int number, std::string sentence, SourceRange range);

/// `expected` is what could stand here (“then”, end of line, expression); `found` is what does. Number −2740 for a
/// character that begins nothing, else −2741.
[[nodiscard]] ScriptError expectedError(std::string_view expected, std::string_view found, const Token& token);

/// A token's name in a message: `identifier`, `number`, `“then”`, `end of line`, … Names and contents of texts aren't
/// shown: the range says which token is meant.
[[nodiscard]] std::string describe(const Token& token);

/// The name of a dictionary's word in a message: `class name`, `plural class name`, `property`, `command name`, …
[[nodiscard]] std::string_view describe(const Terminology::Match& match);

} // namespace tabwright::applescript
