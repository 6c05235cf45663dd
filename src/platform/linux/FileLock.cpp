// Asks again and again with growing pauses, since flock can't be told how long to wait. The pauses grow, so that a lock
// that is soon free is soon taken, and a long wait costs little.
#include "platform/linux/FileLock.h"

#include "platform/FileFailure.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>

namespace tabwright::platform {
namespace {

// True when the path still leads to the open file; a user may have removed it before the lock was ours.
bool isStillAt(const std::filesystem::path& path, int descriptor) {
  struct stat there{};
  struct stat here{};
  return stat(path.c_str(), &there) == 0 && fstat(descriptor, &here) == 0 && there.st_ino == here.st_ino &&
         there.st_dev == here.st_dev;
}

} // namespace

FileLock::FileLock(const std::filesystem::path& file, std::chrono::nanoseconds wait) {
  using namespace std::chrono_literals;
  const auto end = std::chrono::steady_clock::now() + wait;
  std::chrono::nanoseconds pause = 200us;
  for (;;) {
    if (!descriptor_.isOpen())
      descriptor_ = FileDescriptor(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!descriptor_.isOpen())
      throw FileFailure("lock", file, errno);
    if (flock(descriptor_.number(), LOCK_EX | LOCK_NB) == 0) {
      if (isStillAt(file, descriptor_.number()))
        return;
      // Others that open the path lock another file, so this lock would exclude nobody.
      descriptor_ = FileDescriptor();
    } else if (errno != EWOULDBLOCK && errno != EINTR) {
      throw FileFailure("lock", file, errno);
    }
    const auto now = std::chrono::steady_clock::now();
    if (now >= end)
      throw FileFailure("lock", file, EWOULDBLOCK);
    std::this_thread::sleep_for(std::min<std::chrono::nanoseconds>(pause, end - now));
    pause = std::min<std::chrono::nanoseconds>(pause * 2, 5ms);
  }
}

} // namespace tabwright::platform
