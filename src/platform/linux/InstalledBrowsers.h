#pragma once

#include "platform/BrowserTable.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tabwright::platform {

/// The places in which installed programs and desktop entries are looked for. Tests give folders of their own.
struct InstallationPlaces {
  std::string path; ///< folders of programs, colon separated, as PATH is
  /// Folders of desktop entries, the most important first: an entry in one hides those of its id further down.
  std::vector<std::filesystem::path> applicationFolders;

  /// Those of this process: PATH; `applications` in XDG_DATA_HOME and in each of XDG_DATA_DIRS (XDG Base Directory
  /// rules, with their defaults; relative ones don't count); and the folders into which Flatpak, for the user and for
  /// all, and Snap put entries, which a session that wasn't started by them leaves out of XDG_DATA_DIRS.
  [[nodiscard]] static InstallationPlaces ofThisProcess();
};

/// The browsers of the table that are installed, in its order: those with a program on the path, and those with a
/// desktop entry of one of their ids.
///
/// An entry counts unless it is hidden or its TryExec is missing; a damaged one, or one that can't be read, is skipped
/// with a line in the log ("Failed to get info dictionary for " and the file's name). An id's dashes may stand for
/// subfolders (Desktop Entry Specification 1.5, "Desktop File ID"). Only files that may be of an id of the table are
/// touched, so the cost doesn't grow with the number of applications. Keeps nothing. Throws
/// `FileFailure` only when this process has run short of descriptors or memory.
[[nodiscard]] std::vector<const BrowserFacts*> findInstalledBrowsers(const InstallationPlaces& places);

} // namespace tabwright::platform
