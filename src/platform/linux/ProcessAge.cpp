#include "platform/linux/ProcessAge.h"

#include "platform/linux/FileDescriptor.h"

#include <fmt/core.h>

#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <sstream>
#include <unistd.h>

namespace tabwright::platform {

namespace {

std::string fileOf(pid_t process, const char* name) {
  const FileDescriptor file(open(fmt::format("/proc/{}/{}", process, name).c_str(), O_RDONLY | O_CLOEXEC));
  return file.readAll().value_or("");
}

} // namespace

std::optional<std::chrono::milliseconds> ageOfProcess(pid_t process) {
  const std::string text = fileOf(process, "stat");
  // The command's name may hold blanks and parentheses itself; behind it stand the fields from the third on.
  const std::size_t end = text.rfind(')');
  if (end == std::string::npos)
    return std::nullopt;
  std::istringstream fields(text.substr(end + 1));
  std::string field;
  constexpr int startTime = 22; // proc(5)
  for (int number = 3; number < startTime; ++number)
    fields >> field;
  std::int64_t start = 0;
  if (!(fields >> start))
    return std::nullopt;
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  const std::int64_t sinceBoot = now.tv_sec * 1000 + now.tv_nsec / 1'000'000;
  return std::chrono::milliseconds(sinceBoot - start * 1000 / sysconf(_SC_CLK_TCK));
}

std::string describeProcess(pid_t process) {
  std::string name = fileOf(process, "comm");
  name.erase(name.find_last_not_of('\n') + 1);
  return name.empty() ? fmt::format("Process {}", process) : fmt::format("“{}” (process {})", name, process);
}

} // namespace tabwright::platform
