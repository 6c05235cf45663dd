#pragma once

#include <string>
#include <vector>

namespace tabwright::client {

/// How a run through the host came out.
struct RunOutcome {
  enum class Kind {
    done,         ///< the host has answered: the other members are its answer
    notStarted,   ///< the host went away, or serves newcomers no more: nothing has been run
    lost,         ///< the host went away while the action ran: nobody knows what has been done
    unresponsive, ///< the host didn't begin in time
    refused,      ///< the host didn't take the request; `error` says why
  };
  Kind kind = Kind::done;
  std::string output;
  std::string error;
  int exitCode = 0;
};

/// Has the host at the other end of a connected socket run an action, `words` being those behind "run". What the host
/// asks for in between is answered from this process's terminal, files and standard input. Blocks until the action has
/// ended, however long that takes once it has begun.
[[nodiscard]] RunOutcome runThroughHost(int socket, const std::vector<std::string>& words);

} // namespace tabwright::client
