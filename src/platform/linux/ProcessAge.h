#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>

namespace tabwright::platform {

/// The time since a process was started. Nothing for one that is gone. Counts the time that the machine was asleep, in
/// steps of the kernel's clock tick, 10 ms.
[[nodiscard]] std::optional<std::chrono::milliseconds> ageOfProcess(pid_t process);

/// The process that started it, or that adopted it since. Nothing for one that is gone.
[[nodiscard]] std::optional<pid_t> parentOfProcess(pid_t process);

/// The process as users are told of it: `“mousepad” (process 1234)`. The name is the kernel's, cut to 15 bytes. For a
/// process that is gone: `Process 1234`.
[[nodiscard]] std::string describeProcess(pid_t process);

} // namespace tabwright::platform
