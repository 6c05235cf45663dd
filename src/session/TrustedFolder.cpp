// The folder is opened first and looked at through its descriptor, so that nobody exchanges it in between. Its owner
// and its mode decide; an access list that lets others write shows in the mode's bits for the group.
#include "session/TrustedFolder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>
#include <utility>

namespace tabwright::session {
namespace {

constexpr mode_t writableByOthers = S_IWGRP | S_IWOTH;

bool isOwn(const struct stat& facts) {
  return facts.st_uid == ::geteuid();
}

} // namespace

TrustedFolder::TrustedFolder(std::string path) : path_(std::move(path)) {
  const auto refusal = [this](const char* step, int error) {
    return FolderRefused(path_, std::string(step) + ": " + std::strerror(error), error);
  };
  // On a read-only file system it may be there already, and is found out as not writable below.
  if (::mkdir(path_.c_str(), 0700) != 0 && errno != EEXIST && errno != EROFS)
    throw refusal("can’t be made", errno);
  // No link as the last part: its owner could lead it elsewhere later.
  descriptor_ = ::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (descriptor_ < 0)
    throw refusal("can’t be opened", errno);
  struct stat facts{};
  const char* reason = nullptr;
  if (::fstat(descriptor_, &facts) != 0 || !isOwn(facts))
    reason = "belongs to somebody else";
  else if ((facts.st_mode & writableByOthers) != 0)
    reason = "is open to others";
  int error = reason ? EPERM : 0;
  if (!reason && ::faccessat(AT_FDCWD, path_.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
    error = errno;
    reason = "can’t be written to";
  }
  if (!reason)
    return;
  ::close(descriptor_);
  throw error == EPERM ? FolderRefused(path_, reason, error) : refusal(reason, error);
}

TrustedFolder::TrustedFolder(TrustedFolder&& other) noexcept
    : path_(std::move(other.path_)), descriptor_(std::exchange(other.descriptor_, -1)) {}

TrustedFolder::~TrustedFolder() {
  if (descriptor_ >= 0)
    ::close(descriptor_);
}

bool isOwnFolder(const std::string& path) {
  struct stat facts{};
  return ::stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode) && isOwn(facts) &&
         (facts.st_mode & writableByOthers) == 0;
}

std::optional<std::string> sessionFolder() {
  const char* given = std::getenv("XDG_RUNTIME_DIR");
  return given && *given == '/' && isOwnFolder(given) ? std::optional<std::string>(given) : std::nullopt;
}

std::string runtimePath() {
  const std::string user = std::to_string(::geteuid());
  if (const auto folder = sessionFolder())
    return *folder + "/tabwright";
  // The folder may be there though the session's variable is missing, as under su or in a cron job.
  if (isOwnFolder("/run/user/" + user))
    return "/run/user/" + user + "/tabwright";
  return "/tmp/tabwright-" + user;
}

bool hasRoom(const std::string& path, std::uintmax_t bytes) {
  struct statvfs facts{};
  if (::statvfs(path.c_str(), &facts) != 0)
    return true;
  // A file system without a bound has totals of 0.
  const bool hasBlocks = facts.f_blocks == 0 || std::uintmax_t{facts.f_bavail} * facts.f_frsize >= bytes;
  return hasBlocks && (facts.f_files == 0 || facts.f_favail > 0);
}

} // namespace tabwright::session
