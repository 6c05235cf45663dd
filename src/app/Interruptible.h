#pragma once

#include "client/WaitingLine.h"
#include "platform/Task.h"

#include <exception>
#include <functional>
#include <optional>
#include <stop_token>

namespace tabwright::app {

/// Thrown by the functions below when SIGINT, SIGTERM or SIGHUP arrived; the work has ended by then.
class Interrupted final : public std::exception {
public:
  [[nodiscard]] const char* what() const noexcept override { return "interrupted"; }
};

/// Runs a coroutine to its end on this thread, and blocks meanwhile. These signals cancel it; the call returns only
/// when it has ended. Rethrows what the coroutine throws, or Interrupted when it was cancelled by a signal; a SIGHUP
/// that was ignored before, as by nohup(1), stays so. `waiting`, if any, is shown when it is due, and erased at the
/// end; it outlives the call and is used on this thread alone.
///
///     runInterruptibly(flow::runWorkflow(steps, variables, catalogue, user, observer, readFile));
void runInterruptibly(platform::Task<void> task, client::WaitingLine* waiting = nullptr);

/// Runs blocking work on a thread of its own, with a stop token that these signals request. As above otherwise; work
/// that doesn't look at its token isn't interrupted.
void runInterruptibly(const std::function<void(std::stop_token)>& work, client::WaitingLine* waiting = nullptr);

} // namespace tabwright::app
