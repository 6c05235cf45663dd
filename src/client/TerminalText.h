#pragma once

#include <string>
#include <string_view>

namespace tabwright::client {

/// A text as it may go to a terminal: pages choose their titles, their texts and the messages of their errors, and none
/// of these may steer the terminal or repaint its lines.
///
/// Left out are control characters (escape sequences begin with one) but for line feed and tab, those of ISO 6429's
/// upper half, and the marks that turn the direction of text. What no UTF-8 is becomes U+FFFD.
[[nodiscard]] std::string terminalText(std::string_view text);

} // namespace tabwright::client
