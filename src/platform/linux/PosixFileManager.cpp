// A new file is written without a name, then linked to the one it is to have: link refuses a name that is taken, which
// a rename would not. Where the file system has no files without names it gets one of its own first.
#include "platform/linux/PosixFileManager.h"

#include "platform/FileFailure.h"
#include "platform/linux/BaseDirectories.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace tabwright::platform {
namespace {

// A file without its final name; gone when this goes.
class UnnamedFile {
public:
  explicit UnnamedFile(const std::filesystem::path& wanted)
      : descriptor_(open(wanted.parent_path().c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600)) {
    if (descriptor_ < 0) {
      name_ = (wanted.parent_path() / ".tabwright-XXXXXX").string();
      descriptor_ = mkostemp(name_.data(), O_CLOEXEC);
    }
    if (descriptor_ < 0)
      throw FileFailure("write", wanted, errno);
  }
  ~UnnamedFile() {
    close(descriptor_);
    if (!name_.empty())
      unlink(name_.c_str());
  }
  UnnamedFile(const UnnamedFile&) = delete;
  UnnamedFile& operator=(const UnnamedFile&) = delete;

  // False with errno set when not all could be written.
  bool write(std::string_view content) const {
    while (!content.empty()) {
      const ssize_t written = ::write(descriptor_, content.data(), content.size());
      if (written < 0 && errno != EINTR)
        return false;
      content.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
  }

  // False with errno set when the name is taken, or can't be given.
  bool linkTo(const std::filesystem::path& path) const {
    const std::string name = name_.empty() ? "/proc/self/fd/" + std::to_string(descriptor_) : name_;
    return linkat(AT_FDCWD, name.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
  }

private:
  std::string name_; ///< empty: it has none
  int descriptor_;
};

} // namespace

std::filesystem::path PosixFileManager::applicationScriptsFolder() {
  // In memory where the session has such a place: it is quicker, and what was typed into forms reaches no disk.
  std::filesystem::path folder = runtimeFolder().value_or(dataHome()) / "tabwright" / "scripts";
  ensurePrivateFolder(folder);
  return folder;
}

std::optional<FileKind> PosixFileManager::kindOfFile(const std::filesystem::path& path) {
  struct stat facts{};
  if (stat(path.c_str(), &facts) != 0)
    return std::nullopt;
  return S_ISDIR(facts.st_mode) ? FileKind::folder : FileKind::other;
}

void PosixFileManager::createDirectory(const std::filesystem::path& path) {
  if (mkdir(path.c_str(), 0700) == 0)
    return;
  const int reason = errno;
  if (reason != EEXIST || kindOfFile(path) != FileKind::folder)
    throw FileFailure("make the folder", path, reason);
}

bool PosixFileManager::writeNewFileAtomically(const std::filesystem::path& path, std::string_view content) {
  const UnnamedFile file(path);
  if (!file.write(content))
    throw FileFailure("write", path, errno);
  if (file.linkTo(path))
    return true;
  if (errno == EEXIST)
    return false;
  throw FileFailure("write", path, errno);
}

void PosixFileManager::remove(const std::filesystem::path& path) {
  if (unlink(path.c_str()) != 0)
    throw FileFailure("remove", path, errno);
}

} // namespace tabwright::platform
