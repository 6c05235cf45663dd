#pragma once

#include <chrono>
#include <cstdint>

namespace tabwright::devtools {

/// The answer of a debugging port to a plain question.
enum class PortAnswer {
  http,   ///< whoever listens there speaks HTTP, as browsers do
  other,  ///< nobody takes the connection, or what comes is no HTTP
  silence ///< the connection is taken, and nothing comes: the browser is frozen, or very busy
};

/// Asks at 127.0.0.1 for /json/version, which costs a browser nothing, opens no session and asks its user nothing.
/// Takes no longer than `patience`.
/// Blocks, from any thread, and never throws for the other side's sake. The answer says nothing about who listens: that
/// is for `Discovery` to find out.
[[nodiscard]] PortAnswer lookAtPort(std::uint16_t port, std::chrono::milliseconds patience);

} // namespace tabwright::devtools
