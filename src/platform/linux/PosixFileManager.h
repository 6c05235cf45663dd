#pragma once

#include "platform/FileManager.h"

namespace tabwright::platform {

/// The real files. Scripts may run from `tabwright/scripts` in the XDG data home. Text is written in full before it
/// gets its name, but not forced to the disk: a script file is of no use after a crash of the machine.
class PosixFileManager final : public FileManager {
public:
  [[nodiscard]] std::filesystem::path applicationScriptsFolder() override;
  [[nodiscard]] std::optional<FileKind> kindOfFile(const std::filesystem::path& path) override;
  void createDirectory(const std::filesystem::path& path) override;
  [[nodiscard]] bool writeNewFileAtomically(const std::filesystem::path& path, std::string_view content) override;
  void remove(const std::filesystem::path& path) override;
};

} // namespace tabwright::platform
