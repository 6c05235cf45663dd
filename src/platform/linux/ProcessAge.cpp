#include "platform/linux/ProcessAge.h"

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/ProcessStat.h"

#include <fmt/core.h>

#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace tabwright::platform {

namespace {

std::string fileOf(pid_t process, const char* name) {
  const FileDescriptor file(open(fmt::format("/proc/{}/{}", process, name).c_str(), O_RDONLY | O_CLOEXEC));
  return file.readAll().value_or("");
}

} // namespace

std::optional<std::chrono::milliseconds> ageOfProcess(pid_t process) {
  const std::optional<std::int64_t> start = fieldOfStat(fileOf(process, "stat"), StatField::startTime);
  if (!start)
    return std::nullopt;
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  const std::int64_t sinceBoot = now.tv_sec * 1000 + now.tv_nsec / 1'000'000;
  return std::chrono::milliseconds(sinceBoot - *start * 1000 / sysconf(_SC_CLK_TCK));
}

std::optional<pid_t> parentOfProcess(pid_t process) {
  const std::optional<std::int64_t> parent = fieldOfStat(fileOf(process, "stat"), StatField::parent);
  return parent ? std::optional(static_cast<pid_t>(*parent)) : std::nullopt;
}

std::string describeProcess(pid_t process) {
  std::string name = fileOf(process, "comm");
  name.erase(name.find_last_not_of('\n') + 1);
  return name.empty() ? fmt::format("Process {}", process) : fmt::format("“{}” (process {})", name, process);
}

} // namespace tabwright::platform
