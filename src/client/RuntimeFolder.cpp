#include "client/RuntimeFolder.h"

#include "client/HostUnavailable.h"

namespace tabwright::client {
namespace {

session::TrustedFolder wantedFolder() {
  try {
    return session::TrustedFolder(session::runtimePath());
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
