#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>

namespace tabwright::engine {

/// The 26 characters of a ULID: 48 bits of milliseconds since 1970-01-01 UTC and 80 random bits,
/// in Crockford's base 32. ULIDs of a later millisecond sort behind. Times outside the 48 bits lose their upper bits.
[[nodiscard]] std::string ulid(std::chrono::milliseconds sinceUnixEpoch,
                               const std::array<std::uint8_t, 10>& randomness);

/// A ULID of the present moment with fresh randomness of the system.
/// Throws `std::system_error` where the system has no random numbers.
[[nodiscard]] std::string freshULID();

} // namespace tabwright::engine
