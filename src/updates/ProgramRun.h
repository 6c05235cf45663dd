#pragma once

#include "platform/CallLimits.h"

#include <optional>
#include <string>
#include <vector>

namespace tabwright::updates {

struct ProgramResult {
  int exitCode = 0;   ///< 128 + the signal when one ended it
  std::string output; ///< its standard output, at most 4 KiB of it
};

/// Runs a program (on PATH, or a path) with its arguments and without input to its end. Its errors go nowhere. Nothing
/// for one that can't be started. At the deadline or a stop the program and its children are killed, which is nothing
/// as well.
[[nodiscard]] std::optional<ProgramResult> runProgram(const std::vector<std::string>& words,
                                                      const platform::CallLimits& limits);

} // namespace tabwright::updates
