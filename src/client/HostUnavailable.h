#pragma once

#include <stdexcept>

namespace tabwright::client {

/// There is no background host and none can be started; nothing has been run. The sentence says why.
///
/// Not one of platform's failures: the client links nothing but the C library.
class HostUnavailable final : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

} // namespace tabwright::client
