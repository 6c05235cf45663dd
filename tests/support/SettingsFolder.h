#pragma once

#include "platform/linux/LinuxUserDefaults.h"
#include "support/ScratchFolder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tabwright::testsupport {

/// A folder of its own for the settings file, gone when this goes.
class SettingsFolder : public ScratchFolder {
public:
  using ScratchFolder::ScratchFolder;

  [[nodiscard]] std::filesystem::path file() const { return path() / "config" / "settings.plist"; }
  [[nodiscard]] platform::LinuxUserDefaultsOptions options() const { return {.file = file()}; }
  void write(const std::string& content) const { ScratchFolder::write(file(), content); }
  [[nodiscard]] std::string content() const { return ScratchFolder::content(file()); }
  /// The files beside the settings whose names hold `part`.
  [[nodiscard]] std::vector<std::filesystem::path> filesWith(const std::string& part) const {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(file().parent_path())) {
      if (entry.path().filename().string().find(part) != std::string::npos)
        found.push_back(entry.path());
    }
    return found;
  }
};

} // namespace tabwright::testsupport
