#pragma once

#include "platform/CallLimits.h"
#include "platform/linux/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace tabwright::updates {

/// Fetching over https, and over http from this machine itself (updates/Address.h), with at most five redirects, each
/// of which is looked at before it is followed. Both block; proxies are those of the environment. They throw
/// `UpdateFailure`: `insecureAddress`, `unreachable`, `refused`, `tooLong`, `truncated`, and `timedOut` or `stopped` by
/// the limits. Nothing is kept of what had come.

/// The whole answer, of at most `most` bytes.
[[nodiscard]] std::string fetchText(const std::string& address, std::size_t most, const platform::CallLimits& limits);

/// An answer of exactly `length` bytes, in a file that has no name: nobody else can open it, and it is gone once it is
/// closed, however the process ends. Throws `FileFailure` where it can't be written.
[[nodiscard]] platform::FileDescriptor fetchFile(const std::string& address, std::uint64_t length,
                                                 const platform::CallLimits& limits);

} // namespace tabwright::updates
