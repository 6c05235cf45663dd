#include "app/HelperFiles.h"

#include "platform/FileFailure.h"
#include "platform/Logger.h"
#include "platform/linux/BaseDirectories.h"
#include "session/TrustedFolder.h"
#include "tabwright_appResources.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

// The folder is written under a name of this process's own and then renamed: it is there whole or not at all, and
// whoever comes second finds it taken and throws its own away.

namespace tabwright::app {
namespace {

constexpr std::pair<std::string_view, std::string_view> files[]{
    {"manifest.json", resources::manifest_json},
    {"worker.js", resources::worker_js},
};

// FNV-1a: tells builds apart, guards against nothing.
std::uint64_t hashOfFiles() {
  std::uint64_t hash = 14695981039346656037u;
  for (const auto& [name, content] : files) {
    for (const unsigned char byte : content)
      hash = (hash ^ byte) * 1099511628211u;
  }
  return hash;
}

void writeFile(const std::filesystem::path& path, std::string_view content) {
  std::ofstream stream(path, std::ios::binary);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  // Some file systems tell only here that there was no room.
  stream.close();
  if (!stream)
    throw platform::FileFailure("write", path, errno);
}

/// A folder of this process's own, gone in the end unless it was renamed.
class Draft {
public:
  explicit Draft(const std::filesystem::path& parent) : folder_(parent / fmt::format(".draft-{}", ::getpid())) {
    platform::ensurePrivateFolder(folder_);
  }
  ~Draft() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }

private:
  const std::filesystem::path folder_;
};

// The folder in `parent`, which is made where it is missing.
std::filesystem::path ensureFilesIn(const std::filesystem::path& parent) {
  const std::filesystem::path folder = parent / fmt::format("{:016x}", hashOfFiles());
  std::error_code error;
  // It got its name when it was whole, so what is there is right.
  if (std::filesystem::is_directory(folder, error))
    return folder;

  platform::ensurePrivateFolder(parent);
  const Draft draft(parent);
  for (const auto& [name, content] : files)
    writeFile(draft.folder() / name, content);
  // A folder is never renamed onto one that holds something: then another process was first, with the same files.
  if (std::rename(draft.folder().c_str(), folder.c_str()) != 0) {
    const int reason = errno;
    if (!std::filesystem::is_directory(folder, error))
      throw platform::FileFailure("make", folder, reason);
  }
  return folder;
}

} // namespace

std::filesystem::path ensureHelperFiles() {
  try {
    return ensureFilesIn(platform::dataHome() / "tabwright" / "helper");
  } catch (const platform::FileFailure& failure) {
    try {
      const session::TrustedFolder trusted(session::runtimePath());
      const std::filesystem::path folder = ensureFilesIn(std::filesystem::path(trusted.path()) / "helper");
      platform::Logger("Helper").error("{}: {} is used instead", failure.errorDescription(), folder.string());
      return folder;
    } catch (const std::exception&) { // which is no better place, and not the one that the user knows
    }
    throw;
  }
}

} // namespace tabwright::app
