#pragma once

#include "connect/ConnectRecord.h"
#include "connect/HelperParts.h"
#include "connect/UserDataDirectory.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tabwright::connect {

/// The two files by which a browser learns of the helper: one that names the extension, for the browser to take in at
/// its next start, and one that names the relay, which it starts for that extension alone. A user has them in the user
/// data directory, an administrator in folders of the browser's for all users.
enum class HelperFiles {
  absent,      ///< neither is there
  other,       ///< they are not as this copy of the program has them: of another version, say, or one is missing
  present,     ///< the user's are
  forAllUsers, ///< those for all users are
};

/// `root` is where the system's folders begin, for tests.
[[nodiscard]] HelperFiles helperFilesIn(const UserDataDirectory& directory, const HelperParts& parts,
                                        const std::filesystem::path& root = "/");

/// The time at which the file that names the extension came to its place, for a directory whose files are `present` or
/// `forAllUsers`; a browser that was started later has seen it. Nothing where there is none.
[[nodiscard]] std::optional<std::chrono::system_clock::time_point>
helperInstalledAt(const UserDataDirectory& directory, const HelperParts& parts,
                  const std::filesystem::path& root = "/");

/// Writes the user's files, and makes the folders for them, which are noted in `record` before. Where all is as it
/// should be nothing is touched, nor where the files for all users are. Yields the files that were written. Throws
/// ConnectFault, `sandboxed` for a browser that could not start the relay.
std::vector<std::filesystem::path> installHelper(const UserDataDirectory& directory, const HelperParts& parts,
                                                 ConnectRecord& record, const std::filesystem::path& root = "/");

/// Removes the user's files, then those folders that were made for them and are empty, and forgets the directory. Other
/// files stay, and so do those for all users. Yields the files that were removed; a missing directory is none to tidy.
/// Throws ConnectFault; what is removed by then stays so, and the directory stays in `record`.
std::vector<std::filesystem::path> removeHelper(const std::filesystem::path& directory, const HelperParts& parts,
                                                ConnectRecord& record);

/// A browser in a sandbox: why it can't be connected, and what may be done instead.
[[nodiscard]] std::string sandboxSentence(const UserDataDirectory& directory);

} // namespace tabwright::connect
