#pragma once

#include "platform/TextTemplate.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::engine {

/// The fixed part of every program for a browser: the common layer and the library of its family, with the placeholders
/// ARGKEYS, MAIN_RECEIVER_ID, BROWSER_BUNDLE_ID and APPLESCRIPT. Clean-up and the qualifying of handler calls are done;
/// what goes in for APPLESCRIPT must have seen both too (`preparedBody`) and ends in a line feed unless it is empty.
///
/// "com.apple.safari" has the Safari library, any other id the Chromium one.
[[nodiscard]] const platform::TextTemplate& scriptLayers(std::string_view targetID);

/// An action's own lines as they go into the layers.
///
/// Calls of the result handlers get a "my", since the lines stand in a `tell` block, where an unqualified call would go
/// to the application: "return success()" becomes "return my success({})", "return success(" and "return failure("
/// become "return my success(" and "return my failure(", inside of quotes too. Then each line loses blanks and tabs at
/// both ends; lines that begin with "--" and lines of white space alone go. Text literals are not spared: the lines of
/// a job's JavaScript are trimmed alike.
[[nodiscard]] std::string preparedBody(std::string_view appleScript);

/// The line of `appleScript` that a line of its prepared body was, both from 1; nothing behind the last.
[[nodiscard]] std::optional<std::size_t> sourceLine(std::string_view appleScript, std::size_t preparedLine);

} // namespace tabwright::engine
