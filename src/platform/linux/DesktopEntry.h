#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tabwright::platform {

/// The keys of a desktop entry that decide whether an application is installed. Escapes in its texts are read.
struct DesktopEntry {
  std::string type;        ///< "Application", "Link" or "Directory"
  std::string name;        ///< in no language
  std::string localName;   ///< in the first of the languages asked for that it has; else `name`
  std::string exec;        ///< command line, quoting and field codes as they stand; empty when it is started over D-Bus
  std::string tryExec;     ///< a program without which the application isn't there; empty when none is named
  std::string windowClass; ///< the WM_CLASS of its windows, instance or class; empty when it isn't told
  std::string workingFolder; ///< in which to start it; empty: any
  bool isInTerminal = false; ///< it has no window of its own
  bool isHidden = false;     ///< deleted by the user: as if neither this file nor one of its id further down existed
};

/// Reads the text of a desktop entry file (Desktop Entry Specification 1.5: groups, keys, escapes, booleans). Nothing
/// for a damaged one: a line that is neither a comment, a group nor a key with a value, a first group of another name
/// than "Desktop Entry", a boolean or an escape that there is not, or an application without name or command.
/// `languages` are those of the user, the best first, as "de_AT" and "de". Keys and groups that aren't known are passed
/// over. The programs that it names needn't be there.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                                            std::span<const std::string> languages = {});

/// The words of an entry's command line, without its field codes for files and addresses, as for a start with none;
/// `%c` becomes the local name. Nothing when its quoting is damaged or it is empty.
///
///     // Exec="/opt/my editor/run" --new %U
///     commandLineOf(entry)    // {"/opt/my editor/run", "--new"}
///
/// Quoting is that of the Desktop Entry Specification, not a shell's: double quotes alone, and backslashes count within
/// them only.
[[nodiscard]] std::optional<std::vector<std::string>> commandLineOf(const DesktopEntry& entry);

} // namespace tabwright::platform
