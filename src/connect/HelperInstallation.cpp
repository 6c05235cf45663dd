// The relay's file is written first and removed last: a helper that a browser takes in finds its relay.
#include "connect/HelperInstallation.h"

#include "connect/ConnectFault.h"
#include "connect/OwnFolder.h"

#include <boost/json/object.hpp>
#include <boost/json/serialize.hpp>
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <span>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tabwright::connect {
namespace {

namespace fs = std::filesystem;

/// A file in a folder of the user data directory.
struct HelperFile {
  const char* folder;
  std::string name;
  std::string content;
};

std::array<HelperFile, 2> filesOf(const HelperParts& parts) {
  const boost::json::object relay{{"name", parts.relayName},
                                  {"description", "Tabwright’s relay, through which its helper is reached"},
                                  {"path", parts.relay.string()},
                                  {"type", "stdio"},
                                  {"allowed_origins", {"chrome-extension://" + parts.identity + "/"}}};
  const boost::json::object extension{{"external_crx", parts.package.string()}, {"external_version", parts.version}};
  return {{{"NativeMessagingHosts", parts.relayName + ".json", boost::json::serialize(relay) + "\n"},
           {"External Extensions", parts.identity + ".json", boost::json::serialize(extension) + "\n"}}};
}

bool holds(const fs::path& file, const std::string& content) {
  std::ifstream stream(file, std::ios::binary);
  return stream && std::string(std::istreambuf_iterator<char>(stream), {}) == content;
}

fs::path inSystem(const fs::path& root, std::string_view folder, const std::string& name) {
  return root / fs::path(folder).relative_path() / name;
}

bool isInstalledForAll(const platform::BrowserFacts& facts, const std::array<HelperFile, 2>& files,
                       const fs::path& root) {
  const auto& [relay, extension] = files;
  return !facts.messagingFolder.empty() && holds(inSystem(root, facts.messagingFolder, relay.name), relay.content) &&
         std::ranges::any_of(facts.extensionFolders, [&](std::string_view folder) {
           return holds(inSystem(root, folder, extension.name), extension.content);
         });
}

/// The last change of a file's place: a package's files keep the times of its making otherwise.
std::optional<std::chrono::system_clock::time_point> cameAt(const fs::path& file) {
  struct stat status{};
  if (::stat(file.c_str(), &status) != 0)
    return std::nullopt;
  return std::chrono::system_clock::time_point(std::chrono::seconds(status.st_ctim.tv_sec) +
                                               std::chrono::microseconds(status.st_ctim.tv_nsec / 1000));
}

/// The folders from the first missing one down to `folder`.
std::vector<fs::path> missingDownTo(fs::path folder) {
  std::vector<fs::path> missing;
  std::error_code ignored;
  // A link that leads nowhere counts as there: nothing is made in its place.
  for (; folder.has_relative_path() && !fs::exists(fs::symlink_status(folder, ignored)); folder = folder.parent_path())
    missing.push_back(folder);
  std::ranges::reverse(missing);
  return missing;
}

} // namespace

HelperFiles helperFilesIn(const UserDataDirectory& directory, const HelperParts& parts, const fs::path& root) {
  const auto files = filesOf(parts);
  const bool isWhole = std::ranges::all_of(
      files, [&](const HelperFile& file) { return holds(directory.path / file.folder / file.name, file.content); });
  if (isWhole)
    return HelperFiles::present;
  const bool isAny = std::ranges::any_of(files, [&](const HelperFile& file) {
    std::error_code ignored;
    return fs::exists(directory.path / file.folder / file.name, ignored);
  });
  // A browser prefers the user's files, whatever they say.
  if (isAny)
    return HelperFiles::other;
  return isInstalledForAll(*directory.facts, files, root) ? HelperFiles::forAllUsers : HelperFiles::absent;
}

std::optional<std::chrono::system_clock::time_point> helperInstalledAt(const UserDataDirectory& directory,
                                                                       const HelperParts& parts, const fs::path& root) {
  const HelperFile extension = filesOf(parts)[1];
  if (const auto time = cameAt(directory.path / extension.folder / extension.name))
    return time;
  for (const std::string_view folder : directory.facts->extensionFolders) {
    if (const auto time = cameAt(inSystem(root, folder, extension.name)))
      return time;
  }
  return std::nullopt;
}

std::vector<fs::path> installHelper(const UserDataDirectory& directory, const HelperParts& parts, ConnectRecord& record,
                                    const fs::path& root) {
  if (directory.sandbox != Sandbox::none)
    throw platform::failure(ConnectFault::sandboxed, sandboxSentence(directory));
  const HelperFiles found = helperFilesIn(directory, parts, root);
  if (found == HelperFiles::present || found == HelperFiles::forAllUsers)
    return {};

  const auto files = filesOf(parts);
  // 1. Note the folders that will be made.
  std::vector<fs::path> made = missingDownTo(directory.path);
  const std::size_t outer = made.size();
  for (const HelperFile& file : files) {
    std::error_code ignored;
    if (!fs::exists(fs::symlink_status(directory.path / file.folder, ignored)))
      made.push_back(directory.path / file.folder);
  }
  record.note(directory.facts->id, directory.path, made);
  // 2. Make those down to the user data directory.
  for (const fs::path& folder : std::span(made).first(outer)) {
    // The first of them lies in a folder that was there.
    const OwnFolder parent = OwnFolder::open(folder.parent_path());
    static_cast<void>(parent.ensureFolder(folder.filename()));
  }
  // 3. Write what is not as it should be.
  const OwnFolder base = OwnFolder::open(directory.path);
  std::vector<fs::path> written;
  for (const HelperFile& file : files) {
    const OwnFolder folder = base.ensureFolder(file.folder);
    if (folder.write(file.name, file.content))
      written.push_back(folder.path() / file.name);
  }
  return written;
}

std::vector<fs::path> removeHelper(const fs::path& directory, const HelperParts& parts, ConnectRecord& record) {
  std::vector<fs::path> removed;
  std::error_code error;
  if (fs::is_directory(directory, error)) {
    const OwnFolder base = OwnFolder::open(directory);
    auto files = filesOf(parts);
    std::ranges::reverse(files);
    for (const HelperFile& file : files) {
      // Nothing of ours is behind a link: it isn't written through one.
      if (!fs::is_directory(fs::symlink_status(directory / file.folder, error)))
        continue;
      const auto folder = base.findFolder(file.folder);
      if (folder && folder->remove(file.name))
        removed.push_back(folder->path() / file.name);
    }
  }
  const auto entry = std::ranges::find(record.entries(), directory, &ConnectRecord::Entry::directory);
  if (entry == record.entries().end())
    return removed;
  for (auto folder = entry->made.rbegin(); folder != entry->made.rend(); ++folder)
    ::rmdir(folder->c_str()); // which spares one that holds something, and a link
  record.forget(directory);
  return removed;
}

std::string sandboxSentence(const UserDataDirectory& directory) {
  const platform::BrowserFacts& facts = *directory.facts;
  return fmt::format("{} from {} can’t be connected: its sandbox lets it start no program of the system’s, so not "
                     "Tabwright’s relay either. Open chrome://inspect/#remote-debugging in it and switch remote "
                     "debugging on, or install {} as a package of the system’s.",
                     facts.name, directory.sandbox == Sandbox::snap ? "Snap" : "Flatpak", facts.name);
}

} // namespace tabwright::connect
