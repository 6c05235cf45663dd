#pragma once

#include <string>

namespace tabwright::client {

class RuntimeFolder;

/// The path of the full program `tabwright-host`: beside the client, or in ../libexec/tabwright seen from there.
/// Throws HostUnavailable, with both places, when it is in neither.
[[nodiscard]] std::string hostProgram(const std::string& programPath);

/// Becomes the full program, with the same arguments. Throws HostUnavailable when it can't be executed.
[[noreturn]] void becomeHostProgram(const std::string& hostProgram, char** arguments);

/// Starts the host in a session of its own, with no standard streams and in the root folder, and hands over the
/// listening socket, which it serves as `socketPath`, and the lock. They remain open here. The process outlives this
/// one. Throws HostUnavailable when it can't be executed.
void startHost(const std::string& hostProgram, const std::string& socketPath, int socket, int lock);

} // namespace tabwright::client
