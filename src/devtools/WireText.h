#pragma once

#include <boost/json/value.hpp>

#include <string>
#include <string_view>

namespace tabwright::devtools {

/// Reads one message of the protocol. Throws JSONFailure when it isn't JSON.
///
/// JavaScript texts may hold half a surrogate pair (one that was cut in the middle of an emoji), which no UTF-8 text
/// can: each becomes U+FFFD, as in the browser's own conversion of such texts to UTF-8 (Encoding Standard, "UTF-8
/// encode"). Nesting is bounded above what the browser itself serialises.
[[nodiscard]] boost::json::value parseMessage(std::string_view text);

/// JSON text with every \u escape that is half a surrogate pair replaced by \ufffd; all else as it stands.
[[nodiscard]] std::string withoutLoneSurrogates(std::string_view json);

} // namespace tabwright::devtools
