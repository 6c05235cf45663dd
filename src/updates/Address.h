#pragma once

#include <string>

namespace tabwright::updates {

/// Throws `UpdateFault::insecureAddress` for an address that others could answer for: all but those of https, and of
/// http on this machine itself (localhost, 127.0.0.0/8, ::1).
void requireSecure(const std::string& address);

/// The same for an address that one of another document or server leads to: https leads to https alone.
void requireSecure(const std::string& address, const std::string& from);

/// True for http on this machine itself.
[[nodiscard]] bool isOnThisMachine(const std::string& address);

} // namespace tabwright::updates
