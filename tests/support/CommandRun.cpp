#include "support/CommandRun.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <stdexcept>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace tabwright::testsupport {
namespace {

struct Pipe {
  std::array<int, 2> ends{-1, -1};
  Pipe() {
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
      throw std::runtime_error("pipe");
  }
  ~Pipe() {
    close(0);
    close(1);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  void close(std::size_t end) {
    if (ends[end] >= 0)
      ::close(ends[end]);
    ends[end] = -1;
  }
};

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& changes) {
  std::vector<std::string> result;
  for (char** entry = environ; *entry; ++entry) {
    const std::string_view line(*entry);
    if (!changes.contains(std::string(line.substr(0, line.find('=')))))
      result.emplace_back(line);
  }
  for (const auto& [name, value] : changes) {
    if (!value.empty())
      result.push_back(name + "=" + value);
  }
  return result;
}

std::vector<char*> pointersTo(const std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (const std::string& word : words)
    pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

// Feeds the input and collects both outputs, none of which may fill its pipe while another is waited for.
void exchange(Pipe& in, const std::string& input, Pipe& out, Pipe& err, CommandOutcome& outcome) {
  std::size_t written = 0;
  if (input.empty())
    in.close(1);
  while (out.ends[0] >= 0 || err.ends[0] >= 0) {
    std::array<pollfd, 3> polls{{{out.ends[0], POLLIN, 0}, {err.ends[0], POLLIN, 0}, {in.ends[1], POLLOUT, 0}}};
    if (::poll(polls.data(), polls.size(), -1) < 0 && errno != EINTR)
      throw std::runtime_error("poll");
    const auto drain = [](Pipe& pipe, const pollfd& poll, std::string& text) {
      if (pipe.ends[0] < 0 || !(poll.revents & (POLLIN | POLLHUP)))
        return;
      std::array<char, 65536> buffer{};
      const ssize_t count = ::read(pipe.ends[0], buffer.data(), buffer.size());
      if (count > 0)
        text.append(buffer.data(), static_cast<std::size_t>(count));
      else
        pipe.close(0);
    };
    drain(out, polls[0], outcome.output);
    drain(err, polls[1], outcome.errors);
    if (in.ends[1] >= 0 && (polls[2].revents & (POLLOUT | POLLERR))) {
      const ssize_t count = ::write(in.ends[1], input.data() + written, input.size() - written);
      written += count > 0 ? static_cast<std::size_t>(count) : 0;
      if (count < 0 || written == input.size())
        in.close(1);
    }
  }
}

} // namespace

std::string tabwrightPath() {
  return TABWRIGHT_TEST_EXECUTABLE;
}

CommandOutcome runTabwright(const std::vector<std::string>& arguments, const std::string& input,
                            const std::map<std::string, std::string>& environment) {
  return runProgram(tabwrightPath(), arguments, input, environment);
}

CommandOutcome runProgram(const std::string& program, const std::vector<std::string>& arguments,
                          const std::string& input, const std::map<std::string, std::string>& environment) {
  std::signal(SIGPIPE, SIG_IGN);
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const std::vector<std::string> variables = environmentWith(environment);

  Pipe in;
  Pipe out;
  Pipe err;
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_adddup2(&files, in.ends[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&files, out.ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&files, err.ends[1], STDERR_FILENO);
  pid_t process = 0;
  const int error = ::posix_spawnp(&process, words.front().c_str(), &files, nullptr, pointersTo(words).data(),
                                   pointersTo(variables).data());
  posix_spawn_file_actions_destroy(&files);
  if (error != 0)
    throw std::system_error(error, std::generic_category(), "can't start " + words.front());
  in.close(0);
  out.close(1);
  err.close(1);

  CommandOutcome outcome;
  exchange(in, input, out, err, outcome);
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return outcome;
}

std::string runAtTerminal(const std::string& program, const std::vector<std::string>& arguments,
                          const std::map<std::string, std::string>& environment, const std::string& typed) {
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> variables = environmentWith(environment);
  const std::vector<char*> wordPointers = pointersTo(words);
  const std::vector<char*> variablePointers = pointersTo(variables);
  const winsize size{.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
  int terminal = -1;
  const pid_t process = ::forkpty(&terminal, nullptr, nullptr, &size);
  if (process == 0) {
    ::execve(wordPointers.front(), wordPointers.data(), variablePointers.data());
    ::_exit(127);
  }
  if (process < 0 || ::write(terminal, typed.data(), typed.size()) != static_cast<ssize_t>(typed.size()))
    throw std::runtime_error("terminal");
  std::string shown;
  std::array<char, 4096> buffer{};
  for (ssize_t count; (count = ::read(terminal, buffer.data(), buffer.size())) > 0;)
    shown.append(buffer.data(), static_cast<std::size_t>(count));
  ::close(terminal);
  int status = 0;
  ::waitpid(process, &status, 0);
  for (std::size_t at = 0; (at = shown.find("\r\n", at)) != std::string::npos; ++at)
    shown.erase(at, 1);
  return shown;
}

} // namespace tabwright::testsupport
