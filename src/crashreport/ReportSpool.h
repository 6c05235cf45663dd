#pragma once

#include "platform/linux/FileDescriptor.h"
#include "session/TrustedFolder.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::crashreport {

/// The folder in which reports wait to be sent, one per file. Any number of processes share it.
///
/// - It is open to its owner alone (0700), and refused when it is somebody else's or a symbolic link.
/// - A report is in it whole or not at all, whenever its writer is killed: it is written under another name, forced to
///   the disk and renamed.
/// - At most `mostFiles` reports of at most `mostBytes` together wait; beyond that the oldest go.
/// - Names that aren't the spool's, links, and files that are somebody else's, no plain files or too long to be a
///   report are never read, sent, counted or removed.
///
/// Safe to use from any thread.
class ReportSpool {
public:
  static constexpr std::size_t mostFiles = 32;
  static constexpr std::size_t mostBytes = 2 << 20;
  static constexpr std::size_t longestReport = 256 << 10;

  static constexpr std::string_view envelopeEnding = ".envelope"; ///< ready to be sent
  static constexpr std::string_view crashEnding = ".crash";       ///< what a crashed process has left (CrashRecord.h)
  static constexpr std::string_view pendingEnding = ".pending";   ///< of a process that may crash yet, which holds it

  /// `tabwright/reports` in the XDG state home.
  [[nodiscard]] static std::filesystem::path defaultFolder();

  /// Opens the folder, or makes it; removes what writers that were killed have left unfinished. Throws
  /// `platform::FileFailure`.
  explicit ReportSpool(const std::filesystem::path& folder);

  /// Adds an envelope. Throws `platform::FileFailure`: EFBIG for one that is too long.
  void add(std::string_view envelope);

  /// The names of the reports that have the ending, oldest first.
  [[nodiscard]] std::vector<std::string> names(std::string_view ending) const;
  /// True when a report waits to be sent.
  [[nodiscard]] bool hasReports() const;
  /// The content of a report; nothing for what is gone or isn't one.
  [[nodiscard]] std::optional<std::string> read(const std::string& name) const;
  void remove(const std::string& name) const noexcept;
  /// Removes the oldest reports beyond the bounds.
  void trim() const;

  /// Makes a file that no process takes for abandoned as long as the descriptor is open. Throws
  /// `platform::FileFailure`.
  [[nodiscard]] platform::FileDescriptor makeHeldFile(const std::string& name) const;
  /// A new name: reports sort by it from the oldest to the newest.
  [[nodiscard]] static std::string newName(std::string_view ending);

  [[nodiscard]] int descriptor() const noexcept { return folder_.descriptor(); }
  [[nodiscard]] std::filesystem::path path() const { return folder_.path(); }

private:
  session::TrustedFolder folder_;
};

/// 32 hexadecimal digits that no other report has.
[[nodiscard]] std::string newReportID();

} // namespace tabwright::crashreport
