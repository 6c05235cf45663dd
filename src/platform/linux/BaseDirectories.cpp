// Environment first, as the rules have it, and the account's entry only where HOME is missing too.
#include "platform/linux/BaseDirectories.h"

#include "platform/FileFailure.h"

#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tabwright::platform {
namespace {

std::filesystem::path homeDirectory() {
  if (const char* home = std::getenv("HOME"); home && *home)
    return home;
  // As for services, which may be started with no HOME.
  const passwd* account = getpwuid(getuid());
  return account && account->pw_dir ? account->pw_dir : "/";
}

std::filesystem::path baseDirectory(const char* variable, const char* fallback) {
  // Relative ones are invalid by the XDG rules and to be ignored.
  if (const char* value = std::getenv(variable); value && *value == '/')
    return value;
  return homeDirectory() / fallback;
}

} // namespace

std::filesystem::path configHome() {
  return baseDirectory("XDG_CONFIG_HOME", ".config");
}
std::filesystem::path dataHome() {
  return baseDirectory("XDG_DATA_HOME", ".local/share");
}
std::filesystem::path stateHome() {
  return baseDirectory("XDG_STATE_HOME", ".local/state");
}

void ensurePrivateFolder(const std::filesystem::path& folder) {
  std::error_code ignored; // what can't be seen counts as missing, and making it tells why
  if (folder.empty() || std::filesystem::is_directory(folder, ignored))
    return;
  ensurePrivateFolder(folder.parent_path());
  // Another process may have made it in the meantime.
  if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
    throw FileFailure("make the folder", folder, errno);
  if (!std::filesystem::is_directory(folder, ignored))
    throw FileFailure("make the folder", folder, ENOTDIR);
}

} // namespace tabwright::platform
