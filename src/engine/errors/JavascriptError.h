#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::engine {

/// The failures of JavaScript in a page.
enum class JavascriptError {
  syntaxException, ///< the detail is the exception's text
  unableToParseJS, ///< a job delivered no value at all
};

/// The sentence for the user; `detail` goes into the sentence of `syntaxException`.
[[nodiscard]] std::string errorDescription(JavascriptError error, const std::string& detail = {});
[[nodiscard]] platform::FailureIdentity identity(JavascriptError error);

} // namespace tabwright::engine
