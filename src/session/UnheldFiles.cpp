// A file is removed while its lock is ours. A process that opened it before and gets the lock after must look again
// whether it is still there (isStillAt). The lock belongs to the open file and not to a process, so it outlives a
// handover of the descriptor, and no register of processes is needed that a killed one would leave wrong.
#include "session/UnheldFiles.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabwright::session {
namespace {

struct CloseDirectory {
  void operator()(DIR* directory) const { ::closedir(directory); }
};

/// All names first: what a walk gives while names are removed isn't defined.
std::vector<std::string> namesWithEnding(int folder, std::string_view ending) {
  std::vector<std::string> names;
  const int own = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, CloseDirectory> directory(own < 0 ? nullptr : ::fdopendir(own));
  if (!directory) {
    if (own >= 0)
      ::close(own);
    return names;
  }
  while (const dirent* entry = ::readdir(directory.get())) {
    if (std::string_view(entry->d_name).ends_with(ending))
      names.emplace_back(entry->d_name);
  }
  return names;
}

} // namespace

bool hold(int file) {
  return ::flock(file, LOCK_EX | LOCK_NB) == 0;
}

bool isStillAt(int folder, const std::string& name, int file) {
  struct stat there{};
  struct stat here{};
  return ::fstatat(folder, name.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0 && ::fstat(file, &here) == 0 &&
         there.st_ino == here.st_ino && there.st_dev == here.st_dev;
}

void removeUnheldFiles(int folder, std::string_view ending, std::string_view companionEnding) {
  for (const std::string& name : namesWithEnding(folder, ending)) {
    // O_NONBLOCK: opening a pipe must not wait for its other end.
    const int file = ::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
      continue;
    if (hold(file) && isStillAt(folder, name, file)) {
      // First, while the lock is ours: once the file is gone, another process may make both anew.
      if (!companionEnding.empty())
        ::unlinkat(folder, name.substr(0, name.size() - ending.size()).append(companionEnding).c_str(), 0);
      ::unlinkat(folder, name.c_str(), 0);
    }
    ::close(file);
  }
}

} // namespace tabwright::session
