#pragma once

#include "platform/Failure.h"

#include <string>

namespace tabwright::connect {

/// Why a browser could not be connected or disconnected. Whatever is thrown, each file of the browser's is as it was or
/// whole and new.
enum class ConnectFault {
  incomplete,    ///< this copy of the program lacks a part. detail: the missing file
  sandboxed,     ///< the browser can't start our relay. detail: the sentence
  linked,        ///< a symbolic link stands where a folder is written to. detail: its path
  noFolder,      ///< something else stands there. detail: its path
  foreign,       ///< the folder is another user's. detail: its path
  unwritable,    ///< the system refused to read, write or remove. detail: the sentence
  damagedRecord, ///< the list of connected browsers can't be read. detail: its path and why
  notInstalled,  ///< there is no browser to connect. detail: the sentence
  notSeen,       ///< the helper did not come in time. detail: the sentence
  noScripts,     ///< the helper came, but may not run scripts in pages. detail: the sentence
};

[[nodiscard]] std::string errorDescription(ConnectFault fault, const std::string& detail);
/// Of class `system` for what the system refused, `unreachable` where a browser isn't reached in the end.
[[nodiscard]] platform::FailureIdentity identity(ConnectFault fault);

using ConnectFailure = platform::CatalogueFailure<ConnectFault>;

} // namespace tabwright::connect
