#pragma once

#include "platform/FileFailure.h"
#include "platform/FileManager.h"

#include <cerrno>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
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

  std::unique_ptr<platform::WrittenFile> writeNewFileAtomically(const std::filesystem::path& path,
                                                                std::string_view content) override {
    failIfTold(Operation::write, path);
    if (!folders.contains(path.parent_path()))
      throw platform::FileFailure("write", path, ENOENT);
    if (!files.emplace(path, content).second)
      return nullptr;
    written.push_back(path);
    return std::make_unique<File>(path, content);
  }

  void remove(const std::filesystem::path& path) override {
    failIfTold(Operation::remove, path);
    if (files.erase(path) == 0)
      throw platform::FileFailure("remove", path, ENOENT);
  }

private:
  class File final : public platform::WrittenFile {
  public:
    File(std::filesystem::path path, std::string_view content) : path_(std::move(path)), content_(content) {}
    [[nodiscard]] const std::filesystem::path& path() const override { return path_; }
    [[nodiscard]] std::string content() const override { return content_; }

  private:
    std::filesystem::path path_;
    std::string content_;
  };

  void failIfTold(Operation operation, const std::filesystem::path& path) const {
    if (failing.contains(operation))
      throw platform::FileFailure("touch", path, EACCES);
  }
};

} // namespace tabwright::testsupport
