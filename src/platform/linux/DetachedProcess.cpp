// A child starts a grandchild and ends, so that the grandchild is nobody's. A pipe that closes when the program begins
// tells whether it did. Between fork and exec only calls that are safe in a process of several threads are made.
#include "platform/linux/DetachedProcess.h"

#include "platform/linux/ArgumentVector.h"
#include "platform/linux/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tabwright::platform {

namespace {

[[noreturn]] void become(char* const* words, const char* folder, int report) {
  ::setsid();
  const pid_t grandchild = ::fork();
  if (grandchild > 0)
    ::_exit(0);
  if (grandchild == 0 && (*folder == '\0' || ::chdir(folder) == 0)) {
    const int nothing = ::open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
      if (nothing >= 0)
        ::dup2(nothing, stream);
    }
    if (nothing > STDERR_FILENO)
      ::close(nothing);
    // Blocked signals, and an ignored SIGPIPE, would stay so in the program.
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGPIPE, SIG_DFL);
    ::execvp(words[0], words);
  }
  const int error = errno;
  [[maybe_unused]] const ssize_t written = ::write(report, &error, sizeof error);
  ::_exit(127);
}

} // namespace

int startDetached(const std::vector<std::string>& words, const std::string& folder) {
  std::vector<char*> arguments = argumentVector(words);
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0)
    return errno;
  const FileDescriptor reading(ends[0]);
  FileDescriptor writing(ends[1]);
  const pid_t child = ::fork();
  if (child < 0)
    return errno;
  if (child == 0)
    become(arguments.data(), folder.c_str(), writing.number());
  // Only the program's side holds the pipe then, and its end can be told.
  writing = FileDescriptor();
  // The child ends as soon as it has forked, so this takes no time and leaves no zombie.
  ::waitpid(child, nullptr, 0);
  int error = 0;
  ssize_t count = 0;
  do {
    count = ::read(reading.number(), &error, sizeof error);
  } while (count < 0 && errno == EINTR);
  // The end of the pipe without a word: exec has closed it.
  return count == sizeof error ? error : 0;
}

} // namespace tabwright::platform
