#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::updates {

/// Why a newer version could not be looked for, fetched or put in place. Whatever is thrown, the program that is
/// installed stays as it was.
enum class UpdateFault {
  insecureAddress, ///< an address that others could answer for. detail: the address
  unreachable,     ///< no answer came, or the connection broke. detail: why
  refused,         ///< the server answered with something else. detail: its status
  timedOut,        ///< the deadline passed
  stopped,         ///< a stop was requested
  tooLong,         ///< more came than was announced or is taken. detail: the most, in bytes
  truncated,       ///< less came than was announced. detail: how much of how much
  malformedFeed,   ///< the feed can't be read. detail: the place and what is wrong there
  unusableKey,     ///< the key that this build checks signatures with is none
  unsignedArchive, ///< the feed gives no signature, or no archive
  wronglySigned,   ///< the signature isn't that of these bytes by this key
  brokenArchive,   ///< the archive can't be read. detail: why
  unsafeArchive,   ///< the archive would write elsewhere. detail: what
  unfitProgram,    ///< the program in the archive isn't what was announced. detail: why
  notOurs,         ///< this copy is updated by others. detail: how, a sentence
  busy,            ///< another process is updating the same folder
};

[[nodiscard]] std::string errorDescription(UpdateFault fault, const std::string& detail);
[[nodiscard]] platform::FailureIdentity identity(UpdateFault fault);

using UpdateFailure = platform::CatalogueFailure<UpdateFault>;

} // namespace tabwright::updates
