#pragma once

#include <string>
#include <string_view>

namespace tabwright::html {

/// The text of a page's bytes, as UTF-8. Its encoding is found from, in this order: a byte order mark (UTF-8, UTF-16),
/// a `meta` element within the first 1,024 bytes (`charset=…`, as the HTML standard's prescan looks for it), else it is
/// UTF-8. An encoding that isn't known counts as UTF-8; bytes that mean nothing in it become U+FFFD.
[[nodiscard]] std::string decodedPage(std::string bytes);

} // namespace tabwright::html
