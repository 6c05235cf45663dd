#pragma once

#include "platform/linux/LinuxUserDefaults.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <stdlib.h>
#include <string>
#include <vector>

namespace tabwright::testsupport {

/// A folder of its own for the settings file, gone when this goes.
class SettingsFolder {
public:
  explicit SettingsFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    std::string name = (parent / "tabwright-settings-XXXXXX").string();
    if (!mkdtemp(name.data()))
      throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~SettingsFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  SettingsFolder(const SettingsFolder&) = delete;
  SettingsFolder& operator=(const SettingsFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::filesystem::path file() const { return path_ / "config" / "settings.plist"; }
  [[nodiscard]] platform::LinuxUserDefaultsOptions options() const { return {.file = file()}; }

  void write(const std::string& content) const {
    std::filesystem::create_directories(file().parent_path());
    std::ofstream(file(), std::ios::binary | std::ios::trunc) << content;
  }
  [[nodiscard]] std::string content() const {
    std::ifstream stream(file(), std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
  }
  /// The files beside the settings whose names hold `part`.
  [[nodiscard]] std::vector<std::filesystem::path> filesWith(const std::string& part) const {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(file().parent_path())) {
      if (entry.path().filename().string().find(part) != std::string::npos)
        found.push_back(entry.path());
    }
    return found;
  }

private:
  std::filesystem::path path_;
};

} // namespace tabwright::testsupport
