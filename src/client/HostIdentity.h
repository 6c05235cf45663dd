#pragma once

#include <string>

namespace tabwright::client {

/// The path of the running program, with symbolic links resolved. Throws HostUnavailable where /proc isn't there.
[[nodiscard]] std::string programPath();

/// The name of the host that does for this process what it would do itself: 16 hexadecimal digits, which follow from
/// all of the surroundings that a host acts by. These are the variables that tell where the user's files, windows and
/// programs are and in which language and time zone they live; the mode of new files; and where this program is
/// installed. Processes that differ in one of them have different hosts.
[[nodiscard]] std::string hostIdentity(const std::string& programPath);

} // namespace tabwright::client
