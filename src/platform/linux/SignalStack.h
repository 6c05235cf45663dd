#pragma once

namespace tabwright::platform {

/// Gives the calling thread a stack of its own for signal handlers (sigaltstack(2)), until the thread ends, so that a
/// handler can run when the thread's own stack has overflowed. Costs some address space, and memory only once a handler
/// runs. A thread that has one keeps it; where there is no memory for one nothing happens.
void ensureSignalStack() noexcept;

} // namespace tabwright::platform
