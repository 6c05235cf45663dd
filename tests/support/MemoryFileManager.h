#pragma once

#include "platform/FileFailure.h"
#include "platform/FileManager.h"

#include <cerrno>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::testsupport {

/// Files in memory, whose operations fail when they are told to. For tests on one thread.
class MemoryFileManager final : public platform::FileManager {
public:
  enum class Operation { applicationScriptsFolder, createDirectory, write, remove };

  static inline const std::filesystem::path scriptsFolder = "/scripts";

  std::set<std::filesystem::path> folders{scriptsFolder};
  std::map<std::filesystem::path, std::string> files;
  std::set<Operation> failing; ///< these throw a `FileFailure` of EACCES and do nothing
  std::vector<std::filesystem::path> written;

  std::filesystem::path applicationScriptsFolder() override {
    failIfTold(Operation::applicationScriptsFolder, scriptsFolder);
    return scriptsFolder;
  }

  std::optional<platform::FileKind> kindOfFile(const std::filesystem::path& path) override {
    if (folders.contains(path))
      return platform::FileKind::folder;
    return files.contains(path) ? std::optional(platform::FileKind::other) : std::nullopt;
  }

  void createDirectory(const std::filesystem::path& path) override {
    failIfTold(Operation::createDirectory, path);
    folders.insert(path);
  }

  bool writeNewFileAtomically(const std::filesystem::path& path, std::string_view content) override {
    failIfTold(Operation::write, path);
    if (!folders.contains(path.parent_path()))
      throw platform::FileFailure("write", path, ENOENT);
    if (!files.emplace(path, content).second)
      return false;
    written.push_back(path);
    return true;
  }

  void remove(const std::filesystem::path& path) override {
    failIfTold(Operation::remove, path);
    if (files.erase(path) == 0)
      throw platform::FileFailure("remove", path, ENOENT);
  }

private:
  void failIfTold(Operation operation, const std::filesystem::path& path) const {
    if (failing.contains(operation))
      throw platform::FileFailure("touch", path, EACCES);
  }
};

} // namespace tabwright::testsupport
