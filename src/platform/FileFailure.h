#pragma once

#include "platform/Failure.h"

#include <filesystem>
#include <string>

namespace tabwright::platform {

/// A file operation that the system refused, with its reason.
///
///     FileFailure("write", "/tmp/a.applescript", ENOSPC).errorDescription()
///     // Couldn't write “/tmp/a.applescript”: No space left on device
/// Of class `system`. The errno value is passed on at once, before another call changes it.
class FileFailure final : public Failure {
public:
  /// `operation` is a verb phrase that goes after "Couldn't"; `errorNumber` an errno value.
  FileFailure(std::string operation, std::filesystem::path path, int errorNumber);

  /// The path as the operation was given it, relative or absolute.
  [[nodiscard]] const std::filesystem::path& path() const noexcept { return path_; }
  /// The errno value, for callers that go on differently by the reason.
  [[nodiscard]] int errorNumber() const noexcept { return errorNumber_; }

  [[nodiscard]] std::string errorDescription() const override;
  /// Type "FileFailure", the operation as case, the errno value as number.
  [[nodiscard]] FailureIdentity identity() const override;

private:
  std::string operation_;
  std::filesystem::path path_;
  int errorNumber_;
};

/// True for an errno value that says that the system or the process has run short, of descriptors or memory: it tells
/// nothing about what was looked for.
[[nodiscard]] bool isShortage(int errorNumber);

} // namespace tabwright::platform
