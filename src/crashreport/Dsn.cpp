// {scheme}://{key}[:{secret}]@{host}[:{port}][/{path}]/{project}, from the left to the right. A secret is a relic that
// collectors ignore, so it isn't kept.
#include "crashreport/Dsn.h"

#include <algorithm>

namespace tabwright::crashreport {
namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view keyCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
constexpr std::string_view hostCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-.";
constexpr std::string_view pathCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";

bool consistsOf(std::string_view text, std::string_view characters) {
  return !text.empty() && text.find_first_not_of(characters) == std::string_view::npos;
}

bool isPort(std::string_view text) {
  return consistsOf(text, digits) && text.size() <= 5 && std::stoi(std::string(text)) <= 65535;
}

bool isThisMachine(std::string_view host) {
  if (host == "localhost" || host == "[::1]")
    return true;
  return host.starts_with("127.") && consistsOf(host, "0123456789.") && std::ranges::count(host, '.') == 3;
}

/// Takes what stands before the first `separator` off the text; nothing when there is none.
std::optional<std::string_view> takeUpTo(std::string_view& text, std::string_view separator) {
  const std::size_t end = text.find(separator);
  if (end == std::string_view::npos)
    return std::nullopt;
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(end + separator.size());
  return part;
}

/// A bracketed IPv6 address, or a name or IPv4 address.
bool isHost(std::string_view host) {
  if (host.starts_with('['))
    return host.size() > 2 && host.ends_with(']') &&
           consistsOf(host.substr(1, host.size() - 2), "0123456789abcdefABCDEF:.");
  return consistsOf(host, hostCharacters);
}

} // namespace

std::optional<Dsn> Dsn::parse(std::string_view text) {
  const auto scheme = takeUpTo(text, "://");
  const auto user = scheme ? takeUpTo(text, "@") : std::nullopt;
  const std::size_t slash = text.find('/');
  const std::size_t lastSlash = text.rfind('/');
  if (!user || slash == std::string_view::npos)
    return std::nullopt;
  const std::string_view key = user->substr(0, user->find(':'));
  const std::string_view authority = text.substr(0, slash);
  const std::string_view path = text.substr(slash, lastSlash - slash); // empty, or from its slash on
  const std::string_view project = text.substr(lastSlash + 1);
  const std::size_t colon = authority.find(':', authority.starts_with('[') ? authority.find(']') : 0);
  const std::string_view host = authority.substr(0, colon);
  if (!consistsOf(key, keyCharacters) || !isHost(host) || !consistsOf(project, digits))
    return std::nullopt;
  if (colon != std::string_view::npos && !isPort(authority.substr(colon + 1)))
    return std::nullopt;
  if (!path.empty() && !consistsOf(path, pathCharacters))
    return std::nullopt;
  if (*scheme != "https" && (*scheme != "http" || !isThisMachine(host)))
    return std::nullopt;
  return Dsn{
      .envelopeURL =
          std::string(*scheme).append("://").append(authority).append(path).append("/api/").append(project).append(
              "/envelope/"),
      .publicKey = std::string(key)};
}

} // namespace tabwright::crashreport
