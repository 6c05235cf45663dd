#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::markdown {

/// The address in a form that may be opened and shown anywhere, or nothing when a document may not lead there.
///
/// Only `http:`, `https:` and `mailto:` may be opened, in any case of letters. Relative addresses are among the others:
/// the texts shown have no place that they could be relative to. In the result all that a URL doesn't hold (RFC 3986:
/// blanks, quotes, controls, everything outside ASCII) is percent-encoded, so that it can neither leave an attribute
/// nor a terminal's escape sequence.
[[nodiscard]] std::optional<std::string> openableAddress(std::string_view address);

} // namespace tabwright::markdown
