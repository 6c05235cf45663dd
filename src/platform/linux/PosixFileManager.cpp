// A new file is written without a name, then linked to the one it is to have: link refuses a name that is taken, which
// a rename would not. Where the file system has no files without names it gets one of its own first. It is held before
// anybody can see it.
#include "platform/linux/PosixFileManager.h"

#include "platform/FileFailure.h"
#include "platform/linux/BaseDirectories.h"
#include "platform/linux/FileDescriptor.h"
#include "session/TrustedFolder.h"
#include "session/UnheldFiles.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tabwright::platform {
namespace {

class PosixWrittenFile final : public WrittenFile {
public:
  PosixWrittenFile(std::filesystem::path path, FileDescriptor descriptor)
      : path_(std::move(path)), descriptor_(std::move(descriptor)) {}

  [[nodiscard]] const std::filesystem::path& path() const override { return path_; }

  [[nodiscard]] std::string content() const override {
    std::optional<std::string> text;
    // Through the descriptor: another file may lie under the name by now.
    if (lseek(descriptor_.number(), 0, SEEK_SET) == 0)
      text = descriptor_.readAll();
    if (!text)
      throw FileFailure("read", path_, errno);
    return *std::move(text);
  }

private:
  std::filesystem::path path_;
  FileDescriptor descriptor_;
};

// A file without its final name; its own name, if it has one, is gone when this goes.
class UnnamedFile {
public:
  explicit UnnamedFile(const std::filesystem::path& wanted)
      : descriptor_(open(wanted.parent_path().c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600)) {
    if (!descriptor_.isOpen()) {
      // In the same folder, since a link can't lead to another file system.
      name_ = (wanted.parent_path() / ".tabwright-XXXXXX").string();
      descriptor_ = FileDescriptor(mkostemp(name_.data(), O_CLOEXEC));
    }
    if (!descriptor_.isOpen())
      throw FileFailure("write", wanted, errno);
    static_cast<void>(session::hold(descriptor_.number())); // where that can't be done, an early end leaves the file
  }
  ~UnnamedFile() {
    if (!name_.empty())
      unlink(name_.c_str());
  }
  UnnamedFile(const UnnamedFile&) = delete;
  UnnamedFile& operator=(const UnnamedFile&) = delete;

  // False with errno set when not all could be written.
  bool write(std::string_view content) const {
    while (!content.empty()) {
      const ssize_t written = ::write(descriptor_.number(), content.data(), content.size());
      if (written < 0 && errno != EINTR)
        return false;
      content.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
  }

  // False with errno set when the name is taken, or can't be given.
  bool linkTo(const std::filesystem::path& path) const {
    // A file without a name is reached through the process file system: to link a descriptor itself takes a privilege.
    const std::string name = name_.empty() ? "/proc/self/fd/" + std::to_string(descriptor_.number()) : name_;
    return linkat(AT_FDCWD, name.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
  }

  FileDescriptor takeDescriptor() { return std::move(descriptor_); }

private:
  std::string name_; ///< empty: it has none
  FileDescriptor descriptor_;
};

// In bytes; a place with less is passed over for the next.
constexpr std::uintmax_t roomForScripts = 1 << 18;

/// The folder for scripts in one of ours, whose parent is made if it is missing.
std::filesystem::path scriptsFolderIn(const std::filesystem::path& ours) {
  ensurePrivateFolder(ours.parent_path());
  try {
    const session::TrustedFolder own(ours.string());
    return session::TrustedFolder(own.path() + "/scripts").path();
  } catch (const session::FolderRefused& refusal) {
    throw FileFailure("use the folder", ours / "scripts", refusal.errorNumber());
  }
}

} // namespace

std::filesystem::path PosixFileManager::applicationScriptsFolder() {
  std::vector<std::filesystem::path> places{dataHome() / "tabwright", session::runtimePath()};
  // In memory where the session has such a place: it is quicker, and what was typed into forms reaches no disk.
  if (session::sessionFolder())
    std::ranges::rotate(places, places.begin() + 1);
  std::optional<FileFailure> refusal;
  std::optional<std::filesystem::path> full;
  for (const std::filesystem::path& place : places) {
    try {
      std::filesystem::path folder = scriptsFolderIn(place);
      if (session::hasRoom(folder.string(), roomForScripts))
        return folder;
      full = full.value_or(folder);
    } catch (const FileFailure& failure) {
      refusal.emplace(failure);
    }
  }
  if (!full)
    throw FileFailure(*refusal);
  return *full; // to write there tells why that fails
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
  // A file of that name is no folder, and a failure.
  if (reason != EEXIST || kindOfFile(path) != FileKind::folder)
    throw FileFailure("make the folder", path, reason);
}

std::unique_ptr<WrittenFile> PosixFileManager::writeNewFileAtomically(const std::filesystem::path& path,
                                                                      std::string_view content) {
  UnnamedFile file(path);
  if (!file.write(content))
    throw FileFailure("write", path, errno);
  if (file.linkTo(path))
    return std::make_unique<PosixWrittenFile>(path, file.takeDescriptor());
  if (errno == EEXIST)
    return nullptr;
  throw FileFailure("write", path, errno);
}

void PosixFileManager::remove(const std::filesystem::path& path) {
  if (unlink(path.c_str()) != 0)
    throw FileFailure("remove", path, errno);
}

void removeAbandonedFiles(const std::filesystem::path& folder, std::string_view ending,
                          std::string_view companionEnding) {
  const FileDescriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (opened.isOpen())
    session::removeUnheldFiles(opened.number(), ending, companionEnding);
}

} // namespace tabwright::platform
