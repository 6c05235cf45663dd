// The host is spawned rather than forked: it gets the descriptors named here and no others, as a pipe of the caller
// that stayed open in it would keep the caller's reader waiting.
#include "client/HostProgram.h"

#include "client/HostProtocol.h"
#include "client/HostUnavailable.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tabwright::client {
namespace {

std::string folderOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

// A host that may open only a few files would take for missing what it can't look at.
void requireDescriptors() {
  constexpr rlim_t needed = 256;
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_max < needed)
    throw HostUnavailable("Only " + std::to_string(limit.rlim_max) +
                          " files may be open at once (ulimit -n), and the " + "background host needs " +
                          std::to_string(needed));
}

HostUnavailable notStarted(const std::string& program, int error) {
  return HostUnavailable(program + " can’t be started: " + std::strerror(error));
}

} // namespace

std::string hostProgram(const std::string& programPath) {
  const std::string folder = folderOf(programPath);
  const std::string beside = folder + "/" + handover::program;
  const std::string installed = folderOf(folder) + "/libexec/tabwright/" + handover::program;
  // Beside the client first: a build that isn't installed has its own.
  for (const std::string& place : {beside, installed}) {
    if (::access(place.c_str(), X_OK) == 0)
      return place;
  }
  throw HostUnavailable(std::string(handover::program) + " is missing: it is neither " + beside + " nor " + installed);
}

void becomeHostProgram(const std::string& hostProgram, char** arguments) {
  ::execv(hostProgram.c_str(), arguments);
  throw notStarted(hostProgram, errno);
}

void startHost(const std::string& hostProgram, const std::string& socketPath, int socket, int lock) {
  requireDescriptors();
  // Copies out of the way of the numbers that they get in the host.
  constexpr int outOfTheWay = handover::lockDescriptor + 1;
  const int socketCopy = ::fcntl(socket, F_DUPFD_CLOEXEC, outOfTheWay);
  const int lockCopy = ::fcntl(lock, F_DUPFD_CLOEXEC, outOfTheWay);

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDWR, 0);
  posix_spawn_file_actions_adddup2(&files, STDIN_FILENO, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&files, STDIN_FILENO, STDERR_FILENO);
  posix_spawn_file_actions_adddup2(&files, socketCopy, handover::socketDescriptor);
  posix_spawn_file_actions_adddup2(&files, lockCopy, handover::lockDescriptor);
  posix_spawn_file_actions_addclosefrom_np(&files, handover::lockDescriptor + 1);
  posix_spawn_file_actions_addchdir_np(&files, "/");

  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  // Signals that are ignored or blocked here stay so in a spawned program, and SIGPIPE is ignored.
  sigset_t signals;
  sigfillset(&signals);
  posix_spawnattr_setsigdefault(&attributes, &signals);
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&attributes, &signals);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);

  std::string words[]{handover::program, handover::command, socketPath};
  char* arguments[]{words[0].data(), words[1].data(), words[2].data(), nullptr};
  pid_t process = 0;
  const int error = ::posix_spawn(&process, hostProgram.c_str(), &files, &attributes, arguments, environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  ::close(socketCopy);
  ::close(lockCopy);
  if (error != 0)
    throw notStarted(hostProgram, error);
}

} // namespace tabwright::client
