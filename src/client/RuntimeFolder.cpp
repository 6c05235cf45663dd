// The folder is opened first and looked at through its descriptor, so that nobody exchanges it in between.
#include "client/RuntimeFolder.h"

#include "client/HostUnavailable.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tabwright::client {
namespace {

bool isOwnFolder(const std::string& path) {
  struct stat facts{};
  return ::stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode) && facts.st_uid == ::geteuid();
}

std::string wantedPath() {
  const char* given = std::getenv("XDG_RUNTIME_DIR");
  if (given && *given == '/' && isOwnFolder(given))
    return std::string(given) + "/tabwright";
  const std::string user = std::to_string(::geteuid());
  if (isOwnFolder("/run/user/" + user))
    return "/run/user/" + user + "/tabwright";
  return "/tmp/tabwright-" + user;
}

} // namespace

RuntimeFolder::RuntimeFolder() : path_(wantedPath()) {
  if (::mkdir(path_.c_str(), 0700) != 0 && errno != EEXIST)
    throw HostUnavailable("The folder " + path_ + " can’t be made: " + std::strerror(errno));
  descriptor_ = ::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (descriptor_ < 0)
    throw HostUnavailable("The folder " + path_ + " can’t be opened: " + std::strerror(errno));
  struct stat facts{};
  const bool isKnown = ::fstat(descriptor_, &facts) == 0;
  if (isKnown && facts.st_uid == ::geteuid() && (facts.st_mode & 077) == 0)
    return;
  ::close(descriptor_);
  throw HostUnavailable("The folder " + path_ +
                        (isKnown && facts.st_uid != ::geteuid() ? " belongs to somebody else" : " is open to others"));
}

RuntimeFolder::~RuntimeFolder() {
  ::close(descriptor_);
}

std::string RuntimeFolder::shortPathOf(const std::string& name) const {
  return "/proc/self/fd/" + std::to_string(descriptor_) + "/" + name;
}

} // namespace tabwright::client
