#pragma once

#include "platform/Failure.h"

#include <cstdint>
#include <string>

namespace tabwright::markdown {

/// Why a text can't be taken as Markdown.
enum class MarkdownError : std::uint8_t {
  textTooLong, ///< longer than `longestText`
};

/// The sentence in English, `detail` behind it.
[[nodiscard]] std::string errorDescription(MarkdownError error, const std::string& detail);
/// The case for programs, whatever the sentence says.
[[nodiscard]] platform::FailureIdentity identity(MarkdownError error);

} // namespace tabwright::markdown
