#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tabwright::session {

/// Takes the lock that says that a file is in use: flock(2), which the system lets go of when the last descriptor of
/// the open file is closed, however its process ends. False with errno set when another open file has it.
[[nodiscard]] bool hold(int file);

/// True while `name` in the open folder still leads to the open file: somebody may have removed it before it was held.
[[nodiscard]] bool isStillAt(int folder, const std::string& name, int file);

/// Removes the files of a folder whose names have the ending `ending` and which nobody holds, and the file beside each
/// that has `companionEnding` in its place (none when that is empty), which goes first. Folders and links stay; what
/// can't be opened or removed stays too.
void removeUnheldFiles(int folder, std::string_view ending, std::string_view companionEnding = {});

} // namespace tabwright::session
