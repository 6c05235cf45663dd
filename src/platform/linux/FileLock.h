#pragma once

#include "platform/linux/FileDescriptor.h"

#include <chrono>
#include <filesystem>

namespace tabwright::platform {

/// A lock between processes, held as long as this lives: flock(2) on a file made for nothing else. The system lets go
/// of it when its process ends, however it ends. It also excludes other `FileLock`s of the same process.
///
/// The file stays; removing it while it is held would let two holders in.
///
///     const FileLock lock(folder / "settings.plist.lock", std::chrono::seconds(5));
class FileLock {
public:
  /// Takes the lock. Throws `FileFailure`: with the number EWOULDBLOCK when another holds it for longer than `wait`,
  /// else with the system's reason. The folder must exist. Many waiters get it in no particular order. Makes the file,
  /// readable by its owner alone, where it is missing; a symbolic link is refused. The thread sleeps between attempts,
  /// 5 ms at most, and no stop ends that.
  FileLock(const std::filesystem::path& file, std::chrono::nanoseconds wait);

private:
  FileDescriptor descriptor_;
};

} // namespace tabwright::platform
