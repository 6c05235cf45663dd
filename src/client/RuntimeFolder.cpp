#include "client/RuntimeFolder.h"

#include "client/HostUnavailable.h"

#include <unistd.h>

namespace tabwright::client {
namespace {

std::string wantedPath() {
  const std::string user = std::to_string(::geteuid());
  if (const auto folder = session::sessionFolder())
    return *folder + "/tabwright";
  if (session::isOwnFolder("/run/user/" + user))
    return "/run/user/" + user + "/tabwright";
  return "/tmp/tabwright-" + user;
}

session::TrustedFolder wantedFolder() {
  try {
    return session::TrustedFolder(wantedPath());
  } catch (const session::FolderRefused& refusal) {
    throw HostUnavailable(refusal.what());
  }
}

} // namespace

RuntimeFolder::RuntimeFolder() : folder_(wantedFolder()) {}

std::string RuntimeFolder::shortPathOf(const std::string& name) const {
  return "/proc/self/fd/" + std::to_string(folder_.descriptor()) + "/" + name;
}

} // namespace tabwright::client
