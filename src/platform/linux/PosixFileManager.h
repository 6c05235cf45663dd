#pragma once

#include "platform/FileManager.h"

namespace tabwright::platform {

/// The real files. Scripts may run from `scripts` in the session's folder of ours, else in the XDG data home's, else in
/// the one of users without a session: the first that nobody else can change, that can be written to, and has room.
/// Text is written in full before it gets its name, but not forced to the disk: a script file is of no use after a
/// crash of the machine. A written file is held (session/UnheldFiles.h) before it has a name, so that no other process
/// takes it for abandoned.
class PosixFileManager final : public FileManager {
public:
  [[nodiscard]] std::filesystem::path applicationScriptsFolder() override;
  [[nodiscard]] std::optional<FileKind> kindOfFile(const std::filesystem::path& path) override;
  void createDirectory(const std::filesystem::path& path) override;
  [[nodiscard]] std::unique_ptr<WrittenFile> writeNewFileAtomically(const std::filesystem::path& path,
                                                                    std::string_view content) override;
  void remove(const std::filesystem::path& path) override;
};

/// Removes the files with the ending `ending` in a folder that no process holds any more, and beside each the one with
/// `companionEnding` in its place, if one is given. A missing folder is none to tidy; throws nothing.
///
///     removeAbandonedFiles(scripts, ".applescript");
///
/// For what killed processes have left. Folders in it aren't gone into.
void removeAbandonedFiles(const std::filesystem::path& folder, std::string_view ending,
                          std::string_view companionEnding = {});

} // namespace tabwright::platform
