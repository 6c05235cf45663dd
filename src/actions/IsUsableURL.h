#pragma once

#include "intents/Parameter.h"

#include <string_view>

namespace tabwright::actions {

/// True when an action may open `text` (UTF-8) in a browser: a URL of the scheme http, https or file, spelled in small
/// letters, that names a host unless it is a file's.
///
///     isUsableURL("https://example.com/a?b=c#d")    // true
///     isUsableURL("file:///tmp/x")                  // true
///     isUsableURL("http:")                          // false: no host
///     isUsableURL("https://example.com/ ")          // false: nothing is trimmed
///
/// The grammar is that of RFC 3986 with the characters beyond ASCII that RFC 3987 adds: they are what users copy from
/// an address bar. It differs in three points. A host is a name of letters, digits, "-", ".", "_" and percent escapes,
/// or an IPv6 address in brackets, and a port is at most 65535. The URL of a file has neither user nor port. Behind the
/// host the characters [ ] { } | ^ ` < > may stand unescaped, a percent sign need not begin an escape, and a fragment
/// may hold "#": pages use them, browsers take them and show them.
///
/// It is also the guard of texts that go into a script between double quotes: no double quote, backslash, control
/// character or white space of any kind passes, and no malformed UTF-8. From any thread.
[[nodiscard]] bool isUsableURL(std::string_view text);

/// Throws the `NeedsValue` of the parameter for a text that isn't usable; beneath it stands what is wrong with the text
/// and what may stand there.
void requireUsableURL(const intents::ParameterBase& parameter, std::string_view text);

} // namespace tabwright::actions
