#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tabwright::platform {

/// `other` is everything that is no folder: files, pipes, devices.
enum class FileKind { folder, other };

/// A file that this process has written. It is held as long as this lives, so that it counts as in use; removing it is
/// another matter.
class WrittenFile {
public:
  virtual ~WrittenFile() = default;

  [[nodiscard]] virtual const std::filesystem::path& path() const = 0;

  /// The text as it was written, read back from the file itself, whatever lies under its name by now. Throws a
  /// `Failure` when the system can't give it.
  [[nodiscard]] virtual std::string content() const = 0;
};

/// The few operations on files that running a script needs. Safe to use from any thread.
///
/// Every operation that can't do its work throws a `Failure` that names the operation, the path and the system's
/// reason (see `FileFailure`).
///
///     const auto file = files.writeNewFileAtomically(files.applicationScriptsFolder() / name, text);
///     if (!file)
///       return; // the name is taken: try another
class FileManager {
public:
  virtual ~FileManager() = default;

  /// The folder that the application may run scripts from; it is made when it isn't there.
  [[nodiscard]] virtual std::filesystem::path applicationScriptsFolder() = 0;

  /// The kind of what lies at `path`, following links; nothing when nothing does or it can't be seen. Never throws for
  /// that.
  [[nodiscard]] virtual std::optional<FileKind> kindOfFile(const std::filesystem::path& path) = 0;

  /// Makes one folder, open to its owner alone; its parent must exist. Making one that exists already is no error, so
  /// that two runs may both find it missing.
  virtual void createDirectory(const std::filesystem::path& path) = 0;

  /// Writes a file of a new name, whole or not at all, readable by its owner alone. None, and nothing is changed, when
  /// the name is taken.
  [[nodiscard]] virtual std::unique_ptr<WrittenFile> writeNewFileAtomically(const std::filesystem::path& path,
                                                                            std::string_view content) = 0;

  /// Removes a file. A missing one is a failure.
  virtual void remove(const std::filesystem::path& path) = 0;
};

} // namespace tabwright::platform
