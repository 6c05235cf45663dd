#pragma once

#include <cstdint>
#include <filesystem>
#include <sys/types.h>

namespace tabwright::platform {

/// The answer is that of one moment: sockets come and go.
enum class ListenerOwner {
  none,        ///< nobody listens there
  thisProcess, ///< every socket that could take the connection belongs to the process
  another,     ///< a socket of another process could take it, or its owner is unknown
};

/// The owner who would take a connection to 127.0.0.1 at a TCP port: whether it is the given process.
///
/// Compares the inodes of the listening sockets (net/tcp and net/tcp6 of the process file system, proc(5)) with the
/// open descriptors of the process. `processes` is where that file system is mounted. Throws FileFailure only when
/// this process has run short of descriptors or memory. So a port that a browser's profile names is known to be that
/// browser's before anything is said to it. Another user's process can't be looked into, and counts as another.
[[nodiscard]] ListenerOwner ownerOfListener(std::uint16_t port, pid_t process,
                                            const std::filesystem::path& processes = "/proc");

} // namespace tabwright::platform
