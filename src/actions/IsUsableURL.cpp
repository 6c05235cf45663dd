// The text is taken apart from the left: scheme, authority, and what follows it, whose parts may hold the same. Each
// part is read character by character against the set it may hold. A list of what is allowed rather than of what is
// not: the text goes between quotes of a program, so what isn't known to be harmless stays out.
#include "actions/IsUsableURL.h"

#include "platform/StringCatalogue.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <arpa/inet.h>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>

namespace tabwright::actions {

namespace {

// Beside letters, digits and percent escapes.
constexpr std::string_view hostName = "-._";
constexpr std::string_view userInfo = "-._~!$&'()*+,;=:";
constexpr std::string_view afterHost = "-._~!$&'()*+,;=:@/?#[]{}|^`<>";

bool isLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// RFC 3987, section 2.2, but for white space; controls that turn the direction of writing are ruled out by section 4.1.
bool mayStandBeyondASCII(UChar32 character) {
  switch (u_charType(character)) {
  case U_CONTROL_CHAR:
  case U_SURROGATE:
  case U_PRIVATE_USE_CHAR:
    return false;
  default:
    return !(U_IS_UNICODE_NONCHAR(character) || u_isUWhiteSpace(character) ||
             u_hasBinaryProperty(character, UCHAR_BIDI_CONTROL));
  }
}

// The part that a percent sign plays: behind the host it may stand by itself.
enum class Percent { beginsEscape, anywhere };

bool consistsOf(std::string_view text, std::string_view characters, Percent percent = Percent::beginsEscape) {
  const auto size = static_cast<std::int64_t>(text.size());
  for (std::int64_t at = 0; at < size;) {
    const char c = text[static_cast<std::size_t>(at)];
    if (c == '%' && percent == Percent::beginsEscape) {
      if (at + 2 >= size || !isHexDigit(text[static_cast<std::size_t>(at) + 1]) ||
          !isHexDigit(text[static_cast<std::size_t>(at) + 2]))
        return false;
      at += 3;
    } else if (isLetterOrDigit(c) || c == '%' || characters.find(c) != std::string_view::npos) {
      ++at;
    } else {
      UChar32 character = 0;
      U8_NEXT(text.data(), at, size, character); // negative for malformed UTF-8
      if (character < 0x80 || !mayStandBeyondASCII(character))
        return false;
    }
  }
  return true;
}

// Takes the part before the first of `marks` away; `text` keeps the rest, mark included.
std::string_view takeUntil(std::string_view& text, std::string_view marks) {
  const std::string_view taken = text.substr(0, text.find_first_of(marks));
  text.remove_prefix(taken.size());
  return taken;
}

bool isIPv6(const std::string& text) {
  in6_addr address{};
  return inet_pton(AF_INET6, text.c_str(), &address) == 1 && text.find('\0') == std::string::npos;
}

// A name is taken as it stands: whether it resolves is the browser's business.
bool isHost(std::string_view text) {
  if (text.starts_with('['))
    return text.ends_with(']') && isIPv6(std::string(text.substr(1, text.size() - 2)));
  return !text.empty() && consistsOf(text, hostName);
}

// The text behind the host: nothing, or a colon and digits, which may be missing.
bool isPort(std::string_view text) {
  if (text.empty() || text == ":")
    return true;
  std::uint16_t port = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, failed] = std::from_chars(text.data() + 1, end, port);
  return text.front() == ':' && failed == std::errc{} && stop == end;
}

bool isAuthority(std::string_view text) {
  if (const std::size_t at = text.find('@'); at != std::string_view::npos) {
    if (!consistsOf(text.substr(0, at), userInfo))
      return false;
    text.remove_prefix(at + 1);
  }
  // The colons of an IPv6 address are none before a port.
  const std::size_t hostEnd = text.starts_with('[') ? text.find(']') : text.find(':');
  const std::size_t hostSize = text.starts_with('[') && hostEnd != std::string_view::npos ? hostEnd + 1 : hostEnd;
  const std::string_view host = text.substr(0, hostSize);
  return isHost(host) && isPort(text.substr(host.size()));
}

// The first thing from the left that keeps a text from being usable; nothing when it is.
enum class URLFault { scheme, host, character };

std::optional<URLFault> faultOf(std::string_view text) {
  const std::string_view scheme = takeUntil(text, ":");
  const bool isFile = scheme == "file";
  if ((!isFile && scheme != "http" && scheme != "https") || text.empty())
    return URLFault::scheme;
  text.remove_prefix(1);

  if (text.starts_with("//")) {
    text.remove_prefix(2);
    const std::string_view authority = takeUntil(text, "/?#");
    // A file's URL mostly has no host: "file:///tmp".
    if (isFile ? !authority.empty() && !isHost(authority) : !isAuthority(authority))
      return URLFault::host;
  } else if (!isFile) {
    return URLFault::host;
  }
  // The query and the fragment may hold more of the "?" and "#" that begin them.
  return consistsOf(text, afterHost, Percent::anywhere) ? std::nullopt : std::optional(URLFault::character);
}

} // namespace

bool isUsableURL(std::string_view text) {
  return !faultOf(text);
}

void requireUsableURL(const intents::ParameterBase& parameter, std::string_view text) {
  const std::optional<URLFault> fault = faultOf(text);
  if (!fault)
    return;
  const char* const name = *fault == URLFault::scheme ? "scheme" : *fault == URLFault::host ? "host" : "character";
  intents::NeedsValue refusal = parameter.needsValueError();
  refusal.setCause(platform::Notice{{"UnusableURL", name, {}},
                                    platform::localizedFormat(std::string("unusableURL.") + name, {text})});
  throw refusal;
}

} // namespace tabwright::actions
