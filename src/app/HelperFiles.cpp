#include "app/HelperFiles.h"

#include "platform/FileFailure.h"
#include "platform/linux/BaseDirectories.h"
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
  stream.close();
  if (!stream)
    throw platform::FileFailure("write", path, errno);
}

} // namespace

std::filesystem::path ensureHelperFiles() {
  const std::filesystem::path parent = platform::dataHome() / "tabwright" / "helper";
  const std::filesystem::path folder = parent / fmt::format("{:016x}", hashOfFiles());
  std::error_code error;
  if (std::filesystem::is_directory(folder, error))
    return folder;

  platform::ensurePrivateFolder(parent);
  const std::filesystem::path draft = parent / fmt::format(".draft-{}", ::getpid());
  platform::ensurePrivateFolder(draft);
  for (const auto& [name, content] : files)
    writeFile(draft / name, content);
  if (std::rename(draft.c_str(), folder.c_str()) != 0) {
    const int reason = errno;
    std::filesystem::remove_all(draft, error);
    if (!std::filesystem::is_directory(folder, error))
      throw platform::FileFailure("make", folder, reason);
  }
  return folder;
}

} // namespace tabwright::app
