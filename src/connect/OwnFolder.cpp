// A file is written under a name of this process's own, forced to the disk and renamed. A draft that a killed process
// has left is known by its name.
#include "connect/OwnFolder.h"

#include "connect/ConnectFault.h"
#include "platform/FileFailure.h"

#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tabwright::connect {
namespace {

namespace fs = std::filesystem;
using platform::FileDescriptor;

constexpr std::size_t largestFile = std::size_t{1} << 20;
constexpr const char* draftMark = ".draft-";

const char* nextStepFor(int number) {
  switch (number) {
  case EROFS:
    return " Its file system takes no changes: make it writable, and run the command again.";
  case EACCES:
  case EPERM:
    return " Give yourself the right to write there, and run the command again.";
  case ENOSPC:
  case EDQUOT:
    return " Make room there, and run the command again.";
  default:
    return " Mend that, and run the command again.";
  }
}

ConnectFailure refusal(const char* operation, const fs::path& path, int number) {
  return platform::failure(ConnectFault::unwritable, platform::FileFailure(operation, path, number).errorDescription() +
                                                         "." + nextStepFor(number));
}

/// The failure for a folder that could not be opened.
ConnectFailure notOpened(int parent, const std::string& name, const fs::path& path, int number) {
  if (number == ELOOP || number == ENOTDIR) {
    struct stat status{};
    const bool isLink = ::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
    return platform::failure(isLink ? ConnectFault::linked : ConnectFault::noFolder, path.string());
  }
  return refusal("open", path, number);
}

} // namespace

OwnFolder::OwnFolder(fs::path path, FileDescriptor descriptor)
    : path_(std::move(path)), descriptor_(std::move(descriptor)) {
  struct stat status{};
  if (::fstat(descriptor_.number(), &status) != 0)
    throw refusal("look at", path_, errno);
  if (status.st_uid != ::geteuid())
    throw platform::failure(ConnectFault::foreign, path_.string());
}

OwnFolder OwnFolder::open(const fs::path& path) {
  FileDescriptor descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!descriptor.isOpen())
    throw notOpened(AT_FDCWD, path.string(), path, errno);
  return {path, std::move(descriptor)};
}

std::optional<OwnFolder> OwnFolder::findFolder(const std::string& name) const {
  FileDescriptor descriptor(
      ::openat(descriptor_.number(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (descriptor.isOpen())
    return OwnFolder(path_ / name, std::move(descriptor));
  if (errno == ENOENT)
    return std::nullopt;
  throw notOpened(descriptor_.number(), name, path_ / name, errno);
}

OwnFolder OwnFolder::ensureFolder(const std::string& name) const {
  // Another process may have made it in the meantime.
  if (::mkdirat(descriptor_.number(), name.c_str(), 0700) != 0 && errno != EEXIST)
    throw refusal("make the folder", path_ / name, errno);
  std::optional<OwnFolder> folder = findFolder(name);
  if (!folder)
    throw refusal("open", path_ / name, ENOENT);
  return std::move(*folder);
}

std::optional<std::string> OwnFolder::read(const std::string& name) const {
  // Without waiting: what lies there may be a pipe.
  return FileDescriptor(::openat(descriptor_.number(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC))
      .readAll(largestFile);
}

bool OwnFolder::write(const std::string& name, std::string_view content) const {
  if (read(name) == content)
    return false;
  const std::string draft = name + draftMark + std::to_string(::getpid());
  const int folder = descriptor_.number();
  const auto giveUp = [&](int number) {
    ::unlinkat(folder, draft.c_str(), 0);
    return refusal("write", path_ / name, number);
  };
  ::unlinkat(folder, draft.c_str(), 0); // of a process that had our number
  const FileDescriptor file(
      ::openat(folder, draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file.isOpen())
    throw refusal("write", path_ / name, errno);
  std::string_view rest = content;
  while (!rest.empty()) {
    const ssize_t count = ::write(file.number(), rest.data(), rest.size());
    if (count < 0 && errno != EINTR)
      throw giveUp(errno);
    if (count > 0)
      rest.remove_prefix(static_cast<std::size_t>(count));
  }
  if (::fsync(file.number()) != 0 || ::renameat(folder, draft.c_str(), folder, name.c_str()) != 0)
    throw giveUp(errno);
  return true;
}

bool OwnFolder::remove(const std::string& name) const {
  const int folder = descriptor_.number();
  const bool wasThere = ::unlinkat(folder, name.c_str(), 0) == 0;
  if (!wasThere && errno != ENOENT)
    throw refusal("remove", path_ / name, errno);
  // A descriptor of the listing's own, which closes it.
  const int copy = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (copy < 0)
    return wasThere;
  const std::unique_ptr<DIR, decltype([](DIR* open) { ::closedir(open); })> listing(::fdopendir(copy));
  if (!listing) {
    ::close(copy);
    return wasThere;
  }
  std::vector<std::string> drafts;
  while (const dirent* entry = ::readdir(listing.get())) {
    if (std::string_view(entry->d_name).starts_with(name + draftMark))
      drafts.emplace_back(entry->d_name);
  }
  for (const std::string& draft : drafts)
    ::unlinkat(folder, draft.c_str(), 0);
  return wasThere;
}

} // namespace tabwright::connect
