#pragma once

#include <cstdint>
#include <expected>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace tabwright::devtools {

/// The place at which a browser listens for the DevTools protocol, always on 127.0.0.1.
struct Endpoint {
  std::uint16_t port = 0;
  std::string path; ///< of the websocket, such as "/devtools/browser/a89c6591-82a3-4ae8-a189-5cba8bdcc2e9"
  friend bool operator==(const Endpoint&, const Endpoint&) = default;
};

/// The reasons why a running browser can't be reached through its profile.
enum class DiscoveryFault {
  absent,          ///< the profile has no DevToolsActivePort: remote debugging is off
  unreadable,      ///< it is there, but can't be read
  untrusted,       ///< it isn't a regular file of the browser's user or this one
  malformed,       ///< its text isn't a port and a path
  notListening,    ///< nobody listens at the port: the file is left over from an earlier run
  foreignListener, ///< another process than the browser listens there
};

/// Returned rather than thrown, since a profile without an endpoint is an ordinary find.
struct DiscoveryFailure {
  DiscoveryFault fault;
  std::string detail; ///< the file and what is wrong with it, for the log
};

/// Reads the text of DevToolsActivePort strictly: a port from 1 to 65535 without sign or leading zero, a newline, and
/// the path "/devtools/browser/" with a UUID; nothing before, between or behind, but for one newline at the end.
[[nodiscard]] std::expected<Endpoint, DiscoveryFailure> parseActivePort(std::string_view text);

/// Finds the endpoint of a running browser by the file DevToolsActivePort in its user data directory.
///
/// The file outlives its browser, and anybody who may write there could leave one: so it is believed only if the
/// listening socket belongs to the browser's own process. Whoever connects then talks to that browser and no other.
class Discovery {
public:
  /// `processes` is where the process file system is mounted; tests give a directory of their own.
  explicit Discovery(std::filesystem::path processes = "/proc");

  /// The endpoint of the browser process that serves the profile, or why there is none. `owner` is that process' user.
  [[nodiscard]] std::expected<Endpoint, DiscoveryFailure> endpoint(const std::filesystem::path& profileDirectory,
                                                                   pid_t process, uid_t owner) const;

private:
  std::filesystem::path processes_;
};

} // namespace tabwright::devtools
