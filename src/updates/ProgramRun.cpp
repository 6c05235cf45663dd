// The program has a process group of its own, so that all of it can be killed. It counts as ended when it is, whoever
// still holds its output.
#include "updates/ProgramRun.h"

#include "platform/linux/ArgumentVector.h"
#include "platform/linux/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tabwright::updates {
namespace {

constexpr std::size_t mostOutput = 4096;
constexpr int programPause = 20; // milliseconds

std::optional<pid_t> spawn(const std::vector<std::string>& words, int output) {
  std::vector<char*> arguments = platform::argumentVector(words);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDWR, 0);
  posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&files, STDIN_FILENO, STDERR_FILENO);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t signals;
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&attributes, &signals);
  sigaddset(&signals, SIGPIPE);
  posix_spawnattr_setsigdefault(&attributes, &signals);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  pid_t process = 0;
  const int error = ::posix_spawnp(&process, arguments.front(), &files, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  return error == 0 ? std::optional(process) : std::nullopt;
}

// Takes all that can be read now.
void readSome(const platform::FileDescriptor& reading, std::string& output) {
  std::array<char, mostOutput> buffer{};
  for (;;) {
    const ssize_t count = ::read(reading.number(), buffer.data(), buffer.size());
    if (count <= 0)
      return;
    output.append(buffer.data(), std::min(static_cast<std::size_t>(count), mostOutput - output.size()));
  }
}

} // namespace

std::optional<ProgramResult> runProgram(const std::vector<std::string>& words, const platform::CallLimits& limits) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0)
    return std::nullopt;
  const platform::FileDescriptor reading(ends[0]);
  platform::FileDescriptor writing(ends[1]);
  ::fcntl(reading.number(), F_SETFL, O_NONBLOCK);
  const std::optional<pid_t> process = spawn(words, writing.number());
  writing = platform::FileDescriptor();
  if (!process)
    return std::nullopt;

  ProgramResult result;
  bool isKilled = false;
  for (int status = 0;;) {
    readSome(reading, result.output);
    const pid_t ended = ::waitpid(*process, &status, isKilled ? 0 : WNOHANG);
    if (ended == *process) {
      readSome(reading, result.output);
      result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
      return isKilled ? std::nullopt : std::optional(result);
    }
    if (ended < 0 && errno != EINTR)
      return std::nullopt;
    if (limits.stop.stop_requested() || limits.hasPassed()) {
      ::kill(-*process, SIGKILL);
      isKilled = true;
      continue;
    }
    ::poll(nullptr, 0, programPause);
  }
}

} // namespace tabwright::updates
