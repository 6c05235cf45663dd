#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tabwright::platform {

/// The keys of a desktop entry that decide whether an application is installed.
struct DesktopEntry {
  std::string type;      ///< "Application", "Link" or "Directory"
  std::string name;      ///< in no language
  std::string exec;      ///< command line, quoting and field codes as they stand; empty when it is started over D-Bus
  std::string tryExec;   ///< a program without which the application isn't there; empty when none is named
  bool isHidden = false; ///< deleted by the user: as if neither this file nor one of its id further down existed
};

/// Reads the text of a desktop entry file (Desktop Entry Specification 1.5: groups, keys, escapes, booleans). Nothing
/// for a damaged one: a line that is neither a comment, a group nor a key with a value, a first group of another name
/// than "Desktop Entry", a boolean or an escape that there is not, or an application without name or command.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(std::string_view text);

} // namespace tabwright::platform
