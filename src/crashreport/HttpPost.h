#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::crashreport {

/// The answer of a server to a request.
struct HttpAnswer {
  int status = 0;
  /// The time that the server asks to be left alone (Retry-After, RFC 9110).
  std::optional<std::chrono::seconds> retryAfter;
};

/// Posts a body and waits for the answer, whose own body isn't kept. Yields nothing when there was none within
/// `patience`, or no library to ask by; the log says why. Redirections aren't followed, certificates are checked, and
/// the proxy of the environment is used.
///
/// libcurl does it, since it knows proxies, both address families and the system's certificates. It is loaded at the
/// first call: only the process that sends reports needs it and the two dozen libraries behind it.
[[nodiscard]] std::optional<HttpAnswer> httpPost(const std::string& url, const std::vector<std::string>& headers,
                                                 std::string_view body, std::chrono::milliseconds patience);

} // namespace tabwright::crashreport
