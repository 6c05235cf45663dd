// Reading opens the file before it looks at it, so that facts and content belong together even if the file is replaced
// meanwhile. Writing puts a new file in the old one's place by a rename, which readers see as a whole; each step is on
// the disk before the next depends on it.
#include "platform/linux/SettingsFile.h"

#include "platform/FileFailure.h"
#include "platform/Logger.h"
#include "platform/linux/BaseDirectories.h"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tabwright::platform {
namespace {

// Far beyond any real one; what is longer isn't ours.
constexpr std::size_t longestFile = 4UL * 1024 * 1024;
constexpr int mostCopies = 3; // of damaged files

const Logger fileLog("UserDefaults");

std::filesystem::path withEnding(std::filesystem::path path, std::string_view ending) {
  path += ending;
  return path;
}

bool isSameState(const struct stat& one, const struct stat& other) {
  // Every write makes a new inode, so the times matter for files that others write in place alone.
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino && one.st_size == other.st_size &&
         one.st_mtim.tv_sec == other.st_mtim.tv_sec && one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

void writeAll(int descriptor, std::string_view content, const std::filesystem::path& path) {
  while (!content.empty()) {
    const ssize_t count = write(descriptor, content.data(), content.size());
    if (count < 0 && errno != EINTR)
      throw FileFailure("write", path, errno);
    content.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
  }
}

void syncFolder(const std::filesystem::path& folder) {
  const FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor.isOpen() || (fsync(descriptor.number()) != 0 && errno != EINVAL)) // some file systems can't
    throw FileFailure("sync the folder", folder, errno);
}

} // namespace

SettingsFile::SettingsFile(const std::filesystem::path& file) : file_(file) {
  std::error_code error;
  // A rename would replace the link itself.
  if (std::filesystem::is_symlink(file, error)) {
    const std::filesystem::path target = std::filesystem::weakly_canonical(file, error);
    if (!error)
      file_ = target;
  }
}

SettingsFile::SnapshotPointer SettingsFile::load(const SnapshotPointer& previous) const {
  struct stat facts{};
  if (stat(file_.c_str(), &facts) == 0) {
    if (previous && previous->kind != Snapshot::Kind::missing && isSameState(previous->facts, facts))
      return previous;
  } else if (errno == ENOENT) {
    return previous && previous->kind == Snapshot::Kind::missing ? previous : std::make_shared<const Snapshot>();
  } else {
    throw FileFailure("read", file_, errno);
  }

  const auto snapshot = std::make_shared<Snapshot>();
  // O_NONBLOCK: opening a pipe must not wait for its other end.
  snapshot->descriptor = FileDescriptor(open(file_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!snapshot->descriptor.isOpen() && errno == ENOENT)
    return snapshot;
  if (!snapshot->descriptor.isOpen() || fstat(snapshot->descriptor.number(), &snapshot->facts) != 0)
    throw FileFailure("read", file_, errno);
  if (!S_ISREG(snapshot->facts.st_mode))
    throw FileFailure("read", file_, S_ISDIR(snapshot->facts.st_mode) ? EISDIR : EINVAL);

  const std::optional<std::string> content = snapshot->descriptor.readAll(longestFile);
  if (!content && errno != EFBIG)
    throw FileFailure("read", file_, errno);
  std::optional<PropertyListDocument> document;
  if (content)
    document = PropertyListDocument::parse(*content);
  snapshot->kind = document ? Snapshot::Kind::readable : Snapshot::Kind::damaged;
  if (document)
    snapshot->document = *std::move(document);
  else
    fileLog.error("The settings “{}” are damaged: defaults hold", file_.string());
  return snapshot;
}

FileLock SettingsFile::lock(std::chrono::nanoseconds wait) const {
  ensurePrivateFolder(file_.parent_path());
  return {withEnding(file_, ".lock"), wait};
}

SettingsFile::SnapshotPointer SettingsFile::replace(const Snapshot& old, PropertyListDocument document,
                                                    OldFile oldFile) const {
  const std::string text = document.xml();
  if (text.size() > longestFile) // nobody would read it again
    throw FileFailure("write", file_, EFBIG);
  const std::filesystem::path temporary = withEnding(file_, ".new");
  // Made anew rather than emptied: it may be a link, or open to others.
  if (unlink(temporary.c_str()) != 0 && errno != ENOENT)
    throw FileFailure("remove", temporary, errno);
  const auto snapshot = std::make_shared<Snapshot>();
  snapshot->descriptor = FileDescriptor(open(temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!snapshot->descriptor.isOpen())
    throw FileFailure("write", temporary, errno);
  try {
    writeAll(snapshot->descriptor.number(), text, temporary);
    // Before the rename: else a crash of the machine could leave the new name with nothing in it.
    if (fsync(snapshot->descriptor.number()) != 0 || fstat(snapshot->descriptor.number(), &snapshot->facts) != 0)
      throw FileFailure("write", temporary, errno);
    if (old.kind == Snapshot::Kind::damaged || (old.kind == Snapshot::Kind::readable && oldFile == OldFile::keepAside))
      keepAside();
    if (rename(temporary.c_str(), file_.c_str()) != 0)
      throw FileFailure("write", file_, errno);
  } catch (const FileFailure&) {
    unlink(temporary.c_str());
    throw;
  }
  // From here on the new state is the one that everybody reads, so a failure of what follows is no failure of the
  // write.
  try {
    syncFolder(file_.parent_path());
  } catch (const FileFailure& failure) {
    fileLog.error("{}", failure.errorDescription());
  }
  snapshot->kind = Snapshot::Kind::readable;
  snapshot->document = std::move(document);
  return snapshot;
}

// The file gets a second name, so that it is never missing; where the file system has no links it changes its name. The
// copies move up, and the oldest goes.
void SettingsFile::keepAside() const {
  const auto copy = [this](int number) { return withEnding(file_, ".damaged-" + std::to_string(number)); };
  for (int number = mostCopies; number > 1; --number) {
    if (rename(copy(number - 1).c_str(), copy(number).c_str()) != 0 && errno != ENOENT)
      throw FileFailure("set aside", copy(number - 1), errno);
  }
  if (link(file_.c_str(), copy(1).c_str()) != 0 && rename(file_.c_str(), copy(1).c_str()) != 0)
    throw FileFailure("set aside", file_, errno);
  fileLog.error("Set the settings “{}”, not all of which can be read, aside as “{}”", file_.string(), copy(1).string());
}

} // namespace tabwright::platform
