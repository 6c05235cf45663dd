// The file is checked from the outside in: a regular file of the right user, then its exact text, then the socket that
// listens at its port. All must hold before a byte is sent to that port, since the file may be left over or planted,
// and whoever listens there would be taken for the browser.
#include "devtools/Discovery.h"

#include "platform/FileFailure.h"
#include "platform/linux/ListeningSocket.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabwright::devtools {

namespace {

using Unexpected = std::unexpected<DiscoveryFailure>;

Unexpected fault(DiscoveryFault kind, std::string detail) {
  return Unexpected(DiscoveryFailure{kind, std::move(detail)});
}

bool isUUID(std::string_view text) {
  constexpr std::string_view shape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  if (text.size() != shape.size())
    return false;
  for (std::size_t index = 0; index < shape.size(); ++index) {
    const char c = text[index];
    const bool isHex = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    if (shape[index] == '-' ? c != '-' : !isHex)
      return false;
  }
  return true;
}

/// The file's text, read from one descriptor, so that what was checked is what is read.
std::expected<std::string, DiscoveryFailure> readTrusted(const std::filesystem::path& file, uid_t owner) {
  // A link in the file's place is not followed, and a FIFO there doesn't hold the caller up.
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    const int error = errno;
    if (platform::isShortage(error)) // which tells nothing about the browser
      throw platform::FileFailure("read", file, error);
    const std::string detail = fmt::format("{}: {}", file.string(), std::strerror(error));
    if (error == ENOENT || error == ENOTDIR)
      return fault(DiscoveryFault::absent, detail);
    return fault(error == ELOOP ? DiscoveryFault::untrusted : DiscoveryFault::unreadable, detail);
  }
  struct stat status{};
  // A port and a path are 60 bytes or so; of a longer file the rest need not be read to find it malformed.
  std::array<char, 256> buffer{};
  const bool isKnown = ::fstat(descriptor, &status) == 0;
  const ssize_t size = isKnown && S_ISREG(status.st_mode) ? ::read(descriptor, buffer.data(), buffer.size()) : 0;
  ::close(descriptor);

  if (!isKnown || !S_ISREG(status.st_mode))
    return fault(DiscoveryFault::untrusted, fmt::format("{}: not a regular file", file.string()));
  if (status.st_uid != owner && status.st_uid != geteuid())
    return fault(DiscoveryFault::untrusted, fmt::format("{}: belongs to user {}", file.string(), status.st_uid));
  if (size < 0)
    return fault(DiscoveryFault::unreadable, fmt::format("{}: can't be read", file.string()));
  return std::string(buffer.data(), static_cast<std::size_t>(size));
}

} // namespace

std::expected<Endpoint, DiscoveryFailure> parseActivePort(std::string_view text) {
  if (text.ends_with('\n'))
    text.remove_suffix(1);
  const std::size_t newline = text.find('\n');
  if (newline == std::string_view::npos)
    return fault(DiscoveryFault::malformed, "one line instead of two");

  const std::string_view digits = text.substr(0, newline);
  std::uint16_t port = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), port);
  // from_chars takes 0 and leading zeros, which no browser writes.
  if (error != std::errc{} || end != digits.data() + digits.size() || digits.starts_with('0'))
    return fault(DiscoveryFault::malformed, "the first line is not a port");

  const std::string_view path = text.substr(newline + 1);
  constexpr std::string_view prefix = "/devtools/browser/";
  if (!path.starts_with(prefix) || !isUUID(path.substr(prefix.size())))
    return fault(DiscoveryFault::malformed, "the second line is not the path of a browser");
  return Endpoint{port, std::string(path)};
}

Discovery::Discovery(std::filesystem::path processes) : processes_(std::move(processes)) {}

std::expected<Endpoint, DiscoveryFailure> Discovery::endpoint(const std::filesystem::path& profileDirectory,
                                                              pid_t process, uid_t owner) const {
  const std::filesystem::path file = profileDirectory / "DevToolsActivePort";
  const std::expected<std::string, DiscoveryFailure> text = readTrusted(file, owner);
  if (!text)
    return Unexpected(text.error());
  std::expected<Endpoint, DiscoveryFailure> endpoint = parseActivePort(*text);
  if (!endpoint)
    return fault(endpoint.error().fault, fmt::format("{}: {}", file.string(), endpoint.error().detail));

  switch (platform::ownerOfListener(endpoint->port, process, processes_)) {
  case platform::ListenerOwner::thisProcess:
    return endpoint;
  case platform::ListenerOwner::none:
    return fault(DiscoveryFault::notListening,
                 fmt::format("{}: nobody listens at port {}", file.string(), endpoint->port));
  case platform::ListenerOwner::another:
    break;
  }
  return fault(DiscoveryFault::foreignListener,
               fmt::format("{}: port {} is not that of process {}", file.string(), endpoint->port, process));
}

} // namespace tabwright::devtools
