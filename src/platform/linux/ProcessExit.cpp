// A process file descriptor (pidfd_open(2)) becomes readable when its process ends, a child of ours or not; an event
// file descriptor beside it lets a stop request end the wait.
#include "platform/linux/ProcessExit.h"

#include "platform/linux/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <poll.h>
#include <stop_token>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tabwright::platform {

ProcessExit waitForExit(pid_t process, const CallLimits& limits) {
  const FileDescriptor watched(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
  if (!watched.isOpen())
    return errno == ESRCH ? ProcessExit::ended : ProcessExit::timedOut; // without a descriptor nothing can be awaited
  const FileDescriptor stop(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  const std::stop_callback onStop(limits.stop, [&stop] {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(stop.number(), &one, sizeof one);
  });

  std::array<pollfd, 2> entries{{{watched.number(), POLLIN, 0}, {stop.number(), POLLIN, 0}}};
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(limits.deadline - std::chrono::steady_clock::now());
    // Poll counts in an int, which a far deadline wouldn't fit into; so it wakes once a minute at least.
    const auto wait = std::clamp<std::chrono::milliseconds::rep>(left.count(), 0, 60'000);
    const int ready = ::poll(entries.data(), entries.size(), static_cast<int>(wait));
    if (ready > 0)
      return entries[0].revents != 0 ? ProcessExit::ended : ProcessExit::stopped;
    if (ready == 0 && std::chrono::steady_clock::now() >= limits.deadline)
      return ProcessExit::timedOut;
    if (ready < 0 && errno != EINTR)
      return ProcessExit::timedOut;
  }
}

} // namespace tabwright::platform
