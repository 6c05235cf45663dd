#pragma once

#include <string>
#include <string_view>

namespace tabwright::browserdata {

/// An address of a page as it holds outside of it: resolved against `base` (RFC 3986, section 5) as browsers do it,
/// blanks around it left out, and all that no address may hold percent-encoded, in UTF-8. With an empty base, or one
/// that is not absolute, relative addresses stay relative. What is no address even then stays as it is, but encoded.
///
///     absoluteAddress("../b?c d", "https://x.test/a/a.html")    // https://x.test/b?c%20d
[[nodiscard]] std::string absoluteAddress(std::string_view address, std::string_view base);

/// True for an address of a scheme that runs code where it stands, or holds all its data itself: “javascript:”,
/// “vbscript:”, “data:” and “blob:”. Such an address leads a reader nowhere.
[[nodiscard]] bool leadsNowhere(std::string_view absolute);

} // namespace tabwright::browserdata
