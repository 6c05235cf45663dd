#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tabwright::client {

/// The outcome of a run through the host.
struct RunOutcome {
  enum class Kind {
    done,         ///< the host has answered: the other members are its answer
    notStarted,   ///< the host went away, or serves newcomers no more: nothing has been run
    lost,         ///< the host went away while the action ran: nobody knows what has been done
    unresponsive, ///< the host didn't begin in time
    refused,      ///< the host didn't take the request; `error` says why
  };
  /// Texts of `done` are for the two standard streams, each perhaps empty. Nothing but `error` counts for `refused`,
  /// and nothing at all for the others.
  Kind kind = Kind::done;
  std::string output;
  std::string error;
  int exitCode = 0;
};

/// Takes a run's output as it comes: to standard output, to standard error.
using Print = std::function<void(const std::string& output, const std::string& error)>;

/// Has the host at the other end of a connected socket run an action, `words` being those behind "run". What the host
/// asks for in between is answered from this process's terminal, files and standard input, and what it prints in
/// between goes to `print`. Blocks until the action has ended, however long that takes once it has begun; a person at a
/// terminal is told then what is waited for.
[[nodiscard]] RunOutcome runThroughHost(int socket, const std::vector<std::string>& words, const Print& print);

} // namespace tabwright::client
