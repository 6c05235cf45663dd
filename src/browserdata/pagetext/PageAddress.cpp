// Pages hold addresses that no grammar lets through, and browsers mend them; so they are mended first, and the library
// resolves what is valid then.
#include "browserdata/pagetext/PageAddress.h"

#include "html/WhiteSpace.h"
#include "platform/AsciiCase.h"

#include <boost/url/parse.hpp>
#include <boost/url/url.hpp>
#include <boost/url/url_view.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <array>

namespace tabwright::browserdata {

namespace {

constexpr std::string_view neverInAddresses = " \"<>\\^`{|}";

bool isSchemeOf(std::string_view scheme, std::string_view address) {
  return address.size() > scheme.size() && address[scheme.size()] == ':' &&
         platform::equalIgnoringCase(address.substr(0, scheme.size()), scheme);
}

std::string encoded(std::string_view address) {
  const auto isTrimmed = [](char c) { return static_cast<unsigned char>(c) <= 0x20; };
  while (!address.empty() && isTrimmed(address.front()))
    address.remove_prefix(1);
  while (!address.empty() && isTrimmed(address.back()))
    address.remove_suffix(1);
  std::string result;
  for (const char c : address) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n' || c == '\r' || c == '\t')
      continue; // browsers drop them
    if (byte < 0x20 || byte >= 0x7F || neverInAddresses.contains(c))
      result += fmt::format("%{:02X}", byte);
    else
      result += c;
  }
  return result;
}

// A percent sign that begins no escape, and a bracket or a second “#” behind the host: the grammar has no place for
// them, though browsers let them stand.
std::string strictlyEncoded(std::string_view address) {
  const auto isHex = [&](std::size_t at) {
    return at < address.size() && std::string_view("0123456789abcdefABCDEF").contains(address[at]);
  };
  std::string result;
  bool isInFragment = false;
  for (std::size_t at = 0; at < address.size(); ++at) {
    const char c = address[at];
    if ((c == '%' && !(isHex(at + 1) && isHex(at + 2))) || c == '[' || c == ']' || (c == '#' && isInFragment))
      result += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    else
      result += c;
    isInFragment |= c == '#';
  }
  return result;
}

} // namespace

std::string absoluteAddress(std::string_view address, std::string_view base) {
  std::string own = encoded(address);
  if (base.empty() || own.starts_with("mailto:") || own.starts_with("tel:"))
    return own;
  const auto parsedBase = boost::urls::parse_uri(base);
  boost::urls::url resolved;
  auto reference = boost::urls::parse_uri_reference(own);
  std::string strict;
  if (!reference)
    reference = boost::urls::parse_uri_reference(strict = strictlyEncoded(own));
  if (!reference)
    return own;
  if (reference->has_scheme())
    return own; // as it was written: resolving would only tidy its path
  if (!parsedBase || !boost::urls::resolve(*parsedBase, *reference, resolved))
    return own;
  return std::string(resolved.buffer());
}

bool leadsNowhere(std::string_view absolute) {
  constexpr std::array<std::string_view, 4> schemes{"javascript", "vbscript", "data", "blob"};
  return std::ranges::any_of(schemes, [&](std::string_view scheme) { return isSchemeOf(scheme, absolute); });
}

} // namespace tabwright::browserdata
