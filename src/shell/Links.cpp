#include "shell/Links.h"

#include "shell/Varn.h"

#include <boost/url/encode.hpp>
#include <boost/url/parse.hpp>
#include <boost/url/rfc/unreserved_chars.hpp>
#include <boost/url/url_view.hpp>
#include <fmt/core.h>

namespace tabwright::shell {

const Endpoints& Endpoints::ofThisBuild() {
  static constexpr Endpoints endpoints{.website = TABWRIGHT_WEBSITE,
                                       .documentation = TABWRIGHT_DOCUMENTATION,
                                       .forum = TABWRIGHT_FORUM,
                                       .supportMail = TABWRIGHT_SUPPORT_MAIL,
                                       .makersProfile = TABWRIGHT_MAKERS_PROFILE};
  return endpoints;
}

std::optional<std::string> addressWithRef(std::string address, std::string_view ref) {
  if (!ref.empty()) {
    address += address.contains('?') ? '&' : '?';
    address += fmt::format("ref={}", ref);
  }
  if (!boost::urls::parse_uri(address))
    return std::nullopt;
  return address;
}

std::string refLinkTarget(std::string_view address) {
  return fmt::format("{}?ref=tw-macos", address);
}

std::optional<std::string> feedbackAddress(const Endpoints& endpoints, std::string_view summary) {
  if (endpoints.supportMail.empty())
    return std::nullopt;
  const auto encoded = [](const std::string& text) { return boost::urls::encode(text, boost::urls::unreserved_chars); };
  const std::string subject = fmt::format("{} feedback", Varn::App::name);
  const std::string body = fmt::format("\n\n\n------\n{}\n\n↑↑↑ Please leave this part in, thanks!\n------", summary);
  return addressWithRef(
      fmt::format("mailto:{}?subject={}&body={}", endpoints.supportMail, encoded(subject), encoded(body)), "tw-macos");
}

} // namespace tabwright::shell
