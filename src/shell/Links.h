#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::shell {

/// The places on the web that belong to the program. They are options of the build (TABWRIGHT_WEBSITE and so on) and
/// empty where it names none: then there is nothing to open, and windows show no link to it.
struct Endpoints {
  std::string_view website;       ///< such as "https://example.org", without a slash at its end
  std::string_view documentation; ///< the root of the documentation's site, likewise
  std::string_view forum;         ///< the root of the forum's site, likewise
  std::string_view supportMail;   ///< an address of mail
  std::string_view makersProfile; ///< the address of a page

  [[nodiscard]] static const Endpoints& ofThisBuild();
};

/// The address with "ref=" and the reference added: behind "?" where it has no query yet, else behind "&". Without a
/// reference the address as it is; nothing for one that is no URI (RFC 3986).
[[nodiscard]] std::optional<std::string> addressWithRef(std::string address, std::string_view ref);

/// The target of a link in windows: the address and "?ref=tw-macos".
[[nodiscard]] std::string refLinkTarget(std::string_view address);

/// A mail to the makers: subject and body are percent-encoded, and the body ends with the summary of the surroundings.
/// Nothing where the build names no address.
[[nodiscard]] std::optional<std::string> feedbackAddress(const Endpoints& endpoints, std::string_view summary);

} // namespace tabwright::shell
